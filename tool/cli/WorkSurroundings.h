#pragma once

#include "tool/cli/FileDescriptor.h"
#include "tool/cli/WorkLimits.h"

namespace Orvel::Cli
{

/// True in a build with AddressSanitizer, which reserves more address space than any limit would leave.
#if defined(__SANITIZE_ADDRESS__)
inline constexpr bool HasAddressSanitizer = true;
#else
inline constexpr bool HasAddressSanitizer = false;
#endif

/// What the libraries of a working process print: nothing that the user should see. Sanitizer builds keep it, since the
/// report of a fault goes the same way.
class LibraryOutput
{
public:
    /// @throws std::system_error when the system has no descriptor left.
    LibraryOutput();

    /// In the working process: sends its stdout and stderr here.
    void Redirect() const;

    /// In the process that waits: shows what was kept.
    void Show() const;

private:
    FileDescriptor sink;
};

/// In the working process: memory, stack, core dumps, and the signals that the system sends for broken pipes and full
/// files, which become plain errors.
void ApplyToThisProcess(const WorkLimits& limits);

} // namespace Orvel::Cli
