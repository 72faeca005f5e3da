#include "tool/cli/SignalWatch.h"

#include <poll.h>
#include <sys/signalfd.h>

#include <array>
#include <cerrno>
#include <system_error>

namespace Orvel::Cli
{

namespace
{

constexpr std::array EndingSignals{SIGINT, SIGQUIT, SIGTERM, SIGHUP};

bool IsIgnored(int signal)
{
    struct sigaction action
    {};
    return ::sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

} // namespace

SignalWatch::SignalWatch()
{
    sigset_t watched;
    ::sigemptyset(&watched);
    for (const int signal : EndingSignals) {
        // A blocked signal is delivered to the descriptor even when it is ignored (nohup, jobs in the background).
        if (!IsIgnored(signal))
            ::sigaddset(&watched, signal);
    }
    signals = FileDescriptor(::signalfd(-1, &watched, SFD_CLOEXEC | SFD_NONBLOCK));
    if (!signals.IsOpen())
        throw std::system_error(errno, std::generic_category(), "signalfd");
    ::sigprocmask(SIG_BLOCK, &watched, &previousMask);
}

SignalWatch::~SignalWatch()
{
    ::sigprocmask(SIG_SETMASK, &previousMask, nullptr);
}

bool SignalWatch::Wait(int descriptor, short events, std::optional<Milliseconds> limit) const
{
    std::array<pollfd, 2> waiting{{{descriptor, events, 0}, {signals.Get(), POLLIN, 0}}};
    const int ready = ::poll(waiting.data(), waiting.size(), limit ? static_cast<int>(limit->count()) : -1);
    if (ready < 0 && errno != EINTR)
        throw std::system_error(errno, std::generic_category(), "poll");
    signalfd_siginfo information{};
    if (ready > 0 && waiting[1].revents != 0 &&
        ::read(signals.Get(), &information, sizeof information) == sizeof information)
        throw Interrupted{static_cast<int>(information.ssi_signo)};
    return ready > 0 && waiting[0].revents != 0;
}

void SignalWatch::EndInChild() const
{
    ::sigprocmask(SIG_SETMASK, &previousMask, nullptr);
}

} // namespace Orvel::Cli
