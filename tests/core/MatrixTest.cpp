#include "tests/core/ValueTestHelpers.h"

#include "platform/core/COrvelQuaternion.h"

#include <gtest/gtest.h>

#include <limits>
#include <type_traits>

namespace Orvel
{
namespace
{

using Tests::IsNear;
using Tests::Pi;
using Tests::RandomValues;

static_assert(!std::is_polymorphic_v<COrvelMatrix> && std::is_trivially_copyable_v<COrvelMatrix>);
static_assert(!std::is_polymorphic_v<COrvel3DVertex> && std::is_trivially_copyable_v<COrvel3DVertex>);

constexpr double Infinity = std::numeric_limits<double>::infinity();
constexpr double NaN = std::numeric_limits<double>::quiet_NaN();

COrvelMatrix AboutZ(double angle)
{
    return COrvelMatrix().DefineByRotation(angle, 0.0, 0.0, 1.0);
}

const COrvelMatrix QuarterTurnAboutZ = AboutZ(Pi / 2);

TEST(Vectors, NormaliseWithoutLosingTheDirectionOrMakingNaN)
{
    EXPECT_EQ(COrvel3DVertex().Normalised(), COrvel3DVertex());
    EXPECT_TRUE(IsNear(COrvel3DVertex(2.0, 3.0, 6.0).Normalised(), {2.0 / 7, 3.0 / 7, 6.0 / 7}, 1e-15));
    EXPECT_TRUE(IsNear(COrvel3DVertex(3e-310, 0.0, 4e-310).Normalised(), {0.6, 0.0, 0.8}, 1e-12));
    EXPECT_TRUE(IsNear(COrvel3DVertex(3e307, -4e307, 0.0).Normalised(), {0.6, -0.8, 0.0}, 1e-15));
    EXPECT_EQ(COrvel3DVertex(Infinity, 1.0, 2.0).Normalised(), COrvel3DVertex(Infinity, 1.0, 2.0));
}

TEST(Vectors, FindAPerpendicularOfAnyDirection)
{
    RandomValues random;
    for (const double length : {7.0, 1e-200, 0.0})
        for (int i = 0; i < 50; ++i) {
            const COrvel3DVertex direction = random.Vertex() * length;
            const COrvel3DVertex across = direction.AnyPerpendicular();
            EXPECT_NEAR(across.Length(), 1.0, 1e-15);
            EXPECT_NEAR(across.Dot(direction.Normalised()), 0.0, 1e-15);
        }
}

TEST(Matrices, MapByTheRightFactorFirst)
{
    const COrvelMatrix shift = COrvelMatrix::CreateTranslation({7.0, 11.0, 13.0});
    const COrvel3DVertex point(2.0, 3.0, 5.0);
    EXPECT_EQ(shift.Values()[11], 13.0);
    EXPECT_TRUE(IsNear(QuarterTurnAboutZ * shift * point, {-14.0, 9.0, 18.0}));

    COrvelMatrix product = shift;
    product *= QuarterTurnAboutZ;
    EXPECT_TRUE(IsNear(product * point, {4.0, 13.0, 18.0}));
    EXPECT_TRUE(IsNear(product.TransformDirection(point), {-3.0, 2.0, 5.0}));
    COrvel3DVertex moved = point;
    moved.ModifyByTransform(product);
    EXPECT_EQ(moved, product * point);
    const COrvelMatrix square = product * product;
    product *= product;
    EXPECT_EQ(product, square) << "a factor that is the result as well";
}

TEST(Matrices, RotateRightHandedInRadians)
{
    EXPECT_TRUE(IsNear(QuarterTurnAboutZ * COrvel3DVertex(1.0, 0.0, 0.0), {0.0, 1.0, 0.0}));
    const COrvelMatrix aboutX = COrvelMatrix::CreateRotaionAroundX(Pi / 6);
    EXPECT_TRUE(IsNear(aboutX * COrvel3DVertex(5.0, 2.0, 0.0), {5.0, std::sqrt(3.0), 1.0}));
    EXPECT_EQ(aboutX, COrvelMatrix().DefineByRotation(Pi / 6, {1.0, 0.0, 0.0}));
    const COrvelMatrix aboutY = COrvelMatrix().DefineByRotation(Pi / 2, 0.0, 3.0, 0.0);
    EXPECT_TRUE(IsNear(aboutY * COrvel3DVertex(0.0, 0.0, 2.0), {2.0, 0.0, 0.0}));
    // A third of a turn about the diagonal exchanges the axes.
    const COrvelMatrix aboutDiagonal = COrvelMatrix().DefineByRotation(2 * Pi / 3, 4.0, 4.0, 4.0);
    EXPECT_TRUE(IsNear(aboutDiagonal * COrvel3DVertex(2.0, 3.0, 5.0), {5.0, 2.0, 3.0}));

    COrvelMatrix used = COrvelMatrix::CreateTranslation({1.0, 2.0, 3.0});
    EXPECT_EQ(used.DefineByRotation(1.0, 0.0, 0.0, 0.0), COrvelMatrix());
}

TEST(Matrices, ShearAndScale)
{
    const COrvel3DVertex point(2.0, 3.0, 5.0);
    EXPECT_EQ(COrvelMatrix::CreateShearingYX(10.0) * point, COrvel3DVertex(2.0, 23.0, 5.0));
    EXPECT_EQ(COrvelMatrix::CreateShearingZX(10.0) * point, COrvel3DVertex(2.0, 3.0, 25.0));
    EXPECT_EQ(COrvelMatrix::CreateShearingZY(10.0) * point, COrvel3DVertex(2.0, 3.0, 35.0));
    EXPECT_EQ(COrvelMatrix::CreateScalling({-1.0, 2.0, 0.5}) * point, COrvel3DVertex(-2.0, 6.0, 2.5));
}

TEST(Matrices, InvertAffineProjectiveFlatAndFarAwayOnes)
{
    RandomValues random;
    for (int i = 0; i < 500; ++i) {
        COrvelMatrix matrix;
        for (int row = 0; row < (i % 2 == 0 ? 3 : 4); ++row)
            for (int column = 0; column < 4; ++column)
                matrix.M(row, column) = 10.0 * random();
        const COrvelMatrix inverse = matrix.Inverse();
        EXPECT_TRUE(IsNear(matrix * inverse, COrvelMatrix(), 1e-9)) << "matrix " << i;
        EXPECT_TRUE(IsNear(inverse * matrix, COrvelMatrix(), 1e-9)) << "matrix " << i;
    }
    EXPECT_EQ(COrvelMatrix::CreateTranslation({7.0, 0.1, 1e16}).Inverse(),
              COrvelMatrix::CreateTranslation({-7.0, -0.1, -1e16}));
    const COrvelMatrix flat = COrvelMatrix::CreateScalling({1e-20, 1.0, 1e20});
    EXPECT_TRUE(IsNear(flat.Inverse() * flat, COrvelMatrix(), 1e-15));
    const COrvelMatrix turnedFlat = QuarterTurnAboutZ * COrvelMatrix::CreateRotaionAroundX(0.3) * flat;
    EXPECT_TRUE(IsNear(turnedFlat * turnedFlat.Inverse(), COrvelMatrix(), 1e-12));
}

TEST(Matrices, HaveTheIdentityForAnInverseWhenSingular)
{
    for (const COrvelMatrix& matrix : {COrvelMatrix({1, 2, 3, 10, 4, 5, 6, 20, 7, 8, 9, 30, 0, 0, 0, 1}),
                                       COrvelMatrix({1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 1, 0}),
                                       COrvelMatrix({1, NaN, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}),
                                       COrvelMatrix({1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, NaN, 0, 1}),
                                       COrvelMatrix::CreateScalling({1.0, 0.0, 1.0}),
                                       COrvelMatrix::CreateScalling({5e-324, 1.0, 1.0}), // 1 / 5e-324 overflows
                                       COrvelMatrix::CreateTranslation({Infinity, 0.0, 0.0})})
        EXPECT_EQ(matrix.Inverse(), COrvelMatrix()) << testing::PrintToString(matrix);
}

struct Decomposition
{
    COrvel3DVertex scale{-9.0, -9.0, -9.0};
    COrvel3DVertex shear{-9.0, -9.0, -9.0};
    COrvel3DVertex angles{-9.0, -9.0, -9.0};
    COrvel3DVertex perspective{-9.0, -9.0, -9.0};
    double value = -9.0;

