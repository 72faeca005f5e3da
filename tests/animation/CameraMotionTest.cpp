#include "animation/CameraInterpolation.h"
#include "animation/CameraPaths.h"

#include <gtest/gtest.h>

#include <cmath>

namespace Orvel
{
namespace
{

constexpr double Tolerance = 1e-12;

void ExpectNear(const COrvel3DVertex& got, const COrvel3DVertex& want, const char* what, int frame)
{
    EXPECT_LT((got - want).Length(), Tolerance)
        << what << " at " << frame << ": " << got.X() << " " << got.Y() << " " << got.Z();
}

/// Looks level along +y at the origin from ten units away.
COrvelBasicCamera FrontCamera()
{
    COrvelBasicCamera camera;
    camera.SetPosition({0.0, -10.0, 0.0});
    camera.SetDir(0.0, 1.0, 0.0);
    camera.SetDistanceToTarget(10.0);
    camera.SetCamUp(0.0, 0.0, 1.0);
    camera.SetFOV(42.0);
    camera.SetDOF(true, 6.0, 2.8);
    return camera;
}

double Radians(double degrees)
{
    return degrees / 180.0 * 3.141592653589793;
}

TEST(CameraOrbit, StopsOneStepShortAtConstantSpeedAndGoesClockwise)
{
    const COrvelBasicCamera base = FrontCamera();
    for (int step = 0; step < 36; ++step) {
        const COrvelBasicCamera camera = OrbitCamera(base, {36, step, 0, 35}, Radians(360.0), false);
        const double turn = Radians(10.0 * step);
        ExpectNear(camera.Position(), {-10.0 * std::sin(turn), -10.0 * std::cos(turn), 0.0}, "eye", step);
        ExpectNear(camera.LookAt(), {}, "target", step);
        ExpectNear(camera.CamUp(), {0.0, 0.0, 1.0}, "up", step);
        EXPECT_EQ(camera.FOV(), 42.0);
        EXPECT_TRUE(camera.DOFIsEnabled());
    }
    const COrvelBasicCamera quarter = OrbitCamera(base, {10, 9, 2, 7}, Radians(90.0), false);
    ExpectNear(quarter.Position(), {-10.0, 0.0, 0.0}, "eye with phases", 9);
    ExpectNear(OrbitCamera(base, {1, 0, 0, 0}, Radians(90.0), true).Position(), base.Position(), "single frame", 0);
}

TEST(CameraOrbit, DescendsInTheTimingOfItsTurn)
{
    COrvelBasicCamera base = FrontCamera();
    base.SetLookAtAndPositionFromLookAtTarget({0.0, 0.0, 0.0}, {0.0, -10.0, 8.0}, true);
    const COrvelBasicCamera linear = OrbitCamera(base, {8, 6, 0, 7}, Radians(360.0), true);
    EXPECT_NEAR(linear.Position().Z(), 8.0 * (1.0 - 6.0 / 8.0), Tolerance);
    const COrvelBasicCamera last = OrbitCamera(base, {8, 7, 2, 5}, Radians(360.0), true);
    EXPECT_NEAR(last.Position().Z(), 0.0, Tolerance);
    for (const COrvelBasicCamera& camera : {linear, last}) {
        ExpectNear(camera.LookAt(), {}, "target", 0);
        EXPECT_NEAR(camera.CamUp().Dot(camera.CamDir()), 0.0, Tolerance);
    }
}

TEST(HemisphericalGrid, IsADomeOfRowsThatGoCounterClockwise)
{
    const CameraGrid grid{{1.0, 2.0, 3.0}, 10.0, 35.0, 3, 4, false};
    const double heights[] = {0.0, std::sqrt(0.5), 1.0};
    for (int step = 0; step < 12; ++step) {
        const COrvelBasicCamera camera = HemisphericalGridCamera(grid, step);
        const COrvel3DVertex eye = camera.Position() - grid.centre;
        EXPECT_NEAR(eye.Length(), 10.0, Tolerance) << step;
        EXPECT_NEAR(eye.Z(), 10.0 * heights[step / 4], Tolerance) << step;
        ExpectNear(camera.LookAt(), grid.centre, "target", step);
        EXPECT_EQ(camera.FOV(), 35.0);
        EXPECT_FALSE(camera.DOFIsEnabled());
    }
    const COrvel3DVertex level[] = {{0.0, -10.0, 0.0}, {10.0, 0.0, 0.0}, {0.0, 10.0, 0.0}, {-10.0, 0.0, 0.0}};
    for (int step = 0; step < 4; ++step)
        ExpectNear(HemisphericalGridCamera(grid, step).Position() - grid.centre, level[step], "eye", step);
    ExpectNear(HemisphericalGridCamera(grid, 4).CamUp(), {0.0, std::sqrt(0.5), std::sqrt(0.5)}, "up", 4);
    ExpectNear(HemisphericalGridCamera(grid, 8).CamUp(), {0.0, 1.0, 0.0}, "up", 8);
}

TEST(SphericalGrid, RunsFromTopToBottomOrRound)
{
    CameraGrid grid{{1.0, 2.0, 3.0}, 10.0, 35.0, 3, 2, false};
    const double open[] = {10.0, 0.0, -10.0};
    for (int row = 0; row < 3; ++row)
        EXPECT_NEAR(SphericalGridCamera(grid, 2 * row).Position().Z() - 3.0, open[row], Tolerance) << row;
    grid.verticalWrap = true;
    grid.rows = 4;
    const double round[] = {0.0, 10.0, 0.0, -10.0};
    for (int row = 0; row < 4; ++row)
        EXPECT_NEAR(SphericalGridCamera(grid, 2 * row).Position().Z() - 3.0, round[row], Tolerance) << row;
    ExpectNear(SphericalGridCamera(grid, 1).Position() - grid.centre, {0.0, 10.0, 0.0}, "second column", 1);
}

TEST(Grids, TakeSizesTooSmallAsTheSmallestUsable)
{
    const CameraGrid grid{{}, 10.0, 35.0, 1, 0, false};
    ExpectNear(HemisphericalGridCamera(grid, 0).Position(), {0.0, -10.0, 0.0}, "eye", 0);
    ExpectNear(HemisphericalGridCamera(grid, 1).Position(), {0.0, 0.0, 10.0}, "eye", 1);
    ExpectNear(SphericalGridCamera(grid, 0).Position(), {0.0, 0.0, 10.0}, "eye", 0);
}

TEST(CameraInterpolation, ChangesTargetAndDistanceEvenlyAndSwitchesDepthOfFieldHalfWay)
{
    const COrvelBasicCamera first = FrontCamera();
    COrvelBasicCamera second;
    second.SetLookAtAndPositionFromLookAtTarget({4.0, 0.0, 0.0}, {24.0, 0.0, 0.0}, false);
    second.SetCamUp(0.0, 0.6, 0.8);
    second.SetFOV(62.0);
    second.SetDOF(false, 10.0, 4.0);

    const COrvelBasicCamera half = InterpolateCameras(first, second, 0.5);
    ExpectNear(half.LookAt(), {2.0, 0.0, 0.0}, "target", 0);
    EXPECT_NEAR(half.DistanceFromTarget(), 15.0, Tolerance);
    EXPECT_NEAR(half.CamUp().Dot(half.CamDir()), 0.0, Tolerance);
    EXPECT_NEAR(half.CamUp().Length(), 1.0, Tolerance);
    EXPECT_NEAR(half.FOV(), 52.0, Tolerance);
    EXPECT_NEAR(half.DOF(), 8.0, Tolerance);
    EXPECT_NEAR(half.DOFFStop(), 3.4, Tolerance);
    EXPECT_TRUE(half.DOFIsEnabled());
    EXPECT_FALSE(InterpolateCameras(first, second, 0.50001).DOFIsEnabled());
    ExpectNear(InterpolateCameras(first, second, 1.0).Position(), second.Position(), "end", 0);

    ExpectNear(InterpolateCameraGap(first, second, 5, 5, 5, 0, 0).Position(), first.Position(), "empty gap", 5);
    EXPECT_NEAR(InterpolateCameraGap(first, second, 6, 5, 15, 0, 2).FOV(), 44.0, Tolerance);
    // Opposite cameras meet their target half way: no direction is left, and none is invented from nothing.
    COrvelBasicCamera opposite = first;
    opposite.SetLookAtAndPositionFromLookAtTarget({}, {0.0, 10.0, 0.0}, false);
    ExpectNear(InterpolateCameras(first, opposite, 0.5).CamDir(), first.CamDir(), "direction", 0);
}

} // namespace
} // namespace Orvel
