#pragma once

#include "animation/COrvelKeyFrameManager.h"

namespace Orvel
{

/// The data of one entity that share a frame with an interval.
struct KeyFrameRange
{
    KeyFrameDataByFrame::const_iterator begin;
    /// The first data that starts behind the interval, also when the range is empty.
    KeyFrameDataByFrame::const_iterator end;

    bool IsEmpty() const { return begin == end; }
};

/// Finds the data that cover a frame of [first, last], in logarithmic time: the nearest one that starts before `first`
/// when it reaches that far, and all that start inside. Empty for first > last.
[[nodiscard]] KeyFrameRange FindKeyFrameRange(const KeyFrameDataByFrame& data, int first, int last);

} // namespace Orvel
