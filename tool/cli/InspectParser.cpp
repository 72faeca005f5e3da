#include "tool/cli/CommandParsers.h"
#include "tool/cli/OptionParsing.h"

#include <CLI/CLI.hpp>

#include <memory>
#include <utility>

namespace Orvel::Cli
{

namespace
{

constexpr const char* InspectExamples = R"(Examples:
  orvelprc inspect chair.prc
  orvelprc inspect chair.prc --tree
  orvelprc inspect chair.prc --json | jq .trianglesStored
  orvelprc inspect manual.pdf --stream 2

A damaged file is told as far as it can be read; warnings say what is missing.)";

} // namespace

void AddInspectCommand(CLI::App& program, Command& chosen)
{
    const auto options = std::make_shared<InspectOptions>();
    CLI::App& command =
        *program.add_subcommand("inspect", "Tell what is inside a PRC file, or a PDF with one")->group("Commands");
    command.footer(InspectExamples);
    AddModelInputOptions(command, options->input);
    command.add_flag("--json", options->json, "Print the report as JSON");
    command.add_flag("--tree", options->tree, "Tell of the tree and its meshes only");
    command.add_flag("--materials", options->materials, "Tell of materials and textures only");
    command.add_flag("--sections", options->sections, "Tell of the file's sections only");
    AddLimitOptions(command, options->limits);
    command.callback([options, &chosen] { chosen = std::move(*options); });
}

} // namespace Orvel::Cli
