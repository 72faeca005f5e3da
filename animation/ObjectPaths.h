#pragma once

#include "animation/Export.h"
#include "animation/MotionProfiles.h"
#include "platform/core/COrvel3DVertex.h"
#include "platform/core/COrvelMatrix.h"

namespace Orvel
{

class COrvelBasicPath;

/// An object turning about an axis.
struct RoundTable
{
    COrvelMatrix reference;       ///< the object's transform at the start
    COrvelMatrix axisFrame;       ///< to the coordinates of the axis
    COrvel3DVertex axisPoint;     ///< a point of the axis
    COrvel3DVertex axisDirection; ///< any length; a zero direction never turns
    double angle = 0.0;           ///< radians, over the whole range
};

/// The object's transform at one step; at constant speed throughout, the last step reaches the angle too.
[[nodiscard]] ORVEL_ANIMATION_API COrvelMatrix RoundTableMatrix(const RoundTable& table, const MotionStep& motion);

/// An object carried along a curve.
struct PathFollower
{
    COrvelMatrix base; ///< the object's transform where the curve starts
    COrvelMatrix offset;
    COrvelMatrix reference;   ///< world matrix of the curve for which base and offset were made
    COrvelMatrix parentWorld; ///< world matrix of what carries the object, at the evaluated frame
    COrvelMatrix pathWorld;   ///< world matrix of the curve, at the evaluated frame
};

/// The object's transform at one step. On a closed curve one more step leads back to the start, so that the last step
/// stops short of it.
[[nodiscard]] ORVEL_ANIMATION_API COrvelMatrix FollowerMatrix(const PathFollower& follower, const COrvelBasicPath& path,
                                                              const MotionStep& motion);

} // namespace Orvel
