#include "tool/import/WeldPoints.h"

#include <meshoptimizer.h>

#include <cassert>
#include <numeric>

namespace Orvel::Import
{
namespace
{

/// The library wants whole triangles: the first point fills up the last one.
std::vector<std::uint32_t> EachPointOnce(std::size_t pointCount)
{
    std::vector<std::uint32_t> indices((pointCount + 2) / 3 * 3, 0);
    std::iota(indices.begin(), indices.begin() + static_cast<std::ptrdiff_t>(pointCount), 0U);
    return indices;
}

} // namespace

PointWeld FindEqualPoints(std::span<const PointStream> streams)
{
    assert(!streams.empty() && streams.size() <= MostPointStreams && "the library takes 1 to 16 streams");
    const std::size_t pointCount = streams.front().values.size() / streams.front().stride;

    std::vector<meshopt_Stream> byteStreams;
    byteStreams.reserve(streams.size());
    for (const PointStream& stream : streams) {
        assert(stream.values.size() == pointCount * stream.stride && "streams are equally long");
        const std::size_t bytesPerPoint = stream.stride * sizeof(double);
        byteStreams.push_back({stream.values.data(), bytesPerPoint, bytesPerPoint});
    }

    PointWeld weld;
    weld.remap.resize(pointCount);
    const std::vector<std::uint32_t> indices = EachPointOnce(pointCount);
    const std::size_t newCount = meshopt_generateVertexRemapMulti(weld.remap.data(), indices.data(), indices.size(),
                                                                  pointCount, byteStreams.data(), byteStreams.size());

    weld.sources.reserve(newCount);
    // New numbers are given in the order in which points are first met.
    for (std::uint32_t point = 0; point < pointCount; ++point) {
        if (weld.remap[point] == weld.sources.size())
            weld.sources.push_back(point);
    }
    assert(weld.sources.size() == newCount && "every new point has a source");
    return weld;
}

void ClearNegativeZeros(std::span<double> values)
{
    for (double& value : values)
        value += 0.0;
}

std::vector<double> GatherPoints(std::span<const double> values, std::size_t stride,
                                 std::span<const std::uint32_t> sources)
{
    std::vector<double> gathered;
    gathered.reserve(stride * sources.size());
    for (const std::uint32_t source : sources) {
        const auto first = values.begin() + static_cast<std::ptrdiff_t>(stride * source);
        gathered.insert(gathered.end(), first, first + static_cast<std::ptrdiff_t>(stride));
    }
    return gathered;
}

} // namespace Orvel::Import
