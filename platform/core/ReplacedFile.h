#pragma once

#include "platform/core/COrvelString.h"

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <span>

namespace Orvel
{

/// The name in the form that file streams open on every system.
std::filesystem::path FilePath(const COrvelString& fileName);

/// A file that is written beside another one and takes its place when it is complete. Links are followed and the
/// permissions of the replaced file kept; what is no regular file, a device or a pipe, is written directly.
class ReplacedFile
{
public:
    explicit ReplacedFile(const std::filesystem::path& target);
    ReplacedFile(const ReplacedFile&) = delete;
    ReplacedFile& operator=(const ReplacedFile&) = delete;
    /// Removes the new file unless it was committed.
    ~ReplacedFile();

    /// @return false when the file could not be opened or written.
    bool Write(std::span<const std::uint8_t> bytes);
    /// @return false when the bytes did not all reach the file, or it cannot take the other's place.
    bool Commit();

private:
    bool IsDirect() const { return written == target; }

    std::filesystem::path target;
    std::filesystem::path written; // the target itself when that is no regular file
    std::ofstream stream;
};

} // namespace Orvel
