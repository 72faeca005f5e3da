#include "tests/support/PRCPlacement.h"
#include "tests/tool/cli/FileContent.h"
#include "tests/tool/cli/ProgramRun.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <sys/resource.h>
#include <sys/stat.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <limits>

namespace Orvel::Test
{

namespace
{

using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::Not;
using testing::StartsWith;

/// Two quads in two materials: 4 triangles.
constexpr const char* QuadsObj = "mtllib quads.mtl\n"
                                 "v 0 0 0\nv 2 0 0\nv 2 3 0\nv 0 3 0\nv 0 0 5\nv 2 0 5\nv 2 3 5\nv 0 3 5\n"
                                 "o lower\nusemtl red\nf 1 2 3 4\no upper\nusemtl blue\nf 5 6 7 8\n";
constexpr const char* QuadsMtl = "newmtl red\nKd 1 0 0\nnewmtl blue\nKd 0 0 1\n";

/// One triangle at two nodes, in metres and y up as glTF has it.
json TwoTrianglesGltf()
{
    return json::parse(R"({
        "asset": {"version": "2.0"}, "scene": 0, "scenes": [{"nodes": [0, 1]}],
        "nodes": [{"name": "left", "mesh": 0}, {"name": "right", "mesh": 0, "translation": [7, 11, 13]}],
        "meshes": [{"name": "triangle", "primitives": [{"attributes": {"POSITION": 0}, "indices": 1}]}],
        "accessors": [
            {"bufferView": 0, "componentType": 5126, "count": 3, "type": "VEC3", "min": [0, 0, 0], "max": [2, 3, 5]},
            {"bufferView": 1, "componentType": 5123, "count": 3, "type": "SCALAR"}],
        "bufferViews": [{"buffer": 0, "byteLength": 36}, {"buffer": 0, "byteOffset": 36, "byteLength": 6}],
        "buffers": [{"uri": "triangle.bin", "byteLength": 42}]})");
}

std::string TriangleBin(float number = 5.0F, std::uint16_t lastIndex = 2)
{
    const float positions[9]{0.0F, 0.0F, 0.0F, 2.0F, 0.0F, 0.0F, 0.0F, 3.0F, number};
    const std::uint16_t indices[3]{0, 1, lastIndex};
    std::string bytes(sizeof positions + sizeof indices, '\0');
    std::copy_n(reinterpret_cast<const char*>(positions), sizeof positions, bytes.begin());
    std::copy_n(reinterpret_cast<const char*>(indices), sizeof indices, bytes.begin() + sizeof positions);
    return bytes;
}

/// Groups nested `depth` deep, without a mesh.
std::string ChainGltf(int depth)
{
    json nodes = json::array();
    for (int i = 0; i < depth; ++i)
        nodes.push_back({{"name", "n" + std::to_string(i)}, {"children", {i + 1}}});
    nodes.push_back({{"name", "end"}});
    return json{{"asset", {{"version", "2.0"}}}, {"scenes", {{{"nodes", {0}}}}}, {"scene", 0}, {"nodes", nodes}}.dump();
}

class Program : public testing::Test
{
protected:
    Program()
    {
        WriteFile(folder / "quads.obj", QuadsObj);
        WriteFile(folder / "quads.mtl", QuadsMtl);
        WriteFile(folder / "triangle.gltf", TwoTrianglesGltf().dump());
        WriteFile(folder / "triangle.bin", TriangleBin());
    }

    ProgramResult Run(const std::vector<std::string>& arguments) { return RunProgram(arguments, folder); }

    /// Exports over an existing file and expects one line on stderr, exit code 1, and nothing changed.
    std::string ErrorOf(const std::vector<std::string>& arguments)
    {
        WriteFile(folder / "out.prc", "old");
        const auto before = folder.Names();
        std::vector<std::string> all{"export", "-o", "out.prc"};
        all.insert(all.end(), arguments.begin(), arguments.end());
        const ProgramResult result = Run(all);
        EXPECT_EQ(result.exitCode, 1) << testing::PrintToString(arguments);
        EXPECT_THAT(result.err, MatchesRegex("orvelprc: error: [^\n]+\n"));
        EXPECT_EQ(result.out, "");
        EXPECT_EQ(ReadFile(folder / "out.prc"), "old");
        EXPECT_EQ(folder.Names(), before);
        return result.err;
    }

