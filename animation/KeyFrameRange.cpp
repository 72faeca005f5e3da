#include "animation/KeyFrameRange.h"

#include <iterator>

namespace Orvel
{

KeyFrameRange FindKeyFrameRange(const KeyFrameDataByFrame& data, int first, int last)
{
    if (data.empty() || first > last)
        return {data.end(), data.end()};
    auto begin = data.lower_bound(first);
    const auto end = data.upper_bound(last);
    // Data share no frame, so only the nearest earlier one can reach into the interval.
    if (begin != data.begin()) {
        const auto earlier = std::prev(begin);
        if (earlier->second->EndFrame() >= first)
            begin = earlier;
    }
    return {begin, end};
}

} // namespace Orvel
