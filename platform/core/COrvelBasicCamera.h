#pragma once

#include "platform/core/COrvel3DVertex.h"
#include "platform/core/COrvelMatrix.h"
#include "platform/core/COrvelProjectionMatrix.h"
#include "platform/core/Export.h"

namespace Orvel
{

class COrvelArchiveBase;

/// A camera as a value: where it stands, what it looks at, which way is up, and its optics.
///
/// In its own coordinates a camera looks along -z, with y up and x to the right; the columns of its local-to-world
/// matrix are right (direction x up), up, -direction and position.
class ORVEL_CORE_API COrvelBasicCamera
{
public:
    /// At the origin, looking along -z at distance 1, y up; field of view 30 degrees, depth of field off.
    COrvelBasicCamera() = default;

    /// @param localToWorld frame of the camera; lengths of its columns do not count, and a zero column leaves the
    ///                     default direction or up vector.
    /// @param distance     from the position to the point looked at.
    /// @param projection   gives the field of view; null for the default one; not kept.
    COrvelBasicCamera(const COrvelMatrix& localToWorld, double distance, const COrvelProjectionMatrix* projection);

    [[nodiscard]] const COrvel3DVertex& Position() const { return position; }
    [[nodiscard]] const COrvel3DVertex& LookAt() const { return lookAt; }
    /// Length 1, from the position to the point looked at.
    [[nodiscard]] const COrvel3DVertex& CamDir() const { return direction; }
    /// Length 1 unless it was set to a zero vector. Not always at right angles to the direction.
    [[nodiscard]] const COrvel3DVertex& CamUp() const { return up; }
    [[nodiscard]] double DistanceFromTarget() const { return distanceFromTarget; }

    /// Full vertical angle in degrees.
    [[nodiscard]] double FOV() const { return fieldOfView; }
    /// Distance that depth of field keeps sharp.
    [[nodiscard]] double DOF() const { return depthOfField; }
    [[nodiscard]] double DOFFStop() const { return depthOfFieldFStop; }
    [[nodiscard]] bool DOFIsEnabled() const { return depthOfFieldEnabled; }

    /// Moves the eye; the point looked at moves along.
    void SetPosition(const COrvel3DVertex& eye);

    /// Turns on the spot; the distance stays. A zero vector changes nothing.
    void SetDir(double x, double y, double z) { SetDir({x, y, z}); }
    void SetDir(const COrvel3DVertex& newDirection);

    /// Stores the vector at length 1.
    void SetCamUp(double x, double y, double z) { SetCamUp({x, y, z}); }
    void SetCamUp(const COrvel3DVertex& newUp);

    /// Moves the point looked at along the direction.
    void SetDistanceToTarget(double distance);

    /// Stored as given, degrees.
    void SetFOV(double degrees) { fieldOfView = degrees; }
    void SetDOF(bool enabled, double distance, double fStop);

    /// Takes over both points exactly; direction and distance follow. Equal points keep the direction.
    ///
    /// @param straightenUp true: the up vector is brought to right angles with the new direction, at length 1 (any such
    ///                     vector when it lies along the direction). false: it stays.
    void SetLookAtAndPositionFromLookAtTarget(const COrvel3DVertex& target, const COrvel3DVertex& eye,
                                              bool straightenUp);

    /// The camera's frame: an orthonormal matrix with the position in column 3.
    [[nodiscard]] COrvelMatrix ComputeLocalToWorld() const;

    /// Moves the position and the point looked at, and turns the up vector; the distance follows.
    void ModifyByTransform(const COrvelMatrix& matrix);

    /// Every value as it stands.
    bool ArchiveReadWrite(COrvelArchiveBase& archive);

private:
    COrvel3DVertex position{0.0, 0.0, 0.0};
    COrvel3DVertex lookAt{0.0, 0.0, -1.0};
    COrvel3DVertex direction{0.0, 0.0, -1.0};
    COrvel3DVertex up{0.0, 1.0, 0.0};
    double distanceFromTarget = 1.0;
    double fieldOfView = COrvelProjectionMatrix::DefaultFOV;
    double depthOfField = 5.0;
    double depthOfFieldFStop = 1.4;
    bool depthOfFieldEnabled = false;
};

} // namespace Orvel
