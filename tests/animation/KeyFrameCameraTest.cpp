#include "animation/Angles.h"
#include "animation/CameraInterpolation.h"
#include "platform/core/COrvelCamera.h"
#include "tests/animation/KeyFrameFixture.h"

#include <cmath>

namespace Orvel
{
namespace
{

constexpr double Tolerance = 1e-12;

class KeyFrameCamera : public KeyFrames
{
protected:
    /// What the data shows, which its matrix must agree with.
    static COrvelBasicCamera ViewAt(Camera& data, int frame)
    {
        data.SetWorkingFrame(frame);
        const COrvelBasicCamera view = data.BasicCamera();
        EXPECT_TRUE(data.Matrix().IsNear(view.ComputeLocalToWorld(), 0)) << frame;
        return view;
    }

    /// Round (1, 2, 3) at distance 10, from frame 10 on.
    COrvelPtr<Grid> AGrid(int gridType, int rows, int columns)
    {
        COrvelPtr<Grid> grid = Over(10, 9 + rows * columns, Grid::CreateSphericalCameraKeyFrameData(id, LevelCamera()));
        grid->SetGridType(gridType);
        grid->SetCentre({1, 2, 3});
        grid->SetRows(rows);
        grid->SetColumns(columns);
        return grid;
    }
    static COrvel3DVertex EyeAt(Grid& grid, int view) { return ViewAt(grid, 10 + view).Position() - grid.Centre(); }

