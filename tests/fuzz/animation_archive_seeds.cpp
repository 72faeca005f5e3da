// Makes seeds for animation_archive_fuzz in a folder: a timeline for each type of key frame data, with a sequence.

#include "animation/COrvelAnimationCollapsingGroupGuidToCaptionMapper.h"
#include "animation/COrvelKeyFrame.h"
#include "animation/COrvelKeyFrameDataHideShow.h"
#include "animation/COrvelKeyFrameDataLight.h"
#include "animation/COrvelKeyFrameDataMaterial.h"
#include "animation/COrvelKeyFrameDataMorph.h"
#include "animation/COrvelKeyFrameDataTransformBSplineFollower.h"
#include "animation/COrvelKeyFrameDataTransformRoundTable.h"
#include "animation/COrvelKeyFrameDataTransformSphericalCamera.h"
#include "animation/COrvelKeyFrameDataVertices.h"
#include "animation/COrvelKeyFrameManager.h"
#include "animation/COrvelSequence.h"
#include "animation/COrvelSequenceContainer.h"
#include "platform/core/COrvelArchiveWriter.h"
#include "tests/fuzz/AnimatedScene.h"

#include <string>

namespace
{

using namespace Orvel;

COrvelKeyFrameData* Make(const AnimatedScene& scene, int type)
{
    const COrvelID& moved = scene.transform->ID();
    const COrvelBasicVectorsTable shape({{2, 3, 5}});
    switch (type) {
    case eKeyFrameDataType_Material:
        return COrvelKeyFrameDataMaterial::CreateMaterialKeyFrameData(
            scene.material->ID(), scene.material->ApproximateToOrvelGeneralMaterial(), scene.material->ID());
    case eKeyFrameDataType_Light:
        return COrvelKeyFrameDataLight::CreateLightKeyFrameData(scene.light->ID(), scene.light->BasicLight(),
                                                                scene.light->ID());
    case eKeyFrameDataType_TransformCamera:
        return COrvelKeyFrameDataTransformCamera::CreateCameraKeyFrameData(scene.camera);
    case eKeyFrameDataType_TransformSphericalCamera:
        return COrvelKeyFrameDataTransformSphericalCamera::CreateSphericalCameraKeyFrameData(
            scene.camera->LocalTransform()->ID(), COrvelBasicCamera());
    case eKeyFrameDataType_TransformRoundTable:
        return COrvelKeyFrameDataTransformRoundTable::CreateRoundTableKeyFrameData(
            moved, COrvelMatrix(), COrvelMatrix(), 0, 9, 360, {}, {0, 0, 1}, 0, 9, 0, 0);
    case eKeyFrameDataType_TransformBSplineFollower: {
        auto* const follower = COrvelKeyFrameDataTransformBSplineFollower::CreateBSplineFollowerKeyFrameData(moved);
        follower->SetPathID(scene.path->ID());
        follower->SetFollowedNodeID(scene.object->ID());
        return follower;
    }
    case eKeyFrameDataType_Vertices:
        return COrvelKeyFrameDataVertices::CreateVerticesKeyFrameData(scene.geometry->VerticiesTable()->ID(), &shape);
    case eKeyFrameDataType_HideShow:
        return COrvelKeyFrameDataHideShow::CreateHideShowKeyFrameData(scene.object->ID(), true);
    case eKeyFrameDataType_Morph:
        return COrvelKeyFrameDataMorph::CreateMorphKeyFrameData(scene.geometry->ID(), scene.object->ID(), 0.5);
    default:
        return COrvelKeyFrameDataTransform::CreateTransformKeyFrameData(moved, COrvelMatrix());
    }
}

void Fill(COrvelKeyFrameManager& timeline, const AnimatedScene& scene, int type, const COrvelUUID& group)
{
    for (const int start : {2, 20}) {
        COrvelPtr<COrvelKeyFrameData> data = Make(scene, type);
        data->SetStartFrame(start, true);
        data->SetEndFrame(start + 9, true);
        data->SetOwnerGuid(scene.object->GetGuid());
        data->SetCollapsingGroupID(group);
        timeline.AddKeyFrameData(data, true);
    }
}

bool WriteSeed(const AnimatedScene& scene, int type, const std::string& folder)
{
    COrvelUUID group;
    group.Generate();
    COrvelAnimationCollapsingGroupGuidToCaptionMapper captions;
    captions.AddCaption(group, "moves");
    auto* const timeline = new COrvelKeyFrameManager;
    COrvelKeyFrameManager::SetInstance(timeline);
    Fill(*timeline, scene, type, group);
    const COrvelPtr<COrvelSequence> sequence = COrvelSequence::Create();
    Fill(*sequence, scene, type, group);
    COrvelSequenceContainer* const container = COrvelSequenceContainer::Instance();
    container->CreateGroup()->AddSequence(sequence.Get());
    COrvelKeyFrame snapshot = timeline->KeyFrameAtFrame(15);
    COrvelArchiveWriter archive((folder + "/type" + std::to_string(type) + ".archive").c_str());
    const bool isWritten = archive.WriteHeader() && archive.ReadWrite(*timeline) &&
                           snapshot.WriteIntoArchive(archive) && archive.ReadWrite(captions) &&
                           container->WriteIntoArchive(archive) && archive.Commit();
    container->Reset();
    return isWritten;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2)
        return 2;
    COrvelUUID::SeedGenerator(1);
    const AnimatedScene scene;
    for (int type = eKeyFrameDataType_Transform; type <= eKeyFrameDataType_Morph; ++type)
        if (!WriteSeed(scene, type, argv[1]))
            return 1;
    return 0;
}
