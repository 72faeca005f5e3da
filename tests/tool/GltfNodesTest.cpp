#include "tests/tool/GltfFile.h"

#include <gmock/gmock.h>

#include <cmath>
#include <numbers>

namespace Orvel::Test
{
namespace
{

using Import::None;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class GltfNodes : public GltfTest
{};

TEST_F(GltfNodes, KeepTreeNamesAndMatrices)
{
    GltfFile file;
    file.document["nodes"] = json::parse(R"([
        {"name": "R\u00e4der \u8f2a", "children": [3, 1]},
        {"matrix": [1.1,2,3,0, 4,5.5,6,0, 7,8,-9,0, 10,11,12.7,1]},
        {"name": "elsewhere"},
        {"name": "turned", "translation": [7,11,13], "rotation": [0,0,0.5,0.8660254037844386], "scale": [2,3,-5]}])");
    const auto [scene, warnings] = Read(file.Write(folder));

    ASSERT_EQ(scene.nodes.size(), 3U);
    EXPECT_THAT(scene.roots, ElementsAre(0));
    EXPECT_THAT(scene.nodes[0].children, ElementsAre(1, 2));
    EXPECT_EQ(scene.nodes[0].name, "R\u00e4der \u8f2a");
    EXPECT_EQ(scene.nodes[0].matrix, COrvelMatrix());
    EXPECT_EQ(scene.nodes[1].name, "turned");
    // 60 degrees about z; columns scaled by 2, 3, -5.
    const double half = 0.5;
    const double root = std::sqrt(0.75);
    const COrvelMatrix turned({2 * half, -3 * root, 0, 7, 2 * root, 3 * half, 0, 11, 0, 0, -5, 13, 0, 0, 0, 1});
    EXPECT_TRUE(scene.nodes[1].matrix.IsNear(turned, 1e-15));
    EXPECT_EQ(scene.nodes[2].matrix, COrvelMatrix({1.1, 4, 7, 10, 2, 5.5, 8, 11, 3, 6, -9, 12.7, 0, 0, 0, 1}));
    EXPECT_THAT(warnings, ElementsAre("left out: 1 node outside the scene shown"));
}

TEST_F(GltfNodes, UseAQuaternionAsGivenUnlessItIsFarFromUnit)
{
    GltfFile file;
    // The first is unit in single precision only.
    file.document["nodes"] = json::parse(R"([{"rotation": [0, 0, 0.70710677, 0.70710677]},
                                             {"rotation": [0, 6, 0, 8]}, {"rotation": [0, 0, 0, 0]}])");
    file.document["scenes"][0]["nodes"] = {0, 1, 2};
    const auto [scene, warnings] = Read(file.Write(folder));
    ASSERT_EQ(scene.nodes.size(), 3U);
    EXPECT_EQ(scene.nodes[0].matrix.M(0, 1), -2.0 * 0.70710677 * 0.70710677);
    EXPECT_NEAR(scene.nodes[1].matrix.M(0, 0), 1 - 2 * 0.36, 1e-15);
    EXPECT_NEAR(scene.nodes[1].matrix.M(0, 2), 2 * 0.48, 1e-15);
    EXPECT_EQ(scene.nodes[2].matrix, COrvelMatrix());
}

TEST_F(GltfNodes, ShowTheDefaultSceneElseTheFirstElseAllRoots)
{
    GltfFile file;
    file.document["nodes"] = json::parse(R"([{"name": "a"}, {"name": "b", "children": [0]}, {"name": "c"}])");
    file.document["scenes"] = json::parse(R"([{"nodes": [2]}, {"nodes": [1]}])");
    const auto rootNames = [&] {
        std::vector<std::string> names;
        const Import::ImportedScene scene = Read(file.Write(folder)).scene;
        for (const Import::Index root : scene.roots)
            names.push_back(scene.nodes[static_cast<std::size_t>(root)].name);
        return names;
    };
    file.document["scene"] = 1;
    EXPECT_THAT(rootNames(), ElementsAre("b"));
    file.document.erase("scene");
    EXPECT_THAT(rootNames(), ElementsAre("c"));
    file.document.erase("scenes");
    EXPECT_THAT(rootNames(), ElementsAre("b", "c"));
    file.document["scenes"] = json::parse("[{}]");
    EXPECT_THAT(rootNames(), IsEmpty());
}