    /// Under a turned and shifted parent.
    COrvelCamera* CarriedCamera()
    {
        COrvelSceneNode* const parent = COrvelSceneNode::Create(&document, "crane");
        parent->SetLocalMatrix(Shift(7, 11, 13) * Turn(0.5, 1, 2, 3));
        COrvelCamera* const camera = COrvelCamera::Create(&document, "eye");
        parent->AddChild(camera);
        return camera;
    }
};

TEST_F(KeyFrameCamera, OrbitsClockwiseAndStopsOneStepShortAtConstantSpeed)
{
    const COrvelPtr<Camera> data(Camera::CreateCameraKeyFrameData(id, LevelCamera()));
    data->SetTiming(10, 45, 10, 45, 0, 0);
    ExpectNear(ViewAt(*data, 19).Position(), {0, -10, 0}, Tolerance);
    data->SetOrbit(true);
    for (int step = 0; step < 36; ++step) {
        SCOPED_TRACE(step);
        const COrvelBasicCamera view = ViewAt(*data, 10 + step);
        const double turn = Radians(10.0 * step);
        ExpectNear(view.Position(), {-10 * std::sin(turn), -10 * std::cos(turn), 0}, Tolerance);
        ExpectNear(view.LookAt(), {0, 0, 0}, Tolerance);
        ExpectNear(view.CamUp(), {0, 0, 1}, Tolerance);
        EXPECT_EQ(view.FOV(), 42);
        EXPECT_TRUE(view.DOFIsEnabled());
    }
    ExpectNear(ViewAt(*data, 1000).Position(), ViewAt(*data, 45).Position());
    data->SetAngleInDegrees(90);
    data->SetTiming(10, 19, 12, 17, 0, 0);
    ExpectNear(ViewAt(*data, 19).Position(), {-10, 0, 0}, Tolerance);
    data->SetFrame(10);
    ExpectNear(ViewAt(*data, 10).Position(), {0, -10, 0}, Tolerance);
}

TEST_F(KeyFrameCamera, DescendsInTheTimingOfItsTurn)
{
    COrvelBasicCamera base = LevelCamera();
    base.SetLookAtAndPositionFromLookAtTarget({0, 0, 0}, {0, -10, 8}, true);
    const COrvelPtr<Camera> data(Camera::CreateCameraKeyFrameData(id, base));
    data->SetOrbit(true);
    data->SetDescends(true);
    data->SetTiming(0, 7, 0, 7, 0, 0);
    const COrvelBasicCamera linear = ViewAt(*data, 6);
    EXPECT_NEAR(linear.Position().Z(), 2, Tolerance) << "a quarter of 8 is left";
    data->SetTiming(0, 7, 2, 5, 0, 0);
    const COrvelBasicCamera last = ViewAt(*data, 7);
    EXPECT_NEAR(last.Position().Z(), 0, Tolerance);
    for (const COrvelBasicCamera& view : {linear, last}) {
        ExpectNear(view.LookAt(), {0, 0, 0}, Tolerance);
        EXPECT_NEAR(view.CamUp().Dot(view.CamDir()), 0, Tolerance);
    }
}

TEST_F(KeyFrameCamera, VisitsADomeInRowsThatGoCounterClockwise)
{
    const COrvelPtr<Grid> grid = AGrid(Grid::eGridType_Hemispherical, 3, 4);
    const double diagonal = std::sqrt(0.5);
    const double heights[] = {0, 10 * diagonal, 10};
    const COrvel3DVertex ups[] = {{0, 0, 1}, {0, diagonal, diagonal}, {0, 1, 0}};
    const COrvel3DVertex level[] = {{0, -10, 0}, {10, 0, 0}, {0, 10, 0}, {-10, 0, 0}};
    for (int step = 0; step < 12; ++step) {
        SCOPED_TRACE(step);
        const COrvelBasicCamera view = ViewAt(*grid, 10 + step);
        const COrvel3DVertex eye = view.Position() - grid->Centre();
        EXPECT_NEAR(eye.Length(), 10, Tolerance);
        EXPECT_NEAR(eye.Z(), heights[step / 4], Tolerance);
        ExpectNear(view.LookAt(), grid->Centre(), Tolerance);
        EXPECT_EQ(view.FOV(), 42);
        EXPECT_FALSE(view.DOFIsEnabled());
        if (step < 4)
            ExpectNear(eye, level[step], Tolerance);
        if (step % 4 == 0)
            ExpectNear(view.CamUp(), ups[step / 4], Tolerance);
    }
}

TEST_F(KeyFrameCamera, VisitsASphereFromTopToBottomOrRound)
{
    COrvelPtr<Grid> grid = AGrid(Grid::eGridType_Spherical, 3, 2);
    const double open[] = {10, 0, -10};
    for (int row = 0; row < 3; ++row)
        EXPECT_NEAR(EyeAt(*grid, 2 * row).Z(), open[row], Tolerance) << row;
    grid = AGrid(Grid::eGridType_Spherical, 4, 2);
    grid->SetVerticalWrap(true);
    const double round[] = {0, 10, 0, -10};
    for (int row = 0; row < 4; ++row)
        EXPECT_NEAR(EyeAt(*grid, 2 * row).Z(), round[row], Tolerance) << row;
    ExpectNear(EyeAt(*grid, 1), {0, 10, 0}, Tolerance);
    // Sizes too small count as the smallest usable.
    grid = AGrid(Grid::eGridType_Spherical, 1, 0);
    ExpectNear(EyeAt(*grid, 0), {0, 0, 10}, Tolerance);
    grid->SetTiming(10, 11, 10, 11, 0, 0);
    grid->SetGridType(Grid::eGridType_Hemispherical);
    ExpectNear(EyeAt(*grid, 0), {0, -10, 0}, Tolerance);
    ExpectNear(EyeAt(*grid, 1), {0, 0, 10}, Tolerance);
}

TEST_F(KeyFrameCamera, VisitsACircleAgainstTheSenseOfAnOrbit)
{
    const COrvelPtr<Grid> grid = AGrid(Grid::eGridType_RoundTable, 1, 12);
    const COrvelBasicCamera view = ViewAt(*grid, 13);
    ExpectNear(view.Position(), {10, 0, 0});
    EXPECT_TRUE(view.DOFIsEnabled());
    grid->SetOrbit(false);
    EXPECT_TRUE(grid->Matrix().IsNear(LevelCamera().ComputeLocalToWorld(), 0));
}

TEST_F(KeyFrameCamera, IsPlacedWithItsOpticsAndTakenBack)
{
    COrvelCamera* const camera = CarriedCamera();
    const COrvelID place = camera->LocalTransform()->ID();
    const COrvelMatrix placement = Shift(1, 2, 3) * Turn(0.8, 3, 1, 2);
    COrvelPtr<Camera>(Camera::CreateCameraKeyFrameData(place, placement, 55, 17, true, 8, 2.8))->ApplyToEntity();
    EXPECT_TRUE(camera->LocalMatrix().IsNear(placement, 1e-12));
    const COrvelPtr<Camera> taken(Camera::CreateCameraKeyFrameData(camera));
    EXPECT_EQ(taken->AnimatedEntityID(), place);
    EXPECT_EQ(taken->Matrix(), camera->LocalMatrix());
    EXPECT_NEAR(taken->DistanceToTarget(), 17, 1e-12);
    EXPECT_EQ(taken->FieldOfView(), 55);
    EXPECT_TRUE(taken->DOFIsEnabled());
    EXPECT_EQ(taken->DOFDistance(), 8);
    EXPECT_EQ(taken->DOFFStop(), 2.8);
    EXPECT_FALSE(taken->IsOrbit());
}

TEST_F(KeyFrameCamera, OrbitsFromWhereItsNodeStands)
{
    COrvelCamera* const camera = CarriedCamera();
    camera->SetFOV(55);
    const COrvelPtr<Camera> orbit(Camera::CreateOrbitCameraKeyFrameData(camera, 10, 19, 180, true, 12, 16, 2, 1));
    EXPECT_EQ(FramesOf(*orbit), std::vector<int>({10, 19, 12, 16, 10}));
    EXPECT_EQ(orbit->EaseIn(), 2);
    EXPECT_EQ(orbit->EaseOut(), 1);
    EXPECT_TRUE(orbit->IsOrbit());
    EXPECT_TRUE(orbit->Descends());
    EXPECT_EQ(orbit->AngleInDegrees(), 180);
    EXPECT_EQ(orbit->FieldOfView(), 55);

    COrvelSceneNode* const plain = COrvelSceneNode::Create(&document, "no transform");
    camera->SetLocalTransform(nullptr);
    for (COrvelSceneNode* const node : {plain, static_cast<COrvelSceneNode*>(camera), {}})
        EXPECT_EQ(Camera::CreateOrbitCameraKeyFrameData(node, 0, 1, 90, false, 0, 0, 0, 0), nullptr);
    EXPECT_EQ(Camera::CreateCameraKeyFrameData(static_cast<COrvelCamera*>(nullptr)), nullptr);
    plain->SetLocalMatrix(Shift(1, 2, 3));
    const COrvelPtr<Camera> round(Camera::CreateOrbitCameraKeyFrameData(plain, 0, 1, 90, false, 0, 0, 0, 0));
    EXPECT_EQ(round->FieldOfView(), 30);
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
