#pragma once

#include "tool/cli/PdfOptions.h"

namespace CLI
{
class App;
}

namespace Orvel::Cli
{

/// Adds the options of PDF output to a command.
///
/// @param options not owned; set while the program parses.
void AddPdfOptions(CLI::App& command, PdfOptions& options);

/// Completes what was parsed.
///
/// @throws UsageError for options that do not fit together.
void FinishPdfOptions(PdfOptions& options);

/// @throws UsageError when an option of PDF output is given.
void RefusePdfOptions(const CLI::App& command);

} // namespace Orvel::Cli
