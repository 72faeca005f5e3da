#include "animation/COrvelAnimationCollapsingGroupGuidToCaptionMapper.h"

#include <limits>
#include <utility>

namespace Orvel
{

COrvelAnimationCollapsingGroupGuidToCaptionMapper* COrvelAnimationCollapsingGroupGuidToCaptionMapper::Instance()
{
    static auto* const instance = new COrvelAnimationCollapsingGroupGuidToCaptionMapper;
    return instance;
}

void COrvelAnimationCollapsingGroupGuidToCaptionMapper::AddCaption(const COrvelUUID& groupId, COrvelString caption)
{
    if (!groupId.IsValid())
        return;
    if (caption.IsEmpty()) {
        caption = COrvelString("Group ") + COrvelString::FromInt(nextDefaultNumber);
        // The number may come from an archive.
        if (nextDefaultNumber < std::numeric_limits<int>::max())
            ++nextDefaultNumber;
    }
    captions.try_emplace(groupId, std::move(caption));
}

const COrvelString* COrvelAnimationCollapsingGroupGuidToCaptionMapper::FindCaption(const COrvelUUID& groupId) const
{
    const auto found = captions.find(groupId);
    return found == captions.end() ? nullptr : &found->second;
}

} // namespace Orvel