    TemporaryFolder folder;
};

TEST_F(Program, ExportsASceneAndTellsWhatIsInIt)
{
    const ProgramResult result = Run({"export", "triangle.gltf", "-o", "out.prc", "--json"});
    ASSERT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(result.err, "");
    const json summary = json::parse(result.out);
    EXPECT_EQ(summary["input"], "triangle.gltf");
    EXPECT_EQ(summary["output"], "out.prc");
    EXPECT_EQ(summary["inputFormat"], "glTF 2.0");
    EXPECT_EQ(summary["nodes"], 2);
    EXPECT_EQ(summary["objects"], 2);
    EXPECT_EQ(summary["triangles"], (json{{"stored", 1}, {"placed", 2}}));
    EXPECT_EQ(summary["topGroup"]["scale"], 1000.0);
    EXPECT_EQ(summary["topGroup"]["fromUp"], "y");
    EXPECT_EQ(summary["topGroup"]["toUp"], "z");
    EXPECT_EQ(summary["bytes"], std::filesystem::file_size(folder / "out.prc"));
    EXPECT_EQ(summary["warnings"], json::array());
    EXPECT_FALSE(summary.contains("timings"));

    const PRCContent content = DecodePRCFile(folder / "out.prc");
    const std::vector<PlacedMesh> meshes = PlacedMeshes(content);
    ASSERT_EQ(meshes.size(), 2U);
    EXPECT_EQ(content.tessellations.size(), 1U);
    EXPECT_EQ(meshes[1].place.path.back(), "right");
    const Matrix& world = meshes[1].place.world;
    EXPECT_THAT((std::vector<double>{world[3], world[7], world[11]}), ElementsAre(7000.0, -13000.0, 11000.0));
}

TEST_F(Program, TellsHowLongEachStageTook)
{
    const ProgramResult result = Run({"export", "triangle.gltf", "-o", "out.prc", "--json", "--timings"});
    const json summary = json::parse(result.out);
    std::vector<std::string> stages;
    double sum = 0.0;
    for (const json& timing : summary["timings"]) {
        stages.push_back(timing["stage"]);
        sum += timing["seconds"].get<double>();
    }
    EXPECT_THAT(stages, testing::ElementsAre("import", "convert", "encode", "compress", "write", "other"));
    EXPECT_NEAR(sum, summary["seconds"].get<double>(), 1e-6);
}

TEST_F(Program, KeepsUnitsAndAxesWhenTold)
{
    const ProgramResult result =
        Run({"export", "triangle.gltf", "-o", "out.prc", "--json", "--scale", "1", "--up", "keep"});
    ASSERT_EQ(result.exitCode, 0) << result.err;
    EXPECT_TRUE(json::parse(result.out)["topGroup"].is_null());
    const PRCContent content = DecodePRCFile(folder / "out.prc");
    const Matrix world = PlacedMeshes(content).at(1).place.world;
    EXPECT_THAT((std::vector<double>{world[3], world[7], world[11]}), ElementsAre(7.0, 11.0, 13.0));
}

TEST_F(Program, PrintsTheSummaryForPeopleUnlessQuiet)
{
    const ProgramResult loud = Run({"export", "quads.obj", "-o", "out.prc"});
    EXPECT_EQ(loud.exitCode, 0) << loud.err;
    EXPECT_THAT(loud.out, StartsWith("'quads.obj' (Wavefront OBJ) -> 'out.prc', "));
    EXPECT_THAT(loud.out, HasSubstr("\n  triangles  4 stored, 4 placed\n  materials  2\n"));
    const ProgramResult quiet = Run({"export", "quads.obj", "-o", "out.prc", "--quiet"});
    EXPECT_EQ(quiet.exitCode, 0);
    EXPECT_EQ(quiet.out + quiet.err, "");
}

TEST_F(Program, EqualInputGivesEqualBytesWhateverTheNames)
{
    ASSERT_EQ(Run({"export", "quads.obj", "-o", "one.prc"}).exitCode, 0);
    ASSERT_EQ(Run({"export", "quads.obj", "-o", "other name"}).exitCode, 0);
    EXPECT_GT(std::filesystem::file_size(folder / "one.prc"), 500U);
    EXPECT_EQ(ReadFile(folder / "one.prc"), ReadFile(folder / "other name"));
}

TEST_F(Program, FilesEndUnderTheNameThatWasAskedFor)
{
    std::filesystem::create_directories(folder / "größe/a\\b.c");
    std::filesystem::create_directory(folder / "\xff");
    const std::vector<std::string> names{
        "out",           "a.b.prc",   "two words.",       "日本語.prc",       "back\\slash",
        "größe/out.prc", "\xff/\xfe", "größe/a\\b.c/out", folder / "abs.prc", std::string(255, 'x')};
    for (const std::string& name : names) {
        const ProgramResult result = Run({"export", "quads.obj", "--quiet", "-o", name});
        EXPECT_EQ(result.exitCode, 0) << result.err;
        EXPECT_THAT(ReadFile(std::filesystem::path(folder.Path()) / name), StartsWith("PRC")) << name;
    }
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder.Path()))
        EXPECT_FALSE(entry.path().filename().string().starts_with(".orvelprc")) << entry.path();
}

