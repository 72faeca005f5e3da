#include "tests/support/PRCPlacement.h"
#include "tests/tool/GltfFile.h"
#include "tests/tool/cli/FileContent.h"
#include "tests/tool/cli/ProgramRun.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace Orvel::Test
{
namespace
{

/// Two groups with triangles at several depths, and one that ends up empty.
const std::string GroupsDae = ORVEL_TEST_DATA "/import/groups.dae";

TEST(Record, NumbersTheNodesAsTheFileHasThem)
{
    const TemporaryFolder folder;
    const ProgramResult result = RunProgram({"export", GroupsDae, "-o", "a.prc", "--record", "a.json"}, folder);
    ASSERT_EQ(result.exitCode, 0) << result.err;

    const json record = json::parse(ReadFile(folder / "a.json"));
    EXPECT_EQ(record["version"], 1);
    const PRCContent content = DecodePRCFile(folder / "a.prc");
    // Depth first below the file's own root; a group that holds nothing takes no number.
    std::vector<std::string> numbered;
    for (const PlacedOccurrence& place : WalkTree(content))
        if (place.path.size() > 1 && place.path.back() != "hollow")
            numbered.push_back(place.path.back());
    ASSERT_EQ(record["nodes"].size(), numbered.size());
    for (std::size_t i = 0; i < numbered.size(); ++i) {
        const json& node = record["nodes"][i];
        EXPECT_EQ(node["name"], numbered[i]);
        EXPECT_EQ(node["number"], i + 1) << "one root with content";
    }
    EXPECT_EQ(record["nodes"][1],
              json::parse(R"({"number": 2, "name": "deep", "parent": 1, "path": ["first", "deep"]})"));
    EXPECT_EQ(RunProgram({"export", GroupsDae, "-o", "b.prc", "--record", "b.json"}, folder).exitCode, 0);
    EXPECT_EQ(ReadFile(folder / "a.json"), ReadFile(folder / "b.json"));
    EXPECT_EQ(ReadFile(folder / "a.prc"), ReadFile(folder / "b.prc"));
}

/// A red triangle that turns blue within a second, and a camera 10 metres before a node that drives right for a second
/// and then up.
GltfFile DrivingFile()
{
    GltfFile file = TriangleFile();
    const auto accessor = [&file](const std::vector<float>& values, const char* type, std::size_t width) {
        return file.Accessor(file.View(values), Float, type, values.size() / width);
    };
    const json samplers{
        {{"input", accessor({0, 1, 2}, "SCALAR", 1)}, {"output", accessor({0, 0, 0, 4, 0, 0, 4, 8, 0}, "VEC3", 3)}},
        {{"input", accessor({0, 1}, "SCALAR", 1)}, {"output", accessor({1, 0, 0, 1, 0, 0, 1, 1}, "VEC4", 4)}}};
    const json pointer{{"pointer", "/materials/0/pbrMetallicRoughness/baseColorFactor"}};
    const json channels{
        {{"sampler", 0}, {"target", {{"node", 1}, {"path", "translation"}}}},
        {{"sampler", 1}, {"target", {{"path", "pointer"}, {"extensions", {{"KHR_animation_pointer", pointer}}}}}}};
    file.document["animations"] = json::array({{{"name", "drive"}, {"samplers", samplers}, {"channels", channels}}});
    file.document["extensionsUsed"] = {"KHR_animation_pointer"};
    file.document["materials"] = {{{"pbrMetallicRoughness", {{"baseColorFactor", {1, 0, 0, 1}}}}}};
    file.document["meshes"][0]["primitives"][0]["material"] = 0;
    file.document["cameras"] = {{{"type", "perspective"}, {"perspective", {{"yfov", 0.5}, {"znear", 0.1}}}}};
    file.Add("nodes", {{"name", "dolly"}, {"children", {2}}});
    file.Add("nodes", {{"name", "view"}, {"camera", 0}, {"translation", {0, 0, 10}}});
    file.document["scenes"][0]["nodes"] = {0, 1};
    return file;
}

TEST(Record, FollowsCameraAndMaterialFrameByFrame)
{
    const TemporaryFolder folder;
    DrivingFile().Write(folder);
    const ProgramResult result =
        RunProgram({"export", "scene.gltf", "-o", "a.prc", "--record", "a.json", "--fps", "10"}, folder);
    ASSERT_EQ(result.exitCode, 0) << result.err;
    const json record = json::parse(ReadFile(folder / "a.json"));
    const PRCContent content = DecodePRCFile(folder / "a.prc");
    EXPECT_EQ(record["clip"], "drive");
    EXPECT_EQ(record["camera"], "view");
    ASSERT_EQ(record["cameras"].size(), 21U);
    const json& numbers = record["materialAnimation"][0]["numbers"];
    const json& sequence = record["materialSequenceAnimation"][1];
    EXPECT_EQ(sequence["key"], "drive");
    const json& indices = sequence["materials"][0]["indices"];
    ASSERT_EQ(numbers.size(), 21U);

    const auto diffuse = [&content](std::size_t style) {
        return std::get<Material>(content.materials.at(content.styles.at(style).material)).diffuse;
    };
    const auto coded = [](double linear) { // sRGB, IEC 61966-2-1
        return linear <= 0.0031308 ? 12.92 * linear : 1.055 * std::pow(linear, 1.0 / 2.4) - 0.055;
    };
    for (std::size_t frame = 0; frame <= 20; ++frame) {
        const double seconds = static_cast<double>(frame) / 10.0;
        // Millimetres, z up.
        const json& camera = record["cameras"][frame];
        const std::vector<double> position = camera["position"];
        EXPECT_THAT(position, testing::Pointwise(testing::DoubleNear(1.0), {4000.0 * std::min(seconds, 1.0), -10000.0,
                                                                            8000.0 * std::max(seconds - 1.0, 0.0)}));
        EXPECT_EQ(camera["target"][0], camera["position"][0]);
        EXPECT_NEAR(camera["fieldOfView"], 0.5 * 180.0 / std::numbers::pi, 1e-5);
        const Vector3 colour = diffuse(static_cast<std::size_t>(numbers[frame]) - 1);
        EXPECT_NEAR(colour[0], coded(1.0 - std::min(seconds, 1.0)), 1.0 / 256.0) << frame;
        EXPECT_NEAR(colour[2], coded(std::min(seconds, 1.0)), 1.0 / 256.0) << frame;
        EXPECT_EQ(diffuse(indices[frame]), colour) << frame;
    }

    const ProgramResult limited =
        RunProgram({"export", "scene.gltf", "-o", "b.prc", "--record", "b.json", "--max-frames", "20"}, folder);
    EXPECT_EQ(limited.exitCode, 1);
    EXPECT_THAT(limited.err, testing::HasSubstr("limit"));
    EXPECT_EQ(folder.Names().size(), 4U);
}

TEST(Record, IsTheSameFromAnAnimationThatWasKept)
{
    const TemporaryFolder folder;
    DrivingFile().Write(folder);
    const auto exportTo = [&folder](const std::string& name, std::vector<std::string> more) {
        std::vector<std::string> arguments{"export",           "scene.gltf",       "-o",
                                           name + ".prc",      "--record",         name + ".json",
                                           "--save-animation", name + ".orvelanim"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return RunProgram(arguments, folder);
    };
    const ProgramResult sampled = exportTo("a", {"--fps", "10"});
    ASSERT_EQ(sampled.exitCode, 0) << sampled.err;
    const ProgramResult loaded = exportTo("b", {"--load-animation", "a.orvelanim"});
    ASSERT_EQ(loaded.exitCode, 0) << loaded.err;
    for (const char* const kind : {".prc", ".json", ".orvelanim"})
        EXPECT_EQ(ReadFile(folder / (std::string("b") + kind)), ReadFile(folder / (std::string("a") + kind))) << kind;

    GltfFile other = DrivingFile();
    other.document["nodes"][2]["name"] = "seat";
    other.Write(folder);
    const ProgramResult refused = exportTo("c", {"--load-animation", "a.orvelanim"});
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_THAT(refused.err, testing::HasSubstr("dolly/view', here it is camera 'Units and axes/dolly/seat'"));
    EXPECT_EQ(exportTo("c", {"--load-animation", "a.orvelanim", "--fps", "5"}).exitCode, 2);
    EXPECT_THAT(folder.Names(), testing::Not(testing::Contains(testing::StartsWith("c"))));
}

TEST(Record, IsRefusedWithTheOutput)
{
    const TemporaryFolder folder;
    EXPECT_EQ(RunProgram({"export", GroupsDae, "-o", "a.prc", "--record", "a.prc"}, folder).exitCode, 2);
    const ProgramResult lost = RunProgram({"export", GroupsDae, "-o", "a.prc", "--record", "no/a.json"}, folder);
    EXPECT_EQ(lost.exitCode, 1);
    EXPECT_THAT(lost.err, testing::HasSubstr("no/a.json"));
    EXPECT_THAT(folder.Names(), testing::IsEmpty());
}

TEST(Listing, NamesWhatOtherOptionsAskFor)
{
    const TemporaryFolder folder;
    GltfFile file = TriangleFile();
    file.document["nodes"] = json::parse(R"([{"name": "Crane", "children": [1]}, {"camera": 0},
                                            {"name": "Fixed", "camera": 0}, {"mesh": 0}])");
    file.document["scenes"][0]["nodes"] = {0, 2, 3};
    file.document["cameras"] =
        json::parse(R"([{"name": "Eye", "type": "perspective", "perspective": {"yfov": 1, "znear": 1}}])");
    file.document["materials"] = json::parse(R"([{"name": "Oak\u00e9"}, {"name": "Unused"}])");
    file.document["meshes"][0]["primitives"][0]["material"] = 0;
    file.document["extensions"]["KHR_materials_variants"]["variants"] = json::parse(R"([{"name": "Night"}])");
    const int times = file.Accessor(file.View<float>({0, 1.5F}), Float, "SCALAR", 2);
    file.document["animations"] = json::parse(R"([{"name": "Lift", "channels": [
        {"sampler": 0, "target": {"node": 0, "path": "translation"}}], "samplers": [{}]}])");
    file.document["animations"][0]["samplers"][0] = {{"input", times}, {"output", file.Vectors({0, 0, 0, 0, 9, 0})}};
    file.Write(folder);

    const ProgramResult asJson = RunProgram({"export", "--list", "--json", "scene.gltf"}, folder);
    ASSERT_EQ(asJson.exitCode, 0) << asJson.err;
    EXPECT_EQ(json::parse(asJson.out), json::parse(R"({
        "cameras": [{"name": "Eye", "moves": true}, {"name": "Fixed", "moves": false}],
        "clips": [{"name": "Lift", "seconds": 1.5}], "variants": [{"name": "Night"}],
        "materials": [{"name": "Oak\u00e9"}]})"));
    EXPECT_EQ(RunProgram({"export", "--list", "scene.gltf"}, folder).out,
              "cameras:\n  'Eye', moves\n  'Fixed'\nclips:\n  'Lift', 1.5 s\nvariants:\n  'Night'\n"
              "materials:\n  'Oak\u00e9'\n");
    EXPECT_EQ(RunProgram({"export", "scene.gltf"}, folder).exitCode, 2) << "without --list an output is needed";
}

} // namespace
} // namespace Orvel::Test
