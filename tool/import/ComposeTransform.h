#pragma once

#include "platform/core/COrvelMatrix.h"

#include <array>

namespace Orvel::Import
{

using Quaternion = std::array<double, 4>; ///< x, y, z, w

/// translation * rotation * scale in double precision. A quaternion whose length is off 1 by more than single precision
/// leaves is brought to unit length first; one of no length is no rotation.
[[nodiscard]] COrvelMatrix ComposeTransform(const std::array<double, 3>& translation, Quaternion rotation,
                                            const std::array<double, 3>& scale);

/// The same rotation with length 1; none at all when there is no length to divide by.
[[nodiscard]] Quaternion UnitQuaternion(const Quaternion& q);

} // namespace Orvel::Import
