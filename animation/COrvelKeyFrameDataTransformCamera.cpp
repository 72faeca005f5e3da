#include "animation/COrvelKeyFrameDataTransformCamera.h"

#include "animation/Angles.h"
#include "animation/CameraPaths.h"
#include "platform/core/COrvelCamera.h"
#include "platform/core/COrvelTransform.h"

#include <algorithm>
#include <vector>

namespace Orvel
{

namespace
{

/// Members of the property table behind those that the orbit flag decides.
constexpr int OpticsCount = 4;

/// In the coordinates of the camera's own node.
double LocalDistance(const COrvelCamera& camera)
{
    const COrvelMatrix toLocal = camera.LocalToWorldMatrix().Inverse();
    return (toLocal * camera.LookAt() - toLocal * camera.Position()).Length();
}

} // namespace

COrvelKeyFrameDataTransformCamera::COrvelKeyFrameDataTransformCamera(const COrvelID& id, const COrvelMatrix& newMatrix)
    : COrvelKeyFrameDataTransform(id, newMatrix)
{}

COrvelKeyFrameDataTransformCamera::COrvelKeyFrameDataTransformCamera(const COrvelID& id,
                                                                     const COrvelBasicCamera& camera)
    : COrvelKeyFrameDataTransform(id, camera.ComputeLocalToWorld())
    , distanceToTarget(camera.DistanceFromTarget())
    , fieldOfView(camera.FOV())
    , depthOfField(camera.DOF())
    , depthOfFieldFStop(camera.DOFFStop())
    , depthOfFieldEnabled(camera.DOFIsEnabled())
{}

COrvelKeyFrameDataTransformCamera*
COrvelKeyFrameDataTransformCamera::CreateCameraKeyFrameData(const COrvelID& id, const COrvelBasicCamera& camera)
{
    return new COrvelKeyFrameDataTransformCamera(id, camera);
}

COrvelKeyFrameDataTransformCamera*
COrvelKeyFrameDataTransformCamera::CreateCameraKeyFrameData(const COrvelID& id, const COrvelMatrix& matrix,
                                                            double fieldOfView, double distance,
                                                            bool depthOfFieldEnabled, double depthOfField, double fStop)
{
    auto* const data = new COrvelKeyFrameDataTransformCamera(id, matrix);
    data->SetFieldOfView(fieldOfView);
    data->SetDistanceToTarget(distance);
    data->SetDOF(depthOfFieldEnabled, depthOfField, fStop);
    return data;
}

COrvelKeyFrameDataTransformCamera*
COrvelKeyFrameDataTransformCamera::CreateCameraKeyFrameData(const COrvelCamera* camera)
{
    const COrvelTransform* const transform = camera ? camera->LocalTransform() : nullptr;
    if (!transform)
        return nullptr;
    auto* const data = new COrvelKeyFrameDataTransformCamera(transform->ID(), transform->Matrix());
    data->distanceToTarget = LocalDistance(*camera);
    data->fieldOfView = camera->FOV();
    data->SetDOF(camera->DOFIsEnabled(), camera->DOF(), camera->DOFFStop());
    return data;
}

COrvelKeyFrameDataTransformCamera*
COrvelKeyFrameDataTransformCamera::CreateOrbitCameraKeyFrameData(COrvelSceneNode* cameraNode, int start, int end,
                                                                 double angle, bool descend, int constantSpeedStart,
                                                                 int constantSpeedEnd, int easeIn, int easeOut)
{
    const COrvelTransform* const transform = cameraNode ? cameraNode->LocalTransform() : nullptr;
    if (!transform)
        return nullptr;
    const auto* const camera = dynamic_cast<const COrvelCamera*>(cameraNode);
    auto* const data = camera ? CreateCameraKeyFrameData(camera)
                              : new COrvelKeyFrameDataTransformCamera(transform->ID(), transform->Matrix());
    data->angleInDegrees = angle;
    data->descend = descend;
    data->orbit = true;
    data->SetTiming(start, end, constantSpeedStart, constantSpeedEnd, easeIn, easeOut);
    return data;
}

void COrvelKeyFrameDataTransformCamera::RestoreFromCopy(COrvelObject* copy)
{
    if (const auto* const other = dynamic_cast<const COrvelKeyFrameDataTransformCamera*>(copy)) {
        const KeepEntityIDs keep(*this);
        *this = *other;
    }
}

void* COrvelKeyFrameDataTransformCamera::DataMemberSearch(int index, int& type, COrvelString& name, bool apply)
{
    if (!orbit) {
        int inherited = 0;
        COrvelKeyFrameDataTransform::DataMemberSearch(countCommand, inherited, name, false);
        if (index == countCommand) {
            type = inherited + OpticsCount;
            return nullptr;
        }
        return index < inherited ? COrvelKeyFrameDataTransform::DataMemberSearch(index, type, name, apply)
                                 : OpticsMember(index - inherited, type, name, apply);
    }
    constexpr int orbitCount = 3;
    switch (index) {
    case countCommand:
        type = orbitCount + OpticsCount;
        return nullptr;
    case 0:
    case 1:
        return FrameMember(index, type, name, apply);
    case 2:
        return DoubleMember(angleInDegrees, "Angle", type, name);
    default:
        return OpticsMember(index - orbitCount, type, name, apply);
    }
}

void* COrvelKeyFrameDataTransformCamera::OpticsMember(int position, int& type, COrvelString& name, bool apply)
{
    switch (position) {
    case 0:
        if (apply)
            SetFieldOfView(fieldOfView);
        return DoubleMember(fieldOfView, "Field Of View [ 1 - 179 ]", type, name);
    case 1:
        return BoolMember(depthOfFieldEnabled, "Depth Of Field Enabled", type, name);
    case 2:
        return DoubleMember(depthOfField, "Depth Of Field", type, name);
    case 3:
        return DoubleMember(depthOfFieldFStop, "DOF Field Stop", type, name);
    default:
        return nullptr;
    }
}

void COrvelKeyFrameDataTransformCamera::ApplyToEntity()
{
    COrvelKeyFrameDataTransform::ApplyToEntity();
    const auto* const transform = dynamic_cast<const COrvelTransform*>(AnimatedEntityID().Entity());
    if (!transform)
        return;
    std::vector<COrvelSceneNode*> nodes;
    transform->ListSceneNodesReferencingThisTransform(nodes, true);
    for (COrvelSceneNode* const node : nodes) {
        auto* const camera = dynamic_cast<COrvelCamera*>(node);
        if (!camera)
            continue;
        COrvelBasicCamera placed = camera->ComputeBasicCamera();
        placed.SetDistanceToTarget(distanceToTarget);
        camera->LoadBasicCamera(placed, true);
        camera->SetFOV(fieldOfView);
        camera->SetDOF(depthOfFieldEnabled, depthOfField, depthOfFieldFStop);
    }
}

COrvelKeyFrameDataTransformCamera* COrvelKeyFrameDataTransformCamera::Clone(bool) const
{
    return new COrvelKeyFrameDataTransformCamera(*this);
}

COrvelMatrix COrvelKeyFrameDataTransformCamera::Matrix() const
{
    return orbit ? BasicCamera().ComputeLocalToWorld() : StoredMatrix();
}

COrvelBasicCamera COrvelKeyFrameDataTransformCamera::BasicCamera() const
{
    const COrvelBasicCamera base = BaseCamera();
    return orbit ? OrbitCamera(base, Motion(), Radians(angleInDegrees), descend) : base;
}

COrvelBasicCamera COrvelKeyFrameDataTransformCamera::BaseCamera() const
{
    COrvelBasicCamera camera(StoredMatrix(), distanceToTarget, nullptr);
    camera.SetFOV(fieldOfView);
    camera.SetDOF(depthOfFieldEnabled, depthOfField, depthOfFieldFStop);
    return camera;
}

void COrvelKeyFrameDataTransformCamera::SetFieldOfView(double degrees)
{
    fieldOfView = std::clamp(degrees, minimumFieldOfView, maximumFieldOfView);
}

void COrvelKeyFrameDataTransformCamera::SetDOF(bool enabled, double distance, double fStop)
{
    depthOfFieldEnabled = enabled;
    depthOfField = distance;
    depthOfFieldFStop = fStop;
}

} // namespace Orvel
