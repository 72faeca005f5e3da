#include "tests/prcfile/ExampleFile.h"
#include "tests/tool/GltfFile.h"
#include "tests/tool/cli/FileContent.h"
#include "tests/tool/cli/ProgramRun.h"
#include "tests/tool/pdf/PdfBuilder.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <iterator>

namespace Orvel::Test
{
namespace
{

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

std::string Example(const std::string& name)
{
    return prc::Test::ExamplePath(name).string();
}

class Convert : public testing::Test
{
protected:
    ProgramResult Run(std::vector<std::string> arguments)
    {
        arguments.insert(arguments.begin(), "convert");
        return RunProgram(arguments, folder);
    }

    json GltfOf(const std::vector<std::string>& arguments)
    {
        std::vector<std::string> all{"-o", "out.gltf", "--quiet"};
        all.insert(all.end(), arguments.begin(), arguments.end());
        const ProgramResult result = Run(all);
        EXPECT_EQ(result.exitCode, 0) << result.err;
        return json::parse(ReadFile(folder / "out.gltf"));
    }

    TemporaryFolder folder;
};

TEST_F(Convert, KeepsTheTreeAndSharedMeshesInMetres)
{
    const json gltf = GltfOf({Example("b_groups")});
    ASSERT_EQ(gltf["nodes"].size(), 7U);
    EXPECT_EQ(gltf["nodes"][0]["name"], "Units and axes");
    EXPECT_EQ(gltf["nodes"][0]["matrix"], (json{0.001, 0, 0, 0, 0, 0.001, 0, 0, 0, 0, 0.001, 0, 0, 0, 0, 1}));
    EXPECT_EQ(gltf["nodes"][4]["name"], "scaled");
    EXPECT_EQ(gltf["nodes"][4]["matrix"], (json{2, 0, 0, 0, 0, 0.5, 0, 0, 0, 0, 3, 0, 0, 0, 0, 1}));
    EXPECT_EQ(GltfOf({Example("b_groups"), "--scale", "1"})["nodes"].size(), 6U);
}

/// A triangle in metres, exported with the group that makes millimetres of them.
TEST_F(Convert, UndoesTheGroupForUnitsAndAxesOfAnExport)
{
    GltfFile file;
    file.MeshNode({{"POSITION", file.Vectors({0, 0, 0, 2, 0, 0, 0, 3, 0})}})["material"] = 0;
    file.document["nodes"][0].update({{"name", "corner"}, {"translation", {7, 11, 13}}});
    file.document["materials"] = json::parse(R"([{"alphaMode": "BLEND", "pbrMetallicRoughness": {
        "baseColorFactor": [0.25, 0.5, 1, 0.5], "roughnessFactor": 0.75, "metallicFactor": 0}}])");
    file.Write(folder);
    ASSERT_EQ(RunProgram({"export", "scene.gltf", "-o", "scene.prc"}, folder).exitCode, 0);
    const json gltf = GltfOf({"scene.prc"});
    ASSERT_EQ(gltf["nodes"].size(), 1U);
    EXPECT_EQ(gltf["nodes"][0]["name"], "corner");
    EXPECT_EQ(gltf["nodes"][0]["matrix"], (json{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 7, 11, 13, 1}));
    EXPECT_EQ(gltf["accessors"][0]["max"], (json{2, 3, 0}));
    const json& material = gltf["materials"][0];
    EXPECT_EQ(material["alphaMode"], "BLEND");
    const json& factors = material["pbrMetallicRoughness"];
    for (const auto& [got, want] : {std::pair{factors["baseColorFactor"][0], 0.25},
                                    {factors["baseColorFactor"][1], 0.5},
                                    {factors["baseColorFactor"][3], 0.5},
                                    {factors["roughnessFactor"], 0.75}})
        EXPECT_NEAR(got.get<double>(), want, 1e-9);

    ASSERT_EQ(Run({"scene.prc", "-o", "out.stl"}).exitCode, 0);
    EXPECT_EQ(ReadFile(folder / "out.stl").size(), 84U + 50U);
}

