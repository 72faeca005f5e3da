#include "animation/ObjectPaths.h"

#include "platform/core/COrvelBasicPath.h"

#include <gtest/gtest.h>

namespace Orvel
{
namespace
{

TEST(RoundTable, TurnsAboutItsAxisAndReachesTheAngle)
{
    RoundTable table;
    table.reference = COrvelMatrix::CreateTranslation({2.0, 3.0, 5.0}) * COrvelMatrix::CreateRotaionAroundX(0.3);
    table.axisFrame =
        COrvelMatrix().DefineByRotation(0.7, 1.0, 2.0, 3.0) * COrvelMatrix::CreateTranslation({7.0, 0.0, 1.0});
    table.axisPoint = {1.0, -1.0, 4.0};
    table.axisDirection = {0.0, 0.5, 2.0};
    table.angle = 3.141592653589793 / 2.0;

    const COrvel3DVertex pivot = (table.axisFrame * table.reference).Inverse() * table.axisPoint;
    const COrvel3DVertex pivotInWorld = table.reference * pivot;
    for (int step = 0; step < 10; ++step) {
        const COrvelMatrix matrix = RoundTableMatrix(table, {10, step, 0, 9});
        EXPECT_LT((matrix * pivot - pivotInWorld).Length(), 1e-12) << step;
        const COrvelMatrix turn = COrvelMatrix().DefineByRotation(table.angle * step / 9.0, table.axisDirection);
        const COrvelMatrix motion = table.axisFrame * matrix * table.reference.Inverse() * table.axisFrame.Inverse();
        for (int column = 0; column < 3; ++column)
            EXPECT_LT((motion.Axis(column) - turn.Axis(column)).Length(), 1e-12) << step;
    }
    EXPECT_TRUE(RoundTableMatrix(table, {10, 9, 3, 6}).IsNear(RoundTableMatrix(table, {10, 9, 0, 9}), 1e-12));
    EXPECT_EQ(RoundTableMatrix(table, {1, 0, 0, 0}), table.reference);
    table.axisDirection = {};
    EXPECT_TRUE(RoundTableMatrix(table, {10, 5, 0, 9}).IsNear(table.reference, 1e-12));
}

TEST(PathFollower, SitsOnTheCurveWithItsTurns)
{
    // A corner in the plane z = 0, moved as a whole.
    const COrvelBasicPath path = COrvelBasicPath::Polyline({{0.0, 0.0, 0.0}, {4.0, 0.0, 0.0}, {4.0, 4.0, 0.0}}, false);
    PathFollower follower;
    follower.pathWorld = COrvelMatrix::CreateTranslation({10.0, 20.0, 30.0});
    follower.reference = follower.pathWorld;
    follower.base = COrvelMatrix::CreateTranslation({10.0, 20.0, 30.0});
    const MotionStep start{9, 0, 0, 8};
    EXPECT_TRUE(FollowerMatrix(follower, path, start).IsNear(follower.base, 1e-12));
    const COrvelMatrix before = FollowerMatrix(follower, path, {9, 2, 0, 8});
    EXPECT_LT((before.Translation() - COrvel3DVertex(12.0, 20.0, 30.0)).Length(), 1e-12);
    const COrvelMatrix behind = FollowerMatrix(follower, path, {9, 6, 0, 8});
    EXPECT_LT((behind.Translation() - COrvel3DVertex(14.0, 22.0, 30.0)).Length(), 1e-12);
    EXPECT_LT((behind.Axis(0) - COrvel3DVertex(0.0, 1.0, 0.0)).Length(), 1e-9) << "turned with the curve";

    // Carried by a moved parent, the world place stays.
    follower.parentWorld = COrvelMatrix::CreateTranslation({1.0, 2.0, 3.0});
    EXPECT_TRUE((follower.parentWorld * FollowerMatrix(follower, path, {9, 6, 0, 8})).IsNear(behind, 1e-12));
    EXPECT_EQ(FollowerMatrix(follower, path, {1, 0, 0, 0}), follower.base);
}

TEST(PathFollower, StopsOneStepShortOnAClosedCurve)
{
    const COrvelBasicPath square =
        COrvelBasicPath::Polyline({{0.0, 0.0, 0.0}, {1.0, 0.0, 0.0}, {1.0, 1.0, 0.0}, {0.0, 1.0, 0.0}}, true);
    const PathFollower follower;
    for (int step = 0; step < 8; ++step) {
        const COrvel3DVertex place = FollowerMatrix(follower, square, {8, step, 0, 7}).Translation();
        EXPECT_LT((place - square.Point(step / 8.0, 0)).Length(), 1e-12) << step;
    }
}

} // namespace
} // namespace Orvel
