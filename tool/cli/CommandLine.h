#pragma once

#include "tool/cli/ConvertCommand.h"
#include "tool/cli/ExportOptions.h"
#include "tool/cli/FormatsCommand.h"
#include "tool/cli/InspectCommand.h"
#include "tool/cli/ListCommand.h"
#include "tool/cli/RenderCommand.h"

#include <string>
#include <variant>

namespace Orvel::Cli
{

/// A text that was asked for: help or version. Printing it is all there is to do.
struct TextRequest
{
    std::string text;
};

/// What the program is asked to do: one alternative for each command.
using Command = std::variant<TextRequest, ExportOptions, ListOptions, InspectOptions, ConvertOptions, RenderOptions,
                             FormatsOptions>;

/// Reads the command line.
///
/// @param arguments as main has them, the program's name first.
/// @throws UsageError when it asks for nothing that the program knows.
[[nodiscard]] Command ParseCommandLine(int argumentCount, const char* const* arguments);

} // namespace Orvel::Cli
