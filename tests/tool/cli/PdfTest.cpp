#include "tests/tool/cli/FileContent.h"
#include "tests/tool/cli/ProgramRun.h"
#include "tests/tool/pdf/PdfBuilder.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>
#include <qpdf/QPDFPageDocumentHelper.hh>

#include <cstdlib>
#include <filesystem>

namespace Orvel::Test
{

namespace
{

using nlohmann::json;
using testing::HasSubstr;
using testing::MatchesRegex;

/// A wall of 2 x 3, facing the front, with cameras whose names are those of other views.
constexpr const char* WallDae = R"(<?xml version="1.0"?>
<COLLADA xmlns="http://www.collada.org/2005/11/COLLADASchema" version="1.4.1">
<asset><unit meter="0.001" name="mm"/><up_axis>Z_UP</up_axis></asset>
<library_cameras><camera id="c"><optics><technique_common><perspective><yfov>40</yfov><aspect_ratio>1</aspect_ratio>
<znear>1</znear><zfar>100</zfar></perspective></technique_common></optics></camera></library_cameras>
<library_geometries><geometry id="g"><mesh><source id="p"><float_array id="a" count="12">0 0 0 2 0 0 2 0 3 0 0 3
</float_array><technique_common><accessor source="#a" count="4" stride="3"><param name="X" type="float"/>
<param name="Y" type="float"/><param name="Z" type="float"/></accessor></technique_common></source>
<vertices id="v"><input semantic="POSITION" source="#p"/></vertices><triangles count="2">
<input semantic="VERTEX" source="#v" offset="0"/><p>0 1 2 0 2 3</p></triangles></mesh></geometry></library_geometries>
<library_visual_scenes><visual_scene id="s"><node name="wall"><instance_geometry url="#g"/></node>
<node name="Top"><instance_camera url="#c"/></node></visual_scene></library_visual_scenes>
<scene><instance_visual_scene url="#s"/></scene></COLLADA>)";

class PdfExport : public testing::Test
{
protected:
    PdfExport() { WriteFile(folder / "wall.dae", WallDae); }

    ProgramResult Run(std::vector<std::string> arguments)
    {
        arguments.insert(arguments.begin(), "export");
        return RunProgram(arguments, folder);
    }

    /// Exports over an existing file and expects one line on stderr, exit code 1, and nothing changed.
    std::string ErrorOf(const std::vector<std::string>& arguments)
    {
        WriteFile(folder / "out.pdf", "old");
        const auto before = folder.Names();
        std::vector<std::string> all{"-o", "out.pdf"};
        all.insert(all.end(), arguments.begin(), arguments.end());
        const ProgramResult result = Run(all);
        EXPECT_EQ(result.exitCode, 1) << testing::PrintToString(arguments);
        EXPECT_THAT(result.err, MatchesRegex("orvelprc: error: [^\n]+\n"));
        EXPECT_EQ(ReadFile(folder / "out.pdf"), "old");
        EXPECT_EQ(folder.Names(), before);
        return result.err;
    }

