#include "tool/pdf/PageDesign.h"

#include "tool/pdf/PdfModels.h"
#include "tool/pdf/PdfValues.h"
#include "tool/pdf/StandardFont.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace Orvel::Pdf
{

namespace
{

constexpr double TitleGrey = 0.13;
constexpr double TextGrey = 0.4;
constexpr double FrameGrey = 0.78;
constexpr double FrameGap = 3.0;       ///< to the model, whose picture readers round outwards to whole pixels
constexpr double SmallestModel = 36.0; ///< half an inch
constexpr double CapitalHeight = 0.72; ///< of the font's size

/// Sizes of type that suit a page: those of a sheet of A4, smaller on small pages.
struct TypeSizes
{
    explicit TypeSizes(const PageDesign& design)
    {
        const double scale = std::clamp(std::min(design.width, design.height) / 595.28, 0.5, 1.5);
        title = 20.0 * scale;
        text = std::max(8.5 * scale, 6.0);
        lineHeight = 1.4 * text;
    }

    double title;
    double text;
    double lineHeight;
};

class PageComposer
{
public:
    explicit PageComposer(const PageDesign& wanted)
        : design(wanted)
        , sizes(wanted)
        , left(design.margin)
        , right(design.width - design.margin)
        , top(design.height - design.margin)
        , bottom(design.margin)
    {}

    PageLayout Compose()
    {
        AddHead();
        AddCaption();
        if (design.hasButtons) {
            layout.buttons = {left, bottom, right - left, ButtonRowHeight};
            bottom += ButtonRowHeight;
        }
        AddFrame();
        layout.model = {left + FrameGap, bottom + FrameGap, right - left - 2.0 * FrameGap,
                        top - bottom - 2.0 * FrameGap};
        if (!(layout.model.width >= SmallestModel && layout.model.height >= SmallestModel))
            throw PdfError("the page has no room for the model");
        return std::move(layout);
    }

private:
    /// Nothing, too, for a text that cannot be shown.
    std::string Encoded(const std::string& text)
    {
        const std::optional<std::string> encoded = ToWinAnsi(text);
        if (!encoded)
            layout.unshown.push_back(text);
        return encoded.value_or("");
    }

    void AddHead()
    {
        std::string author = Encoded(design.author);
        std::string title = Encoded(design.title);
        if (author.empty() && title.empty())
            return;
        const double baseline = top - CapitalHeight * sizes.title;
        author = Shortened(author, Face::Helvetica, sizes.text, (right - left) / 3.0);
        const double authorWidth = TextWidth(author, Face::Helvetica, sizes.text);
        layout.content += ShowText(author, Face::Helvetica, sizes.text, TextGrey, right - authorWidth, baseline);
        const double room = right - left - (author.empty() ? 0.0 : authorWidth + sizes.title);
        // A title that is somewhat long becomes smaller, one that is very long is cut.
        const double wanted = TextWidth(title, Face::HelveticaBold, sizes.title);
        const double size = sizes.title * std::clamp(room / std::max(wanted, 1.0), 0.6, 1.0);
        title = Shortened(title, Face::HelveticaBold, size, room);
        layout.content += ShowText(title, Face::HelveticaBold, size, TitleGrey, left, baseline);
        top = baseline - 0.75 * sizes.title;
    }

    void AddCaption()
    {
        const std::vector<std::string> lines =
            Wrapped(Encoded(design.caption), Face::Helvetica, sizes.text, right - left);
        if (lines.empty())
            return;
        // The last line's descenders stand above the margin's edge.
        double baseline = bottom + 0.2 * sizes.text;
        for (auto line = lines.rbegin(); line != lines.rend(); ++line, baseline += sizes.lineHeight)
            layout.content += ShowText(*line, Face::Helvetica, sizes.text, TextGrey, left, baseline);
        bottom = baseline - sizes.lineHeight + CapitalHeight * sizes.text + sizes.text;
    }

    void AddFrame()
    {
        layout.content += "q " + NumberText(FrameGrey) + " G 0.5 w " +
                          NumberText({left, bottom, right - left, top - bottom}) + " re S Q\n";
    }

    const PageDesign& design;
    TypeSizes sizes;
    PageLayout layout;
    double left; ///< of the room that is left
    double right;
    double top;
    double bottom;
};

} // namespace

PageLayout LayOut(const PageDesign& design)
{
    return PageComposer(design).Compose();
}

} // namespace Orvel::Pdf
