#include "tool/import/CreaseNormals.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <numbers>
#include <vector>

namespace Orvel::Import
{
namespace
{

using testing::ElementsAre;
using Vector = std::array<double, 3>;

Vector At(const std::vector<double>& values, std::size_t index)
{
    return {values.at(3 * index), values.at(3 * index + 1), values.at(3 * index + 2)};
}

void ExpectNear(const Vector& got, const Vector& want, const std::string& what)
{
    for (std::size_t axis = 0; axis < 3; ++axis)
        EXPECT_NEAR(got[axis], want[axis], 1e-12) << what << ", axis " << axis;
}

/// What holds for every result: nothing lost, every point where its source was, every normal of length 1.
void ExpectConsistent(const PointsWithNormals& made, const std::vector<double>& positions,
                      const std::vector<std::uint32_t>& triangles)
{
    ASSERT_EQ(made.positions.size(), 3 * made.sources.size());
    ASSERT_EQ(made.normals.size(), made.positions.size());
    ASSERT_EQ(made.triangles.size(), triangles.size());
    for (std::size_t point = 0; point < made.sources.size(); ++point) {
        EXPECT_EQ(At(made.positions, point), At(positions, made.sources[point])) << "point " << point;
        const Vector normal = At(made.normals, point);
        EXPECT_NEAR(std::hypot(normal[0], normal[1], normal[2]), 1.0, 1e-12) << "point " << point;
        if (point < positions.size() / 3) {
            EXPECT_EQ(made.sources[point], point);
        }
    }
    for (std::size_t corner = 0; corner < triangles.size(); ++corner)
        EXPECT_EQ(made.sources.at(made.triangles[corner]), triangles[corner]) << "corner " << corner;
}

struct Shape
{
    std::vector<double> positions;
    std::vector<std::uint32_t> triangles;