    TemporaryFolder folder;
};

TEST_F(PdfExport, ShowsTheSceneThatAPrcFileHolds)
{
    const ProgramResult prc = Run({"wall.dae", "-o", "wall.prc", "-q"});
    ASSERT_EQ(prc.exitCode, 0) << prc.err;
    const ProgramResult made = Run(
        {"wall.dae", "-o", "wall.pdf", "--json", "--background", "#00f", "--page-size", "100x100", "--view", "Front"});
    ASSERT_EQ(made.exitCode, 0) << made.err;
    EXPECT_EQ(made.err, "");
    const json summary = json::parse(made.out);
    EXPECT_EQ(summary["outputFormat"], "pdf");
    EXPECT_EQ(summary["views"], (json{"Iso", "Top", "Front", "Top (2)", "Right"}));
    EXPECT_EQ(std::system(("qpdf --check " + (folder / "wall.pdf") + " >/dev/null").c_str()), 0);

    const std::string file = ReadFile(folder / "wall.pdf");
    const std::string model = ReadFile(folder / "wall.prc");
    EXPECT_NE(file.find("stream\n" + model + "\nendstream"), std::string::npos);
    ASSERT_EQ(Run({"wall.dae", "-o", "-", "--format", "pdf", "--background", "#00f", "--page-size", "100x100", "--view",
                   "Front", "--title", "wall"})
                  .out,
              file)
        << "equal input, equal bytes";

    QPDF pdf;
    pdf.processFile((folder / "wall.pdf").c_str());
    QPDFObjectHandle annotation =
        QPDFPageDocumentHelper(pdf).getAllPages().at(0).getAnnotations("/3D").at(0).getObjectHandle();
    EXPECT_EQ(annotation.getKey("/Contents").getUTF8Value(),
              "Interactive 3D model: wall. Views: Iso, Top, Front, Top (2), Right");
    QPDFObjectHandle front = annotation.getKey("/3DV");
    EXPECT_EQ(front.getKey("/XN").getUTF8Value(), "Front");
    // The shape is 2 wide and 3 deep: the eye stands before its middle.
    EXPECT_THAT(front.getKey("/C2W").unparse(), MatchesRegex("\\[ -1 0 0 0 0 1 0 1 0 1 -[0-9.]+ 1.5 \\]"));
    // The camera looks down from the wall's lower edge; what it turns around is as far away as the wall is high.
    EXPECT_EQ(annotation.getKey("/3DD").getDict().getKey("/VA").getArrayItem(1).getKey("/CO").getNumericValue(), 3.0);

    // The wall fills the middle of the picture, and the blue behind it the rest of the frame.
    ASSERT_EQ(std::system(("pdftoppm -r 36 -singlefile " + (folder / "wall.pdf") + " " + (folder / "page")).c_str()),
              0);
    const std::string page = ReadFile(folder / "page.ppm");
    const auto pixel = [&page](std::size_t x, std::size_t y) {
        constexpr std::size_t side = 142;
        return page.substr(page.size() - 3 * side * side + 3 * (y * side + x), 3);
    };
    // Scaling the picture down costs a step of the colour here and there.
    const auto isBlue = [](const std::string& colour) {
        return colour[0] == 0 && colour[1] == 0 && static_cast<unsigned char>(colour[2]) > 250;
    };
    EXPECT_TRUE(isBlue(pixel(25, 70)));
    EXPECT_FALSE(isBlue(pixel(71, 70)));
    EXPECT_EQ(pixel(10, 70), "\xFF\xFF\xFF") << "margin";
}

TEST_F(PdfExport, KnowsACameraByTheNameThatAMeshHasToo)
{
    std::string scene = WallDae;
    WriteFile(folder / "wall.dae", scene.replace(scene.find("\"Top\""), 5, "\"wall\""));
    EXPECT_EQ(json::parse(Run({"wall.dae", "-o", "a.pdf", "--json", "--views", "wall"}).out)["views"], json{"wall"});
}

TEST_F(PdfExport, TakesModelsThatArePrcAlready)
{
    const std::string model = (std::filesystem::path(ORVEL_TEST_DATA) / "prc" / "b_groups.prc").string();
    const ProgramResult fromPrc = Run({model, "-o", "a.pdf", "-q", "--views", "top,iso", "--title", "Größe 日本"});
    ASSERT_EQ(fromPrc.exitCode, 0) << fromPrc.err;
    const ProgramResult fromPdf = Run({"a.pdf", "-o", "b.pdf", "--views", "top,iso", "--title", "Größe 日本"});
    ASSERT_EQ(fromPdf.exitCode, 0);
    EXPECT_THAT(fromPdf.err, HasSubstr("the page does not show 'Größe 日本'"));
    EXPECT_EQ(ReadFile(folder / "b.pdf"), ReadFile(folder / "a.pdf"));
    ASSERT_EQ(RunProgram({"convert", "b.pdf", "-o", "b.prc", "-q"}, folder).exitCode, 0);
    EXPECT_EQ(ReadFile(folder / "b.prc"), ReadFile(model));
    QPDF pdf;
    pdf.processFile((folder / "b.pdf").c_str());
    EXPECT_EQ(pdf.getTrailer().getKey("/Info").getKey("/Title").getUTF8Value(), "Größe 日本");

    EXPECT_THAT(ErrorOf({model, "--scale", "2"}), HasSubstr("--scale is for scenes"));
    EXPECT_THAT(ErrorOf({model, "--format", "prc"}), HasSubstr("it holds PRC already"));
    EXPECT_THAT(ErrorOf({"b.pdf", "--stream", "2"}), HasSubstr("no stream 2"));
    EXPECT_THAT(ErrorOf({model, "--title", "日本", "--strict", "-q"}), HasSubstr("日本"));
}

TEST_F(PdfExport, RefusesWhatGivesNoPage)
{
    PdfBuilder builder;
    builder.AddPage();
    builder.Write(folder / "sheet.pdf");
    const std::string sheet = ReadFile(folder / "sheet.pdf");
    EXPECT_THAT(ErrorOf({"wall.dae", "--template", "sheet.pdf", "--page", "2"}),
                HasSubstr("template 'sheet.pdf': it has no page 2"));
    EXPECT_THAT(ErrorOf({"wall.dae", "--template", "sheet.pdf", "--field", "f"}), HasSubstr("form field"));
    EXPECT_THAT(ErrorOf({"wall.dae", "--template", "none.pdf"}), HasSubstr("'none.pdf'"));
    EXPECT_THAT(ErrorOf({"wall.dae", "--template", "wall.dae"}), HasSubstr("it is no PDF"));
    EXPECT_THAT(ErrorOf({"wall.dae", "--template", "out.pdf"}), HasSubstr("it is the input file"));
    EXPECT_THAT(ErrorOf({"wall.dae", "--margin", "200"}), HasSubstr("no room"));
    EXPECT_THAT(ErrorOf({"wall.dae", "--view", "inside"}), HasSubstr("there is no view 'inside'"));
    EXPECT_EQ(ReadFile(folder / "sheet.pdf"), sheet);
}

} // namespace

} // namespace Orvel::Test
