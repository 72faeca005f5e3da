#include "animation/COrvelKeyFrameManager.h"
#include "mapping/COrvelPRCMapper.h"
#include "platform/core/COrvelCamera.h"
#include "platform/core/COrvelDocumentsContainer.h"
#include "prc/COrvelPRCHandler.h"

#include <cstdlib>
#include <utility>
#include <vector>

namespace Orvel
{

namespace
{

/// The host's own list of camera positions reads them from the temporary document, which keeps them.
void LeaveCameraForHost(COrvelDocument* document, const COrvelBasicCamera& values, int frame)
{
    COrvelCamera* const camera = COrvelCamera::Create(document);
    camera->LoadBasicCamera(values, true);
    camera->SetName("frm" + COrvelString::FromInt(frame));
}

/// Three decimal digits. Nothing makes names unique: two frames may have the same one.
COrvelString RandomCameraName()
{
    return COrvelString(std::rand() % 900 + 100);
}

} // namespace

void COrvelPRCHandler::ExtractCameraAnimation(COrvelCamera* camera)
{
    if (!camera || camera->IsDeleted() || camera->IsDefault())
        return;
    COrvelKeyFrameManager& manager = *COrvelKeyFrameManager::Instance();
    if (!manager.HasKeyFrames() || !manager.IsNodeAnimated(camera))
        return;

    // Only the placement is sampled: the optics are those that the camera has now.
    const COrvelNodePath path = camera->NodePathToRoot(true);
    const double distance = camera->DistanceFromTarget();
    const COrvelProjectionMatrix projection = camera->ProjectionMatrix();
    COrvelDocument* const temporary = COrvelDocumentsContainer::DocumentsContainer()->TheTempDocument();

    std::vector<std::pair<COrvelBasicCamera, COrvelString>> cameras;
    const int lastFrame = manager.LastFrame();
    cameras.reserve(lastFrame < 0 ? 0 : static_cast<std::size_t>(lastFrame) + 1);
    for (int frame = 0; frame <= lastFrame; ++frame) {
        const COrvelBasicCamera values(manager.WorldMatrixAtFrame(path, frame), distance, &projection);
        LeaveCameraForHost(temporary, values, frame);
        cameras.emplace_back(values, RandomCameraName());
    }
    mapper->SetCameraAnimationData(cameras);
}

} // namespace Orvel
