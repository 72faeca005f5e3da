#include "tool/pdf/StandardFont.h"

#include "tool/pdf/PdfValues.h"

#include <qpdf/QUtil.hh>

#include <array>
#include <cstdint>
#include <sstream>

namespace Orvel::Pdf
{

namespace
{

constexpr unsigned char FirstCode = 32;
constexpr char Ellipsis = '\x85';

using Widths = std::array<std::uint16_t, 256 - FirstCode>;

// Thousandths of the font's size for each code of WinAnsi encoding, from the metrics that Adobe publishes for its
// standard fonts.
// clang-format off
constexpr std::array<Widths, 2> WidthsOfFaces{{
    {
        278, 278, 355, 556, 556, 889, 667, 191, 333, 333, 389, 584, 278, 333, 278, 278,
        556, 556, 556, 556, 556, 556, 556, 556, 556, 556, 278, 278, 584, 584, 584, 556,
        1015, 667, 667, 722, 722, 667, 611, 778, 722, 278, 500, 667, 556, 833, 722, 778,
        667, 778, 722, 667, 611, 722, 667, 944, 667, 667, 611, 278, 278, 278, 469, 556,
        333, 556, 556, 500, 556, 556, 278, 556, 556, 222, 222, 500, 222, 833, 556, 556,
        556, 556, 333, 500, 278, 556, 500, 722, 500, 500, 500, 334, 260, 334, 584, 350,
        556, 350, 222, 556, 333, 1000, 556, 556, 333, 1000, 667, 333, 1000, 350, 611, 350,
        350, 222, 222, 333, 333, 350, 556, 1000, 333, 1000, 500, 333, 944, 350, 500, 667,
        278, 333, 556, 556, 556, 556, 260, 556, 333, 737, 370, 556, 584, 333, 737, 333,
        400, 584, 333, 333, 333, 578, 537, 278, 333, 333, 365, 556, 834, 834, 834, 611,
        667, 667, 667, 667, 667, 667, 1000, 722, 667, 667, 667, 667, 278, 278, 278, 278,
        722, 722, 778, 778, 778, 778, 778, 584, 778, 722, 722, 722, 722, 667, 667, 611,
        556, 556, 556, 556, 556, 556, 889, 500, 556, 556, 556, 556, 278, 278, 278, 278,
        556, 556, 556, 556, 556, 556, 556, 584, 611, 556, 556, 556, 556, 500, 556, 500,
    },
    {
        278, 333, 474, 556, 556, 889, 722, 238, 333, 333, 389, 584, 278, 333, 278, 278,
        556, 556, 556, 556, 556, 556, 556, 556, 556, 556, 333, 333, 584, 584, 584, 611,
        975, 722, 722, 722, 722, 667, 611, 778, 722, 278, 556, 722, 611, 833, 722, 778,
        667, 778, 722, 667, 611, 722, 667, 944, 667, 667, 611, 333, 278, 333, 584, 556,
        333, 556, 611, 556, 611, 556, 333, 611, 611, 278, 278, 556, 278, 889, 611, 611,
        611, 611, 389, 556, 333, 611, 556, 778, 556, 556, 500, 389, 280, 389, 584, 350,
        556, 350, 278, 556, 500, 1000, 556, 556, 333, 1000, 667, 333, 1000, 350, 611, 350,
        350, 278, 278, 500, 500, 350, 556, 1000, 333, 1000, 556, 333, 944, 350, 500, 667,
        278, 333, 556, 556, 556, 556, 280, 556, 333, 737, 370, 556, 584, 333, 737, 333,
        400, 584, 333, 333, 333, 611, 556, 278, 333, 333, 365, 556, 834, 834, 834, 611,
        722, 722, 722, 722, 722, 722, 1000, 722, 667, 667, 667, 667, 278, 278, 278, 278,
        722, 722, 778, 778, 778, 778, 778, 584, 778, 722, 722, 722, 722, 667, 667, 611,
        556, 556, 556, 556, 556, 556, 889, 556, 556, 556, 556, 556, 278, 278, 278, 278,
        611, 611, 611, 611, 611, 611, 611, 584, 611, 611, 611, 611, 611, 556, 611, 556,
    },
}};
// clang-format on

} // namespace

std::optional<std::string> ToWinAnsi(const std::string& text)
{
    std::string encoded;
    if (!QUtil::utf8_to_win_ansi(text, encoded))
        return std::nullopt;
    return encoded;
}

double TextWidth(const std::string& text, Face face, double size)
{
    const Widths& widths = WidthsOfFaces[static_cast<std::size_t>(face)];
    unsigned thousandths = 0;
    for (const char letter : text) {
        const auto code = static_cast<unsigned char>(letter);
        thousandths += code < FirstCode ? 0U : widths[code - FirstCode];
    }
    return thousandths * size / 1000.0;
}

std::string Shortened(const std::string& text, Face face, double size, double width)
{
    if (TextWidth(text, face, size) <= width)
        return text;
    std::string beginning = text;
    while (!beginning.empty() && TextWidth(beginning + Ellipsis, face, size) > width)
        beginning.pop_back();
    beginning.erase(beginning.find_last_not_of(' ') + 1);
    return beginning + Ellipsis;
}

std::vector<std::string> Wrapped(const std::string& text, Face face, double size, double width)
{
    std::vector<std::string> lines;
    std::istringstream words(text);
    std::string line;
    for (std::string word; words >> word;) {
        std::string longer = line;
        longer.append(line.empty() ? "" : " ").append(word);
        if (!line.empty() && TextWidth(longer, face, size) > width) {
            lines.push_back(line);
            line = word;
        } else {
            line = longer;
        }
    }
    if (!line.empty())
        lines.push_back(line);
    return lines;
}

std::string ShowText(const std::string& text, Face face, double size, double grey, double x, double y)
{
    return "BT " + NumberText(grey) + " g /F" + std::to_string(static_cast<int>(face)) + " " + NumberText(size) +
           " Tf " + NumberText({x, y}) + " Td " + QPDFObjectHandle::newString(text).unparse() + " Tj ET\n";
}

} // namespace Orvel::Pdf
