#pragma once

#include "tool/cli/Progress.h"
#include "tool/cli/Supervisor.h"

#include <chrono>
#include <string>
#include <vector>

namespace Orvel::Cli
{

/// How long a stage of a command's work took, by the clock on the wall.
struct StageTime
{
    std::string stage; ///< as it was announced
    double seconds = 0.0;
};

/// Shows progress and warnings of a command's work while it goes on, and keeps the warnings.
class CommandListener final : public WorkListener
{
public:
    /// @param beQuiet show nothing.
    explicit CommandListener(bool beQuiet);

    void Stage(const std::string& begun) override;
    void Warning(const std::string& text) override;
    void Tick(std::chrono::milliseconds sinceStart) override;

    /// Takes the line with the progress away; the last stage is over.
    void EndProgress();

    std::vector<std::string> warnings;
    std::vector<StageTime> stages; ///< that are over, in their order

private:
    using Clock = std::chrono::steady_clock;

    void EndStage();

    bool quiet;
    std::string stage; ///< empty before the first, and after the last
    Clock::time_point stageStart;
    Progress progress;
};

/// In the working process: hands warnings to the process that waits.
///
/// @throws Failure when there are any and `strict` says that there must be none.
void SendWarnings(const WorkReporter& reporter, const std::vector<std::string>& warnings, bool strict);

} // namespace Orvel::Cli
