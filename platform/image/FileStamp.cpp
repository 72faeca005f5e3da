#include "platform/image/FileStamp.h"

#include "platform/core/COrvelString.h"

#if defined(_WIN32)
#include <filesystem>
#else
#include <sys/stat.h>
#endif

namespace Orvel
{

#if defined(_WIN32)

std::optional<FileStamp> StampOfFile(const COrvelString& fileName)
{
    const std::filesystem::path path(fileName.WideCString());
    std::error_code error;
    const auto size = std::filesystem::file_size(path, error);
    if (error)
        return std::nullopt;
    const auto changed = std::filesystem::last_write_time(path, error);
    if (error)
        return std::nullopt;
    return FileStamp{0, 0, size, static_cast<std::int64_t>(changed.time_since_epoch().count())};
}

#else

std::optional<FileStamp> StampOfFile(const COrvelString& fileName)
{
    struct stat status;
    if (stat(fileName.CString(), &status) != 0)
        return std::nullopt;
    // The time of the last status change cannot be set back by programs, unlike the time of modification.
    constexpr std::int64_t NanosecondsPerSecond = 1000000000;
    return FileStamp{static_cast<std::uint64_t>(status.st_dev), static_cast<std::uint64_t>(status.st_ino),
                     static_cast<std::uint64_t>(status.st_size),
                     std::int64_t{status.st_ctim.tv_sec} * NanosecondsPerSecond + status.st_ctim.tv_nsec};
}

#endif

} // namespace Orvel
