#include "animation/TransformInterpolation.h"

#include "tests/animation/KeyFrameFixture.h"

#include <algorithm>
#include <cmath>
#include <random>

namespace Orvel
{
namespace
{

bool IsFinite(const COrvelMatrix& matrix)
{
    return std::ranges::all_of(matrix.Values(), [](double value) { return std::isfinite(value); });
}

TEST(TransformInterpolation, MeetsBothEndsStaysForEqualOnesAndRunsBackwardsAlike)
{
    std::mt19937 random(7);
    std::uniform_real_distribution<double> number(-3.0, 3.0);
    const auto any = [&] {
        COrvelMatrix matrix;
        for (int k = 0; k < 12; ++k)
            matrix.M(k / 4, k % 4) = number(random);
        return matrix;
    };
    const auto placement = [&] {
        return Shift(number(random), number(random), number(random)) *
               Turn(number(random), number(random), number(random), number(random));
    };
    for (int i = 0; i < 500; ++i) {
        SCOPED_TRACE(i);
        const COrvelMatrix first = any();
        const COrvelMatrix second = any();
        const COrvel3DVertex pivot(1, -2, 4);
        EXPECT_TRUE(InterpolateDecomposed(first, second, 0).IsNear(first, 1e-9));
        EXPECT_TRUE(InterpolateDecomposed(first, second, 1).IsNear(second, 1e-9));
        EXPECT_EQ(InterpolateTransformGap(first, second, pivot, 10, 10, 20, 1, 2), first);
        EXPECT_EQ(InterpolateTransformGap(first, second, pivot, 20, 10, 20, 1, 2), second);
        EXPECT_TRUE(InterpolateTransformGap(first, first, pivot, 14, 10, 20, 1, 2).IsNear(first, 1e-6));
        EXPECT_TRUE(IsFinite(InterpolateTransformGap(first, second, pivot, 14, 10, 20, 0, 0)));
        const COrvelMatrix here = placement();
        const COrvelMatrix there = placement();
        EXPECT_TRUE(InterpolateAboutPivot(here, there, pivot, 0.3)
                        .IsNear(InterpolateAboutPivot(there, here, pivot, 0.7), 1e-9));
    }
}

TEST(TransformInterpolation, SurvivesSingularAndMirroredMatrices)
{
    const COrvelMatrix matrices[] = {COrvelMatrix::CreateScalling({1, 2, 0}), COrvelMatrix::CreateScalling({1, -2, 3}),
                                     COrvelMatrix::CreateScalling({0, 0, 0})};
    for (const COrvelMatrix& first : matrices)
        for (const COrvelMatrix& second : matrices)
            for (int frame = 0; frame <= 4; ++frame)
                EXPECT_TRUE(IsFinite(InterpolateTransformGap(first, second, {1, 1, 1}, frame, 0, 4, 0, 0)));
}

} // namespace
} // namespace Orvel
