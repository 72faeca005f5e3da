// The record of the captions of collapsing groups.

#include "animation/COrvelAnimationCollapsingGroupGuidToCaptionMapper.h"
#include "animation/records/LayoutVersions.h"
#include "platform/core/COrvelArchiveBase.h"

#include <utility>

namespace Orvel
{

bool COrvelAnimationCollapsingGroupGuidToCaptionMapper::ArchiveReadWrite(COrvelArchiveBase& archive)
{
    if (archive.Version() < LayoutVersion::caption || !archive.HasExtendedRecords())
        return true;
    constexpr uint32 bytesPerCaption = 20; // the id and the length of the text
    auto count = static_cast<uint32>(captions.size());
    if (!archive.ReadWrite(nextDefaultNumber) || !archive.ReadWriteCount(count, bytesPerCaption))
        return false;
    return archive.IsReaderArchive() ? ReadCaptions(archive, count) : WriteCaptions(archive);
}

bool COrvelAnimationCollapsingGroupGuidToCaptionMapper::ReadCaptions(COrvelArchiveBase& archive, uint32 count)
{
    for (uint32 k = 0; k < count; ++k) {
        COrvelUUID group;
        COrvelString caption;
        if (!archive.ReadWrite(group, caption))
            return false;
        AddCaption(group, std::move(caption));
    }
    return true;
}

bool COrvelAnimationCollapsingGroupGuidToCaptionMapper::WriteCaptions(COrvelArchiveBase& archive)
{
    for (auto& [id, caption] : captions) {
        COrvelUUID group = id;
        if (!archive.ReadWrite(group, caption))
            return false;
    }
    return true;
}

} // namespace Orvel
