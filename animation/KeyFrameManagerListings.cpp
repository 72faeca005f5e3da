// Listings of animated ids and of stored key frame data.

#include "animation/COrvelKeyFrameDataMaterial.h"
#include "animation/COrvelKeyFrameDataTransformBSplineFollower.h"
#include "animation/COrvelKeyFrameManager.h"
#include "platform/core/COrvel3DObject.h"
#include "platform/core/COrvelGeometry.h"
#include "platform/core/COrvelLight.h"
#include "platform/core/COrvelLightSource.h"
#include "platform/core/COrvelLinePath.h"
#include "platform/core/COrvelTransform.h"
#include "platform/core/COrvelVerticiesTable.h"
#include "platform/core/EntityTypes.h"

#include <algorithm>
#include <cstdint>

namespace Orvel
{

namespace
{

void AppendData(const KeyFrameDataByFrame& dataByFrame, KeyFrameDataList& list)
{
    for (const auto& [start, data] : dataByFrame)
        list.push_back(data);
}

void AppendDataOfType(const KeyFrameDataByFrame& dataByFrame, int type, KeyFrameDataList& list)
{
    for (const auto& [start, data] : dataByFrame) {
        if (data->Type() == type)
            list.push_back(data);
    }
}

/// Appends the keys of one entity type, then sorts everything.
void ListIDsOfType(const std::map<COrvelID, KeyFrameDataByFrame>& dataByEntity, int entityType,
                   std::vector<COrvelID>& ids)
{
    for (const auto& [id, data] : dataByEntity) {
        if (!id.IsDefault() && id.EntityType() == entityType)
            ids.push_back(id);
    }
    std::sort(ids.begin(), ids.end());
}

/// The entities whose animation shows on a node: the node itself and what it uses.
std::vector<const COrvelEntity*> EntitiesOfNode(const COrvelSceneNode& node)
{
    std::vector<const COrvelEntity*> entities{&node};
    if (const COrvelTransform* const transform = node.LocalTransform())
        entities.push_back(transform);
    if (const auto* const object = dynamic_cast<const COrvel3DObject*>(&node)) {
        const COrvelGeometry* const geometry = object->Geometry();
        if (const COrvelVerticiesTable* const table = geometry ? geometry->VerticiesTable() : nullptr)
            entities.push_back(table);
    }
    if (const auto* const source = dynamic_cast<const COrvelLightSource*>(&node)) {
        if (const COrvelLight* const light = source->Light())
            entities.push_back(light);
    }
    return entities;
}

} // namespace

void COrvelKeyFrameManager::ListAnimatedIDs(std::vector<COrvelID>& ids) const
{
    for (const auto& [id, data] : keyFrameDataByEntity)
        ids.push_back(id);
}

void COrvelKeyFrameManager::ListAnimatedMaterialIDs(std::vector<COrvelID>& ids) const
{
    ListIDsOfType(keyFrameDataByEntity, eEntityType_Material, ids);
}

void COrvelKeyFrameManager::ListAnimatedLightIDs(std::vector<COrvelID>& ids) const
{
    ListIDsOfType(keyFrameDataByEntity, eEntityType_Light, ids);
}

void COrvelKeyFrameManager::ListKeyFrameNumbers(const COrvelID& id, std::vector<int>& frames) const
{
    const KeyFrameDataByFrame* const dataByFrame = FindKeyFrameData(id);
    if (!dataByFrame)
        return;
    for (const auto& [start, data] : *dataByFrame) {
        // In 64 bits: a range may end at the largest int.
        for (std::int64_t frame = data->StartFrame(); frame <= data->EndFrame(); ++frame)
            frames.push_back(static_cast<int>(frame));
    }
}

void COrvelKeyFrameManager::ListAllKeyFrameData(KeyFrameDataList& list) const
{
    for (const auto& [id, dataByFrame] : keyFrameDataByEntity)
        AppendData(dataByFrame, list);
}

void COrvelKeyFrameManager::ListKeyFrameDataAtFrame(int frame, KeyFrameDataList& list) const
{
    for (const auto& [id, dataByFrame] : keyFrameDataByEntity) {
        if (COrvelPtr<COrvelKeyFrameData> stored = StoredKeyFrameDataAtFrame(id, frame))
            list.push_back(std::move(stored));
    }
}

void COrvelKeyFrameManager::ListKeyFrameDataOf(const COrvelID& id, KeyFrameDataList& list) const
{
    if (const KeyFrameDataByFrame* const dataByFrame = FindKeyFrameData(ResolveAlias(id)))
        AppendData(*dataByFrame, list);
}

void COrvelKeyFrameManager::ListKeyFrameDataOfEntity(COrvelEntity* entity, KeyFrameDataList& list)
{
    if (!entity)
        return;
    const COrvelKeyFrameManager* const timeline = Instance();
    if (const auto* const node = dynamic_cast<const COrvelSceneNode*>(entity)) {
        for (const COrvelEntity* const part : EntitiesOfNode(*node))
            timeline->ListKeyFrameDataOf(part->ID(), list);
    } else {
        timeline->ListKeyFrameDataOf(entity->ID(), list);
    }
}

void COrvelKeyFrameManager::ListKeyFrameDataOfType(int type, KeyFrameDataList& list) const
{
    for (const auto& [id, dataByFrame] : keyFrameDataByEntity)
        AppendDataOfType(dataByFrame, type, list);
}

void COrvelKeyFrameManager::ListReadKeyFrameDataOfType(int type, KeyFrameDataList& list) const
{
    for (const COrvelID& id : readIDs) {
        if (const KeyFrameDataByFrame* const dataByFrame = FindKeyFrameData(id))
            AppendDataOfType(*dataByFrame, type, list);
    }
}

void COrvelKeyFrameManager::ListKeyFrameMaterials(std::vector<COrvelBasicMaterial*>& materials) const
{
    KeyFrameDataList list;
    ListKeyFrameDataOfType(eKeyFrameDataType_Material, list);
    for (const COrvelPtr<COrvelKeyFrameData>& data : list) {
        const auto* const looks = dynamic_cast<const COrvelKeyFrameDataMaterial*>(data.Get());
        if (looks && looks->Material())
            materials.push_back(looks->Material());
    }
}

void COrvelKeyFrameManager::ListPathFollowers(COrvelLinePath* path,
                                              std::vector<COrvelKeyFrameDataTransformBSplineFollower*>& followers) const
{
    if (!path)
        return;
    KeyFrameDataList list;
    ListKeyFrameDataOfType(eKeyFrameDataType_TransformBSplineFollower, list);
    for (const COrvelPtr<COrvelKeyFrameData>& data : list) {
        auto* const follower = dynamic_cast<COrvelKeyFrameDataTransformBSplineFollower*>(data.Get());
        if (follower && follower->PathID() == path->ID())
            followers.push_back(follower);
    }
}

} // namespace Orvel
