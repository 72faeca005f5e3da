#pragma once

#include "animation/Export.h"
#include "platform/core/COrvelArchivable.h"
#include "platform/core/COrvelString.h"
#include "platform/core/COrvelUUID.h"
#include "platform/core/Types.h"

#include <map>

namespace Orvel
{

/// The captions under which collapsing groups of key frame data are shown, by the id of the group.
///
/// Captions are only added: a group keeps its first one.
class ORVEL_ANIMATION_API COrvelAnimationCollapsingGroupGuidToCaptionMapper : public COrvelArchivable
{
public:
    /// The mapper of the process: made on first use, never destroyed, never null.
    static COrvelAnimationCollapsingGroupGuidToCaptionMapper* Instance();

    /// The captions and the number of the next default one. What is read is added. Nothing in archives older than
    /// captions.
    bool ArchiveReadWrite(COrvelArchiveBase& archive) override;

    /// An empty caption becomes "Group 0", "Group 1" and so on: each empty caption uses up a number. Nothing happens
    /// for an invalid id.
    void AddCaption(const COrvelUUID& groupId, COrvelString caption);
    /// Null when the group has none; valid for good.
    const COrvelString* FindCaption(const COrvelUUID& groupId) const;
    const std::map<COrvelUUID, COrvelString>& Captions() const { return captions; }

private:
    bool ReadCaptions(COrvelArchiveBase& archive, uint32 count);
    bool WriteCaptions(COrvelArchiveBase& archive);

    std::map<COrvelUUID, COrvelString> captions;
    int nextDefaultNumber = 0;
};

} // namespace Orvel
