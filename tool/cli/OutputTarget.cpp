#include "tool/cli/OutputTarget.h"

#include "tool/cli/RegularFileTarget.h"
#include "tool/cli/StreamTarget.h"
#include "tool/cli/Text.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <optional>
#include <system_error>

namespace Orvel::Cli
{

namespace
{

constexpr std::array<std::string_view, 4> NamesOfStandardOutput{"-", "/dev/stdout", "/dev/fd/1", "/proc/self/fd/1"};

void RefuseInput(const std::string& name, const struct stat& target, const InputFile& input)
{
    if (target.st_dev == input.device && target.st_ino == input.inode)
        throw CannotWrite(name, "it is the input file");
}

std::unique_ptr<OutputTarget> OpenStandardOutput(const std::string& name, std::string_view extension,
                                                 const InputFile& input, const std::filesystem::path& temporary)
{
    struct stat status
    {};
    if (::fstat(STDOUT_FILENO, &status) != 0)
        throw CannotWrite(name, std::generic_category().message(errno));
    RefuseInput(name, status, input);
    if (::isatty(STDOUT_FILENO) == 1)
        throw CannotWrite(name, "standard output is a terminal");
    return std::make_unique<StreamTarget>(StreamTarget::StandardOutput, temporary, extension);
}

/// @return the status of what stands there, links followed; nothing when the name is free.
std::optional<struct stat> StatusOf(const std::string& name)
{
    struct stat status
    {};
    if (::stat(name.c_str(), &status) == 0)
        return status;
    if (errno != ENOENT)
        throw CannotWrite(name, std::generic_category().message(errno));
    return std::nullopt;
}

void CheckExisting(const std::string& name, const struct stat& status, const InputFile& input, ExistingFile existing)
{
    if (S_ISDIR(status.st_mode))
        throw CannotWrite(name, "it is a folder");
    RefuseInput(name, status, input);
    if (S_ISREG(status.st_mode) && existing == ExistingFile::Keep)
        throw CannotWrite(name, "it exists already");
    if (::faccessat(AT_FDCWD, name.c_str(), W_OK, AT_EACCESS) != 0)
        throw CannotWrite(name, std::generic_category().message(errno));
}

} // namespace

std::unique_ptr<OutputTarget> OutputTarget::Open(const std::string& name, std::string_view extension,
                                                 const InputFile& input, ExistingFile existing,
                                                 const std::filesystem::path& temporary)
{
    if (std::find(NamesOfStandardOutput.begin(), NamesOfStandardOutput.end(), name) != NamesOfStandardOutput.end())
        return OpenStandardOutput(name, extension, input, temporary);
    const std::optional<struct stat> status = StatusOf(name);
    if (status)
        CheckExisting(name, *status, input, existing);
    if (status && !S_ISREG(status->st_mode))
        return std::make_unique<StreamTarget>(name, temporary, extension);
    return std::make_unique<RegularFileTarget>(name, extension, existing);
}

void RefuseInputAsOutput(const std::string& name, const InputFile& input)
{
    struct stat status
    {};
    if (::stat(name.c_str(), &status) == 0)
        RefuseInput(name, status, input);
}

Failure CannotWrite(std::string_view name, const std::string& reason)
{
    return Failure("cannot write " + (name == "-" ? "to standard output" : Quoted(name)) + ": " + reason);
}

} // namespace Orvel::Cli
