#include "animation/COrvelKeyFrameDataTransform.h"
#include "animation/COrvelSequenceContainer.h"
#include "platform/core/COrvelDocument.h"
#include "platform/core/COrvelSceneNode.h"
#include "platform/core/COrvelTransform.h"
#include "tests/tool/GltfFile.h"
#include "tool/animation/AnimatedScene.h"
#include "tool/import/LoadDocument.h"

#include <gmock/gmock.h>

#include <cmath>
#include <functional>
#include <numbers>

namespace Orvel::Test
{
namespace
{

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// A glTF file with a triangle on the first node, and animations put together channel by channel.
class AnimatedFile : public GltfFile
{
public:
    AnimatedFile()
        : GltfFile(TriangleFile())
    {}

    /// @param width numbers in each value.
    void Channel(std::size_t animation, json target, const std::vector<float>& times, const std::vector<float>& values,
                 int width, const char* interpolation = "LINEAR")
    {
        json& table = document["animations"];
        while (table.size() <= animation)
            table.push_back({{"channels", json::array()}, {"samplers", json::array()}});
        const char* const types[] = {"SCALAR", "", "VEC3", "VEC4"};
        const int input = Accessor(View(times), Float, "SCALAR", times.size());
        const int output =
            Accessor(View(values), Float, types[width - 1], values.size() / static_cast<std::size_t>(width));
        json& entry = table[animation];
        entry["samplers"].push_back({{"input", input}, {"output", output}, {"interpolation", interpolation}});
        entry["channels"].push_back({{"sampler", entry["samplers"].size() - 1}, {"target", std::move(target)}});
    }
};

json NodePath(int node, const char* path)
{
    return {{"node", node}, {"path", path}};
}

class GltfMotion : public GltfTest
{
protected:
    const Animate::AnimatedScene& Load(AnimatedFile& file, const Animate::AnimationOptions& options = {})
    {
        Import::LoadOptions load;
        load.temporaryFolder = folder.Path();
        loaded = Import::LoadDocument(file.Write(folder), load, report);
        animated = Animate::MakeAnimatedScene(loaded, options, report);
        return animated;
    }

    COrvelID TransformOf(std::size_t node) const { return loaded.nodes.at(node)->LocalTransform()->ID(); }

    /// Compares a node's evaluated matrix with a computed one at each frame of a timeline.
    void ExpectMotion(COrvelKeyFrameManager& manager, std::size_t node,
                      const std::function<COrvelMatrix(double seconds)>& expected, double tolerance = 1e-3)
    {
        for (int frame = 0; frame <= manager.LastFrame(); ++frame) {
            const auto data = manager.KeyFrameDataAtFrame(TransformOf(node), frame);
            const auto* const transform = dynamic_cast<COrvelKeyFrameDataTransform*>(data.Get());
            ASSERT_TRUE(transform) << "frame " << frame;
            EXPECT_TRUE(transform->Matrix().IsNear(expected(frame / 24.0), tolerance)) << "frame " << frame;
        }
    }

    std::size_t KeyCount(const COrvelKeyFrameManager& manager, std::size_t node) const
    {
        KeyFrameDataList list;
        manager.ListKeyFrameDataOf(TransformOf(node), list);
        return list.size();
    }

    Import::ImportReport report;
    Import::LoadedDocument loaded;
    Animate::AnimatedScene animated;
};

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

    const auto refusal = [&](const Animate::AnimationOptions& options) -> std::string {
        try {
            Load(file, options);
            return {};
        } catch (const Import::ImportError& error) {
            return error.what();
        }
    };
    EXPECT_EQ(refusal({.clip = "fall"}), "there is no clip 'fall', only 'Animation 1', 'rise'");
    EXPECT_EQ(refusal({.mostFrames = 48}), "animation 'rise' has 49 frames, and the limit is 48");
    EXPECT_EQ(refusal({.framesPerSecond = 5e6}), "animation 'Animation 1' has 5000001 frames, and the limit is 100000");
}

} // namespace
} // namespace Orvel::Test
