#include "tool/animation/KeyReduction.h"

#include <algorithm>

namespace Orvel::Animate
{

namespace
{

/// @param range of the state before the gap.
bool CanBridge(const SampledMotion& motion, const KeyRange& range, int next)
{
    const auto isNear = [&](int frame) { return motion.isNearBlend(range.start, next, range.end, next, frame); };
    // Most gaps that are too long fail in their middle.
    if (next - range.end > 1 && !isNear(range.end + (next - range.end) / 2))
        return false;
    for (int frame = range.end + 1; frame < next; ++frame)
        if (!isNear(frame))
            return false;
    return true;
}

/// The frame at which the next range begins; there is one.
int EndOfGap(const SampledMotion& motion, const KeyRange& range)
{
    int good = range.end + 1;
    int bad = motion.lastFrame + 1;
    for (int step = 2; good < motion.lastFrame; step *= 2) {
        const int next = std::min(range.end + step, motion.lastFrame);
        if (!CanBridge(motion, range, next)) {
            bad = next;
            break;
        }
        good = next;
    }
    while (bad - good > 1) {
        const int middle = good + (bad - good) / 2;
        if (CanBridge(motion, range, middle))
            good = middle;
        else
            bad = middle;
    }
    return good;
}

} // namespace

std::vector<KeyRange> ReduceKeys(const SampledMotion& motion)
{
    std::vector<KeyRange> ranges;
    int start = 0;
    for (;;) {
        KeyRange range{start, start};
        while (range.end < motion.lastFrame && motion.isSame(start, range.end + 1))
            ++range.end;
        ranges.push_back(range);
        if (range.end == motion.lastFrame)
            return ranges;
        start = EndOfGap(motion, range);
    }
}

} // namespace Orvel::Animate
