#include "platform/core/OrthonormalFrame.h"

#include <cmath>

namespace Orvel
{

namespace
{

// Below this sine of the angle between two directions, the plane that they span is a matter of rounding.
constexpr double SmallestSine = 1e-14;

bool IsUnit(const COrvel3DVertex& direction)
{
    return std::abs(direction.Dot(direction) - 1.0) < 0.5; // not for a zero vector, nor for one that is not finite
}

COrvel3DVertex WithoutPartAlong(const COrvel3DVertex& axis, const COrvel3DVertex& direction)
{
    return direction - axis * axis.Dot(direction);
}

} // namespace

OrthonormalFrame MakeOrthonormalFrame(const COrvel3DVertex& first, const COrvel3DVertex& second)
{
    const COrvel3DVertex towards = second.Normalised();
    COrvel3DVertex axis = first.Normalised();
    if (!IsUnit(axis)) {
        if (!IsUnit(towards))
            return {COrvel3DVertex(1.0, 0.0, 0.0), COrvel3DVertex(0.0, 1.0, 0.0), COrvel3DVertex(0.0, 0.0, 1.0)};
        axis = towards.AnyPerpendicular();
    }
    COrvel3DVertex side = WithoutPartAlong(axis, towards);
    if (!(side.Length() > SmallestSine))
        side = axis.AnyPerpendicular();
    // Once more: what rounding leaves along the axis counts when the two directions are close.
    side = WithoutPartAlong(axis, side.Normalised()).Normalised();
    return {axis, side, axis.Cross(side)};
}

} // namespace Orvel