    [[nodiscard]] PointsWithNormals Normals(double creaseAngleInDegrees) const
    {
        PointsWithNormals made = MakeCreaseNormals(positions, triangles, creaseAngleInDegrees);
        ExpectConsistent(made, positions, triangles);
        return made;
    }
};

/// 2 x 3 x 5, one corner at the origin; point number = x + 2 y + 4 z in corners.
Shape Box()
{
    Shape box;
    for (unsigned i = 0; i < 8; ++i)
        box.positions.insert(box.positions.end(), {i & 1 ? 2.0 : 0.0, i & 2 ? 3.0 : 0.0, i & 4 ? 5.0 : 0.0});
    box.triangles = {0, 2, 3, 0, 3, 1, 4, 5, 7, 4, 7, 6, 0, 1, 5, 0, 5, 4,
                     2, 6, 7, 2, 7, 3, 0, 4, 6, 0, 6, 2, 1, 3, 7, 1, 7, 5};
    return box;
}

const std::array<Vector, 6> boxSides{{{0, 0, -1}, {0, 0, 1}, {0, -1, 0}, {0, 1, 0}, {-1, 0, 0}, {1, 0, 0}}};

/// Upright, radius 1, the given height, without base. Point 0 is the apex, the ring follows.
Shape Cone(unsigned sides, double height)
{
    Shape cone{{0.0, 0.0, height}, {}};
    for (unsigned i = 0; i < sides; ++i) {
        const double angle = 2.0 * std::numbers::pi * i / sides;
        cone.positions.insert(cone.positions.end(), {std::cos(angle), std::sin(angle), 0.0});
        cone.triangles.insert(cone.triangles.end(), {0, 1 + i, 1 + (i + 1) % sides});
    }
    return cone;
}

TEST(CreaseNormals, GiveABoxFlatSidesBelowItsAngle)
{
    const PointsWithNormals made = Box().Normals(35.0);
    ASSERT_EQ(made.sources.size(), 24U) << "each of 8 points once for each of 3 sides";
    for (std::size_t corner = 0; corner < 36; ++corner)
        ExpectNear(At(made.normals, made.triangles[corner]), boxSides[corner / 6], "corner " + std::to_string(corner));
}

TEST(CreaseNormals, WeightABoxsSidesByAngleAboveItsAngle)
{
    // Points with two triangles of one side lean to no side: only weights by angle give exact diagonals.
    for (const double angle : {90.0, 100.0, 180.0}) {
        const PointsWithNormals made = Box().Normals(angle);
        ASSERT_EQ(made.sources.size(), 8U) << angle << " degrees";
        const double part = 1.0 / std::sqrt(3.0);
        for (std::size_t i = 0; i < 8; ++i) {
            const Vector want{i & 1 ? part : -part, i & 2 ? part : -part, i & 4 ? part : -part};
            ExpectNear(At(made.normals, i), want, "point " + std::to_string(i));
        }
    }
}

TEST(CreaseNormals, SmoothAConeRoundItsAxisAndCreaseItsBase)
{
    constexpr unsigned Sides = 24;
    Shape cone = Cone(Sides, 2.0);
    const PointsWithNormals open = cone.Normals(35.0);
    ASSERT_EQ(open.sources.size(), 1U + Sides);
    ExpectNear(At(open.normals, 0), {0.0, 0.0, 1.0}, "apex");

    cone.positions.insert(cone.positions.end(), {0.0, 0.0, 0.0});
    for (std::uint32_t i = 0; i < Sides; ++i)
        cone.triangles.insert(cone.triangles.end(), {1 + Sides, 1 + (i + 1) % Sides, 1 + i});
    const PointsWithNormals closed = cone.Normals(35.0);
    ASSERT_EQ(closed.sources.size(), 2U + 2 * Sides) << "the ring stands once in the mantle and once in the base";
    for (std::size_t corner = 3 * Sides; corner < closed.triangles.size(); ++corner)
        ExpectNear(At(closed.normals, closed.triangles[corner]), {0.0, 0.0, -1.0}, "base");
    for (std::uint32_t i = 1; i <= Sides; ++i)
        ExpectNear(At(closed.normals, i), At(open.normals, i), "mantle");
}

TEST(CreaseNormals, KeepFansApartThatMeetInAPointOnly)
{
    // Two triangles 10 degrees apart that share point 0 but no edge, then the same with a bridge between them.
    const double slope = std::tan(10.0 * std::numbers::pi / 180.0);
    Shape bow{{0, 0, 0, 1, -1, 0, 1, 1, 0, -1, 1, slope, -1, -1, slope}, {0, 1, 2, 0, 3, 4}};
    const PointsWithNormals apart = bow.Normals(35.0);
    ASSERT_THAT(apart.sources, ElementsAre(0, 1, 2, 3, 4, 0));
    ExpectNear(At(apart.normals, 0), {0, 0, 1}, "first fan");
    EXPECT_GT(At(apart.normals, 5)[0], 0.1) << "second fan";

    bow.triangles.insert(bow.triangles.end(), {0, 2, 3});
    EXPECT_EQ(bow.Normals(35.0).sources.size(), 5U);
}

TEST(CreaseNormals, PassOverSeamsOfEqualPoints)
{
    // A strip bent by 20 degrees along x = 0 whose points on the bend exist twice, for texture coordinates.
    const double drop = -std::tan(20.0 * std::numbers::pi / 180.0);
    const Shape strip{{-1, 0, 0, 0, 0, 0, 0, 7, 0, -1, 7, 0, 0, 0, 0, 1, 0, drop, 1, 7, drop, 0, 7, 0},
                      {0, 1, 2, 0, 2, 3, 4, 5, 6, 4, 6, 7}};
    const PointsWithNormals smooth = strip.Normals(35.0);
    ASSERT_EQ(smooth.sources.size(), 8U);
    EXPECT_EQ(At(smooth.normals, 1), At(smooth.normals, 4));
    EXPECT_EQ(At(smooth.normals, 2), At(smooth.normals, 7));
    const double half = 10.0 * std::numbers::pi / 180.0;
    ExpectNear(At(smooth.normals, 1), {std::sin(half), 0.0, std::cos(half)}, "a right angle on either side");

    const PointsWithNormals sharp = strip.Normals(15.0);
    ASSERT_EQ(sharp.sources.size(), 8U) << "the points are two already";
    ExpectNear(At(sharp.normals, 1), {0.0, 0.0, 1.0}, "left");
    ExpectNear(At(sharp.normals, 4), {std::sin(2 * half), 0.0, std::cos(2 * half)}, "right");
}

TEST(CreaseNormals, LetTrianglesWithoutAreaAlone)
{
    // One good triangle; one with a point used twice, one on a line, one of points of its own; an unused point.
    const Shape shape{{0, 0, 0, 2, 0, 0, 0, 3, 0, 1, 0, 0, 5, 5, 5, 9, 9, 9}, {0, 1, 2, 1, 1, 2, 0, 3, 1, 4, 4, 4}};
    const PointsWithNormals made = shape.Normals(35.0);
    EXPECT_THAT(made.triangles, testing::ElementsAreArray(shape.triangles));
    for (std::size_t point = 0; point < 6; ++point)
        ExpectNear(At(made.normals, point), {0, 0, 1}, "point " + std::to_string(point));

    EXPECT_TRUE(MakeCreaseNormals({}, {}, 35.0).sources.empty());
    EXPECT_THAT(MakeCreaseNormals({7, 8, 9}, {}, 35.0).normals, ElementsAre(0, 0, 1));
}

TEST(CreaseNormals, KeepBothSidesOfDoubledTriangles)
{
    // A sheet of two triangles, each there a second time with the other side out.
    const Shape sheet{{0, 0, 0, 2, 0, 0, 2, 3, 0, 0, 3, 0}, {0, 1, 2, 0, 2, 3, 0, 2, 1, 0, 3, 2}};
    const PointsWithNormals made = sheet.Normals(35.0);
    ASSERT_EQ(made.sources.size(), 8U);
    for (std::size_t corner = 0; corner < 12; ++corner)
        ExpectNear(At(made.normals, made.triangles[corner]), {0, 0, corner < 6 ? 1.0 : -1.0}, "corner");
    // Smooth at every angle the two sides cancel each other; what is left is a direction all the same.
    EXPECT_EQ(sheet.Normals(180.0).sources.size(), 4U);
}

TEST(CreaseNormals, WorkAtEverySizeThatDoublesHave)
{
    for (const double size : {1e-310, 1e-200, 1e-90, 1e90, 1e200, 1.5e308}) {
        const Shape triangle{{-size, 0, size, size, 0, -size, 0, size, 0}, {0, 1, 2}};
        const PointsWithNormals made = triangle.Normals(35.0);
        const double part = std::sqrt(0.5);
        ExpectNear(At(made.normals, 0), {part, 0, part}, "size " + std::to_string(std::log10(size)));
    }
}

} // namespace
} // namespace Orvel::Import
