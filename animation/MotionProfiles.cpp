#include "animation/MotionProfiles.h"

#include <algorithm>

namespace Orvel
{

namespace
{

constexpr int SlowStartBit = 1;
constexpr int SlowEndBit = 2;

bool StartsSlowly(int outMode)
{
    return (outMode & SlowStartBit) != 0;
}

bool EndsSlowly(int inMode)
{
    return (inMode & SlowEndBit) != 0;
}

/// 1 + 2 + ... + k, in floating point: k may be any frame number.
double SumUpTo(double k)
{
    return k * (k + 1.0) / 2.0;
}

double Quotient(double numerator, double denominator)
{
    return denominator == 0.0 ? 0.0 : numerator / denominator;
}

} // namespace

double Lerp(double a, double b, int frame, int from, int to)
{
    if (from == to)
        return a;
    const double elapsed = static_cast<double>(frame) - from;
    return a + (b - a) * elapsed / (static_cast<double>(to) - from);
}

double LerpFraction(double a, double b, double t)
{
    return a + (b - a) * t;
}

COrvel3DVertex LerpFraction(const COrvel3DVertex& a, const COrvel3DVertex& b, double t)
{
    return {LerpFraction(a.X(), b.X(), t), LerpFraction(a.Y(), b.Y(), t), LerpFraction(a.Z(), b.Z(), t)};
}

bool EasingApplies(int outMode, int inMode)
{
    return StartsSlowly(outMode) || EndsSlowly(inMode);
}

double EaseFraction(std::int64_t frames, std::int64_t elapsed, int outMode, int inMode)
{
    const auto n = static_cast<double>(frames);
    const auto k = static_cast<double>(elapsed);
    if (!EasingApplies(outMode, inMode))
        return k / n;
    // Acceleration ends and deceleration begins at the same step: there is no phase of constant speed between them.
    std::int64_t turn = frames;
    if (EndsSlowly(inMode))
        turn = StartsSlowly(outMode) ? frames / 2 : 0;
    if (elapsed <= turn)
        return SumUpTo(k) * Quotient(2.0, n * static_cast<double>(turn));
    return 1.0 - SumUpTo(n - k) * Quotient(2.0, n * (n - static_cast<double>(turn)));
}

double GapFraction(int frame, int from, int to, int outMode, int inMode)
{
    const auto [low, high] = std::minmax({std::int64_t{from}, std::int64_t{to}});
    if (frame >= high)
        return 1.0;
    if (frame <= low)
        return 0.0;
    return EaseFraction(high - low, frame - low, outMode, inMode);
}

double EaseScalar(double a, double b, int frame, int from, int to, int outMode, int inMode)
{
    const double t = GapFraction(frame, from, to, outMode, inMode);
    return t == 1.0 ? b : LerpFraction(a, b, t);
}

double ProfileAngle(const MotionStep& motion, double total)
{
    constexpr double Turn = 360.0;
    const double n = motion.frames;
    const double a = motion.constantSpeedStart;
    const double b = motion.constantSpeedEnd;
    const double k = motion.step;

    // The last step is exact whatever the phases are, an acceleration that lasts to the end included.
    if (motion.step >= motion.frames - 1)
        return total;
    const double speed = 2.0 * Turn / (n + b - a - 1.0);
    const double accelerating = Quotient(speed, a);
    const double decelerating = Quotient(speed, n - b - 1.0);
    double done = 0.0;
    if (k <= a) {
        done = SumUpTo(k) * accelerating;
    } else if (k < b) {
        const double accelerated = SumUpTo(a) * accelerating;
        const double decelerated = SumUpTo(n - b - 1.0) * decelerating;
        done = (k - a) * (Turn - accelerated - decelerated) / (b - a) + accelerated;
    } else {
        done = Turn - SumUpTo(n - 1.0 - k) * decelerating;
    }
    return total / Turn * done;
}

double TrapezoidFraction(double x, double a, double b)
{
    // The height at which the trapezoid over 0..1 has area 1.
    const double height = 2.0 / (b - a + 1.0);
    if (x < a)
        return x * x / (2.0 * a) * height;
    if (x == a)
        return x * 0.5 * height;
    if (x <= b)
        return (x - a) * height + a * 0.5 * height;
    return (height - (x - b) / (1.0 - b) * height * 0.5) * (x - b) + ((b - a) * height + a * 0.5 * height);
}

} // namespace Orvel