TEST_F(Program, WritesToStdoutWithTheSummaryOnStderr)
{
    ASSERT_EQ(Run({"export", "quads.obj", "-o", "file.prc"}).exitCode, 0);
    for (const std::string name : {"-", "/dev/stdout"}) {
        const ProgramResult result = Run({"export", "quads.obj", "-o", name, "--json"});
        EXPECT_EQ(result.exitCode, 0) << result.err;
        EXPECT_EQ(result.out, ReadFile(folder / "file.prc"));
        EXPECT_EQ(json::parse(result.err)["bytes"], result.out.size());
    }
    EXPECT_EQ(Run({"export", "quads.obj", "-o", "/dev/null"}).exitCode, 0);
}

TEST_F(Program, FailsWhenStdoutIsFull)
{
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"export", "quads.obj", "-o", "-"}, {"formats"}, {"--help"}, {"--version"}})
    {
        const ProgramResult result = ProgramRun(arguments, folder, "/dev/full").Wait();
        EXPECT_EQ(result.exitCode, 1) << arguments[0];
        EXPECT_EQ(result.err, "orvelprc: error: cannot write to standard output: No space left on device\n");
    }
}

TEST_F(Program, FailsWhenFilesMayNotGrow)
{
    ASSERT_EQ(Run({"export", "quads.obj", "-o", "model.prc"}).exitCode, 0);
    const rlimit small{200, RLIM_INFINITY};
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
    EXPECT_THAT(ErrorOf({"quads.obj"}), HasSubstr("File too large"));
    EXPECT_THAT(ErrorOf({"quads.obj", "--format", "pdf"}), HasSubstr("File too large"));
    const auto names = folder.Names();
    for (const std::string format : {"glb", "obj", "stl", "ply"}) {
        const ProgramResult result = Run({"convert", "model.prc", "-o", "back." + format});
        EXPECT_EQ(result.exitCode, 1) << format;
        EXPECT_THAT(result.err, MatchesRegex("orvelprc: error: [^\n]*written[^\n]*\n"));
        EXPECT_EQ(folder.Names(), names);
    }
    const ProgramResult list = Run({"formats"});
    EXPECT_EQ(list.exitCode, 1);
    EXPECT_EQ(list.err, "orvelprc: error: cannot write to standard output: File too large\n");
}

