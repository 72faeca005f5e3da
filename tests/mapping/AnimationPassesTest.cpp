#include "animation/COrvelKeyFrameDataMaterial.h"
#include "animation/COrvelKeyFrameDataTransform.h"
#include "animation/COrvelKeyFrameManager.h"
#include "animation/COrvelSequence.h"
#include "mapping/COrvelPRCMapper.h"
#include "platform/core/COrvel3DObject.h"
#include "platform/core/COrvelBasicGeneralMaterial.h"
#include "platform/core/COrvelBasicSceneState.h"
#include "platform/core/COrvelCamera.h"
#include "platform/core/COrvelColor.h"
#include "platform/core/COrvelDocument.h"
#include "platform/core/COrvelDocumentsContainer.h"
#include "platform/core/COrvelGeometry.h"
#include "platform/core/COrvelMaterial.h"
#include "platform/core/COrvelTransform.h"
#include "support/PRCDecoder.h"
#include "support/TemporaryFolder.h"
#include "writer/COrvelPRCWriter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Orvel::Test
{
namespace
{

COrvelBasicGeneralMaterial Red(double red)
{
    COrvelBasicGeneralMaterial material;
    material.SetDiffuseColor(COrvelColor(red, 0.0, 0.0, 1.0));
    return material;
}

/// A document with one object in one material, run through the animated export.
class AnimationPasses : public testing::Test
{
protected:
    AnimationPasses()
    {
        document.AddRootNode(COrvel3DObject::Create(
            &document, "object", COrvelGeometry::Create(&document, {0, 0, 0, 3, 0, 0, 0, 5, 1}, {0, 1, 2}), shown));
        mapper.cameraAnimation.emplace_back(COrvelBasicCamera(), "from before");
    }

    static void Add(COrvelKeyFrameManager& timeline, COrvelPtr<COrvelKeyFrameData> data, int start, int end)
    {
        data->SetStartFrame(start, true);
        data->SetEndFrame(end, true);
        timeline.AddKeyFrameData(data, true);
    }

    /// @param red the material's colour; negative: data without a material.
    static void AddMaterial(COrvelKeyFrameManager& timeline, COrvelMaterial* material, int start, int end, double red)
    {
        const COrvelBasicGeneralMaterial looks = Red(red);
        Add(timeline,
            COrvelKeyFrameDataMaterial::CreateMaterialKeyFrameData(material->ID(), red < 0.0 ? nullptr : &looks,
                                                                   material->ID()),
            start, end);
    }

    static void AddPlace(COrvelSceneNode* node, int frame, const COrvel3DVertex& place)
    {
        const COrvelMatrix matrix = COrvelMatrix::CreateTranslation(place);
        Add(manager, COrvelKeyFrameDataTransform::CreateTransformKeyFrameData(node->LocalTransform()->ID(), matrix),
            frame, frame);
    }

    void Run(std::vector<COrvelBasicSceneState>* states = nullptr)
    {
        writer.SetPRCMapper(&mapper);
        ASSERT_TRUE(writer.ExportToMemory(&document, file.c_str(), nullptr, nullptr, states));
        content = DecodePRCFile(file);
    }

    /// The red of the PRC materials with these indices.
    std::vector<double> RedOf(const std::vector<int>& values, int offset) const
    {
        std::vector<double> reds;
        for (const int value : values) {
            const Style& style = content.styles.at(static_cast<std::size_t>(value - offset));
            reds.push_back(std::get<Material>(content.materials.at(style.material)).diffuse[0]);
        }
        return reds;
    }

    TemporaryFolder folder;
    std::filesystem::path file = folder.Path() / "out.prc";
    COrvelDocument document;
    COrvelMaterial* shown = COrvelMaterial::Create(&document);
    static inline COrvelKeyFrameManager& manager = *COrvelKeyFrameManager::Instance();
    COrvelPRCMapper mapper;
    COrvelPRCWriter writer;
    PRCContent content;
};

TEST_F(AnimationPasses, SampleMaterialsOverTheWholeTimeline)
{
    COrvelMaterial* const inStateOnly = COrvelMaterial::Create(&document);
    COrvelMaterial* const unknown = COrvelMaterial::Create(&document);
    AddMaterial(manager, shown, 1, 2, 0.2);
    AddMaterial(manager, shown, 4, 4, 0.6);
    AddMaterial(manager, inStateOnly, 0, 0, 0.9);
    AddMaterial(manager, inStateOnly, 2, 3, -1.0);
    AddMaterial(manager, unknown, 0, 5, 0.5);
    COrvelBasicGeneralMaterial replacement = Red(1.0);
    std::vector<COrvelBasicSceneState> states(1);
    states[0].materialReplacements[inStateOnly] = &replacement;
    Run(&states);

    using testing::DoubleEq;
    ASSERT_EQ(mapper.materialAnimation.size(), 2U) << "a material without number is not animated";
    const std::vector<int>& numbers = mapper.materialAnimation.at(1);
    EXPECT_THAT(RedOf(numbers, 1), testing::Pointwise(testing::DoubleNear(1e-12), {0.2, 0.2, 0.2, 0.4, 0.6, 0.6}));
    // A material that only a scene state names has number 0; frame 1 has no blend with data without material.
    EXPECT_THAT(RedOf(mapper.materialAnimation.at(0), 1), testing::ElementsAre(DoubleEq(0.9)));
    // One for the mesh, one for the state, then in id and frame order.
    EXPECT_THAT(numbers, testing::ElementsAre(3, 4, 5, 6, 7, 8));
    EXPECT_THAT(mapper.materialAnimation.at(0), testing::ElementsAre(9));
    EXPECT_EQ(content.styles.size(), 9U);
    EXPECT_EQ(mapper.cameraAnimation.size(), 1U) << "no camera: the list of an earlier run stays";
}

TEST_F(AnimationPasses, SampleSequencesUnderBothTheirKeys)
{
    const auto sequence = [](const char* name, int order) {
        COrvelSequence* const made = COrvelSequence::Create();
        made->SetName(name);
        made->SetOrderIndex(order);
        return COrvelPtr<COrvelSequence>(made);
    };
    const auto blink = sequence("blink", 1);
    const auto still = sequence("twice", 2);
    const auto glow = sequence("twice", 3);
    const auto hidden = sequence("temporary", 4);
    AddMaterial(*blink, shown, 10, 12, 0.1);
    AddMaterial(*blink, shown, 20, 20, 0.9);
    AddMaterial(*blink, COrvelMaterial::Create(&document), 0, 0, 0.5);
    AddMaterial(*glow, shown, 0, 1, 0.7);
    AddMaterial(*hidden, shown, 0, 0, 0.7);
    hidden->SetTemporary(true);
    Run();

    EXPECT_TRUE(mapper.materialAnimation.empty()) << "the timeline itself has no key frames";
    const auto& sequences = mapper.materialSequenceAnimation;
    ASSERT_EQ(sequences.size(), 5U) << "three ids and two names";
    const auto& animation = sequences.at("blink");
    EXPECT_EQ(sequences.at(blink->UUID().ToString()), animation);
    ASSERT_EQ(animation.size(), 1U);
    EXPECT_THAT(RedOf(animation.at(1), 0), testing::Pointwise(testing::DoubleNear(1e-12),
                                                              {0.1, 0.1, 0.1, 0.2, 0.3, 0.4, 0.5, 0.6, 0.7, 0.8, 0.9}));
    EXPECT_EQ(animation.at(1).front(), 1) << "an index, not a number: the mesh's material is 0";
    EXPECT_TRUE(sequences.at(still->UUID().ToString()).empty());
    EXPECT_EQ(RedOf(sequences.at("twice").at(1), 0), (std::vector<double>{0.7, 0.7})) << "the later one has the name";
}

TEST_F(AnimationPasses, FollowTheActiveCamera)
{
    COrvelSceneNode* const mount = COrvelSceneNode::Create(&document, "mount");
    document.AddRootNode(mount);
    mount->SetLocalTransform(COrvelTransform::Create(&document, COrvelMatrix()));
    COrvelCamera* const camera = COrvelCamera::Create(&document, "camera");
    mount->AddChild(camera);
    camera->LocalTransform()->LoadMatrix(COrvelMatrix::CreateTranslation({0.0, 0.0, 7.0}));
    camera->SetDistanceToTarget(5.0);
    camera->SetFOV(33.0);
    document.SetActiveCamera(camera);
    AddPlace(mount, 0, {0.0, 0.0, 0.0});
    AddPlace(mount, 100, {10.0, 0.0, 0.0});

    COrvelDocument& temporary = *COrvelDocumentsContainer::DocumentsContainer()->TheTempDocument();
    const auto temporaryCameras = [&] {
        std::vector<COrvelCamera*> cameras;
        temporary.ListCameras(cameras);
        std::vector<std::string> names;
        for (COrvelCamera* const made : cameras)
            if (!made->IsDefault())
                names.push_back(made->Name().toStdString());
        return names;
    };
    Run();
    ASSERT_EQ(mapper.cameraAnimation.size(), 101U);
    for (const int frame : {0, 50, 100}) {
        const auto& [values, name] = mapper.cameraAnimation.at(static_cast<std::size_t>(frame));
        EXPECT_EQ(values.Position(), COrvel3DVertex(frame / 10.0, 0.0, 7.0)) << frame;
        EXPECT_EQ(values.LookAt(), COrvel3DVertex(frame / 10.0, 0.0, 2.0)) << frame;
        EXPECT_DOUBLE_EQ(values.FOV(), 33.0);
        EXPECT_THAT(name.toStdString(), testing::MatchesRegex("[1-9][0-9][0-9]"));
    }
    const std::vector<std::string> left = temporaryCameras();
    ASSERT_EQ(left.size(), 101U);
    EXPECT_EQ(left.front(), "frm0");
    EXPECT_EQ(left.back(), "frm100");

    // What does not move, or is gone, is not recorded.
    COrvelCamera* const still = COrvelCamera::Create(&document, "still");
    document.AddRootNode(still);
    camera->SetDeleted(true);
    for (COrvelCamera* other : {still, camera}) {
        document.SetActiveCamera(other);
        Run();
    }
    EXPECT_EQ(mapper.cameraAnimation.size(), 101U);
    EXPECT_EQ(temporaryCameras().size(), 101U);
}

} // namespace
} // namespace Orvel::Test
