#include "tool/cli/Version.h"

#include "OrvelRevision.h"

namespace Orvel::Cli
{

std::string Version()
{
    return ORVEL_VERSION;
}

std::string VersionWithRevision()
{
    const std::string revision = ORVEL_REVISION;
    return revision.empty() ? Version() : Version() + " (revision " + revision + ")";
}

} // namespace Orvel::Cli
