#include "tool/pdf/PdfTemplate.h"

#include "tool/pdf/PageAnnotations.h"
#include "tool/pdf/PageFrame.h"
#include "tool/pdf/PdfModels.h"
#include "tool/pdf/PdfValues.h"

#include <qpdf/Buffer.hh>
#include <qpdf/QPDFAcroFormDocumentHelper.hh>
#include <qpdf/QPDFExc.hh>
#include <qpdf/QPDFPageDocumentHelper.hh>

#include <algorithm>
#include <fstream>
#include <memory>
#include <new>
#include <string_view>
#include <utility>

namespace Orvel::Pdf
{

namespace
{

constexpr double Tolerance = 0.5;     ///< of a rectangle's edges, in points
constexpr double SmallestSide = 10.0; ///< of a model, in points

/// A widget and the page that shows it.
struct PlacedWidget
{
    QPDFObjectHandle widget;
    std::size_t page; ///< counted from 0
};

std::string PageList(const std::vector<PlacedWidget>& widgets)
{
    std::string list;
    for (const PlacedWidget& placed : widgets)
        list += (list.empty() ? "" : ", ") + std::to_string(placed.page + 1);
    return list;
}

/// The widgets of a field in the order of the pages.
std::vector<PlacedWidget> WidgetsNamed(QPDF& pdf, const std::string& name,
                                       const std::vector<QPDFPageObjectHelper>& pages)
{
    QPDFAcroFormDocumentHelper form(pdf);
    std::vector<PlacedWidget> widgets;
    for (std::size_t page = 0; page < pages.size(); ++page) {
        for (QPDFAnnotationObjectHelper& annotation : form.getWidgetAnnotationsForPage(pages[page])) {
            QPDFFormFieldObjectHelper field = form.getFieldForAnnotation(annotation);
            if (field.getObjectHandle().isDictionary() && field.getFullyQualifiedName() == name)
                widgets.push_back({annotation.getObjectHandle(), page});
        }
    }
    return widgets;
}

PlacedWidget ChosenWidget(QPDF& pdf, const TemplatePlace& place, const std::vector<QPDFPageObjectHelper>& pages)
{
    std::vector<PlacedWidget> widgets = WidgetsNamed(pdf, place.field, pages);
    if (widgets.empty())
        throw PdfError("no page shows a form field of the name '" + place.field + "'");
    if (place.page) {
        const std::string found = PageList(widgets);
        std::erase_if(widgets, [&](const PlacedWidget& placed) { return placed.page + 1 != *place.page; });
        if (widgets.empty())
            throw PdfError("the form field '" + place.field + "' stands on page " + found + ", not on page " +
                           std::to_string(*place.page));
    }
    if (widgets.size() > 1)
        throw PdfError("the form field '" + place.field + "' stands at several places (page " + PageList(widgets) +
                       "): name the page, or the place itself by a rectangle without the field");
    return widgets.front();
}

/// @return whether the array is empty now.
bool RemoveFrom(QPDFObjectHandle array, const QPDFObjectHandle& object)
{
    for (int i = array.isArray() ? array.getArrayNItems() : 0; i-- > 0;) {
        if (array.getArrayItem(i).isSameObjectAs(object))
            array.eraseItem(i);
    }
    return array.isArray() && array.getArrayNItems() == 0;
}

/// Takes a widget out of the form, and with it every field above that has nothing left.
void RemoveWidget(QPDF& pdf, const QPDFObjectHandle& page, const QPDFObjectHandle& widget)
{
    RemoveAnnotations(page, [&widget](const QPDFObjectHandle& other) { return widget.isSameObjectAs(other); });
    QPDFObjectHandle form = pdf.getRoot().getKey("/AcroForm");
    QPDFObjectHandle removed = widget;
    constexpr int MostLevels = 100; // a damaged file may lead in circles
    for (int level = 0; level < MostLevels; ++level) {
        RemoveFrom(form.getKey("/CO"), removed);
        QPDFObjectHandle parent = removed.getKey("/Parent");
        if (!parent.isDictionary()) {
            RemoveFrom(form.getKey("/Fields"), removed);
            return;
        }
        if (!RemoveFrom(parent.getKey("/Kids"), removed))
            return;
        removed = parent;
    }
}

void CheckRectangle(const Rectangle& rectangle, const PageFrame& frame)
{
    if (!(rectangle.width >= SmallestSide && rectangle.height >= SmallestSide))
        throw PdfError("the place is too small for a model: " + NumberText({rectangle.width, rectangle.height}) +
                       " points");
    const bool fits = rectangle.x >= -Tolerance && rectangle.y >= -Tolerance &&
                      rectangle.x + rectangle.width <= frame.Width() + Tolerance &&
                      rectangle.y + rectangle.height <= frame.Height() + Tolerance;
    if (!fits)
        throw PdfError("the rectangle is not within the page, which measures " +
                       NumberText({frame.Width(), frame.Height()}) + " points");
}

/// Readers accept other bytes before the file's mark, as long as there are not more than these.
bool BeginsAsPdf(const std::filesystem::path& file)
{
    std::string start(1024, '\0');
    std::ifstream(file, std::ios::binary).read(start.data(), static_cast<std::streamsize>(start.size()));
    return start.find("%PDF-") != std::string::npos;
}

bool IsSigned(QPDF& pdf)
{
    if (pdf.getRoot().getKey("/Perms").isDictionary())
        return true;
    for (QPDFFormFieldObjectHelper field : QPDFAcroFormDocumentHelper(pdf).getFormFields()) {
        if (field.getFieldType() == "/Sig" && field.getInheritableFieldValue("/V").isDictionary())
            return true;
    }
    return false;
}

bool SaysItIsPdfA(QPDF& pdf)
{
    QPDFObjectHandle metadata = pdf.getRoot().getKey("/Metadata");
    if (!metadata.isStream())
        return false;
    const std::shared_ptr<Buffer> data = metadata.getStreamData(qpdf_dl_specialized);
    const std::string_view xmp(reinterpret_cast<const char*>(data->getBuffer()), data->getSize());
    return xmp.find("pdfaid:part") != std::string_view::npos;
}

} // namespace

void OpenTemplate(QPDF& pdf, const std::filesystem::path& file)
{
    if (!BeginsAsPdf(file))
        throw PdfError("it is no PDF file");
    pdf.setSuppressWarnings(true);
    try {
        pdf.processFile(file.c_str());
    } catch (const QPDFExc& error) {
        if (error.getErrorCode() == qpdf_e_password)
            throw PdfError("it is encrypted");
        throw PdfError(error.getMessageDetail());
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception& error) {
        throw PdfError(error.what());
    }
    if (pdf.isEncrypted())
        throw PdfError("it is encrypted");
    RefuseDamage(pdf);
}

FoundPlace TakePlace(QPDF& pdf, const TemplatePlace& place)
{
    const std::vector<QPDFPageObjectHelper> pages = QPDFPageDocumentHelper(pdf).getAllPages();
    if (place.page.value_or(1) > pages.size())
        throw PdfError("it has no page " + std::to_string(place.page.value_or(1)) + ", only " +
                       std::to_string(pages.size()));
    std::size_t page = place.page.value_or(1) - 1;
    std::optional<Rectangle> rectangle = place.rectangle;
    if (!place.field.empty()) {
        PlacedWidget chosen = ChosenWidget(pdf, place, pages);
        page = chosen.page;
        if (!rectangle)
            rectangle = PageFrame(pages[page]).FromContent(RectangleOf(chosen.widget.getKey("/Rect")));
        RemoveWidget(pdf, pages[page].getObjectHandle(), chosen.widget);
    }
    const PageFrame frame(pages[page]);
    FoundPlace found{pages[page].getObjectHandle(),
                     rectangle.value_or(Rectangle{0.0, 0.0, frame.Width(), frame.Height()})};
    CheckRectangle(found.rectangle, frame);
    return found;
}

std::vector<std::string> ReasonsAgainstChange(QPDF& pdf)
{
    std::vector<std::string> reasons;
    if (IsSigned(pdf))
        reasons.emplace_back("the template is signed: its signature does not hold for the new file");
    QPDFObjectHandle form = pdf.getRoot().getKey("/AcroForm");
    if (form.isDictionary() && form.hasKey("/XFA"))
        reasons.emplace_back("the template has an XFA form: readers that show it do not show the model");
    if (SaysItIsPdfA(pdf))
        reasons.emplace_back("the template says that it is PDF/A, which it is not with a 3D model in most versions");
    return reasons;
}

void RefuseDamage(QPDF& pdf)
{
    const std::vector<QPDFExc> warnings = pdf.getWarnings();
    if (!warnings.empty())
        throw PdfError("it is damaged: " + warnings.front().getMessageDetail());
}

} // namespace Orvel::Pdf
