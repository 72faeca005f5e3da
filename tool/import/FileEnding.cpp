#include "tool/import/FileEnding.h"

#include <utility>

namespace Orvel::Import
{

std::string LowerCase(std::string text)
{
    for (char& c : text)
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
    return text;
}

std::string EndingOf(const std::filesystem::path& file)
{
    return LowerCase(file.extension().string());
}

} // namespace Orvel::Import
