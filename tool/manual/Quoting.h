#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Orvel::Manual
{

/// The text with every occurrence of a part replaced; what was put in is not searched again.
[[nodiscard]] std::string Replaced(std::string_view text, std::string_view part, std::string_view by);

/// The parts with a separator between them.
[[nodiscard]] std::string Joined(const std::vector<std::string>& parts, std::string_view separator);

} // namespace Orvel::Manual
