#include "tool/render/PrcMeshes.h"

#include "tool/import/CreaseNormals.h"
#include "tool/render/PrcMaterials.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace Orvel::Render
{

namespace
{

using prc::Model::Face;
using prc::Model::Tessellation;
using prc::Model::TriangleCorners;

std::vector<float> ToFloats(const std::vector<double>& numbers)
{
    std::vector<float> floats(numbers.size());
    std::ranges::transform(numbers, floats.begin(), [](double number) { return static_cast<float>(number); });
    return floats;
}

bool HasAny(const std::vector<std::uint32_t>& indices)
{
    return std::ranges::any_of(indices, [](std::uint32_t index) { return index != prc::nullIndex; });
}

/// The triangles of all faces, and what each face says of its own.
class FaceCollector
{
public:
    FaceCollector(Mesh& collected, std::uint32_t ofStructure, PrcMaterials& usedMaterials)
        : mesh(collected)
        , structure(ofStructure)
        , materials(usedMaterials)
    {}

    void Add(const Tessellation& tessellation, const Face& face)
    {
        const std::size_t before = corners.points.size();
        prc::Model::appendTriangles(tessellation, face, corners);
        const std::size_t count = corners.points.size() - before;
        if (count == 0)
            return;
        if (!face.styles.empty() && face.styles.front() != prc::nullIndex) {
            mesh.materials.resize(before / 3, None);
            mesh.materials.resize((before + count) / 3, materials.For({structure, face.styles.front()}));
        }
        if (face.colourComponents >= 3)
            AddColours(face, before, count);
    }

    TriangleCorners Finish()
    {
        if (!mesh.materials.empty())
            mesh.materials.resize(corners.points.size() / 3, None);
        if (!mesh.cornerColours.empty())
            mesh.cornerColours.resize(corners.points.size() * 4, 0);
        return std::move(corners);
    }

private:
    void AddColours(const Face& face, std::size_t first, std::size_t count)
    {
        // Corners without a colour are marked by an alpha of 0.
        mesh.cornerColours.resize(first * 4, 0);
        for (std::size_t corner = first; corner < first + count; ++corner) {
            const std::size_t at = std::size_t{corners.colours[corner]} * face.colourComponents;
            const bool isThere =
                corners.colours[corner] != prc::nullIndex && at + face.colourComponents <= face.vertexColours.size();
            for (std::size_t channel = 0; channel < 3; ++channel)
                mesh.cornerColours.push_back(isThere ? face.vertexColours[at + channel] : std::uint8_t{0});
            mesh.cornerColours.push_back(isThere ? std::uint8_t{255} : std::uint8_t{0});
        }
    }

    Mesh& mesh;
    std::uint32_t structure;
    PrcMaterials& materials;
    TriangleCorners corners;
};

/// Removes entries of a corner or triangle array, `width` for a triangle.
template <typename T>
void KeepTriangles(std::vector<T>& values, const std::vector<bool>& isKept, std::size_t width)
{
    if (values.empty())
        return;
    std::size_t to = 0;
    for (std::size_t triangle = 0; triangle < isKept.size(); ++triangle) {
        if (!isKept[triangle])
            continue;
        for (std::size_t k = 0; k < width; ++k)
            values[to++] = values[triangle * width + k];
    }
    values.resize(to);
}

/// @return how many triangles went.
std::uint64_t RemoveTrianglesWithoutPlace(const std::vector<double>& coordinates, Mesh& mesh)
{
    if (std::ranges::all_of(coordinates, [](double number) { return std::isfinite(number); }))
        return 0;
    std::vector<bool> isKept(mesh.TriangleCount());
    std::uint64_t kept = 0;
    for (std::size_t triangle = 0; triangle < isKept.size(); ++triangle) {
        bool isFinite = true;
        for (std::size_t k = 0; k < 9; ++k)
            isFinite =
                isFinite && std::isfinite(coordinates[std::size_t{3} * mesh.corners[3 * triangle + k / 3] + k % 3]);
        isKept[triangle] = isFinite;
        kept += isFinite ? 1 : 0;
    }
    KeepTriangles(mesh.corners, isKept, 3);
    KeepTriangles(mesh.cornerNormals, isKept, 3);
    KeepTriangles(mesh.cornerTextureCoordinates, isKept, 3);
    KeepTriangles(mesh.cornerColours, isKept, 12);
    KeepTriangles(mesh.materials, isKept, 1);
    return isKept.size() - kept;
}

/// Brings the points that triangles use into the range of -1 to 1; all others become its middle, so that they count
/// nowhere.
void SetPoints(const std::vector<double>& coordinates, Mesh& mesh)
{
    std::vector<bool> isUsed(coordinates.size() / 3);
    for (const std::uint32_t corner : mesh.corners)
        isUsed[corner] = true;
    Eigen::Vector3d minimum = Eigen::Vector3d::Constant(std::numeric_limits<double>::infinity());
    Eigen::Vector3d maximum = -minimum;
    for (std::size_t point = 0; point < isUsed.size(); ++point) {
        if (!isUsed[point])
            continue;
        const Eigen::Map<const Eigen::Vector3d> place(coordinates.data() + 3 * point);
        minimum = minimum.cwiseMin(place);
        maximum = maximum.cwiseMax(place);
    }
    mesh.centre = minimum / 2.0 + maximum / 2.0;
    const double scale = (maximum / 2.0 - minimum / 2.0).maxCoeff();
    mesh.scale = scale > 0.0 ? scale : 1.0;
    mesh.points.assign(coordinates.size(), 0.0F);
    for (std::size_t point = 0; point < isUsed.size(); ++point) {
        for (std::size_t axis = 0; isUsed[point] && axis < 3; ++axis) {
            const double offset = coordinates[3 * point + axis] - mesh.centre[static_cast<Eigen::Index>(axis)];
            mesh.points[3 * point + axis] = static_cast<float>(offset / mesh.scale);
        }
    }
}

/// Smooth where the file asks for normals to be computed.
void AddNormals(const Tessellation& tessellation, Mesh& mesh)
{
    // The maker of normals wants one zero, and no other numbers than finite ones.
    std::vector<double> points(mesh.points.size());
    std::ranges::transform(mesh.points, points.begin(), [](float number) { return static_cast<double>(number) + 0.0; });
    Import::PointsWithNormals made =
        Import::MakeCreaseNormals(std::move(points), mesh.corners, tessellation.creaseAngleInDegrees);
    mesh.normals = ToFloats(made.normals);
    mesh.cornerNormals = std::move(made.triangles);
}

} // namespace

BuiltMesh BuildMesh(const Tessellation& tessellation, std::uint32_t structure, PrcMaterials& materials)
{
    BuiltMesh built;
    Mesh& mesh = built.mesh;
    FaceCollector collector(mesh, structure, materials);
    for (const Face& face : tessellation.faces)
        collector.Add(tessellation, face);
    TriangleCorners corners = collector.Finish();
    mesh.corners = std::move(corners.points);
    if (HasAny(corners.normals)) {
        mesh.cornerNormals = std::move(corners.normals);
        mesh.normals = ToFloats(tessellation.normalCoordinates);
    }
    if (HasAny(corners.textureCoordinates)) {
        mesh.cornerTextureCoordinates = std::move(corners.textureCoordinates);
        mesh.textureCoordinates = ToFloats(tessellation.textureCoordinates);
    }
    built.leftOutTriangles = RemoveTrianglesWithoutPlace(tessellation.coordinates, mesh);
    if (mesh.corners.empty())
        return built;
    SetPoints(tessellation.coordinates, mesh);
    if (mesh.normals.empty() && tessellation.mustRecalculateNormals)
        AddNormals(tessellation, mesh);
    return built;
}

} // namespace Orvel::Render
