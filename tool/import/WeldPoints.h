#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace Orvel::Import
{

/// Numbers per point that belong together, e.g. positions or texture coordinates.
struct PointStream
{
    std::span<const double> values; ///< `stride` numbers for each point
    std::size_t stride = 0;         ///< 2 for texture coordinates, 3 for positions and normals
};

/// As many streams can be compared at once.
inline constexpr std::size_t MostPointStreams = 16;

/// Which points may become one.
struct PointWeld
{
    std::vector<std::uint32_t> remap;   ///< for each old point the new point that stands for it
    std::vector<std::uint32_t> sources; ///< for each new point the first old point that it stands for, ascending
};

/// Finds the points that agree in every stream. Two numbers agree when they compare equal to the last bit; 0 and -0 are
/// different here, so callers that want them joined bring them to one sign first (see ClearNegativeZeros).
///
/// @param streams 1 to MostPointStreams, all for the same number of points.
[[nodiscard]] PointWeld FindEqualPoints(std::span<const PointStream> streams);

/// The above for points that consist of their places in single precision only.
///
/// @param positions 3 for each point, whose number is a multiple of 3.
[[nodiscard]] PointWeld FindEqualPoints(std::span<const float> positions);

/// Turns every -0 into 0. The exported format knows no negative zero.
void ClearNegativeZeros(std::span<double> values);

/// The values of the points that remain: for each new point those of its source.
/// @param sources index of a point in `values` for each new point.
/// @return `stride` numbers for each entry of `sources`.
[[nodiscard]] std::vector<double> GatherPoints(std::span<const double> values, std::size_t stride,
                                               std::span<const std::uint32_t> sources);

} // namespace Orvel::Import
