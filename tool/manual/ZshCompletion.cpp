#include "tool/manual/Completion.h"
#include "tool/manual/Quoting.h"

namespace Orvel::Manual
{

namespace
{

/// Inside single quotes of the shell.
std::string Quoted(std::string_view text)
{
    return Replaced(text, "'", R"('\'')");
}

/// Between the brackets of a specification of _arguments.
std::string Explanation(std::string_view text)
{
    return Quoted(Replaced(Replaced(text, "[", "\\["), "]", "\\]"));
}

std::string ValueAction(const OptionDescription& option)
{
    switch (option.kind) {
    case ValueKind::Word:
        return "(" + Joined(option.words, " ") + ")";
    case ValueKind::File:
        if (option.extensions.empty())
            return "_files";
        return "_files -g \"*.(#i)(" + Joined(option.extensions, "|") + ")\"";
    case ValueKind::Folder:
        return "_files -/";
    case ValueKind::Text:
    case ValueKind::None:
        break;
    }
    return " ";
}

/// "(-o --output)'{-o+,--output=}'[The file]:OUT:_files": each name excludes all of them.
std::string Specification(const OptionDescription& option)
{
    std::string spelled;
    for (const std::string& name : option.names) {
        const bool isLong = name.starts_with("--");
        const char* const before = option.kind == ValueKind::None ? "" : isLong ? "=" : "+";
        spelled += (spelled.empty() ? "" : ",") + name + before;
    }
    const bool isAlone = option.names.size() == 1;
    const std::string others = option.repeatable ? "*" : isAlone ? "" : "(" + Joined(option.names, " ") + ")";
    spelled = isAlone ? "'" + others + spelled : "'" + others + "'{" + spelled + "}'";
    const std::string value =
        option.kind == ValueKind::None ? "" : ":" + option.valueName + ":" + Quoted(ValueAction(option));
    return spelled + "[" + Explanation(option.description) + "]" + value + "'";
}

std::string Specifications(const std::vector<OptionDescription>& options, const std::string& lineStart)
{
    std::string lines;
    for (const OptionDescription& option : options)
        lines += " \\\n" + lineStart + Specification(option);
    return lines;
}

std::string CommandCase(const CommandDescription& command)
{
    std::string text = "        " + command.name + ")\n            _arguments -S";
    text += Specifications(command.options, "                ");
    for (const OptionDescription& argument : command.arguments)
        text += " \\\n                ':" + argument.valueName + ":" + Quoted(ValueAction(argument)) + "'";
    return text + "\n            ;;\n";
}

} // namespace

std::string ZshCompletion(const ProgramDescription& program)
{
    std::string commands;
    std::string cases;
    for (const CommandDescription& command : program.commands) {
        commands += "            '" + command.name + ":" + Quoted(command.description) + "'\n";
        cases += CommandCase(command);
    }
    const std::string function = "_" + program.name;
    return "#compdef " + program.name + "\n\n" + function +
           "()\n{\n    local curcontext=$curcontext state line\n    local -a commands\n    typeset -A opt_args\n"
           "    _arguments -C -S" +
           Specifications(program.options, "        ") +
           " \\\n        '1: :->command' \\\n        '*:: :->arguments'\n"
           "    case $state in\n    command)\n        commands=(\n" +
           commands +
           "        )\n        _describe -t commands command commands\n        ;;\n"
           "    arguments)\n        case $line[1] in\n" +
           cases + "        esac\n        ;;\n    esac\n}\n\n" + "if [ \"$funcstack[1]\" = " + function +
           " ]; then\n    " + function + " \"$@\"\nelse\n    compdef " + function + " " + program.name + "\nfi\n";
}

} // namespace Orvel::Manual
