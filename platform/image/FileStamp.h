#pragma once

#include <cstdint>
#include <optional>

namespace Orvel
{

class COrvelString;

/// Tells whether a file is still the one that was read: two stamps of one name differ when the file was replaced or
/// written in between.
struct FileStamp
{
    std::uint64_t device = 0;
    std::uint64_t file = 0;   ///< inode; 0 where the system has none
    std::uint64_t size = 0;   ///< bytes
    std::int64_t changed = 0; ///< time of the last change, in the file system's own ticks

    bool operator==(const FileStamp&) const = default;
};

/// @return nothing when there is no such file, or when it cannot be asked.
[[nodiscard]] std::optional<FileStamp> StampOfFile(const COrvelString& fileName);

} // namespace Orvel
