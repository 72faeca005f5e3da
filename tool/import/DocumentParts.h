#pragma once

#include "tool/import/DocumentMaterials.h"
#include "tool/import/ImportedScene.h"

#include <compare>
#include <cstddef>
#include <map>
#include <utility>
#include <vector>

namespace Orvel
{
class COrvelDocument;
class COrvelGeometry;
class COrvelMaterial;
class COrvelPolygonsTable;
class COrvelTextureCoordinatesTable;
class COrvelVerticiesNormalsTable;
class COrvelVerticiesTable;
} // namespace Orvel

namespace Orvel::Import
{

/// What a 3D object shows.
struct DocumentPart
{
    COrvelGeometry* geometry = nullptr;                          ///< null: not made yet
    COrvelTextureCoordinatesTable* textureCoordinates = nullptr; ///< null: none
    COrvelMaterial* material = nullptr;
    std::size_t triangles = 0;
    std::size_t uses = 0; ///< parts of the scene that show this
};

/// Makes what the document's objects show out of the parts of a scene: geometries, their tables, and materials.
///
/// Parts that agree in shape, texture coordinates and material show one geometry. An exporter that stores such a
/// geometry once ties it to one material, and a material to one geometry, at a time; so a combination that is used
/// twice or more has a material of its own, and parts that differ in anything have different geometries (which share
/// their tables when the shape is the same).
class DocumentParts
{
public:
    /// @param document  receives the entities; not owned, as the others; must outlive this object.
    /// @param scene     its shapes are moved into the document as parts are asked for.
    /// @param materials makes the materials.
    DocumentParts(COrvelDocument& document, ImportedScene& scene, DocumentMaterials& materials,
                  double creaseAngleInDegrees);

    /// Whether there is anything to show: a shape with triangles.
    [[nodiscard]] bool IsVisible(const ImportedPart& part) const;

    /// @param part one of the scene's parts; visible.
    const DocumentPart& PartFor(const ImportedPart& part);

    struct Totals
    {
        std::size_t geometries = 0;
        std::size_t triangles = 0; ///< of these geometries, each counted once
    };
    /// What was made so far.
    [[nodiscard]] Totals Made() const;

private:
    struct Key
    {
        Index geometry;
        Index textureCoordinates;
        Index material;
        Index variants;

        auto operator<=>(const Key&) const = default;
    };
    struct Tables
    {
        COrvelVerticiesTable* positions = nullptr; ///< null: not made yet
        COrvelVerticiesNormalsTable* normals = nullptr;
        COrvelPolygonsTable* triangles = nullptr;
    };
    using GeometryAndCoordinates = std::pair<Index, Index>;

    static Key KeyOf(const ImportedPart& part);
    void CountUses();
    const Tables& TablesOf(Index geometry);
    std::vector<std::vector<double>> TakeTextureCoordinates(Index geometry);

    COrvelDocument& document;
    ImportedScene& scene;
    DocumentMaterials& materials;
    double creaseAngleInDegrees;

    std::vector<std::size_t> triangleCounts; ///< for each geometry: the scene's own arrays are moved away on the way
    std::map<Key, DocumentPart> parts;
    std::vector<Tables> tables; ///< for each geometry
    /// Texture coordinates that a geometry is used with. One set may serve several geometries, whose points need not
    /// stay the same.
    std::map<GeometryAndCoordinates, COrvelTextureCoordinatesTable*> coordinates;
    std::vector<std::size_t> geometriesLeft; ///< for each set of texture coordinates: those that still need it
};

} // namespace Orvel::Import
