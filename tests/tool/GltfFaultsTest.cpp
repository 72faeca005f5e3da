#include "tests/tool/GltfFile.h"

#include <gmock/gmock.h>

#include <functional>
#include <limits>

namespace Orvel::Test
{

namespace
{

using ::testing::ElementsAre;
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

TEST_F(GltfFaults, AreNamed)
{
    struct Case
    {
        const char* what;
        std::function<void(GltfFile&)> spoil;
        const char* message;
    };
    const auto set = [](const char* place, json value) {
        return [=](GltfFile& file) { file.document[json::json_pointer(place)] = value; };
    };
    constexpr double Huge = 9007199254740992.0;
    const Case cases[] = {
        {"view beyond buffer", set("/bufferViews/0/byteLength", 37), "bufferViews[0] reaches beyond its buffer"},
        {"view offset beyond buffer", set("/bufferViews/0/byteOffset", Huge), "bufferViews[0] reaches beyond"},
        {"accessor beyond view", set("/accessors/0/count", 4), "accessors[0] reaches beyond its buffer view"},
        {"count that overflows", set("/accessors/0/count", Huge), "accessors[0] reaches beyond its buffer view"},
        {"offset beyond view", set("/accessors/0/byteOffset", 40), "accessors[0] reaches beyond its buffer view"},
        {"stride below element", set("/bufferViews/0/byteStride", 8), "larger than the stride"},
        {"stride too long", set("/bufferViews/0/byteStride", 252), "accessors[0] reaches beyond its buffer view"},
        {"component type", set("/accessors/0/componentType", 5124), "accessors[0] has the unknown component type"},
        {"element type", set("/accessors/0/type", "VEC2"), "does not have 3 numbers"},
        {"matrix type", set("/accessors/0/type", "MAT2"), "accessors[0]"},
        {"nonsense type", set("/accessors/0/type", "VEC9"), "VEC9"},
        {"negative count", set("/accessors/0/count", -1), "accessors[0].count is not a whole number"},
        {"fractional count", set("/accessors/0/count", 2.5), "accessors[0].count is not a whole number"},
        {"zeros from nothing",
         [](GltfFile& file) {
             file.document["accessors"][0].erase("bufferView");
             file.document["accessors"][0]["count"] = 1 << 30;
         },
         "without bytes"},
        {"mesh index", set("/nodes/0/mesh", 7), "nodes[0].mesh is 7, but the file has 1 meshes"},
        {"mesh index of 64 bits", set("/nodes/0/mesh", std::int64_t{1} << 32), "nodes[0].mesh is too large"},
        {"child index", set("/nodes/0/children", {5}), "nodes[0].children[0] is 5"},
        {"scene index", set("/scene", 3), "scene is 3"},
        {"material index", set("/meshes/0/primitives/0/material", 0), "material is 0, but the file has 0 materials"},
        {"accessor index", set("/meshes/0/primitives/0/attributes/POSITION", 1), "attributes.POSITION is 1"},
        {"index list", set("/meshes/0/primitives/0/indices", -1), "indices is not a whole number"},
        {"buffer index", set("/bufferViews/0/buffer", 1), "bufferViews[0].buffer is 1"},
        {"texture index", set("/materials", json::parse(R"([{"emissiveTexture": {"index": 2}}])")), "index is 2"},
        {"image index", set("/textures", json::parse(R"([{"source": 1}])")), "textures[0].source is 1"},
        {"no position", set("/meshes/0/primitives/0/attributes", {{"NORMAL", 0}}), "mesh 'Wheel': a primitive has no"},
        {"mode", set("/meshes/0/primitives/0/mode", 7), "mesh 'Wheel': a primitive has the unknown mode 7"},
        {"circle", set("/nodes/0/children", {0}), "node 0 is reached twice"},
        {"matrix of 15", set("/nodes/0/matrix", std::vector<int>(15, 1)), "nodes[0].matrix is not a list of 16"},
        {"projection", set("/nodes/0/matrix", std::vector<int>(16, 1)), "node 0: its matrix is a projection"},
        {"infinite transform",
         [](GltfFile& file) {
             // The quaternion is unit within rounding, but not quite: the largest double grows beyond its range.
             file.document["nodes"][0]["scale"] = {std::numeric_limits<double>::max(), 1, 1};
             file.document["nodes"][0]["rotation"] = {0.707108, 0.707108, 0, 0};
         },
         "node 0: its transform is not finite"},
        {"list instead of table", set("/meshes", "none"), "meshes is not a list"},
        {"number in table", set("/nodes", {4}), "nodes[0] is not an object"},
        {"version", set("/asset/version", "3.0"), "glTF version '3.0' is not supported"},
        {"no version", set("/asset", json::object()), "asset.version is missing"},
        {"unequal normals",
         [](GltfFile& file) {
             file.document["meshes"][0]["primitives"][0]["attributes"]["NORMAL"] = file.Vectors({0, 0, 1});
         },
         "mesh 'Wheel': it has 1 normals for 3 points"},
        {"unequal coordinates",
         [](GltfFile& file) {
             file.document["meshes"][0]["primitives"][0]["attributes"]["TEXCOORD_0"] = file.Pairs({0, 0});
         },
         "mesh 'Wheel': it has 1 elements of TEXCOORD_0 for 3 points"},
        {"index out of range",
         [](GltfFile& file) {
             file.document["meshes"][0]["primitives"][0]["indices"] = file.Indices({0, 1, 3});
         },
         "mesh 'Wheel': index 3 is out of range: it has 3 points"},
        {"indices as floats",
         [](GltfFile& file) {
             file.document["meshes"][0]["primitives"][0]["indices"] =
                 file.Accessor(file.View<float>({0, 1, 2}), Float, "SCALAR", 3);
         },
         "not as unsigned integers"},
        {"sparse place",
         [](GltfFile& file) {
             file.document["accessors"][0]["sparse"] = {
                 {"count", 1},
                 {"indices", {{"bufferView", file.View<std::uint32_t>({0xFFFFFFFF})}, {"componentType", UnsignedInt}}},
                 {"values", {{"bufferView", 0}}}};
         },
         "sparse index out of range"},
        {"sparse values",
         [](GltfFile& file) {
             file.document["accessors"][0]["sparse"] = {
                 {"count", 2},
                 {"indices", {{"bufferView", file.View<std::uint16_t>({0, 1})}, {"componentType", UnsignedShort}}},
                 {"values", {{"bufferView", 0}, {"byteOffset", 16}}}};
         },
         "accessors[0] reaches beyond"},
        {"not a number",
         [](GltfFile& file) {
             const float nan = std::numeric_limits<float>::quiet_NaN();
             std::memcpy(file.bytes.data() + 16, &nan, sizeof nan);
         },
         "mesh 'Wheel': the position of point 1 is not finite"},
        {"infinite",
         [](GltfFile& file) {
             const float infinite = std::numeric_limits<float>::infinity();
             std::memcpy(file.bytes.data() + 32, &infinite, sizeof infinite);
         },
         "mesh 'Wheel': the position of point 2 is not finite"},
        {"missing buffer file", set("/buffers", json::parse(R"([{"uri": "gone%20.bin", "byteLength": 36}])")),
         "buffer file 'gone .bin' was not found"},
        {"short buffer file", set("/buffers", json::parse(R"([{"uri": "data.bin", "byteLength": 4000000000}])")),
         "buffers[0] has 36 of 4000000000 bytes"},
        {"folder as buffer", set("/buffers", json::parse(R"([{"uri": ".", "byteLength": 36}])")), "is not a file"},
        {"device as buffer", set("/buffers", json::parse(R"([{"uri": "/dev/zero", "byteLength": 36}])")),
         "is not a file"},
        {"no buffer", set("/buffers", json::parse(R"([{"byteLength": 36}])")), "neither a uri nor a binary chunk"},
        {"bad base64", set("/buffers", json::parse(R"([{"uri": "data:;base64,A*A", "byteLength": 36}])")), "base64"},
    };
    for (const Case& each : cases) {
        GltfFile file = TriangleFile();
        each.spoil(file);
        const std::string refusal = Refusal(file.Write(folder));
        EXPECT_THAT(refusal, HasSubstr(each.message)) << each.what;
        EXPECT_THAT(refusal, Not(HasSubstr("\n"))) << each.what;
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
