#pragma once

#include <string>
#include <vector>

namespace Orvel
{
class COrvelDocument;
}

namespace Orvel::Import
{

/// Names by which things can be told apart: an empty one becomes `kind` and the thing's number, counted from 1; one
/// that came before gets " (2)", " (3)", ... behind it.
[[nodiscard]] std::vector<std::string> DistinctNames(std::vector<std::string> names, const std::string& kind);

/// Makes the names of all nodes of a document distinct, first those of cameras, then the others in the order of the
/// tree: viewers of PDF files find nodes by name.
void GiveDistinctNodeNames(const COrvelDocument& document);

} // namespace Orvel::Import
