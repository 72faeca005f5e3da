#include "tests/tool/GltfFile.h"

#include <gmock/gmock.h>

#include <limits>

namespace Orvel::Test
{
namespace
{

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

class GltfFaults : public GltfTest
{};

class GltfContainers : public GltfTest
{};

TEST_F(GltfContainers, AreKnownByExtensionOrContent)
{
    const auto isGltf = [&](const char* name, std::string_view content) {
        return Import::IsGltf(folder.Write(name, content));
    };
    EXPECT_TRUE(isGltf("a.GLTF", "{")) << "damaged, but meant to be one";
    EXPECT_TRUE(isGltf("a.glb", ""));
    EXPECT_TRUE(isGltf("a.dat", std::string_view("glTF\2\0\0\0", 8)));
    EXPECT_TRUE(
        isGltf("a.json", "\xEF\xBB\xBF \n{\"x\": [{\"version\": \"1.0\"}], \"asset\": {\"version\": \"2.0\"}}"));
    EXPECT_FALSE(isGltf("b.json", R"({"x": {"asset": {"version": "2.0"}}})"));
    EXPECT_FALSE(isGltf("b.obj", "v 1 2 3\n"));
    EXPECT_FALSE(Import::IsGltf(folder.Path() / "missing.gltf"));
    EXPECT_FALSE(Import::IsGltf(folder.Path()));

    // Version 1 is another format.
    EXPECT_FALSE(isGltf("c.gltf", R"({"meshes": {}, "asset": {"version": "1.0"}})"));
    EXPECT_FALSE(isGltf("c.gltf", R"({"asset": {}, "meshes": {"m": {}}})"));
    EXPECT_FALSE(isGltf("c.glb", std::string_view("glTF\1\0\0\0", 8)));
}

TEST_F(GltfContainers, HoldTheSameSceneInEveryForm)
{
    GltfFile file = TriangleFile();
    const std::vector<double> positions = Read(file.Write(folder)).scene.geometries.at(0).positions;
    EXPECT_EQ(positions, (std::vector<double>{1, 2, 3, 5, 7, 11, -13, 17, 19.5}));

    GltfFile other = TriangleFile();
    const auto read = [&](const char* uri) {
        other.document["buffers"] = json::array({{{"uri", uri}, {"byteLength", other.bytes.size()}}});
        return Read(other.Write(folder, "other.gltf")).scene.geometries.at(0).positions;
    };
    EXPECT_EQ(read("data:application/octet-stream;base64,"
                   "AACAPwAAAEAAAEBAAACgQAAA4EAAADBBAABQwQAAiEEAAJxB"),
              positions);
    EXPECT_EQ(read("data:,%00%00%80%3F%00%00%00%40%00%00%40%40%00%00%A0%40%00%00%E0%40%00%000A%00%00P%C1%00%00%88A"
                   "%00%00%9CA"),
              positions);
    std::filesystem::create_directory(folder.Path() / "R\u00e4der");
    folder.Write("R\u00e4der/a b+c.bin", other.bytes + "more than it says");
    EXPECT_EQ(read("R%C3%A4der/a%20b+c.bin"), positions);
    folder.Write("50%25.bin", other.bytes);
    EXPECT_EQ(read("50%25.bin"), positions) << "a name that was not encoded";

    const std::string binary = file.Binary();
    EXPECT_EQ(Read(folder.Write("scene.glb", binary)).scene.geometries.at(0).positions, positions);
    EXPECT_EQ(Read(folder.Write("scene.glb", binary + "trailing")).scene.geometries.at(0).positions, positions);
}

TEST_F(GltfContainers, AreRefusedWhenCutAnywhere)
{
    const GltfFile file = TriangleFile();
    const std::string binary = file.Binary();
    for (std::size_t length = 0; length < binary.size(); ++length)
        EXPECT_NE(Refusal(folder.Write(std::to_string(length) + ".glb", binary.substr(0, length))), "")
            << length << " bytes";
    const std::string text = file.document.dump();
    for (std::size_t length = 0; length < text.size(); ++length)
        EXPECT_NE(Refusal(folder.Write(std::to_string(length) + ".gltf", text.substr(0, length))), "")
            << length << " bytes";
}

/// Any byte of a binary file changed: read or refused, never worse.
TEST_F(GltfContainers, SurviveEveryDamagedByte)
{
    GltfFile file = TriangleFile();
    json& primitive = file.document["meshes"][0]["primitives"][0];
    primitive["indices"] = file.Indices({0, 1, 2});
    primitive["attributes"]["TEXCOORD_0"] = file.Pairs({0, 0, 1, 0, 1, 1});
    const std::string binary = file.Binary();
    int read = 0;
    for (std::size_t i = 0; i < binary.size(); ++i)
        for (const char value : {'~', '9'}) {
            std::string damaged = binary;
            damaged[i] = value;
            read += Refusal(folder.Write(std::to_string(i) + value + ".glb", damaged)).empty() ? 1 : 0;
        }
    EXPECT_GT(read, 0) << "names and numbers may change";
    EXPECT_LT(read, static_cast<int>(binary.size()));
}

/// A triangle, and accessors that do not go with it.
GltfFile FileWithSpares()
{
    constexpr float NaN = std::numeric_limits<float>::quiet_NaN();
    constexpr float Infinity = std::numeric_limits<float>::infinity();
    GltfFile file = TriangleFile();
    file.Vectors({0, 0, 1});
    file.Pairs({0, 0});
    file.Indices({0, 1, 3});
    file.Accessor(file.View<float>({0, 1, 2}), Float, "SCALAR", 3);
    file.Vectors({1, 2, 3, 4, NaN, 6, 7, 8, 9});
    file.Vectors({1, 2, 3, 4, 5, 6, 7, 8, Infinity});
    file.View<std::uint32_t>({0xFFFFFFFF});
    file.View<std::uint16_t>({0, 1});
    return file;
}

TEST_F(GltfFaults, AreNamed)
{
    constexpr double Huge = 9007199254740992.0;
    constexpr const char* Position = "/meshes/0/primitives/0/attributes/POSITION";
    constexpr const char* Normal = "/meshes/0/primitives/0/attributes/NORMAL";
    constexpr const char* Coordinates = "/meshes/0/primitives/0/attributes/TEXCOORD_0";
    constexpr const char* Indices = "/meshes/0/primitives/0/indices";
    const auto text = [](const char* value) { return json::parse(value); };
    const struct
    {
        const char* place;
        json value;
        const char* message;
    } cases[] = {
        {"/bufferViews/0/byteLength", 1000, "bufferViews[0] reaches beyond its buffer"},
        {"/bufferViews/0/byteOffset", Huge, "bufferViews[0] reaches beyond"},
        {"/accessors/0/count", 4, "accessors[0] reaches beyond its buffer view"},
        {"/accessors/0/count", Huge, "accessors[0] reaches beyond its buffer view"},
        {"/accessors/0/byteOffset", 40, "accessors[0] reaches beyond its buffer view"},
        {"/bufferViews/0/byteStride", 8, "larger than the stride"},
        {"/bufferViews/0/byteStride", 252, "accessors[0] reaches beyond its buffer view"},
        {"/accessors/0/componentType", 5124, "accessors[0] has the unknown component type"},
        {"/accessors/0/type", "VEC2", "does not have 3 numbers"},
        {"/accessors/0/type", "MAT2", "accessors[0]"},
        {"/accessors/0/type", "VEC9", "VEC9"},
        {"/accessors/0/count", -1, "accessors[0].count is not a whole number"},
        {"/accessors/0/count", 2.5, "accessors[0].count is not a whole number"},
        {"/accessors/0", text(R"({"componentType": 5126, "type": "VEC3", "count": 1073741824})"), "without bytes"},
        {"/nodes/0/mesh", 7, "nodes[0].mesh is 7, but the file has 1 meshes"},
        {"/nodes/0/mesh", std::int64_t{1} << 32, "nodes[0].mesh is too large"},
        {"/nodes/0/children", {5}, "nodes[0].children[0] is 5"},
        {"/scene", 3, "scene is 3"},
        {"/meshes/0/primitives/0/material", 0, "material is 0, but the file has 0 materials"},
        {Position, 7, "attributes.POSITION is 7"},
        {Indices, -1, "indices is not a whole number"},
        {"/bufferViews/0/buffer", 1, "bufferViews[0].buffer is 1"},
        {"/materials", text(R"([{"emissiveTexture": {"index": 2}}])"), "index is 2"},
        {"/textures", text(R"([{"source": 1}])"), "textures[0].source is 1"},
        {"/meshes/0/primitives/0/attributes", {{"NORMAL", 0}}, "mesh 'Wheel': a primitive has no"},
        {"/meshes/0/primitives/0/mode", 7, "mesh 'Wheel': a primitive has the unknown mode 7"},
        {"/nodes/0/children", {0}, "node 0 is reached twice"},
        {"/nodes/0/matrix", std::vector<int>(15, 1), "nodes[0].matrix is not a list of 16"},
        {"/nodes/0/matrix", std::vector<int>(16, 1), "node 0: its matrix is a projection"},
        // The quaternion is unit within rounding, but not quite: the largest double grows beyond its range.
        {"/nodes/0", text(R"({"scale": [1.7976931348623157e308, 1, 1], "rotation": [0.707108, 0.707108, 0, 0]})"),
         "node 0: its transform is not finite"},
        {"/meshes", "none", "meshes is not a list"},
        {"/nodes", {4}, "nodes[0] is not an object"},
        {"/asset/version", "3.0", "glTF version '3.0' is not supported"},
        {"/asset", json::object(), "asset.version is missing"},
        {Normal, 1, "mesh 'Wheel': it has 1 normals for 3 points"},
        {Coordinates, 2, "mesh 'Wheel': it has 1 elements of TEXCOORD_0 for 3 points"},
        {Indices, 3, "mesh 'Wheel': index 3 is out of range: it has 3 points"},
        {Indices, 4, "not as unsigned integers"},
        {Position, 5, "mesh 'Wheel': the position of point 1 is not finite"},
        {Position, 6, "mesh 'Wheel': the position of point 2 is not finite"},
        {"/accessors/0/sparse", text(R"({"count": 1, "indices": {"bufferView": 7, "componentType": 5125},
                                         "values": {"bufferView": 0}})"),
         "sparse index out of range"},
        {"/accessors/0/sparse", text(R"({"count": 2, "indices": {"bufferView": 8, "componentType": 5123},
                                         "values": {"bufferView": 0, "byteOffset": 16}})"),
         "accessors[0] reaches beyond"},
        {"/buffers", text(R"([{"uri": "gone%20.bin", "byteLength": 36}])"), "buffer file 'gone .bin' was not found"},
        {"/buffers", text(R"([{"uri": "data.bin", "byteLength": 4000000000}])"),
         "buffers[0] has 156 of 4000000000 bytes"},
        {"/buffers", text(R"([{"uri": ".", "byteLength": 36}])"), "is not a file"},
        {"/buffers", text(R"([{"uri": "/dev/zero", "byteLength": 36}])"), "is not a file"},
        {"/buffers", text(R"([{"byteLength": 36}])"), "neither a uri nor a binary chunk"},
        {"/buffers", text(R"([{"uri": "data:;base64,A*A", "byteLength": 36}])"), "base64"},
    };
    ASSERT_EQ(Refusal(FileWithSpares().Write(folder)), "");
    for (const auto& [place, value, message] : cases) {
        SCOPED_TRACE(testing::Message() << place << " = " << value);
        GltfFile file = FileWithSpares();
        file.document[json::json_pointer(place)] = value;
        EXPECT_THAT(Refusal(file.Write(folder)), AllOf(HasSubstr(message), Not(HasSubstr("\n"))));
    }
}

