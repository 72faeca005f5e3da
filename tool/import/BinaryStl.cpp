#include "tool/import/BinaryStl.h"

#include "tool/import/ImportReport.h"
#include "tool/import/WeldPoints.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <span>
#include <utility>
#include <vector>

namespace Orvel::Import
{

namespace
{

static_assert(std::endian::native == std::endian::little, "numbers are copied from the file as they are");

constexpr std::size_t HeaderBytes = 80;
constexpr std::size_t FacetsBegin = HeaderBytes + sizeof(std::uint32_t);
constexpr std::size_t NormalBytes = 3 * sizeof(float);
constexpr std::size_t CornerBytes = 9 * sizeof(float);
constexpr std::size_t FacetBytes = NormalBytes + CornerBytes + sizeof(std::uint16_t);

/// The number of facets of a binary file of just the right length, else 0.
std::size_t FacetCount(std::string_view bytes)
{
    if (bytes.size() < FacetsBegin)
        return 0;
    std::uint32_t count = 0;
    std::memcpy(&count, bytes.data() + HeaderBytes, sizeof count);
    return bytes.size() == FacetsBegin + FacetBytes * count ? count : 0;
}

/// Some programs keep colours in the header, or in the two bytes behind each facet, which others leave 0.
bool HasColours(std::string_view bytes)
{
    if (bytes.substr(0, HeaderBytes).find("COLOR=") != std::string_view::npos)
        return true;
    for (std::size_t end = FacetsBegin + FacetBytes; end <= bytes.size(); end += FacetBytes)
        if (bytes[end - 1] != 0 || bytes[end - 2] != 0)
            return true;
    return false;
}

/// @return the corners of all facets, 9 numbers each.
std::vector<float> Corners(std::string_view bytes, std::size_t facets)
{
    std::vector<float> corners(9 * facets);
    const char* from = bytes.data() + FacetsBegin + NormalBytes;
    for (std::size_t at = 0; at < corners.size(); at += 9, from += FacetBytes)
        std::memcpy(corners.data() + at, from, CornerBytes);
    for (float& value : corners) {
        if (!std::isfinite(value))
            throw ImportError("a facet has coordinates that are infinite or not a number");
        value += 0.0F; // joins 0 and -0
    }
    return corners;
}

ImportedGeometry Join(std::span<const float> corners)
{
    PointWeld weld = FindEqualPoints(corners);
    ImportedGeometry geometry;
    geometry.positions.reserve(3 * weld.sources.size());
    for (const std::uint32_t source : weld.sources) {
        const auto first = corners.begin() + 3 * static_cast<std::ptrdiff_t>(source);
        geometry.positions.insert(geometry.positions.end(), first, first + 3);
    }
    geometry.triangles = std::move(weld.remap);
    return geometry;
}

} // namespace

std::optional<ImportedScene> ReadBinaryStl(std::string_view bytes)
{
    constexpr std::size_t mostFacets = std::numeric_limits<std::uint32_t>::max() / 3;
    const std::size_t facets = FacetCount(bytes);
    if (facets == 0 || facets > mostFacets || HasColours(bytes))
        return std::nullopt;
    ImportedScene scene;
    scene.format = "Stereolithography STL";
    scene.geometries.push_back(Join(Corners(bytes, facets)));
    ImportedPart part;
    part.geometry = 0;
    ImportedNode node;
    node.parts.push_back(std::move(part));
    scene.nodes.push_back(std::move(node));
    scene.roots.push_back(0);
    return scene;
}

} // namespace Orvel::Import
