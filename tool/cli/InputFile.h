#pragma once

#include <sys/types.h>

#include <cstdint>
#include <string>

namespace Orvel::Cli
{

/// What is known of an input file before it is read.
struct InputFile
{
    std::string path;
    std::uint64_t size = 0; ///< in bytes, above 0
    dev_t device = 0;       ///< with `inode`: which file it is, whatever its names
    ino_t inode = 0;
};

/// Looks at an input file, links followed.
///
/// @throws Failure when it is missing, not a regular file, not readable, or empty.
[[nodiscard]] InputFile ExamineInput(const std::string& path);

} // namespace Orvel::Cli
