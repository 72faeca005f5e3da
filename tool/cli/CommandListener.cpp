#include "tool/cli/CommandListener.h"

#include "tool/cli/Console.h"
#include "tool/cli/Errors.h"
#include "tool/cli/Text.h"

namespace Orvel::Cli
{

CommandListener::CommandListener(bool beQuiet)
    : quiet(beQuiet)
    , progress(beQuiet ? Progress::Visibility::Never : Progress::Visibility::OnTerminal)
{}

void CommandListener::Stage(const std::string& begun)
{
    EndStage();
    stage = begun;
    stageStart = Clock::now();
    progress.SetStage(begun);
}

void CommandListener::EndStage()
{
    if (!stage.empty())
        stages.push_back({stage, std::chrono::duration<double>(Clock::now() - stageStart).count()});
    stage.clear();
}

void CommandListener::Warning(const std::string& text)
{
    if (!quiet) {
        progress.Hide();
        PrintWarning(text);
    }
    warnings.push_back(text);
}

void CommandListener::Tick(std::chrono::milliseconds sinceStart)
{
    progress.Show(sinceStart);
}

void CommandListener::EndProgress()
{
    EndStage();
    progress.Hide();
}

void SendWarnings(const WorkReporter& reporter, const std::vector<std::string>& warnings, bool strict)
{
    for (const std::string& warning : warnings)
        reporter.Warning(warning);
    if (strict && !warnings.empty())
        throw Failure(Count(warnings.size(), "warning", "warnings") + ", the first: " + warnings.front());
}

} // namespace Orvel::Cli
