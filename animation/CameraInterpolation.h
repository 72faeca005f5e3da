#pragma once

#include "animation/Export.h"
#include "platform/core/COrvelBasicCamera.h"

namespace Orvel
{

/// Between two cameras. The point looked at and the up vector change linearly, and so does the distance to the target,
/// also when the eye swings round it. Optics change linearly; depth of field is switched half way.
///
/// @param t 0 gives `first`, 1 gives `second`, both up to rounding and an up vector at right angles to the direction.
[[nodiscard]] ORVEL_ANIMATION_API COrvelBasicCamera InterpolateCameras(const COrvelBasicCamera& first,
                                                                       const COrvelBasicCamera& second, double t);

/// The camera at `frame` of the gap between two frames; `first` when both are equal.
///
/// @param frame           from `from` to `to`.
/// @param outMode, inMode easing modes, see EasingApplies.
[[nodiscard]] ORVEL_ANIMATION_API COrvelBasicCamera InterpolateCameraGap(const COrvelBasicCamera& first,
                                                                         const COrvelBasicCamera& second, int frame,
                                                                         int from, int to, int outMode, int inMode);

} // namespace Orvel
