// Listings of what in a scene is animated: objects, light sources, paths, skeletons, ids of a tree.

#include "animation/COrvelAnimatedIDsFinder.h"
#include "animation/COrvelKeyFrameDataTransformBSplineFollower.h"
#include "animation/COrvelKeyFrameManager.h"
#include "platform/core/COrvel3DObject.h"
#include "platform/core/COrvelGeometry.h"
#include "platform/core/COrvelLight.h"
#include "platform/core/COrvelLightSource.h"
#include "platform/core/COrvelLinePath.h"
#include "platform/core/COrvelMaterial.h"
#include "platform/core/COrvelSkeletonJoint.h"
#include "platform/core/COrvelTransform.h"
#include "platform/core/COrvelVerticiesTable.h"
#include "platform/core/EntityTypes.h"

#include <unordered_set>

namespace Orvel
{

namespace
{

/// Appends nodes to a list, each once, leaving out what was not asked for.
template <class Node>
class NodeCollector
{
public:
    NodeCollector(std::vector<Node*>& newNodes, bool withHidden, bool withDeleted)
        : nodes(newNodes)
        , known(newNodes.begin(), newNodes.end())
        , includeHidden(withHidden)
        , includeDeleted(withDeleted)
    {}

    void Add(Node* node)
    {
        if ((node->IsHidden() && !includeHidden) || (node->IsDeleted() && !includeDeleted))
            return;
        if (known.insert(node).second)
            nodes.push_back(node);
    }

    void Add(const std::vector<Node*>& found)
    {
        for (Node* const node : found)
            Add(node);
    }

private:
    std::vector<Node*>& nodes;
    std::unordered_set<Node*> known;
    bool includeHidden;
    bool includeDeleted;
};

} // namespace

void COrvelKeyFrameManager::ListAnimated3DObjects(std::vector<COrvel3DObject*>& objects, bool skipMaterialAnimation,
                                                  bool includeHidden, bool includeDeleted) const
{
    NodeCollector<COrvel3DObject> collector(objects, includeHidden, includeDeleted);
    std::vector<COrvel3DObject*> found;
    for (const auto& [id, data] : keyFrameDataByEntity) {
        COrvelEntity* const entity = id.Entity();
        if (auto* const object = dynamic_cast<COrvel3DObject*>(entity)) {
            collector.Add(object);
        } else if (const auto* const transform = dynamic_cast<const COrvelTransform*>(entity)) {
            transform->ListAll3DObjectsThisTransformAffect(found);
            collector.Add(found);
        } else if (const auto* const material = dynamic_cast<const COrvelMaterial*>(entity);
                   material && !skipMaterialAnimation) {
            material->GetObjectsReferencingThisMaterial(found);
            collector.Add(found);
        }
    }
}

void COrvelKeyFrameManager::ListAnimatedLightSources(std::vector<COrvelSceneNode*>& sources, bool skipLightAnimation,
                                                     bool includeHidden, bool includeDeleted) const
{
    NodeCollector<COrvelSceneNode> collector(sources, includeHidden, includeDeleted);
    std::vector<COrvelSceneNode*> found;
    for (const auto& [id, data] : keyFrameDataByEntity) {
        const COrvelEntity* const entity = id.Entity();
        if (const auto* const transform = dynamic_cast<const COrvelTransform*>(entity)) {
            transform->ListAllLightSourcesThisTransformAffect(found);
            collector.Add(found);
        } else if (const auto* const light = dynamic_cast<const COrvelLight*>(entity); light && !skipLightAnimation) {
            light->GetLightSourcesReferencingThisLight(found);
            collector.Add(found);
        }
    }
}

void COrvelKeyFrameManager::ListFollowedPaths(const std::vector<COrvelSceneNode*>& nodes,
                                              std::vector<COrvelLinePath*>& paths) const
{
    for (const COrvelSceneNode* const node : nodes) {
        const COrvelTransform* const transform = node ? node->LocalTransform() : nullptr;
        const KeyFrameDataByFrame* const dataByFrame =
            transform ? FindKeyFrameData(ResolveAlias(transform->ID())) : nullptr;
        if (!dataByFrame)
            continue;
        for (const auto& [start, data] : *dataByFrame) {
            const auto* const follower = dynamic_cast<const COrvelKeyFrameDataTransformBSplineFollower*>(data.Get());
            if (COrvelLinePath* const path = follower ? follower->Path() : nullptr)
                paths.push_back(path);
        }
    }
}

std::vector<COrvelSkeletonJoint*> COrvelKeyFrameManager::ListSequenceRootJoints() const
{
    std::vector<COrvelSkeletonJoint*> roots;
    std::unordered_set<COrvelSkeletonJoint*> known;
    std::vector<COrvelSceneNode*> nodes;
    for (const auto& [id, data] : keyFrameDataByEntity) {
        const auto* const transform = dynamic_cast<const COrvelTransform*>(id.Entity());
        if (!transform)
            continue;
        transform->ListSceneNodesReferencingThisTransform(nodes, true);
        for (COrvelSceneNode* const node : nodes) {
            auto* const joint = dynamic_cast<COrvelSkeletonJoint*>(node);
            COrvelSkeletonJoint* const root = joint ? joint->FindSkeletonRoot() : nullptr;
            if (root && root->GetJointType() == eJointType_Root && known.insert(root).second)
                roots.push_back(root);
        }
    }
    return roots;
}

void COrvelKeyFrameManager::CollectAnimatedIDs(COrvelSceneNode* node, std::set<COrvelID>& ids, int typeMask,
                                               bool thisNodeOnly)
{
    if (!node)
        return;
    if (!thisNodeOnly) {
        COrvelAnimatedIDsFinder(ids).Traverse(node, COrvelMatrix(), nullptr);
        return;
    }
    const auto collect = [&](const COrvelEntity* entity, int type) {
        if ((typeMask & type) != 0 && entity && IsAnimated(entity->ID()))
            ids.insert(entity->ID());
    };
    collect(node->LocalTransform(), eEntityType_Transform);
    const auto* const object = dynamic_cast<const COrvel3DObject*>(node);
    if (!object)
        return;
    collect(object->Material(), eEntityType_Material);
    if (const COrvelGeometry* const geometry = object->Geometry())
        collect(geometry->VerticiesTable(), eEntityType_VectorsTable);
}

} // namespace Orvel
