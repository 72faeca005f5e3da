#pragma once

#include "tool/cli/SignalWatch.h"
#include "tool/cli/WorkChannel.h"
#include "tool/cli/WorkLimits.h"

#include <nlohmann/json.hpp>

#include <chrono>
#include <functional>
#include <string>

namespace Orvel::Cli
{

/// Hears of supervised work while it goes on, in the process that waits.
class WorkListener
{
public:
    WorkListener() = default;
    WorkListener(const WorkListener&) = delete;
    WorkListener& operator=(const WorkListener&) = delete;
    virtual ~WorkListener() = default;

    /// @param stage as it reads after "while".
    virtual void Stage(const std::string& stage) = 0;
    virtual void Warning(const std::string& text) = 0;

    /// Called some times a second.
    virtual void Tick(std::chrono::milliseconds sinceStart) = 0;
};

/// Runs in the working process. An exception derived from std::exception is a failure with its text.
using Work = std::function<nlohmann::json(const WorkReporter&)>;

/// Does work that may crash, run for ever or ask for any amount of memory in a process of its own, and waits for it.
///
/// The working process reads nothing from stdin, shows nothing of what libraries print, leaves no core dump, and has a
/// stack that is large enough for trees of some thousand levels. Under AddressSanitizer memory is not limited, and what
/// a process that crashed has printed is shown, since it holds the sanitizer's report.
///
/// @return what `work` returned.
/// @throws Failure when the work failed: its own text, or what became of it ("crashed while ...", "took longer than
///         ..."). Interrupted when the program was asked to end. Either way the working process has ended.
[[nodiscard]] nlohmann::json RunSupervised(const Work& work, const WorkLimits& limits, const SignalWatch& signals,
                                           WorkListener& listener);

} // namespace Orvel::Cli
