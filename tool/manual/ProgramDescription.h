#pragma once

#include <string>
#include <vector>

namespace Orvel::Manual
{

/// What the value of an option or argument is.
enum class ValueKind
{
    /// There is none: a flag.
    None,
    /// Anything.
    Text,
    /// One of some words.
    Word,
    File,
    Folder
};

/// An option, or an argument that is told by its place.
struct OptionDescription
{
    /// With their dashes, short ones first; empty for an argument.
    std::vector<std::string> names;
    /// In capitals, as in the help; empty for flags.
    std::string valueName;
    std::string description;
    /// The heading that it stands under, with others; empty for the plain ones.
    std::string group;
    ValueKind kind = ValueKind::None;
    bool repeatable = false;
    /// For ValueKind::Word.
    std::vector<std::string> words;
    /// For ValueKind::File, in lower case and without the point; empty where any file will do.
    std::vector<std::string> extensions;
};

struct CommandDescription
{
    std::string name;
    std::string description;
    /// Below the options in the help: paragraphs, and examples that stand two spaces from the left.
    std::string notes;
    std::vector<OptionDescription> arguments;
    std::vector<OptionDescription> options;
};

/// Everything that users can type, for texts that are made of it.
struct ProgramDescription
{
    std::string name;
    std::string version;
    std::string description;
    std::string notes;
    std::vector<OptionDescription> options;
    std::vector<CommandDescription> commands;
};

} // namespace Orvel::Manual
