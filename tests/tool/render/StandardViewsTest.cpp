#include "tool/views/StandardViews.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <vector>

namespace Orvel::Views
{
namespace
{

using Eigen::Vector3d;

Support SupportOf(std::vector<Vector3d> points)
{
    return [points = std::move(points)](const Vector3d& direction) {
        double farthest = -std::numeric_limits<double>::infinity();
        for (const Vector3d& point : points)
            farthest = std::max(farthest, direction.dot(point));
        return farthest;
    };
}

std::vector<Vector3d> BoxCorners()
{
    std::vector<Vector3d> corners;
    for (const double x : {7.0, 9.0})
        for (const double y : {-11.0, -8.0})
            for (const double z : {13.0, 18.0})
                corners.emplace_back(x, y, z);
    return corners;
}

TEST(StandardViews, LookAlongTheAxesOfEitherWorld)
{
    struct Case
    {
        const char* name;
        Vector3d forward;
        Vector3d up;
        Vector3d forwardYUp;
        Vector3d upYUp;
    };
    const Case cases[] = {
        {"front", {0, 1, 0}, {0, 0, 1}, {0, 0, -1}, {0, 1, 0}}, {"BACK", {0, -1, 0}, {0, 0, 1}, {0, 0, 1}, {0, 1, 0}},
        {"left", {1, 0, 0}, {0, 0, 1}, {1, 0, 0}, {0, 1, 0}},   {"Right", {-1, 0, 0}, {0, 0, 1}, {-1, 0, 0}, {0, 1, 0}},
        {"top", {0, 0, -1}, {0, 1, 0}, {0, -1, 0}, {0, 0, -1}}, {"bottom", {0, 0, 1}, {0, -1, 0}, {0, 1, 0}, {0, 0, 1}},
    };
    for (const Case& expected : cases) {
        const auto standard = StandardViewNamed(expected.name);
        ASSERT_TRUE(standard) << expected.name;
        const ViewFrame zUp = FrameOf(MakeStandardView(*standard, ZUp, 1.0, SupportOf(BoxCorners())));
        const ViewFrame yUp = FrameOf(MakeStandardView(*standard, YUp, 1.0, SupportOf(BoxCorners())));
        EXPECT_TRUE(zUp.forward.isApprox(expected.forward)) << expected.name;
        EXPECT_TRUE(zUp.up.isApprox(expected.up)) << expected.name;
        EXPECT_TRUE(yUp.forward.isApprox(expected.forwardYUp)) << expected.name;
        EXPECT_TRUE(yUp.up.isApprox(expected.upYUp)) << expected.name;
    }
    EXPECT_FALSE(StandardViewNamed("fron"));
}

/// The corners in the picture, which spans -1 to 1 both ways.
TEST(StandardViews, FillThePictureAndLeaveSomeAir)
{
    for (const StandardView standard : AllStandardViews) {
        for (const double aspect : {0.4, 1.0, 3.0}) {
            const View view = MakeStandardView(standard, ZUp, aspect, SupportOf(BoxCorners()));
            const ViewFrame frame = FrameOf(view);
            const HalfExtent half = HalfExtentOf(view, aspect);
            Eigen::Array2d low = Eigen::Array2d::Constant(9.0);
            Eigen::Array2d high = -low;
            for (const Vector3d& corner : BoxCorners()) {
                const Vector3d toCorner = corner - view.eye;
                const double depth = toCorner.dot(frame.forward);
                EXPECT_GT(depth, 0.0);
                const double scale = view.projection == Projection::Perspective ? depth : 1.0;
                const Eigen::Array2d place(toCorner.dot(frame.right) / (scale * half.horizontal),
                                           toCorner.dot(frame.up) / (scale * half.vertical));
                low = low.min(place);
                high = high.max(place);
            }
            EXPECT_NEAR(std::max(high[0], high[1]), 0.92, 1e-9) << NameOf(standard) << " " << aspect;
            EXPECT_NEAR(std::min(low[0], low[1]), -0.92, 1e-9) << NameOf(standard) << " " << aspect;
            const Vector3d middle(8.0, -9.5, 15.5);
            EXPECT_NEAR((view.target - middle).dot(frame.forward), 0.0, 1e-9) << NameOf(standard);
        }
    }
}

TEST(StandardViews, AreThereForShapesWithoutExtent)
{
    for (const std::vector<Vector3d>& shape :
         {std::vector<Vector3d>{}, {{3.0, 5.0, 7.0}}, {{3.0, 5.0, 7.0}, {4.0, 5.0, 7.0}}})
    {
        for (const StandardView standard : AllStandardViews) {
            const View view = MakeStandardView(standard, ZUp, 1.5, SupportOf(shape));
            EXPECT_TRUE(view.eye.allFinite() && view.target.allFinite());
            EXPECT_GT((view.target - view.eye).norm(), 0.0);
            EXPECT_GT(view.size, 0.0);
        }
    }
}

} // namespace
} // namespace Orvel::Views