TEST_F(Program, RefusesBadScenes)
{
    std::filesystem::create_directory(folder / "folder.glb");
    WriteFile(folder / "empty.glb", "");
    WriteFile(folder / "text.glb", "this is no scene at all");
    WriteFile(folder / "unknown.xyz123", "this is no scene at all");
    WriteFile(folder / "broken.gltf", R"({"asset": {"version": "2.0"}, "nodes": [)");
    WriteFile(folder / "cut.gltf", TwoTrianglesGltf().dump().substr(0, 300));
    WriteFile(folder / "index.obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 900\n");
    json scene = TwoTrianglesGltf();
    scene["buffers"][0]["uri"] = "missing.bin";
    WriteFile(folder / "nobuffer.gltf", scene.dump());
    scene["buffers"][0]["uri"] = "nan.bin";
    WriteFile(folder / "nan.gltf", scene.dump());
    WriteFile(folder / "nan.bin", TriangleBin(std::numeric_limits<float>::quiet_NaN()));
    scene["buffers"][0]["uri"] = "index.bin";
    WriteFile(folder / "index.gltf", scene.dump());
    WriteFile(folder / "index.bin", TriangleBin(5.0F, 3));
    scene["buffers"][0]["uri"] = "short.bin";
    WriteFile(folder / "short.gltf", scene.dump());
    WriteFile(folder / "short.bin", TriangleBin().substr(0, 30));
    WriteFile(folder / "deep.gltf", R"({"asset": )" + std::string(100000, '[') + std::string(100000, ']') + "}");
    WriteFile(folder / "chain.gltf", ChainGltf(100000));
    for (const std::string name :
         {"missing.glb", "folder.glb", "empty.glb", "text.glb", "unknown.xyz123", "broken.gltf", "cut.gltf",
          "index.obj", "nobuffer.gltf", "nan.gltf", "index.gltf", "short.gltf", "deep.gltf", "chain.gltf"})
        EXPECT_THAT(ErrorOf({name}), HasSubstr("'" + name + "': "));
}

TEST_F(Program, ExportsGroupsOfASceneWithoutMeshes)
{
    WriteFile(folder / "chain.gltf", ChainGltf(900));
    const ProgramResult result = Run({"export", "chain.gltf", "-o", "out.prc", "--json"});
    ASSERT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(json::parse(result.out)["objects"], 0);
    const PRCContent content = DecodePRCFile(folder / "out.prc");
    const auto places = WalkTree(content);
    const auto deepest = std::max_element(places.begin(), places.end(), [](const auto& left, const auto& right) {
        return left.path.size() < right.path.size();
    });
    ASSERT_NE(deepest, places.end());
    EXPECT_GE(deepest->path.size(), 901U);
    EXPECT_EQ(deepest->path.back(), "end");
}

/// A PNG that promises a picture of 60000 x 60000 pixels and holds none.
std::string TextureBomb()
{
    using namespace std::string_literals;
    return "\x89PNG\r\n\x1a\n\0\0\0\x0dIHDR\0\0\xea\x60\0\0\xea\x60\x08\x06\0\0\0"s + "\0\0\0\0\0\0\0\0IEND"s +
           "\xae\x42\x60\x82"s;
}

TEST_F(Program, WarnsOfTexturesThatCannotBeUsedAndFailsWhenStrict)
{
    WriteFile(folder / "quads.mtl", "newmtl red\nmap_Kd bomb.png\nnewmtl blue\nmap_Kd no\x1bsuch.png\n");
    WriteFile(folder / "bomb.png", TextureBomb());
    const ProgramResult result = Run({"export", "quads.obj", "-o", "out.prc", "--json"});
    ASSERT_EQ(result.exitCode, 0) << result.err;
    EXPECT_THAT(result.err, MatchesRegex("(orvelprc: warning: [^\n]+\n)+"));
    EXPECT_THAT(result.err, HasSubstr("bomb.png"));
    EXPECT_THAT(result.err, HasSubstr("such.png"));
    EXPECT_THAT(result.err, Not(HasSubstr("\x1b")));
    EXPECT_EQ(json::parse(result.out)["warnings"].size(), 2U);

    WriteFile(folder / "strict.prc", "old");
    const ProgramResult strict = Run({"export", "quads.obj", "-o", "strict.prc", "--strict", "--quiet"});
    EXPECT_EQ(strict.exitCode, 1);
    EXPECT_THAT(strict.err, MatchesRegex("orvelprc: error: [^\n]*2 warnings[^\n]*\n"));
    EXPECT_EQ(ReadFile(folder / "strict.prc"), "old");
}

