#include "animation/COrvelKeyFrameManager.h"

#include "animation/COrvelSequenceContainer.h"

#include <utility>

namespace Orvel
{

namespace
{

/// The process-wide manager. Its slot is never destroyed: data may be made and released until the process ends.
COrvelKeyFrameManager* installedManager = nullptr;

} // namespace

COrvelKeyFrameManager::COrvelKeyFrameManager()
    : sequenceContainer(COrvelSequenceContainer::Instance())
{}

COrvelKeyFrameManager::~COrvelKeyFrameManager() = default;

COrvelKeyFrameManager* COrvelKeyFrameManager::Instance()
{
    if (!installedManager)
        installedManager = new COrvelKeyFrameManager();
    return installedManager;
}

void COrvelKeyFrameManager::SetInstance(COrvelKeyFrameManager* manager)
{
    // The old manager goes last: what its data do while they are destroyed meets the new one.
    COrvelKeyFrameManager* const replaced = std::exchange(installedManager, manager);
    if (replaced != manager)
        delete replaced;
}

COrvelID COrvelKeyFrameManager::ResolveAlias(const COrvelID& id) const
{
    const auto alias = entityAliases.find(id);
    return alias == entityAliases.end() ? id : alias->second;
}

const KeyFrameDataByFrame* COrvelKeyFrameManager::FindKeyFrameData(const COrvelID& id) const
{
    const auto found = keyFrameDataByEntity.find(id);
    return found == keyFrameDataByEntity.end() ? nullptr : &found->second;
}

void COrvelKeyFrameManager::ClearKeyFrameData()
{
    keyFrameDataByEntity.clear();
    entityAliases.clear();
    dataCountByEntity.clear();
    filedFrames.clear();
    bakedKeyFrameData.clear();
    currentFrame = 0;
    firstFrame = 0;
    lastFrame = 0;
    reservedNumber = 0;
}

} // namespace Orvel
