#pragma once

#include "platform/core/COrvelEntity.h"
#include "platform/core/COrvelUsers.h"
#include "platform/core/Export.h"
#include "platform/core/Types.h"

#include <vector>

namespace Orvel
{

class COrvel3DObject;
class COrvel3DVectorsTable;
class COrvelPolygonsTable;
class COrvelVerticiesNormalsTable;
class COrvelVerticiesTable;

/// A shape: positions, normals and polygons, each in a table of its own that may be missing. Any number of objects show
/// it.
class ORVEL_CORE_API COrvelGeometry : public COrvelEntity
{
public:
    /// A geometry without tables.
    static COrvelGeometry* Create(COrvelDocument* document);
    /// A geometry with tables made of these arrays.
    ///
    /// @param positions three doubles per vertex.
    /// @param triangles three vertex indices per triangle.
    /// @param normals   three doubles per vertex; empty: the geometry has no normals table.
    static COrvelGeometry* Create(COrvelDocument* document, std::vector<double> positions,
                                  std::vector<uint32> triangles, std::vector<double> normals = {});
    ~COrvelGeometry() override;

    /// Null when there is none.
    COrvelVerticiesTable* VerticiesTable() const;
    /// Null when there is none. Entry k belongs to vertex k.
    COrvelVerticiesNormalsTable* VerticiesNormalsTable() const;
    /// Null when there is none.
    COrvelPolygonsTable* PolygonsTable() const { return polygons.Get(); }
    /// @param table not owned, may serve several geometries; null for none.
    void SetVerticiesTable(COrvelVerticiesTable* table);
    void SetVerticiesNormalsTable(COrvelVerticiesNormalsTable* table);
    void SetPolygonsTable(COrvelPolygonsTable* table);

    /// Replaces `objects` with the objects that show this geometry, live and deleted, in the order in which they took
    /// it.
    void ObjectsReferencingThisGeometry(std::vector<COrvel3DObject*>& objects) const;
    /// The same objects, to be walked without copying.
    const COrvelUsers<COrvel3DObject, COrvelGeometry>& ObjectsReferencingThisGeometry() const
    {
        return objectsUsingThis;
    }

protected:
    explicit COrvelGeometry(COrvelDocument* document);

private:
    friend class COrvel3DObject;

    COrvelUse<COrvelGeometry, COrvel3DVectorsTable> verticies;
    COrvelUse<COrvelGeometry, COrvel3DVectorsTable> normals;
    COrvelUse<COrvelGeometry, COrvelPolygonsTable> polygons;
    COrvelUsers<COrvel3DObject, COrvelGeometry> objectsUsingThis;
};

} // namespace Orvel
