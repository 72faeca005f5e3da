#pragma once

#include "animation/COrvelKeyFrameDataTransform.h"
#include "platform/core/COrvelBasicCamera.h"

namespace Orvel
{

class COrvelCamera;
class COrvelSceneNode;

/// Placement and optics of a camera, filed under the camera's local transform. With the orbit flag the camera goes
/// round the point that it looks at.
class ORVEL_ANIMATION_API COrvelKeyFrameDataTransformCamera : public COrvelKeyFrameDataTransform
{
public:
    static constexpr double minimumFieldOfView = 1.0;   ///< degrees
    static constexpr double maximumFieldOfView = 179.0; ///< degrees

    // --- construction: each returns a new data with reference count 0

    static COrvelKeyFrameDataTransformCamera* CreateCameraKeyFrameData(const COrvelID& id,
                                                                       const COrvelBasicCamera& camera);
    /// @param fieldOfView degrees, brought into the limits above.
    static COrvelKeyFrameDataTransformCamera* CreateCameraKeyFrameData(const COrvelID& id, const COrvelMatrix& matrix,
                                                                       double fieldOfView, double distance,
                                                                       bool depthOfFieldEnabled, double depthOfField,
                                                                       double fStop);
    /// The camera as it stands in its node, for the node's local transform; null for a null node and for one without
    /// a local transform.
    static COrvelKeyFrameDataTransformCamera* CreateCameraKeyFrameData(const COrvelCamera* camera);
    /// A camera that orbits from where its node stands.
    ///
    /// @param cameraNode its local transform is animated; the optics are those of a COrvelCamera, else default ones.
    /// @param angle      degrees over the range.
    /// @param descend    the eye comes down to height 0 on the way.
    /// @return null for a null node and for one without a local transform.
    static COrvelKeyFrameDataTransformCamera*
    CreateOrbitCameraKeyFrameData(COrvelSceneNode* cameraNode, int start, int end, double angle, bool descend,
                                  int constantSpeedStart, int constantSpeedEnd, int easeIn, int easeOut);

    // --- key frame data

    void RestoreFromCopy(COrvelObject* copy) override;
    /// "Working Frame" and the optics; with the orbit flag the range and the angle in place of the working frame.
    void* DataMemberSearch(int index, int& type, COrvelString& name, bool apply) override;
    bool ReadFromArchive(COrvelArchiveBase& archive) override;
    bool WriteIntoArchive(COrvelArchiveBase& archive) override;
    int Type() const override { return eKeyFrameDataType_TransformCamera; }
    /// Places the transform, then gives every camera that carries it this data's distance and optics.
    void ApplyToEntity() override;
    /// A full copy in either case.
    COrvelKeyFrameDataTransformCamera* Clone(bool atWorkingFrame) const override;
    /// With the orbit flag the frame of BasicCamera(), else the stored matrix.
    COrvelMatrix Matrix() const override;

    /// The camera at EffectiveFrame(), in the coordinates of the stored matrix; without the orbit flag the same at
    /// every frame.
    virtual COrvelBasicCamera BasicCamera() const;

    // --- values

    double DistanceToTarget() const { return distanceToTarget; }
    void SetDistanceToTarget(double distance) { distanceToTarget = distance; }
    double AngleInDegrees() const { return angleInDegrees; }
    void SetAngleInDegrees(double angle) { angleInDegrees = angle; }
    bool Descends() const { return descend; }
    void SetDescends(bool newDescend) { descend = newDescend; }
    bool IsOrbit() const { return orbit; }
    void SetOrbit(bool newOrbit) { orbit = newOrbit; }
    /// A gap between two data with this flag is blended as cameras, else as transforms.
    bool UsesCameraBlend() const { return cameraBlend; }
    void SetUsesCameraBlend(bool newCameraBlend) { cameraBlend = newCameraBlend; }
    /// Degrees.
    double FieldOfView() const { return fieldOfView; }
    /// Brought into the limits above.
    void SetFieldOfView(double degrees);
    bool DOFIsEnabled() const { return depthOfFieldEnabled; }
    double DOFDistance() const { return depthOfField; }
    double DOFFStop() const { return depthOfFieldFStop; }
    void SetDOF(bool enabled, double distance, double fStop);

protected:
    COrvelKeyFrameDataTransformCamera(const COrvelID& id, const COrvelMatrix& newMatrix);
    COrvelKeyFrameDataTransformCamera(const COrvelID& id, const COrvelBasicCamera& camera);
    COrvelKeyFrameDataTransformCamera(const COrvelKeyFrameDataTransformCamera&) = default;
    COrvelKeyFrameDataTransformCamera& operator=(const COrvelKeyFrameDataTransformCamera&) = default;

    /// The camera of the stored matrix, distance and optics: where an orbit starts.
    COrvelBasicCamera BaseCamera() const;

private:
    bool ReadWholeCamera(COrvelArchiveBase& archive);
    void* OpticsMember(int position, int& type, COrvelString& name, bool apply);

    double distanceToTarget = 1.0;
    double angleInDegrees = 360.0;
    bool descend = false;
    bool orbit = false;
    bool cameraBlend = false;
    double fieldOfView = 30.0;
    double depthOfField = 5.0;
    double depthOfFieldFStop = 1.4;
    bool depthOfFieldEnabled = false;
};

} // namespace Orvel
