#include "platform/core/COrvelBasicPath.h"
#include "tests/core/ValueTestHelpers.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

namespace Orvel
{
namespace
{

using Tests::IsNear;
using Tests::RandomValues;

using Points = std::vector<COrvel3DVertex>;

// Bends to all sides, with an inflection.
const Points Snake = {{0, 0, 0}, {4, 1, 0}, {6, 5, 2}, {3, 8, 5}, {7, 11, 4}, {12, 9, 1}, {15, 13, -3}};

double TurnAboutTangent(const COrvelBasicPath& path, double u, double step)
{
    const COrvel3DVertex tangent = path.FirstDirection(u, 0);
    const COrvel3DVertex side = tangent.Cross(path.SecondDirection(u, 0));
    return path.SecondDirection(u + step, 0).Dot(side) / step;
}

TEST(BasicPath, OfStraightLinesPassesThroughItsPoints)
{
    const COrvelBasicPath path = COrvelBasicPath::Polyline({{0, 0, 0}, {2, 0, 0}, {2, 8, 0}}, false);
    const std::pair<double, COrvel3DVertex> points[] = {
        {0.0, {0, 0, 0}}, {0.25, {1, 0, 0}}, {0.5, {2, 0, 0}},  {0.75, {2, 4, 0}},
        {1.0, {2, 8, 0}}, {1.5, {2, 8, 0}},  {-3.0, {0, 0, 0}}, {std::numeric_limits<double>::quiet_NaN(), {0, 0, 0}}};
    for (const auto& [u, point] : points)
        EXPECT_EQ(path.Point(u, 7), point) << u;
    EXPECT_EQ(path.FirstDirection(0.1, 0), COrvel3DVertex(1, 0, 0));
    EXPECT_EQ(path.FirstDirection(1.0, 0), COrvel3DVertex(0, 1, 0));

    const COrvelBasicPath ring = COrvelBasicPath::Polyline({{0, 0, 0}, {3, 0, 0}, {3, 3, 0}}, true);
    EXPECT_TRUE(IsNear(ring.Point(5.0 / 6, 0), {1.5, 1.5, 0}));
    EXPECT_EQ(ring.Point(1.0, 0), ring.Point(0.0, 0));
}

TEST(BasicPath, IsClosedWhereItsEndsMeet)
{
    EXPECT_TRUE(COrvelBasicPath::Polyline({{0, 0, 0}, {3, 0, 0}, {3, 3, 0}}, true).IsClosed());
    EXPECT_TRUE(COrvelBasicPath::Polyline({{1, 1, 1}, {3, 0, 0}, {3, 3, 0}, {1, 1, 1}}, false).IsClosed());
    EXPECT_FALSE(COrvelBasicPath::Polyline({{1, 1, 1}, {1, 1, 1}}, false).IsClosed());
    EXPECT_FALSE(COrvelBasicPath::BSpline(Snake, 3, false).IsClosed());
}

TEST(BasicPath, BlendsItsControlPoints)
{
    // One span of degree 2 is a parabola.
    const COrvelBasicPath parabola = COrvelBasicPath::BSpline({{0, 0, 0}, {2, 4, 0}, {4, 0, 0}}, 2, false);
    EXPECT_TRUE(IsNear(parabola.Point(0.25, 0), {1.0, 1.5, 0}));
    EXPECT_TRUE(IsNear(parabola.Point(0.5, 0), {2, 2, 0}));
    EXPECT_TRUE(IsNear(parabola.FirstDirection(0.5, 0), {1, 0, 0}));
    EXPECT_TRUE(IsNear(parabola.FirstDirection(1.0, 0), COrvel3DVertex(1, -2, 0).Normalised()));
    EXPECT_EQ(COrvelBasicPath::BSpline({{0, 0, 0}, {2, 4, 0}, {4, 0, 0}}, 5, false).Degree(), 2);

    const COrvelBasicPath open = COrvelBasicPath::BSpline(Snake, 3, false);
    EXPECT_TRUE(IsNear(open.Point(0.0, 0), Snake.front()));
    EXPECT_TRUE(IsNear(open.Point(1.0, 0), Snake.back()));
    // At the knot in the middle a uniform cubic blends three points as 1 : 4 : 1.
    EXPECT_TRUE(IsNear(open.Point(0.5, 0), (Snake[2] + Snake[3] * 4.0 + Snake[4]) * (1.0 / 6)));

    const COrvelBasicPath ring = COrvelBasicPath::BSpline({{6, 0, 0}, {0, 6, 0}, {-6, 0, 0}, {0, -6, 3}}, 3, true);
    EXPECT_TRUE(IsNear(ring.Point(0.0, 0), {0, 4, 0}));
    EXPECT_TRUE(IsNear(ring.FirstDirection(0.0, 0), {-1, 0, 0}));
    EXPECT_TRUE(IsNear(ring.Point(1.0 - 1e-12, 0), ring.Point(0.0, 0), 1e-9));
}

TEST(BasicPath, PointsItsFirstDirectionAlongTheCurve)
{
    for (const bool closed : {false, true})
        for (int degree = 2; degree <= COrvelBasicPath::MaximumDegree; ++degree) {
            const COrvelBasicPath path = COrvelBasicPath::BSpline(Snake, degree, closed);
            for (double u = 0.01; u < 0.99; u += 0.037) {
                const COrvel3DVertex chord = path.Point(u + 1e-6, 0) - path.Point(u - 1e-6, 0);
                EXPECT_TRUE(IsNear(path.FirstDirection(u, 0), chord.Normalised(), 1e-4)) << degree << " at " << u;
            }
        }
}

TEST(BasicPath, CarriesItsSecondDirectionWithoutTurningIt)
{
    for (const bool closed : {false, true}) {
        const COrvelBasicPath path = COrvelBasicPath::BSpline(Snake, 3, closed);
        const double turn = TurnAboutTangent(path, 0.0, 1e-5);
        if (!closed) {
            EXPECT_NEAR(turn, 0.0, 1e-2);
        }
        for (double u = 0.0; u < 0.999; u += 0.0137) {
            const COrvel3DVertex second = path.SecondDirection(u, 0);
            EXPECT_NEAR(second.Length(), 1.0, 1e-14) << u;
            EXPECT_NEAR(second.Dot(path.FirstDirection(u, 0)), 0.0, 1e-14) << u;
            EXPECT_GT(second.Dot(path.SecondDirection(u + 1e-3, 0)), 0.99) << u;
            // Evenly spread on a closed curve, none at all on an open one.
            EXPECT_NEAR(TurnAboutTangent(path, u, 1e-5), turn, 2e-2) << u;
        }
    }
}

TEST(BasicPath, ComesRoundToTheFrameThatItStartedWith)
{
    const Points twisted = {{6, 0, 2}, {0, 6, -3}, {-6, 0, 4}, {0, -6, 0}, {3, -3, 7}};
    for (const COrvelBasicPath& path :
         {COrvelBasicPath::BSpline(twisted, 3, true), COrvelBasicPath::Polyline(twisted, true)})
    {
        EXPECT_EQ(path.SecondDirection(1.0, 0), path.SecondDirection(0.0, 0));
        EXPECT_EQ(path.FirstDirection(1.0, 0), path.FirstDirection(0.0, 0));
    }
    const COrvelBasicPath smooth = COrvelBasicPath::BSpline(twisted, 3, true);
    EXPECT_TRUE(IsNear(smooth.SecondDirection(1.0 - 1e-9, 0), smooth.SecondDirection(0.0, 0), 1e-6));
    // A flat ring with right-angled corners, whose frame is out by nothing.
    const COrvelBasicPath square = COrvelBasicPath::Polyline({{0, 0, 0}, {4, 0, 0}, {4, 4, 0}, {0, 4, 0}}, true);
    const COrvel3DVertex start = square.SecondDirection(0.0, 0);
    for (const double u : {0.1, 0.4, 0.6, 0.9})
        EXPECT_NEAR(square.SecondDirection(u, 0).Z(), start.Z(), 1e-12) << u;
}

TEST(BasicPath, HasUnitDirectionsHoweverItsPointsLie)
{
    const COrvel3DVertex a(1, 2, 3);
    const COrvel3DVertex b(4, 6, 3);
    const std::vector<Points> cases = {{},
                                       {a},
                                       {a, a},
                                       {a, b},
                                       {a, a, a, a, a},
                                       {a, a, a, b},
                                       {a, a, a, a, b, b, b, b},
                                       {a, b, b, b},
                                       {a, b, a},
                                       {a, b, a, b, a, b}};
    for (std::size_t i = 0; i < cases.size(); ++i)
        for (const bool closed : {false, true})
            for (const int degree : {-1, 1, 2, 3, 99}) {
                const COrvelBasicPath path = COrvelBasicPath::BSpline(cases[i], degree, closed);
                for (const double u : {0.0, 0.25, 0.5, 0.7, 1.0}) {
                    SCOPED_TRACE(testing::Message() << "case " << i << " degree " << degree << " at " << u);
                    const COrvel3DVertex first = path.FirstDirection(u, 0);
                    const COrvel3DVertex second = path.SecondDirection(u, 0);
                    EXPECT_NEAR(first.Length(), 1.0, 1e-12);
                    EXPECT_NEAR(second.Length(), 1.0, 1e-12);
                    EXPECT_NEAR(first.Dot(second), 0.0, 1e-12);
                    EXPECT_TRUE(std::isfinite(path.Point(u, 0).Length()));
                }
            }
    // It stands still at its first control point, which is there four times, but leaves towards the other.
    const COrvelBasicPath slow = COrvelBasicPath::BSpline(cases[6], 3, false);
    EXPECT_TRUE(IsNear(slow.FirstDirection(0.0, 0), {0.6, 0.8, 0}));
    EXPECT_TRUE(IsNear(slow.FirstDirection(1.0, 0), {0.6, 0.8, 0}));
    EXPECT_EQ(COrvelBasicPath().Point(0.5, 0), COrvel3DVertex());
    EXPECT_EQ(COrvelBasicPath::Polyline({a}, true).Point(0.5, 0), a);
}

} // namespace
} // namespace Orvel
