#include "tool/player/Track.h"

#include "tool/animation/KeyReduction.h"

#include <algorithm>
#include <cmath>

namespace Orvel::Player
{

namespace
{

using Animate::KeyRange;
using nlohmann::ordered_json;

ordered_json FramesOf(const std::vector<KeyRange>& ranges)
{
    std::vector<int> frames;
    for (std::size_t i = 0; i < ranges.size(); ++i) {
        if (i > 0)
            frames.push_back(ranges[i].start - ranges[i - 1].end);
        if (ranges[i].end > ranges[i].start)
            frames.push_back(ranges[i].start - ranges[i].end);
    }
    return frames;
}

ordered_json DifferencesOf(const std::vector<KeyRange>& ranges, const Rows& rows)
{
    std::vector<std::int64_t> values;
    values.reserve(ranges.size() * rows.width);
    for (std::size_t i = 0; i < ranges.size(); ++i) {
        const auto row = rows.At(ranges[i].start);
        for (std::size_t k = 0; k < rows.width; ++k)
            values.push_back(std::int64_t{row[k]} - (i > 0 ? rows.At(ranges[i - 1].start)[k] : 0));
    }
    return values;
}

} // namespace

void WriteTrack(const Rows& rows, const IsNearBlend& isNearBlend, ordered_json& track)
{
    Animate::SampledMotion motion;
    motion.lastFrame = static_cast<int>(rows.Frames()) - 1;
    motion.isSame = [&](int frame, int other) { return std::ranges::equal(rows.At(frame), rows.At(other)); };
    motion.isNearBlend = [&](int first, int second, int from, int to, int frame) {
        return isNearBlend(first, second, static_cast<double>(frame - from) / (to - from), frame);
    };
    const std::vector<KeyRange> ranges = Animate::ReduceKeys(motion);
    if (ranges.size() < rows.Frames())
        track["f"] = FramesOf(ranges);
    track["v"] = DifferencesOf(ranges, rows);
}

void WriteNumbersTrack(const Rows& rows, double tolerance, ordered_json& track)
{
    const auto isNear = [&](int first, int second, double step, int frame) {
        const auto from = rows.At(first);
        const auto to = rows.At(second);
        const auto wanted = rows.At(frame);
        for (std::size_t k = 0; k < rows.width; ++k)
            if (!(std::abs(from[k] + step * (static_cast<double>(to[k]) - from[k]) - wanted[k]) <= tolerance))
                return false;
        return true;
    };
    WriteTrack(rows, isNear, track);
}

double ShortStep(double largest)
{
    if (!(largest > 0.0) || !std::isfinite(largest))
        return 1.0;
    const double power = std::pow(10.0, std::floor(std::log10(largest)));
    for (const double factor : {5.0, 2.0})
        if (factor * power <= largest)
            return factor * power;
    return power;
}

std::int32_t StepsOf(double value, double step)
{
    constexpr double most = 2e9;
    const double steps = value / step;
    return std::isfinite(steps) ? static_cast<std::int32_t>(std::lround(std::clamp(steps, -most, most))) : 0;
}

} // namespace Orvel::Player
