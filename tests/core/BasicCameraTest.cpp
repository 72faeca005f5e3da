#include "platform/core/COrvelBasicCamera.h"
#include "tests/core/ValueTestHelpers.h"

#include <gtest/gtest.h>

namespace Orvel
{
namespace
{

using Tests::IsNear;
using Tests::Pi;
using Tests::RandomValues;

TEST(BasicCamera, TakesItsFrameFromAMatrix)
{
    // Right is +y, up is +z, so the camera looks along -x.
    const COrvelMatrix frame({0, 0, 1, 7, 1, 0, 0, 11, 0, 1, 0, 13, 0, 0, 0, 1});
    const COrvelProjectionMatrix projection(45.0);
    const COrvelBasicCamera camera(frame, 5.0, &projection);
    EXPECT_EQ(camera.Position(), COrvel3DVertex(7.0, 11.0, 13.0));
    EXPECT_EQ(camera.CamDir(), COrvel3DVertex(-1.0, 0.0, 0.0));
    EXPECT_EQ(camera.CamUp(), COrvel3DVertex(0.0, 0.0, 1.0));
    EXPECT_EQ(camera.LookAt(), COrvel3DVertex(2.0, 11.0, 13.0));
    EXPECT_EQ(camera.DistanceFromTarget(), 5.0);
    EXPECT_EQ(camera.FOV(), 45.0);
    EXPECT_EQ(COrvelBasicCamera(frame, 5.0, nullptr).FOV(), 30.0);
    EXPECT_EQ(COrvelBasicCamera().ComputeLocalToWorld(), COrvelMatrix());
}

TEST(BasicCamera, GivesARigidFrameBack)
{
    RandomValues random;
    for (int i = 0; i < 100; ++i) {
        const COrvelMatrix frame = random.Rigid();
        const COrvelMatrix grown = frame * COrvelMatrix::CreateScalling({2.0, 3.0, 5.0});
        EXPECT_TRUE(IsNear(COrvelBasicCamera(frame, 3.0, nullptr).ComputeLocalToWorld(), frame, 1e-14)) << i;
        EXPECT_TRUE(IsNear(COrvelBasicCamera(grown, 3.0, nullptr).ComputeLocalToWorld(), frame, 1e-13)) << i;
    }
}

TEST(BasicCamera, KeepsDirectionAndDistanceWhenItIsMoved)
{
    COrvelBasicCamera camera;
    camera.SetPosition({1.0, -8.0, 3.0});
    camera.SetDir(0.0, 4.0, 0.0);
    camera.SetDistanceToTarget(10.0);
    camera.SetCamUp(0.0, 0.0, 2.0);
    EXPECT_EQ(camera.LookAt(), COrvel3DVertex(1.0, 2.0, 3.0));
    EXPECT_EQ(camera.CamDir(), COrvel3DVertex(0.0, 1.0, 0.0));
    EXPECT_EQ(camera.CamUp(), COrvel3DVertex(0.0, 0.0, 1.0));

    camera.SetPosition({0.0, 0.0, 5.0});
    EXPECT_EQ(camera.LookAt(), COrvel3DVertex(0.0, 10.0, 5.0));
    camera.SetDir(0.0, 0.0, 0.0);
    EXPECT_EQ(camera.LookAt(), COrvel3DVertex(0.0, 10.0, 5.0));
}

TEST(BasicCamera, StraightensItsUpVectorOnlyWhenAsked)
{
    const COrvel3DVertex target(0.1, 0.7, 0.3);
    const COrvel3DVertex eye(3.3, -4.1, 5.9);
    COrvelBasicCamera camera;
    camera.SetCamUp({0.0, 0.0, 1.0});
    camera.SetLookAtAndPositionFromLookAtTarget(target, eye, false);
    EXPECT_EQ(camera.CamUp(), COrvel3DVertex(0.0, 0.0, 1.0));
    EXPECT_EQ(camera.LookAt(), target);
    EXPECT_EQ(camera.Position(), eye);
    EXPECT_NEAR(camera.DistanceFromTarget(), std::sqrt(3.2 * 3.2 + 4.8 * 4.8 + 5.6 * 5.6), 1e-14);

    camera.SetLookAtAndPositionFromLookAtTarget(target, eye, true);
    EXPECT_NEAR(camera.CamUp().Dot(camera.CamDir()), 0.0, 1e-15);
    EXPECT_NEAR(camera.CamUp().Length(), 1.0, 1e-15);
    EXPECT_GT(camera.CamUp().Z(), 0.0);
    EXPECT_NEAR(camera.CamUp().Cross(camera.CamDir()).Z(), 0.0, 1e-15); // tilted, not rolled
}

TEST(BasicCamera, StaysDefinedWhenPointsOrVectorsCoincide)
{
    COrvelBasicCamera camera;
    camera.SetDir(0.0, 1.0, 0.0);
    camera.SetLookAtAndPositionFromLookAtTarget({5.0, 5.0, 5.0}, {5.0, 5.0, 5.0}, true);
    EXPECT_EQ(camera.CamDir(), COrvel3DVertex(0.0, 1.0, 0.0));
    EXPECT_EQ(camera.DistanceFromTarget(), 0.0);
    EXPECT_NEAR(camera.CamUp().Length(), 1.0, 1e-15); // up lay along the direction
    EXPECT_NEAR(camera.CamUp().Dot(camera.CamDir()), 0.0, 1e-15);

    camera.SetCamUp({0.0, 0.0, 0.0});
    const COrvelMatrix frame = camera.ComputeLocalToWorld();
    EXPECT_NEAR(frame.Axis(0).Cross(frame.Axis(1)).Dot(frame.Axis(2)), 1.0, 1e-15);
    EXPECT_EQ(COrvelBasicCamera(COrvelMatrix::CreateScalling({}), 1.0, nullptr).CamDir(),
              COrvel3DVertex(0.0, 0.0, -1.0));
}

TEST(BasicCamera, IsTransformedAsPointsAndADirection)
{
    const COrvel3DVertex centre(1.0, 2.0, 3.0);
    COrvelBasicCamera camera;
    camera.SetCamUp(0.0, 0.0, 1.0);
    camera.SetLookAtAndPositionFromLookAtTarget(centre, centre - COrvel3DVertex(0.0, 10.0, 0.0), false);
    // An eighth of a turn about x lifts the eye.
    camera.ModifyByTransform(COrvelMatrix::CreateTranslation(centre) * COrvelMatrix::CreateRotaionAroundX(-Pi / 4) *
                             COrvelMatrix::CreateTranslation(-centre));
    const double leg = std::sqrt(0.5);
    EXPECT_TRUE(IsNear(camera.Position(), centre + COrvel3DVertex(0.0, -10.0 * leg, 10.0 * leg)));
    EXPECT_TRUE(IsNear(camera.LookAt(), centre));
    EXPECT_TRUE(IsNear(camera.CamUp(), {0.0, leg, leg}));
    EXPECT_TRUE(IsNear(camera.CamDir(), {0.0, leg, -leg}));

    camera.ModifyByTransform(COrvelMatrix::CreateScalling({3.0, 3.0, 3.0}));
    EXPECT_NEAR(camera.DistanceFromTarget(), 30.0, 1e-12);
    EXPECT_NEAR(camera.CamUp().Length(), 1.0, 1e-15);
    camera.SetDistanceToTarget(0.0);
    camera.ModifyByTransform(COrvelMatrix::CreateRotaionAroundX(Pi / 4));
    EXPECT_TRUE(IsNear(camera.CamDir(), {0.0, 1.0, 0.0})) << "it turns even without a distance";
}

} // namespace
} // namespace Orvel
