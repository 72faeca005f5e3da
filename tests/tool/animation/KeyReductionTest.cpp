#include "tool/animation/KeyReduction.h"

#include <gmock/gmock.h>

#include <cmath>
#include <functional>
#include <vector>

namespace Orvel::Animate
{
namespace
{

using testing::ElementsAre;

/// Reduces numbers, blended along straight lines, to within 0.25.
std::vector<KeyRange> Reduce(const std::vector<double>& samples)
{
    const auto at = [&](int frame) { return samples.at(static_cast<std::size_t>(frame)); };
    SampledMotion motion;
    motion.lastFrame = static_cast<int>(samples.size()) - 1;
    motion.isSame = [=](int frame, int other) { return at(frame) == at(other); };
    motion.isNearBlend = [=](int first, int second, int from, int to, int frame) {
        const double t = static_cast<double>(frame - from) / (to - from);
        return std::abs(at(first) + t * (at(second) - at(first)) - at(frame)) <= 0.25;
    };
    return ReduceKeys(motion);
}

TEST(KeyReduction, KeepsCornersAndStretchesOfRest)
{
    EXPECT_THAT(Reduce({7}), ElementsAre(KeyRange{0, 0}));
    EXPECT_THAT(Reduce({3, 3, 3, 3}), ElementsAre(KeyRange{0, 3}));
    EXPECT_THAT(Reduce({0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10}), ElementsAre(KeyRange{0, 0}, KeyRange{10, 10}));
    EXPECT_THAT(Reduce({0, 2, 4, 6, 8, 5, 2, -1}), ElementsAre(KeyRange{0, 0}, KeyRange{4, 4}, KeyRange{7, 7}));
    // Steps leave no gap to blend in; a ramp begins where rest ends.
    EXPECT_THAT(Reduce({5, 5, 9, 9, 9, 1}), ElementsAre(KeyRange{0, 1}, KeyRange{2, 4}, KeyRange{5, 5}));
    EXPECT_THAT(Reduce({5, 5, 5, 8, 11, 14}), ElementsAre(KeyRange{0, 2}, KeyRange{5, 5}));
}

} // namespace
} // namespace Orvel::Animate
