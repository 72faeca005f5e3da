#pragma once

#include <string>
#include <string_view>

namespace Orvel::Test
{

void WriteFile(const std::string& path, std::string_view bytes);

/// The bytes of a file; "(missing)" when it cannot be opened.
[[nodiscard]] std::string ReadFile(const std::string& path);

} // namespace Orvel::Test