TEST_F(GltfNodes, BringCamerasAndVisibility)
{
    GltfFile file;
    file.document["cameras"] = json::parse(R"([
        {"name": "eye", "type": "perspective", "perspective": {"yfov": 0.5235987755982988, "znear": 0.1}},
        {"type": "orthographic", "orthographic": {"xmag": 2, "ymag": 3.5, "znear": 0, "zfar": 9}},
        {"type": "perspective", "perspective": {"yfov": -1, "znear": 0.1, "zfar": 5}}])");
    file.document["nodes"] = json::parse(R"([{"camera": 1}, {"camera": 0, "children": [2, 3]}, {"camera": 0},
        {"camera": 2, "extensions": {"KHR_node_visibility": {"visible": false}}}])");
    file.document["scenes"][0]["nodes"] = {0, 1};
    const auto [scene, warnings] = Read(file.Write(folder));

    ASSERT_EQ(scene.cameras.size(), 3U);
    EXPECT_FALSE(scene.cameras[0].perspective);
    EXPECT_EQ(scene.cameras[0].orthographicHeight, 7.0);
    EXPECT_EQ(scene.cameras[1].name, "eye");
    EXPECT_TRUE(scene.cameras[1].perspective);
    EXPECT_NEAR(scene.cameras[1].verticalFieldOfViewInDegrees, 30.0, 1e-13);
    EXPECT_EQ(scene.cameras[2].verticalFieldOfViewInDegrees, 45.0);
    EXPECT_EQ(scene.nodes[1].camera, 1);
    EXPECT_EQ(scene.nodes[2].camera, 1);
    EXPECT_FALSE(scene.nodes[2].hidden);
    EXPECT_TRUE(scene.nodes[3].hidden);
    EXPECT_THAT(warnings, IsEmpty());
}

TEST_F(GltfNodes, ExpandInstancesIntoChildren)
{
    GltfFile file = TriangleFile();
    const int translations = file.Vectors({1, 2, 3, 4, 5, 6});
    file.document["nodes"][0]["name"] = "tree";
    file.document["nodes"][0]["scale"] = {2, 2, 2};
    file.document["nodes"][0]["extensions"]["EXT_mesh_gpu_instancing"]["attributes"]["TRANSLATION"] = translations;
    const auto [scene, warnings] = Read(file.Write(folder));

    ASSERT_EQ(scene.nodes.size(), 3U);
    EXPECT_THAT(scene.nodes[0].parts, IsEmpty());
    EXPECT_EQ(scene.nodes[0].matrix.M(1, 1), 2.0);
    EXPECT_THAT(scene.nodes[0].children, ElementsAre(1, 2));
    EXPECT_EQ(scene.nodes[2].name, "tree");
    EXPECT_EQ(scene.nodes[2].parts.at(0).geometry, 0);
    EXPECT_EQ(scene.nodes[2].matrix, COrvelMatrix::CreateTranslation({4, 5, 6}));
}

/// Each node twice below the one before: the walk must not take every one of the 2^200 ways.
TEST_F(GltfNodes, RefuseNodesWithTwoParentsAtOnce)
{
    GltfFile file;
    for (int i = 0; i < 200; ++i)
        file.Add("nodes", {{"children", {i + 1, i + 1}}});
    file.Add("nodes", {{"name", "leaf"}});
    EXPECT_THAT(Refusal(file.Write(folder)), HasSubstr("two parents"));
}

} // namespace
} // namespace Orvel::Test
