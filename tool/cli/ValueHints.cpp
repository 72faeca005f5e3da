#include "tool/cli/ValueHints.h"

#include <CLI/CLI.hpp>

namespace Orvel::Cli
{

namespace
{

constexpr const char* WordMark = "offer word ";
constexpr const char* ExtensionMark = "offer file ";
constexpr const char* SceneMark = "offer scenes";

/// The option parser keeps nothing with an option but its checks, so a hint is the name of one that accepts everything.
void Mark(CLI::Option& option, const std::string& mark)
{
    option.check(CLI::Validator([](std::string&) { return std::string(); }, "", mark));
}

void MarkEach(CLI::Option& option, const std::string& mark, const std::vector<std::string>& texts)
{
    for (const std::string& text : texts)
        Mark(option, mark + text);
}

/// The names of all checks; the parser tells the number of them by refusing one that is not there.
std::vector<std::string> NamesOfChecks(CLI::Option& option)
{
    std::vector<std::string> names;
    try {
        for (int index = 0;; ++index)
            names.push_back(option.get_validator(index)->get_name());
    } catch (const CLI::OptionNotFound&) {
        return names;
    }
}

} // namespace

void OfferWords(CLI::Option& option, const std::vector<std::string>& words)
{
    MarkEach(option, WordMark, words);
}

void OfferFiles(CLI::Option& option, const std::vector<std::string>& extensions)
{
    MarkEach(option, ExtensionMark, extensions);
}

void OfferScenes(CLI::Option& option)
{
    Mark(option, SceneMark);
}

ValueHints HintsOf(CLI::Option& option)
{
    ValueHints hints;
    for (const std::string& name : NamesOfChecks(option)) {
        if (name.starts_with(WordMark))
            hints.words.push_back(name.substr(std::string(WordMark).size()));
        else if (name.starts_with(ExtensionMark))
            hints.extensions.push_back(name.substr(std::string(ExtensionMark).size()));
        else if (name == SceneMark)
            hints.scenes = true;
    }
    return hints;
}

} // namespace Orvel::Cli
