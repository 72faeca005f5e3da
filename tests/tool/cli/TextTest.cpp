#include "tool/cli/Text.h"
#include "tool/cli/ExportSummary.h"

#include <gmock/gmock.h>

namespace Orvel::Cli
{
namespace
{

using testing::HasSubstr;
using testing::Not;

TEST(Text, MakesForeignTextsSafeToShow)
{
    EXPECT_EQ(OneLine("größe 日本 👪.png"), "größe 日本 👪.png");
    EXPECT_EQ(OneLine("\n one\r\ntwo\tthree\xe2\x80\xa8"
                      "four \n"),
              "one  two three four");
    EXPECT_EQ(OneLine("\x1b[31mred\x07\x7f\xc2\x9b"), "\uFFFD[31mred\uFFFD\uFFFD\uFFFD");
    EXPECT_EQ(OneLine("gpj\u202Eexe\u2066"), "gpj\uFFFDexe\uFFFD");
    EXPECT_EQ(OneLine("bad \xff\xfe bytes"), "bad \uFFFD\uFFFD bytes");
    EXPECT_EQ(OneLine(std::string("a\0b", 3)), "a\uFFFDb");
    EXPECT_EQ(Quoted(""), "''");
}

TEST(Text, CutsLongTexts)
{
    const std::string line = OneLine(std::string(std::size_t{50} << 20, 'x'));
    EXPECT_LT(line.size(), 5000U);
    EXPECT_THAT(line, testing::EndsWith("xxx..."));
    EXPECT_EQ(OneLine(std::string(4000, 'x')).size(), 4000U);
}

TEST(Text, WritesNumbersWithoutTrailingNoise)
{
    EXPECT_EQ(ShortestText(35.0), "35");
    EXPECT_EQ(ShortestText(0.1), "0.1");
    EXPECT_EQ(ShortestText(1e300), "1e+300");
    EXPECT_EQ(FixedText(1.005, 2), "1.00");
    EXPECT_EQ(FixedText(1e300, 1).size(), 303U);
}

ExportSummary ExampleSummary()
{
    ExportSummary summary;
    summary.input = "in\x1b.glb";
    summary.output = "out.prc";
    summary.inputFormat = "glTF 2.0";
    summary.outputFormat = "prc";
    summary.nodes = 23;
    summary.objects = 17;
    summary.meshes = 11;
    summary.triangles = {5000000007, 9000000013};
    summary.materials = 5;
    summary.textures = {{"wood \"x\".png", 512, 256, 100, 50}};
    summary.topGroup = {"Units and axes", 1000.0, "y", "z"};
    summary.bytes = 1234567;
    summary.seconds = 1.236;
    summary.warnings = {"texture 'a' was not found"};
    return summary;
}

TEST(ExportSummary, KeepsEverythingOnItsWayThroughJson)
{
    const ExportSummary summary = ExampleSummary();
    const auto json = nlohmann::json::parse(nlohmann::json(summary).dump());
    EXPECT_EQ(json["triangles"]["placed"], 9000000013);
    EXPECT_EQ(json["textures"][0]["height"], 256);
    EXPECT_EQ(json["textures"][0]["storedHeight"], 50);
    EXPECT_EQ(json["topGroup"]["fromUp"], "y");
    EXPECT_EQ(JsonOf(json.get<ExportSummary>()), JsonOf(summary));

    ExportSummary plain = summary;
    plain.topGroup.reset();
    EXPECT_TRUE(nlohmann::json(plain)["topGroup"].is_null());
    EXPECT_FALSE(nlohmann::json(plain).get<ExportSummary>().topGroup.has_value());
}

TEST(ExportSummary, ReadsWellAsText)
{
    ExportSummary summary = ExampleSummary();
    EXPECT_EQ(TextOf(summary), "'in\uFFFD.glb' (glTF 2.0) -> 'out.prc', 1.2 MB in 1.24 s\n"
                               "  nodes      23\n"
                               "  objects    17 of 11 meshes\n"
                               "  triangles  5000000007 stored, 9000000013 placed\n"
                               "  materials  5\n"
                               "  textures   1\n"
                               "             'wood \"x\".png', 512 x 256, stored as 100 x 50\n"
                               "  top group  'Units and axes': lengths times 1000, y up becomes z up\n");
    summary.textures.assign(100, {"t", 1, 2, 1, 2});
    summary.topGroup.reset();
    EXPECT_THAT(TextOf(summary), HasSubstr("'t', 1 x 2\n"));
    EXPECT_THAT(TextOf(summary), HasSubstr("and 88 more\n"));
    EXPECT_THAT(TextOf(summary), Not(HasSubstr("top group")));
}

} // namespace
} // namespace Orvel::Cli
