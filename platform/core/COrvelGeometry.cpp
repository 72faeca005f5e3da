#include "platform/core/COrvelGeometry.h"

#include "platform/core/COrvel3DObject.h"
#include "platform/core/COrvel3DVectorsTable.h"
#include "platform/core/COrvelPolygonsTable.h"

#include <utility>

namespace Orvel
{

COrvelGeometry::COrvelGeometry(COrvelDocument* document)
    : COrvelEntity(document, eEntityType_Geometry)
    , verticies(*this)
    , normals(*this)
    , polygons(*this)
    , objectsUsingThis(*this)
{}

COrvelGeometry::~COrvelGeometry() = default;

COrvelGeometry* COrvelGeometry::Create(COrvelDocument* document)
{
    return new COrvelGeometry(document);
}

COrvelGeometry* COrvelGeometry::Create(COrvelDocument* document, std::vector<double> positions,
                                       std::vector<uint32> triangles, std::vector<double> normals)
{
    COrvelGeometry* const geometry = Create(document);
    geometry->SetVerticiesTable(COrvelVerticiesTable::Create(document, std::move(positions)));
    geometry->SetPolygonsTable(COrvelPolygonsTable::Create(document, std::move(triangles)));
    if (!normals.empty())
        geometry->SetVerticiesNormalsTable(COrvelVerticiesNormalsTable::Create(document, std::move(normals)));
    return geometry;
}

COrvelVerticiesTable* COrvelGeometry::VerticiesTable() const
{
    return static_cast<COrvelVerticiesTable*>(verticies.Get());
}

COrvelVerticiesNormalsTable* COrvelGeometry::VerticiesNormalsTable() const
{
    return static_cast<COrvelVerticiesNormalsTable*>(normals.Get());
}

void COrvelGeometry::SetVerticiesTable(COrvelVerticiesTable* table)
{
    if (table)
        verticies.Set(table->geometriesUsingThis);
    else
        verticies.Reset();
}

void COrvelGeometry::SetVerticiesNormalsTable(COrvelVerticiesNormalsTable* table)
{
    if (table)
        normals.Set(table->geometriesUsingThis);
    else
        normals.Reset();
}

void COrvelGeometry::SetPolygonsTable(COrvelPolygonsTable* table)
{
    if (table)
        polygons.Set(table->geometriesUsingThis);
    else
        polygons.Reset();
}

void COrvelGeometry::ObjectsReferencingThisGeometry(std::vector<COrvel3DObject*>& objects) const
{
    objects.assign(objectsUsingThis.begin(), objectsUsingThis.end());
}

} // namespace Orvel
