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

const COrvelMatrix QuarterTurnAboutZ = COrvelMatrix().DefineByRotation(Pi / 2, 0.0, 0.0, 1.0);

TEST(Vectors, NormaliseWithoutLosingTheDirectionOrMakingNaN)
{
    EXPECT_EQ(COrvel3DVertex().Normalised(), COrvel3DVertex());
    EXPECT_TRUE(IsNear(COrvel3DVertex(2.0, 3.0, 6.0).Normalised(), {2.0 / 7, 3.0 / 7, 6.0 / 7}, 1e-15));
    EXPECT_TRUE(IsNear(COrvel3DVertex(3e-310, 0.0, 4e-310).Normalised(), {0.6, 0.0, 0.8}, 1e-12));
    EXPECT_TRUE(IsNear(COrvel3DVertex(3e307, -4e307, 0.0).Normalised(), {0.6, -0.8, 0.0}, 1e-15));
    const double infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(COrvel3DVertex(infinity, 1.0, 2.0).Normalised(), COrvel3DVertex(infinity, 1.0, 2.0));
}

TEST(Vectors, FindAPerpendicularOfAnyDirection)
{
    RandomValues random;
    for (int i = 0; i < 100; ++i) {
        const COrvel3DVertex direction = random.Vertex() * (i % 3 == 0 ? 1e-200 : 7.0);
        const COrvel3DVertex across = direction.AnyPerpendicular();
        EXPECT_NEAR(across.Length(), 1.0, 1e-15);
        EXPECT_NEAR(across.Dot(direction.Normalised()), 0.0, 1e-15);
    }
    EXPECT_NEAR(COrvel3DVertex().AnyPerpendicular().Length(), 1.0, 0.0);
}

TEST(Matrices, MapByTheRightFactorFirst)
{
    const COrvelMatrix shift = COrvelMatrix::CreateTranslation({7.0, 11.0, 13.0});
    const COrvel3DVertex point(2.0, 3.0, 5.0);
    EXPECT_EQ(shift.M(1, 3), 11.0);
    EXPECT_EQ(shift.Values()[11], 13.0);
    EXPECT_TRUE(IsNear(shift * QuarterTurnAboutZ * point, {4.0, 13.0, 18.0}));
    EXPECT_TRUE(IsNear(QuarterTurnAboutZ * shift * point, {-14.0, 9.0, 18.0}));

    COrvelMatrix product = shift;
    product *= QuarterTurnAboutZ;
    EXPECT_EQ(product, shift * QuarterTurnAboutZ);
    product *= product;
    EXPECT_TRUE(IsNear(product * point, product * COrvel3DVertex() + COrvel3DVertex(-2.0, -3.0, 5.0)));

    COrvel3DVertex moved = point;
    moved.ModifyByTransform(shift * QuarterTurnAboutZ);
    EXPECT_TRUE(IsNear(moved, {4.0, 13.0, 18.0}));
    EXPECT_TRUE(IsNear((shift * QuarterTurnAboutZ).TransformDirection(point), {-3.0, 2.0, 5.0}));
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

TEST(Matrices, InvertAffineAndProjectiveOnes)
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
    EXPECT_EQ(COrvelMatrix::CreateTranslation({7.0, 0.1, 1e9}).Inverse(),
              COrvelMatrix::CreateTranslation({-7.0, -0.1, -1e9}));
}

TEST(Matrices, InvertFlatAndFarAwayThings)
{
    const COrvelMatrix flat = COrvelMatrix::CreateScalling({1e-20, 1.0, 1e20});
    EXPECT_TRUE(IsNear(flat.Inverse() * flat, COrvelMatrix(), 1e-15));
    const COrvelMatrix turnedFlat = QuarterTurnAboutZ * COrvelMatrix::CreateRotaionAroundX(0.3) * flat;
    EXPECT_TRUE(IsNear(turnedFlat * turnedFlat.Inverse(), COrvelMatrix(), 1e-12));
    const COrvelMatrix farAway = COrvelMatrix::CreateTranslation({1e16, 0.0, -1e16});
    EXPECT_EQ(farAway.Inverse() * farAway, COrvelMatrix());
}

