#pragma once

#include "mapping/Export.h"
#include "platform/core/COrvelString.h"
#include "platform/core/COrvelUnit.h"
#include "platform/core/COrvelWriter.h"

#include <vector>

namespace Orvel
{

struct COrvelBasicSceneState;
class COrvelCamera;
class COrvelDocument;
class COrvelKeyFrameManager;
class COrvelPRCHandler;
class COrvelPRCMapper;
class COrvelSceneState;
class COrvelSectionPlane;
class COrvelTransform;

/// Exports a document to a PRC file.
///
/// A writer is a light handle: all writers of a process share one converter, which carries the settings. One export
/// runs at a time in a process, on the caller's thread.
///
/// Virtual functions stand in the order of the base: destructor, `Export`, `ExportSceneNode` (the base's own). The
/// order is part of the interface to hosts.
class ORVEL_PRCWRITER_API COrvelPRCWriter : public COrvelWriter
{
public:
    COrvelPRCWriter();
    COrvelPRCWriter(const COrvelPRCWriter& other);
    COrvelPRCWriter(COrvelPRCWriter&& other) noexcept;
    COrvelPRCWriter& operator=(const COrvelPRCWriter& other);
    COrvelPRCWriter& operator=(COrvelPRCWriter&& other) noexcept;
    /// Leaves the converter and its settings as they are.
    ~COrvelPRCWriter() override;

    /// Writes the live nodes of a document: a group for each, shared meshes once, materials and textures.
    ///
    /// The file ends at folder + base name + "." + extension of `fileName`; the dot is always inserted. Where the 8-bit
    /// file-name encoding of the system cannot represent the base name, the file is written under a generated name and
    /// then moved; a file that already has the final name keeps it, and the output stays under the generated one.
    ///
    /// `transform`, `cameras`, `sceneStates`, `sectionPlane` and `unit` have no effect.
    ///
    /// @return false when `document` is null or the converter could not be made; nothing is written then.
    ///         Exceptions pass through: std::system_error when the file cannot be written, std::invalid_argument for
    ///         matrices, coordinates or colours that are not finite, std::out_of_range for polygons and texture
    ///         coordinates that name vertices beyond their tables, std::bad_alloc, and whatever the document throws.
    bool Export(COrvelDocument* document, COrvelString fileName, COrvelTransform* transform,
                std::vector<COrvelCamera*>* cameras, std::vector<COrvelSceneState*>* sceneStates,
                COrvelSectionPlane* sectionPlane, COrvelUnit unit) override;

    /// Writes the same file with the materials of scene states and of animation added, and records in the mapper what
    /// stands where and when. Call SetPRCMapper before each call: a plain export in between leaves the converter on a
    /// mapper of its own.
    ///
    /// `fileName` is taken as it is; `transform` and `cameras` have no effect.
    ///
    /// @param sceneStates not owned; may be null.
    /// @return and exceptions as for Export.
    bool ExportToMemory(COrvelDocument* document, COrvelString fileName, COrvelTransform* transform,
                        std::vector<COrvelCamera*>* cameras, std::vector<COrvelBasicSceneState>* sceneStates);

    /// Points this writer at the process-wide converter, which is made when there is none yet. Any exception while it
    /// is made is caught and leaves the writer without a converter: exports then answer false.
    void InitializeHandler();

    /// Sets the limit for the larger side of textures, in pixels, for every writer. Unchecked.
    void SetMaximumTextureSize(int size);

    /// Installs the key frame manager whose animation exports show. It becomes the manager of the whole process, which
    /// owns it from then on and destroys it, whatever its reference count, when a different one is installed; the one
    /// installed before is destroyed now. The installed one itself changes nothing, null leaves none. Works for a
    /// writer without a converter too.
    void SetKeyFrameManager(COrvelKeyFrameManager* manager);

    /// Sets the mapper that the next ExportToMemory fills. Not owned; it must outlive that export. Null is ignored.
    void SetPRCMapper(COrvelPRCMapper* mapper);

private:
    COrvelPRCHandler* handler = nullptr;
};

} // namespace Orvel
