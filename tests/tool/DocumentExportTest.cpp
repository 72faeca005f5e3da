#include "tool/import/DocumentBuilder.h"

#include "support/PRCPlacement.h"
#include "support/TemporaryFolder.h"
#include "tool/SceneBuilder.h"
#include "writer/COrvelPRCWriter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace Orvel::Import
{
namespace
{

/// The file that an imported scene ends up as.
class DocumentExport : public testing::Test
{
protected:
    Orvel::Test::PRCContent Export()
    {
        TextureFiles textures(folder.Path() / "scene.gltf", {}, folder.Path(), report);
        const BuiltDocument built = BuildDocument(std::move(builder.scene), textures, {});
        const std::filesystem::path file = folder.Path() / "scene.prc";
        EXPECT_TRUE(COrvelPRCWriter().Export(built.document.get(), COrvelString(file.string()), nullptr, nullptr,
                                             nullptr, nullptr, COrvelUnit()));
        return Orvel::Test::DecodePRCFile(file);
    }

    Orvel::Test::SceneBuilder builder;
    Orvel::Test::TemporaryFolder folder;
    ImportReport report;
};

TEST_F(DocumentExport, StoresInterleavedInstancesOnceInTheRightColours)
{
    struct Kind
    {
        ImportedPart part;
        double size;
        double red;
        double u; ///< of the second point; 0: without texture coordinates
    };
    const Index small = builder.Triangle(2.0);
    const Index large = builder.Triangle(3.0);
    const Index dark = builder.Material("dark", 0.25);
    builder.scene.images.push_back({"wood", "nowhere/wood.png", {}, {}, 0, 0});
    builder.scene.materials[0].image = 0;
    const Index light = builder.Material("light", 0.5);
    const Index whole = builder.Coordinates({0, 0, 1, 0, 0, 1});
    const Index half = builder.Coordinates({0, 0, 0.5, 0, 0, 0.5});
    const std::vector<Kind> kinds{{{"", small, None, dark}, 2.0, 0.25, 0},  {{"", large, None, dark}, 3.0, 0.25, 0},
                                  {{"", small, None, light}, 2.0, 0.5, 0},  {{"", small, None, None}, 2.0, 0.75, 0},
                                  {{"", large, None, None}, 3.0, 0.75, 0},  {{"", large, whole, dark}, 3.0, 0.25, 1.0},
                                  {{"", large, half, dark}, 3.0, 0.25, 0.5}};
    for (int round = 0; round < 3; ++round) {
        for (std::size_t kind = 0; kind < kinds.size(); ++kind)
            builder.Node(std::to_string(kind), None, {kinds[kind].part});
    }
    const Orvel::Test::PRCContent content = Export();
    EXPECT_THAT(report.Warnings(), testing::ElementsAre("texture 'wood' was not found"));
    EXPECT_EQ(content.tessellations.size(), kinds.size());
    const std::vector<Orvel::Test::PlacedMesh> meshes = PlacedMeshes(content);
    ASSERT_EQ(meshes.size(), 3 * kinds.size());
    for (const Orvel::Test::PlacedMesh& mesh : meshes) {
        SCOPED_TRACE(mesh.place.path.back());
        const Kind& kind = kinds.at(std::stoul(mesh.place.path.back()));
        EXPECT_EQ(mesh.tessellation->points.at(1)[0], kind.size);
        const auto& coordinates = mesh.tessellation->textureCoordinates;
        EXPECT_EQ(coordinates.empty() ? 0.0 : coordinates.at(1)[0], kind.u) << "even if the picture is missing";
        const Orvel::Test::ResolvedMaterial look = MaterialOf(content, mesh);
        ASSERT_NE(look.material, nullptr);
        EXPECT_EQ(look.material->diffuse[0], kind.red);
    }
}

TEST_F(DocumentExport, PlacesEverythingInMillimetresWithZUp)
{
    builder.scene.unitInMillimetres = 1000.0;
    builder.scene.upAxis = UpAxis::Y;
    const Index group = builder.Node("group");
    const Index part = builder.Node("part", group, {{"", builder.Triangle(2.0), None, None}});
    builder.At(group).matrix = COrvelMatrix({1, 0, 0, 7, 0, 1, 0, 11, 0, 0, 1, 13, 0, 0, 0, 1});
    builder.At(part).matrix = COrvelMatrix({0.5, 0, 0, 0.25, 0, 2, 0, 0, 0, 0, 4, 0, 0, 0, 0, 1});
    builder.Node("other root");

    const Orvel::Test::PRCContent content = Export();
    const std::vector<Orvel::Test::PlacedMesh> meshes = PlacedMeshes(content);
    ASSERT_EQ(meshes.size(), 1U);
    EXPECT_THAT(meshes[0].place.path, testing::ElementsAre("Units and axes", "group", "part"));
    // (x, y, z) in metres, y up, goes to 1000 (x, -z, y).
    EXPECT_EQ(meshes[0].place.world,
              (Orvel::Test::Matrix{500, 0, 0, 7250, 0, 0, -4000, -13000, 0, 2000, 0, 11000, 0, 0, 0, 1}));
}

} // namespace
} // namespace Orvel::Import