    bool Take(const COrvelMatrix& matrix) { return matrix.DecomposeMatrix(scale, shear, angles, perspective, &value); }

    [[nodiscard]] COrvelMatrix Product() const
    {
        return COrvelMatrix::CreateScalling(scale) * COrvelMatrix::CreateShearingYX(shear.X()) *
               COrvelMatrix::CreateShearingZX(shear.Y()) * COrvelMatrix::CreateShearingZY(shear.Z()) *
               COrvelMatrix::CreateRotaionAroundX(angles.X()) *
               COrvelMatrix().DefineByRotation(angles.Y(), 0.0, 1.0, 0.0) * AboutZ(angles.Z());
    }
};

TEST(MatrixDecomposition, FindsTheFactorsThatAMatrixWasMadeOf)
{
    const COrvelMatrix shift = COrvelMatrix::CreateTranslation({7.0, 11.0, 13.0}); // does not count
    for (const double side : {1.0, -1.0})
        for (const double offset : {0.9, 1e-4, 1e-8, 1e-11, 1e-13, 1e-15, 0.0}) {
            SCOPED_TRACE(testing::Message() << side << " off a quarter turn about y by " << offset);
            Decomposition made;
            made.scale = {2.0, 3.0, 5.0};
            made.shear = {0.1, -0.2, 0.3};
            made.angles = {0.4, side * (Pi / 2 - offset), 1.1};
            Decomposition found;
            ASSERT_TRUE(found.Take(shift * made.Product()));
            EXPECT_TRUE(IsNear(found.Product(), made.Product(), 1e-11));
            EXPECT_EQ(found.perspective, COrvel3DVertex());
            EXPECT_EQ(found.value, 1.0);
            if (offset == 0.9) {
                EXPECT_TRUE(IsNear(found.scale, made.scale));
                EXPECT_TRUE(IsNear(found.shear, made.shear));
                EXPECT_TRUE(IsNear(found.angles, made.angles));
            }
            if (offset == 0.0) { // what z turned is taken to x
                EXPECT_TRUE(IsNear(found.angles, {0.4 + side * 1.1, side * Pi / 2, 0.0}));
            }
        }
}

TEST(MatrixDecomposition, RebuildsEveryRegularMatrix)
{
    RandomValues random;
    for (int i = 0; i < 3000; ++i) {
        COrvelMatrix matrix;
        for (int row = 0; row < 3; ++row)
            for (int column = 0; column < 3; ++column)
                matrix.M(row, column) = 10.0 * random();
        Decomposition parts;
        ASSERT_TRUE(parts.Take(matrix)) << "matrix " << i;
        EXPECT_TRUE(IsNear(parts.Product(), matrix, 1e-12)) << "matrix " << i;
        const bool mirrors = matrix.Axis(0).Cross(matrix.Axis(1)).Dot(matrix.Axis(2)) < 0.0;
        for (const double scale : {parts.scale.X(), parts.scale.Y(), parts.scale.Z()})
            EXPECT_EQ(scale < 0.0, mirrors) << "matrix " << i << ": all three are negative, or none";
    }
}

TEST(MatrixDecomposition, DescribesTheIdentityForASingularMatrix)
{
    for (const COrvelMatrix& matrix :
         {COrvelMatrix::CreateScalling({1.0, 0.0, 2.0}), COrvelMatrix::CreateScalling({1.0, NaN, 2.0}),
          COrvelMatrix({1, 2, 3, 0, 2, 4, 6, 0, 0, 1, 0, 0, 0, 0, 0, 1}),
          COrvelMatrix({1, 2, 3, 0, 4, 5, 6, 0, 7, 8, 9, 0, 0, 0, 0, 1})})
    {
        Decomposition parts;
        EXPECT_FALSE(parts.Take(matrix));
        EXPECT_EQ(parts.Product(), COrvelMatrix());
        EXPECT_EQ(parts.perspective, COrvel3DVertex());
        EXPECT_EQ(parts.value, 1.0);
    }
    Decomposition flat;
    ASSERT_TRUE(flat.Take(COrvelMatrix::CreateScalling({1.0, 1e-30, 2.0})));
    EXPECT_NEAR(flat.scale.Y(), 1e-30, 1e-45);
    EXPECT_TRUE(COrvelMatrix().DecomposeMatrix(flat.scale, flat.shear, flat.angles, flat.perspective, nullptr));
}

TEST(CoordinatesTransform, CarriesTheSecondFrameOntoTheFirst)
{
    const COrvel3DVertex point1(7.0, 11.0, 13.0);
    const COrvel3DVertex point0(2.0, 3.0, 5.0);
    // Directions of any length, the second ones not at right angles.
    const auto between = [&](bool scaled) {
        return COrvelMatrix::CreateCoordinatesTransform(point1, {0.0, 4.0, 0.0}, {-3.0, 9.0, 0.0}, point0,
                                                        {2.0, 0.0, 0.0}, {5.0, 1.0, 0.0}, scaled);
    };
    EXPECT_TRUE(IsNear(between(false), COrvelMatrix::CreateTranslation(point1) * QuarterTurnAboutZ *
                                           COrvelMatrix::CreateTranslation(-point0)));
    EXPECT_TRUE(IsNear(between(true) * point0, point1));
    EXPECT_TRUE(IsNear(between(true).TransformDirection({1.0, 0.0, 0.0}), {0.0, 2.0, 0.0}));

    const COrvel3DVertex first(0.3, -0.7, 0.9);
    const COrvel3DVertex second(0.5, 0.6, -0.2);
    EXPECT_EQ(COrvelMatrix::CreateCoordinatesTransform(point1, first, second, point1, first, second, false),
              COrvelMatrix())
        << "exactly";
}

TEST(CoordinatesTransform, StaysRigidForDegenerateFrames)
{
    const COrvel3DVertex zero;
    const COrvel3DVertex x(1.0, 0.0, 0.0);
    const COrvel3DVertex nearlyX(1.0, 1e-17, 0.0);
    for (const COrvel3DVertex& first : {zero, x})
        for (const COrvel3DVertex& second : {zero, x, nearlyX})
            for (const bool scaled : {false, true}) {
                const COrvelMatrix motion = COrvelMatrix::CreateCoordinatesTransform(
                    {1.0, 2.0, 3.0}, first, second, zero, {0.0, 1.0, 2.0}, {0.0, 1.0, 0.0}, scaled && first == zero);
                const COrvelMatrix turn = COrvelMatrix::CreateTranslation({-1.0, -2.0, -3.0}) * motion;
                EXPECT_TRUE(IsNear(COrvelQuaternion::FromMatrix(turn).ToMatrix(), turn));
            }
}

TEST(Quaternions, HoldAnyRotation)
{
    RandomValues random;
    for (int i = 0; i < 200; ++i) {
        const COrvelMatrix rotation = COrvelMatrix().DefineByRotation(Pi * random(), random.Vertex());
        EXPECT_TRUE(IsNear(COrvelQuaternion::FromMatrix(rotation).ToMatrix(), rotation));
    }
    const COrvelMatrix grown = QuarterTurnAboutZ * COrvelMatrix::CreateScalling({3.0, 0.2, 7.0});
    const COrvelQuaternion turn = COrvelQuaternion::FromMatrix(grown);
    EXPECT_NEAR(turn.W(), std::sqrt(0.5), 1e-15);
    EXPECT_NEAR(turn.Z(), std::sqrt(0.5), 1e-15);
    EXPECT_TRUE(IsNear(turn.ToMatrix(), QuarterTurnAboutZ));
    EXPECT_EQ(COrvelQuaternion::FromMatrix(COrvelMatrix::CreateScalling({})).ToMatrix(), COrvelMatrix());
    EXPECT_EQ(COrvelQuaternion(0.0, 0.0, 0.0, 0.0).ToMatrix(), COrvelMatrix());
}

TEST(Quaternions, TurnTheShorterWay)
{
    const auto degrees = [](double angle) { return AboutZ(angle / 180.0 * Pi); };
    const double half = 350.0 / 360.0 * Pi; // the quaternion of 350 degrees, on the far side of that of -10
    const COrvelQuaternion nearlyRound(std::cos(half), 0.0, 0.0, std::sin(half));
    for (const double t : {0.0, 0.5, 1.0})
        EXPECT_TRUE(IsNear(COrvelQuaternion().Squad(nearlyRound, t).ToMatrix(), degrees(-10.0 * t))) << t;

    const COrvelQuaternion twenty = COrvelQuaternion::FromMatrix(degrees(20.0));
    const COrvelQuaternion opposite(-twenty.W(), -twenty.X(), -twenty.Y(), -twenty.Z());
    const COrvelQuaternion hundred = COrvelQuaternion::FromMatrix(degrees(100.0));
    EXPECT_TRUE(IsNear(twenty.Squad(hundred, 0.25).ToMatrix(), degrees(40.0)));
    for (const double t : {0.0, 0.3, 1.0}) {
        EXPECT_TRUE(IsNear(twenty.Squad(twenty, t).ToMatrix(), degrees(20.0))) << t;
        EXPECT_TRUE(IsNear(twenty.Squad(opposite, t).ToMatrix(), degrees(20.0))) << t;
    }
}

} // namespace
} // namespace Orvel
