#include "tool/render/PrcRenderScene.h"

#include "platform/prcfile/PRCReader.h"
#include "tests/prcfile/TestMeshes.h"
#include "tool/render/ColourSpace.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

namespace Orvel::Render
{
namespace
{

BuiltRenderScene Built(const prc::Model::PRCModel& model)
{
    return BuildRenderScene(model, prc::Model::placeScene(model));
}

TEST(PrcRenderScene, KeepsASharedShapeOnceInItsPlacesAndMaterials)
{
    std::vector<std::uint8_t> bytes;
    prc::oPRCFile file(bytes, 1.0, 1);
    prc::PRCmaterial red;
    red.diffuse = {1.0, 0.5, 0.0, 1.0};
    red.alpha = 0.4;
    const std::uint32_t material = file.addMaterial(red);
    const std::uint32_t mesh = prc::Test::Add(file, prc::Test::StripMesh());
    const std::vector<double> place = prc::Test::QuarterTurn();
    const std::vector<double> flat = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1};
    file.begingroup("top", nullptr, nullptr);
    file.useMesh(mesh, material, nullptr);
    file.useMesh(mesh, material, place.data());
    file.useMesh(mesh, material, flat.data());
    file.endgroup();
    ASSERT_TRUE(file.finish());

    const BuiltRenderScene built = Built(prc::readPRC(bytes));
    ASSERT_EQ(built.scene.meshes.size(), 1U);
    EXPECT_EQ(built.scene.meshes[0].TriangleCount(), 3U);
    EXPECT_EQ(built.scene.meshes[0].cornerNormals.size(), 9U) << "made, since the file has none";
    ASSERT_EQ(built.scene.instances.size(), 2U);
    EXPECT_EQ(built.notes.size(), 1U) << "the flattened place";
    EXPECT_NEAR(built.scene.Support({1, 0, 0}), 2.5, 1e-5);
    EXPECT_NEAR(built.scene.Support({-1, 0, 0}), 11.0, 1e-5);
    EXPECT_NEAR(built.scene.Support({0, -1, 0}), -2.5, 1e-5);
    EXPECT_NEAR(built.scene.Support({0, 0, 2}), 32.0, 1e-5);
    const Material& made = built.scene.materials[built.scene.instances[1].material];
    EXPECT_EQ(made.diffuse, Eigen::Vector3f(1.0F, LinearFromSrgb(0.5F), 0.0F));
    EXPECT_NEAR(made.opacity, 0.4F, 0.5 / 255.0);
}

TEST(PrcRenderScene, ReadsTexturesOfEveryKind)
{
    for (const char* name : {"c_tex_rgb_png.prc", "c_tex_rgba_png.prc", "c_tex_rgb_raw.prc", "c_tex_rgba_raw.prc"}) {
        const std::filesystem::path path = std::filesystem::path(ORVEL_TEST_DATA) / "prc" / name;
        ASSERT_TRUE(std::filesystem::exists(path)) << path;
        const BuiltRenderScene built = Built(prc::readPRCFile(path));
        EXPECT_EQ(built.notes, std::vector<std::string>()) << name;
        ASSERT_EQ(built.scene.textures.size(), 1U) << name;
        EXPECT_FALSE(built.scene.meshes.at(0).textureCoordinates.empty()) << name;
    }
}

} // namespace
} // namespace Orvel::Render