TEST(Matrices, HaveTheIdentityForAnInverseWhenSingular)
{
    const COrvelMatrix planar({1, 2, 3, 10, 4, 5, 6, 20, 7, 8, 9, 30, 0, 0, 0, 1});
    EXPECT_EQ(planar.Inverse(), COrvelMatrix());
    EXPECT_EQ(COrvelMatrix::CreateScalling({1.0, 0.0, 1.0}).Inverse(), COrvelMatrix());
    EXPECT_EQ(COrvelMatrix({1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 1, 0}).Inverse(), COrvelMatrix());
    EXPECT_EQ(COrvelMatrix::CreateScalling({5e-324, 1.0, 1.0}).Inverse(), COrvelMatrix()); // 1 / 5e-324 overflows
    for (const int row : {0, 3}) {
        COrvelMatrix broken;
        broken.M(row, 1) = std::numeric_limits<double>::quiet_NaN();
        EXPECT_EQ(broken.Inverse(), COrvelMatrix()) << row;
    }
    EXPECT_EQ(COrvelMatrix::CreateTranslation({std::numeric_limits<double>::infinity(), 0.0, 0.0}).Inverse(),
              COrvelMatrix());
}

struct Decomposition
{
    COrvel3DVertex scale{-9.0, -9.0, -9.0};
    COrvel3DVertex shear{-9.0, -9.0, -9.0};
    COrvel3DVertex angles{-9.0, -9.0, -9.0};
    COrvel3DVertex perspective{-9.0, -9.0, -9.0};
    double value = -9.0;

    bool Take(const COrvelMatrix& matrix) { return matrix.DecomposeMatrix(scale, shear, angles, perspective, &value); }

    [[nodiscard]] COrvelMatrix Rotation() const
    {
        return COrvelMatrix::CreateRotaionAroundX(angles.X()) *
               COrvelMatrix().DefineByRotation(angles.Y(), 0.0, 1.0, 0.0) *
               COrvelMatrix().DefineByRotation(angles.Z(), 0.0, 0.0, 1.0);
    }

    [[nodiscard]] COrvelMatrix Product() const
    {
        return COrvelMatrix::CreateScalling(scale) * COrvelMatrix::CreateShearingYX(shear.X()) *
               COrvelMatrix::CreateShearingZX(shear.Y()) * COrvelMatrix::CreateShearingZY(shear.Z()) * Rotation();
    }
};

TEST(MatrixDecomposition, FindsTheFactorsThatAMatrixWasMadeOf)
{
    Decomposition made;
    made.scale = {2.0, 3.0, 5.0};
    made.shear = {0.1, -0.2, 0.3};
    made.angles = {0.4, -0.7, 1.1};
    const COrvelMatrix shifted = COrvelMatrix::CreateTranslation({7.0, 11.0, 13.0}) * made.Product();

    Decomposition found;
    ASSERT_TRUE(found.Take(shifted)); // the translation does not count
    EXPECT_TRUE(IsNear(found.scale, made.scale));
    EXPECT_TRUE(IsNear(found.shear, made.shear));
    EXPECT_TRUE(IsNear(found.angles, made.angles));
    EXPECT_EQ(found.perspective, COrvel3DVertex());
    EXPECT_EQ(found.value, 1.0);
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
        // All three negative for a mirroring matrix, all three positive else.
        EXPECT_GT(parts.scale.X() * parts.scale.Y(), 0.0) << "matrix " << i;
        EXPECT_GT(parts.scale.Y() * parts.scale.Z(), 0.0) << "matrix " << i;
    }
}

