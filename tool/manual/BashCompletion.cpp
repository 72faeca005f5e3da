#include "tool/manual/Completion.h"
#include "tool/manual/Quoting.h"

namespace Orvel::Manual
{

namespace
{

// @P@ stands for the program's name. Bash hands over "--format=glb" as three words, where readline has = as a boundary.
constexpr const char* Functions = R"(# bash completion for @P@

_@P@_words()
{
    mapfile -t COMPREPLY < <(compgen -W "$*" -- "$current")
}

# _@P@_names ACTION: names of files (-f) or folders (-d). Quotes and backslashes of what was typed are no part of them;
# readline puts them back.
_@P@_names()
{
    local typed=${current#[\"\']}
    compopt -o filenames 2>/dev/null
    mapfile -t COMPREPLY < <(compgen "$1" -- "${typed//\\/}")
}

# _@P@_files [EXTENSION...]: files with one of the extensions, and folders; any file where there is none of them.
_@P@_files()
{
    local name extension
    local -a fitting=()
    _@P@_names -f
    for name in "${COMPREPLY[@]}"; do
        extension=${name##*.}
        if [[ -d ${name/#\~\//$HOME/} || " $* " == *" ${extension,,} "* ]]; then
            fitting+=("$name")
        fi
    done
    if [[ $# -gt 0 && ${#fitting[@]} -gt 0 ]]; then
        COMPREPLY=("${fitting[@]}")
    fi
}

_@P@()
{
    local current=${COMP_WORDS[COMP_CWORD]} option=${COMP_WORDS[COMP_CWORD-1]} command= word
    if [ "$current" = "=" ]; then
        current=
    elif [ "$option" = "=" ]; then
        option=${COMP_WORDS[COMP_CWORD-2]}
    fi
    COMPREPLY=()
    for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
        if [[ $word != -* ]]; then
            command=$word
            break
        fi
    done
)";

std::string ValueAction(const std::string& program, const OptionDescription& option)
{
    switch (option.kind) {
    case ValueKind::Word:
        return "_" + program + "_words " + Joined(option.words, " ") + "; return";
    case ValueKind::File:
        return "_" + program + "_files" + (option.extensions.empty() ? "" : " ") + Joined(option.extensions, " ") +
               "; return";
    case ValueKind::Folder:
        return "_" + program + "_names -d; return";
    case ValueKind::Text:
    case ValueKind::None:
        break;
    }
    return "return";
}

std::string OptionNames(const std::vector<OptionDescription>& options)
{
    std::string names;
    for (const OptionDescription& option : options)
        names += (names.empty() ? "" : " ") + Joined(option.names, " ");
    return names;
}

/// The value of the option before the word.
std::string ValueCases(const ProgramDescription& program)
{
    std::string cases;
    for (const CommandDescription& command : program.commands) {
        for (const OptionDescription& option : command.options) {
            if (option.kind == ValueKind::None)
                continue;
            std::string pattern;
            for (const std::string& name : option.names)
                pattern += (pattern.empty() ? "'" : " | '") + command.name + " " + name + "'";
            cases += "    " + pattern + ") " + ValueAction(program.name, option) + " ;;\n";
        }
    }
    return "    case \"$command $option\" in\n" + cases + "    esac\n";
}

/// Options, where the word begins like one, else the command or its arguments.
std::string WordCases(const ProgramDescription& program)
{
    const std::string words = "_" + program.name + "_words ";
    std::string commands;
    std::string cases;
    for (const CommandDescription& command : program.commands) {
        commands += " " + command.name;
        cases += "    '" + command.name + " -'*) " + words + OptionNames(command.options) + " ;;\n";
        for (const OptionDescription& argument : command.arguments)
            cases += "    '" + command.name + " '*) " + ValueAction(program.name, argument) + " ;;\n";
    }
    return "    case \"$command $current\" in\n" + cases + "    ' -'*) " + words + OptionNames(program.options) +
           " ;;\n    ' '*)" + " _" + program.name + "_words" + commands + " ;;\n    esac\n";
}

} // namespace

std::string BashCompletion(const ProgramDescription& program)
{
    return Replaced(Functions, "@P@", program.name) + ValueCases(program) + WordCases(program) + "}\n\ncomplete -F _" +
           program.name + " " + program.name + "\n";
}

} // namespace Orvel::Manual
