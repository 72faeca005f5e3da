#pragma once

#include "tool/cli/CommandLine.h"

namespace CLI
{
class App;
}

namespace Orvel::Cli
{

/// Each of these adds a command to the program's command line, in a file of its own.
///
/// @param chosen not owned; set while the program parses, when the command is the one that was given. A combination
///               that means nothing ends parsing with a UsageError.
void AddExportCommand(CLI::App& program, Command& chosen);
void AddConvertCommand(CLI::App& program, Command& chosen);
void AddInspectCommand(CLI::App& program, Command& chosen);
void AddRenderCommand(CLI::App& program, Command& chosen);
void AddFormatsCommand(CLI::App& program, Command& chosen);
/// Describes what the program has by then when it is given: options and commands that were added later as well.
void AddCompletionCommand(CLI::App& program, Command& chosen);
/// The help does not show it: whoever installs the program needs it.
void AddManPageCommand(CLI::App& program, Command& chosen);

} // namespace Orvel::Cli
