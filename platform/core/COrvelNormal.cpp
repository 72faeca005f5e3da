#include "platform/core/COrvelNormal.h"

#include "platform/core/COrvelArchiveBase.h"

namespace Orvel
{

bool COrvelNormal::ArchiveReadWrite(COrvelArchiveBase& archive)
{
    return archive.ReadWrite(point, direction);
}

} // namespace Orvel
