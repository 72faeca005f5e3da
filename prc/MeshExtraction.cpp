#include "prc/MeshExtraction.h"

#include "platform/core/COrvel3DObject.h"
#include "platform/core/COrvel3DPolygon.h"
#include "platform/core/COrvelGeometry.h"
#include "platform/core/COrvelPolygonsTable.h"
#include "platform/core/COrvelTextureCoordinatesTable.h"
#include "platform/core/COrvelVerticiesNormalsTable.h"
#include "platform/core/COrvelVerticiesTable.h"
#include "platform/prcfile/oPRCFile.h"
#include "prc/COrvelPRCHandler.h"
#include "prc/ExportCaches.h"
#include "prc/MaterialConversion.h"

namespace Orvel
{

namespace
{

/// The low 32 bits: what the PRC format can count.
template <typename Table>
uint32 CountOf(const Table* table)
{
    return table ? static_cast<uint32>(table->Count()) : 0;
}

/// A host table as one flat array: the table's own storage where it offers that, else a copy that lives as long as
/// this.
template <typename Value>
class FlatArray
{
public:
    FlatArray() = default;
    explicit FlatArray(std::span<const Value> storage)
        : values(storage.data())
    {}
    explicit FlatArray(std::vector<Value> copied)
        : copy(std::move(copied))
        , values(copy.data())
    {}
    FlatArray(const FlatArray&) = delete;
    FlatArray& operator=(const FlatArray&) = delete;

    [[nodiscard]] const Value* Data() const { return values; }

private:
    std::vector<Value> copy;
    const Value* values = nullptr;
};

FlatArray<double> FlatVectors(const COrvel3DVectorsTable* table)
{
    const uint32 count = CountOf(table);
    if (count == 0)
        return {};
    if (const std::span<const double> storage = table->Values(); !storage.empty())
        return FlatArray<double>(storage);
    std::vector<double> copy;
    copy.reserve(std::size_t{3} * count);
    for (uint32 k = 0; k < count; ++k) {
        const COrvel3DVertex vertex = table->Item(k);
        copy.insert(copy.end(), {vertex.X(), vertex.Y(), vertex.Z()});
    }
    return FlatArray<double>(std::move(copy));
}

FlatArray<double> FlatTextureCoordinates(const COrvelTextureCoordinatesTable* table)
{
    const uint32 count = CountOf(table);
    if (count == 0)
        return {};
    if (const std::span<const double> storage = table->Values(); !storage.empty())
        return FlatArray<double>(storage);
    std::vector<double> copy;
    copy.reserve(std::size_t{2} * count);
    for (uint32 k = 0; k < count; ++k) {
        const COrvelTextureCoordinate coordinate = table->Item(k);
        copy.insert(copy.end(), {coordinate.U(), coordinate.V()});
    }
    return FlatArray<double>(std::move(copy));
}

/// Corners 0, 1, 2 of every polygon; further corners are not looked at.
FlatArray<uint32> FlatTriangles(const COrvelPolygonsTable* table)
{
    const uint32 count = CountOf(table);
    if (count == 0)
        return {};
    if (const std::span<const uint32> storage = table->TriangleCorners(); !storage.empty())
        return FlatArray<uint32>(storage);
    std::vector<uint32> copy;
    copy.reserve(std::size_t{3} * count);
    for (uint32 i = 0; i < count; ++i) {
        const COrvel3DPolygon polygon = table->Item(i);
        copy.insert(copy.end(), {*polygon.At(0), *polygon.At(1), *polygon.At(2)});
    }
    return FlatArray<uint32>(std::move(copy));
}

COrvelVerticiesTable* VerticesOf(COrvel3DObject* object)
{
    COrvelGeometry* const geometry = object->Geometry();
    COrvelVerticiesTable* const vertices = geometry ? geometry->VerticiesTable() : nullptr;
    return vertices && vertices->Count() > 0 ? vertices : nullptr;
}

/// The number of the object's material: the first mesh of a material in a file fixes it for all later ones.
/// @param newIndex the PRC material just added for this mesh; its number wraps to 0 for the null index.
uint32 RegisterMaterial(COrvelPRCHandler::MaterialNumbers& numbers, COrvelMaterial* material, uint32 newIndex)
{
    const uint32 number =
        ExportCaches::Instance().materialNumberCache.try_emplace(material, newIndex + 1).first->second;
    numbers.try_emplace(material, number);
    return number;
}

} // namespace

bool HasVertices(COrvel3DObject* object)
{
    return VerticesOf(object) != nullptr;
}

void COrvelPRCHandler::ExtractMesh(prc::oPRCFile& file, COrvel3DObject* object, uint32& tessellation)
{
    const COrvelVerticiesTable* const vertexTable = VerticesOf(object);
    if (!vertexTable)
        return;
    COrvelGeometry* const geometry = object->Geometry();
    const COrvelPolygonsTable* const polygonTable = geometry->PolygonsTable();
    const COrvelVerticiesNormalsTable* const normalTable = geometry->VerticiesNormalsTable();
    const COrvelTextureCoordinatesTable* const coordinateTable = object->TextureCoordinatesTable();

    const FlatArray<double> positions = FlatVectors(vertexTable);
    const FlatArray<double> normals = FlatVectors(normalTable);
    const FlatArray<double> coordinates = FlatTextureCoordinates(coordinateTable);
    const FlatArray<uint32> triangles = FlatTriangles(polygonTable);

    // Normals and texture coordinates are indexed like the vertices: one index array serves all three.
    uint32 coordinateCount = CountOf(coordinateTable);
    const double* coordinateValues = coordinates.Data();
    const uint32* coordinateIndices = coordinateTable ? triangles.Data() : nullptr;

    MaterialRecord material;
    MakeMeshMaterial(*this, material, object, coordinateCount, coordinateValues, coordinateIndices);
    const uint32 materialIndex = file.addMaterial(material.record);
    const uint32 materialNumber = RegisterMaterial(*materialNumbers, object->Material(), materialIndex);

    tessellation = CreateTriangleMesh(CountOf(vertexTable), positions.Data(), CountOf(polygonTable), triangles.Data(),
                                      materialNumber - 1, CountOf(normalTable), normals.Data(), triangles.Data(),
                                      coordinateCount, coordinateValues, coordinateIndices, file);
    file.useMesh(tessellation, 0, nullptr);
}

} // namespace Orvel
