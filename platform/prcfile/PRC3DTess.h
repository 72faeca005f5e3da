#pragma once

#include "platform/prcfile/Export.h"
#include "platform/prcfile/PRCTessFace.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace prc
{

/// A tessellation: flat arrays of coordinates that any number of faces index.
///
/// Filled by the caller and handed to oPRCFile::add3DTess, which checks, encodes and frees it.
class PRCFILE_API PRC3DTess
{
public:
    PRC3DTess() = default;
    PRC3DTess(const PRC3DTess&) = delete;
    PRC3DTess& operator=(const PRC3DTess&) = delete;

    /// Adds a face behind the others.
    ///
    /// @param face made with `new`; the tessellation takes it and sets the caller's pointer to null. Null is ignored.
    ///             When std::bad_alloc passes through, the face has been freed and the pointer is null as well.
    void addTessFace(PRCTessFace*& face);

    std::vector<double> coordinates;        ///< x, y, z of each point.
    std::vector<double> normalCoordinates;  ///< x, y, z of each normal, unit length, outwards. Empty: to be computed.
    std::vector<double> textureCoordinates; ///< u, v of each entry; v = 0 is the bottom edge of the picture.

    /// For each corner of each triangle, counter-clockwise seen from outside, in this order: the normal (only when
    /// there are normals), the texture coordinates (only in textured triangles), the point. All are offsets into the
    /// flat arrays: 3 x the normal, 2 x the texture coordinates, 3 x the point.
    std::vector<std::uint32_t> triangulatedIndex;

    /// In degrees. Edges sharper than this stay sharp when a viewer computes normals; stored only when
    /// `normalCoordinates` is empty.
    double creaseAngle = 25.8419;

    std::vector<std::unique_ptr<PRCTessFace>> faceTessellation; ///< one at least; see addTessFace.
};

} // namespace prc
