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

/// Prints what a command has made, whose file is in its place by now.
///
/// @param isAskedFor    the user wants just this text: that it cannot be written is a failure, else a warning.
/// @param stdoutIsTaken the result itself went there; the summary goes to stderr.
/// @throws Failure
void PrintSummary(std::string_view text, bool isAskedFor, bool stdoutIsTaken);

} // namespace Orvel::Cli
