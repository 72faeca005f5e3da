#pragma once

#include "animation/Export.h"
#include "platform/core/COrvel3DVertex.h"
#include "platform/core/COrvelMatrix.h"

namespace Orvel
{

/// Between two affine transforms: translation, scale and shear change linearly, the rotation takes the shorter way on
/// the sphere of quaternions (Shoemake, "Animating rotation with quaternion curves", 1985). Rotations stay rotations.
///
/// A singular matrix takes part with its translation only.
///
/// @param t 0 gives `first`, 1 gives `second`, both up to rounding.
[[nodiscard]] ORVEL_ANIMATION_API COrvelMatrix InterpolateDecomposed(const COrvelMatrix& first,
                                                                     const COrvelMatrix& second, double t);

/// Between two transforms such that the relative motion is taken about a point.
///
/// @param pivot in the coordinates that the transforms map from.
/// @param t     as above.
[[nodiscard]] ORVEL_ANIMATION_API COrvelMatrix InterpolateAboutPivot(const COrvelMatrix& first,
                                                                     const COrvelMatrix& second,
                                                                     const COrvel3DVertex& pivot, double t);

/// The transform at `frame` of the gap between two frames: exactly `first` at and before the smaller one, exactly
/// `second` at and behind the larger one, between them about the pivot along GapFraction.
///
/// @param outMode, inMode easing modes, see EasingApplies.
[[nodiscard]] ORVEL_ANIMATION_API COrvelMatrix InterpolateTransformGap(const COrvelMatrix& first,
                                                                       const COrvelMatrix& second,
                                                                       const COrvel3DVertex& pivot, int frame, int from,
                                                                       int to, int outMode, int inMode);

} // namespace Orvel
