#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace Orvel::Import
{

/// Renumbers the corners of triangles so that they count only the points in use, in their old order.
///
/// Files often hold one array of points for many shapes. Time and memory follow the triangles, not the array, so that
/// a thousand small shapes over one large array cost no more than a thousand small shapes.
///
/// @param triangles  indices below `pointCount`; untouched when every point is in use.
/// @return old numbers of the points in use, ascending; nothing when every point is.
[[nodiscard]] std::optional<std::vector<std::uint32_t>> RenumberUsedPoints(std::vector<std::uint32_t>& triangles,
                                                                           std::size_t pointCount);

} // namespace Orvel::Import
