#pragma once

#include <sys/types.h>

#include <functional>

namespace Orvel::Cli
{

/// A copy of this process that runs one function. It does not outlive its owner: neither this object nor the process
/// that made it.
class ChildProcess
{
public:
    /// Starts the copy.
    ///
    /// @param body what the copy does. It ends with the function's result as its exit code, without running destructors
    ///             or exit handlers: what the two processes share is left to this one.
    /// @throws std::system_error when no process can be made.
    explicit ChildProcess(const std::function<int()>& body);

    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    /// Kills the copy when it still runs.
    ~ChildProcess();

    void Kill();

    /// Waits for the end of the copy.
    ///
    /// @return its wait status, for WIFSIGNALED and the like.
    int WaitForEnd();

private:
    pid_t process = -1; ///< -1 after its end
    int status = 0;
};

} // namespace Orvel::Cli
