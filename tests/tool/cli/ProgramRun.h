#pragma once

#include "tests/support/TemporaryFolder.h"

#include <sys/types.h>

#include <string>
#include <vector>

namespace Orvel::Test
{

/// How a run of orvelprc ended.
struct ProgramResult
{
    int exitCode = -1; ///< -1: ended by a signal
    int signal = 0;    ///< 0: ended by itself
    std::string out;   ///< what it wrote to stdout
    std::string err;   ///< what it wrote to stderr
};

/// A run of orvelprc with a temporary folder of its own and stdout and stderr in files.
class ProgramRun
{
public:
    /// Starts the program.
    ///
    /// @param arguments without the program's name.
    /// @param folder    becomes its working folder.
    /// @param stdoutTo  file that becomes its stdout; empty: one of this object's.
    ProgramRun(const std::vector<std::string>& arguments, const TemporaryFolder& folder,
               const std::string& stdoutTo = {});
    ProgramRun(const ProgramRun&) = delete;
    ProgramRun& operator=(const ProgramRun&) = delete;
    ~ProgramRun();

    [[nodiscard]] pid_t Process() const { return process; }

    /// The process that does the work, once there is one.
    [[nodiscard]] pid_t WaitForWorker() const;

    /// Waits for the end of the program; expects that nothing temporary is left.
    [[nodiscard]] ProgramResult Wait();

private:
    TemporaryFolder own;
    TemporaryFolder temporary;
    pid_t process = -1;
};

/// Runs the program to its end.
[[nodiscard]] ProgramResult RunProgram(const std::vector<std::string>& arguments, const TemporaryFolder& folder);

} // namespace Orvel::Test
