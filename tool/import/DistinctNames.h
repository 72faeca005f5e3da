#pragma once

#include <string>
#include <vector>

namespace Orvel::Import
{

/// Names by which things can be told apart: an empty one becomes `kind` and the thing's number, counted from 1; one
/// that came before gets " (2)", " (3)", ... behind it.
[[nodiscard]] std::vector<std::string> DistinctNames(std::vector<std::string> names, const std::string& kind);

} // namespace Orvel::Import
