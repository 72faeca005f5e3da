// Storing key frame data in a timeline and taking them out again.

#include "animation/COrvelKeyFrame.h"
#include "animation/COrvelKeyFrameManager.h"
#include "animation/KeyFrameRange.h"

#include <algorithm>
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

} // namespace

KeyFrameDataList COrvelKeyFrameManager::AddKeyFrameData(COrvelPtr<COrvelKeyFrameData>& data, bool updateRange)
{
    KeyFrameDataList displaced;
    if (!data)
        return displaced;
    filedFrames.clear();
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
    if (entity != keyFrameDataByEntity.end())
        Unfile(entity->second, *data);
    StoreKeyFrameData(data);
}

void COrvelKeyFrameManager::Unfile(KeyFrameDataByFrame& dataByFrame, const COrvelKeyFrameData& data)
{
    const auto [found, isNew] = filedFrames.try_emplace(data.AnimatedEntityID());
    auto& filed = found->second;
    if (isNew) {
        for (const auto& [start, stored] : dataByFrame)
            filed.emplace(stored.Get(), start);
    }
    if (const auto former = filed.extract(&data))
        dataByFrame.erase(former.mapped());
    // What the data is about to replace stands nowhere any more.
    if (const auto replaced = dataByFrame.find(data.StartFrame()); replaced != dataByFrame.end())
        filed.erase(replaced->second.Get());
    filed.emplace(&data, data.StartFrame());
}

KeyFrameDataList COrvelKeyFrameManager::TakeAllKeyFrameData()
{
    KeyFrameAtFrame(0).Apply();
    KeyFrameDataList taken;
    ListAllKeyFrameData(taken);
    filedFrames.clear();
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
    filedFrames.clear();
    TakeRange(entity->second, from, to, list);
    EraseWithoutData(keyFrameDataByEntity, entity);
}

KeyFrameDataList COrvelKeyFrameManager::TakeAllKeyFrameDataOf(const COrvelID& id)
{
    KeyFrameDataList taken;
    const auto entity = keyFrameDataByEntity.find(ResolveAlias(id));
    if (entity == keyFrameDataByEntity.end())
        return taken;
    filedFrames.clear();
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
    filedFrames.clear();
    entity->second.erase(data->StartFrame());
    EraseWithoutData(keyFrameDataByEntity, entity);
}

} // namespace Orvel
