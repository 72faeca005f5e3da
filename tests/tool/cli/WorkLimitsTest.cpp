#include "tool/cli/WorkLimits.h"

#include <gtest/gtest.h>

namespace Orvel::Cli
{

TEST(WorkLimits, GrowWithTheInput)
{
    constexpr std::uint64_t MiB = std::uint64_t{1} << 20;
    using namespace std::chrono_literals;
    EXPECT_EQ(DefaultWorkLimits(0).time, 60s);
    EXPECT_EQ(DefaultWorkLimits(MiB - 1).time, 60s);
    EXPECT_EQ(DefaultWorkLimits(50 * MiB).time, 260s);
    EXPECT_GE(DefaultWorkLimits(50 * MiB).memoryInBytes, DefaultWorkLimits(0).memoryInBytes);
    // Sizes that no file has neither overflow nor take the limits away.
    EXPECT_GT(DefaultWorkLimits(UINT64_MAX).time, 260s);
    EXPECT_GT(DefaultWorkLimits(UINT64_MAX).memoryInBytes, 0U);
}

} // namespace Orvel::Cli
