#include "platform/core/COrvelBasicCamera.h"

#include "platform/core/COrvelArchiveBase.h"
#include "platform/core/OrthonormalFrame.h"

#include <cmath>

namespace Orvel
{

namespace
{

// `direction` at length 1; `fallback` when it has no direction.
COrvel3DVertex UnitOr(const COrvel3DVertex& direction, const COrvel3DVertex& fallback)
{
    return direction == COrvel3DVertex() ? fallback : direction.Normalised();
}

} // namespace

COrvelBasicCamera::COrvelBasicCamera(const COrvelMatrix& localToWorld, double distance,
                                     const COrvelProjectionMatrix* projection)
    : position(localToWorld.Translation())
    , direction(UnitOr(-localToWorld.Axis(2), {0.0, 0.0, -1.0}))
    , up(UnitOr(localToWorld.Axis(1), {0.0, 1.0, 0.0}))
{
    SetDistanceToTarget(distance);
    if (projection)
        fieldOfView = projection->FOV();
}

void COrvelBasicCamera::SetPosition(const COrvel3DVertex& eye)
{
    position = eye;
    lookAt = position + direction * distanceFromTarget;
}

void COrvelBasicCamera::SetDir(const COrvel3DVertex& newDirection)
{
    direction = UnitOr(newDirection, direction);
    lookAt = position + direction * distanceFromTarget;
}

void COrvelBasicCamera::SetCamUp(const COrvel3DVertex& newUp)
{
    up = newUp.Normalised();
}

void COrvelBasicCamera::SetDistanceToTarget(double distance)
{
    distanceFromTarget = distance;
    lookAt = position + direction * distanceFromTarget;
}

void COrvelBasicCamera::SetDOF(bool enabled, double distance, double fStop)
{
    depthOfFieldEnabled = enabled;
    depthOfField = distance;
    depthOfFieldFStop = fStop;
}

void COrvelBasicCamera::SetLookAtAndPositionFromLookAtTarget(const COrvel3DVertex& target, const COrvel3DVertex& eye,
                                                             bool straightenUp)
{
    const COrvel3DVertex view = target - eye;
    position = eye;
    lookAt = target;
    direction = UnitOr(view, direction);
    distanceFromTarget = view.Length();
    if (straightenUp)
        up = MakeOrthonormalFrame(direction, up)[1];
}

COrvelMatrix COrvelBasicCamera::ComputeLocalToWorld() const
{
    const auto [forwards, upwards, right] = MakeOrthonormalFrame(direction, up);
    return COrvelMatrix({right.X(), upwards.X(), -forwards.X(), position.X(), //
                         right.Y(), upwards.Y(), -forwards.Y(), position.Y(), //
                         right.Z(), upwards.Z(), -forwards.Z(), position.Z(), //
                         0.0, 0.0, 0.0, 1.0});
}

void COrvelBasicCamera::ModifyByTransform(const COrvelMatrix& matrix)
{
    position.ModifyByTransform(matrix);
    lookAt.ModifyByTransform(matrix);
    // Mapped as a direction of its own: it must turn even where it has no length.
    direction = UnitOr(matrix.TransformDirection(direction), direction);
    up = matrix.TransformDirection(up).Normalised();
    distanceFromTarget = std::copysign((lookAt - position).Length(), distanceFromTarget);
}

bool COrvelBasicCamera::ArchiveReadWrite(COrvelArchiveBase& archive)
{
    COrvelBasicCamera archived = *this;
    if (!archive.ReadWrite(archived.position, archived.lookAt, archived.direction, archived.up) ||
        !archive.ReadWrite(archived.distanceFromTarget, archived.fieldOfView) ||
        !archive.ReadWrite(archived.depthOfField, archived.depthOfFieldFStop, archived.depthOfFieldEnabled))
        return false;
    *this = archived;
    return true;
}

} // namespace Orvel
