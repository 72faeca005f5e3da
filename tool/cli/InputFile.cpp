#include "tool/cli/InputFile.h"

#include "tool/cli/Errors.h"
#include "tool/cli/Text.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace Orvel::Cli
{

namespace
{

[[noreturn]] void Refuse(const std::string& path, const std::string& reason)
{
    throw Failure("cannot read " + Quoted(path) + ": " + reason);
}

} // namespace

InputFile ExamineInput(const std::string& path)
{
    struct stat status
    {};
    // The effective user counts, as it does for opening.
    if (::stat(path.c_str(), &status) != 0 || ::faccessat(AT_FDCWD, path.c_str(), R_OK, AT_EACCESS) != 0)
        Refuse(path, std::generic_category().message(errno));
    if (S_ISDIR(status.st_mode))
        Refuse(path, "it is a folder");
    if (!S_ISREG(status.st_mode))
        Refuse(path, "it is not a regular file");
    if (status.st_size == 0)
        Refuse(path, "the file is empty");
    return {path, static_cast<std::uint64_t>(status.st_size), status.st_dev, status.st_ino};
}

} // namespace Orvel::Cli
