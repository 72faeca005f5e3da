// Storing key frame data in a timeline and taking them out again.

#include "animation/COrvelKeyFrame.h"
#include "animation/COrvelKeyFrameManager.h"
#include "animation/KeyFrameRange.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace Orvel
{

namespace
{

using DataByEntity = std::map<COrvelID, KeyFrameDataByFrame>;

/// Moves the data of a range to the end of `list`.
void TakeRange(KeyFrameDataByFrame& data, int first, int last, KeyFrameDataList& list)
{
    const KeyFrameRange range = FindKeyFrameRange(data, first, last);
    for (auto stored = range.begin; stored != range.end; ++stored)
        list.push_back(stored->second);
    data.erase(range.begin, range.end);
}

void EraseWithoutData(DataByEntity& dataByEntity, DataByEntity::iterator entity)
{
    if (entity->second.empty())
        dataByEntity.erase(entity);
}

/// Its start frame may have changed since it was stored, so the key does not find it for sure.
KeyFrameDataByFrame::iterator FindByIdentity(KeyFrameDataByFrame& dataByFrame,
                                             const COrvelPtr<COrvelKeyFrameData>& data)
{
    const auto atStart = dataByFrame.find(data->StartFrame());
    if (atStart != dataByFrame.end() && atStart->second == data)
        return atStart;
    return std::find_if(dataByFrame.begin(), dataByFrame.end(),
                        [&data](const auto& stored) { return stored.second == data; });
}

} // namespace

KeyFrameDataList COrvelKeyFrameManager::AddKeyFrameData(COrvelPtr<COrvelKeyFrameData>& data, bool updateRange)
{
    KeyFrameDataList displaced;
    if (!data)
        return displaced;
    const auto entity = keyFrameDataByEntity.find(data->AnimatedEntityID());
    if (entity != keyFrameDataByEntity.end())
        TakeRange(entity->second, data->StartFrame(), data->EndFrame(), displaced);
    StoreKeyFrameData(data);
    if (updateRange) {
        firstFrame = std::min(firstFrame, data->StartFrame());
        lastFrame = std::max(lastFrame, data->EndFrame());
    }
    return displaced;
}

void COrvelKeyFrameManager::StoreKeyFrameData(const COrvelPtr<COrvelKeyFrameData>& data)
{
    const COrvelID& entity = data->AnimatedEntityID();
    keyFrameDataByEntity[entity][data->StartFrame()] = data;
    entityAliases[data->TargetEntityID()] = entity;
    if (data->SequenceNumber() == 0)
        data->SetSequenceNumber(++dataCountByEntity[entity]);
}

void COrvelKeyFrameManager::RefileKeyFrameData(const COrvelPtr<COrvelKeyFrameData>& data)
{
    if (!data)
        return;
    const auto entity = keyFrameDataByEntity.find(data->AnimatedEntityID());
    if (entity != keyFrameDataByEntity.end()) {
        const auto stored = FindByIdentity(entity->second, data);
        if (stored != entity->second.end())
            entity->second.erase(stored);
    }
    StoreKeyFrameData(data);
}

KeyFrameDataList COrvelKeyFrameManager::TakeAllKeyFrameData()
{
    KeyFrameAtFrame(0).Apply();
    KeyFrameDataList taken;
    ListAllKeyFrameData(taken);
    keyFrameDataByEntity.clear();
    entityAliases.clear();
    currentFrame = 0;
    firstFrame = 0;
    return taken;
}

COrvelPtr<COrvelKeyFrameData> COrvelKeyFrameManager::TakeKeyFrameDataAt(const COrvelID& id, int frame)
{
    // Stored data share no frame, so there is at most one.
    KeyFrameDataList taken;
    TakeKeyFrameDataInRange(frame, frame, id, taken);
    return taken.empty() ? nullptr : taken.front();
}

void COrvelKeyFrameManager::TakeKeyFrameDataInRange(int from, int to, const COrvelID& id, KeyFrameDataList& list)
{
    const auto entity = keyFrameDataByEntity.find(id);
    if (entity == keyFrameDataByEntity.end())
        return;
    TakeRange(entity->second, from, to, list);
    EraseWithoutData(keyFrameDataByEntity, entity);
}

KeyFrameDataList COrvelKeyFrameManager::TakeAllKeyFrameDataOf(const COrvelID& id)
{
    KeyFrameDataList taken;
    const auto entity = keyFrameDataByEntity.find(ResolveAlias(id));
    if (entity == keyFrameDataByEntity.end())
        return taken;
    taken.reserve(entity->second.size());
    for (auto& [start, data] : entity->second) {
        entityAliases.erase(data->TargetEntityID());
        taken.push_back(std::move(data));
    }
    keyFrameDataByEntity.erase(entity);
    return taken;
}

void COrvelKeyFrameManager::RemoveKeyFrameData(const KeyFrameDataList& list)
{
    for (const COrvelPtr<COrvelKeyFrameData>& data : list)
        RemoveKeyFrameData(data);
}

void COrvelKeyFrameManager::RemoveKeyFrameData(const COrvelPtr<COrvelKeyFrameData>& data)
{
    if (!data)
        return;
    const auto entity = keyFrameDataByEntity.find(data->AnimatedEntityID());
    if (entity == keyFrameDataByEntity.end())
        return;
    entity->second.erase(data->StartFrame());
    EraseWithoutData(keyFrameDataByEntity, entity);
}

} // namespace Orvel
