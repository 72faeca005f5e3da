#include "tool/cli/Text.h"

#include <QString>

#include <algorithm>
#include <array>
#include <charconv>

namespace Orvel::Cli
{

namespace
{

constexpr int LongestText = 4000;

bool ChangesDirection(char16_t unit)
{
    return (unit >= u'\u202A' && unit <= u'\u202E') || (unit >= u'\u2066' && unit <= u'\u2069') || unit == u'\u200E' ||
           unit == u'\u200F';
}

QChar SafeUnit(QChar unit)
{
    const bool endsLine = unit.category() == QChar::Separator_Line || unit.category() == QChar::Separator_Paragraph;
    if (endsLine || (unit.unicode() >= u'\t' && unit.unicode() <= u'\r'))
        return u' ';
    const bool harmful = unit.category() == QChar::Other_Control || ChangesDirection(unit.unicode());
    return harmful ? QChar(QChar::ReplacementCharacter) : unit;
}

/// Holds every number in fixed notation.
using NumberBuffer = std::array<char, 512>;

} // namespace

std::string OneLine(std::string_view text)
{
    // Cut first: whoever sends megabytes gets no more than a prefix looked at. A UTF-16 unit takes at most 3 bytes.
    constexpr std::size_t LongestBytes = std::size_t{3} * LongestText;
    QString line =
        QString::fromUtf8(text.substr(0, LongestBytes).data(), static_cast<int>(std::min(text.size(), LongestBytes)));
    for (QChar& unit : line)
        unit = SafeUnit(unit);
    line = line.trimmed();
    if (line.size() > LongestText || text.size() > LongestBytes)
        line = line.left(LongestText) + QStringLiteral("...");
    return line.toStdString();
}

std::string Quoted(std::string_view name)
{
    return "'" + OneLine(name) + "'";
}

std::string ShortestText(double number)
{
    NumberBuffer buffer{};
    return {buffer.data(), std::to_chars(buffer.data(), buffer.data() + buffer.size(), number).ptr};
}

std::string FixedText(double number, int digits)
{
    NumberBuffer buffer{};
    return {buffer.data(),
            std::to_chars(buffer.data(), buffer.data() + buffer.size(), number, std::chars_format::fixed, digits).ptr};
}

std::string Count(unsigned long count, std::string_view one, std::string_view many)
{
    return std::to_string(count) + " " + std::string(count == 1 ? one : many);
}

std::string SizeText(std::uint64_t bytes)
{
    constexpr std::array Units{"kB", "MB", "GB", "TB"};
    if (bytes < 1000)
        return std::to_string(bytes) + " bytes";
    double size = static_cast<double>(bytes) / 1000.0;
    std::size_t unit = 0;
    for (; size >= 999.95 && unit + 1 < Units.size(); ++unit)
        size /= 1000.0;
    return FixedText(size, 1) + " " + Units[unit];
}

std::string LabelledLine(std::string_view label, const std::string& value)
{
    std::string line = "  " + std::string(label);
    line.append(std::max<std::size_t>(13, line.size() + 1) - line.size(), ' ');
    return line + value + "\n";
}

} // namespace Orvel::Cli
