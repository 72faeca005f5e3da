#include "animation/CameraPaths.h"

#include "animation/Angles.h"

#include <algorithm>

namespace Orvel
{

namespace
{

constexpr double HalfPi = 1.5707963267948966;
constexpr double RadiansPerDegree = 0.017453292519943295;
constexpr double FullTurn = -6.283185307179586; // counter-clockwise seen from above

/// Direction, side and up of a camera as rows, with the point looked at in the last column. Multiplied by a rotation on
/// its right the rows turn and the column stays.
COrvelMatrix OrbitFrame(const COrvelBasicCamera& camera)
{
    const COrvel3DVertex& direction = camera.CamDir();
    const COrvel3DVertex& up = camera.CamUp();
    const COrvel3DVertex side = direction.Cross(up);
    const COrvel3DVertex& target = camera.LookAt();
    return COrvelMatrix({direction.X(), direction.Y(), direction.Z(), target.X(), //
                         side.X(), side.Y(), side.Z(), target.Y(),                //
                         up.X(), up.Y(), up.Z(), target.Z(),                      //
                         0.0, 0.0, 0.0, 1.0});
}

COrvel3DVertex Row(const COrvelMatrix& matrix, int row)
{
    return {matrix.M(row, 0), matrix.M(row, 1), matrix.M(row, 2)};
}

/// @param turn    radians.
/// @param descent how far the eye has come down.
/// @param descend the up vector is straightened for the lowered eye.
COrvelBasicCamera TurnedCamera(const COrvelBasicCamera& base, double turn, double descent, bool descend)
{
    const COrvelMatrix turned = OrbitFrame(base) * COrvelMatrix().DefineByRotation(turn, 0.0, 0.0, 1.0);
    const double radius = (base.LookAt() - base.Position()).Length();
    const COrvel3DVertex eye = turned.Translation() - Row(turned, 0) * radius - COrvel3DVertex(0.0, 0.0, descent);
    COrvelBasicCamera camera = base;
    camera.SetPosition(eye);
    camera.SetCamUp(Row(turned, 2));
    camera.SetLookAtAndPositionFromLookAtTarget(base.LookAt(), eye, descend);
    camera.SetFOV(base.FOV());
    return camera;
}

/// Part of `total` done at a step of an orbit.
double OrbitProgress(const MotionStep& motion, double total)
{
    return motion.IsLinear() ? motion.step * total / motion.frames : ProfileAngle(motion, total);
}

CameraGrid Usable(CameraGrid grid)
{
    grid.rows = std::max(grid.rows, 2);
    grid.columns = std::max(grid.columns, 1);
    return grid;
}

/// @param elevation radians about the x axis through the centre; negative lifts the eye.
COrvelBasicCamera GridCamera(const CameraGrid& grid, double elevation, int column)
{
    COrvelBasicCamera base;
    base.SetPosition(grid.centre - COrvel3DVertex(0.0, grid.distance, 0.0));
    base.SetDir(0.0, 1.0, 0.0);
    base.SetDistanceToTarget(grid.distance);
    base.SetCamUp(0.0, 0.0, 1.0);
    base.SetFOV(grid.fieldOfView);
    base.ModifyByTransform(COrvelMatrix::CreateTranslation(grid.centre) *
                           COrvelMatrix::CreateRotaionAroundX(elevation) *
                           COrvelMatrix::CreateTranslation(-grid.centre));
    return TurnedCamera(base, column * FullTurn / grid.columns, 0.0, false);
}

} // namespace

COrvelBasicCamera OrbitCamera(const COrvelBasicCamera& base, const MotionStep& motion, double angle, bool descend)
{
    if (motion.frames <= 1)
        return base;
    const double descent = descend ? OrbitProgress(motion, base.Position().Z()) : 0.0;
    return TurnedCamera(base, OrbitProgress(motion, angle), descent, descend);
}

COrvelBasicCamera HemisphericalGridCamera(const CameraGrid& requested, int step)
{
    const CameraGrid grid = Usable(requested);
    const int row = grid.rows - step / grid.columns - 1;
    const double elevation = -(90.0 - 90.0 / (grid.rows - 1) * row) * RadiansPerDegree;
    return GridCamera(grid, elevation, step % grid.columns);
}

COrvelBasicCamera SphericalGridCamera(const CameraGrid& requested, int step)
{
    const CameraGrid grid = Usable(requested);
    const int row = step / grid.columns;
    const double elevation = grid.verticalWrap ? -(360.0 / grid.rows) * row * RadiansPerDegree
                                               : Radians(180.0 / (grid.rows - 1) * row) - HalfPi;
    return GridCamera(grid, elevation, step % grid.columns);
}

} // namespace Orvel
