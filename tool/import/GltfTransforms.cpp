#include "tool/import/GltfTransforms.h"

#include "tool/import/ImportReport.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

namespace Orvel::Import
{

namespace
{

/// Ten times what rounding a unit quaternion to single precision can leave in its squared length.
constexpr double UnitTolerance = 5e-6;

void BringToUnit(Quaternion& q)
{
    const double squared = q[0] * q[0] + q[1] * q[1] + q[2] * q[2] + q[3] * q[3];
    if (std::abs(squared - 1.0) <= UnitTolerance)
        return;
    const double length = std::hypot(std::hypot(q[0], q[1]), std::hypot(q[2], q[3]));
    if (!(length > 0.0) || !std::isfinite(length))
        q = {0.0, 0.0, 0.0, 1.0};
    else
        for (double& component : q)
            component /= length;
}

COrvelMatrix FromColumns(const std::vector<double>& columns)
{
    COrvelMatrix matrix;
    for (int row = 0; row < 4; ++row)
        for (int column = 0; column < 4; ++column)
            matrix.M(row, column) = columns[static_cast<std::size_t>(4 * column + row)];
    return matrix;
}

template <std::size_t Size>
std::array<double, Size> ArrayOr(const std::vector<double>& list, const std::array<double, Size>& fallback)
{
    std::array<double, Size> result = fallback;
    if (list.size() == Size)
        std::copy(list.begin(), list.end(), result.begin());
    return result;
}

} // namespace

COrvelMatrix ComposeTransform(const std::array<double, 3>& translation, Quaternion rotation,
                              const std::array<double, 3>& scale)
{
    BringToUnit(rotation);
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

COrvelMatrix LocalTransform(const tinygltf::Node& node)
{
    const COrvelMatrix matrix = node.matrix.size() == 16
                                    ? FromColumns(node.matrix)
                                    : ComposeTransform(ArrayOr<3>(node.translation, {0.0, 0.0, 0.0}),
                                                       ArrayOr<4>(node.rotation, {0.0, 0.0, 0.0, 1.0}),
                                                       ArrayOr<3>(node.scale, {1.0, 1.0, 1.0}));
    const auto& values = matrix.Values();
    if (!std::all_of(values.begin(), values.end(), [](double value) { return std::isfinite(value); }))
        throw ImportError("its transform is not finite");
    if (values[12] != 0.0 || values[13] != 0.0 || values[14] != 0.0 || values[15] != 1.0)
        throw ImportError("its matrix is a projection, not a transform");
    return matrix;
}

} // namespace Orvel::Import
