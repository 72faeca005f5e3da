#include "animation/CameraInterpolation.h"

#include "animation/MotionProfiles.h"

namespace Orvel
{

COrvelBasicCamera InterpolateCameras(const COrvelBasicCamera& first, const COrvelBasicCamera& second, double t)
{
    const COrvel3DVertex target = LerpFraction(first.LookAt(), second.LookAt(), t);
    const COrvel3DVertex eye = LerpFraction(first.Position(), second.Position(), t);
    // Eyes that pass through the target leave no direction of their own: the first camera's holds then.
    COrvel3DVertex direction = (target - eye).Normalised();
    if (direction.Length() == 0.0)
        direction = first.CamDir();
    const double distance = LerpFraction(first.DistanceFromTarget(), second.DistanceFromTarget(), t);

    COrvelBasicCamera camera = first;
    camera.SetCamUp(LerpFraction(first.CamUp(), second.CamUp(), t));
    camera.SetLookAtAndPositionFromLookAtTarget(target, target - direction * distance, true);
    camera.SetFOV(LerpFraction(first.FOV(), second.FOV(), t));
    camera.SetDOF(t > 0.5 ? second.DOFIsEnabled() : first.DOFIsEnabled(), LerpFraction(first.DOF(), second.DOF(), t),
                  LerpFraction(first.DOFFStop(), second.DOFFStop(), t));
    return camera;
}

COrvelBasicCamera InterpolateCameraGap(const COrvelBasicCamera& first, const COrvelBasicCamera& second, int frame,
                                       int from, int to, int outMode, int inMode)
{
    if (from == to)
        return first;
    const std::int64_t start = from;
    return InterpolateCameras(first, second, EaseFraction(to - start, frame - start, outMode, inMode));
}

} // namespace Orvel
