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

#include <array>
#include <span>
#include <utility>
#include <vector>

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

/// @param storage  the table's own flat storage; empty when it has none.
/// @param valuesOf gives the N values of an entry of the table.
template <std::size_t N, typename Table, typename Value, typename ValuesOf>
FlatArray<Value> Flatten(const Table& table, std::span<const Value> storage, ValuesOf valuesOf)
{
    if (!storage.empty())
        return FlatArray<Value>(storage);
    const uint32 count = CountOf(&table);
    std::vector<Value> copy;
    copy.reserve(N * count);
    for (uint32 k = 0; k < count; ++k) {
        const std::array<Value, N> values = valuesOf(table.Item(k));
        copy.insert(copy.end(), values.begin(), values.end());
    }
    return FlatArray<Value>(std::move(copy));
}

FlatArray<double> FlatVectors(const COrvel3DVectorsTable* table)
{
    if (CountOf(table) == 0)
        return {};
    return Flatten<3>(*table, table->Values(), [](const COrvel3DVertex& vertex) {
        return std::array{vertex.X(), vertex.Y(), vertex.Z()};
    });
}

FlatArray<double> FlatTextureCoordinates(const COrvelTextureCoordinatesTable* table)
{
    if (CountOf(table) == 0)
        return {};
    return Flatten<2>(*table, table->Values(), [](const COrvelTextureCoordinate& coordinate) {
        return std::array{coordinate.U(), coordinate.V()};
    });
}

/// Corners 0, 1, 2 of every polygon; further corners are not looked at.
FlatArray<uint32> FlatTriangles(const COrvelPolygonsTable* table)
{
    if (CountOf(table) == 0)
        return {};
    return Flatten<3>(*table, table->TriangleCorners(), [](const COrvel3DPolygon& polygon) {
        return std::array{uint32{*polygon.At(0)}, uint32{*polygon.At(1)}, uint32{*polygon.At(2)}};
    });
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
