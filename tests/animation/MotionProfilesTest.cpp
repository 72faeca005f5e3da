#include "animation/MotionProfiles.h"

#include <gtest/gtest.h>

#include <limits>

namespace Orvel
{
namespace
{

TEST(LinearMotion, RunsBeyondItsEndsAndStaysForAnEmptyRange)
{
    EXPECT_EQ(Lerp(2, 6, 15, 10, 20), 4);
    EXPECT_EQ(Lerp(2, 6, 25, 10, 20), 8);
    EXPECT_EQ(Lerp(2, 6, 25, 10, 10), 2);
    EXPECT_EQ(LerpFraction(COrvel3DVertex(1, 2, 3), COrvel3DVertex(5, 0, 3), 0.25), COrvel3DVertex(2, 1.5, 3));
}

TEST(Easing, FollowsItsPhases)
{
    struct Case
    {
        int frames, elapsed, out, in;
        double want;
    };
    // Worked out from sums of equal accelerations: in n steps over the whole gap, step k is k times the first.
    const Case cases[] = {{10, 5, 1, 2, 0.6},  {10, 6, 1, 2, 0.6}, {10, 10, 1, 2, 1},   {10, 1, 0, 2, 0.1},
                          {10, 9, 0, 2, 0.98}, {10, 10, 0, 3, 1},  {10, 1, 1, 0, 0.02}, {10, 9, 3, 0, 0.9},
                          {10, 5, 3, 3, 0.6},  {10, 3, 2, 1, 0.3}, {10, 9, 1, 1, 0.9},  {10, 5, 3, 2, 0.6},
                          {1, 0, 1, 2, 0},     {1, 1, 1, 2, 1}};
    for (const Case& test : cases)
        EXPECT_NEAR(EaseFraction(test.frames, test.elapsed, test.out, test.in), test.want, 1e-15)
            << test.elapsed << " of " << test.frames << ", out " << test.out << " in " << test.in;
}

TEST(Easing, NeverTurnsBackAndEndsExactlyInAGap)
{
    for (int modes = 0; modes < 16; ++modes) {
        SCOPED_TRACE(modes);
        const int out = modes / 4;
        const int in = modes % 4;
        EXPECT_EQ(EasingApplies(out, in), (out != 0 && out != 2) || (in != 0 && in != 1));
        for (const int frames : {1, 2, 3, 7, 48}) {
            double before = 0;
            for (int frame = 3; frame <= 3 + frames; ++frame) {
                const double t = GapFraction(frame, 3, 3 + frames, out, in);
                EXPECT_GE(t, before) << frame << " of " << frames;
                before = t;
            }
            EXPECT_EQ(EaseScalar(0.3, 0.7, 3 + frames, 3, 3 + frames, out, in), 0.7);
            EXPECT_EQ(EaseScalar(0.3, 0.7, 3, 3, 3 + frames, out, in), 0.3);
            EXPECT_EQ(EaseScalar(0.3, 0.7, 99999, 3 + frames, 3, out, in), 0.7) << "the ends may stand reversed";
        }
        // The longest gap that there can be.
        constexpr int first = std::numeric_limits<int>::min();
        constexpr int last = std::numeric_limits<int>::max();
        EXPECT_NEAR(GapFraction(0, first, last, out, in), EaseFraction(2048, 1024, out, in), 1e-3);
    }
}

TEST(ConstantSpeedProfile, NeverTurnsBackAndEndsExactlyWhateverItsPhases)
{
    for (const int frames : {2, 3, 10, 37}) {
        for (int a = 0; a < frames; ++a) {
            for (int b = a; b < frames; ++b) {
                double before = 0;
                for (int step = 0; step < frames; ++step) {
                    const double done = ProfileAngle({frames, step, a, b}, 90);
                    EXPECT_GE(done, before - 1e-12) << step << " of " << frames << ", " << a << " to " << b;
                    before = done;
                }
                EXPECT_EQ(before, 90) << frames << ", " << a << " to " << b;
            }
        }
    }
    const int huge = std::numeric_limits<int>::max();
    EXPECT_EQ(ProfileAngle({huge, huge - 1, huge - 2, huge - 1}, 7), 7);
}

TEST(ConstantSpeedProfile, AcceleratesCruisesAndDecelerates)
{
    // Ten frames, acceleration over two steps, cruising for five, braking over two: speed 720 / 14 a step.
    const double speed = 720.0 / 14.0;
    EXPECT_NEAR(ProfileAngle({10, 1, 2, 7}, 360), speed / 2, 1e-12);
    EXPECT_NEAR(ProfileAngle({10, 2, 2, 7}, 360), speed * 1.5, 1e-12);
    EXPECT_NEAR(ProfileAngle({10, 3, 2, 7}, 360), speed * 1.5 + (360 - 3 * speed) / 5, 1e-12);
    EXPECT_NEAR(ProfileAngle({10, 8, 2, 7}, 360), 360 - speed / 2, 1e-12);
    // Constant speed from and to step 0: braking all the way.
    EXPECT_NEAR(ProfileAngle({10, 1, 0, 0}, 360), 40, 1e-12);
}

TEST(Trapezoid, IsContinuousAndEndsAtOne)
{
    const double phases[][2] = {{0, 1}, {0.25, 0.5}, {0, 0}, {1, 1}, {0.3, 0.3}, {0, 0.7}, {0.4, 1}};
    for (const auto& [a, b] : phases) {
        EXPECT_EQ(TrapezoidFraction(0, a, b), 0) << a << " " << b;
        EXPECT_NEAR(TrapezoidFraction(1, a, b), 1, 1e-15) << a << " " << b;
        double before = 0;
        for (int i = 1; i <= 1000; ++i) {
            const double done = TrapezoidFraction(i / 1000.0, a, b);
            EXPECT_GE(done, before) << i << " " << a << " " << b;
            EXPECT_LT(done - before, 0.0021) << i << " " << a << " " << b;
            before = done;
        }
    }
    EXPECT_EQ(TrapezoidFraction(0.25, 0, 1), 0.25);
    // Half the speed while accelerating: 1 / 4 of the way takes 2 / 5 of it at the height 8 / 5.
    EXPECT_NEAR(TrapezoidFraction(0.25, 0.25, 0.5), 0.2, 1e-15);
    EXPECT_NEAR(TrapezoidFraction(0.5, 0.25, 0.5), 0.6, 1e-15);
}

} // namespace
} // namespace Orvel
