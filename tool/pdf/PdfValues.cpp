#include "tool/pdf/PdfValues.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

namespace Orvel::Pdf
{

namespace
{

constexpr int SignificantDigits = 9;

/// What lies below is the noise of a computation, and a row of zeros in the file.
constexpr double SmallestNumber = 1e-12;

} // namespace

std::string NumberText(double value)
{
    constexpr double Largest = std::numeric_limits<float>::max();
    if (!(std::abs(value) >= SmallestNumber))
        return "0";
    value = std::clamp(value, -Largest, Largest);
    const int digitsBeforePoint = static_cast<int>(std::floor(std::log10(std::abs(value)))) + 1;
    const int digits = std::max(SignificantDigits - digitsBeforePoint, 0);
    std::array<char, 64> buffer{};
    const char* const end =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::fixed, digits).ptr;
    std::string text(static_cast<const char*>(buffer.data()), end);
    if (digits > 0) {
        text.erase(text.find_last_not_of('0') + 1);
        if (text.back() == '.')
            text.pop_back();
    }
    return text == "-0" ? "0" : text;
}

std::string NumberText(std::initializer_list<double> values)
{
    std::string text;
    for (const double value : values)
        text += (text.empty() ? "" : " ") + NumberText(value);
    return text;
}

QPDFObjectHandle Number(double value)
{
    const std::string text = NumberText(value);
    return text.find('.') == std::string::npos && text.size() <= SignificantDigits
               ? QPDFObjectHandle::newInteger(std::stoll(text))
               : QPDFObjectHandle::newReal(text);
}

QPDFObjectHandle Numbers(std::initializer_list<double> values)
{
    QPDFObjectHandle array = QPDFObjectHandle::newArray();
    for (const double value : values)
        array.appendItem(Number(value));
    return array;
}

QPDFObjectHandle ColourNumbers(const Colour& colour)
{
    // Four digits tell the 256 steps apart.
    const auto part = [](std::uint8_t channel) { return std::round(channel / 255.0 * 1e4) / 1e4; };
    return Numbers({part(colour[0]), part(colour[1]), part(colour[2])});
}

QPDFObjectHandle Text(const std::string& text)
{
    return QPDFObjectHandle::newUnicodeString(text);
}

QPDFObjectHandle Name(const std::string& name)
{
    return QPDFObjectHandle::newName("/" + name);
}

} // namespace Orvel::Pdf
