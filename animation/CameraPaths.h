#pragma once

#include "animation/Export.h"
#include "animation/MotionProfiles.h"
#include "platform/core/COrvelBasicCamera.h"

namespace Orvel
{

/// The camera at one step of its orbit about the point that it looks at, turning about its up vector.
///
/// At constant speed throughout, the last step stops one step short of the full angle, so that a closed orbit does not
/// repeat its first view; otherwise the last step reaches the angle. A positive angle goes clockwise seen from above.
///
/// @param base           where the orbit starts; the result for a range of one frame.
/// @param angle          radians, over the whole range.
/// @param descend        the eye's height (its z) also runs out to 0, in the timing of the turn.
[[nodiscard]] ORVEL_ANIMATION_API COrvelBasicCamera OrbitCamera(const COrvelBasicCamera& base, const MotionStep& motion,
                                                                double angle, bool descend);

/// A grid of views of one point: rows of a full turn each.
struct CameraGrid
{
    COrvel3DVertex centre;
    double distance = 1.0;     ///< of every view from the centre
    double fieldOfView = 30.0; ///< degrees
    int rows = 2;              ///< below 2 counts as 2
    int columns = 1;           ///< views of a row; below 1 counts as 1
    bool verticalWrap = false; ///< rows of a spherical grid go round a full vertical circle
};

/// View number `step` of a dome over the centre: the first row is level, the last one straight above. Depth of field is
/// off. Within a row the views go counter-clockwise seen from above, from -y on.
///
/// @param step row * columns + column, from 0 on.
[[nodiscard]] ORVEL_ANIMATION_API COrvelBasicCamera HemisphericalGridCamera(const CameraGrid& grid, int step);

/// View number `step` of a sphere round the centre: rows from straight above to straight below, or, with vertical wrap,
/// evenly round a vertical circle from the level row on.
[[nodiscard]] ORVEL_ANIMATION_API COrvelBasicCamera SphericalGridCamera(const CameraGrid& grid, int step);

} // namespace Orvel
