#include "platform/prcfile/BoundingBox.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace prc
{

void BoundingBox::include(std::span<const double> coordinates)
{
    std::array<double, 3> newLow = low;
    std::array<double, 3> newHigh = high;
    for (std::size_t at = 0; at + 3 <= coordinates.size(); at += 3) {
        for (std::size_t axis = 0; axis < 3; ++axis) {
            newLow[axis] = std::min(newLow[axis], coordinates[at + axis]);
            newHigh[axis] = std::max(newHigh[axis], coordinates[at + axis]);
        }
    }
    low = newLow;
    high = newHigh;
}

void BoundingBox::include(const BoundingBox& other)
{
    for (std::size_t axis = 0; axis < 3; ++axis) {
        low[axis] = std::min(low[axis], other.low[axis]);
        high[axis] = std::max(high[axis], other.high[axis]);
    }
}

BoundingBox BoundingBox::widened() const
{
    // Wide enough to survive a conversion to single precision at the place where the box lies.
    constexpr double relativeMargin = 1e-6;
    constexpr double largest = std::numeric_limits<double>::max();

    BoundingBox box = *this;
    if (low[0] > high[0]) {
        box.low.fill(0.0);
        box.high.fill(0.0);
    }
    double magnitude = 0.0;
    for (std::size_t axis = 0; axis < 3; ++axis)
        magnitude = std::max({magnitude, std::abs(box.low[axis]), std::abs(box.high[axis])});
    const double margin =
        magnitude > 0.0 ? std::max(magnitude * relativeMargin, std::numeric_limits<double>::min()) : relativeMargin;
    for (std::size_t axis = 0; axis < 3; ++axis) {
        if (box.low[axis] == box.high[axis]) {
            box.low[axis] = std::max(box.low[axis] - margin, -largest);
            box.high[axis] = std::min(box.high[axis] + margin, largest);
        }
    }
    return box;
}

} // namespace prc
