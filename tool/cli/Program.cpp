#include "tool/cli/Program.h"

#include "tool/cli/CommandLine.h"
#include "tool/cli/Console.h"
#include "tool/cli/ConvertCommand.h"
#include "tool/cli/Errors.h"
#include "tool/cli/ExportCommand.h"
#include "tool/cli/FormatsCommand.h"
#include "tool/cli/InspectCommand.h"
#include "tool/cli/ListCommand.h"
#include "tool/cli/RenderCommand.h"
#include "tool/cli/SignalWatch.h"

#include <fcntl.h>
#include <unistd.h>

#include <csignal>
#include <exception>
#include <new>
#include <variant>

namespace Orvel::Cli
{

namespace
{

enum ExitCode : int
{
    Done = 0,
    WorkFailed = 1,
    WrongUsage = 2
};

/// A file opened while stdout is closed would become stdout and receive what is printed. The stand-ins fail when they
/// are used against their direction, as the closed ones would.
void FillClosedStandardDescriptors()
{
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (::fcntl(descriptor, F_GETFD) < 0) {
            // The lowest free number is this one.
            [[maybe_unused]] const int standIn = ::open("/dev/null", descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY);
        }
    }
}

struct RunCommand
{
    void operator()(const TextRequest& request) const { PrintResult(request.text); }
    void operator()(const ExportOptions& options) const { RunExport(options); }
    void operator()(const ListOptions& options) const { RunList(options); }
    void operator()(const ConvertOptions& options) const { RunConvert(options); }
    void operator()(const InspectOptions& options) const { RunInspect(options); }
    void operator()(const RenderOptions& options) const { RunRender(options); }
    void operator()(const FormatsOptions& options) const { RunFormats(options); }
};

int ReportingErrors(int argumentCount, const char* const* arguments)
{
    try {
        std::visit(RunCommand{}, ParseCommandLine(argumentCount, arguments));
        return Done;
    } catch (const UsageError& error) {
        PrintError(error.what());
        return WrongUsage;
    } catch (const std::bad_alloc&) {
        PrintError("not enough memory");
    } catch (const std::exception& error) {
        PrintError(error.what());
    }
    return WorkFailed;
}

} // namespace

int RunProgram(int argumentCount, const char* const* arguments)
{
    FillClosedStandardDescriptors();
    // A reader of the output that goes away early, and a file that may not grow, are ordinary write errors.
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
    try {
        return ReportingErrors(argumentCount, arguments);
    } catch (const Interrupted& interruption) {
        std::signal(interruption.signal, SIG_DFL);
        std::raise(interruption.signal);
        return WorkFailed;
    }
}

} // namespace Orvel::Cli
