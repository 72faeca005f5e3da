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

/// New numbers are given in the order in which points are first met.
void ListSources(PointWeld& weld, std::size_t newCount)
{
    weld.sources.reserve(newCount);
    for (std::uint32_t point = 0; point < weld.remap.size(); ++point) {
        if (weld.remap[point] == weld.sources.size())
            weld.sources.push_back(point);
    }
    assert(weld.sources.size() == newCount && "every new point has a source");
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

    const std::vector<std::uint32_t> indices = EachPointOnce(pointCount);
    PointWeld weld;
    weld.remap.resize(pointCount);
    ListSources(weld, meshopt_generateVertexRemapMulti(weld.remap.data(), indices.data(), indices.size(), pointCount,
                                                       byteStreams.data(), byteStreams.size()));
    return weld;
}

PointWeld FindEqualPoints(std::span<const float> positions)
{
    const std::size_t pointCount = positions.size() / 3;
    assert(pointCount % 3 == 0 && "the library wants whole triangles");
    PointWeld weld;
    weld.remap.resize(pointCount);
    ListSources(weld, meshopt_generateVertexRemap(weld.remap.data(), nullptr, pointCount, positions.data(), pointCount,
                                                  3 * sizeof(float)));
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
