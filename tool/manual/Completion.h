#pragma once

#include "tool/manual/ProgramDescription.h"

#include <string>

namespace Orvel::Manual
{

/// Scripts that teach a shell to complete commands, options, their values, and names of files that fit.

/// Needs bash 4.2 or later and no other package.
[[nodiscard]] std::string BashCompletion(const ProgramDescription& program);

/// To be stored as "_" and the program's name in a folder of $fpath.
[[nodiscard]] std::string ZshCompletion(const ProgramDescription& program);

/// Needs fish 3.2 or later.
[[nodiscard]] std::string FishCompletion(const ProgramDescription& program);

} // namespace Orvel::Manual
