#pragma once

#include "tool/manual/ProgramDescription.h"

namespace CLI
{
class App;
}

namespace Orvel::Cli
{

/// All that the help shows, and what a shell may offer as values; hidden commands and options are left out.
[[nodiscard]] Manual::ProgramDescription DescribeProgram(CLI::App& program);

} // namespace Orvel::Cli
