#include "animation/TransformInterpolation.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace Orvel
{
namespace
{

COrvelMatrix RandomMatrix(std::mt19937& random)
{
    std::uniform_real_distribution<double> number(-3.0, 3.0);
    COrvelMatrix matrix;
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 4; ++column)
            matrix.M(row, column) = number(random);
    }
    return matrix;
}

bool IsFinite(const COrvelMatrix& matrix)
{
    for (const double value : matrix.Values()) {
        if (!std::isfinite(value))
            return false;
    }
    return true;
}

TEST(TransformInterpolation, MeetsBothEndsAndStaysForEqualOnes)
{
    std::mt19937 random(7);
    for (int i = 0; i < 500; ++i) {
        const COrvelMatrix first = RandomMatrix(random);
        const COrvelMatrix second = RandomMatrix(random);
        const COrvel3DVertex pivot(1.0, -2.0, 4.0);
        EXPECT_TRUE(InterpolateDecomposed(first, second, 0.0).IsNear(first, 1e-9)) << i;
        EXPECT_TRUE(InterpolateDecomposed(first, second, 1.0).IsNear(second, 1e-9)) << i;
        EXPECT_EQ(InterpolateTransformGap(first, second, pivot, 10, 10, 20, 1, 2), first);
        EXPECT_EQ(InterpolateTransformGap(first, second, pivot, 20, 10, 20, 1, 2), second);
        EXPECT_TRUE(InterpolateTransformGap(first, first, pivot, 14, 10, 20, 1, 2).IsNear(first, 1e-6)) << i;
        EXPECT_TRUE(IsFinite(InterpolateTransformGap(first, second, pivot, 14, 10, 20, 0, 0))) << i;
    }
}

TEST(TransformInterpolation, KeepsRotationsRotationsOnTheShorterWay)
{
    const COrvelMatrix turned = COrvelMatrix().DefineByRotation(350.0 / 180.0 * M_PI, 0.0, 0.0, 1.0);
    const COrvelMatrix half = InterpolateDecomposed(COrvelMatrix(), turned, 0.5);
    EXPECT_TRUE(half.IsNear(COrvelMatrix().DefineByRotation(-5.0 / 180.0 * M_PI, 0.0, 0.0, 1.0), 1e-12));
}

TEST(TransformInterpolation, TurnsAboutThePivot)
{
    // A quarter turn about z through the pivot: the pivot must not move on the way.
    const COrvel3DVertex pivot(5.0, 3.0, -2.0);
    const COrvelMatrix first = COrvelMatrix::CreateTranslation({7.0, 11.0, 13.0});
    const COrvelMatrix second = first * COrvelMatrix::CreateTranslation(pivot) *
                                COrvelMatrix().DefineByRotation(M_PI / 2.0, 0.0, 0.0, 1.0) *
                                COrvelMatrix::CreateTranslation(-pivot);
    const COrvel3DVertex inWorld = first * pivot;
    for (int frame = 0; frame <= 8; ++frame) {
        const COrvel3DVertex moved = InterpolateTransformGap(first, second, pivot, frame, 0, 8, 0, 0) * pivot;
        EXPECT_LT((moved - inWorld).Length(), 1e-12) << frame;
    }
    const COrvelMatrix half = InterpolateTransformGap(first, second, pivot, 4, 0, 8, 0, 0);
    EXPECT_NEAR(half.M(0, 0), std::sqrt(0.5), 1e-12);
    // Without a pivot of its own the translation takes the straight way.
    const COrvelMatrix plain = InterpolateTransformGap(first, second, {}, 4, 0, 8, 0, 0);
    EXPECT_LT((plain.Translation() - (first.Translation() + second.Translation()) * 0.5).Length(), 1e-12);
}

TEST(TransformInterpolation, SurvivesSingularAndMirroredMatrices)
{
    const COrvelMatrix flat = COrvelMatrix::CreateScalling({1.0, 2.0, 0.0});
    const COrvelMatrix mirrored = COrvelMatrix::CreateScalling({1.0, -2.0, 3.0});
    const COrvelMatrix nothing = COrvelMatrix::CreateScalling({0.0, 0.0, 0.0});
    for (const COrvelMatrix& first : {flat, mirrored, nothing}) {
        for (const COrvelMatrix& second : {flat, mirrored, nothing}) {
            for (int frame = 0; frame <= 4; ++frame)
                EXPECT_TRUE(IsFinite(InterpolateTransformGap(first, second, {1.0, 1.0, 1.0}, frame, 0, 4, 0, 0)));
        }
    }
}

} // namespace
} // namespace Orvel
