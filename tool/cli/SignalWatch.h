#pragma once

#include "tool/cli/FileDescriptor.h"

#include <chrono>
#include <csignal>
#include <optional>

namespace Orvel::Cli
{

/// A signal asked the program to end. Passes through every owner of something temporary up to the main function, which
/// then ends the program by that signal. Deliberately no std::exception: nobody turns it into a message.
struct Interrupted
{
    int signal = 0;
};

/// While an object of this class lives, the signals that ask a program to end (interrupt, quit, terminate, hang-up) do
/// not end it at once but turn up as `Interrupted` from Wait. Signals that the program was started to ignore stay
/// ignored. One object at a time, in a process with one thread.
class SignalWatch
{
public:
    using Milliseconds = std::chrono::milliseconds;

    /// @throws std::system_error when the system has no descriptor left.
    SignalWatch();
    SignalWatch(const SignalWatch&) = delete;
    SignalWatch& operator=(const SignalWatch&) = delete;

    /// Signals that came in and were never waited for take effect here.
    ~SignalWatch();

    /// Waits until a descriptor is ready.
    ///
    /// @param descriptor may be -1: only signals and the time end the wait.
    /// @param events     POLLIN or POLLOUT.
    /// @param limit      nothing: without limit.
    /// @return true when the descriptor is ready, at its end or broken; false when the time is over.
    /// @throws Interrupted when a signal has come in.
    bool Wait(int descriptor, short events, std::optional<Milliseconds> limit) const;

    /// For a child process that inherited the watch: gives the signals their plain effect again.
    void EndInChild() const;

private:
    sigset_t previousMask{};
    FileDescriptor signals;
};

} // namespace Orvel::Cli
