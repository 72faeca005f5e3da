#include "tool/cli/Supervisor.h"

#include "tool/cli/ChildProcess.h"
#include "tool/cli/Errors.h"
#include "tool/cli/Text.h"
#include "tool/cli/WorkSurroundings.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <exception>
#include <new>
#include <optional>
#include <system_error>
#include <utility>
#include <vector>

namespace Orvel::Cli
{

namespace
{

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr milliseconds TickInterval{200};

struct Pipe
{
    FileDescriptor readEnd;
    FileDescriptor writeEnd;
};

Pipe OpenPipe()
{
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0)
        throw std::system_error(errno, std::generic_category(), "cannot start the work");
    return {FileDescriptor(ends[0]), FileDescriptor(ends[1])};
}

void CloseStandardInput()
{
    const FileDescriptor empty(::open("/dev/null", O_RDONLY | O_CLOEXEC));
    ::dup2(empty.Get(), STDIN_FILENO);
}

/// The whole life of the working process.
int DoWork(const Work& work, const WorkReporter& reporter)
{
    try {
        reporter.Result(work(reporter));
    } catch (const std::bad_alloc&) {
        reporter.OutOfMemory();
    } catch (const std::exception& error) {
        reporter.Failure(error.what());
    }
    return 0;
}

/// The time that the work has had. Waits that took far longer than asked for do not count in full: the program was
/// suspended, and the working process with it.
class WorkClock
{
public:
    milliseconds Advance()
    {
        const auto now = Clock::now();
        const auto passed = std::chrono::duration_cast<milliseconds>(now - last);
        if (passed.count() > 0) {
            last = now;
            total += std::min(passed, 5 * TickInterval);
        }
        return total;
    }

private:
    Clock::time_point last = Clock::now();
    milliseconds total{0};
};

/// Listens to one working process until it is done.
class Supervision
{
public:
    Supervision(const WorkLimits& workLimits, WorkListener& workListener)
        : limits(workLimits)
        , listener(workListener)
    {}

    /// Reads the pipe until its other end is closed, the time is over or the messages make no sense.
    void Listen(int pipe, const SignalWatch& signals)
    {
        for (WorkClock clock; !finished;) {
            const bool readable = signals.Wait(pipe, POLLIN, TickInterval);
            const milliseconds elapsed = clock.Advance();
            if (readable)
                Receive(pipe);
            listener.Tick(elapsed);
            if (limits.time.count() > 0 && elapsed > limits.time && !finished) {
                throw Failure("took longer than " + ShortestText(static_cast<double>(limits.time.count()) / 1000.0) +
                              " s" + While() + " (--time-limit raises the limit)");
            }
        }
    }

    /// @param status of the ended process.
    nlohmann::json TakeResult(int status)
    {
        if (outcome.contains("result"))
            return std::move(outcome["result"]);
        if (outcome.contains("failure") && outcome["failure"].is_string())
            throw Failure(outcome["failure"].get<std::string>());
        if (outcome.contains("outOfMemory"))
            throw Failure("not enough memory" + While() + " (--memory-limit raises the limit)");
        throw Failure(Death(status));
    }

    [[nodiscard]] bool HasOutcome() const { return !outcome.is_null(); }

private:
    void Receive(int pipe)
    {
        buffer.resize(std::size_t{1} << 16);
        const ssize_t count = ::read(pipe, buffer.data(), buffer.size());
        if (count <= 0) {
            finished = count == 0 || errno != EINTR;
            return;
        }
        auto arrived = messages.Take(std::string_view(buffer.data(), static_cast<std::size_t>(count)));
        finished = !arrived;
        if (arrived)
            for (nlohmann::json& message : *arrived)
                Handle(message);
    }

    void Handle(nlohmann::json& message)
    {
        if (message.contains("stage") && message["stage"].is_string()) {
            stage = message["stage"].get<std::string>();
            listener.Stage(stage);
        } else if (message.contains("warning") && message["warning"].is_string()) {
            listener.Warning(message["warning"].get<std::string>());
        } else {
            outcome = std::move(message);
        }
    }

    [[nodiscard]] std::string While() const { return stage.empty() ? std::string() : " while " + stage; }

    [[nodiscard]] std::string Death(int status) const
    {
        if (!WIFSIGNALED(status))
            return "ended unexpectedly" + While() + " (exit code " + std::to_string(WEXITSTATUS(status)) + ")";
        const int signal = WTERMSIG(status);
        // Nobody else sends this one: a system that runs out of memory does.
        const char* const advice = signal == SIGKILL ? ", perhaps for lack of memory" : "";
        return "crashed" + While() + " (" + ::strsignal(signal) + advice + ")";
    }

    const WorkLimits& limits;
    WorkListener& listener;
    WorkMessages messages;
    std::vector<char> buffer;
    std::string stage;
    nlohmann::json outcome; ///< the last message; null until it is there
    bool finished = false;
};

} // namespace

nlohmann::json RunSupervised(const Work& work, const WorkLimits& limits, const SignalWatch& signals,
                             WorkListener& listener)
{
    Pipe pipe = OpenPipe();
    const LibraryOutput libraryOutput;
    ChildProcess child([&] {
        signals.EndInChild();
        pipe.readEnd.Close();
        CloseStandardInput();
        libraryOutput.Redirect();
        ApplyToThisProcess(limits);
        return DoWork(work, WorkReporter(pipe.writeEnd.Get()));
    });
    pipe.writeEnd.Close();

    Supervision supervision(limits, listener);
    supervision.Listen(pipe.readEnd.Get(), signals);
    if (!supervision.HasOutcome()) {
        // It is ending already, or its messages made no sense and it may go on for ever.
        child.Kill();
    }
    const int status = child.WaitForEnd();
    if (!supervision.HasOutcome())
        libraryOutput.Show();
    return supervision.TakeResult(status);
}

} // namespace Orvel::Cli
