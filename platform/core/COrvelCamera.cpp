#include "platform/core/COrvelCamera.h"

#include "platform/core/COrvelTransform.h"

#include <utility>

namespace Orvel
{

COrvelCamera::COrvelCamera(COrvelDocument* document, COrvelString name)
    : COrvelSceneNode(document, eEntityType_Camera, std::move(name))
{}

COrvelCamera* COrvelCamera::Create(COrvelDocument* document, COrvelString name)
{
    COrvelCamera* const camera = new COrvelCamera(document, std::move(name));
    camera->SetLocalTransform(COrvelTransform::Create(document));
    return camera;
}

void COrvelCamera::LoadBasicCamera(const COrvelBasicCamera& camera, bool placement)
{
    values = camera;
    if (!placement)
        return;
    const COrvelMatrix world = camera.ComputeLocalToWorld();
    SetLocalMatrix(Parent() ? Parent()->LocalToWorldMatrix().Inverse() * world : world);
}

COrvelBasicCamera COrvelCamera::ComputeBasicCamera() const
{
    const COrvelProjectionMatrix projection = ProjectionMatrix();
    COrvelBasicCamera camera(LocalToWorldMatrix(), DistanceFromTarget(), &projection);
    camera.SetDOF(DOFIsEnabled(), DOF(), DOFFStop());
    return camera;
}

COrvel3DVertex COrvelCamera::Position() const
{
    return LocalToWorldMatrix().Translation();
}

COrvel3DVertex COrvelCamera::LookAt() const
{
    return ComputeBasicCamera().LookAt();
}

COrvel3DVertex COrvelCamera::CamUp() const
{
    return ComputeBasicCamera().CamUp();
}

COrvelProjectionMatrix COrvelCamera::ProjectionMatrix() const
{
    return COrvelProjectionMatrix(FOV());
}

} // namespace Orvel
