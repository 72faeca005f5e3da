#include "tool/cli/WorkLimits.h"

#include <unistd.h>

#include <algorithm>

namespace Orvel::Cli
{

namespace
{

constexpr std::uint64_t MiB = std::uint64_t{1} << 20;

std::uint64_t MemoryOfTheMachine()
{
    const long pages = ::sysconf(_SC_PHYS_PAGES);
    const long pageSize = ::sysconf(_SC_PAGESIZE);
    return pages > 0 && pageSize > 0 ? static_cast<std::uint64_t>(pages) * static_cast<std::uint64_t>(pageSize)
                                     : UINT64_MAX;
}

} // namespace

WorkLimits DefaultWorkLimits(std::uint64_t inputBytes)
{
    // No scene file comes near the cap; it keeps the products below in range.
    const std::uint64_t inputMiB = std::min(inputBytes, std::uint64_t{1} << 50) / MiB;
    WorkLimits limits;
    limits.time = std::chrono::seconds(60 + 4 * inputMiB);
    limits.memoryInBytes = std::min(4096 * MiB + 100 * inputMiB * MiB, MemoryOfTheMachine());
    return limits;
}

WorkLimits LimitsFor(const LimitOptions& chosen, std::uint64_t inputBytes)
{
    const WorkLimits usual = DefaultWorkLimits(inputBytes);
    return {chosen.time.value_or(usual.time), chosen.memoryInBytes.value_or(usual.memoryInBytes)};
}

} // namespace Orvel::Cli
