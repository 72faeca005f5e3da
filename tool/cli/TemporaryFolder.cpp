#include "tool/cli/TemporaryFolder.h"

#include "tool/cli/Errors.h"
#include "tool/cli/Text.h"

#include <cerrno>
#include <cstdlib>
#include <string>
#include <system_error>

namespace Orvel::Cli
{

namespace
{

std::filesystem::path ParentFolder()
{
    const char* const chosen = std::getenv("TMPDIR");
    const std::filesystem::path parent = chosen != nullptr && *chosen != '\0' ? chosen : "/tmp";
    std::error_code error;
    auto absolute = std::filesystem::absolute(parent, error);
    return error ? parent : absolute;
}

/// @param pattern ends with six X.
std::filesystem::path MakeFolder(const std::filesystem::path& parent, const char* pattern)
{
    std::string name = (parent / pattern).string();
    if (::mkdtemp(name.data()) == nullptr) {
        throw Failure("cannot create a temporary folder in " + Quoted(parent.string()) + ": " +
                      std::generic_category().message(errno));
    }
    return name;
}

} // namespace

TemporaryFolder::TemporaryFolder()
    : path(MakeFolder(ParentFolder(), "orvelprc-XXXXXX"))
{}

TemporaryFolder::TemporaryFolder(const std::filesystem::path& parent)
    : path(MakeFolder(parent, ".orvelprc-XXXXXX"))
{}

TemporaryFolder::~TemporaryFolder()
{
    std::error_code nothingElseToTry;
    std::filesystem::remove_all(path, nothingElseToTry);
}

} // namespace Orvel::Cli
