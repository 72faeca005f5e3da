#include "tool/script/ScriptedCamera.h"

#include "animation/COrvelKeyFrameDataTransformSphericalCamera.h"
#include "animation/COrvelKeyFrameManager.h"
#include "platform/core/COrvelCamera.h"
#include "platform/core/COrvelDocument.h"
#include "platform/core/COrvelTransform.h"

#include <cmath>
#include <numbers>

namespace Orvel::Script
{

namespace
{

using Spherical = COrvelKeyFrameDataTransformSphericalCamera;

/// From the front (-y), a little from above, as far away that the ball round the scene is in the picture.
COrvel3DVertex UsualPosition(const COrvel3DVertex& target, const Animate::SceneExtent& extent, double fieldOfView)
{
    const double radius = extent.Diagonal() > 0.0 ? extent.Diagonal() / 2.0 : 1.0;
    const double distance = radius / std::sin(fieldOfView / 2.0 * std::numbers::pi / 180.0);
    constexpr double elevation = 20.0 * std::numbers::pi / 180.0;
    return target + COrvel3DVertex(0.0, -std::cos(elevation), std::sin(elevation)) * distance;
}

COrvelBasicCamera BaseCamera(const ScriptCamera& script, const Animate::SceneExtent& extent)
{
    const COrvel3DVertex target = script.target.value_or(extent.Centre());
    const double fieldOfView = script.fieldOfViewInDegrees;
    COrvelBasicCamera camera;
    camera.SetFOV(fieldOfView);
    camera.SetCamUp(0.0, 0.0, 1.0);
    camera.SetLookAtAndPositionFromLookAtTarget(
        target, script.position.value_or(UsualPosition(target, extent, fieldOfView)), true);
    return camera;
}

int GridType(CameraMove::Type type)
{
    if (type == CameraMove::Type::Circle)
        return Spherical::eGridType_RoundTable;
    return type == CameraMove::Type::Dome ? Spherical::eGridType_Hemispherical : Spherical::eGridType_Spherical;
}

COrvelPtr<COrvelKeyFrameData> MakeGrid(const CameraMove& move, const COrvelID& id, const COrvelBasicCamera& base)
{
    const COrvelPtr<Spherical> grid(Spherical::CreateSphericalCameraKeyFrameData(id, base));
    grid->SetGridType(GridType(move.type));
    grid->SetRows(move.rows);
    grid->SetColumns(move.columns);
    grid->SetVerticalWrap(move.wrap);
    grid->SetCentre(base.LookAt());
    const int last = static_cast<int>(LastFrameOf(move));
    grid->SetTiming(move.from, last, move.from, last, 0, 0);
    return grid;
}

COrvelPtr<COrvelKeyFrameData> MakeMove(const CameraMove& move, COrvelCamera& camera, const COrvelBasicCamera& base)
{
    if (move.type != CameraMove::Type::Orbit)
        return MakeGrid(move, camera.LocalTransform()->ID(), base);
    const auto [steadyFrom, steadyTo] = move.constantSpeed.value_or(std::pair(move.from, move.to));
    return {COrvelKeyFrameDataTransformCamera::CreateOrbitCameraKeyFrameData(
        &camera, move.from, move.to, move.angleInDegrees, move.descend, steadyFrom, steadyTo, 0, 0)};
}

} // namespace

long long LastFrameOf(const CameraMove& move)
{
    const long long columns = move.columns;
    switch (move.type) {
    case CameraMove::Type::Orbit:
        return move.to;
    case CameraMove::Type::Circle:
        return move.from + columns - 1;
    case CameraMove::Type::Dome:
    case CameraMove::Type::Sphere:
        break;
    }
    return move.from + move.rows * columns - 1;
}

COrvelCamera* AddCamera(const ScriptCamera& script, const Animate::SceneExtent& extent, COrvelDocument& document,
                        COrvelKeyFrameManager& timeline)
{
    const COrvelBasicCamera base = BaseCamera(script, extent);
    COrvelCamera* const camera = COrvelCamera::Create(&document, COrvelString(script.name.c_str()));
    document.AddRootNode(camera);
    camera->LoadBasicCamera(base, true);
    for (const CameraMove& move : script.moves) {
        COrvelPtr<COrvelKeyFrameData> data = MakeMove(move, *camera, base);
        timeline.AddKeyFrameData(data, true);
    }
    document.SetActiveCamera(camera);
    return camera;
}

} // namespace Orvel::Script