TEST(MatrixDecomposition, SurvivesQuarterTurnsAboutY)
{
    for (const double side : {1.0, -1.0})
        for (const double offset : {0.0, 1e-15, 1e-13, 1e-11, 1e-8, 1e-4}) {
            Decomposition made;
            made.scale = {2.0, 3.0, 5.0};
            made.shear = {0.1, -0.2, 0.3};
            made.angles = {0.4, side * (Pi / 2 - offset), 1.1};
            Decomposition found;
            ASSERT_TRUE(found.Take(made.Product()));
            EXPECT_TRUE(IsNear(found.Product(), made.Product(), 1e-11)) << side << " off by " << offset;
            if (offset == 0.0) { // what z turned is taken to x
                EXPECT_TRUE(IsNear(found.angles, {0.4 + side * 1.1, side * Pi / 2, 0.0}));
            }
        }
}

TEST(MatrixDecomposition, TurnsAMirrorRound)
{
    Decomposition parts;
    const COrvelMatrix mirror = QuarterTurnAboutZ * COrvelMatrix::CreateScalling({2.0, -3.0, 5.0});
    ASSERT_TRUE(parts.Take(mirror));
    EXPECT_TRUE(IsNear(parts.scale, {-3.0, -2.0, -5.0}));
    EXPECT_TRUE(IsNear(parts.Product(), mirror));
    // Two mirrors are half a turn, not two negative scales.
    ASSERT_TRUE(parts.Take(COrvelMatrix::CreateScalling({-2.0, -3.0, 5.0})));
    EXPECT_TRUE(IsNear(parts.scale, {2.0, 3.0, 5.0}));
}

TEST(MatrixDecomposition, DescribesTheIdentityForASingularMatrix)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    for (const COrvelMatrix& matrix :
         {COrvelMatrix::CreateScalling({1.0, 0.0, 2.0}), COrvelMatrix::CreateScalling({1.0, nan, 2.0}),
          COrvelMatrix({1, 2, 3, 0, 2, 4, 6, 0, 0, 1, 0, 0, 0, 0, 0, 1}),
          COrvelMatrix({1, 2, 3, 0, 4, 5, 6, 0, 7, 8, 9, 0, 0, 0, 0, 1})})
    {
        Decomposition parts;
        EXPECT_FALSE(parts.Take(matrix));
        EXPECT_EQ(parts.Product(), COrvelMatrix());
        EXPECT_EQ(parts.scale, COrvel3DVertex(1.0, 1.0, 1.0));
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
    const COrvelMatrix motion = COrvelMatrix::CreateCoordinatesTransform(
        point1, {0.0, 4.0, 0.0}, {-3.0, 9.0, 0.0}, point0, {2.0, 0.0, 0.0}, {5.0, 1.0, 0.0}, false);
    EXPECT_TRUE(IsNear(motion * point0, point1));
    EXPECT_TRUE(IsNear(motion.TransformDirection({1.0, 0.0, 0.0}), {0.0, 1.0, 0.0}));
    EXPECT_TRUE(IsNear(motion.TransformDirection({0.0, 1.0, 0.0}), {-1.0, 0.0, 0.0}));
    EXPECT_TRUE(IsNear(motion.TransformDirection({0.0, 0.0, 1.0}), {0.0, 0.0, 1.0}));

    const COrvelMatrix scaled = COrvelMatrix::CreateCoordinatesTransform(
        point1, {0.0, 4.0, 0.0}, {-3.0, 9.0, 0.0}, point0, {2.0, 0.0, 0.0}, {5.0, 1.0, 0.0}, true);
    EXPECT_TRUE(IsNear(scaled * point0, point1));
    EXPECT_TRUE(IsNear(scaled.TransformDirection({1.0, 0.0, 0.0}), {0.0, 2.0, 0.0}));
}

