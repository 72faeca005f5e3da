#include "tool/cli/WorkSurroundings.h"

#include "tool/cli/Console.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <string_view>
#include <system_error>

namespace Orvel::Cli
{

namespace
{

/// The kernel leaves room for a main stack of at least 128 MiB when a program starts, whatever the limit at that time.
constexpr rlim_t StackInBytes = rlim_t{120} << 20;

/// A core dump of 1 byte is the kernel's sign for none, also where dumps are piped into a program; 0 does not stop
/// those.
constexpr rlim_t NoCoreDump = 1;

void SetLimit(__rlimit_resource resource, rlim_t value)
{
    rlimit limit{};
    if (::getrlimit(resource, &limit) == 0) {
        limit.rlim_cur = std::min(value, limit.rlim_max);
        ::setrlimit(resource, &limit);
    }
}

FileDescriptor OpenSink()
{
    return FileDescriptor(HasAddressSanitizer ? ::memfd_create("library output", MFD_CLOEXEC)
                                              : ::open("/dev/null", O_RDWR | O_CLOEXEC));
}

} // namespace

LibraryOutput::LibraryOutput()
    : sink(OpenSink())
{
    if (!sink.IsOpen())
        throw std::system_error(errno, std::generic_category(), "cannot start the work");
}

void LibraryOutput::Redirect() const
{
    ::dup2(sink.Get(), STDOUT_FILENO);
    ::dup2(sink.Get(), STDERR_FILENO);
}

void LibraryOutput::Show() const
{
    if constexpr (HasAddressSanitizer) {
        std::array<char, 4096> buffer{};
        ::lseek(sink.Get(), 0, SEEK_SET);
        for (ssize_t count; (count = ::read(sink.Get(), buffer.data(), buffer.size())) > 0;)
            PrintMessage(std::string_view(buffer.data(), static_cast<std::size_t>(count)));
    }
}

void ApplyToThisProcess(const WorkLimits& limits)
{
    ::signal(SIGPIPE, SIG_IGN);
    ::signal(SIGXFSZ, SIG_IGN);
    SetLimit(RLIMIT_CORE, NoCoreDump);
    SetLimit(RLIMIT_STACK, StackInBytes);
    if (!HasAddressSanitizer && limits.memoryInBytes > 0)
        SetLimit(RLIMIT_DATA, limits.memoryInBytes);
}

} // namespace Orvel::Cli
