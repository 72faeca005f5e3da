#pragma once

#include "animation/Export.h"
#include "platform/core/COrvel3DVertex.h"

#include <cstdint>

namespace Orvel
{

/// The timing of motion: which part of the way is done at which frame. Pure functions of their arguments.

/// Linear between two frames, beyond them too; `a` when both frames are equal.
[[nodiscard]] ORVEL_ANIMATION_API double Lerp(double a, double b, int frame, int from, int to);

/// Linear: `a` at t = 0, `b` at t = 1.
[[nodiscard]] ORVEL_ANIMATION_API double LerpFraction(double a, double b, double t);
[[nodiscard]] ORVEL_ANIMATION_API COrvel3DVertex LerpFraction(const COrvel3DVertex& a, const COrvel3DVertex& b,
                                                              double t);

/// Easing modes are two bits. Of the data before a gap, bit 0 of its EaseOut makes the motion start slowly; of the data
/// behind it, bit 1 of its EaseIn makes the motion end slowly. The other bits concern the data's own motion.
///
/// @return true when one of the two bits is set.
[[nodiscard]] ORVEL_ANIMATION_API bool EasingApplies(int outMode, int inMode);

/// Part of the way done after `elapsed` of `frames` steps. A slow start accelerates over the whole gap, a slow end
/// decelerates over the whole gap, both together split it in half; without either it is elapsed / frames.
///
/// The steps follow discrete constant acceleration: step k is k times the first one. With a slow start alone the curve
/// would end at (frames + 1) / frames; callers return the end state there instead of asking.
///
/// @param frames  length of the gap, at least 1; frames anywhere in the range of int may lie at its ends.
/// @param elapsed 0 to frames.
[[nodiscard]] ORVEL_ANIMATION_API double EaseFraction(std::int64_t frames, std::int64_t elapsed, int outMode,
                                                      int inMode);

/// Part of the way done at `frame` between two frames: 0 at and before the smaller one, 1 at and behind the larger one,
/// eased between them when EasingApplies, else linear.
[[nodiscard]] ORVEL_ANIMATION_API double GapFraction(int frame, int from, int to, int outMode, int inMode);

/// From `a` to `b` along GapFraction; exactly `a` and `b` at the ends.
[[nodiscard]] ORVEL_ANIMATION_API double EaseScalar(double a, double b, int frame, int from, int to, int outMode,
                                                    int inMode);

/// Which step of a data's own motion is evaluated, and where that motion has constant speed.
struct MotionStep
{
    int frames = 1;             ///< n: length of the data's range, at least 1
    int step = 0;               ///< w: 0 to frames - 1
    int constantSpeedStart = 0; ///< a: first step at constant speed, 0 to frames - 1, or -1 together with the end
    int constantSpeedEnd = 0;   ///< b: last step at constant speed, not below the start

    /// Constant speed throughout.
    [[nodiscard]] bool IsLinear() const
    {
        return (constantSpeedStart == 0 && constantSpeedEnd == frames - 1) ||
               (constantSpeedStart == -1 && constantSpeedEnd == -1);
    }
};

/// How much of `total` is done at a step: accelerating up to the first step at constant speed, decelerating from the
/// last one on; exactly `total` at the last step of the range. In whatever unit `total` has.
///
/// @param motion at least 2 frames, not linear.
[[nodiscard]] ORVEL_ANIMATION_API double ProfileAngle(const MotionStep& motion, double total);

/// Part of the way done at `x`: accelerating up to `a`, at constant speed up to `b`, then decelerating; 1 at x = 1.
///
/// @param x, a, b 0 to 1, a not above b.
[[nodiscard]] ORVEL_ANIMATION_API double TrapezoidFraction(double x, double a, double b);

} // namespace Orvel
