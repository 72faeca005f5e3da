#pragma once

#include <string_view>

namespace Orvel::Cli
{

/// One line on stderr: "orvelprc: error: TEXT". The text is made safe by OneLine of Text.h. A stderr that cannot be
/// written is nothing that could be told to anybody.
void PrintError(std::string_view text);

/// One line on stderr: "orvelprc: warning: TEXT", as PrintError.
void PrintWarning(std::string_view text);

/// Lines of text on stderr as they are.
void PrintMessage(std::string_view text);

/// Writes a result to stdout.
///
/// @throws Failure when it cannot be written.
void PrintResult(std::string_view text);

} // namespace Orvel::Cli
