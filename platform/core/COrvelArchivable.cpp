#include "platform/core/COrvelArchivable.h"

#include "platform/core/COrvelArchiveBase.h"

namespace Orvel
{

COrvelArchivable::~COrvelArchivable() = default;

bool COrvelArchivable::ArchiveReadWrite(COrvelArchiveBase& archive)
{
    return archive.IsReaderArchive() ? ReadFromArchive(archive) : WriteIntoArchive(archive);
}

// The two directions must not call back: that would never end.

bool COrvelArchivable::ReadFromArchive(COrvelArchiveBase&)
{
    return true;
}

bool COrvelArchivable::WriteIntoArchive(COrvelArchiveBase&)
{
    return true;
}

} // namespace Orvel
