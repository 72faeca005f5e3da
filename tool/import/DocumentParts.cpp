#include "tool/import/DocumentParts.h"

#include "platform/core/COrvelDocument.h"
#include "platform/core/COrvelGeometry.h"
#include "platform/core/COrvelPolygonsTable.h"
#include "platform/core/COrvelTextureCoordinatesTable.h"
#include "platform/core/COrvelVerticiesNormalsTable.h"
#include "platform/core/COrvelVerticiesTable.h"
#include "tool/import/CreaseNormals.h"
#include "tool/import/UsedPoints.h"
#include "tool/import/WeldPoints.h"

#include <cassert>
#include <cstdint>
#include <limits>
#include <set>
#include <span>

namespace Orvel::Import
{
namespace
{

/// Texture coordinates of one shape, a set for each material that needs one.
using CoordinateSets = std::vector<std::vector<double>>;

void GatherAll(CoordinateSets& sets, std::span<const std::uint32_t> sources)
{
    for (std::vector<double>& set : sets)
        set = GatherPoints(set, 2, sources);
}

/// Points that no triangle uses would only make the file and its bounding boxes larger.
void DropUnusedPoints(ImportedGeometry& shape, CoordinateSets& sets)
{
    const auto used = RenumberUsedPoints(shape.triangles, shape.positions.size() / 3);
    if (!used)
        return;
    shape.positions = GatherPoints(shape.positions, 3, *used);
    if (!shape.normals.empty())
        shape.normals = GatherPoints(shape.normals, 3, *used);
    GatherAll(sets, *used);
}

/// Joins the points that agree in everything.
void JoinEqualPoints(ImportedGeometry& shape, CoordinateSets& sets)
{
    // More sets than this come from no modelling program; such a shape stays as it is.
    if (sets.size() > MostPointStreams - 2)
        return;
    ClearNegativeZeros(shape.positions);
    ClearNegativeZeros(shape.normals);
    std::vector<PointStream> streams{{shape.positions, 3}};
    if (!shape.normals.empty())
        streams.push_back({shape.normals, 3});
    for (std::vector<double>& set : sets) {
        ClearNegativeZeros(set);
        streams.push_back({set, 2});
    }

    const PointWeld weld = FindEqualPoints(streams);
    shape.positions = GatherPoints(shape.positions, 3, weld.sources);
    shape.normals =
        GatherPoints(shape.normals, 3, shape.normals.empty() ? std::span<const std::uint32_t>() : weld.sources);
    GatherAll(sets, weld.sources);
    for (std::uint32_t& corner : shape.triangles)
        corner = weld.remap[corner];
}

void AddNormals(ImportedGeometry& shape, CoordinateSets& sets, double creaseAngleInDegrees)
{
    ClearNegativeZeros(shape.positions);
    const std::size_t pointCount = shape.positions.size() / 3;
    PointsWithNormals made =
        MakeCreaseNormals(std::move(shape.positions), std::move(shape.triangles), creaseAngleInDegrees);
    shape.positions = std::move(made.positions);
    shape.normals = std::move(made.normals);
    shape.triangles = std::move(made.triangles);
    if (made.sources.size() > pointCount)
        GatherAll(sets, made.sources);
}

} // namespace

DocumentParts::DocumentParts(COrvelDocument& theDocument, ImportedScene& theScene, DocumentMaterials& theMaterials,
                             double creaseAngle)
    : document(theDocument)
    , scene(theScene)
    , materials(theMaterials)
    , creaseAngleInDegrees(creaseAngle)
    , tables(theScene.geometries.size())
    , geometriesLeft(theScene.textureCoordinates.size(), 0)
{
    triangleCounts.reserve(scene.geometries.size());
    for (const ImportedGeometry& geometry : scene.geometries)
        triangleCounts.push_back(geometry.triangles.size() / 3);
    CountUses();
}

bool DocumentParts::IsVisible(const ImportedPart& part) const
{
    return part.geometry != None && triangleCounts[static_cast<std::size_t>(part.geometry)] > 0;
}

const DocumentPart& DocumentParts::PartFor(const ImportedPart& imported)
{
    assert(IsVisible(imported) && "objects show something");
    const auto found = parts.find(KeyOf(imported));
    assert(found != parts.end() && "parts come from the scene");
    DocumentPart& part = found->second;
    if (part.geometry)
        return part;

    const Tables& shape = TablesOf(imported.geometry);
    part.geometry = COrvelGeometry::Create(&document);
    part.geometry->SetVerticiesTable(shape.positions);
    part.geometry->SetVerticiesNormalsTable(shape.normals);
    part.geometry->SetPolygonsTable(shape.triangles);
    if (imported.textureCoordinates != None)
        part.textureCoordinates = coordinates.at({imported.geometry, imported.textureCoordinates});
    part.material = part.uses > 1 ? materials.Own(imported.material, imported.variants)
                                  : materials.Shared(imported.material, imported.variants);
    part.triangles = triangleCounts[static_cast<std::size_t>(imported.geometry)];
    return part;
}

DocumentParts::Totals DocumentParts::Made() const
{
    Totals totals;
    for (const auto& [key, part] : parts) {
        if (part.geometry) {
            ++totals.geometries;
            totals.triangles += part.triangles;
        }
    }
    return totals;
}

DocumentParts::Key DocumentParts::KeyOf(const ImportedPart& part)
{
    return {part.geometry, part.textureCoordinates, part.material, part.variants};
}

void DocumentParts::CountUses()
{
    for (const ImportedNode& node : scene.nodes) {
        for (const ImportedPart& part : node.parts) {
            if (IsVisible(part))
                ++parts[KeyOf(part)].uses;
        }
    }
    std::size_t ownMaterials = 0;
    std::set<std::pair<Index, Index>> sharedMaterials;
    for (const auto& [key, part] : parts) {
        if (part.uses > 1)
            ++ownMaterials;
        else
            sharedMaterials.emplace(key.material, key.variants);
        if (key.textureCoordinates == None)
            continue;
        const bool isNew =
            coordinates.emplace(GeometryAndCoordinates(key.geometry, key.textureCoordinates), nullptr).second;
        geometriesLeft[static_cast<std::size_t>(key.textureCoordinates)] += isNew ? 1 : 0;
    }
    materials.MakeRoom(ownMaterials + sharedMaterials.size());
}

const DocumentParts::Tables& DocumentParts::TablesOf(Index geometry)
{
    Tables& made = tables[static_cast<std::size_t>(geometry)];
    if (made.positions)
        return made;

    ImportedGeometry shape = std::move(scene.geometries[static_cast<std::size_t>(geometry)]);
    CoordinateSets sets = TakeTextureCoordinates(geometry);
    DropUnusedPoints(shape, sets);
    if (!shape.welded)
        JoinEqualPoints(shape, sets);
    if (shape.normals.empty())
        AddNormals(shape, sets, creaseAngleInDegrees);

    made.positions = COrvelVerticiesTable::Create(&document, std::move(shape.positions));
    made.normals = COrvelVerticiesNormalsTable::Create(&document, std::move(shape.normals));
    made.triangles = COrvelPolygonsTable::Create(&document, std::move(shape.triangles));
    auto entry = coordinates.lower_bound({geometry, std::numeric_limits<Index>::min()});
    for (std::vector<double>& set : sets) {
        entry->second = COrvelTextureCoordinatesTable::Create(&document, std::move(set));
        ++entry;
    }
    return made;
}

/// The sets that a geometry is used with, in the order of `coordinates`; each is copied until its last use.
CoordinateSets DocumentParts::TakeTextureCoordinates(Index geometry)
{
    CoordinateSets sets;
    for (auto entry = coordinates.lower_bound({geometry, std::numeric_limits<Index>::min()});
         entry != coordinates.end() && entry->first.first == geometry; ++entry)
    {
        const auto index = static_cast<std::size_t>(entry->first.second);
        std::vector<double>& values = scene.textureCoordinates[index].values;
        if (--geometriesLeft[index] == 0)
            sets.push_back(std::move(values));
        else
            sets.push_back(values);
    }
    return sets;
}

} // namespace Orvel::Import
