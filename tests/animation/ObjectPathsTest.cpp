#include "animation/ObjectPaths.h"

#include "platform/core/COrvelBasicPath.h"
#include "tests/animation/KeyFrameFixture.h"

namespace Orvel
{
namespace
{

TEST(RoundTable, TurnsAboutItsAxisAndReachesTheAngle)
{
    const COrvelMatrix frame = Turn(0.7, 1, 2, 3) * Shift(7, 0, 1);
    RoundTable table{Shift(2, 3, 5) * Turn(0.3, 1, 0, 0), frame, {1, -1, 4}, {0, 0.5, 2}, 1.8};
    for (int step = 0; step < 10; ++step) {
        const COrvelMatrix turn = Shift(1, -1, 4) * Turn(0.2 * step, 0, 0.5, 2) * Shift(-1, 1, -4);
        EXPECT_TRUE(
            RoundTableMatrix(table, {10, step, 0, 9}).IsNear(frame.Inverse() * turn * frame * table.reference, 1e-12))
            << step;
    }
    EXPECT_TRUE(RoundTableMatrix(table, {10, 9, 3, 6}).IsNear(RoundTableMatrix(table, {10, 9, 0, 9}), 1e-12));
    EXPECT_EQ(RoundTableMatrix(table, {1, 0, 0, 0}), table.reference);
    table.axisDirection = {};
    EXPECT_TRUE(RoundTableMatrix(table, {10, 5, 0, 9}).IsNear(table.reference, 1e-12));
}

TEST(PathFollower, SitsOnTheCurveWithItsTurns)
{
    // A corner in the plane z = 0, moved as a whole.
    const COrvelBasicPath path = COrvelBasicPath::Polyline({{0, 0, 0}, {4, 0, 0}, {4, 4, 0}}, false);
    const COrvelMatrix place = Shift(10, 20, 30);
    PathFollower follower{place, {}, place, {}, place};
    EXPECT_TRUE(FollowerMatrix(follower, path, {9, 0, 0, 8}).IsNear(place, 1e-12));
    ExpectNear(FollowerMatrix(follower, path, {9, 2, 0, 8}).Translation(), {12, 20, 30});
    const COrvelMatrix behind = FollowerMatrix(follower, path, {9, 6, 0, 8});
    ExpectNear(behind.Translation(), {14, 22, 30});
    ExpectNear(behind.Axis(0), {0, 1, 0});

    // Carried by a moved parent, the world place stays.
    follower.parentWorld = Shift(1, 2, 3);
    EXPECT_TRUE((follower.parentWorld * FollowerMatrix(follower, path, {9, 6, 0, 8})).IsNear(behind, 1e-12));
    EXPECT_EQ(FollowerMatrix(follower, path, {1, 0, 0, 0}), follower.base);
}

TEST(PathFollower, StopsOneStepShortOnAClosedCurve)
{
    const COrvelBasicPath square = COrvelBasicPath::Polyline({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}}, true);
    for (int step = 0; step < 8; ++step)
        ExpectNear(FollowerMatrix({}, square, {8, step, 0, 7}).Translation(), square.Point(step / 8.0, 0));
}

} // namespace
} // namespace Orvel
