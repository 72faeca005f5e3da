#include "platform/core/COrvelPolygonsTable.h"

#include "platform/core/COrvelGeometry.h"

#include <utility>

namespace Orvel
{

namespace
{

constexpr std::size_t cornersPerTriangle = 3;

} // namespace

COrvelPolygonsTable::COrvelPolygonsTable(COrvelDocument* document)
    : COrvelEntity(document, eEntityType_PolygonsTable)
    , geometriesUsingThis(*this)
{}

COrvelPolygonsTable::~COrvelPolygonsTable() = default;

COrvelPolygonsTable* COrvelPolygonsTable::Create(COrvelDocument* document, std::vector<uint32> triangles)
{
    triangles.resize(triangles.size() - triangles.size() % cornersPerTriangle);
    COrvelPolygonsTable* const table = new COrvelPolygonsTable(document);
    table->SetTriangles(std::move(triangles));
    return table;
}

std::uint64_t COrvelPolygonsTable::Count() const
{
    return firstCorners.empty() ? corners.size() / cornersPerTriangle : firstCorners.size() - 1;
}

COrvel3DPolygon COrvelPolygonsTable::Item(std::uint64_t index) const
{
    if (firstCorners.empty()) {
        const uint32* const triangle = corners.data() + cornersPerTriangle * index;
        return COrvel3DPolygon(triangle[0], triangle[1], triangle[2]);
    }
    const std::uint64_t first = firstCorners[index];
    return COrvel3DPolygon(std::span(corners).subspan(first, firstCorners[index + 1] - first));
}

std::span<const uint32> COrvelPolygonsTable::TriangleCorners() const
{
    return firstCorners.empty() ? std::span<const uint32>(corners) : std::span<const uint32>();
}

bool COrvelPolygonsTable::SetTriangles(std::vector<uint32> newCorners)
{
    if (newCorners.size() % cornersPerTriangle != 0)
        return false;
    corners = std::move(newCorners);
    firstCorners.clear();
    return true;
}

void COrvelPolygonsTable::Reserve(std::uint64_t triangleCount)
{
    corners.reserve(cornersPerTriangle * triangleCount);
}

bool COrvelPolygonsTable::Add(std::span<const uint32> polygonCorners)
{
    if (polygonCorners.size() < cornersPerTriangle)
        return false;
    if (firstCorners.empty() && polygonCorners.size() > cornersPerTriangle)
        for (std::uint64_t first = 0; first <= corners.size(); first += cornersPerTriangle)
            firstCorners.push_back(first);
    corners.insert(corners.end(), polygonCorners.begin(), polygonCorners.end());
    if (!firstCorners.empty())
        firstCorners.push_back(corners.size());
    return true;
}

void COrvelPolygonsTable::AddTriangle(uint32 first, uint32 second, uint32 third)
{
    const uint32 triangle[] = {first, second, third};
    Add(triangle);
}

} // namespace Orvel
