#pragma once

namespace Orvel::Cli
{

/// The whole program: 0 done, 1 the work failed, 2 wrong usage. Whatever goes wrong is one line on stderr. A signal
/// that asked the program to end does end it, after everything temporary has been removed.
[[nodiscard]] int RunProgram(int argumentCount, const char* const* arguments);

} // namespace Orvel::Cli
