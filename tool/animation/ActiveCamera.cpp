#include "tool/animation/ActiveCamera.h"

#include "animation/COrvelKeyFrameManager.h"
#include "platform/core/COrvelCamera.h"
#include "platform/core/COrvelDocument.h"
#include "tool/animation/NameList.h"

#include <algorithm>
#include <vector>

namespace Orvel::Animate
{

namespace
{

COrvelCamera* FindByName(const Import::BuiltDocument& built, const std::string& name)
{
    const auto isNode = [&](const Import::DocumentCamera& camera) { return camera.node->Name() == COrvelString(name); };
    const auto isCamera = [&](const Import::DocumentCamera& camera) { return camera.values.name == name; };
    auto found = std::find_if(built.cameras.begin(), built.cameras.end(), isNode);
    if (found == built.cameras.end())
        found = std::find_if(built.cameras.begin(), built.cameras.end(), isCamera);
    return found == built.cameras.end() ? nullptr : found->node;
}

COrvelCamera* FindMoving(const Import::BuiltDocument& built, const COrvelKeyFrameManager& manager)
{
    const auto found =
        std::find_if(built.cameras.begin(), built.cameras.end(),
                     [&](const Import::DocumentCamera& camera) { return manager.IsNodeAnimated(camera.node); });
    return found == built.cameras.end() ? nullptr : found->node;
}

void LookAtMiddle(COrvelCamera& camera, const SceneExtent& extent)
{
    const COrvel3DVertex position = camera.Position();
    const COrvel3DVertex direction = (camera.LookAt() - position).Normalised();
    const double distance = direction.Dot(extent.Centre() - position);
    constexpr double Nearest = 0.01; // of the diagonal: nearer points do not show which way the camera looks
    if (distance > Nearest * extent.Diagonal())
        camera.SetDistanceToTarget(distance);
    else if (extent.Diagonal() > 0.0) // the middle lies beside the camera or behind it
        camera.SetDistanceToTarget(extent.Diagonal());
}

} // namespace

COrvelCamera* ChooseActiveCamera(const Import::BuiltDocument& built, const std::string& name,
                                 const COrvelKeyFrameManager& manager, const SceneExtent& extent,
                                 Import::ImportReport& report)
{
    COrvelCamera* const camera = name.empty() ? FindMoving(built, manager) : FindByName(built, name);
    if (!camera && name.empty())
        return nullptr;
    if (!camera) {
        std::vector<std::string> names;
        for (const Import::DocumentCamera& known : built.cameras)
            names.push_back(known.node->Name().toStdString());
        throw Import::ImportError(NotFound("camera", name, names));
    }
    if (!manager.IsNodeAnimated(camera))
        report.Warn("camera " + Import::Quoted(name) + " does not move");
    LookAtMiddle(*camera, extent);
    built.document->SetActiveCamera(camera);
    return camera;
}

} // namespace Orvel::Animate
