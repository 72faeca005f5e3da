#pragma once

#include <functional>
#include <vector>

namespace Orvel::Animate
{

/// A stretch of frames with one state: that of its first frame.
struct KeyRange
{
    int start = 0;
    int end = 0; ///< included

    bool operator==(const KeyRange&) const = default;
};

/// What two samples may differ by to count as a state that does not change, as a part of the tolerance: far less than
/// all of it, so that slow motion does not become a staircase.
inline constexpr double SameState = 1e-3;

/// What is known of a motion that was sampled at every frame.
struct SampledMotion
{
    int lastFrame = 0;
    /// Whether the state of a frame can stand for that of another one.
    std::function<bool(int frame, int other)> isSame;
    /// Whether the blend of the states of `first` and `second` across the frames `from` to `to` is near enough at
    /// `frame`, which lies between these.
    std::function<bool(int first, int second, int from, int to, int frame)> isNearBlend;
};

/// Chooses the frames to keep: the states of the ranges, and the blends across the gaps between them, give the whole
/// motion from frame 0 to its last one.
///
/// Greedy: from each range on the longest gap found by doubling and halving, which is the longest there is for motions
/// that turn away from a blend and do not come back to it. Takes time in proportion to the number of frames, as a rule.
[[nodiscard]] std::vector<KeyRange> ReduceKeys(const SampledMotion& motion);

} // namespace Orvel::Animate
