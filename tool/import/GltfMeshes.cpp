#include "tool/import/GltfMeshes.h"

#include "tool/import/GltfGeometry.h"
#include "tool/import/GltfVariants.h"
#include "tool/import/UnitNormals.h"
#include "tool/import/UsedPoints.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace Orvel::Import
{

namespace
{

constexpr const char* DracoExtension = "KHR_draco_mesh_compression";

int Attribute(const tinygltf::Primitive& primitive, const std::string& name)
{
    const auto found = primitive.attributes.find(name);
    return found == primitive.attributes.end() ? -1 : found->second;
}

std::size_t CountAttributes(const tinygltf::Primitive& primitive, std::string_view prefix)
{
    return static_cast<std::size_t>(
        std::count_if(primitive.attributes.begin(), primitive.attributes.end(),
                      [&](const auto& attribute) { return attribute.first.starts_with(prefix); }));
}

/// @return the first point with a number that is not finite.
std::optional<std::size_t> PointThatIsNotFinite(const std::vector<double>& positions)
{
    const auto found =
        std::find_if(positions.begin(), positions.end(), [](double value) { return !std::isfinite(value); });
    if (found == positions.end())
        return std::nullopt;
    return static_cast<std::size_t>(found - positions.begin()) / 3;
}

/// A texture coordinate that is no number says nothing, but spoils no shape either: 0 stands in.
/// @return how many were replaced.
std::size_t ReplaceWhatIsNotFinite(std::vector<double>& values)
{
    std::size_t replaced = 0;
    for (double& value : values)
        if (!std::isfinite(value)) {
            value = 0.0;
            ++replaced;
        }
    return replaced;
}

} // namespace

GltfMeshes::GltfMeshes(const GltfDocument& gltfDocument, GltfAccessors& gltfAccessors, GltfMaterials& gltfMaterials,
                       ImportedScene& importedScene, ImportReport& importReport)
    : document(gltfDocument)
    , accessors(gltfAccessors)
    , materials(gltfMaterials)
    , scene(importedScene)
    , report(importReport)
    , partsOfMesh(document.model.meshes.size())
{}

const std::vector<ImportedPart>& GltfMeshes::Parts(int mesh)
{
    const auto position = static_cast<std::size_t>(mesh);
    std::optional<std::vector<ImportedPart>>& parts = partsOfMesh.at(position);
    if (parts)
        return *parts;
    const tinygltf::Mesh& source = document.model.meshes[position];
    const std::string where = source.name.empty() ? "mesh " + std::to_string(mesh) : "mesh " + Quoted(source.name);
    try {
        parts = MakeParts(source, where);
    } catch (const ImportError& error) {
        throw ImportError(where + ": " + error.what());
    }
    return *parts;
}

std::vector<ImportedPart> GltfMeshes::MakeParts(const tinygltf::Mesh& mesh, const std::string& where)
{
    std::vector<ImportedPart> parts;
    for (const tinygltf::Primitive& primitive : mesh.primitives) {
        if (!IsSurface(primitive) || PassOverCompressed(primitive))
            continue;
        const Index geometry = Shape(primitive, where);
        if (geometry == None)
            continue;
        const int set = materials.CoordinateSet(PicturedMaterial(primitive));
        ImportedPart& part = parts.emplace_back();
        part.name = mesh.name;
        part.geometry = geometry;
        part.textureCoordinates = Coordinates(primitive, set, geometry, where);
        part.material = materials.Convert(primitive.material);
        part.variants = VariantMaterials(primitive, part.material);
        if (part.textureCoordinates == None && HasPicture(part.material))
            report.Warn(where + ": its texture is not shown, as it has no texture coordinates");
        CountLeftOut(primitive, set);
    }
    return parts;
}

bool GltfMeshes::HasPicture(Index material) const
{
    return material != None && scene.materials[static_cast<std::size_t>(material)].image != None;
}

/// @return the number of the row in the scene's table, which is the same for all parts with the same materials.
Index GltfMeshes::VariantMaterials(const tinygltf::Primitive& primitive, Index ownMaterial)
{
    std::vector<Index> row;
    bool differs = false;
    for (const int material : MaterialsOfVariants(primitive, document.variants.size())) {
        const Index converted = material < 0 ? None : materials.Convert(material);
        row.push_back(converted == ownMaterial ? None : converted);
        differs = differs || row.back() != None;
    }
    if (!differs)
        return None;
    const auto [place, isNew] =
        variantMaterials.emplace(std::move(row), static_cast<Index>(scene.variantMaterials.size()));
    if (isNew)
        scene.variantMaterials.push_back(place->first);
    return place->second;
}

/// The material whose picture decides on the texture coordinates: a part keeps one set for all its variants.
int GltfMeshes::PicturedMaterial(const tinygltf::Primitive& primitive) const
{
    if (materials.HasPicture(primitive.material))
        return primitive.material;
    for (const int material : MaterialsOfVariants(primitive, document.variants.size()))
        if (materials.HasPicture(material))
            return material;
    return primitive.material;
}

bool GltfMeshes::IsSurface(const tinygltf::Primitive& primitive)
{
    switch (primitive.mode) {
    case TINYGLTF_MODE_POINTS:
        report.CountLeftOut("point primitive", "point primitives");
        return false;
    case TINYGLTF_MODE_LINE:
    case TINYGLTF_MODE_LINE_LOOP:
    case TINYGLTF_MODE_LINE_STRIP:
        report.CountLeftOut("line primitive", "line primitives");
        return false;
    case TINYGLTF_MODE_TRIANGLES:
    case TINYGLTF_MODE_TRIANGLE_STRIP:
    case TINYGLTF_MODE_TRIANGLE_FAN:
        return true;
    default:
        throw ImportError("a primitive has the unknown mode " + std::to_string(primitive.mode));
    }
}

bool GltfMeshes::PassOverCompressed(const tinygltf::Primitive& primitive)
{
    const int positions = Attribute(primitive, "POSITION");
    const auto isCompressed = [&](int accessor) { return accessor >= 0 && accessors.IsCompressed(accessor); };
    const bool isMeshopt = isCompressed(primitive.indices) ||
                           std::any_of(primitive.attributes.begin(), primitive.attributes.end(),
                                       [&](const auto& attribute) { return isCompressed(attribute.second); });
    // A primitive may bring plain data beside the compressed, for readers that know no better.
    const bool isDraco = primitive.extensions.contains(DracoExtension) &&
                         (positions < 0 || !accessors.HasBytes(positions) || primitive.indices < 0);
    if (isDraco)
        report.CountLeftOut("compressed primitive (KHR_draco_mesh_compression)",
                            "compressed primitives (KHR_draco_mesh_compression)");
    else if (isMeshopt)
        report.CountLeftOut("compressed primitive (EXT_meshopt_compression)",
                            "compressed primitives (EXT_meshopt_compression)");
    compressedCount += isDraco || isMeshopt ? 1 : 0;
    return isDraco || isMeshopt;
}

void GltfMeshes::CountLeftOut(const tinygltf::Primitive& primitive, int coordinateSet)
{
    const bool usesSet = Attribute(primitive, "TEXCOORD_" + std::to_string(coordinateSet)) >= 0;
    report.CountLeftOut("second texture coordinate set", "second texture coordinate sets",
                        CountAttributes(primitive, "TEXCOORD_") - (usesSet ? 1U : 0U));
    report.CountLeftOut("vertex colour set", "vertex colour sets", CountAttributes(primitive, "COLOR_"));
    report.CountLeftOut("morph target", "morph targets", primitive.targets.size());
}

Index GltfMeshes::Shape(const tinygltf::Primitive& primitive, const std::string& where)
{
    const int positions = Attribute(primitive, "POSITION");
    if (positions < 0)
        throw ImportError("a primitive has no POSITION");
    const ShapeKey key{accessors.Canonical(positions), accessors.Canonical(Attribute(primitive, "NORMAL")),
                       accessors.Canonical(primitive.indices), primitive.mode};
    const auto [place, isNew] = shapes.emplace(key, None);
    if (!isNew)
        return place->second;
    Points points;
    if (std::optional<ImportedGeometry> shape = MakeShape(primitive, where, points)) {
        place->second = static_cast<Index>(scene.geometries.size());
        scene.geometries.push_back(std::move(*shape));
        pointsOfShape.push_back(std::move(points));
    }
    return place->second;
}

/// Points that no triangle uses are not even decoded: many primitives may share one large array.
std::optional<ImportedGeometry> GltfMeshes::MakeShape(const tinygltf::Primitive& primitive, const std::string& where,
                                                      Points& points)
{
    const int positions = Attribute(primitive, "POSITION");
    points.countInFile = accessors.Count(positions);
    ImportedGeometry shape;
    shape.welded = primitive.indices >= 0;
    std::vector<std::uint32_t> indices;
    if (shape.welded) {
        indices = accessors.Indices(primitive.indices);
    } else {
        // Decoding checks the number of points before anything is made as long as it says.
        shape.positions = accessors.Numbers(positions, 3);
        if (points.countInFile > std::numeric_limits<std::uint32_t>::max())
            throw ImportError("it has more than 4294967295 points");
        indices = CountingUp(static_cast<std::uint32_t>(points.countInFile));
    }
    CheckIndices(indices, points.countInFile);
    const std::size_t unused = TrianglesFrom(primitive.mode, indices, shape.triangles);
    if (unused > 0)
        report.Warn(where + ": the last " + std::to_string(unused) + " indices make no triangle");
    if (shape.triangles.empty())
        return std::nullopt;

    points.used = RenumberUsedPoints(shape.triangles, points.countInFile);
    if (shape.welded || points.used)
        shape.positions = Numbers(positions, 3, points);
    if (const auto point = PointThatIsNotFinite(shape.positions))
        throw ImportError("the position of point " + std::to_string(points.used ? (*points.used)[*point] : *point) +
                          " is not finite");
    if (const int normals = Attribute(primitive, "NORMAL"); normals >= 0)
        TakeNormals(normals, points, shape, where);
    return shape;
}

void GltfMeshes::TakeNormals(int accessor, const Points& points, ImportedGeometry& shape, const std::string& where)
{
    if (accessors.Count(accessor) != points.countInFile)
        throw ImportError("it has " + std::to_string(accessors.Count(accessor)) + " normals for " +
                          std::to_string(points.countInFile) + " points");
    shape.normals = Numbers(accessor, 3, points);
    MakeNormalsUnit(shape, where, report);
}

std::vector<double> GltfMeshes::Numbers(int accessor, int components, const Points& points)
{
    return points.used ? accessors.Numbers(accessor, components, *points.used)
                       : accessors.Numbers(accessor, components);
}

Index GltfMeshes::Coordinates(const tinygltf::Primitive& primitive, int set, Index geometry, const std::string& where)
{
    const std::string name = "TEXCOORD_" + std::to_string(set);
    const int accessor = Attribute(primitive, name);
    if (accessor < 0)
        return None;
    const Points& points = pointsOfShape[static_cast<std::size_t>(geometry)];
    if (accessors.Count(accessor) != points.countInFile)
        throw ImportError("it has " + std::to_string(accessors.Count(accessor)) + " elements of " + name + " for " +
                          std::to_string(points.countInFile) + " points");
    const auto [place, isNew] = coordinates.emplace(std::pair(geometry, accessors.Canonical(accessor)), None);
    if (!isNew)
        return place->second;

    std::vector<double> values = Numbers(accessor, 2, points);
    if (const std::size_t replaced = ReplaceWhatIsNotFinite(values); replaced > 0)
        report.Warn(where + ": " + std::to_string(replaced) + " texture coordinates are not finite; 0 stands in");
    for (std::size_t i = 1; i < values.size(); i += 2)
        values[i] = 1.0 - values[i];
    place->second = static_cast<Index>(scene.textureCoordinates.size());
    scene.textureCoordinates.push_back({std::move(values)});
    return place->second;
}

} // namespace Orvel::Import
