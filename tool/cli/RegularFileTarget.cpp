#include "tool/cli/RegularFileTarget.h"

#include "tool/cli/Text.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <system_error>
#include <utility>

namespace Orvel::Cli
{

namespace
{

constexpr int MostLinks = 40; // as many as the kernel follows

std::string SystemMessage()
{
    return std::generic_category().message(errno);
}

std::filesystem::path EndOfLinks(const std::string& name)
{
    std::filesystem::path path = name;
    for (int links = 0; links < MostLinks; ++links) {
        std::error_code noLink;
        const auto next = std::filesystem::read_symlink(path, noLink);
        if (noLink)
            return path;
        path = path.parent_path() / next;
    }
    throw CannotWrite(name, std::generic_category().message(ELOOP));
}

mode_t ModeOfNewFiles()
{
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return mode_t{0666} & ~mask;
}

} // namespace

RegularFileTarget::RegularFileTarget(std::string targetName, std::string_view extension, ExistingFile existingFile)
    : name(std::move(targetName))
    , existing(existingFile)
    , target(EndOfLinks(name))
{
    const std::filesystem::path parent = target.has_parent_path() ? target.parent_path() : ".";
    folder = FileDescriptor(::open(parent.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    if (!folder.IsOpen())
        throw CannotWrite(name, "folder " + Quoted(parent.string()) + ": " + SystemMessage());
    if (!target.has_filename())
        throw CannotWrite(name, "it is a folder");
    fileToWrite = (parent / ".orvelprc-XXXXXX").string().append(extension);
    const FileDescriptor created(::mkostemps(fileToWrite.data(), static_cast<int>(extension.size()), O_CLOEXEC));
    if (!created.IsOpen())
        throw CannotWrite(name, "folder " + Quoted(parent.string()) + ": " + SystemMessage());
    temporaryName = std::filesystem::path(fileToWrite).filename().string();
}

RegularFileTarget::~RegularFileTarget()
{
    if (!temporaryName.empty())
        ::unlinkat(folder.Get(), temporaryName.c_str(), 0);
}

std::uint64_t RegularFileTarget::Deliver(const SignalWatch&)
{
    struct stat written
    {};
    if (::fstatat(folder.Get(), temporaryName.c_str(), &written, AT_SYMLINK_NOFOLLOW) != 0)
        throw CannotWrite(name, SystemMessage());
    GiveModeAndOwner();
    MoveIntoPlace();
    temporaryName.clear();
    return static_cast<std::uint64_t>(written.st_size);
}

void RegularFileTarget::GiveModeAndOwner() const
{
    mode_t mode = ModeOfNewFiles();
    struct stat previous
    {};
    if (::stat(target.c_str(), &previous) == 0) {
        mode = previous.st_mode & 07777U;
        // Only the system's administrator may give files away; for all others the file becomes their own, as it does
        // with every program that replaces files. Changing the owner clears bits of the mode, so it goes first.
        if (::fchownat(folder.Get(), temporaryName.c_str(), previous.st_uid, previous.st_gid, 0) != 0)
            mode &= 0777U;
    }
    if (::fchmodat(folder.Get(), temporaryName.c_str(), mode, 0) != 0)
        throw CannotWrite(name, SystemMessage());
}

void RegularFileTarget::MoveIntoPlace() const
{
    const std::string targetName = target.filename().string();
    const unsigned int keepExisting = existing == ExistingFile::Keep ? RENAME_NOREPLACE : 0;
    const int from = folder.Get();
    if (::renameat2(from, temporaryName.c_str(), from, targetName.c_str(), keepExisting) == 0)
        return;
    // Some file systems do not know the flag; a new link never replaces anything either.
    if (errno == EINVAL && keepExisting != 0 && ::linkat(from, temporaryName.c_str(), from, targetName.c_str(), 0) == 0)
    {
        ::unlinkat(from, temporaryName.c_str(), 0);
        return;
    }
    throw CannotWrite(name, SystemMessage());
}

} // namespace Orvel::Cli
