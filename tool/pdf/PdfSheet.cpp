#include "tool/pdf/PdfSheet.h"

#include "tool/pdf/ArtworkObjects.h"
#include "tool/pdf/DocumentInfo.h"
#include "tool/pdf/PageAnnotations.h"
#include "tool/pdf/PageDesign.h"
#include "tool/pdf/PageFrame.h"
#include "tool/pdf/PdfModels.h"
#include "tool/pdf/PdfTemplate.h"
#include "tool/pdf/ViewButtons.h"

#include <qpdf/Pipeline.hh>
#include <qpdf/QPDFExc.hh>
#include <qpdf/QPDFPageDocumentHelper.hh>
#include <qpdf/QPDFWriter.hh>

#include <cerrno>
#include <cstdio>
#include <memory>
#include <optional>
#include <system_error>
#include <utility>

namespace Orvel::Pdf
{

class PdfSheet::Impl
{
public:
    QPDF pdf; // first: it is the owner of the objects
    QPDFObjectHandle page;
    Rectangle model;   ///< as seen on the page, like the following
    Rectangle buttons; ///< empty: none
    std::vector<std::string> warnings;
};

namespace
{

[[noreturn]] void ThrowSystemError()
{
    throw std::system_error(errno, std::generic_category());
}

/// Where the writer puts the file. Its own output to files does not notice when the disk is full.
class FilePipeline final : public Pipeline
{
public:
    explicit FilePipeline(const std::filesystem::path& path)
        : Pipeline("file", nullptr)
        , file(std::fopen(path.c_str(), "wb"), std::fclose)
    {
        if (!file)
            ThrowSystemError();
    }

    void write(const unsigned char* data, std::size_t size) override
    {
        if (std::fwrite(data, 1, size, file.get()) != size)
            ThrowSystemError();
    }

    void finish() override
    {
        if (std::fflush(file.get()) != 0)
            ThrowSystemError();
    }

private:
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> file;
};

QPDFObjectHandle MakeFont(const char* name)
{
    QPDFObjectHandle font = QPDFObjectHandle::parse("<< /Type /Font /Subtype /Type1 /Encoding /WinAnsiEncoding >>");
    font.replaceKey("/BaseFont", Name(name));
    return font;
}

QPDFObjectHandle AddPage(QPDF& pdf, const PageDesign& design, const std::string& content)
{
    QPDFObjectHandle page =
        pdf.makeIndirectObject(QPDFObjectHandle::parse("<< /Type /Page /Resources << /Font << >> >> >>"));
    page.replaceKey("/MediaBox", Numbers({0, 0, design.width, design.height}));
    page.replaceKey("/Contents", QPDFObjectHandle::newStream(&pdf, content));
    QPDFObjectHandle fonts = page.getKey("/Resources").getKey("/Font");
    fonts.replaceKey("/F0", pdf.makeIndirectObject(MakeFont("Helvetica")));
    fonts.replaceKey("/F1", pdf.makeIndirectObject(MakeFont("Helvetica-Bold")));
    QPDFPageDocumentHelper(pdf).addPage(QPDFPageObjectHelper(page), false);
    return page;
}

/// A form that shows the picture in its whole size.
QPDFObjectHandle MakeAppearance(QPDF& pdf, const PageFrame& frame, const Rectangle& model, const Poster& poster)
{
    const std::string content = "q " + NumberText({model.width, 0, 0, model.height, 0, 0}) + " cm /Im0 Do Q\n";
    QPDFObjectHandle form = QPDFObjectHandle::newStream(&pdf, content);
    form.replaceDict(QPDFObjectHandle::parse("<< /Type /XObject /Subtype /Form /Resources << /XObject << >> >> >>"));
    form.getDict().replaceKey("/BBox", Numbers({0, 0, model.width, model.height}));
    form.getDict().replaceKey("/Matrix", frame.UprightMatrix());
    form.getDict().getKey("/Resources").getKey("/XObject").replaceKey("/Im0", MakeImage(pdf, poster));
    return form;
}

} // namespace

PdfSheet::PdfSheet(const PageDesign& design, const DocumentInfo& info)
    : impl(std::make_unique<Impl>())
{
    const PageLayout layout = LayOut(design);
    impl->pdf.emptyPDF();
    impl->page = AddPage(impl->pdf, design, layout.content);
    impl->model = layout.model;
    impl->buttons = layout.buttons;
    AddDocumentInfo(impl->pdf, info);
    for (const std::string& text : layout.unshown)
        impl->warnings.push_back("the page does not show '" + text +
                                 "': the fonts that every PDF reader has lack some of its characters");
}

PdfSheet::PdfSheet(const TemplatePlace& place, bool hasButtons)
    : impl(std::make_unique<Impl>())
{
    QPDF& pdf = impl->pdf;
    try {
        OpenTemplate(pdf, place.file);
        impl->warnings = ReasonsAgainstChange(pdf);
        const FoundPlace found = TakePlace(pdf, place);
        impl->page = found.page;
        impl->model = found.rectangle;
        RefuseDamage(pdf);
    } catch (const QPDFExc& error) {
        throw PdfError("it is damaged: " + error.getMessageDetail());
    }
    if (!hasButtons)
        return;
    impl->buttons = impl->model;
    impl->buttons.height = ButtonRowHeight;
    impl->model.y += ButtonRowHeight;
    impl->model.height -= ButtonRowHeight;
    if (impl->model.height < ButtonRowHeight)
        throw PdfError("the place is too small for a model with buttons below it");
}

PdfSheet::~PdfSheet() = default;

double PdfSheet::ModelWidth() const
{
    return impl->model.width;
}

double PdfSheet::ModelHeight() const
{
    return impl->model.height;
}

void PdfSheet::Place(const Artwork& artwork, const Poster& poster)
{
    QPDF& pdf = impl->pdf;
    const PageFrame frame{QPDFPageObjectHelper(impl->page)};
    const QPDFObjectHandle stream = MakeArtworkStream(pdf, artwork);
    QPDFObjectHandle annotation =
        pdf.makeIndirectObject(MakeAnnotation(artwork, stream, UnusedAnnotationName(impl->page, "model")));
    annotation.replaceKey("/Rect", CornersOf(frame.ToContent(impl->model)));
    QPDFObjectHandle appearance = QPDFObjectHandle::newDictionary();
    appearance.replaceKey("/N", MakeAppearance(pdf, frame, impl->model, poster));
    annotation.replaceKey("/AP", appearance);
    AddAnnotation(impl->page, annotation);
    if (!(impl->buttons.height > 0.0))
        return;
    const std::size_t without = AddViewButtons(pdf, frame, {impl->page, annotation, impl->buttons}, artwork);
    if (without > 0)
        impl->warnings.push_back("the row of buttons has no room for " + std::to_string(without) + " of them");
}

void PdfSheet::Write(const std::filesystem::path& file)
{
    try {
        FilePipeline output(file);
        QPDFWriter writer(impl->pdf);
        writer.setOutputPipeline(&output);
        writer.setMinimumPDFVersion("1.7", 3);
        writer.setDeterministicID(true);
        writer.setNewlineBeforeEndstream(true);
        // What a template holds stays packed as it is.
        writer.setDecodeLevel(qpdf_dl_none);
        writer.write();
    } catch (const QPDFExc& error) {
        throw PdfError("it is damaged: " + error.getMessageDetail());
    }
    RefuseDamage(impl->pdf);
}

const std::vector<std::string>& PdfSheet::Warnings() const
{
    return impl->warnings;
}

} // namespace Orvel::Pdf