TEST_F(Program, RefusesTargetsThatCannotBeWritten)
{
    EXPECT_EQ(ErrorOf({"quads.obj", "--no-clobber"}), "orvelprc: error: cannot write 'out.prc': it exists already\n");
    for (const auto& [target, reason] : {std::pair{"no/out.prc", "No such file"},
                                         {".", "it is a folder"},
                                         {"quads.obj", "--format"},
                                         {"/dev/full", "No space left"}})
    {
        const ProgramResult result = Run({"export", "quads.obj", "-o", target});
        EXPECT_EQ(result.exitCode, std::string(target) == "quads.obj" ? 2 : 1) << target;
        EXPECT_THAT(result.err, MatchesRegex("orvelprc: error: [^\n]+\n"));
        EXPECT_THAT(result.err, HasSubstr(reason));
    }
    const ProgramResult same = Run({"export", "quads.obj", "-o", "./quads.obj", "--format", "prc"});
    EXPECT_EQ(same.exitCode, 1);
    EXPECT_THAT(same.err, HasSubstr("it is the input file"));
    EXPECT_EQ(ReadFile(folder / "quads.obj"), QuadsObj);
}

TEST_F(Program, WrongUsageIsExitCode2)
{
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{},
          {"frobnicate"},
          {"export", "quads.obj"},
          {"formats", "--xml"},
          {"export", "quads.obj", "-o", "out.prc", "--max-texture", "none\nat all"}})
    {
        const ProgramResult result = Run(arguments);
        EXPECT_EQ(result.exitCode, 2) << testing::PrintToString(arguments);
        EXPECT_THAT(result.err, MatchesRegex("orvelprc: error: [^\n]+\n"));
        EXPECT_EQ(result.out, "");
    }
}

TEST_F(Program, ListsFormats)
{
    const json formats = json::parse(Run({"formats", "--json"}).out);
    EXPECT_EQ(formats["read"][0]["name"], "glTF 2.0");
    EXPECT_EQ(formats["read"][0]["extensions"], (json{"glb", "gltf"}));
    EXPECT_GT(formats["read"].size(), 20U);
    EXPECT_EQ(formats["write"][0]["extensions"], json{"prc"});
    EXPECT_EQ(formats["write"][1]["extensions"], json{"pdf"});
    EXPECT_EQ(formats["convert"][0]["extensions"], (json{"glb", "gltf"}));
    EXPECT_THAT(Run({"formats"}).out, HasSubstr(".fbx"));
}

/// A scene whose reader waits for ever: its material library is a pipe that nobody writes to.
class StuckProgram : public Program
{
protected:
    StuckProgram()
    {
        std::filesystem::remove(folder / "quads.mtl");
        EXPECT_EQ(::mkfifo((folder / "quads.mtl").c_str(), 0600), 0);
        WriteFile(folder / "out.prc", "old");
        names = folder.Names();
    }

    void ExpectNothingChanged()
    {
        EXPECT_EQ(ReadFile(folder / "out.prc"), "old");
        EXPECT_EQ(folder.Names(), names);
    }

    std::vector<std::string> names;
};

TEST_F(StuckProgram, GivesUpAfterTheTimeLimit)
{
    EXPECT_THAT(ErrorOf({"quads.obj", "--time-limit", "0.4"}),
                HasSubstr("'quads.obj': took longer than 0.4 s while reading the scene"));
    ExpectNothingChanged();
}

TEST_F(StuckProgram, TellsThatTheReaderCrashed)
{
    ProgramRun run({"export", "quads.obj", "-o", "out.prc"}, folder);
    ::kill(run.WaitForWorker(), SIGKILL);
    const ProgramResult result = run.Wait();
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.err, MatchesRegex("orvelprc: error: [^\n]*crashed[^\n]*\n"));
    ExpectNothingChanged();
}

TEST_F(StuckProgram, EndsBySignalsWithoutLeavingAnything)
{
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        ProgramRun run({"export", "quads.obj", "-o", "out.prc"}, folder);
        const pid_t worker = run.WaitForWorker();
        ::kill(run.Process(), signal);
        const ProgramResult result = run.Wait();
        EXPECT_EQ(result.signal, signal);
        EXPECT_EQ(result.out + result.err, "");
        EXPECT_NE(::kill(worker, 0), 0) << "the worker outlived the program";
        ExpectNothingChanged();
    }
}

} // namespace

} // namespace Orvel::Test
