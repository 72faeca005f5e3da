#pragma once

#include <qpdf/QPDFObjectHandle.hh>

#include <array>
#include <cstdint>
#include <initializer_list>
#include <string>

namespace Orvel::Pdf
{

/// An sRGB colour.
using Colour = std::array<std::uint8_t, 3>;

/// The number as PDF writes it: without exponent, nine significant digits, within the range of single precision.
///
/// @param value what is no number becomes 0.
[[nodiscard]] std::string NumberText(double value);

/// Numbers one after the other with spaces between.
[[nodiscard]] std::string NumberText(std::initializer_list<double> values);

[[nodiscard]] QPDFObjectHandle Number(double value);
[[nodiscard]] QPDFObjectHandle Numbers(std::initializer_list<double> values);

/// The channels from 0 to 1.
[[nodiscard]] QPDFObjectHandle ColourNumbers(const Colour& colour);

/// A text string. @param text UTF-8.
[[nodiscard]] QPDFObjectHandle Text(const std::string& text);

/// @param name without its slash.
[[nodiscard]] QPDFObjectHandle Name(const std::string& name);

} // namespace Orvel::Pdf
