#include "tool/pdf/PdfSheet.h"

#include "platform/prcfile/PngEncoder.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/tool/pdf/PdfBuilder.h"
#include "tool/pdf/ArtworkObjects.h"
#include "tool/pdf/DocumentInfo.h"
#include "tool/pdf/PageDesign.h"
#include "tool/pdf/PdfModels.h"
#include "tool/pdf/TemplatePlace.h"

#include <gmock/gmock.h>
#include <qpdf/Buffer.hh>
#include <qpdf/QPDFAcroFormDocumentHelper.hh>
#include <qpdf/QPDFPageDocumentHelper.hh>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sstream>

namespace Orvel::Pdf
{

namespace
{

using Orvel::Test::PdfBuilder;
using Orvel::Test::TemporaryFolder;
using Rgb = std::array<int, 3>;
using testing::ElementsAre;
using testing::HasSubstr;

constexpr Rgb Red{255, 0, 0};
constexpr Rgb Green{0, 255, 0};
constexpr Rgb Blue{0, 0, 255};
constexpr Rgb Black{0, 0, 0};

const std::string Model = "PRC, not really, but bytes that have to stay as they are";

Artwork ArtworkOf(const std::string& bytes)
{
    Artwork artwork;
    artwork.prc = {reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()};
    Views::View front;
    front.name = "Front";
    front.eye = {0.0, -10.0, 0.0};
    front.fieldOfViewInDegrees = 25.0;
    Views::View plan;
    plan.name = "Plán";
    plan.eye = {1.0, 2.0, 9.0};
    plan.target = {1.0, 2.0, 5.0};
    plan.up = {1.0, 0.0, 3.0};
    plan.projection = Views::Projection::Parallel;
    plan.size = 8.0;
    plan.span = Views::Span::Height;
    artwork.views = {front, plan};
    artwork.defaultView = 1;
    artwork.background = {255, 0, 51};
    artwork.unitInMillimetres = 25.4;
    artwork.description = "a pump";
    return artwork;
}

/// Red and green above blue and black.
Poster FourColours()
{
    constexpr std::uint32_t Side = 32;
    prc::Picture upsideDown;
    upsideDown.format = prc::PRCpictureFormat::Rgb;
    upsideDown.width = upsideDown.height = Side;
    for (std::uint32_t i = 0; i < Side * Side; ++i) {
        const bool isRight = i % Side >= Side / 2;
        const bool isUpper = i / Side >= Side / 2;
        const Rgb& colour = isUpper ? (isRight ? Green : Red) : (isRight ? Black : Blue);
        upsideDown.pixels.insert(upsideDown.pixels.end(), colour.begin(), colour.end());
    }
    return PosterFromPng(prc::encodePng(upsideDown));
}

std::string ContentOf(const std::string& file)
{
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

/// A page as Poppler shows it, a pixel for each point.
class SeenPage
{
public:
    SeenPage(const std::string& file, int page)
    {
        const std::string number = std::to_string(page);
        EXPECT_EQ(std::system(("pdftoppm -r 72 -cropbox -aa no -aaVector no -singlefile -f " + number + " -l " +
                               number + " " + file + " " + file)
                                  .c_str()),
                  0);
        std::istringstream stream(ContentOf(file + ".ppm"));
        std::string mark;
        int largest = 0;
        stream >> mark >> width >> height >> largest;
        stream.get();
        pixels.assign(std::istreambuf_iterator<char>(stream), {});
    }

    /// @param x, y points from the lower left corner.
    [[nodiscard]] Rgb At(int x, int y) const
    {
        const auto start = static_cast<std::size_t>(3 * ((height - 1 - y) * width + x));
        Rgb colour{};
        for (std::size_t i = 0; i < 3; ++i)
            colour[i] = static_cast<unsigned char>(pixels.at(start + i));
        return colour;
    }

    int width = 0;
    int height = 0;

private:
    std::string pixels;
};

class Sheet : public testing::Test
{
protected:
    void Open(const std::string& name)
    {
        EXPECT_EQ(std::system(("qpdf --check " + (folder / name) + " >/dev/null 2>&1").c_str()), 0) << name;
        pdf.processFile((folder / name).c_str());
        pages = QPDFPageDocumentHelper(pdf).getAllPages();
    }

    /// The 3D annotation of a page, which is its last but for buttons.
    QPDFObjectHandle Annotation(std::size_t page)
    {
        for (QPDFAnnotationObjectHelper& annotation : pages.at(page).getAnnotations("/3D"))
            return annotation.getObjectHandle();
        return QPDFObjectHandle::newNull();
    }

    std::string PlaceErrorOf(const TemplatePlace& place)
    {
        try {
            const PdfSheet sheet(place, false);
        } catch (const PdfError& error) {
            return error.what();
        }
        return "";
    }

    TemporaryFolder folder;
    QPDF pdf;
    std::vector<QPDFPageObjectHelper> pages;
};

TEST_F(Sheet, HoldsTheModelWithItsViewsOnANewPage)
{
    PageDesign design;
    design.title = "Größe";
    DocumentInfo info;
    info.title = "Größe <日本>";
    info.date = "2024-05-06T07:08:09+02:00";
    PdfSheet sheet(design, info);
    Artwork artwork = ArtworkOf(Model);
    artwork.script = "scene.update();";
    sheet.Place(artwork, FourColours());
    sheet.Write(folder / "a.pdf");

    EXPECT_THAT(ContentOf(folder / "a.pdf"), HasSubstr("stream\n" + Model + "\nendstream"));
    Open("a.pdf");
    EXPECT_EQ(pdf.getExtensionLevel(), 3);
    EXPECT_EQ(pdf.getTrailer().getKey("/Info").getKey("/Title").getUTF8Value(), info.title);
    EXPECT_EQ(pdf.getTrailer().getKey("/Info").getKey("/CreationDate").getUTF8Value(), "D:20240506070809+02'00'");
    EXPECT_THAT(ContentOf(folder / "a.pdf"), HasSubstr("Größe &lt;日本&gt;</rdf:li>"));
    QPDFObjectHandle annotation = Annotation(0);
    EXPECT_EQ(annotation.getKey("/3DA").unparse(), "<< /A /XA /AIS /L /D /PI /DIS /U /NP false /TB true >>");
    EXPECT_EQ(annotation.getKey("/3DU").unparse(), "<< /TSm 1 /TSn 1 /TU (in) >>");
    EXPECT_EQ(annotation.getKey("/F").getIntValue(), 4);
    EXPECT_TRUE(annotation.getKey("/P").isSameObjectAs(pages[0].getObjectHandle()));
    QPDFObjectHandle stream = annotation.getKey("/3DD").getDict();
    EXPECT_EQ(stream.getKey("/DV").getIntValue(), 1);
    const std::shared_ptr<Buffer> script = stream.getKey("/OnInstantiate").getStreamData();
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(script->getBuffer()), script->getSize()), artwork.script);
    QPDFObjectHandle front = stream.getKey("/VA").getArrayItem(0);
    EXPECT_EQ(front.getKey("/C2W").unparse(), "[ -1 0 0 0 0 1 0 1 0 0 -10 0 ]");
    EXPECT_EQ(front.getKey("/CO").unparse(), "10");
    EXPECT_EQ(front.getKey("/P").unparse(), "<< /FOV 25 /PS /Min /Subtype /P >>");
    EXPECT_EQ(front.getKey("/BG").getKey("/C").unparse(), "[ 1 0 0.2 ]");
    QPDFObjectHandle plan = stream.getKey("/VA").getArrayItem(1);
    EXPECT_TRUE(annotation.getKey("/3DV").isSameObjectAs(plan));
    EXPECT_EQ(plan.getKey("/XN").getUTF8Value(), "Plán");
    // Looking down with x up, y is to the left.
    EXPECT_EQ(plan.getKey("/C2W").unparse(), "[ 0 1 0 1 0 0 0 0 -1 1 2 9 ]");
    EXPECT_EQ(plan.getKey("/P").unparse(), "<< /OB /H /OS 0.125 /Subtype /O >>");
}

TEST_F(Sheet, LeavesOutATextThatItsFontsCannotShow)
{
    PageDesign design;
    design.title = "Größe 日本";
    design.caption = "words that fill more than one line of this page, which is rather small";
    design.width = design.height = 200.0;
    const PageLayout layout = LayOut(design);
    EXPECT_THAT(layout.unshown, ElementsAre(design.title));
    EXPECT_NEAR(layout.model.width, 200.0 - 2 * design.margin - 6.0, 1e-9);
    EXPECT_GT(layout.model.y, design.margin + 2 * 8.0) << "two lines below the model";
    design.margin = 80.0;
    EXPECT_THROW(static_cast<void>(LayOut(design)), PdfError);
}

/// Pages that are turned in every way, with a box that is inherited, begins apart from the origin and is cut further.
TEST_F(Sheet, PutsThePictureUprightWhereThePageIsSeen)
{
    for (const int rotation : {0, 90, 180, 270, -90}) {
        PdfBuilder builder;
        QPDFObjectHandle page = builder.AddPage();
        page.removeKey("/MediaBox");
        page.getKey("/Parent").replaceKey("/MediaBox", QPDFObjectHandle::parse("[-100 50 300 400]"));
        page.replaceKey("/CropBox", QPDFObjectHandle::parse("[180 360 20 80]"));
        page.getKey("/Parent").replaceKey("/Rotate", QPDFObjectHandle::newInteger(rotation));
        builder.Write(folder / "template.pdf");
        const bool sideways = rotation % 180 != 0;
        TemplatePlace place{folder / "template.pdf", 1, Rectangle{20, 30, 80, 40}, {}};
        PdfSheet sheet(place, false);
        sheet.Place(ArtworkOf(Model), FourColours());
        sheet.Write(folder / "a.pdf");

        const SeenPage seen(folder / "a.pdf", 1);
        EXPECT_EQ(seen.width, sideways ? 280 : 160);
        EXPECT_EQ(seen.height, sideways ? 160 : 280);
        const std::array<Rgb, 4> corners{seen.At(23, 67), seen.At(97, 67), seen.At(23, 33), seen.At(97, 33)};
        EXPECT_THAT(corners, ElementsAre(Red, Green, Blue, Black)) << rotation;
        EXPECT_EQ(seen.At(17, 67), (Rgb{255, 255, 255})) << rotation;
        EXPECT_EQ(seen.At(97, 27), (Rgb{255, 255, 255})) << rotation;
        place.rectangle = Rectangle{20, 30, sideways ? 261.0 : 141.0, 40};
        EXPECT_THAT(PlaceErrorOf(place), HasSubstr("not within the page"));
    }
}

/// Two pages that share their annotations, and a form with a field below a field.
class Template : public Sheet
{
protected:
    Template()
    {
        PdfBuilder builder;
        QPDFObjectHandle first = builder.AddPage();
        QPDFObjectHandle second = builder.AddPage();
        const QPDFObjectHandle text = builder.pdf.makeIndirectObject(QPDFObjectHandle::parse(
            "<< /Type /Annot /Subtype /Widget /FT /Tx /T (3D order) /V (12) /Rect [5 5 50 20] >>"));
        QPDFObjectHandle parent = builder.pdf.makeIndirectObject(QPDFObjectHandle::parse("<< /T (model) >>"));
        QPDFObjectHandle picture = builder.pdf.makeIndirectObject(QPDFObjectHandle::parse(
            "<< /Type /Annot /Subtype /Widget /FT /Btn /T (picture) /Rect [190 280 40 130] >>"));
        picture.replaceKey("/Parent", parent);
        parent.replaceKey("/Kids", QPDFObjectHandle::newArray({picture}));
        const QPDFObjectHandle shared = builder.pdf.makeIndirectObject(QPDFObjectHandle::parse(
            "[<< /Type /Annot /Subtype /Link /Rect [1 2 3 4] >> << /Type /Annot /Subtype /Text /NM (model) >>]"));
        first.replaceKey("/Annots", shared);
        second.replaceKey("/Annots", shared);
        QPDFObjectHandle third = builder.AddPage();
        third.replaceKey("/Annots", QPDFObjectHandle::newArray({picture, text}));
        third.replaceKey("/Contents", builder.Stream("0 0 1 rg 0 0 20 20 re f"));
        QPDFObjectHandle form = QPDFObjectHandle::newDictionary();
        form.replaceKey("/Fields", QPDFObjectHandle::newArray({parent, text}));
        form.replaceKey("/CO", QPDFObjectHandle::newArray({text, picture}));
        builder.pdf.getRoot().replaceKey("/AcroForm", form);
        builder.pdf.getRoot().replaceKey("/Outlines", QPDFObjectHandle::parse("<< /Type /Outlines /Count 0 >>"));
        builder.Write(place.file);
    }

