#pragma once

#include <filesystem>
#include <string>

namespace Orvel::Import
{

/// The text with A to Z as a to z, whatever the locale.
[[nodiscard]] std::string LowerCase(std::string text);

/// The extension in small letters: ".stl"; empty when there is none.
[[nodiscard]] std::string EndingOf(const std::filesystem::path& file);

} // namespace Orvel::Import
