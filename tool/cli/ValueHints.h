#pragma once

#include <string>
#include <vector>

namespace CLI
{
class Option;
}

namespace Orvel::Cli
{

/// What a shell may offer as the value of an option or argument.
struct ValueHints
{
    std::vector<std::string> words;
    /// Of files, without the point.
    std::vector<std::string> extensions;
    /// Files that hold scenes, in any format that can be read.
    bool scenes = false;
};

/// Each adds to what was offered before. Nothing is refused by it.
void OfferWords(CLI::Option& option, const std::vector<std::string>& words);
void OfferFiles(CLI::Option& option, const std::vector<std::string>& extensions);
void OfferScenes(CLI::Option& option);

[[nodiscard]] ValueHints HintsOf(CLI::Option& option);

} // namespace Orvel::Cli
