#pragma once

#include "tool/import/GltfAccessors.h"
#include "tool/import/GltfDocument.h"
#include "tool/import/GltfMaterials.h"
#include "tool/import/ImportReport.h"
#include "tool/import/ImportedScene.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace Orvel::Import
{

/// Turns the meshes in use into parts, with their shapes and texture coordinates in a scene's tables.
class GltfMeshes
{
public:
    /// The arguments are not owned and must outlive the object.
    GltfMeshes(const GltfDocument& document, GltfAccessors& accessors, GltfMaterials& materials, ImportedScene& scene,
               ImportReport& report);

    /// The parts of a mesh, one for each primitive that is a surface. Valid until the object dies.
    /// @throws ImportError naming the mesh, when its data is faulty.
    [[nodiscard]] const std::vector<ImportedPart>& Parts(int mesh);

    /// Number of primitives passed over because of their compression.
    [[nodiscard]] std::size_t CompressedCount() const { return compressedCount; }

private:
    /// Canonical accessors of positions, normals and indices, and the mode: what makes two shapes the same.
    using ShapeKey = std::array<int, 4>;

    /// Which points of the file's arrays a shape is made of.
    struct Points
    {
        std::size_t countInFile = 0;
        std::optional<std::vector<std::uint32_t>> used; ///< ascending; nothing: all of them
    };

    std::vector<ImportedPart> MakeParts(const tinygltf::Mesh& mesh, const std::string& where);
    bool HasPicture(Index material) const;
    bool IsSurface(const tinygltf::Primitive& primitive);
    bool PassOverCompressed(const tinygltf::Primitive& primitive);
    Index VariantMaterials(const tinygltf::Primitive& primitive, Index ownMaterial);
    int PicturedMaterial(const tinygltf::Primitive& primitive) const;
    void CountLeftOut(const tinygltf::Primitive& primitive, int coordinateSet);
    Index Shape(const tinygltf::Primitive& primitive, const std::string& where);
    std::optional<ImportedGeometry> MakeShape(const tinygltf::Primitive& primitive, const std::string& where,
                                              Points& points);
    void TakeNormals(int accessor, const Points& points, ImportedGeometry& shape, const std::string& where);
    std::vector<double> Numbers(int accessor, int components, const Points& points);
    Index Coordinates(const tinygltf::Primitive& primitive, int set, Index geometry, const std::string& where);

    const GltfDocument& document;
    GltfAccessors& accessors;
    GltfMaterials& materials;
    ImportedScene& scene;
    ImportReport& report;
    std::vector<std::optional<std::vector<ImportedPart>>> partsOfMesh;
    std::map<ShapeKey, Index> shapes;
    std::vector<Points> pointsOfShape;                  ///< for each geometry of the scene
    std::map<std::pair<Index, int>, Index> coordinates; ///< of a geometry and a canonical accessor
    std::map<std::vector<Index>, Index> variantMaterials;
    std::size_t compressedCount = 0;
};

} // namespace Orvel::Import
