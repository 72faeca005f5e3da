#include "tool/import/ComposeTransform.h"

#include <cmath>
#include <cstddef>

namespace Orvel::Import
{

namespace
{

/// Ten times what rounding a unit quaternion to single precision can leave in its squared length.
constexpr double UnitTolerance = 5e-6;

} // namespace

Quaternion UnitQuaternion(const Quaternion& q)
{
    const double length = std::hypot(std::hypot(q[0], q[1]), std::hypot(q[2], q[3]));
    if (!(length > 0.0) || !std::isfinite(length))
        return {0.0, 0.0, 0.0, 1.0};
    return {q[0] / length, q[1] / length, q[2] / length, q[3] / length};
}

COrvelMatrix ComposeTransform(const std::array<double, 3>& translation, Quaternion rotation,
                              const std::array<double, 3>& scale)
{
    const double squared =
        rotation[0] * rotation[0] + rotation[1] * rotation[1] + rotation[2] * rotation[2] + rotation[3] * rotation[3];
    if (!(std::abs(squared - 1.0) <= UnitTolerance))
        rotation = UnitQuaternion(rotation);
    const auto [x, y, z, w] = rotation;
    const std::array<double, 9> turn{
        1.0 - 2.0 * (y * y + z * z), 2.0 * (x * y - z * w),       2.0 * (x * z + y * w),
        2.0 * (x * y + z * w),       1.0 - 2.0 * (x * x + z * z), 2.0 * (y * z - x * w),
        2.0 * (x * z - y * w),       2.0 * (y * z + x * w),       1.0 - 2.0 * (x * x + y * y)};
    COrvelMatrix matrix;
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 3; ++column)
            matrix.M(row, column) =
                turn[static_cast<std::size_t>(3 * row + column)] * scale[static_cast<std::size_t>(column)];
        matrix.M(row, 3) = translation[static_cast<std::size_t>(row)];
    }
    return matrix;
}

} // namespace Orvel::Import
