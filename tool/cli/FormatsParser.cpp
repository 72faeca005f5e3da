#include "tool/cli/CommandParsers.h"
#include "tool/cli/OptionParsing.h"

#include <CLI/CLI.hpp>

#include <memory>

namespace Orvel::Cli
{

namespace
{

constexpr const char* FormatsExamples = R"(Examples:
  orvelprc formats
  orvelprc formats --json)";

} // namespace

void AddFormatsCommand(CLI::App& program, Command& chosen)
{
    const auto options = std::make_shared<FormatsOptions>();
    CLI::App& command = *program.add_subcommand("formats", "List what can be read and written")->group("Commands");
    command.footer(FormatsExamples);
    command.add_flag("--json", options->json, "Print the list as JSON");
    command.callback([options, &chosen] { chosen = *options; });
}

} // namespace Orvel::Cli
