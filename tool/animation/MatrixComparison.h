#pragma once

#include "platform/core/COrvelMatrix.h"

#include <vector>

namespace Orvel::Animate
{

/// Compares matrices: lengths of the differences of origins and of axes (all nine numbers).
class MatrixComparison
{
public:
    MatrixComparison(double positionLimit, double axesLimit)
        : position(positionLimit)
        , axes(axesLimit)
    {}

    [[nodiscard]] bool AreNear(const COrvelMatrix& a, const COrvelMatrix& b) const;

private:
    double position;
    double axes;
};

/// How far the axes of such matrices may differ: as much as turning by the angle changes them. That changes two of
/// three unit axes, the square root of 3 long as a whole, by the angle each.
[[nodiscard]] double AxesLimit(const std::vector<COrvelMatrix>& samples, double angleInRadians);

} // namespace Orvel::Animate
