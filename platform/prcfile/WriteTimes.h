#pragma once

#include "platform/prcfile/Export.h"

#include <chrono>

namespace prc
{

/// How long the writing of files has taken, by kind of work.
struct WriteTimes
{
    std::chrono::nanoseconds encoding{};    ///< checks, bit streams, ids
    std::chrono::nanoseconds compression{}; ///< of sections and pictures
    std::chrono::nanoseconds output{};      ///< to the disk, or wherever the files go
};

/// The sum over all files that this process has written so far, by the clock on the wall. For reports: no file depends
/// on it.
[[nodiscard]] PRCFILE_API WriteTimes writeTimes();

} // namespace prc
