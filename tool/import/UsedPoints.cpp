#include "tool/import/UsedPoints.h"

#include <algorithm>

namespace Orvel::Import
{
namespace
{

/// For few triangles over many points: nothing is as long as the points are many.
std::vector<std::uint32_t> RenumberBySorting(std::vector<std::uint32_t>& triangles)
{
    std::vector<std::uint32_t> used = triangles;
    std::sort(used.begin(), used.end());
    used.erase(std::unique(used.begin(), used.end()), used.end());
    for (std::uint32_t& corner : triangles)
        corner = static_cast<std::uint32_t>(std::lower_bound(used.begin(), used.end(), corner) - used.begin());
    return used;
}

std::optional<std::vector<std::uint32_t>> RenumberByTable(std::vector<std::uint32_t>& triangles, std::size_t pointCount)
{
    std::vector<std::uint32_t> newNumbers(pointCount, 0);
    for (const std::uint32_t corner : triangles)
        newNumbers[corner] = 1;
    const auto usedCount = static_cast<std::size_t>(std::count(newNumbers.begin(), newNumbers.end(), 1U));
    if (usedCount == pointCount)
        return std::nullopt;

    std::vector<std::uint32_t> used;
    used.reserve(usedCount);
    for (std::size_t point = 0; point < pointCount; ++point) {
        if (newNumbers[point] == 0)
            continue;
        newNumbers[point] = static_cast<std::uint32_t>(used.size());
        used.push_back(static_cast<std::uint32_t>(point));
    }
    for (std::uint32_t& corner : triangles)
        corner = newNumbers[corner];
    return used;
}

} // namespace

std::optional<std::vector<std::uint32_t>> RenumberUsedPoints(std::vector<std::uint32_t>& triangles,
                                                             std::size_t pointCount)
{
    // Sorting a few corners is cheaper than a table of all points once these are about eight times as many.
    if (triangles.size() < pointCount / 8)
        return RenumberBySorting(triangles);
    return RenumberByTable(triangles, pointCount);
}

} // namespace Orvel::Import
