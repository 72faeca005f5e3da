#pragma once

#include <nlohmann/json.hpp>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

namespace Orvel::Player
{

/// The numbers of something that changes: a row for each frame, from frame 0 on.
struct Rows
{
    std::size_t width = 0;
    std::vector<std::int32_t> values;

    [[nodiscard]] std::size_t Frames() const { return values.size() / width; }
    [[nodiscard]] std::span<const std::int32_t> At(int frame) const
    {
        return std::span(values).subspan(static_cast<std::size_t>(frame) * width, width);
    }
};

/// Whether the blend of the rows of two frames, `step` of the way from the first to the second, is near enough to what
/// is to be seen at `frame`.
using IsNearBlend = std::function<bool(int first, int second, double step, int frame)>;

/// Writes the rows that are needed into the members "f" (frames) and "v" (values) of `track`; tracks.js tells how.
void WriteTrack(const Rows& rows, const IsNearBlend& isNearBlend, nlohmann::ordered_json& track);

/// WriteTrack for numbers that are blended each by itself.
/// @param tolerance what any number may be off.
void WriteNumbersTrack(const Rows& rows, double tolerance, nlohmann::ordered_json& track);

/// The largest of 1, 2 or 5 times a power of ten that is not larger: short in text. 1 for anything that is not above 0.
[[nodiscard]] double ShortStep(double largest);

/// Nearest whole number of steps, within what 32 bits hold.
[[nodiscard]] std::int32_t StepsOf(double value, double step);

} // namespace Orvel::Player
