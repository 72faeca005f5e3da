#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

namespace Orvel::Cli
{

/// What a working process may use up.
struct WorkLimits
{
    std::chrono::milliseconds time{0}; ///< while the program is not suspended; 0: no limit
    std::uint64_t memoryInBytes = 0;   ///< for its data; 0: no limit
};

/// Generous limits for work on a file: one minute and 4 GiB, and with every MiB of the file 4 seconds and 100 MiB
/// more, but no more memory than the machine has. The base is long because a small file may name big ones.
[[nodiscard]] WorkLimits DefaultWorkLimits(std::uint64_t inputBytes);

/// What the user can set for supervised work.
struct LimitOptions
{
    std::optional<std::chrono::milliseconds> time; ///< nothing: in proportion to the input; 0: no limit
    std::optional<std::uint64_t> memoryInBytes;    ///< nothing: in proportion to the input; 0: no limit
};

/// What the user has chosen, and DefaultWorkLimits where nothing was.
[[nodiscard]] WorkLimits LimitsFor(const LimitOptions& chosen, std::uint64_t inputBytes);

} // namespace Orvel::Cli
