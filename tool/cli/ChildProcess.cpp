#include "tool/cli/ChildProcess.h"

#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <system_error>

namespace Orvel::Cli
{

namespace
{

/// An exception that the body lets out ends the process like any other crash.
[[noreturn]] void RunInChild(const std::function<int()>& body, pid_t parent) noexcept
{
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    // The parent may have ended before the request.
    std::_Exit(::getppid() == parent ? body() : EXIT_FAILURE);
}

} // namespace

ChildProcess::ChildProcess(const std::function<int()>& body)
{
    const pid_t parent = ::getpid();
    process = ::fork();
    if (process < 0)
        throw std::system_error(errno, std::generic_category(), "cannot start a process");
    if (process == 0)
        RunInChild(body, parent);
}

ChildProcess::~ChildProcess()
{
    Kill();
    WaitForEnd();
}

void ChildProcess::Kill()
{
    if (process > 0)
        ::kill(process, SIGKILL);
}

int ChildProcess::WaitForEnd()
{
    while (process > 0 && ::waitpid(process, &status, 0) < 0 && errno == EINTR) {
    }
    process = -1;
    return status;
}

} // namespace Orvel::Cli