TEST_F(GltfFaults, OfJsonAreRefusedBeforeAnyParserIsHurt)
{
    const auto refusal = [&](const std::string& text) { return Refusal(folder.Write("a.gltf", text)); };
    EXPECT_THAT(refusal(""), HasSubstr("empty"));
    EXPECT_THAT(refusal("   "), HasSubstr("malformed"));
    EXPECT_THAT(refusal("[]"), HasSubstr("not an object"));
    EXPECT_THAT(refusal("{\"asset\": {\"version\": \"2.0\"}, }"), HasSubstr("malformed"));
    EXPECT_THAT(refusal("{\"asset\": {\"version\": \"2.0\", \"generator\": \"\xFF\"}}"), HasSubstr("malformed"));
    EXPECT_THAT(refusal("{\"asset\": {\"version\": \"2.0\"}, \"nodes\": [{\"scale\": [1e999, 1, 1]}]}"),
                HasSubstr("malformed"));
    EXPECT_THAT(refusal("{\"extras\": " + std::string(300, '[') + std::string(300, ']') + "}"),
                HasSubstr("256 levels deep"));
    EXPECT_THAT(refusal(std::string(3'000'000, '[')), HasSubstr("256 levels deep"));
    // Brackets inside strings open nothing.
    EXPECT_EQ(refusal("{\"asset\": {\"version\": \"2.0\", \"generator\": \"\\\"" + std::string(300, '[') + "\"}}"), "");
    EXPECT_THAT(Refusal(folder.Path() / "missing.gltf"), HasSubstr("was not found"));
    EXPECT_THAT(Refusal(folder.Path()), HasSubstr("is not a file"));
}

TEST_F(GltfFaults, OfWhatIsNotShownDoNotMatter)
{
    GltfFile file = TriangleFile();
    file.document["skins"] = json::parse(R"([{"joints": "none"}])");
    file.document["samplers"] = json::parse("[3]");
    file.document["extras"] = json::parse(R"({"a": [1, 2, {"b": null}]})");
    file.document["nodes"][0]["name"] = 42;
    file.document["accessors"][0]["count"] = 3.0;
    file.document["buffers"] = json::array(
        {{{"uri", "data.bin"}, {"byteLength", 36}}, {{"uri", "unused and missing.bin"}, {"byteLength", 1}}});
    const auto [scene, warnings] = Read(file.Write(folder));
    EXPECT_EQ(scene.geometries.at(0).positions.size(), 9U);
    EXPECT_EQ(scene.nodes.at(0).name, "");
    EXPECT_THAT(warnings, IsEmpty());
}

} // namespace
} // namespace Orvel::Test
