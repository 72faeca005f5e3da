#include "tool/manual/Quoting.h"

namespace Orvel::Manual
{

std::string Replaced(std::string_view text, std::string_view part, std::string_view by)
{
    std::string result;
    for (std::size_t found = text.find(part); found != std::string_view::npos; found = text.find(part)) {
        result.append(text.substr(0, found)).append(by);
        text.remove_prefix(found + part.size());
    }
    return result.append(text);
}

std::string Joined(const std::vector<std::string>& parts, std::string_view separator)
{
    std::string result;
    for (const std::string& part : parts) {
        if (&part != &parts.front())
            result += separator;
        result += part;
    }
    return result;
}

} // namespace Orvel::Manual
