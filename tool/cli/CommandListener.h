#pragma once

#include "tool/cli/Progress.h"
#include "tool/cli/Supervisor.h"

#include <chrono>
#include <string>
#include <vector>

namespace Orvel::Cli
{

/// Shows progress and warnings of a command's work while it goes on, and keeps the warnings.
class CommandListener final : public WorkListener
{
public:
    /// @param beQuiet show nothing.
    explicit CommandListener(bool beQuiet);

    void Stage(const std::string& stage) override;
    void Warning(const std::string& text) override;
    void Tick(std::chrono::milliseconds sinceStart) override;

    /// Takes the line with the progress away.
    void EndProgress();

    std::vector<std::string> warnings;

private:
    bool quiet;
    Progress progress;
};

/// In the working process: hands warnings to the process that waits.
///
/// @throws Failure when there are any and `strict` says that there must be none.
void SendWarnings(const WorkReporter& reporter, const std::vector<std::string>& warnings, bool strict);

} // namespace Orvel::Cli
