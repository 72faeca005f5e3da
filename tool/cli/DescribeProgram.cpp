#include "tool/cli/DescribeProgram.h"

#include "tool/cli/FormatsCommand.h"
#include "tool/cli/ValueHints.h"
#include "tool/cli/Version.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <set>
#include <string>
#include <utility>

namespace Orvel::Cli
{

namespace
{

using Manual::CommandDescription;
using Manual::OptionDescription;
using Manual::ProgramDescription;
using Manual::ValueKind;

constexpr const char* PlainGroup = "Options";

/// By the names that values have in the help.
ValueKind KindOf(const std::string& valueName, const ValueHints& hints)
{
    static const std::set<std::string> files{"FILE", "OUT", "PICTURE", "SCENE"};
    if (!hints.words.empty())
        return ValueKind::Word;
    if (files.contains(valueName) || hints.scenes || !hints.extensions.empty())
        return ValueKind::File;
    return valueName == "FOLDER" ? ValueKind::Folder : ValueKind::Text;
}

OptionDescription DescribeOption(CLI::Option& option)
{
    OptionDescription described;
    for (const std::string& name : option.get_snames())
        described.names.push_back("-" + name);
    for (const std::string& name : option.get_lnames())
        described.names.push_back("--" + name);
    described.description = option.get_description();
    if (option.get_group() != PlainGroup)
        described.group = option.get_group();
    if (option.get_items_expected_max() == 0)
        return described;
    ValueHints hints = HintsOf(option);
    described.valueName = option.get_positional() ? option.get_name(true) : option.get_type_name();
    described.kind = KindOf(described.valueName, hints);
    described.repeatable = option.get_items_expected_max() > 1;
    described.words = std::move(hints.words);
    described.extensions = std::move(hints.extensions);
    if (hints.scenes) {
        for (const Import::SceneFormat& format : ReadableFormats())
            described.extensions.insert(described.extensions.end(), format.extensions.begin(), format.extensions.end());
        // Several formats claim .xml.
        std::sort(described.extensions.begin(), described.extensions.end());
        const auto last = std::unique(described.extensions.begin(), described.extensions.end());
        described.extensions.erase(last, described.extensions.end());
    }
    return described;
}

CommandDescription DescribeCommand(CLI::App& command)
{
    CommandDescription described{command.get_name(), command.get_description(), command.get_footer(), {}, {}};
    for (CLI::Option* const option : command.get_options()) {
        if (!option->get_group().empty())
            (option->get_positional() ? described.arguments : described.options).push_back(DescribeOption(*option));
    }
    return described;
}

} // namespace

ProgramDescription DescribeProgram(CLI::App& program)
{
    CommandDescription itself = DescribeCommand(program);
    ProgramDescription described{std::move(itself.name),        Version(),
                                 std::move(itself.description), std::move(itself.notes),
                                 std::move(itself.options),     {}};
    const auto isShown = [](const CLI::App* command) { return !command->get_group().empty(); };
    for (CLI::App* const command : program.get_subcommands(isShown))
        described.commands.push_back(DescribeCommand(*command));
    return described;
}

} // namespace Orvel::Cli
