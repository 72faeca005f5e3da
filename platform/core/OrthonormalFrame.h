#pragma once

#include "platform/core/COrvel3DVertex.h"

#include <array>

namespace Orvel
{

/// Three directions of length 1 at right angles, right-handed.
using OrthonormalFrame = std::array<COrvel3DVertex, 3>;

/// The first axis along `first`, the second in the plane of both towards `second`. A zero `first` is replaced by a
/// perpendicular of `second`, a `second` that is zero or along `first` by one of `first`; two zeros give x, y, z.
[[nodiscard]] OrthonormalFrame MakeOrthonormalFrame(const COrvel3DVertex& first, const COrvel3DVertex& second);

} // namespace Orvel
