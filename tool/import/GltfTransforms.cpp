#include "tool/import/GltfTransforms.h"

#include "tool/import/ComposeTransform.h"
#include "tool/import/ImportReport.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <vector>

namespace Orvel::Import
{

namespace
{

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

ImportedPose LocalPose(const tinygltf::Node& node)
{
    const ImportedPose neutral;
    return {ArrayOr<3>(node.translation, neutral.translation), ArrayOr<4>(node.rotation, neutral.rotation),
            ArrayOr<3>(node.scale, neutral.scale)};
}

COrvelMatrix LocalTransform(const tinygltf::Node& node)
{
    const ImportedPose pose = LocalPose(node);
    const COrvelMatrix matrix = node.matrix.size() == 16
                                    ? FromColumns(node.matrix)
                                    : ComposeTransform(pose.translation, pose.rotation, pose.scale);
    const auto& values = matrix.Values();
    if (!std::all_of(values.begin(), values.end(), [](double value) { return std::isfinite(value); }))
        throw ImportError("its transform is not finite");
    if (values[12] != 0.0 || values[13] != 0.0 || values[14] != 0.0 || values[15] != 1.0)
        throw ImportError("its matrix is a projection, not a transform");
    return matrix;
}

} // namespace Orvel::Import
