#include "tests/tool/GltfFile.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>

namespace Orvel::Test
{
namespace
{

using Import::None;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Pointwise;
using ::testing::UnorderedElementsAre;

class GltfMeshes : public GltfTest
{};

TEST_F(GltfMeshes, KeepNumbersExactly)
{
    GltfFile file;
    const int positions = file.Vectors({0.1F, -0.2F, 3e-38F, 1e30F, 5, 6, 7, 8.25F, 9});
    const int normals = file.Vectors({0, 0, 1, 0.6F, 0.8F, 0, 0, -3, 4});
    const int coordinates = file.Pairs({0.1F, 0.25F, -1.5F, 2, 0.3F, 1});
    file.MeshNode({{"POSITION", positions}, {"NORMAL", normals}, {"TEXCOORD_0", coordinates}})["indices"] =
        file.Indices({2, 0, 1});
    const auto [scene, warnings] = Read(file.Write(folder));

    EXPECT_THAT(warnings, IsEmpty());
    EXPECT_EQ(scene.format, "glTF 2.0");
    EXPECT_EQ(scene.unitInMillimetres, 1000.0);
    EXPECT_EQ(scene.upAxis, Import::UpAxis::Y);
    ASSERT_EQ(scene.geometries.size(), 1U);
    const Import::ImportedGeometry& shape = scene.geometries[0];
    EXPECT_THAT(shape.positions, ElementsAre(0.1F, -0.2F, 3e-38F, 1e30F, 5, 6, 7, 8.25, 9));
    // Unit as far as floats go: kept. Three, four, five: made unit.
    EXPECT_THAT(shape.normals, ElementsAre(0, 0, 1, 0.6F, 0.8F, 0, 0, -0.6, 0.8));
    EXPECT_THAT(shape.triangles, ElementsAre(2, 0, 1));
    EXPECT_TRUE(shape.welded);
    ASSERT_EQ(scene.textureCoordinates.size(), 1U);
    EXPECT_THAT(scene.textureCoordinates[0].values, ElementsAre(0.1F, 0.75, -1.5, -1, 0.3F, 0));
    ASSERT_EQ(scene.nodes[0].parts.size(), 1U);
    EXPECT_EQ(scene.nodes[0].parts[0].name, "Wheel");
    EXPECT_EQ(scene.nodes[0].parts[0].textureCoordinates, 0);
    EXPECT_EQ(scene.nodes[0].parts[0].material, None);
}

TEST_F(GltfMeshes, ReadInterleavedData)
{
    GltfFile file;
    const int view = file.View<float>({99, 1, 2, 3, 0.5F, 0.25F, 4, 5, 6, 0.125F, 0, 7, 8, 9, 0, 1});
    file.document["bufferViews"][0]["byteStride"] = 20;
    const int positions = file.Accessor(view, Float, "VEC3", 3);
    file.document["accessors"][0]["byteOffset"] = 4;
    const int coordinates = file.Accessor(view, Float, "VEC2", 3);
    file.document["accessors"][1]["byteOffset"] = 16;
    file.MeshNode({{"POSITION", positions}, {"TEXCOORD_0", coordinates}});
    const auto [scene, warnings] = Read(file.Write(folder));

    // The last element ends with the view, short of a whole stride.
    EXPECT_THAT(scene.geometries.at(0).positions, ElementsAre(1, 2, 3, 4, 5, 6, 7, 8, 9));
    EXPECT_THAT(scene.textureCoordinates.at(0).values, ElementsAre(0.5, 0.75, 0.125, 1, 0, 0));
    EXPECT_FALSE(scene.geometries[0].welded) << "no index list";
    EXPECT_THAT(scene.geometries[0].triangles, ElementsAre(0, 1, 2));
}

TEST_F(GltfMeshes, UndoQuantisation)
{
    GltfFile file;
    const auto accessor = [&file](int view, int stride, int componentType, const char* type, bool normalized) {
        file.document["bufferViews"].back()["byteStride"] = stride;
        const int number = file.Accessor(view, componentType, type, 3);
        file.document["accessors"].back()["normalized"] = normalized;
        return number;
    };
    const int positions = accessor(file.View<std::int16_t>({-32768, -32767, 32767, 0, 1, 0, 16384, 0, 3, 0, 7, 0}), 8,
                                   Short, "VEC3", true);
    const int normals =
        accessor(file.View<std::int8_t>({127, 0, 0, 0, 0, -128, 0, 0, 0, 0, 64, 0}), 4, Byte, "VEC3", true);
    const int coordinates =
        accessor(file.View<std::uint16_t>({0, 65535, 13107, 0, 1, 52428}), 4, UnsignedShort, "VEC2", true);
    const int plain =
        accessor(file.View<std::uint8_t>({1, 2, 3, 0, 4, 5, 6, 0, 7, 8, 255, 0}), 4, UnsignedByte, "VEC3", false);
    file.MeshNode({{"POSITION", positions}, {"NORMAL", normals}, {"TEXCOORD_0", coordinates}});
    file.MeshNode({{"POSITION", plain}});
    const auto [scene, warnings] = Read(file.Write(folder));

    ASSERT_EQ(scene.geometries.size(), 2U);
    EXPECT_THAT(scene.geometries[0].positions,
                ElementsAre(-1.0, -1.0, 1.0, 1.0 / 32767, 0, 16384.0 / 32767, 3.0 / 32767, 0, 7.0 / 32767));
    EXPECT_THAT(scene.geometries[0].normals, ElementsAre(1, 0, 0, 0, -1, 0, 0, 0, 1));
    EXPECT_THAT(scene.textureCoordinates.at(0).values,
                ElementsAre(0, 0, 13107.0 / 65535, 1, 1.0 / 65535, 1.0 - 52428.0 / 65535));
    EXPECT_THAT(scene.geometries[1].positions, ElementsAre(1, 2, 3, 4, 5, 6, 7, 8, 255));
}

TEST_F(GltfMeshes, ApplySparseReplacements)
{
    GltfFile file;
    const int base = file.View<float>({1, 2, 3, 4, 5, 6, 7, 8, 9});
    const int places = file.View<std::uint8_t>({0, 2});
    const int values = file.View<float>({10, 20, 30, 70, 80, 90});
    const json sparse = {{"count", 2},
                         {"indices", {{"bufferView", places}, {"componentType", UnsignedByte}}},
                         {"values", {{"bufferView", values}}}};
    const int over = file.Accessor(base, Float, "VEC3", 3);
    file.document["accessors"][0]["sparse"] = sparse;
    // Without a view the rest is zero; equal in everything but the view, so not the same shape.
    const int overZero =
        file.Add("accessors", {{"componentType", Float}, {"type", "VEC3"}, {"count", 3}, {"sparse", sparse}});
    const int plain = file.Accessor(base, Float, "VEC3", 3);
    for (const int accessor : {over, overZero, plain})
        file.MeshNode({{"POSITION", accessor}});
    const auto [scene, warnings] = Read(file.Write(folder));

    ASSERT_EQ(scene.geometries.size(), 3U);
    EXPECT_THAT(scene.geometries[0].positions, ElementsAre(10, 20, 30, 4, 5, 6, 70, 80, 90));
    EXPECT_THAT(scene.geometries[1].positions, ElementsAre(10, 20, 30, 0, 0, 0, 70, 80, 90));
    EXPECT_THAT(scene.geometries[2].positions, ElementsAre(1, 2, 3, 4, 5, 6, 7, 8, 9));
}

TEST_F(GltfMeshes, TurnStripsAndFansIntoTriangles)
{
    GltfFile file;
    const int positions = file.Vectors({0, 0, 0, 1, 0, 0, 0, 1, 0, 1, 1, 0, 0, 2, 0});
    const int indices = file.Indices({4, 3, 2, 1, 0});
    for (const int mode : {5, 6}) {
        file.MeshNode({{"POSITION", positions}})["mode"] = mode;
        json& primitive = file.MeshNode({{"POSITION", positions}});
        primitive["mode"] = mode;
        primitive["indices"] = indices;
    }
    const auto [scene, warnings] = Read(file.Write(folder));

    ASSERT_EQ(scene.geometries.size(), 4U);
    EXPECT_THAT(scene.geometries[0].triangles, ElementsAre(0, 1, 2, 1, 3, 2, 2, 3, 4));
    EXPECT_THAT(scene.geometries[1].triangles, ElementsAre(4, 3, 2, 3, 1, 2, 2, 1, 0));
    EXPECT_THAT(scene.geometries[2].triangles, ElementsAre(1, 2, 0, 2, 3, 0, 3, 4, 0));
    EXPECT_THAT(scene.geometries[3].triangles, ElementsAre(3, 2, 4, 2, 1, 4, 1, 0, 4));
}

TEST_F(GltfMeshes, ShareGeometryAcrossMeshesAndMaterials)
{
    GltfFile file;
    const int positions = file.Vectors({1, 2, 3, 5, 7, 11, -13, 17, 19});
    const int indices = file.Indices({0, 1, 2});
    const int reversed = file.Indices({2, 1, 0});
    const int twin = file.Add("accessors", file.document["accessors"][static_cast<std::size_t>(positions)]);
    for (const char* name : {"Red", "Blue"})
        file.Add("materials", {{"name", name}});
    const auto add = [&](int points, int triangles, int material) {
        json& primitive = file.MeshNode({{"POSITION", points}});
        primitive["indices"] = triangles;
        primitive["material"] = material;
    };
    add(positions, indices, 0);
    add(positions, indices, 1);
    add(twin, indices, 0);
    add(positions, reversed, 0);
    const auto [scene, warnings] = Read(file.Write(folder));

    std::vector<std::pair<int, int>> parts;
    for (const Import::ImportedNode& node : scene.nodes)
        parts.emplace_back(node.parts.at(0).geometry, node.parts.at(0).material);
    using Part = std::pair<int, int>;
    EXPECT_THAT(parts, ElementsAre(Part(0, 0), Part(0, 1), Part(0, 0), Part(1, 0)));
    EXPECT_EQ(scene.geometries.size(), 2U);
    EXPECT_EQ(scene.materials.size(), 2U);
}

TEST_F(GltfMeshes, TakeOnlyThePointsThatTheirTrianglesUse)
{
    // One array for all primitives: each takes four numbers of it, in the order of the array, the last one all.
    GltfFile file;
    constexpr int Points = 40;
    std::vector<float> places;
    std::vector<float> directions;
    std::vector<float> pairs;
    for (int point = 0; point < Points; ++point) {
        const auto number = static_cast<float>(point);
        places.insert(places.end(), {number, number + 100, number + 200});
        directions.insert(directions.end(), {point % 2 == 0 ? 1.0F : 0.0F, point % 2 == 0 ? 0.0F : 1.0F, 0.0F});
        pairs.insert(pairs.end(), {number + 300, -number});
    }
    const json attributes = {
        {"POSITION", file.Vectors(places)}, {"NORMAL", file.Vectors(directions)}, {"TEXCOORD_0", file.Pairs(pairs)}};
    file.document["accessors"][0]["sparse"] = {
        {"count", 2},
        {"indices", {{"bufferView", file.View<std::uint8_t>({6, 8})}, {"componentType", UnsignedByte}}},
        {"values", {{"bufferView", file.View<float>({7, 77, 777, 8, 88, 888})}}}};
    std::vector<std::uint16_t> all;
    for (std::uint16_t corner = 0; corner < Points + 2; ++corner)
        all.push_back(corner % Points);
    for (const std::vector<std::uint16_t>& corners :
         {std::vector<std::uint16_t>{9, 2, 5}, {11, 9, 8, 8, 2, 11, 11, 9, 2}, all})
        file.MeshNode(attributes)["indices"] = file.Indices(corners);
    const auto [scene, warnings] = Read(file.Write(folder));

    EXPECT_THAT(warnings, IsEmpty());
    ASSERT_EQ(scene.geometries.size(), 3U);
    EXPECT_THAT(scene.geometries[0].positions, ElementsAre(2, 102, 202, 5, 105, 205, 9, 109, 209));
    EXPECT_THAT(scene.geometries[0].normals, ElementsAre(1, 0, 0, 0, 1, 0, 0, 1, 0));
    EXPECT_THAT(scene.geometries[0].triangles, ElementsAre(2, 0, 1));
    EXPECT_THAT(scene.geometries[1].positions, ElementsAre(2, 102, 202, 8, 88, 888, 9, 109, 209, 11, 111, 211));
    EXPECT_THAT(scene.geometries[1].triangles, ElementsAre(3, 2, 1, 1, 0, 3, 3, 2, 0));
    EXPECT_EQ(scene.geometries[2].positions.size(), 3U * Points);
    EXPECT_EQ(scene.geometries[2].triangles, std::vector<std::uint32_t>(all.begin(), all.end()));
    ASSERT_EQ(scene.textureCoordinates.size(), 3U);
    EXPECT_THAT(scene.textureCoordinates[static_cast<std::size_t>(scene.nodes[1].parts[0].textureCoordinates)].values,
                ElementsAre(302, 3, 308, 9, 309, 10, 311, 12));
}

TEST_F(GltfMeshes, CountWhatTheFileCannotHold)
{
    GltfFile file;
    const int positions = file.Vectors({1, 2, 3, 5, 7, 11, -13, 17, 19});
    const int pairs = file.Pairs({0, 0, 1, 0, 1, 1});
    for (const int mode : {0, 1, 2, 3})
        file.MeshNode({{"POSITION", positions}})["mode"] = mode;
    file.MeshNode(
        {{"POSITION", positions}, {"TEXCOORD_0", pairs}, {"TEXCOORD_1", pairs}, {"COLOR_0", positions}})["targets"] =
        json::array({{{"POSITION", positions}}, {{"POSITION", positions}}});
    json& compressed = file.MeshNode(
        {{"POSITION", file.Add("accessors", {{"componentType", Float}, {"type", "VEC3"}, {"count", 24}})}});
    compressed["indices"] =
        file.Add("accessors", {{"componentType", UnsignedShort}, {"type", "SCALAR"}, {"count", 36}});
    compressed["extensions"]["KHR_draco_mesh_compression"] = {{"bufferView", 0}, {"attributes", {{"POSITION", 0}}}};
    file.document["nodes"][4]["skin"] = 0;
    file.document["skins"] = json::array({{{"joints", json::array({0})}}});
    file.document["animations"] = json::parse(R"([{"name": "spin", "channels": [], "samplers": []}])");
    file.document["nodes"][5]["extensions"]["KHR_lights_punctual"]["light"] = 0;
    file.document["extensionsRequired"] = {"KHR_draco_mesh_compression", "ACME_holograms"};
    const auto [scene, warnings] = Read(file.Write(folder));

    EXPECT_EQ(scene.geometries.size(), 1U);
    EXPECT_THAT(warnings, UnorderedElementsAre("left out: 1 point primitive", "left out: 3 line primitives",
                                               "left out: 1 second texture coordinate set",
                                               "left out: 1 vertex colour set", "left out: 2 morph targets",
                                               "left out: 1 compressed primitive (KHR_draco_mesh_compression)",
                                               "left out: 1 skin", HasSubstr("'spin' changes nothing"),
                                               "left out: 1 light", HasSubstr("'ACME_holograms'")));
}

TEST_F(GltfMeshes, ReadPlainDataBesideCompressedDataOnly)
{
    GltfFile file = TriangleFile();
    json& primitive = file.document["meshes"][0]["primitives"][0];
    primitive["indices"] = file.Indices({0, 1, 2});
    primitive["extensions"]["KHR_draco_mesh_compression"] = {{"bufferView", 0}, {"attributes", {{"POSITION", 0}}}};
    const auto [scene, warnings] = Read(file.Write(folder));
    EXPECT_EQ(scene.geometries.at(0).positions.size(), 9U);
    EXPECT_THAT(warnings, IsEmpty());

    for (json& accessor : file.document["accessors"])
        accessor.erase("bufferView");
    EXPECT_THAT(Refusal(file.Write(folder)), HasSubstr("compressed"));
}

TEST_F(GltfMeshes, RepairNormalsAndCoordinatesThatSayNothing)
{
    const float nan = std::numeric_limits<float>::quiet_NaN();
    GltfFile file;
    // Two triangles at a right angle, areas 2 and 1: the middle point's normal leans to the larger.
    const int positions = file.Vectors({0, 0, 0, 2, 0, 0, 0, 2, 0, 0, 0, 1});
    const int normals = file.Vectors({0, 0, 0, nan, 0, 0, 0, 0, 1, 1, 0, 0});
    const int coordinates = file.Pairs({nan, 0.5F, 0, 0, 1, 1, 0.25F, std::numeric_limits<float>::infinity()});
    file.MeshNode({{"POSITION", positions}, {"NORMAL", normals}, {"TEXCOORD_0", coordinates}})["indices"] =
        file.Indices({0, 1, 2, 0, 2, 3});
    const auto [scene, warnings] = Read(file.Write(folder));

    const std::vector<double> want{1 / std::sqrt(5.0), 0, 2 / std::sqrt(5.0), 0, 0, 1, 0, 0, 1, 1, 0, 0};
    EXPECT_THAT(scene.geometries.at(0).normals, Pointwise(::testing::DoubleNear(1e-15), want));
    EXPECT_THAT(scene.textureCoordinates.at(0).values, ElementsAre(0, 0.5, 0, 1, 1, 0, 0.25, 1));
    EXPECT_THAT(warnings, UnorderedElementsAre(HasSubstr("2 normals"), HasSubstr("2 texture coordinates")));
}

} // namespace
} // namespace Orvel::Test
