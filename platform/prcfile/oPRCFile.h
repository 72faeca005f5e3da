#pragma once

#include "platform/prcfile/Export.h"
#include "platform/prcfile/NullIndex.h"
#include "platform/prcfile/PRC3DTess.h"
#include "platform/prcfile/PRCTessFace.h"
#include "platform/prcfile/PRCmaterial.h"
#include "platform/prcfile/PRCoptions.h"

#include <cstdint>
#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

namespace prc
{

class Output;

/// Writes one PRC file: a tree of named groups in which tessellations are placed, and the materials they are drawn in.
///
/// Everything is gathered and encoded in memory; the output is opened, written and closed by finish(). A file object
/// that dies before finish() therefore has touched nothing outside itself. Equal calls give equal bytes: the ids in the
/// file are derived from its content, never from its name, the clock or chance.
///
/// The root of the tree is the only top group; several top groups, none, or meshes placed outside any group hang under
/// one more group named "Scene".
///
/// All operations but the destructor may throw std::bad_alloc, and std::logic_error when called after finish().
class PRCFILE_API oPRCFile
{
public:
    /// Prepares a file on disk. Nothing is created before finish().
    ///
    /// @param name           8-bit file name; an existing file is overwritten by finish(). No part of it gets into the
    ///                       file.
    /// @param unit           length of one unit of the coordinates in millimetres, positive.
    /// @param fileStructures number of file structures, always 1.
    /// @throws std::invalid_argument for another unit or number.
    oPRCFile(const std::string& name, double unit, unsigned fileStructures);

    /// As above; finish() replaces the content of `bytes` by the file.
    ///
    /// @param bytes not owned; must live until finish() returns. Untouched when finish() throws or is never called.
    oPRCFile(std::vector<std::uint8_t>& bytes, double unit, unsigned fileStructures);

    /// As above; finish() writes the file to `stream`, from its current position on, and flushes it.
    ///
    /// @param stream not owned, binary; must live until finish() returns. It needs not be seekable.
    oPRCFile(std::ostream& stream, double unit, unsigned fileStructures);

    oPRCFile(const oPRCFile&) = delete;
    oPRCFile& operator=(const oPRCFile&) = delete;

    /// Releases everything taken over; groups still open are dropped with it. Writes nothing.
    ~oPRCFile();

    /// Opens a group inside the open one, or at the top.
    ///
    /// @param name    UTF-8, copied; null for a group without a name.
    /// @param options hints of the group, see PRCoptions; may be null.
    /// @param matrix  16 doubles, copied: the affine transform from the group to its parent, row by row, translation at
    ///                positions 3, 7 and 11. Null for the identity.
    /// @throws std::invalid_argument when the matrix is not finite.
    void begingroup(const char* name, const PRCoptions* options, const double* matrix);

    /// Closes the innermost open group. A group that nothing was placed in stays in the file.
    ///
    /// @throws std::logic_error when no group is open.
    void endgroup();

    /// Adds a material, with the pixels of its picture copied. Equal pixels are stored once.
    ///
    /// @return the number of the material: 0, 1, 2 ..., a new one for every call. It serves as style index.
    /// @throws std::invalid_argument when a number is not finite, or the picture's size does not fit its dimensions and
    ///         format. A record without pixels or with a picture of 0 x 0 is a material without texture.
    std::uint32_t addMaterial(const PRCmaterial& material);

    /// Adds a tessellation: checks it, encodes it and frees it.
    ///
    /// @param tess          made with `new`; taken in every case, also when the call throws: the caller's pointer
    /// becomes
    ///                      null.
    /// @param fileStructure 0.
    /// @return the number of the tessellation: 0, 1, 2 ...
    /// @throws std::out_of_range when an index or a style lies outside its array, or `fileStructure` is not 0;
    ///         std::invalid_argument for a null pointer, coordinates that are not finite, arrays that do not fit
    ///         together, no faces, or kinds of faces that are not written. The file is unchanged then.
    std::uint32_t add3DTess(PRC3DTess*& tess, unsigned fileStructure);

    /// Places a tessellation in the open group.
    ///
    /// @param tess   what add3DTess returned; nullIndex places nothing.
    /// @param style  what addMaterial returned, for faces that have no style of their own; nullIndex for none. Style 0
    ///               always exists: a file without materials gets a plain grey one.
    /// @param matrix null, or 16 doubles as in begingroup, the placement inside the group.
    /// @throws std::out_of_range when there is no such tessellation or style; std::invalid_argument when the matrix is
    ///         not finite.
    void useMesh(std::uint32_t tess, std::uint32_t style, const double* matrix);

    /// Encodes what was gathered and writes the file.
    ///
    /// @return true when the file is complete; false when finish() was called before.
    /// @throws std::system_error when the output cannot be opened, written or closed, or exceeds the 4 GiB that the
    ///         format can address; a regular file that could not be completed is removed. std::logic_error, with
    ///         nothing written, when a group is still open.
    bool finish();

private:
    class Content;

    oPRCFile(std::unique_ptr<Output> target, double unit, unsigned fileStructures);

    Content& unfinishedContent();

    std::unique_ptr<Output> output;
    std::unique_ptr<Content> content; ///< null once the file is finished.
};

} // namespace prc
