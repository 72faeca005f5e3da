#pragma once

#include "tool/cli/ExportOptions.h"

namespace Orvel::Cli
{

/// Reads a scene and writes it as PRC, or as a PDF with PRC inside, in a supervised process; prints warnings and the
/// summary.
///
/// @throws Failure when there is no result; then nothing was changed. Interrupted when the program was asked to end.
void RunExport(const ExportOptions& options);

} // namespace Orvel::Cli