    TemplatePlace place{folder / "template.pdf", std::nullopt, std::nullopt, {}};
};

TEST_F(Template, GivesAFieldsPlaceToTheModel)
{
    place.field = "model.picture";
    PdfSheet sheet(place, true);
    EXPECT_EQ(sheet.ModelWidth(), 150.0);
    EXPECT_EQ(sheet.ModelHeight(), 150.0 - ButtonRowHeight);
    Artwork artwork = ArtworkOf(Model);
    artwork.plays = true;
    sheet.Place(artwork, FourColours());
    sheet.Write(folder / "a.pdf");
    EXPECT_THAT(sheet.Warnings(), ElementsAre(HasSubstr("no room for 2")));

    Open("a.pdf");
    EXPECT_EQ(Annotation(2).getKey("/Rect").unparse(), "[ 40 158 190 280 ]");
    std::vector<std::string> names;
    for (QPDFFormFieldObjectHelper field : QPDFAcroFormDocumentHelper(pdf).getFormFields())
        names.push_back(field.getFullyQualifiedName());
    EXPECT_THAT(names, testing::UnorderedElementsAre("3D order", "3D-2 view 1", "3D-2 view 2"));
    EXPECT_EQ(pdf.getRoot().getKey("/AcroForm").getKey("/CO").getArrayNItems(), 1);
    QPDFObjectHandle button = pages[2].getAnnotations("/Widget").back().getObjectHandle();
    EXPECT_EQ(button.getKey("/A").getKey("/V").getIntValue(), 1);
    EXPECT_TRUE(button.getKey("/A").getKey("/TA").isSameObjectAs(Annotation(2)));
    const SeenPage seen(folder / "a.pdf", 3);
    EXPECT_EQ(seen.At(10, 3), Blue) << "what the page showed before";
    EXPECT_EQ(seen.At(43, 277), Red);
}

TEST_F(Template, StaysAsItIsOtherwise)
{
    place.page = 2;
    PdfSheet sheet(place, false);
    EXPECT_THAT(sheet.Warnings(), testing::IsEmpty());
    sheet.Place(ArtworkOf(Model), FourColours());
    sheet.Write(folder / "a.pdf");
    Open("a.pdf");
    ASSERT_EQ(pages.size(), 3U);
    EXPECT_EQ(pages[0].getAnnotations().size(), 2U) << "does not get what was added to the shared array";
    EXPECT_EQ(pages[1].getAnnotations().size(), 3U);
    EXPECT_EQ(pages[2].getAnnotations().size(), 2U);
    EXPECT_EQ(Annotation(1).getKey("/Rect").unparse(), "[ 0 0 200 300 ]");
    EXPECT_EQ(Annotation(1).getKey("/NM").getUTF8Value(), "model 2");
    EXPECT_TRUE(pdf.getRoot().hasKey("/Outlines"));
    EXPECT_FALSE(pdf.getRoot().hasKey("/Metadata"));
    EXPECT_EQ(QPDFAcroFormDocumentHelper(pdf).getFormFields().size(), 2U);
}

TEST_F(Template, IsRefusedWhenItHasNoPlace)
{
    place.page = 4;
    EXPECT_EQ(PlaceErrorOf(place), "it has no page 4, only 3");
    place.page = 1;
    place.field = "model.picture";
    EXPECT_EQ(PlaceErrorOf(place), "the form field 'model.picture' stands on page 3, not on page 1");
    place.field = "model";
    EXPECT_EQ(PlaceErrorOf(place), "no page shows a form field of the name 'model'");
    place.field = "";
    place.rectangle = Rectangle{-1, 0, 50, 50};
    EXPECT_THAT(PlaceErrorOf(place), HasSubstr("200 300 points"));

    const std::string bytes = ContentOf(place.file);
    for (const std::size_t length : {bytes.size() / 3, bytes.size() - 40}) {
        folder.Write("cut.pdf", bytes.substr(0, length));
        EXPECT_NE(PlaceErrorOf({folder / "cut.pdf", 1, {}, {}}), "") << length;
    }
    folder.Write("text.pdf", "nothing of the kind");
    EXPECT_EQ(PlaceErrorOf({folder / "text.pdf", 1, {}, {}}), "it is no PDF file");
    PdfBuilder encrypted;
    encrypted.AddPage();
    encrypted.Write(folder / "encrypted.pdf", "secret");
    EXPECT_EQ(PlaceErrorOf({folder / "encrypted.pdf", 1, {}, {}}), "it is encrypted");
}

TEST_F(Template, WarnsOfWhatAChangeSpoils)
{
    PdfBuilder builder;
    QPDFObjectHandle page = builder.AddPage();
    const QPDFObjectHandle field = builder.pdf.makeIndirectObject(QPDFObjectHandle::parse(
        "<< /Type /Annot /Subtype /Widget /FT /Sig /T (s) /V << /Type /Sig >> /Rect [0 0 0 0] >>"));
    page.getKey("/Annots").appendItem(field);
    builder.pdf.getRoot().replaceKey("/AcroForm", QPDFObjectHandle::parse("<< /Fields [] >>"));
    builder.pdf.getRoot().getKey("/AcroForm").getKey("/Fields").appendItem(field);
    builder.pdf.getRoot().replaceKey("/Metadata", builder.Stream("<pdfaid:part>2</pdfaid:part>"));
    builder.Write(folder / "signed.pdf");
    const PdfSheet sheet(TemplatePlace{folder / "signed.pdf", 1, {}, {}}, false);
    EXPECT_THAT(sheet.Warnings(), ElementsAre(HasSubstr("signed"), HasSubstr("PDF/A")));
}

} // namespace

} // namespace Orvel::Pdf
