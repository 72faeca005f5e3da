#include "animation/Angles.h"
#include "animation/CameraInterpolation.h"
#include "animation/CameraPaths.h"
#include "tests/animation/KeyFrameFixture.h"

#include <cmath>

namespace Orvel
{
namespace
{

constexpr double Tolerance = 1e-12;

TEST(CameraOrbit, StopsOneStepShortAtConstantSpeedAndGoesClockwise)
{
    const COrvelBasicCamera base = LevelCamera();
    for (int step = 0; step < 36; ++step) {
        SCOPED_TRACE(step);
        const COrvelBasicCamera camera = OrbitCamera(base, {36, step, 0, 35}, Radians(360), false);
        const double turn = Radians(10.0 * step);
        ExpectNear(camera.Position(), {-10 * std::sin(turn), -10 * std::cos(turn), 0}, Tolerance);
        ExpectNear(camera.LookAt(), {0, 0, 0}, Tolerance);
        ExpectNear(camera.CamUp(), {0, 0, 1}, Tolerance);
        EXPECT_EQ(camera.FOV(), 42);
        EXPECT_TRUE(camera.DOFIsEnabled());
    }
    ExpectNear(OrbitCamera(base, {10, 9, 2, 7}, Radians(90), false).Position(), {-10, 0, 0}, Tolerance);
    ExpectNear(OrbitCamera(base, {1, 0, 0, 0}, Radians(90), true).Position(), base.Position(), Tolerance);
}

TEST(CameraOrbit, DescendsInTheTimingOfItsTurn)
{
    COrvelBasicCamera base = LevelCamera();
    base.SetLookAtAndPositionFromLookAtTarget({0, 0, 0}, {0, -10, 8}, true);
    const COrvelBasicCamera linear = OrbitCamera(base, {8, 6, 0, 7}, Radians(360), true);
    EXPECT_NEAR(linear.Position().Z(), 2, Tolerance) << "a quarter of 8 is left";
    const COrvelBasicCamera last = OrbitCamera(base, {8, 7, 2, 5}, Radians(360), true);
    EXPECT_NEAR(last.Position().Z(), 0, Tolerance);
    for (const COrvelBasicCamera& camera : {linear, last}) {
        ExpectNear(camera.LookAt(), {0, 0, 0}, Tolerance);
        EXPECT_NEAR(camera.CamUp().Dot(camera.CamDir()), 0, Tolerance);
    }
}

TEST(CameraGrid, IsADomeOfRowsThatGoCounterClockwise)
{
    const CameraGrid grid{{1, 2, 3}, 10, 35, 3, 4, false};
    const double heights[] = {0, std::sqrt(0.5), 1};
    const COrvel3DVertex level[] = {{0, -10, 0}, {10, 0, 0}, {0, 10, 0}, {-10, 0, 0}};
    for (int step = 0; step < 12; ++step) {
        SCOPED_TRACE(step);
        const COrvelBasicCamera camera = HemisphericalGridCamera(grid, step);
        const COrvel3DVertex eye = camera.Position() - grid.centre;
        EXPECT_NEAR(eye.Length(), 10, Tolerance);
        EXPECT_NEAR(eye.Z(), 10 * heights[step / 4], Tolerance);
        ExpectNear(camera.LookAt(), grid.centre, Tolerance);
        EXPECT_EQ(camera.FOV(), 35);
        EXPECT_FALSE(camera.DOFIsEnabled());
        if (step < 4)
            ExpectNear(eye, level[step], Tolerance);
    }
    ExpectNear(HemisphericalGridCamera(grid, 4).CamUp(), {0, std::sqrt(0.5), std::sqrt(0.5)}, Tolerance);
    ExpectNear(HemisphericalGridCamera(grid, 8).CamUp(), {0, 1, 0}, Tolerance);
}

TEST(CameraGrid, IsASphereFromTopToBottomOrRound)
{
    CameraGrid grid{{1, 2, 3}, 10, 35, 3, 2, false};
    for (const std::vector<double>& heights : {std::vector<double>{10, 0, -10}, {0, 10, 0, -10}}) {
        for (std::size_t row = 0; row < heights.size(); ++row)
            EXPECT_NEAR(SphericalGridCamera(grid, static_cast<int>(2 * row)).Position().Z() - 3, heights[row],
                        Tolerance)
                << row << " of " << heights.size();
        grid.verticalWrap = true;
        grid.rows = 4;
    }
    ExpectNear(SphericalGridCamera(grid, 1).Position() - grid.centre, {0, 10, 0}, Tolerance);
}

TEST(CameraGrid, TakesSizesTooSmallAsTheSmallestUsable)
{
    const CameraGrid grid{{0, 0, 0}, 10, 35, 1, 0, false};
    ExpectNear(HemisphericalGridCamera(grid, 0).Position(), {0, -10, 0}, Tolerance);
    ExpectNear(HemisphericalGridCamera(grid, 1).Position(), {0, 0, 10}, Tolerance);
    ExpectNear(SphericalGridCamera(grid, 0).Position(), {0, 0, 10}, Tolerance);
}

TEST(CameraInterpolation, ChangesTargetAndDistanceEvenlyAndSwitchesDepthOfFieldHalfWay)
{
    const COrvelBasicCamera first = LevelCamera();
    COrvelBasicCamera second;
    second.SetLookAtAndPositionFromLookAtTarget({4, 0, 0}, {24, 0, 0}, false);
    second.SetCamUp(0, 0.6, 0.8);
    second.SetFOV(62);
    second.SetDOF(false, 10, 4);

    const COrvelBasicCamera half = InterpolateCameras(first, second, 0.5);
    ExpectNear(half.LookAt(), {2, 0, 0}, Tolerance);
    EXPECT_NEAR(half.DistanceFromTarget(), 15, Tolerance);
    EXPECT_NEAR(half.CamUp().Dot(half.CamDir()), 0, Tolerance);
    EXPECT_NEAR(half.CamUp().Length(), 1, Tolerance);
    EXPECT_NEAR(half.FOV(), 52, Tolerance);
    EXPECT_NEAR(half.DOF(), 8, Tolerance);
    EXPECT_NEAR(half.DOFFStop(), 3.4, Tolerance);
    EXPECT_TRUE(half.DOFIsEnabled());
    EXPECT_FALSE(InterpolateCameras(first, second, 0.50001).DOFIsEnabled());
    ExpectNear(InterpolateCameras(first, second, 1).Position(), second.Position(), Tolerance);

    ExpectNear(InterpolateCameraGap(first, second, 5, 5, 5, 0, 0).Position(), first.Position(), Tolerance);
    EXPECT_NEAR(InterpolateCameraGap(first, second, 6, 5, 15, 0, 2).FOV(), 44, Tolerance);
    // Opposite cameras meet their target half way: no direction is left, and none is invented from nothing.
    COrvelBasicCamera opposite = first;
    opposite.SetLookAtAndPositionFromLookAtTarget({0, 0, 0}, {0, 10, 0}, false);
    ExpectNear(InterpolateCameras(first, opposite, 0.5).CamDir(), first.CamDir(), Tolerance);
}

} // namespace
} // namespace Orvel
