#include "tool/manual/Completion.h"
#include "tool/manual/Quoting.h"

namespace Orvel::Manual
{

namespace
{

std::string Quoted(std::string_view text)
{
    return "'" + Replaced(Replaced(text, "\\", "\\\\"), "'", "\\'") + "'";
}

/// -x takes a value and no files, -r a value, -F files.
std::string ValueArguments(const OptionDescription& option)
{
    switch (option.kind) {
    case ValueKind::None:
        return "";
    case ValueKind::Word:
        return " -x -a " + Quoted(Joined(option.words, " "));
    case ValueKind::Folder:
        return " -x -a '(__fish_complete_directories)'";
    case ValueKind::File:
        if (option.extensions.empty())
            return " -r -F";
        // Files that fit come first; -k keeps them there.
        return " -k -x -a '(__fish_complete_suffix ." + Joined(option.extensions, " .") + ")'";
    case ValueKind::Text:
        break;
    }
    return " -x";
}

std::string Line(const std::string& program, const std::string& condition, const OptionDescription& option)
{
    std::string line = "complete -c " + program + " -n " + Quoted(condition);
    for (const std::string& name : option.names)
        line += name.starts_with("--") ? " -l " + name.substr(2) : " -s " + name.substr(1);
    line += ValueArguments(option);
    if (!option.names.empty())
        line += " -d " + Quoted(option.description);
    return line + "\n";
}

} // namespace

std::string FishCompletion(const ProgramDescription& program)
{
    std::string text = "# fish completion for " + program.name + "\ncomplete -c " + program.name + " -f\n";
    for (const OptionDescription& option : program.options)
        text += Line(program.name, "__fish_use_subcommand", option);
    for (const CommandDescription& command : program.commands) {
        text += "complete -c " + program.name + " -n __fish_use_subcommand -a " + command.name + " -d " +
                Quoted(command.description) + "\n";
        const std::string condition = "__fish_seen_subcommand_from " + command.name;
        for (const OptionDescription& option : command.options)
            text += Line(program.name, condition, option);
        for (const OptionDescription& argument : command.arguments)
            text += Line(program.name, condition, argument);
    }
    return text;
}

} // namespace Orvel::Manual
