#include "tool/animation/AnimationFile.h"
#include "animation/COrvelAnimationCollapsingGroupGuidToCaptionMapper.h"
#include "animation/COrvelKeyFrameDataMaterial.h"
#include "animation/COrvelKeyFrameDataTransform.h"
#include "animation/COrvelSequenceContainer.h"
#include "platform/core/COrvel3DObject.h"
#include "platform/core/COrvelCamera.h"
#include "platform/core/COrvelDocument.h"
#include "platform/core/COrvelDocumentsContainer.h"
#include "platform/core/COrvelGeometry.h"
#include "platform/core/COrvelMaterial.h"
#include "platform/core/COrvelTransform.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>

namespace Orvel::Test
{
namespace
{

using testing::HasSubstr;
using testing::ThrowsMessage;

/// A scene as it is read from a file: the same for every run but for ids and GUIDs.
struct Scene
{
    explicit Scene(const char* nameOfWheel = "wheel")
    {
        document.AddRootNode(car);
        car->AddChild(wheel);
        car->AddChild(camera);
        wheel->SetName(nameOfWheel);
        wheel->SetLocalMatrix(COrvelMatrix());
        wheel->SetGeometry(COrvelGeometry::Create(&document, {0, 0, 0, 1, 0, 0, 0, 1, 0}, {0, 1, 2}));
        wheel->SetMaterial(rubber);
    }

    Import::BuiltDocument built;
    COrvelDocument& document = *(built.document = std::make_unique<COrvelDocument>());
    COrvelSceneNode* car = COrvelSceneNode::Create(&document, "car");
    COrvel3DObject* wheel = COrvel3DObject::Create(&document);
    COrvelCamera* camera = COrvelCamera::Create(&document, "camera");
    COrvelMaterial* rubber = COrvelMaterial::Create(&document);
};

class AnimationFiles : public testing::Test
{
protected:
    /// Moves the wheel and its material in `scene`, by a timeline and a sequence.
    static Animate::AnimatedScene Animate(Scene& scene)
    {
        Animate::AnimatedScene animated;
        animated.manager = std::make_unique<COrvelKeyFrameManager>();
        animated.timelineClip = "drive";
        animated.framesPerSecond = 25;
        animated.sequences.emplace_back(COrvelSequence::Create());
        animated.camera = scene.camera;
        scene.camera->SetDistanceToTarget(7);
        for (COrvelKeyFrameManager* const timeline :
             {animated.manager.get(), static_cast<COrvelKeyFrameManager*>(animated.sequences[0].Get())})
        {
            COrvelPtr<COrvelKeyFrameData> move = COrvelKeyFrameDataTransform::CreateTransformKeyFrameData(
                scene.wheel->LocalTransform()->ID(), COrvelMatrix::CreateTranslation({2, 3, 5}));
            COrvelPtr<COrvelKeyFrameData> looks = COrvelKeyFrameDataMaterial::CreateMaterialKeyFrameData(
                scene.rubber->ID(), scene.rubber->BasicMaterial(), scene.rubber->ID());
            move->SetEndFrame(20, true);
            timeline->AddKeyFrameData(move, true);
            timeline->AddKeyFrameData(looks, true);
            COrvelKeyFrameManager::CollapseKeyFrameData({move, looks}, "rolling");
        }
        return animated;
    }
    void Save()
    {
        Scene scene;
        Animate::AnimatedScene animated = Animate(scene);
        ASSERT_TRUE(Animate::SaveAnimation(scene.document, animated, file));
    }
    void ExpectRefusal(Scene& scene, const char* reason, std::int64_t mostFrames = 100)
    {
        EXPECT_THAT([&] { static_cast<void>(Animate::LoadAnimation(scene.built, file, mostFrames)); },
                    ThrowsMessage<Import::ImportError>(HasSubstr(reason)));
        EXPECT_FALSE(COrvelID::IsReadingMode());
    }

    TemporaryFolder folder;
    std::string file = (folder.Path() / "car.orvelanim").string();
};

TEST_F(AnimationFiles, MoveTheSameSceneReadAnew)
{
    Save();
    Scene scene;
    Animate::AnimatedScene animated = Animate::LoadAnimation(scene.built, file, 100);
    EXPECT_EQ(animated.framesPerSecond, 25);
    EXPECT_EQ(animated.timelineClip, "drive");
    EXPECT_EQ(animated.camera, scene.camera);
    EXPECT_EQ(scene.document.ActiveCamera(), scene.camera);
    EXPECT_EQ(scene.camera->DistanceFromTarget(), 7);
    ASSERT_EQ(animated.sequences.size(), 1u);
    EXPECT_EQ(animated.sequences[0]->Name(), "Sequence1");
    for (const COrvelKeyFrameManager* const timeline :
         {animated.manager.get(), static_cast<COrvelKeyFrameManager*>(animated.sequences[0].Get())})
    {
        const auto move = timeline->StoredKeyFrameDataAtFrame(scene.wheel->LocalTransform()->ID(), 15);
        ASSERT_TRUE(move);
        EXPECT_EQ(dynamic_cast<const COrvelKeyFrameDataTransform&>(*move).StoredMatrix().M(1, 3), 3);
        EXPECT_EQ(move->OwnerGuid(), scene.wheel->GetGuid());
        EXPECT_EQ(
            *COrvelAnimationCollapsingGroupGuidToCaptionMapper::Instance()->FindCaption(move->CollapsingGroupID()),
            "rolling");
        EXPECT_TRUE(timeline->StoredKeyFrameDataAtFrame(scene.rubber->ID(), 0));
    }
    const std::string again = (folder.Path() / "again.orvelanim").string();
    ASSERT_TRUE(Animate::SaveAnimation(scene.document, animated, again));
    animated = {};
    const Animate::AnimatedScene reloaded = Animate::LoadAnimation(scene.built, again, 100);
    EXPECT_TRUE(reloaded.manager->StoredKeyFrameDataAtFrame(scene.wheel->LocalTransform()->ID(), 15));
}

TEST_F(AnimationFiles, AreRefusedWhereTheyDoNotFit)
{
    Save();
    Scene scene;
    Scene renamed("tyre");
    Scene larger;
    larger.car->AddChild(COrvelSceneNode::Create(&larger.document, "door"));
    ExpectRefusal(renamed,
                  "car.orvelanim' cannot be used: it is of another scene: there, entity 2 is object 'car/wheel', "
                  "here it is object 'car/tyre'");
    ExpectRefusal(larger, "there, entity 9 is nothing more, here it is node 'car/door'");
    ExpectRefusal(scene, "it has more than 20 frames", 20);
    std::filesystem::resize_file(file, std::filesystem::file_size(file) - 1);
    ExpectRefusal(scene, "it is damaged");
    std::ofstream(file) << "no archive";
    ExpectRefusal(scene, "it is no animation file");
    EXPECT_TRUE(COrvelDocumentsContainer::DocumentsContainer()->ReplacedUUID(scene.car->GetGuid()) == COrvelUUID());
}

} // namespace
} // namespace Orvel::Test
