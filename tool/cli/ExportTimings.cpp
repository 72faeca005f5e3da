#include "tool/cli/ExportTimings.h"

#include "platform/prcfile/WriteTimes.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <string>
#include <string_view>

namespace Orvel::Cli
{

namespace
{

constexpr std::string_view Convert = "convert";

struct ShortName
{
    std::string_view stage;
    std::string_view name;
};

constexpr std::array ShortNames{ShortName{"preparing the page", "page"},
                                ShortName{"reading the file", "read"},
                                ShortName{"reading the scene", "import"},
                                ShortName{"sampling the animation", "animate"},
                                ShortName{"reading the animation", "animate"},
                                ShortName{"writing the file", Convert},
                                ShortName{"reading the model back", "read back"},
                                ShortName{"taking the picture", "picture"},
                                ShortName{"writing the PDF", "pdf"}};

std::string NameOf(const std::string& stage)
{
    const auto found = std::ranges::find(ShortNames, stage, &ShortName::stage);
    return found == ShortNames.end() ? stage : std::string(found->name);
}

double Seconds(std::chrono::nanoseconds time)
{
    return std::chrono::duration<double>(time).count();
}

} // namespace

std::vector<StageTime> TimesOfWriting()
{
    const prc::WriteTimes times = prc::writeTimes();
    return {{"encode", Seconds(times.encoding)},
            {"compress", Seconds(times.compression)},
            {"write", Seconds(times.output)}};
}

std::vector<StageTime> ExportTimings(const std::vector<StageTime>& stages, const std::vector<StageTime>& writing,
                                     double totalSeconds)
{
    std::vector<StageTime> timings;
    double other = totalSeconds;
    for (const StageTime& stage : stages) {
        StageTime& timing = timings.emplace_back(StageTime{NameOf(stage.stage), stage.seconds});
        other -= stage.seconds;
        if (timing.stage != Convert)
            continue;
        for (const StageTime& part : writing)
            timing.seconds -= part.seconds;
        timings.insert(timings.end(), writing.begin(), writing.end());
    }
    timings.push_back({"other", other});
    return timings;
}

} // namespace Orvel::Cli
