#pragma once

#include "platform/core/COrvelString.h"
#include "platform/core/COrvelUnit.h"
#include "platform/core/Export.h"

#include <vector>

namespace Orvel
{

class COrvelCamera;
class COrvelDocument;
class COrvelSceneNode;
class COrvelSceneState;
class COrvelSectionPlane;
class COrvelTransform;

/// Base of all exporters. The order of the virtual functions is relied on.
class ORVEL_CORE_API COrvelWriter
{
public:
    COrvelWriter() = default;
    /// Moves copy: there are no move operations.
    COrvelWriter(const COrvelWriter&) = default;
    COrvelWriter& operator=(const COrvelWriter&) = default;
    virtual ~COrvelWriter();

    /// Writes a document to a file.
    ///
    /// @param transform, cameras, sceneStates, sectionPlane null when there is none; none is owned.
    /// @return false when nothing could be written.
    virtual bool Export(COrvelDocument* document, COrvelString fileName, COrvelTransform* transform,
                        std::vector<COrvelCamera*>* cameras, std::vector<COrvelSceneState*>* sceneStates,
                        COrvelSectionPlane* sectionPlane, COrvelUnit unit) = 0;
    /// Writes one subtree; false from exporters that cannot.
    virtual bool ExportSceneNode(COrvelSceneNode* node, COrvelString fileName, bool selectedOnly);
};

} // namespace Orvel
