#include "tool/animation/NameList.h"

#include "tool/import/ImportReport.h"

#include <algorithm>
#include <cstddef>

namespace Orvel::Animate
{

std::string NotFound(const std::string& kind, const std::string& name, const std::vector<std::string>& known)
{
    constexpr std::size_t MostListed = 10;
    std::string text = "there is no " + kind + " " + Import::Quoted(name);
    if (known.empty())
        return text + ": the scene has none";
    text += ", only ";
    for (std::size_t i = 0; i < std::min(known.size(), MostListed); ++i)
        text += (i == 0 ? "" : ", ") + Import::Quoted(known[i]);
    if (known.size() > MostListed)
        text += " and " + std::to_string(known.size() - MostListed) + " more";
    return text;
}

} // namespace Orvel::Animate
