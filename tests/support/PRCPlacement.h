#pragma once

#include "tests/support/PRCDecoder.h"

/// What a viewer makes of a decoded file: the tree with names and world matrices, the placed meshes with their
/// triangles and materials.
namespace Orvel::Test
{

/// A product occurrence at one place of the tree.
struct PlacedOccurrence
{
    size_t occurrence = 0;
    std::vector<size_t> chain;     ///< occurrences from the root to this one, both included
    std::vector<std::string> path; ///< their names; "" where there is none
    Matrix world{};                ///< row by row: takes column vectors of this place to the model's space
};

/// A mesh at one place of the tree. Points into the content, which must outlive it.
struct PlacedMesh
{
    PlacedOccurrence place;
    const Part* part = nullptr;
    const RepresentationItem* item = nullptr;
    const Tessellation* tessellation = nullptr;
};

struct Corner
{
    Vector3 point{};
    std::optional<Vector3> normal;
    std::optional<Vector2> textureCoordinate;

    bool operator==(const Corner&) const = default;
};

using Triangle = std::array<Corner, 3>;

/// The look of one face; null where there is none. Points into the content.
struct ResolvedMaterial
{
    const Style* style = nullptr;
    const Material* material = nullptr;
    const TextureDefinition* texture = nullptr;
    const Picture* picture = nullptr;
    double alpha = 1; ///< 0 invisible, 1 opaque
};

/// The whole tree, depth first: parents before their children, children in file order.
[[nodiscard]] std::vector<PlacedOccurrence> WalkTree(const PRCContent& content);

/// The places whose names, from the root down, are `path`.
[[nodiscard]] std::vector<PlacedOccurrence> FindByPath(const PRCContent& content, const std::vector<std::string>& path);

/// All meshes in the order of WalkTree; sets are opened.
[[nodiscard]] std::vector<PlacedMesh> PlacedMeshes(const PRCContent& content);

/// The triangles of one face, in the space of the part.
[[nodiscard]] std::vector<Triangle> LocalTriangles(const Tessellation& tessellation, size_t face);

/// The triangles of all faces, in the space of the model. Normals are of unit length again.
[[nodiscard]] std::vector<Triangle> WorldTriangles(const PlacedMesh& mesh);

/// The style that wins: the face's own, else the item's, the part's, the occurrence's, its ancestors'.
[[nodiscard]] ResolvedMaterial MaterialOf(const PRCContent& content, const PlacedMesh& mesh, size_t face = 0);

[[nodiscard]] Matrix Multiply(const Matrix& left, const Matrix& right);
[[nodiscard]] Vector3 TransformPoint(const Matrix& matrix, const Vector3& point);

} // namespace Orvel::Test
