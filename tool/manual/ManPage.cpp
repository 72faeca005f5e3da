#include "tool/manual/ManPage.h"

#include "tool/manual/Quoting.h"

#include <cctype>
#include <sstream>
#include <utility>

namespace Orvel::Manual
{

namespace
{

constexpr const char* ExitStatus = R"(.SH "EXIT STATUS"
.TP
0
The work is done.
.TP
1
The work failed. One line on standard error says why; an output that existed before is as it was.
.TP
2
The command line is wrong.
)";

constexpr const char* Surroundings = R"(.PP
Results go to standard output, messages to standard error. Progress is shown on a terminal only. A scene is read in a
process of its own, under limits on time and memory, so that a damaged file cannot take the program down. Equal input
gives equal output, byte for byte.
)";

/// Text as it stands: dashes stay dashes that can be copied, quotes stay straight, nothing becomes a request.
std::string Literal(std::string_view text)
{
    std::string literal;
    for (const char character : text) {
        switch (character) {
        case '\\':
            literal += "\\e";
            break;
        case '-':
            literal += "\\-";
            break;
        case '\'':
            literal += "\\(aq";
            break;
        case '`':
            literal += "\\(ga";
            break;
        case '^':
            literal += "\\(ha";
            break;
        case '~':
            literal += "\\(ti";
            break;
        default:
            literal += character;
        }
    }
    return literal.starts_with('.') ? "\\&" + literal : literal;
}

std::string Bold(std::string_view text)
{
    return "\\fB" + Literal(text) + "\\fR";
}

std::string Italic(std::string_view text)
{
    return "\\fI" + Literal(text) + "\\fR";
}

/// Paragraphs and examples of a command's notes.
class NotesPage
{
public:
    explicit NotesPage(const std::string& notes)
    {
        std::istringstream lines(notes);
        for (std::string line; std::getline(lines, line);)
            AddLine(line);
        SwitchTo(Block::None);
    }

    std::string everything;
    std::string examplesOnly;

private:
    enum class Block
    {
        None,
        Paragraph,
        Example
    };

    void AddLine(const std::string& line)
    {
        if (line.empty())
            return SwitchTo(Block::None);
        const bool isExample = line.starts_with("  ");
        SwitchTo(isExample ? Block::Example : Block::Paragraph);
        const std::string text = Literal(isExample ? line.substr(2) : line) + "\n";
        everything += text;
        if (isExample)
            examplesOnly += text;
    }

    void SwitchTo(Block next)
    {
        if (next == block)
            return;
        if (block == Block::Example)
            everything += ".EE\n.RE\n";
        if (next == Block::Paragraph)
            everything += ".PP\n";
        if (next == Block::Example)
            everything += ".PP\n.RS 4\n.EX\n";
        block = next;
    }

    Block block = Block::None;
};

std::string OptionEntry(const OptionDescription& option)
{
    std::string tag;
    for (const std::string& name : option.names)
        tag += (tag.empty() ? "" : ", ") + Bold(name);
    if (!option.valueName.empty())
        tag += (tag.empty() ? "" : " ") + Italic(option.valueName);
    return ".TP\n" + tag + "\n" + Literal(option.description) + "\n";
}

std::string OptionEntries(const std::vector<OptionDescription>& options)
{
    std::string text;
    std::string group;
    for (const OptionDescription& option : options) {
        if (option.group != group)
            text += ".PP\n" + Bold(option.group) + "\n";
        group = option.group;
        text += OptionEntry(option);
    }
    return text;
}

std::string Usage(const ProgramDescription& program, const CommandDescription& command)
{
    std::string usage = Bold(program.name + " " + command.name);
    if (!command.options.empty())
        usage += " [" + Italic("OPTION") + "]...";
    for (const OptionDescription& argument : command.arguments)
        usage += " " + Italic(argument.valueName);
    return usage;
}

std::string CommandSection(const ProgramDescription& program, const CommandDescription& command)
{
    std::string text = ".SS \"" + Usage(program, command) + "\"\n" + Literal(command.description) + ".\n";
    for (const OptionDescription& argument : command.arguments)
        text += OptionEntry(argument);
    text += OptionEntries(command.options);
    return text + NotesPage(command.notes).everything;
}

/// "Turns scenes around." as it stands behind a name: "turns scenes around".
std::string Purpose(std::string description)
{
    if (!description.empty()) {
        const auto first = static_cast<unsigned char>(description.front());
        description.front() = static_cast<char>(std::tolower(first));
    }
    if (description.ends_with('.'))
        description.pop_back();
    return description;
}

} // namespace

std::string ManPage(const ProgramDescription& program)
{
    std::string title = program.name;
    for (char& character : title)
        character = static_cast<char>(std::toupper(static_cast<unsigned char>(character)));
    std::string page = ".TH " + title + " 1 \"\" \"" + program.name + " " + program.version + "\" \"User Commands\"\n";
    page += ".SH NAME\n" + program.name + " \\- " + Literal(Purpose(program.description)) + "\n";
    page += ".SH SYNOPSIS\n";
    for (const CommandDescription& command : program.commands)
        page += Usage(program, command) + "\n.br\n";
    page += Bold(program.name) + " " + Bold("--help") + " | " + Bold("--version") + "\n";
    page += ".SH DESCRIPTION\n" + Literal(program.description) + "\n" + Surroundings;
    page += ".SH OPTIONS\n";
    page += OptionEntries(program.options);
    page += ".SH COMMANDS\n";
    for (const CommandDescription& command : program.commands)
        page += CommandSection(program, command);
    page += ExitStatus;
    page += ".SH EXAMPLES\n.EX\n" + NotesPage(program.notes).examplesOnly + ".EE\n";
    return page;
}

} // namespace Orvel::Manual
