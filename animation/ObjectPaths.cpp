#include "animation/ObjectPaths.h"

#include "platform/core/COrvelBasicPath.h"

namespace Orvel
{

namespace
{

/// Point and directions of a curve in world coordinates; the directions have length 1.
struct PathFrame
{
    COrvel3DVertex point;
    COrvel3DVertex first;
    COrvel3DVertex second;
};

PathFrame FrameAt(const COrvelBasicPath& path, double u, const COrvelMatrix& world)
{
    return {world * path.Point(u, 0), world.TransformDirection(path.FirstDirection(u, 0)).Normalised(),
            world.TransformDirection(path.SecondDirection(u, 0)).Normalised()};
}

double PathParameter(const MotionStep& motion, bool closed)
{
    const int extra = closed ? 1 : 0;
    const int steps = motion.frames - 1 + extra;
    if (steps <= 0)
        return TrapezoidFraction(0.0, 0.0, 0.0);
    const double length = steps;
    return TrapezoidFraction(motion.step / length, motion.constantSpeedStart / length,
                             (motion.constantSpeedEnd + extra) / length);
}

} // namespace

COrvelMatrix RoundTableMatrix(const RoundTable& table, const MotionStep& motion)
{
    if (motion.frames <= 1)
        return table.reference;
    const double turn =
        motion.IsLinear() ? motion.step * table.angle / (motion.frames - 1) : ProfileAngle(motion, table.angle);
    return table.axisFrame.Inverse() * COrvelMatrix::CreateTranslation(table.axisPoint) *
           COrvelMatrix().DefineByRotation(turn, table.axisDirection) *
           COrvelMatrix::CreateTranslation(-table.axisPoint) * table.axisFrame * table.reference;
}

COrvelMatrix FollowerMatrix(const PathFollower& follower, const COrvelBasicPath& path, const MotionStep& motion)
{
    if (motion.frames <= 1)
        return follower.base;
    const PathFrame start = FrameAt(path, 0.0, follower.pathWorld);
    const PathFrame here = FrameAt(path, PathParameter(motion, path.IsClosed()), follower.pathWorld);
    const COrvelMatrix carried = COrvelMatrix::CreateCoordinatesTransform(
        here.point, here.first, here.second, start.point, start.first, start.second, false);
    return follower.parentWorld.Inverse() * carried * follower.pathWorld * follower.reference.Inverse() *
           follower.offset * follower.base;
}

} // namespace Orvel
