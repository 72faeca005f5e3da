#include "tool/cli/StreamTarget.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <optional>
#include <system_error>
#include <utility>
#include <vector>

namespace Orvel::Cli
{

namespace
{

constexpr std::size_t BufferSize = std::size_t{1} << 20;
constexpr std::chrono::milliseconds RetryInterval{50};

/// How much can be written at once to a stream that is ready without waiting in the call, where no signal is noticed.
std::size_t PieceSizeFor(int stream)
{
    struct stat status
    {};
    return ::fstat(stream, &status) == 0 && S_ISREG(status.st_mode) ? BufferSize : std::size_t{PIPE_BUF};
}

/// Leaves errno as it was.
bool IsNamedPipe(const std::string& name)
{
    const int error = errno;
    struct stat status
    {};
    const bool isPipe = ::stat(name.c_str(), &status) == 0 && S_ISFIFO(status.st_mode);
    errno = error;
    return isPipe;
}

} // namespace

StreamTarget::StreamTarget(std::string targetName, const std::filesystem::path& temporary, std::string_view extension)
    : name(std::move(targetName))
    , fileToWrite((temporary / "output").string().append(extension))
{}

std::uint64_t StreamTarget::Deliver(const SignalWatch& signals)
{
    const FileDescriptor source(::open(fileToWrite.c_str(), O_RDONLY | O_CLOEXEC));
    if (!source.IsOpen())
        throw CannotWrite(name, std::generic_category().message(errno));
    const FileDescriptor stream = OpenStream(signals);
    const std::size_t pieceSize = PieceSizeFor(stream.Get());
    std::vector<char> buffer(BufferSize);
    std::uint64_t size = 0;
    ssize_t count = 0;
    while ((count = ::read(source.Get(), buffer.data(), buffer.size())) > 0) {
        Write(stream.Get(), {buffer.data(), static_cast<std::size_t>(count)}, pieceSize, signals);
        size += static_cast<std::uint64_t>(count);
    }
    if (count < 0)
        throw CannotWrite(name, std::generic_category().message(errno));
    return size;
}

FileDescriptor StreamTarget::OpenStream(const SignalWatch& signals) const
{
    if (IsStandardOutput())
        return FileDescriptor(::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 0));
    // A named pipe that nobody reads yet would hold a plain open() for ever.
    constexpr int Flags = O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
    FileDescriptor stream(::open(name.c_str(), Flags));
    while (!stream.IsOpen() && errno == ENXIO && IsNamedPipe(name)) {
        signals.Wait(-1, 0, RetryInterval);
        stream = FileDescriptor(::open(name.c_str(), Flags));
    }
    if (!stream.IsOpen())
        throw CannotWrite(name, std::generic_category().message(errno));
    return stream;
}

void StreamTarget::Write(int stream, std::string_view bytes, std::size_t pieceSize, const SignalWatch& signals) const
{
    while (!bytes.empty()) {
        signals.Wait(stream, POLLOUT, std::nullopt);
        const ssize_t written = ::write(stream, bytes.data(), std::min(bytes.size(), pieceSize));
        if (written >= 0)
            bytes.remove_prefix(static_cast<std::size_t>(written));
        else if (errno != EINTR && errno != EAGAIN)
            throw CannotWrite(name, std::generic_category().message(errno));
    }
}

} // namespace Orvel::Cli
