#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace Orvel::Cli
{

/// A text from elsewhere (file names, messages of libraries, names in a scene) in a form that is safe to show: one line
/// without control characters or changes of writing direction, valid UTF-8, at most some thousand characters.
[[nodiscard]] std::string OneLine(std::string_view text);

/// A name in single quotes, made safe as by OneLine.
[[nodiscard]] std::string Quoted(std::string_view name);

/// The shortest text that stands for the number: "35", "0.1".
[[nodiscard]] std::string ShortestText(double number);

/// The number with so many digits behind the point: "35.00".
[[nodiscard]] std::string FixedText(double number, int digits);

/// "1 mesh", "2 meshes".
[[nodiscard]] std::string Count(unsigned long count, std::string_view one, std::string_view many);

/// "17 bytes", "1.6 MB"; units are powers of 1000.
[[nodiscard]] std::string SizeText(std::uint64_t bytes);

/// A line of a summary: the label, indented and padded, and the value.
[[nodiscard]] std::string LabelledLine(std::string_view label, const std::string& value);

} // namespace Orvel::Cli