TEST_F(Convert, PutsTheFilesOfObjBesideIt)
{
    std::filesystem::create_directory(folder / "größe");
    const ProgramResult result = Run({Example("c_tex_rgb_png"), "-o", "größe/two words.obj", "--json"});
    ASSERT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(json::parse(result.out)["sideFiles"], (json{"two words-1.png", "two words.mtl"}));
    EXPECT_THAT(ReadFile(folder / "größe/two words.obj"), HasSubstr("mtllib two words.mtl"));
    EXPECT_THAT(ReadFile(folder / "größe/two words.mtl"), HasSubstr("map_Kd two words-1.png"));
    EXPECT_THAT(ReadFile(folder / "größe/two words-1.png"), StartsWith("\x89PNG"));
    const std::filesystem::directory_iterator files(folder / "größe");
    EXPECT_EQ(std::distance(begin(files), end(files)), 3);

    WriteFile(folder / "other.mtl", "mine");
    const ProgramResult kept = Run({Example("c_tex_rgb_png"), "-o", "other.obj", "--no-clobber"});
    EXPECT_EQ(kept.exitCode, 1);
    EXPECT_THAT(kept.err, HasSubstr("'other.mtl': it exists already"));
    EXPECT_EQ(ReadFile(folder / "other.mtl"), "mine");
    EXPECT_THAT(folder.Names(), testing::UnorderedElementsAre("größe", "other.mtl"));

    const ProgramResult alone = Run({Example("c_tex_rgb_png"), "-o", "-", "--format", "obj", "--quiet"});
    EXPECT_THAT(alone.out, HasSubstr("\nf "));
    EXPECT_THAT(alone.out, testing::Not(HasSubstr("mtllib")));
}

TEST_F(Convert, TakesAModelOutOfAPdfByteForByte)
{
    const std::string model = ReadFile(Example("b_groups"));
    PdfBuilder builder;
    builder.AddAnnotation(builder.AddPage(), "scene", builder.Model(model));
    builder.AddAnnotation(builder.AddPage(), "text", builder.Model("no PRC"));
    builder.Write(folder / "in.pdf");
    ASSERT_EQ(Run({"in.pdf", "--stream", "1", "-o", "out.prc"}).exitCode, 0);
    EXPECT_EQ(ReadFile(folder / "out.prc"), model);
    EXPECT_EQ(Run({"in.pdf", "--stream", "1", "-o", "-", "--format", "PRC"}).out, model);
    EXPECT_EQ(GltfOf({"in.pdf", "--stream", "1"})["nodes"].size(), 7U);
    EXPECT_THAT(Run({"in.pdf", "--stream", "2", "-o", "out.prc"}).err, HasSubstr("signature 'PRC'"));
    EXPECT_EQ(ReadFile(folder / "out.prc"), model);
}

TEST_F(Convert, RefusesWhatItCannotDo)
{
    const std::string input = Example("b_groups");
    EXPECT_EQ(Run({input, "-o", "out.fbx"}).exitCode, 2);
    EXPECT_EQ(Run({input, "-o", "out"}).exitCode, 2);
    EXPECT_EQ(Run({input, "-o", "out.glb", "--stream", "1"}).exitCode, 1);
    const ProgramResult strict = Run({input, "-o", "out.stl", "--strict", "--quiet"});
    EXPECT_EQ(strict.exitCode, 1);
    EXPECT_THAT(strict.err, HasSubstr("cannot convert"));
    WriteFile(folder / "cut.prc", ReadFile(input).substr(0, 100));
    EXPECT_EQ(Run({"cut.prc", "-o", "out.glb"}).exitCode, 1);
    EXPECT_THAT(folder.Names(), ElementsAre("cut.prc"));
}

} // namespace
} // namespace Orvel::Test
