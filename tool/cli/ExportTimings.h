#pragma once

#include "tool/cli/CommandListener.h"

#include <vector>

namespace Orvel::Cli
{

/// What the writing of PRC files in this process has taken so far: encode, compress, write.
[[nodiscard]] std::vector<StageTime> TimesOfWriting();

/// The times of an export by short names: import, convert, encode, compress, write, and for a PDF further ones. The
/// last, other, is what the whole took beyond them.
///
/// @param stages  as they were announced.
/// @param writing what TimesOfWriting() gave at the end.
[[nodiscard]] std::vector<StageTime> ExportTimings(const std::vector<StageTime>& stages,
                                                   const std::vector<StageTime>& writing, double totalSeconds);

} // namespace Orvel::Cli
