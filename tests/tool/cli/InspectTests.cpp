#include "tests/tool/cli/ProgramRun.h"

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

std::string Example(const char* name)
{
    return (std::filesystem::path(ORVEL_TEST_DATA) / "prc" / name).string();
}

TEST(Inspect, TellsTheTreeAndItsInstancesAsJson)
{
    const TemporaryFolder folder;
    const ProgramResult result = RunProgram({"inspect", Example("b_groups.prc"), "--json"}, folder);
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
    const ProgramResult result = RunProgram({"inspect", Example("c_tex_rgb_png.prc"), "--materials"}, folder);
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.out, HasSubstr("0 png, 4 x 4 pixels"));
    EXPECT_THAT(result.out, Not(HasSubstr("Sections")));
    EXPECT_THAT(result.out, Not(HasSubstr("Tree")));
}

TEST(Inspect, RefusesWhatIsNoPrcFile)
{
    const TemporaryFolder folder;
    const ProgramResult result =
        RunProgram({"inspect", (std::filesystem::path(ORVEL_TEST_DATA) / "frequent-doubles.tsv").string()}, folder);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(result.err, HasSubstr("expected the signature 'PRC'"));
}

} // namespace

} // namespace Orvel::Test
