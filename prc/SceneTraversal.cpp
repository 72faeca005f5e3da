#include "prc/COrvelPRCHandler.h"

#include "mapping/COrvelPRCMapper.h"
#include "platform/core/COrvel3DObject.h"
#include "platform/core/COrvelGeometry.h"
#include "platform/core/COrvelMatrix.h"
#include "platform/core/COrvelSceneNode.h"
#include "platform/prcfile/PRCoptions.h"
#include "platform/prcfile/oPRCFile.h"
#include "prc/ExportCaches.h"
#include "prc/MeshExtraction.h"

#include <algorithm>
#include <array>

namespace Orvel
{

namespace
{

prc::PRCoptions GroupOptions()
{
    prc::PRCoptions options;
    options.compression = 1.0;
    options.granularity = 1.0;
    options.closed = true;
    options.tess = true;
    options.do_break = false;
    options.no_break = true;
    options.crease_angle = 25.8419;
    return options;
}

/// Row by row: the translation lands at positions 3, 7 and 11.
std::array<double, 16> GroupTransform(const COrvelMatrix& matrix)
{
    std::array<double, 16> transform;
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 4; ++column)
            transform[static_cast<std::size_t>(4 * row + column)] = matrix.M(row, column);
    }
    return transform;
}

bool IsObject(const COrvelSceneNode* node)
{
    return dynamic_cast<const COrvel3DObject*>(node) != nullptr;
}

bool HasLiveChild(COrvelSceneNode* node)
{
    std::vector<COrvelSceneNode*> children;
    node->Children(children, true);
    return std::any_of(children.begin(), children.end(), [](COrvelSceneNode* child) { return !child->IsDeleted(); });
}

} // namespace

void COrvelPRCHandler::VisitNode(COrvelSceneNode* node, prc::oPRCFile& file)
{
    const prc::PRCoptions options = GroupOptions();
    const std::array<double, 16> transform = GroupTransform(node->LocalMatrix());
    file.begingroup(node->Name().toStdString().c_str(), &options, transform.data());
    mapper->AddMapping(node, mapper->nextNodeIndex);

    std::vector<COrvelSceneNode*> children;
    if (auto* object = dynamic_cast<COrvel3DObject*>(node))
        PlaceMesh(object, file);
    else
        CollectChildren(node, children);

    if (node->IsHidden())
        mapper->hiddenNodeIndices.push_back(mapper->nextNodeIndex);
    ++mapper->nextNodeIndex;

    for (COrvelSceneNode* child : children) {
        if (!child->IsDeleted())
            VisitNode(child, file);
    }
    DropIfEmpty(node);
    file.endgroup();
}

void COrvelPRCHandler::PlaceMesh(COrvel3DObject* object, prc::oPRCFile& file)
{
    // Written by the mesh extraction and never reset: an object that adds nothing leaves the previous mesh's index.
    static uint32 tessellation = 0;

    ExportCaches& caches = ExportCaches::Instance();
    const COrvelString geometry = object->GeometyDefinitionID();
    COrvelMaterial* const material = object->Material();

    const auto stored = caches.tessellationByGeometry.find(geometry);
    if (stored != caches.tessellationByGeometry.end() && caches.geometryByMaterial[material] == geometry) {
        file.useMesh(stored->second, 0, nullptr);
        return;
    }

    ExtractMesh(file, object, tessellation);
    // Without vertices there is no tessellation to remember: the slot still names another object's.
    if (!HasVertices(object))
        return;
    std::vector<COrvel3DObject*> instances;
    object->ListInstances(instances, true, false, true);
    if (instances.size() > 1) {
        caches.tessellationByGeometry[geometry] = tessellation;
        caches.geometryByMaterial[material] = geometry;
    }
}

void COrvelPRCHandler::CollectChildren(COrvelSceneNode* node, std::vector<COrvelSceneNode*>& children)
{
    node->Children(children, true);
    std::erase_if(children, [](COrvelSceneNode* child) { return child->IsDeleted(); });
    std::stable_partition(children.begin(), children.end(), IsObject);
}

void COrvelPRCHandler::DropIfEmpty(COrvelSceneNode* node)
{
    // A 3D object's group holds its mesh, whatever became of its children, which are never visited.
    if (IsObject(node) || HasLiveChild(node))
        return;
    mapper->RemoveMemberFromMap(node);
    --mapper->nextNodeIndex;
    // The number goes to the next node, which must not look hidden because this one was. Nothing was visited below an
    // empty group, so its own entry can only be the last one.
    if (node->IsHidden() && !mapper->hiddenNodeIndices.empty() &&
        mapper->hiddenNodeIndices.back() == mapper->nextNodeIndex)
        mapper->hiddenNodeIndices.pop_back();
}

} // namespace Orvel
