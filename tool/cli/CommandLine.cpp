#include "tool/cli/CommandLine.h"

#include "tool/cli/CommandParsers.h"
#include "tool/cli/Errors.h"
#include "tool/cli/Version.h"

#include <CLI/CLI.hpp>

#include <string>
#include <vector>

namespace Orvel::Cli
{

namespace
{

constexpr const char* ProgramExamples = R"(Examples:
  orvelprc export chair.glb -o chair.prc
  orvelprc convert chair.prc -o chair.glb
  orvelprc inspect chair.prc
  orvelprc render chair.glb -o chair.png
  orvelprc formats

'orvelprc COMMAND --help' tells about one command.
Exit codes: 0 done, 1 failed, 2 wrong usage.)";

/// @param error what the option parser found wrong.
UsageError UsageErrorFor(const CLI::App& program, const CLI::ParseError& error)
{
    const std::vector<CLI::App*> commands = program.get_subcommands();
    if (!commands.empty())
        return UsageError(std::string(error.what()) + " (see 'orvelprc " + commands.front()->get_name() + " --help')");
    // The parser misses a command before it looks at the words that it did not understand.
    const std::vector<std::string> unknown = program.remaining();
    return UsageError((unknown.empty() ? "a command is missing" : "there is no command '" + unknown.front() + "'") +
                      " (see 'orvelprc --help')");
}

} // namespace

Command ParseCommandLine(int argumentCount, const char* const* arguments)
{
    Command chosen;
    CLI::App program("Turns 3D scenes into PRC (ISO 14739-1), the 3D format inside PDF, and back.", "orvelprc");
    program.footer(ProgramExamples);
    program.set_version_flag("--version", "orvelprc " + VersionWithRevision(), "Print the version and end");
    program.require_subcommand(1);
    program.get_formatter()->column_width(28);
    program.get_formatter()->label("SUBCOMMAND", "COMMAND");
    AddExportCommand(program, chosen);
    AddConvertCommand(program, chosen);
    AddInspectCommand(program, chosen);
    AddRenderCommand(program, chosen);
    AddFormatsCommand(program, chosen);
    AddCompletionCommand(program, chosen);
    AddManPageCommand(program, chosen);
    try {
        program.parse(argumentCount, arguments);
    } catch (const CLI::CallForVersion& version) {
        return TextRequest{std::string(version.what()) + "\n"};
    } catch (const CLI::CallForHelp&) {
        return TextRequest{program.help()};
    } catch (const CLI::ParseError& error) {
        throw UsageErrorFor(program, error);
    }
    return chosen;
}

} // namespace Orvel::Cli
