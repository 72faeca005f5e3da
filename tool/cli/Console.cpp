#include "tool/cli/Console.h"

#include "tool/cli/Errors.h"
#include "tool/cli/Text.h"

#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <system_error>

namespace Orvel::Cli
{

namespace
{

/// @return false when not all of the text could be written; errno says why.
bool WriteAll(int descriptor, std::string_view text)
{
    while (!text.empty()) {
        const ssize_t written = ::write(descriptor, text.data(), text.size());
        if (written >= 0) {
            text.remove_prefix(static_cast<std::size_t>(written));
        } else if (errno == EAGAIN) {
            // Another program that shares the terminal or pipe has made it non-blocking.
            pollfd writable{descriptor, POLLOUT, 0};
            ::poll(&writable, 1, -1);
        } else if (errno != EINTR) {
            return false;
        }
    }
    return true;
}

void PrintLine(std::string_view kind, std::string_view text)
{
    // One call for the whole line: lines of programs that run side by side do not mix.
    PrintMessage("orvelprc: " + std::string(kind) + ": " + OneLine(text) + "\n");
}

} // namespace

void PrintError(std::string_view text)
{
    PrintLine("error", text);
}

void PrintWarning(std::string_view text)
{
    PrintLine("warning", text);
}

void PrintMessage(std::string_view text)
{
    WriteAll(STDERR_FILENO, text);
}

void PrintResult(std::string_view text)
{
    if (!WriteAll(STDOUT_FILENO, text))
        throw Failure("cannot write to standard output: " + std::generic_category().message(errno));
}

void PrintSummary(std::string_view text, bool isAskedFor, bool stdoutIsTaken)
{
    if (stdoutIsTaken) {
        PrintMessage(text);
        return;
    }
    try {
        PrintResult(text);
    } catch (const Failure& failure) {
        if (isAskedFor)
            throw;
        PrintWarning(failure.what());
    }
}

} // namespace Orvel::Cli
