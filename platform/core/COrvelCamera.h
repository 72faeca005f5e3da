#pragma once

#include "platform/core/COrvel3DVertex.h"
#include "platform/core/COrvelBasicCamera.h"
#include "platform/core/COrvelProjectionMatrix.h"
#include "platform/core/COrvelSceneNode.h"
#include "platform/core/Export.h"

namespace Orvel
{

/// A camera in the scene. It looks along the negative z axis of its node, with y up; lengths are in scene units, angles
/// in degrees.
class ORVEL_CORE_API COrvelCamera : public COrvelSceneNode
{
public:
    /// A new camera with a local transform of its own. Never null.
    static COrvelCamera* Create(COrvelDocument* document, COrvelString name = {});

    /// Takes over field of view, depth of field and distance of `camera`, which is in world coordinates.
    ///
    /// @param placement true: the local transform is set as well, so that the node's world matrix is the camera's.
    void LoadBasicCamera(const COrvelBasicCamera& camera, bool placement);
    /// The camera in world coordinates, as it stands.
    COrvelBasicCamera ComputeBasicCamera() const;

    // --- in world coordinates
    COrvel3DVertex Position() const;
    COrvel3DVertex LookAt() const;
    COrvel3DVertex CamUp() const;

    /// From the camera to the point that it looks at.
    double DistanceFromTarget() const { return values.DistanceFromTarget(); }
    void SetDistanceToTarget(double distance) { values.SetDistanceToTarget(distance); }
    /// Carries the field of view.
    COrvelProjectionMatrix ProjectionMatrix() const;
    double FOV() const { return values.FOV(); }
    void SetFOV(double angleInDegrees) { values.SetFOV(angleInDegrees); }
    double DOF() const { return values.DOF(); }
    double DOFFStop() const { return values.DOFFStop(); }
    bool DOFIsEnabled() const { return values.DOFIsEnabled(); }
    void SetDOF(bool enabled, double distance, double fStop) { values.SetDOF(enabled, distance, fStop); }

protected:
    COrvelCamera(COrvelDocument* document, COrvelString name);

private:
    /// Field of view, depth of field and distance; the placement in it is not looked at.
    COrvelBasicCamera values;
};

} // namespace Orvel
