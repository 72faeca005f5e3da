#include "tool/import/DocumentBuilder.h"

#include "platform/core/COrvel3DObject.h"
#include "platform/core/COrvelBasicGeneralMaterial.h"
#include "platform/core/COrvelCamera.h"
#include "platform/core/COrvelGeometry.h"
#include "platform/core/COrvelMaterial.h"
#include "platform/core/COrvelPolygonsTable.h"
#include "platform/core/COrvelTextureCoordinatesTable.h"
#include "platform/core/COrvelVerticiesNormalsTable.h"
#include "platform/core/COrvelVerticiesTable.h"
#include "support/TemporaryFolder.h"
#include "tool/SceneBuilder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <numbers>

namespace Orvel::Import
{
namespace
{

using testing::ElementsAre;
using testing::ElementsAreArray;

class DocumentBuilder : public testing::Test
{
protected:
    const BuiltDocument& Build(const BuildOptions& options = {})
    {
        TextureFiles textures(folder.Path() / "scene.gltf", {}, folder.Path(), report);
        built = BuildDocument(std::move(builder.scene), textures, options);
        return built;
    }

    std::vector<COrvelSceneNode*> Roots() const
    {
        std::vector<COrvelSceneNode*> roots;
        built.document->ListRootSceneNodes(roots);
        return roots;
    }

    /// The tree as an outline: kind and name of each node, indented, "-" for hidden ones.
    std::vector<std::string> Outline() const
    {
        std::vector<std::string> lines;
        for (COrvelSceneNode* root : Roots())
            AddOutline(root, "", lines);
        return lines;
    }

    COrvelSceneNode* Find(const std::string& name) const
    {
        for (COrvelSceneNode* root : Roots()) {
            for (COrvelSceneNode* node = root; node; node = node->NextInSubtree(root)) {
                if (node->Name().toStdString() == name)
                    return node;
            }
        }
        return nullptr;
    }

    COrvel3DObject* Object(const std::string& name) const { return dynamic_cast<COrvel3DObject*>(Find(name)); }

