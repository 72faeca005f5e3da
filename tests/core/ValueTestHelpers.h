#pragma once

#include "platform/core/COrvel3DVertex.h"
#include "platform/core/COrvelMatrix.h"

#include <gtest/gtest.h>

#include <cmath>
#include <iomanip>
#include <numbers>
#include <ostream>
#include <random>

namespace Orvel
{

// Printed by failing comparisons.
inline void PrintTo(const COrvel3DVertex& vertex, std::ostream* out)
{
    *out << std::setprecision(17) << '(' << vertex.X() << ", " << vertex.Y() << ", " << vertex.Z() << ')';
}

inline void PrintTo(const COrvelMatrix& matrix, std::ostream* out)
{
    for (int row = 0; row < 4; ++row) {
        *out << std::setprecision(17) << '\n';
        for (int column = 0; column < 4; ++column)
            *out << matrix.M(row, column) << ' ';
    }
}

namespace Tests
{

inline constexpr double Pi = std::numbers::pi;

inline testing::AssertionResult IsNear(const COrvel3DVertex& got, const COrvel3DVertex& want, double tolerance = 1e-12)
{
    if ((got - want).Length() <= tolerance)
        return testing::AssertionSuccess();
    return testing::AssertionFailure() << testing::PrintToString(got) << " is not " << testing::PrintToString(want);
}

inline testing::AssertionResult IsNear(const COrvelMatrix& got, const COrvelMatrix& want, double tolerance = 1e-12)
{
    if (got.IsNear(want, tolerance))
        return testing::AssertionSuccess();
    return testing::AssertionFailure() << testing::PrintToString(got) << "\nis not" << testing::PrintToString(want);
}

// Numbers between -1 and 1, the same in every run.
class RandomValues
{
public:
    double operator()() { return static_cast<double>(engine() >> 11) * 0x1p-52 - 1.0; }

    COrvel3DVertex Vertex()
    {
        const double x = (*this)();
        const double y = (*this)();
        return {x, y, (*this)()};
    }

    COrvelMatrix Rigid()
    {
        COrvelMatrix rotation;
        rotation.DefineByRotation(Pi * (*this)(), Vertex());
        return COrvelMatrix::CreateTranslation(Vertex() * 100.0) * rotation;
    }

private:
    std::mt19937_64 engine{20};
};

} // namespace Tests
} // namespace Orvel
