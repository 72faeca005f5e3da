#include "animation/COrvelSequenceContainer.h"
#include "platform/core/COrvelCamera.h"
#include "tests/tool/animation/AnimatedSceneTest.h"

#include <cmath>
#include <limits>
#include <numbers>

namespace Orvel::Test
{
namespace
{

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class GltfMotion : public AnimatedSceneTest
{};

COrvelMatrix TurnAboutZ(double degrees)
{
    return COrvelMatrix().DefineByRotation(degrees * std::numbers::pi / 180.0, 0, 0, 1);
}

TEST_F(GltfMotion, FollowsEachKindOfInterpolation)
{
    AnimatedFile file;
    file.document["nodes"][0]["translation"] = {0.5, 0.25, 0.125};
    for (int node = 1; node <= 3; ++node) {
        file.Add("nodes", json::object());
        file.document["scenes"][0]["nodes"].push_back(node);
    }
    // Keys of any length that turn by 85 degrees a second; a scale whose keys lie between frames.
    const float c = std::cos(85.0F * std::numbers::pi_v<float> / 180.0F);
    const float s = std::sin(85.0F * std::numbers::pi_v<float> / 180.0F);
    file.Channel(0, NodePath(0, "rotation"), {0, 2}, {0, 0, 0, 5, 0, 0, 7 * s, 7 * c}, 4);
    file.Channel(0, NodePath(0, "scale"), {0.51F, 1.51F}, {1, 1, 1, 3, 2, 1}, 3);
    file.Channel(0, NodePath(1, "translation"), {0.5F, 1, 1.75F}, {1, 2, 3, -4, 5, 6, 7, -8, 9}, 3, "STEP");
    // The cubic x = t^3 - 2 t^2 + 3 t, y = 1 - t^2 as two pieces: a Hermite curve through it is the cubic itself.
    file.Channel(0, NodePath(2, "translation"), {0, 1, 2.5F},
                 {9,      9,  9, 0,       1,      0, 3, 0, 0, 2, -2, 0, 2, 0, 0, 2, -2, 0, //
                  11.75F, -5, 0, 10.625F, -5.25F, 0, 9, 9, 9},
                 3, "CUBICSPLINE");
    // Stands where it stands anyway.
    file.Channel(0, NodePath(3, "translation"), {0, 2}, {0, 0, 0, 0, 0, 0}, 3);
    Load(file);

    COrvelKeyFrameManager& manager = *animated.manager;
    EXPECT_EQ(manager.LastFrame(), 60);
    ExpectMotion(manager, 0, [](double t) {
        const double part = std::clamp(t - 0.51, 0.0, 1.0);
        return COrvelMatrix::CreateTranslation({0.5, 0.25, 0.125}) * TurnAboutZ(85 * std::min(t, 2.0)) *
               COrvelMatrix::CreateScalling({1 + 2 * part, 1 + part, 1});
    });
    ExpectMotion(manager, 1, [](double t) {
        return COrvelMatrix::CreateTranslation(t < 1      ? COrvel3DVertex(1, 2, 3)
                                               : t < 1.75 ? COrvel3DVertex(-4, 5, 6)
                                                          : COrvel3DVertex(7, -8, 9));
    });
    ExpectMotion(
        manager, 2,
        [](double t) {
            return COrvelMatrix::CreateTranslation({t * t * t - 2 * t * t + 3 * t, 1 - t * t, 0});
        },
        5e-3);
    EXPECT_FALSE(manager.IsNodeTransformAnimated(loaded.nodes[3]));
    // One range for each step.
    EXPECT_EQ(KeyCount(manager, 1), 3U);
    EXPECT_THAT(report.Warnings(), IsEmpty());
}

TEST_F(GltfMotion, MakesASequenceOfEachClipAndATimelineOfOne)
{
    AnimatedFile file;
    file.Channel(0, NodePath(0, "translation"), {0, 1}, {0, 0, 0, 24, 0, 0}, 3);
    file.Channel(1, NodePath(0, "translation"), {0, 2}, {0, 0, 0, 0, 48, 0}, 3);
    file.Channel(2, NodePath(0, "weights"), {0, 2}, {0, 1}, 1);
    file.document["animations"][1]["name"] = "rise";
    Load(file);
    ASSERT_EQ(animated.sequences.size(), 2U);
    EXPECT_EQ(animated.timelineClip, "Animation 1");
    EXPECT_EQ(animated.manager->LastFrame(), 24);
    EXPECT_EQ(KeyCount(*animated.manager, 0), 2U);
    std::vector<COrvelSequence*> listed;
    animated.manager->SequenceContainer()->ListSequences(listed, true, false);
    EXPECT_THAT(listed, ElementsAre(animated.sequences[0].Get(), animated.sequences[1].Get()));
    EXPECT_EQ(listed[1]->Name(), COrvelString("rise"));
    ExpectMotion(*listed[1], 0, [](double t) { return COrvelMatrix::CreateTranslation({0, 24 * t, 0}); });
    const COrvelUUID id = listed[1]->UUID();

    Load(file, {.framesPerSecond = 12, .clip = "rise"});
    EXPECT_EQ(animated.timelineClip, "rise");
    EXPECT_EQ(animated.manager->LastFrame(), 24);
    EXPECT_EQ(animated.sequences[1]->UUID(), id);

    EXPECT_EQ(RefusalOf(file, {.clip = "fall"}), "there is no clip 'fall', only 'Animation 1', 'rise'");
    EXPECT_EQ(RefusalOf(file, {.mostFrames = 48}), "animation 'rise' has 49 frames, and the limit is 48");
    EXPECT_EQ(RefusalOf(file, {.framesPerSecond = 5e6}),
              "animation 'Animation 1' has 5000001 frames, and the limit is 100000");
}

TEST_F(GltfMotion, LetsTheCameraThatMovesWithItsParentBeTheActiveOne)
{
    AnimatedFile file;
    file.document["cameras"] = json::parse(R"([{"type": "perspective", "perspective": {"yfov": 0.7, "znear": 0.1}}])");
    file.document["nodes"] = json::parse(R"([{"mesh": 0}, {"name": "Fixed", "camera": 0},
        {"children": [3]}, {"name": "Flight", "camera": 0, "translation": [0, 0, 5]}])");
    file.document["scenes"][0]["nodes"] = {0, 1, 2};
    // A quarter turn about y in a second, through KHR_animation_pointer.
    const float half = std::sqrt(0.5F);
    file.Channel(0,
                 {{"path", "pointer"}, {"extensions", {{"KHR_animation_pointer", {{"pointer", "/nodes/2/rotation"}}}}}},
                 {0, 1}, {0, 0, 0, 1, 0, half, 0, half}, 4);
    Load(file);
    ASSERT_TRUE(animated.camera);
    EXPECT_EQ(animated.camera, loaded.document->ActiveCamera());
    EXPECT_EQ(animated.camera->Name(), COrvelString("Flight"));
    EXPECT_GT(animated.camera->DistanceFromTarget(), 0.0);
    for (int frame = 0; frame <= 24; ++frame) {
        // Metres with y up became millimetres with z up: (x, y, z) is now (x, -z, y).
        const double angle = frame / 24.0 * std::numbers::pi / 2;
        const COrvel3DVertex expected{5000 * std::sin(angle), -5000 * std::cos(angle), 0};
        const COrvel3DVertex place =
            animated.manager->WorldMatrixAtFrame(animated.camera->NodePathToRoot(true), frame).Translation();
        EXPECT_LT((place - expected).Length(), 3.0) << "frame " << frame;
    }
    EXPECT_THAT(report.Warnings(), IsEmpty());

