#include "tests/prcfile/ExampleFile.h"
#include "tests/tool/cli/FileContent.h"
#include "tests/tool/cli/ProgramRun.h"
#include "tests/tool/pdf/PdfBuilder.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <filesystem>

namespace Orvel::Test
{
namespace
{

using nlohmann::json;
using testing::HasSubstr;
using testing::Not;

std::string Example(const std::string& name)
{
    return prc::Test::ExamplePath(name).string();
}

TEST(Inspect, TellsTheTreeAndItsInstancesAsJson)
{
    const TemporaryFolder folder;
    const ProgramResult result = RunProgram({"inspect", Example("b_groups"), "--json"}, folder);
    ASSERT_EQ(result.exitCode, 0) << result.err;
    const json report = json::parse(result.out);
    EXPECT_EQ(report["complete"], true);
    EXPECT_EQ(report["nodes"], 6);
    EXPECT_EQ(report["trianglesStored"], 12);
    EXPECT_EQ(report["trianglesPlaced"], 48);
    EXPECT_EQ(report["meshes"][0]["instances"], 4);
    EXPECT_EQ(report["meshes"][0]["box"]["maximum"], (json{10, 10, 10}));
    const json& scaled = report["tree"][3];
    EXPECT_EQ(scaled["name"], "scaled");
    EXPECT_EQ(scaled["parent"], 2);
    EXPECT_EQ(scaled["transform"], (json{2, 0, 0, 0, 0, 0.5, 0, 0, 0, 0, 3, 0, 0, 0, 0, 1}));
    EXPECT_EQ(scaled["items"][0]["material"], 1);
}

TEST(Inspect, NarrowsTheReport)
{
    const TemporaryFolder folder;
    const ProgramResult result = RunProgram({"inspect", Example("c_tex_rgb_png"), "--materials"}, folder);
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.out, HasSubstr("0 png, 4 x 4 pixels"));
    EXPECT_THAT(result.out, Not(HasSubstr("Sections")));
    EXPECT_THAT(result.out, Not(HasSubstr("Tree")));
}

TEST(Inspect, RefusesWhatIsNoPrcFile)
{
    const TemporaryFolder folder;
    const ProgramResult result = RunProgram({"inspect", ORVEL_TEST_DATA "/frequent-doubles.tsv"}, folder);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(result.err, HasSubstr("expected the signature 'PRC'"));
}

TEST(Inspect, ReadsTheModelsOfAPdf)
{
    const TemporaryFolder folder;
    PdfBuilder builder;
    const QPDFObjectHandle page = builder.AddPage();
    builder.AddAnnotation(page, "old", builder.Model("U3D", "/U3D"));
    builder.AddAnnotation(page, "groups", builder.Model(ReadFile(Example("b_groups"))));
    builder.AddAnnotation(page, "texture", builder.Model(ReadFile(Example("c_tex_rgb_png"))));
    builder.Write(folder / "models.pdf", "secret");

    const ProgramResult first = RunProgram({"inspect", "models.pdf", "--json", "--password", "secret"}, folder);
    ASSERT_EQ(first.exitCode, 0) << first.err;
    EXPECT_THAT(first.err, HasSubstr("3 3D streams (1 is U3D on page 1, 2 is PRC on page 1, 3 is PRC on page 1)"));
    const json report = json::parse(first.out);
    EXPECT_EQ(report["nodes"], 6);
    EXPECT_EQ(report["pdf"]["stream"], 2);
    EXPECT_EQ(report["pdf"]["streams"][0]["subtype"], "U3D");
    EXPECT_EQ(report["pdf"]["streams"][2]["name"], "texture");
    const ProgramResult third = RunProgram({"inspect", "models.pdf", "--stream", "3", "--password", "secret"}, folder);
    EXPECT_EQ(third.exitCode, 0);
    EXPECT_EQ(third.err, "");
    EXPECT_THAT(third.out, HasSubstr("0 png, 4 x 4 pixels"));

    const auto errorOf = [&](std::vector<std::string> options) {
        options.insert(options.begin(), {"inspect", "models.pdf"});
        const ProgramResult result = RunProgram(options, folder);
        EXPECT_EQ(result.exitCode, 1);
        return result.err;
    };
    EXPECT_THAT(errorOf({"--password", "secret", "--stream", "1"}), HasSubstr("stream 1 is U3D"));
    EXPECT_THAT(errorOf({"--password", "secret", "--stream", "4"}), HasSubstr("no stream 4, only 3"));
    EXPECT_THAT(errorOf({"--password", "secret", "--unpack-limit", "0.1k"}), HasSubstr("more than 102 bytes"));
    EXPECT_THAT(errorOf({}), HasSubstr("needs a --password"));
}

} // namespace
} // namespace Orvel::Test