    Orvel::Test::SceneBuilder builder;
    Orvel::Test::TemporaryFolder folder;
    ImportReport report;
    BuiltDocument built;

private:
    static void AddOutline(COrvelSceneNode* node, const std::string& indent, std::vector<std::string>& lines)
    {
        const bool isObject = dynamic_cast<COrvel3DObject*>(node) != nullptr;
        const bool isCamera = dynamic_cast<COrvelCamera*>(node) != nullptr;
        lines.push_back(indent + (node->IsHidden() ? "-" : "") +
                        (isObject   ? "object "
                         : isCamera ? "camera "
                                    : "group ") +
                        node->Name().toStdString());
        for (COrvelSceneNode* child : node->Children())
            AddOutline(child, indent + "  ", lines);
    }
};

COrvelMatrix OddMatrix()
{
    return COrvelMatrix({0.1, -2.0, 0.3, 7.0, 1.0 / 3.0, 5.0, -0.7, 11.0, 0.9, 1e-17, 3.0, 13.0, 0.0, 0.0, 0.0, 1.0});
}

TEST_F(DocumentBuilder, KeepsTheTreeWithItsNamesAndMatrices)
{
    const Index shape = builder.Triangle(2.0);
    const Index machine = builder.Node("machine");
    const Index housing = builder.Node("housing größe 中", machine, {{"case", shape, None, None}});
    builder.Node("lid", housing, {{"lid mesh", shape, None, None}});
    const Index view = builder.Node("view", machine);
    builder.scene.cameras.push_back({"lens", true, 37.5, 0.0});
    builder.At(view).camera = 0;
    builder.Node("behind the view", view);
    const Index ghost = builder.Node("ghost", machine, {{"", shape, None, None}});
    builder.Node("", machine, {{"only the mesh has a name", shape, None, None}});
    builder.Node("", None);
    builder.Node("second root", None, {{"x", shape, None, None}});
    builder.At(housing).matrix = OddMatrix();
    builder.At(view).matrix = OddMatrix();
    builder.At(ghost).matrix = OddMatrix();
    builder.At(ghost).hidden = true;
    builder.At(machine).hidden = true;

    Build();
    EXPECT_THAT(Outline(),
                ElementsAre("-group machine", "  group housing größe 中", "    object case", "    object lid",
                            "  camera view", "    group behind the view", "  -object ghost",
                            "  object only the mesh has a name", "group ", "object second root"));
    EXPECT_EQ(Find("housing größe 中")->LocalMatrix(), OddMatrix());
    EXPECT_EQ(Find("view")->LocalMatrix(), OddMatrix());
    EXPECT_EQ(Find("ghost")->LocalMatrix(), OddMatrix());
    EXPECT_EQ(Find("case")->LocalMatrix(), COrvelMatrix()) << "its group has the matrix";
    EXPECT_EQ(Find("lid")->LocalMatrix(), COrvelMatrix());

    ASSERT_EQ(built.cameras.size(), 1U);
    EXPECT_EQ(built.cameras[0].node, Find("view"));
    EXPECT_EQ(built.cameras[0].values.name, "lens");
    EXPECT_EQ(built.cameras[0].node->FOV(), 37.5);
}

TEST_F(DocumentBuilder, TellsTheObjectsOfOneNodeApart)
{
    const Index shape = builder.Triangle(2.0);
    const Index wood = builder.Material("wood");
    const Index unnamed = builder.Material("");
    builder.Node("door", None,
                 {{"leaf", shape, None, wood},
                  {"leaf", shape, None, None},
                  {"frame", shape, None, wood},
                  {"frame", shape, None, wood},
                  {"frame", shape, None, unnamed},
                  {"", shape, None, wood}});
    builder.Node("", None, {{"", shape, None, wood}, {"", shape, None, unnamed}, {"", shape, None, None}});
    Build();
    EXPECT_THAT(Outline(), ElementsAre("group door", "  object leaf (wood)", "  object leaf", "  object frame (wood) 3",
                                       "  object frame (wood) 4", "  object frame", "  object door (wood)", "group ",
                                       "  object (wood)", "  object 2", "  object 3"));
}

TEST_F(DocumentBuilder, JoinsThePartsOfANodeThatHaveOneMaterial)
{
    // A mesh whose triangles change between two materials; loaders call parts after mesh or material.
    const Index wood = builder.Material("wood");
    const Index steel = builder.Material("steel");
    std::vector<ImportedPart> parts;
    for (int run = 0; run < 6; ++run) {
        const double z = run;
        const ImportedGeometry bare{{0, 0, z, 2, 0, z, 0, 3, z}, {}, {1, 2, 0}, true};
        const Index coordinates = run < 4 ? builder.Coordinates({z, 0, z, 1, z, 2}) : None;
        const bool isWood = run % 2 == 0;
        parts.push_back({run == 0 ? "door" : (isWood ? "wood" : "steel"), builder.Geometry(bare), coordinates,
                         isWood ? wood : steel});
    }
    const Index shared = builder.Triangle(2.0);
    parts.push_back({"", shared, None, wood});
    builder.Node("door", None, parts);
    builder.Node("other", None, {{"", shared, None, wood}});
    Build();
    EXPECT_THAT(Outline(),
                ElementsAre("group door", "  object door (wood) 1", "  object door (steel) 2", "  object door (wood) 3",
                            "  object door (steel) 4", "  object door (wood) 5", "object other"))
        << "with texture coordinates, without, and the shared shape";

    const COrvel3DObject* joined = Object("door (steel) 2");
    EXPECT_THAT(joined->Geometry()->VerticiesTable()->Values(),
                ElementsAre(0, 0, 1, 2, 0, 1, 0, 3, 1, 0, 0, 3, 2, 0, 3, 0, 3, 3));
    EXPECT_THAT(joined->Geometry()->PolygonsTable()->TriangleCorners(), ElementsAre(1, 2, 0, 4, 5, 3));
    EXPECT_THAT(joined->TextureCoordinatesTable()->Values(), ElementsAre(1, 0, 1, 1, 1, 2, 3, 0, 3, 1, 3, 2));
    EXPECT_EQ(Object("door (wood) 5")->Geometry(), Object("other")->Geometry());
    EXPECT_EQ(built.summary.trianglesPlaced, 8U);
}

TEST_F(DocumentBuilder, MakesGroupsOfWhatHasNoTriangles)
{
    const Index points = builder.Geometry({{1, 2, 3}, {}, {}, true});
    builder.Node("cloud", None, {{"points", points, None, None}});
    builder.Node("mixed", None, {{"points", points, None, None}, {"face", builder.Triangle(1), None, None}});
    builder.Node("no shape", None, {{"", None, None, None}});
    Build();
    EXPECT_THAT(Outline(),
                ElementsAre("group cloud", "group mixed", "  group points", "  object face", "group no shape"));
    EXPECT_EQ(built.summary.nodes, 5U);
    EXPECT_EQ(built.summary.objects, 1U);
}

TEST_F(DocumentBuilder, HasOneShapeInTwoMaterialsInMemoryOnce)
{
    const Index wheel = builder.Triangle(2.0);
    const Index red = builder.Material("red", 1.0);
    const Index grey = builder.Material("grey", 0.25);
    for (const char* round : {"/0", "/1"})
        for (const auto& [name, material] : {std::pair{"red", red}, {"grey", grey}, {"none", None}})
            builder.Node(std::string(name) + round, None, {{"", wheel, None, material}});
    Build();
    EXPECT_EQ(built.summary.meshes, 3U);
    EXPECT_EQ(built.summary.trianglesStored, 3U);
    EXPECT_EQ(built.summary.trianglesPlaced, 6U);
    EXPECT_EQ(Object("red/0")->Geometry(), Object("red/1")->Geometry());
    EXPECT_EQ(Object("red/0")->Geometry()->VerticiesTable(), Object("grey/0")->Geometry()->VerticiesTable());
    EXPECT_EQ(Object("grey/0")->Material()->Name(), "grey");
    EXPECT_EQ(built.summary.materials, 3U) << "red, grey and the default";
}

TEST_F(DocumentBuilder, SharesOneMaterialAmongShapesThatAreUsedOnce)
{
    const Index red = builder.Material("red", 1.0);
    builder.Material("never used");
    for (const char* name : {"a", "b", "c"})
        builder.Node(name, None, {{"", builder.Triangle(2.0), None, red}});
    builder.Node("bare", None, {{"", builder.Triangle(2.0), None, None}});
    Build();
    EXPECT_EQ(Object("a")->Material()->ApproximateToOrvelGeneralMaterial()->DiffuseColor(),
              COrvelColor(1.0, 0.25, 0.125));
    EXPECT_EQ(Object("a")->Material(), Object("b")->Material());
    EXPECT_EQ(Object("a")->Material(), Object("c")->Material());
    EXPECT_EQ(built.summary.materials, 2U);

    EXPECT_FALSE(Object("bare")->HasOwnMaterial());
    COrvelMaterial* fallback = Object("bare")->Material();
    EXPECT_TRUE(fallback->IsDefault());
    const COrvelColor grey = fallback->ApproximateToOrvelGeneralMaterial()->DiffuseColor();
    EXPECT_EQ(grey, COrvelColor(0.75, 0.75, 0.75));
}

TEST_F(DocumentBuilder, MovesDataIntoTheTablesAsTheyAre)
{
    const ImportedGeometry shape{{0, 0, -0.0, 1e300, 2, 3, 5e-324, 7, 11, 1, 1, 1},
                                 {1, 0, 0, 0, 1, 0, 0, 0, 1, 1, 0, 0},
                                 {2, 1, 0, 0, 3, 1},
                                 true};
    const std::vector<double> coordinates{0.1, 0.2, 0.3, 0.4, -5, 6, 7, 8};
    builder.Node("shape", None,
                 {{"", builder.Geometry(shape), builder.Coordinates(coordinates), builder.Material("m")}});
    Build();
    const COrvelGeometry* geometry = Object("shape")->Geometry();
    EXPECT_THAT(geometry->VerticiesTable()->Values(), ElementsAreArray(shape.positions));
    EXPECT_THAT(geometry->VerticiesNormalsTable()->Values(), ElementsAreArray(shape.normals));
    EXPECT_THAT(geometry->PolygonsTable()->TriangleCorners(), ElementsAreArray(shape.triangles));
    EXPECT_THAT(Object("shape")->TextureCoordinatesTable()->Values(), ElementsAreArray(coordinates));
}

TEST_F(DocumentBuilder, DropsPointsThatNoTriangleUses)
{
    // Points 1, 3 and 5 of seven are in use; the others would spoil the box.
    const std::vector<double> positions{1e6, 0, 0, 1, 2, 3, 0, 1e6, 0, 5, 7, 11, 0, 0, 1e6, 13, 17, 19, -1e6, 0, 0};
    const std::vector<double> normals{0, 0, 1, 1, 0, 0, 0, 0, 1, 0, 1, 0, 0, 0, 1, 0, 0, -1, 0, 0, 1};
    const std::vector<double> pairs{0, 0, 0.1, 0.2, 0, 0, 0.3, 0.4, 0, 0, 0.5, 0.6, 0, 0};
    const Index material = builder.Material("m");
    const Index coordinates = builder.Coordinates(pairs);
    builder.Node("shaded", None,
                 {{"", builder.Geometry({positions, normals, {5, 1, 3}, true}), coordinates, material}});
    builder.Node("bare", None, {{"", builder.Geometry({positions, {}, {5, 1, 3}, true}), coordinates, material}});
    builder.Node("loose", None, {{"", builder.Geometry({positions, {}, {5, 1, 3}, false}), None, material}});
    Build();
    for (const char* name : {"shaded", "bare", "loose"}) {
        const COrvelGeometry* geometry = Object(name)->Geometry();
        EXPECT_THAT(geometry->VerticiesTable()->Values(), ElementsAre(1, 2, 3, 5, 7, 11, 13, 17, 19)) << name;
        EXPECT_EQ(geometry->VerticiesNormalsTable()->Count(), 3U) << name;
        EXPECT_THAT(geometry->PolygonsTable()->TriangleCorners(), ElementsAre(2, 0, 1)) << name;
    }
    EXPECT_THAT(Object("shaded")->Geometry()->VerticiesNormalsTable()->Values(),
                ElementsAre(1, 0, 0, 0, 1, 0, 0, 0, -1));
    for (const char* name : {"shaded", "bare"})
        EXPECT_THAT(Object(name)->TextureCoordinatesTable()->Values(), ElementsAre(0.1, 0.2, 0.3, 0.4, 0.5, 0.6));
}

TEST_F(DocumentBuilder, LetsTextureCoordinatesFollowTheirPoints)
{
    // Two squares of unwelded triangles at a right angle along x = 1. The second set differs on the common edge.
    const ImportedGeometry corner{
        {0, 0, 0, 1, 0, 0, 1, 2, 0, 0, 0, 0, 1, 2, 0, 0, 2, 0, 1, 0, 0, 1, 0, 3, 1, 2, 3, 1, 0, 0, 1, 2, 3, 1, 2, 0},
        {},
        {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11},
        false};
    std::vector<double> smooth;
    for (std::size_t i = 0; i < 12; ++i)
        smooth.insert(smooth.end(),
                      {corner.positions[3 * i] + corner.positions[3 * i + 2], corner.positions[3 * i + 1]});
    std::vector<double> seam = smooth;
    for (std::size_t i = 12; i < 24; ++i)
        seam[i] += 100.0;

    const Index both = builder.Coordinates(smooth);
    const Index split = builder.Coordinates(seam);
    const Index material = builder.Material("m");
    const Index flat = builder.Geometry(corner);
    builder.Node("one set", None, {{"", flat, both, material}});
    const Index twice = builder.Geometry(corner);
    builder.Node("first of two", None, {{"", twice, both, material}});
    builder.Node("second of two", None, {{"", twice, split, material}});

    Build({.creaseAngleInDegrees = 35.0});
    EXPECT_EQ(Object("one set")->Geometry()->VerticiesTable()->Count(), 8U) << "six places, the edge in two normals";
    EXPECT_EQ(Object("first of two")->Geometry()->VerticiesTable()->Count(), 8U);
    const std::map<std::string, const std::vector<double>*> sources{
        {"one set", &smooth}, {"first of two", &smooth}, {"second of two", &seam}};
    for (const auto& [name, values] : sources) {
        const COrvelGeometry* geometry = Object(name)->Geometry();
        const auto corners = geometry->PolygonsTable()->TriangleCorners();
        ASSERT_EQ(corners.size(), 12U);
        ASSERT_EQ(Object(name)->TextureCoordinatesTable()->Count(), geometry->VerticiesTable()->Count());
        for (std::size_t i = 0; i < 12; ++i) {
            const COrvelTextureCoordinate got = Object(name)->TextureCoordinatesTable()->Item(corners[i]);
            EXPECT_EQ(got.U(), (*values)[2 * i]) << name << ", corner " << i;
            EXPECT_EQ(got.V(), (*values)[2 * i + 1]) << name << ", corner " << i;
            const COrvel3DVertex place = geometry->VerticiesTable()->Item(corners[i]);
            EXPECT_EQ(place.X(), corner.positions[3 * i]) << name << ", corner " << i;
            const COrvel3DVertex normal = geometry->VerticiesNormalsTable()->Item(corners[i]);
            EXPECT_NEAR(i < 6 ? normal.Z() : normal.X(), i < 6 ? 1.0 : -1.0, 1e-12) << name << ", corner " << i;
        }
    }
}

TEST_F(DocumentBuilder, PutsUnitsAndAxesIntoOneGroupAboveAllOthers)
{
    using enum UpAxis;
    const struct
    {
        double unit;
        UpAxis axis;
        BuildOptions options;
        std::optional<UnitChange> want;
    } cases[] = {
        {1000.0, Y, {}, UnitChange{1000.0, Y, Z}},
        {25.4, Z, {}, UnitChange{25.4, Unknown, Unknown}},
        {1.0, Z, {}, std::nullopt},
        {0.0, Unknown, {}, std::nullopt},
        {10.0, Unknown, {}, UnitChange{10.0, Unknown, Unknown}},
        {0.0, X, {}, UnitChange{1.0, X, Z}},
        {1000.0, Y, {.scale = 1.0, .up = Up::Keep}, std::nullopt},
        {1000.0, Y, {.scale = 2.5}, UnitChange{2.5, Y, Z}},
        {1000.0, Y, {.up = Up::Y}, UnitChange{1000.0, Unknown, Unknown}},
        {1.0, Z, {.up = Up::Y}, UnitChange{1.0, Z, Y}},
        {0.0, Unknown, {.up = Up::Z}, UnitChange{1.0, Y, Z}},
        {0.0, Unknown, {.scale = 3.0, .up = Up::Y}, UnitChange{3.0, Unknown, Unknown}},
    };
    for (const auto& [unit, axis, options, want] : cases) {
        SCOPED_TRACE(testing::Message() << "unit " << unit << ", axis " << static_cast<int>(axis));
        builder = {};
        builder.Node("a");
        builder.Node("b");
        builder.scene.unitInMillimetres = unit;
        builder.scene.upAxis = axis;
        Build(options);
        EXPECT_EQ(built.summary.nodes, 2U);
        ASSERT_EQ(built.summary.unitChange.has_value(), want.has_value());
        if (!want) {
            EXPECT_THAT(Outline(), ElementsAre("group a", "group b"));
            continue;
        }
        EXPECT_THAT(Outline(), ElementsAre("group Units and axes", "  group a", "  group b"));
        EXPECT_EQ(Roots()[0]->LocalMatrix(), UnitMatrix(*want));
        EXPECT_EQ(built.summary.unitChange->scale, want->scale);
    }

    builder = {};
    builder.scene.unitInMillimetres = 1000.0;
    EXPECT_TRUE(Build().document != nullptr && Roots().empty()) << "nothing to put under a group";
}

TEST_F(DocumentBuilder, RefusesNodesThatAreNestedTooDeep)
{
    Index parent = None;
    for (std::size_t depth = 1; depth <= MaximumNodeDepth; ++depth)
        parent = builder.Node("n", parent);
    const ImportedScene deepest = builder.scene;
    EXPECT_EQ(Build().summary.nodes, MaximumNodeDepth);

    builder.scene = deepest;
    builder.Node("too deep", parent);
    EXPECT_THROW(Build(), ImportError);
}

TEST_F(DocumentBuilder, NamesThePictureFilesOfMaterialsInUse)
{
    builder.scene.images.push_back({"checker", "", {}, std::vector(2 * 3 * 4, std::byte{200}), 2, 3});
    const Index red = builder.Material("red");
    builder.scene.materials[0].image = 0;
    builder.scene.materials[0].opacity = 0.75;
    builder.Node("a", None, {{"", builder.Triangle(1.0), builder.Coordinates({0, 0, 1, 0, 0, 1}), red}});
    Build();
    COrvelBasicGeneralMaterial* looks = Object("a")->Material()->ApproximateToOrvelGeneralMaterial();
    const std::string file = looks->Texture(textureTypeDiffuse, false).FullFilename(false).toStdString();
    EXPECT_TRUE(std::filesystem::is_regular_file(file)) << file;
    EXPECT_TRUE(looks->HasOpacity());
    EXPECT_EQ(looks->Opacity(), 0.75);
    EXPECT_EQ(looks->DiffuseColor(), COrvelColor(0.5, 0.25, 0.125, 0.75));
    ASSERT_EQ(built.summary.textures.size(), 1U);
    EXPECT_EQ(built.summary.textures[0].name, "checker");
    EXPECT_EQ(built.summary.textures[0].width, 2U);
    EXPECT_EQ(built.summary.textures[0].height, 3U);
}

} // namespace
} // namespace Orvel::Import
