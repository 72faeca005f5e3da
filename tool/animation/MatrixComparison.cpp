#include "tool/animation/MatrixComparison.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace Orvel::Animate
{

namespace
{

double SizeOfAxes(const COrvelMatrix& a)
{
    double squares = 0.0;
    for (int row = 0; row < 3; ++row)
        for (int column = 0; column < 3; ++column)
            squares += a.M(row, column) * a.M(row, column);
    return std::sqrt(squares);
}

} // namespace

bool MatrixComparison::AreNear(const COrvelMatrix& a, const COrvelMatrix& b) const
{
    double squares = 0.0;
    for (int row = 0; row < 3; ++row)
        for (int column = 0; column < 3; ++column) {
            const double difference = a.M(row, column) - b.M(row, column);
            squares += difference * difference;
        }
    return squares <= axes * axes && (a.Translation() - b.Translation()).Length() <= position;
}

double AxesLimit(const std::vector<COrvelMatrix>& samples, double angleInRadians)
{
    double largest = 0.0;
    for (const COrvelMatrix& sample : samples)
        largest = std::max(largest, SizeOfAxes(sample));
    return std::numbers::sqrt2 * angleInRadians / std::numbers::sqrt3 * largest;
}

} // namespace Orvel::Animate
