#include "tool/import/JsonDepth.h"

#include "tool/import/ImportReport.h"

#include <cstddef>
#include <string>

namespace Orvel::Import
{

namespace
{

constexpr std::size_t DeepestJson = 256;

} // namespace

void CheckJsonDepth(std::string_view text)
{
    std::size_t depth = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (c == '"') {
            for (++i; i < text.size() && text[i] != '"'; ++i)
                if (text[i] == '\\')
                    ++i;
        } else if (c == '{' || c == '[') {
            if (++depth > DeepestJson)
                throw ImportError("the JSON text is nested more than " + std::to_string(DeepestJson) + " levels deep");
        } else if ((c == '}' || c == ']') && depth > 0)
            --depth;
    }
}

} // namespace Orvel::Import
