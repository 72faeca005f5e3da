#pragma once

#include "platform/core/COrvel3DPolygon.h"
#include "platform/core/COrvelEntity.h"
#include "platform/core/COrvelUsers.h"
#include "platform/core/Export.h"
#include "platform/core/Types.h"

#include <cstdint>
#include <span>
#include <vector>

namespace Orvel
{

class COrvelGeometry;

/// The polygons of a geometry, normally triangles.
///
/// The corners stand one after another in one array; where polygons begin is only stored once one has more than three.
/// A subclass may hold its polygons otherwise: it overrides Count and Item, and TriangleCorners with an empty answer.
/// Whoever fills a table checks that its indices name vertices: nobody does so later.
class ORVEL_CORE_API COrvelPolygonsTable : public COrvelEntity
{
public:
    /// @param triangles three vertex indices per triangle; an incomplete last triangle is dropped.
    static COrvelPolygonsTable* Create(COrvelDocument* document, std::vector<uint32> triangles = {});
    ~COrvelPolygonsTable() override;

    virtual std::uint64_t Count() const;
    /// @param index below Count().
    virtual COrvel3DPolygon Item(std::uint64_t index) const;
    /// The corners of all polygons, three per polygon; valid until the table changes. Empty when the table has no such
    /// array, whatever its Count, or holds a polygon with more than three corners.
    virtual std::span<const uint32> TriangleCorners() const;

    /// Replaces all polygons by triangles.
    ///
    /// @param newCorners three vertex indices per triangle.
    /// @return false, and nothing changes, when the length is no multiple of 3.
    bool SetTriangles(std::vector<uint32> newCorners);
    void Reserve(std::uint64_t triangleCount);
    /// @return false, and nothing changes, for fewer than three corners.
    bool Add(std::span<const uint32> polygonCorners);
    void AddTriangle(uint32 first, uint32 second, uint32 third);

protected:
    explicit COrvelPolygonsTable(COrvelDocument* document);

private:
    friend class COrvelGeometry;

    std::vector<uint32> corners;
    /// Polygon k has the corners [firstCorners[k], firstCorners[k + 1]). Empty while there are only triangles.
    std::vector<std::uint64_t> firstCorners;
    COrvelUsers<COrvelGeometry, COrvelPolygonsTable> geometriesUsingThis;
};

} // namespace Orvel
