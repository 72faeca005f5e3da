#include "tests/prcfile/ExampleFile.h"
#include "tests/tool/cli/FileContent.h"
#include "tests/tool/cli/ProgramRun.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <string>

namespace Orvel::Test
{
namespace
{

using testing::HasSubstr;

/// Size and colour type, 2 for RGB and 6 for RGBA, as the first part of a PNG file states them.
std::string PngHeader(unsigned char width, unsigned char height, unsigned char colourType)
{
    const unsigned char header[] = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A,  '\n', 0, 0, 0,      13, 'I',
                                    'H',  'D', 'R', 0,   0,    0,    width, 0,    0, 0, height, 8,  colourType};
    return {std::begin(header), std::end(header)};
}

class Render : public testing::Test
{
protected:
    ProgramResult Run(std::vector<std::string> arguments)
    {
        arguments.insert(arguments.begin(), "render");
        return RunProgram(arguments, folder);
    }

    TemporaryFolder folder;
    std::string model = prc::Test::ExamplePath("b_groups").string();
};

TEST_F(Render, TakesThePictureThatWasAskedFor)
{
    const ProgramResult toFile =
        Run({model, "-o", "a.png", "--size", "80x60", "--view", "TOP", "--background", "#123"});
    ASSERT_EQ(toFile.exitCode, 0) << toFile.err;
    EXPECT_EQ(toFile.out + toFile.err, "");
    EXPECT_EQ(ReadFile(folder / "a.png").substr(0, 26), PngHeader(80, 60, 2));

    const ProgramResult toStdout = Run({model, "-o", "-", "--size", "80x60", "--background", "transparent"});
    ASSERT_EQ(toStdout.exitCode, 0) << toStdout.err;
    EXPECT_EQ(toStdout.out.substr(0, 26), PngHeader(80, 60, 6));
}

TEST_F(Render, ShowsASceneThroughItsCameras)
{
    folder.Write("scene.gltf", R"({"asset": {"version": "2.0"}, "scene": 0, "scenes": [{"nodes": [0]}],
        "nodes": [{"camera": 0, "name": "From afar"}],
        "cameras": [{"type": "perspective", "perspective": {"yfov": 0.7, "znear": 0.1}}]})");
    const ProgramResult taken = Run({"scene.gltf", "-o", "a.png", "--view", "From afar", "--size", "8x8", "-q"});
    EXPECT_EQ(taken.exitCode, 0) << taken.err;
    const ProgramResult unknown = Run({"scene.gltf", "-o", "b.png", "--view", "From near"});
    EXPECT_EQ(unknown.exitCode, 1);
    EXPECT_THAT(unknown.err, HasSubstr("there is no view 'From near'; there are iso, front, back, left, right, top, "
                                       "bottom, 'From afar'"));
    EXPECT_FALSE(std::filesystem::exists(folder / "b.png"));
}

TEST_F(Render, RefusesWrongUsage)
{
    const std::vector<std::vector<std::string>> wrong = {
        {"--size", "800"},          {"--size", "0x600"},      {"--size", "800x16385"}, {"--size", "8x6x"},
        {"--size", "-8x6"},         {"--samples", "0"},       {"--samples", "65"},     {"--samples", "1.5"},
        {"--background", "#12345"}, {"--background", "red#"}, {"--up", "x"},           {"--time-limit", "-1"}};
    for (std::vector<std::string> arguments : wrong) {
        const std::string what = arguments[0] + " " + arguments[1];
        arguments.insert(arguments.end(), {model, "-o", "a.png"});
        EXPECT_EQ(Run(arguments).exitCode, 2) << what;
    }
    EXPECT_THAT(Run({model, "-o", "a.JPG"}).err, HasSubstr("cannot write '.jpg' files, only PNG"));
    EXPECT_EQ(Run({model}).exitCode, 2);
    EXPECT_TRUE(std::filesystem::is_empty(folder.Path()));
}

} // namespace
} // namespace Orvel::Test
