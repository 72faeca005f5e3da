#include "tool/cli/CommandLine.h"
#include "tool/cli/Errors.h"

#include <gmock/gmock.h>

#include <initializer_list>
#include <vector>

namespace Orvel::Cli
{

namespace
{

using testing::HasSubstr;
using testing::Not;

Command Parse(std::vector<const char*> arguments)
{
    arguments.insert(arguments.begin(), "orvelprc");
    return ParseCommandLine(static_cast<int>(arguments.size()), arguments.data());
}

ExportOptions ParseExport(std::vector<const char*> arguments)
{
    arguments.insert(arguments.begin(), "export");
    return std::get<ExportOptions>(Parse(arguments));
}

TEST(CommandLine, ReadsEveryOptionOfExport)
{
    const ExportOptions options = ParseExport({"in.glb",   "-o",
                                               "out.prc",  "--format",
                                               "PRC",      "--scale",
                                               "25.4",     "--up",
                                               "keep",     "--crease-angle",
                                               "12.5",     "--texture-dir",
                                               "/tmp",     "--texture-dir",
                                               "/",        "--max-texture",
                                               "640",      "--quiet",
                                               "--strict", "--no-clobber",
                                               "--json",   "--time-limit",
                                               "1.5",      "--memory-limit",
                                               "3GB"});
    EXPECT_EQ(options.scene, "in.glb");
    EXPECT_EQ(options.output, "out.prc");
    EXPECT_EQ(options.load.scale, 25.4);
    EXPECT_EQ(options.load.up, Import::Up::Keep);
    EXPECT_EQ(options.load.creaseAngleInDegrees, 12.5);
    EXPECT_THAT(options.load.textureFolders, testing::ElementsAre("/tmp", "/"));
    EXPECT_EQ(options.maximumTextureSize, 640);
    EXPECT_TRUE(options.quiet && options.strict && options.json);
    EXPECT_EQ(options.existing, ExistingFile::Keep);
    EXPECT_EQ(options.limits.time, std::chrono::milliseconds(1500));
    EXPECT_EQ(options.limits.memoryInBytes, std::uint64_t{3} << 30);
}

TEST(CommandLine, ReadsOptionsOfPdf)
{
    const ExportOptions options = ParseExport({"in.glb",
                                               "-o",
                                               "out.PDF",
                                               "--page-size",
                                               "200x100",
                                               "--margin",
                                               "25.4",
                                               "--orientation",
                                               "Portrait",
                                               "--title",
                                               "two\nlines",
                                               "--caption",
                                               "",
                                               "--date",
                                               "2024-05-06",
                                               "--views",
                                               "top, Camera 1",
                                               "--view",
                                               "iso",
                                               "--background",
                                               "#f80",
                                               "--activate",
                                               "page-open",
                                               "--lighting",
                                               "HEADLAMP",
                                               "--render-mode",
                                               "solidoutline",
                                               "--script",
                                               "s.json"});
    ASSERT_TRUE(options.pdf);
    const SheetOptions& sheet = options.pdf->sheet;
    EXPECT_NEAR(sheet.width, 283.4646, 1e-4);
    EXPECT_NEAR(sheet.height, 566.9291, 1e-4);
    EXPECT_NEAR(sheet.margin, 72.0, 1e-9);
    EXPECT_EQ(sheet.title, "two lines");
    EXPECT_EQ(sheet.caption, "");
    EXPECT_EQ(sheet.date, "2024-05-06T00:00:00Z");
    EXPECT_THAT(options.pdf->views, testing::ElementsAre("top", "Camera 1"));
    EXPECT_THAT(options.pdf->background, testing::ElementsAre(255, 136, 0));
    EXPECT_EQ(options.pdf->activation, Pdf::Activation::PageOpen);
    EXPECT_EQ(options.pdf->lighting + options.pdf->renderMode, "HeadlampSolidOutline");

    const ExportOptions placed = ParseExport(
        {"in.glb", "-o", "out", "--format", "pdf", "--template", "t.pdf", "--page", "3", "--rect", "1, 2,3.5,4"});
    ASSERT_TRUE(placed.pdf && placed.pdf->place && placed.pdf->place->rectangle);
    EXPECT_EQ(placed.pdf->place->page, 3U);
    EXPECT_EQ(placed.pdf->place->rectangle->width, 3.5);
    EXPECT_EQ(ParseExport({"in.glb", "-o", "out.pdf", "--format", "prc"}).pdf.has_value(), false);
}

TEST(CommandLine, LeavesWhatIsNotGivenToTheScene)
{
    const ExportOptions options = ParseExport({"in.glb", "-o", "-"});
    EXPECT_EQ(options.output, "-");
    EXPECT_EQ(options.load.scale, std::nullopt);
    EXPECT_EQ(options.load.up, Import::Up::Default);
    EXPECT_EQ(options.load.creaseAngleInDegrees, 35.0);
    EXPECT_EQ(options.maximumTextureSize, 1024);
    EXPECT_EQ(options.existing, ExistingFile::Replace);
    EXPECT_EQ(options.limits.time, std::nullopt);
    EXPECT_EQ(options.limits.memoryInBytes, std::nullopt);
    EXPECT_FALSE(options.quiet || options.strict || options.json);
}

TEST(CommandLine, TakesFileNamesAsTheyAre)
{
    for (const char* const name : {"[a,b]", "a=b.glb1", "'quoted'", "two words", "tab\there", "größe/日本", "a\\b"}) {
        const ExportOptions options = ParseExport({"--texture-dir", "/tmp", name, "--output", name});
        EXPECT_EQ(options.scene, name);
        EXPECT_EQ(options.output, name);
        EXPECT_EQ(options.load.textureFolders.size(), 1U) << name;
    }
    EXPECT_EQ(ParseExport({"-o", "out", "--", "-dash.glb"}).scene, "-dash.glb");
    EXPECT_EQ(ParseExport({"in", "--output=-x.prc"}).output, "-x.prc");
}

TEST(CommandLine, ReadsSizes)
{
    const auto size = [](const char* text) {
        return ParseExport({"in", "-o", "out", "--memory-limit", text}).limits.memoryInBytes;
    };
    EXPECT_EQ(size("0"), 0U);
    EXPECT_EQ(size("4096"), 4096U);
    EXPECT_EQ(size("500m"), std::uint64_t{500} << 20);
    EXPECT_EQ(size("1.5GiB"), std::uint64_t{3} << 29);
    EXPECT_EQ(size("2 TB"), std::uint64_t{2} << 40);
}

TEST(CommandLine, RefusesWrongUsage)
{
    const std::initializer_list<std::vector<const char*>> wrong{
        {},
        {"frobnicate"},
        {"--frobnicate"},
        {"export"},
        {"export", "in.glb"},
        {"export", "-o", "out.prc"},
        {"export", "in.glb", "more.glb", "-o", "out.prc"},
        {"export", "in.glb", "-o"},
        {"export", "in.glb", "-o", ""},
        {"export", "in.glb", "-o", "a.prc", "-o", "b.prc"},
        {"export", "in.glb", "-o", "out.GLB"},
        {"export", "in.glb", "-o", "out", "--script", "s.json"},
        {"export", "in.glb", "-o", "out", "--title", "t"},
        {"export", "in.glb", "-o", "out.pdf", "--page", "2"},
        {"export", "in.glb", "-o", "out.pdf", "--rect", "0,0,9,9"},
        {"export", "in.glb", "-o", "out.pdf", "--template", "t.pdf", "--rect", "0,0,9"},
        {"export", "in.glb", "-o", "out.pdf", "--template", "t.pdf", "--title", "t"},
        {"export", "in.glb", "-o", "out.pdf", "--page-size", "a4x"},
        {"export", "in.glb", "-o", "out.pdf", "--page-size", "10x10"},
        {"export", "in.glb", "-o", "out.pdf", "--date", "yesterday"},
        {"export", "in.glb", "-o", "out.pdf", "--views", "iso,,top"},
        {"export", "in.glb", "-o", "out.pdf", "--background", "transparent"},
        {"export", "in.glb", "-o", "out", "--format", "obj"},
        {"export", "in.glb", "-o", "out", "--scale", "0"},
        {"export", "in.glb", "-o", "out", "--scale", "-1"},
        {"export", "in.glb", "-o", "out", "--scale", "nan"},
        {"export", "in.glb", "-o", "out", "--scale", "inf"},
        {"export", "in.glb", "-o", "out", "--scale", "2x"},
        {"export", "in.glb", "-o", "out", "--up", "x"},
        {"export", "in.glb", "-o", "out", "--up", "1"},
        {"export", "in.glb", "-o", "out", "--crease-angle", "181"},
        {"export", "in.glb", "-o", "out", "--crease-angle", "-1"},
        {"export", "in.glb", "-o", "out", "--max-texture", "0"},
        {"export", "in.glb", "-o", "out", "--max-texture", "99999999999"},
        {"export", "in.glb", "-o", "out", "--max-texture", "1.5"},
        {"export", "in.glb", "-o", "out", "--texture-dir", "/no/such/folder"},
        {"export", "in.glb", "-o", "out", "--time-limit", "-1"},
        {"export", "in.glb", "-o", "out", "--time-limit", "soon"},
        {"export", "in.glb", "-o", "out", "--memory-limit", "much"},
        {"export", "in.glb", "-o", "out", "--memory-limit", "-1"},
        {"export", "in.glb", "-o", "out", "--memory-limit", "8Q"},
        {"export", "in.glb", "-o", "out", "--memory-limit", "99999999999999999999"},
        {"export", "in.glb", "-o", "out", "--quiet=perhaps"},
        {"formats", "extra"},
        {"export", "in.glb", "-o", "out", "formats"},
    };
    for (const auto& arguments : wrong)
        EXPECT_THROW(Parse(arguments), UsageError) << testing::PrintToString(arguments);
}

TEST(CommandLine, NamesTheHelpThatWouldHelp)
{
    const auto messageOf = [](const std::vector<const char*>& arguments) -> std::string {
        try {
            Parse(arguments);
        } catch (const UsageError& error) {
            return error.what();
        }
        return "";
    };
    EXPECT_THAT(messageOf({"export", "in.glb"}), HasSubstr("'orvelprc export --help'"));
    EXPECT_EQ(messageOf({"frobnicate"}), "there is no command 'frobnicate' (see 'orvelprc --help')");
    EXPECT_EQ(messageOf({}), "a command is missing (see 'orvelprc --help')");
    EXPECT_THAT(messageOf({"export", "in", "-o", "out", "--up", "x"}), HasSubstr("'x' is none of: y, z, keep"));
    EXPECT_THAT(messageOf({"export", "a", "-o", "b.glb"}), HasSubstr("--format prc"));
}

TEST(CommandLine, WritesPrcUnderAnyNameWhenTold)
{
    EXPECT_EQ(ParseExport({"in.glb", "-o", "out.glb", "--format", "prc"}).output, "out.glb");
    EXPECT_EQ(ParseExport({"in.glb", "-o", "part.v1.2"}).output, "part.v1.2");
}

TEST(CommandLine, HelpShowsExamplesForTheProgramAndEachCommand)
{
    const auto help = [](const std::vector<const char*>& arguments) {
        return std::get<TextRequest>(Parse(arguments)).text;
    };
    EXPECT_THAT(help({"--help"}), HasSubstr("orvelprc export chair.glb -o chair.prc"));
    EXPECT_THAT(help({"export", "--help"}), HasSubstr("--texture-dir textures"));
    EXPECT_THAT(help({"export", "-h"}), HasSubstr("--memory-limit"));
    EXPECT_THAT(help({"formats", "--help"}), HasSubstr("orvelprc formats --json"));
    EXPECT_THAT(help({"formats", "--help"}), Not(HasSubstr("--texture-dir")));
    EXPECT_THAT(help({"--version"}),
                testing::MatchesRegex("orvelprc [0-9]+\\.[0-9]+\\.[0-9]+( \\(revision [0-9a-f]{12}\\+?\\))?\n"));
}

} // namespace

} // namespace Orvel::Cli