    Load(file, {.camera = "Fixed"});
    EXPECT_EQ(animated.camera->Name(), COrvelString("Fixed"));
    EXPECT_THAT(report.Warnings(), ElementsAre("camera 'Fixed' does not move"));
    EXPECT_EQ(RefusalOf(file, {.camera = "Crane"}), "there is no camera 'Crane', only 'Fixed', 'Flight'");
}

TEST_F(GltfMotion, IsRefusedOrPassedOverWhereItMakesNoSense)
{
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const auto refusal = [this](const std::vector<float>& times, const std::vector<float>& values,
                                const json& changes = json::object()) {
        AnimatedFile file;
        file.Channel(0, NodePath(0, "translation"), times, values, 3);
        file.document["animations"][0].merge_patch(changes);
        return RefusalOf(file);
    };
    EXPECT_THAT(refusal({0, 2, 1}, {1, 2, 3, 4, 5, 6, 7, 8, 9}),
                HasSubstr("animation 'Animation 1': channel 0: its keys are out of order: key 2"));
    EXPECT_THAT(refusal({0, nan}, {1, 2, 3, 4, 5, 6}), HasSubstr("the time of key 1 is not finite"));
    EXPECT_THAT(refusal({0, 1}, {1, 2, nan, 4, 5, 6}), HasSubstr("a value of its keys is not finite"));
    EXPECT_THAT(refusal({0, 1}, {1, 2, 3}), HasSubstr("1 values for 2 keys"));
    EXPECT_THAT(refusal({0}, {1, 2, 3}, {{"channels", {{{"sampler", 7}, {"target", NodePath(0, "scale")}}}}}),
                HasSubstr("samplers[7], but the file has 1"));
    EXPECT_THAT(refusal({0}, {1, 2, 3}, {{"channels", {{{"sampler", 0}, {"target", NodePath(9, "scale")}}}}}),
                HasSubstr("target.node is 9, but the file has 1 nodes"));
    EXPECT_THAT(refusal({0}, {1, 2, 3}, {{"samplers", {{{"input", 0}, {"output", 50}}}}}), HasSubstr("output is 50"));

    AnimatedFile file;
    file.Channel(0, NodePath(0, "translation"), {}, {}, 3);
    file.Channel(0, NodePath(0, "weights"), {0}, {1}, 1);
    EXPECT_EQ(RefusalOf(file), "");
    EXPECT_TRUE(animated.sequences.empty());
    EXPECT_THAT(report.Warnings(),
                ElementsAre("animation 'Animation 1': the translation of node 0 has no keys and is left out",
                            "animation 'Animation 1' changes nothing that can be shown: it is left out",
                            "left out: 1 morph animation"));
}

} // namespace
} // namespace Orvel::Test
