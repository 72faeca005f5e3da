#pragma once

#include <optional>
#include <string>
#include <vector>

namespace Orvel::Pdf
{

/// The fonts that every reader of PDF has.
enum class Face
{
    Helvetica,
    HelveticaBold
};

/// The text in the encoding of these fonts; nothing when they lack one of its characters.
///
/// @param text UTF-8.
[[nodiscard]] std::optional<std::string> ToWinAnsi(const std::string& text);

/// @param text in WinAnsi encoding, here and below.
/// @param size of the font in points.
/// @return the length of the line in points.
[[nodiscard]] double TextWidth(const std::string& text, Face face, double size);

/// The text, or its beginning and an ellipsis, in a line of so many points.
[[nodiscard]] std::string Shortened(const std::string& text, Face face, double size, double width);

/// The text in lines of at most so many points, broken at spaces; a word that is longer has a line of its own.
[[nodiscard]] std::vector<std::string> Wrapped(const std::string& text, Face face, double size, double width);

/// Content that shows a text with its baseline from (x, y). The font has the name /F0 or /F1, in the order of Face.
[[nodiscard]] std::string ShowText(const std::string& text, Face face, double size, double grey, double x, double y);

} // namespace Orvel::Pdf
