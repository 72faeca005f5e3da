// Finding single data, and what is animated about a node.

#include "animation/COrvelKeyFrame.h"
#include "animation/COrvelKeyFrameDataTransform.h"
#include "animation/COrvelKeyFrameManager.h"
#include "animation/KeyFrameRange.h"
#include "platform/core/COrvelLinePath.h"
#include "platform/core/COrvelSceneNode.h"
#include "platform/core/COrvelTransform.h"

#include <algorithm>
#include <unordered_set>

namespace Orvel
{

COrvelPtr<COrvelKeyFrameData> COrvelKeyFrameManager::StoredKeyFrameDataAtFrame(const COrvelID& id, int frame) const
{
    const KeyFrameDataByFrame* const data = FindKeyFrameData(ResolveAlias(id));
    if (!data)
        return nullptr;
    const KeyFrameRange range = FindKeyFrameRange(*data, frame, frame);
    return range.IsEmpty() ? nullptr : range.begin->second;
}

COrvelPtr<COrvelKeyFrameData> COrvelKeyFrameManager::StoredKeyFrameDataAtOrAfter(const COrvelID& id, int frame) const
{
    if (COrvelPtr<COrvelKeyFrameData> covering = StoredKeyFrameDataAtFrame(id, frame))
        return covering;
    const KeyFrameDataByFrame* const data = FindKeyFrameData(ResolveAlias(id));
    if (!data)
        return nullptr;
    const auto next = data->lower_bound(frame);
    return next == data->end() ? nullptr : next->second;
}

COrvelKeyFrame COrvelKeyFrameManager::KeyFrameAtFrame(int frame)
{
    COrvelKeyFrame keyFrame;
    for (const auto& [id, data] : keyFrameDataByEntity)
        keyFrame.SetKeyFrameData(KeyFrameDataAtFrame(id, frame));
    return keyFrame;
}

COrvelID COrvelKeyFrameManager::TargetIDAtCurrentFrame(const COrvelID& id)
{
    const COrvelPtr<COrvelKeyFrameData> data = KeyFrameDataAtFrame(ResolveAlias(id), currentFrame);
    return data ? data->TargetEntityID() : COrvelID();
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): promised
COrvelMatrix COrvelKeyFrameManager::WorldMatrixAtFrame(COrvelNodePath path, int frame)
{
    COrvelMatrix world;
    for (const COrvelSceneNode* const node : path) {
        const COrvelTransform* const transform = node ? node->LocalTransform() : nullptr;
        if (!transform)
            continue;
        // Evaluated under the id that it is filed under: the transform's own one finds nothing where the two differ.
        const COrvelPtr<COrvelKeyFrameData> state = KeyFrameDataAtFrame(ResolveAlias(transform->ID()), frame);
        const auto* const placement = dynamic_cast<const COrvelKeyFrameDataTransform*>(state.Get());
        world *= placement ? placement->Matrix() : transform->Matrix();
    }
    return world;
}

bool COrvelKeyFrameManager::IsNodeAnimated(COrvelSceneNode* node) const
{
    for (; node; node = node->Parent()) {
        if (IsNodeTransformAnimated(node))
            return true;
    }
    return false;
}

bool COrvelKeyFrameManager::IsNodeTransformAnimated(COrvelSceneNode* node) const
{
    const COrvelTransform* const transform = node ? node->LocalTransform() : nullptr;
    return transform && IsAnimated(ResolveAlias(transform->ID()));
}

bool COrvelKeyFrameManager::IsAnyPathAnimated(const std::vector<COrvelNodePath>& paths) const
{
    return std::any_of(paths.begin(), paths.end(),
                       [this](const COrvelNodePath& path) { return IsNodeTransformAnimated(path.SceneNode()); });
}

bool COrvelKeyFrameManager::IsNodeDependentOn(COrvelSceneNode* node, COrvelSceneNode* other) const
{
    if (!node)
        return false;
    // Paths may follow each other in a circle: each node is asked once.
    std::vector<COrvelSceneNode*> asked{node};
    std::unordered_set<COrvelSceneNode*> known{node};
    std::vector<COrvelLinePath*> paths;
    while (!asked.empty()) {
        COrvelSceneNode* const current = asked.back();
        asked.pop_back();
        if (current->IsChildOf(other, true))
            return true;
        const COrvelNodePath toRoot = current->NodePathToRoot(true);
        paths.clear();
        ListFollowedPaths({toRoot.begin(), toRoot.end()}, paths);
        for (COrvelLinePath* const path : paths) {
            if (known.insert(path).second)
                asked.push_back(path);
        }
    }
    return false;
}

} // namespace Orvel
