#include "tests/support/PRCPlacement.h"

#include <algorithm>
#include <cmath>

namespace Orvel::Test
{
namespace
{

constexpr Matrix identity{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

/// The inverse transpose takes normals along, sheared and mirrored spaces included. It is the matrix of cofactors
/// divided by the determinant, of which only the sign matters for the direction.
Vector3 TransformNormal(const Matrix& m, const Vector3& n)
{
    Vector3 result{};
    double determinant = 0;
    for (size_t row = 0; row < 3; ++row) {
        const size_t r1 = 4 * ((row + 1) % 3), r2 = 4 * ((row + 2) % 3);
        for (size_t column = 0; column < 3; ++column) {
            const size_t c1 = (column + 1) % 3, c2 = (column + 2) % 3;
            const double cofactor = m[r1 + c1] * m[r2 + c2] - m[r1 + c2] * m[r2 + c1];
            result[row] += cofactor * n[column];
            if (row == 0)
                determinant += m[column] * cofactor;
        }
    }
    const double length = std::copysign(std::hypot(result[0], result[1], result[2]), determinant);
    for (double& component : result)
        component = length != 0 ? component / length : 0;
    return result;
}

void AddItems(const std::vector<RepresentationItem>& items, const PRCContent& content, const PlacedMesh& frame,
              std::vector<PlacedMesh>& meshes)
{
    for (const RepresentationItem& item : items) {
        if (item.tessellation) {
            meshes.push_back(frame);
            meshes.back().item = &item;
            meshes.back().tessellation = &content.tessellations[*item.tessellation];
        }
        AddItems(item.items, content, frame, meshes);
    }
}

std::optional<size_t> WinningStyle(const PRCContent& content, const PlacedMesh& mesh, size_t face)
{
    for (const std::optional<size_t>& style :
         {mesh.tessellation->faces.at(face).style, mesh.item->style, mesh.part->style}) {
        if (style)
            return style;
    }
    for (auto i = mesh.place.chain.rbegin(); i != mesh.place.chain.rend(); ++i) {
        if (content.occurrences[*i].style)
            return content.occurrences[*i].style;
    }
    return std::nullopt;
}

} // namespace

Matrix Multiply(const Matrix& left, const Matrix& right)
{
    Matrix result{};
    for (size_t row = 0; row < 4; ++row) {
        for (size_t column = 0; column < 4; ++column) {
            for (size_t k = 0; k < 4; ++k)
                result[4 * row + column] += left[4 * row + k] * right[4 * k + column];
        }
    }
    return result;
}

Vector3 TransformPoint(const Matrix& m, const Vector3& p)
{
    Vector3 result{};
    for (size_t row = 0; row < 3; ++row)
        result[row] = m[4 * row] * p[0] + m[4 * row + 1] * p[1] + m[4 * row + 2] * p[2] + m[4 * row + 3];
    return result;
}

std::vector<PlacedOccurrence> WalkTree(const PRCContent& content)
{
    std::vector<PlacedOccurrence> result;
    // A stack of its own: a tree of groups may be deeper than the program's stack.
    std::vector<std::pair<size_t, std::optional<size_t>>> waiting{{content.root, std::nullopt}};
    while (!waiting.empty()) {
        const auto [index, parent] = waiting.back();
        waiting.pop_back();
        const ProductOccurrence& occurrence = content.occurrences[index];
        PlacedOccurrence place = parent ? result[*parent] : PlacedOccurrence{0, {}, {}, identity};
        place.occurrence = index;
        place.chain.push_back(index);
        place.path.push_back(occurrence.name.value_or(""));
        if (occurrence.location)
            place.world = Multiply(place.world, *occurrence.location);
        for (auto child = occurrence.children.rbegin(); child != occurrence.children.rend(); ++child)
            waiting.emplace_back(*child, result.size());
        result.push_back(std::move(place));
    }
    return result;
}

std::vector<PlacedOccurrence> FindByPath(const PRCContent& content, const std::vector<std::string>& path)
{
    std::vector<PlacedOccurrence> places = WalkTree(content);
    std::erase_if(places, [&path](const PlacedOccurrence& place) { return place.path != path; });
    return places;
}

std::vector<PlacedMesh> PlacedMeshes(const PRCContent& content)
{
    std::vector<PlacedMesh> meshes;
    for (const PlacedOccurrence& place : WalkTree(content)) {
        const std::optional<size_t> part = content.occurrences[place.occurrence].part;
        if (part)
            AddItems(content.parts[*part].items, content, {place, &content.parts[*part], nullptr, nullptr}, meshes);
    }
    return meshes;
}

std::vector<Triangle> LocalTriangles(const Tessellation& tess, size_t faceIndex)
{
    const Face& face = tess.faces.at(faceIndex);
    std::vector<Triangle> triangles(face.triangleCount);
    size_t at = face.firstIndex;
    for (Triangle& triangle : triangles) {
        for (Corner& corner : triangle) {
            if (!tess.mustRecalculateNormals)
                corner.normal = tess.normals[tess.indices[at++] / 3];
            if (face.textured)
                corner.textureCoordinate = tess.textureCoordinates[tess.indices[at++] / 2];
            corner.point = tess.points[tess.indices[at++] / 3];
        }
    }
    return triangles;
}

std::vector<Triangle> WorldTriangles(const PlacedMesh& mesh)
{
    std::vector<Triangle> triangles;
    for (size_t face = 0; face < mesh.tessellation->faces.size(); ++face) {
        const std::vector<Triangle> local = LocalTriangles(*mesh.tessellation, face);
        triangles.insert(triangles.end(), local.begin(), local.end());
    }
    for (Triangle& triangle : triangles) {
        for (Corner& corner : triangle) {
            corner.point = TransformPoint(mesh.place.world, corner.point);
            if (corner.normal)
                corner.normal = TransformNormal(mesh.place.world, *corner.normal);
        }
    }
    return triangles;
}

ResolvedMaterial MaterialOf(const PRCContent& content, const PlacedMesh& mesh, size_t face)
{
    ResolvedMaterial result;
    const std::optional<size_t> style = WinningStyle(content, mesh, face);
    if (!style)
        return result;
    result.style = &content.styles[*style];
    const auto* entry = &content.materials[result.style->material];
    if (const auto* application = std::get_if<TextureApplication>(entry)) {
        result.texture = &content.textureDefinitions[application->textureDefinition];
        result.picture = &content.pictures[result.texture->picture];
        entry = &content.materials[application->material];
    }
    result.material = &std::get<Material>(*entry);
    result.alpha = result.style->transparency ? *result.style->transparency / 255.0 : 1.0;
    return result;
}

} // namespace Orvel::Test
