#pragma once

#include "animation/COrvelKeyFrameDataTransform.h"
#include "platform/core/COrvelDocument.h"
#include "platform/core/COrvelSceneNode.h"
#include "platform/core/COrvelTransform.h"
#include "tests/tool/GltfFile.h"
#include "tool/animation/AnimatedScene.h"
#include "tool/import/LoadDocument.h"

#include <gmock/gmock.h>

#include <functional>
#include <string>
#include <vector>

namespace Orvel::Test
{

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

inline json NodePath(int node, const char* path)
{
    return {{"node", node}, {"path", path}};
}

/// Loads a scene file with its animation.
class AnimatedSceneTest : public GltfTest
{
protected:
    void LoadPath(const std::filesystem::path& path, const Animate::AnimationOptions& options = {})
    {
        Import::LoadOptions load;
        load.temporaryFolder = folder.Path();
        animated = {};
        loaded = Import::LoadDocument(path, load, report);
        animated = Animate::MakeAnimatedScene(loaded, options, report);
    }

    void Load(GltfFile& file, const Animate::AnimationOptions& options = {}) { LoadPath(file.Write(folder), options); }

    /// The message with which a file is refused; empty when it is loaded.
    std::string RefusalOf(GltfFile& file, const Animate::AnimationOptions& options = {})
    {
        try {
            Load(file, options);
            return {};
        } catch (const Import::ImportError& error) {
            return error.what();
        }
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

} // namespace Orvel::Test
