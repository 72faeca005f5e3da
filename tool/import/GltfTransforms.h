#pragma once

#include "platform/core/COrvelMatrix.h"
#include "tool/import/GltfDocument.h"

#include <array>
#include <string>

namespace Orvel::Import
{

using Quaternion = std::array<double, 4>; ///< x, y, z, w

/// translation * rotation * scale in double precision. A quaternion whose length is off 1 by more than single precision
/// leaves is brought to unit length first; one of no length is no rotation.
[[nodiscard]] COrvelMatrix ComposeTransform(const std::array<double, 3>& translation, Quaternion rotation,
                                            const std::array<double, 3>& scale);

/// The local transform of a node: its matrix as it stands, otherwise composed.
/// @throws ImportError when a number leaves the range of double, or the matrix is a projection (bottom row).
[[nodiscard]] COrvelMatrix LocalTransform(const tinygltf::Node& node);

} // namespace Orvel::Import
