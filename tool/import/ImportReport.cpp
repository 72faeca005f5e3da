#include "tool/import/ImportReport.h"

#include <algorithm>
#include <utility>

namespace Orvel::Import
{

std::string Quoted(std::string_view name)
{
    constexpr std::size_t Longest = 100;
    std::string text(name.substr(0, Longest));
    if (name.size() > Longest) {
        // A cut within a character of several bytes leaves none of it.
        while (!text.empty() && (static_cast<unsigned char>(name[text.size()]) & 0xC0U) == 0x80U)
            text.pop_back();
        text += "...";
    }
    std::replace_if(
        text.begin(), text.end(),
        [](char c) {
            const auto code = static_cast<unsigned char>(c);
            return code < 0x20 || code == 0x7F;
        },
        '?');
    return "'" + text + "'";
}

void ImportReport::Warn(std::string message)
{
    if (std::find(messages.begin(), messages.end(), message) == messages.end())
        messages.push_back(std::move(message));
}

void ImportReport::CountLeftOut(const std::string& one, const std::string& many, std::size_t count)
{
    if (count == 0)
        return;
    LeftOut& kind = leftOut[many];
    kind.one = one;
    kind.count += count;
}

std::vector<std::string> ImportReport::Warnings() const
{
    std::vector<std::string> lines = messages;
    lines.reserve(messages.size() + leftOut.size());
    for (const auto& [many, kind] : leftOut)
        lines.push_back("left out: " + std::to_string(kind.count) + " " + (kind.count == 1 ? kind.one : many));
    return lines;
}

} // namespace Orvel::Import
