// What the two kinds of key frame data store that came late and are left out of older archives.

#include "animation/COrvelKeyFrameDataHideShow.h"
#include "animation/COrvelKeyFrameDataMorph.h"
#include "animation/records/LayoutVersions.h"
#include "platform/core/COrvelArchiveBase.h"

namespace Orvel
{

bool COrvelKeyFrameDataHideShow::ArchiveReadWrite(COrvelArchiveBase& archive)
{
    if (archive.Version() < LayoutVersion::hideShow || !archive.HasExtendedRecords())
        return true;
    return COrvelArchivable::ArchiveReadWrite(archive) && archive.ReadWrite(hidden);
}

bool COrvelKeyFrameDataMorph::ArchiveReadWrite(COrvelArchiveBase& archive)
{
    if (archive.Version() < LayoutVersion::morph || !archive.HasExtendedRecords())
        return true;
    if (!COrvelArchivable::ArchiveReadWrite(archive))
        return false;
    if (archive.Version() >= LayoutVersion::morphTarget)
        return archive.ReadWrite(objectID, weight);
    auto count = static_cast<uint32>(weights.size());
    if (!archive.ReadWriteCount(count, sizeof(double)))
        return false;
    weights.resize(count);
    return archive.ReadWrite(std::span<double>(weights));
}

} // namespace Orvel