TEST(CoordinatesTransform, IsExactlyTheIdentityBetweenEqualFrames)
{
    const COrvel3DVertex point(0.1, 0.2, 0.3);
    const COrvel3DVertex first(0.3, -0.7, 0.9);
    const COrvel3DVertex second(0.5, 0.6, -0.2);
    EXPECT_EQ(COrvelMatrix::CreateCoordinatesTransform(point, first, second, point, first, second, false),
              COrvelMatrix());
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
                COrvelMatrix transposed;
                for (int row = 0; row < 3; ++row)
                    for (int column = 0; column < 3; ++column)
                        transposed.M(row, column) = turn.M(column, row);
                EXPECT_TRUE(IsNear(turn * transposed, COrvelMatrix()));
                EXPECT_NEAR(turn.Axis(0).Cross(turn.Axis(1)).Dot(turn.Axis(2)), 1.0, 1e-12);
            }
}

TEST(Quaternions, HoldAnyRotation)
{
    RandomValues random;
    for (int i = 0; i < 200; ++i) {
        const COrvelMatrix rotation = COrvelMatrix().DefineByRotation(Pi * random(), random.Vertex());
        EXPECT_TRUE(IsNear(COrvelQuaternion::FromMatrix(rotation).ToMatrix(), rotation));
    }
    const COrvelQuaternion q = COrvelQuaternion::FromMatrix(QuarterTurnAboutZ);
    EXPECT_NEAR(q.W(), std::sqrt(0.5), 1e-15);
    EXPECT_NEAR(q.Z(), std::sqrt(0.5), 1e-15);
    const COrvelMatrix grown = QuarterTurnAboutZ * COrvelMatrix::CreateScalling({3.0, 0.2, 7.0});
    EXPECT_TRUE(IsNear(COrvelQuaternion::FromMatrix(grown).ToMatrix(), QuarterTurnAboutZ));
    EXPECT_EQ(COrvelQuaternion::FromMatrix(COrvelMatrix::CreateScalling({})).ToMatrix(), COrvelMatrix());
    EXPECT_EQ(COrvelQuaternion(0.0, 0.0, 0.0, 0.0).ToMatrix(), COrvelMatrix());
}

TEST(Quaternions, TurnTheShorterWay)
{
    const auto aboutZ = [](double degrees) {
        return COrvelMatrix().DefineByRotation(degrees / 180.0 * Pi, 0.0, 0.0, 1.0);
    };
    const COrvelQuaternion none;
    const double half = 350.0 / 360.0 * Pi; // the quaternion of 350 degrees, on the far side of that of -10
    const COrvelQuaternion nearlyRound(std::cos(half), 0.0, 0.0, std::sin(half));
    EXPECT_TRUE(IsNear(none.Squad(nearlyRound, 0.5).ToMatrix(), aboutZ(-5.0)));
    EXPECT_TRUE(IsNear(none.Squad(nearlyRound, 0.0).ToMatrix(), aboutZ(0.0)));
    EXPECT_TRUE(IsNear(none.Squad(nearlyRound, 1.0).ToMatrix(), aboutZ(-10.0)));

    const COrvelQuaternion twenty = COrvelQuaternion::FromMatrix(aboutZ(20.0));
    const COrvelQuaternion hundred = COrvelQuaternion::FromMatrix(aboutZ(100.0));
    EXPECT_TRUE(IsNear(twenty.Squad(hundred, 0.25).ToMatrix(), aboutZ(40.0)));
    for (const double t : {0.0, 0.3, 1.0}) {
        EXPECT_TRUE(IsNear(twenty.Squad(twenty, t).ToMatrix(), aboutZ(20.0))) << t;
        const COrvelQuaternion opposite(-twenty.W(), -twenty.X(), -twenty.Y(), -twenty.Z());
        EXPECT_TRUE(IsNear(twenty.Squad(opposite, t).ToMatrix(), aboutZ(20.0))) << t;
    }
}

} // namespace
} // namespace Orvel
