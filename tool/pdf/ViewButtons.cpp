#include "tool/pdf/ViewButtons.h"

#include "tool/pdf/PageAnnotations.h"
#include "tool/pdf/PdfValues.h"
#include "tool/pdf/StandardFont.h"

#include <qpdf/QPDFAcroFormDocumentHelper.hh>

#include <algorithm>
#include <vector>

namespace Orvel::Pdf
{

namespace
{

constexpr double ButtonHeight = 20.0;
constexpr double Gap = 6.0;
constexpr double FontSize = 9.0;
constexpr double Padding = 12.0; ///< on each side of a label
constexpr double SmallestWidth = 48.0;
constexpr double LargestLabel = 130.0;

struct Button
{
    std::string name;  ///< of the field
    std::string label; ///< UTF-8
    std::string hint;  ///< UTF-8
    QPDFObjectHandle action;
};

QPDFObjectHandle ViewAction(const QPDFObjectHandle& annotation, std::size_t view)
{
    QPDFObjectHandle action = QPDFObjectHandle::parse("<< /S /GoTo3DView >>");
    action.replaceKey("/TA", annotation);
    action.replaceKey("/V", QPDFObjectHandle::newInteger(static_cast<long long>(view)));
    return action;
}

/// @param function of the model's script.
QPDFObjectHandle ScriptAction(QPDFObjectHandle annotation, const std::string& function)
{
    // The names of annotations that this program gives need no escapes.
    // The current page of a reader that scrolls need not be that of the button.
    const std::string script = "var p = event.target ? event.target.page : null, a = this.getAnnot3D(typeof p === "
                               "\"number\" ? p : this.pageNum, \"" +
                               annotation.getKey("/NM").getUTF8Value() +
                               "\"); if (a) { if (!a.activated) a.activated = true; var c = a.context3D; if (c && c." +
                               function + ") c." + function + "(); }";
    QPDFObjectHandle action = QPDFObjectHandle::parse("<< /S /JavaScript >>");
    action.replaceKey("/JS", Text(script));
    return action;
}

std::vector<Button> ButtonsOf(const Artwork& artwork, const QPDFObjectHandle& annotation)
{
    std::vector<Button> buttons;
    for (std::size_t i = 0; i < artwork.views.size(); ++i) {
        const std::string number = std::to_string(i + 1);
        const std::string& name = artwork.views[i].name;
        buttons.push_back({"view " + number, ToWinAnsi(name) ? name : "View " + number, "Show the view " + name,
                           ViewAction(annotation, i)});
    }
    if (artwork.plays) {
        buttons.push_back({"play", "Play", "Play the animation", ScriptAction(annotation, "play3D")});
        buttons.push_back({"pause", "Pause", "Pause the animation", ScriptAction(annotation, "pause3D")});
    }
    return buttons;
}

/// A rounded plate with the label in its middle.
QPDFObjectHandle MakeFace(QPDF& pdf, const PageFrame& frame, const QPDFObjectHandle& font, const std::string& label,
                          double width)
{
    constexpr double Radius = 3.0;
    constexpr double Bow = 0.5523 * Radius; // of the curve that comes nearest to a quarter of a circle
    constexpr double Near = 0.25;
    const double right = width - Near;
    constexpr double Top = ButtonHeight - Near;
    const std::string outline =
        NumberText({Near + Radius, Near}) + " m " + NumberText({right - Radius, Near}) + " l " +
        NumberText({right - Radius + Bow, Near, right, Near + Radius - Bow, right, Near + Radius}) + " c " +
        NumberText({right, Top - Radius}) + " l " +
        NumberText({right, Top - Radius + Bow, right - Radius + Bow, Top, right - Radius, Top}) + " c " +
        NumberText({Near + Radius, Top}) + " l " +
        NumberText({Near + Radius - Bow, Top, Near, Top - Radius + Bow, Near, Top - Radius}) + " c " +
        NumberText({Near, Near + Radius}) + " l " +
        NumberText({Near, Near + Radius - Bow, Near + Radius - Bow, Near, Near + Radius, Near}) + " c h B\n";
    const double labelWidth = TextWidth(label, Face::Helvetica, FontSize);
    const std::string content = "q 0.95 g 0.7 G 0.5 w\n" + outline + "Q\n" +
                                ShowText(label, Face::Helvetica, FontSize, 0.2, (width - labelWidth) / 2.0,
                                         (ButtonHeight - 0.72 * FontSize) / 2.0);
    QPDFObjectHandle face = QPDFObjectHandle::newStream(&pdf, content);
    face.replaceDict(QPDFObjectHandle::parse("<< /Type /XObject /Subtype /Form /Resources << /Font << >> >> >>"));
    face.getDict().replaceKey("/BBox", Numbers({0, 0, width, ButtonHeight}));
    face.getDict().replaceKey("/Matrix", frame.UprightMatrix());
    face.getDict().getKey("/Resources").getKey("/Font").replaceKey("/F0", font);
    return face;
}

/// Field and widget in one.
QPDFObjectHandle MakeField(const Button& button, const std::string& prefix, const PageFrame& frame,
                           const Rectangle& place, const QPDFObjectHandle& face)
{
    QPDFObjectHandle field =
        QPDFObjectHandle::parse("<< /Type /Annot /Subtype /Widget /FT /Btn /Ff 65536 /F 0 /H /P /DA (/Helv 9 Tf 0.2 g) "
                                "/MK << /BC [0.7] /BG [0.95] >> /BS << /W 0.5 /S /S >> /AP << >> >>");
    field.replaceKey("/T", Text(prefix + " " + button.name));
    field.replaceKey("/TU", Text(button.hint));
    field.replaceKey("/Rect", CornersOf(frame.ToContent(place)));
    field.getKey("/MK").replaceKey("/CA", Text(button.label));
    if (frame.RotationInDegrees() != 0)
        field.getKey("/MK").replaceKey("/R", QPDFObjectHandle::newInteger(frame.RotationInDegrees()));
    field.getKey("/AP").replaceKey("/N", face);
    field.replaceKey("/A", button.action);
    return field;
}

/// The font that readers take when they draw a label anew.
void AddDefaultFont(QPDF& pdf, const QPDFObjectHandle& font)
{
    QPDFObjectHandle form = pdf.getRoot().getKey("/AcroForm");
    for (const char* const key : {"/DR", "/Font"}) {
        if (!form.getKey(key).isDictionary())
            form.replaceKey(key, QPDFObjectHandle::newDictionary());
        form = form.getKey(key);
    }
    if (!form.hasKey("/Helv"))
        form.replaceKey("/Helv", font);
}

/// The words before the names of the fields: those of no field that is there.
std::string UnusedPrefix(QPDFAcroFormDocumentHelper& form)
{
    const auto isUsed = [&form](const std::string& prefix) {
        for (QPDFFormFieldObjectHelper field : form.getFormFields()) {
            if (field.getFullyQualifiedName().starts_with(prefix + " "))
                return true;
        }
        return false;
    };
    std::string prefix = "3D";
    for (int number = 2; isUsed(prefix); ++number)
        prefix = "3D-" + std::to_string(number);
    return prefix;
}

} // namespace

std::size_t AddViewButtons(QPDF& pdf, const PageFrame& frame, const ButtonRow& row, const Artwork& artwork)
{
    QPDFAcroFormDocumentHelper form(pdf);
    const std::string prefix = UnusedPrefix(form);
    const QPDFObjectHandle font = pdf.makeIndirectObject(
        QPDFObjectHandle::parse("<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica /Encoding /WinAnsiEncoding >>"));
    const std::vector<Button> buttons = ButtonsOf(artwork, row.annotation);
    double x = row.place.x;
    std::size_t added = 0;
    for (const Button& button : buttons) {
        const std::string label =
            Shortened(ToWinAnsi(button.label).value_or(""), Face::Helvetica, FontSize, LargestLabel);
        const double width = std::max(TextWidth(label, Face::Helvetica, FontSize) + 2.0 * Padding, SmallestWidth);
        if (x + width > row.place.x + row.place.width)
            break;
        const QPDFObjectHandle face = MakeFace(pdf, frame, font, label, width);
        QPDFObjectHandle field =
            pdf.makeIndirectObject(MakeField(button, prefix, frame, {x, row.place.y, width, ButtonHeight}, face));
        AddAnnotation(row.page, field);
        form.addFormField(QPDFFormFieldObjectHelper(field));
        x += width + Gap;
        ++added;
    }
    if (added > 0)
        AddDefaultFont(pdf, font);
    return buttons.size() - added;
}

} // namespace Orvel::Pdf
