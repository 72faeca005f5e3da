#include "tool/render/PrcRenderScene.h"

#include "tool/render/PrcMaterials.h"
#include "tool/render/PrcMeshes.h"

#include <Eigen/LU>

#include <cmath>
#include <map>
#include <optional>
#include <utility>

namespace Orvel::Render
{

namespace
{

using prc::Model::PlacedItem;

/// The place of a mesh in coordinates of its own; nothing when it cannot be inverted.
std::optional<Eigen::Affine3d> PlaceOf(const prc::Matrix& world, const Mesh& mesh)
{
    const Eigen::Map<const Eigen::Matrix<double, 4, 4, Eigen::RowMajor>> matrix(world.data());
    Eigen::Affine3d place;
    place.matrix() = matrix;
    place.makeAffine();
    place.translate(mesh.centre).scale(mesh.scale);
    if (!place.matrix().allFinite())
        return std::nullopt;
    // Of unit columns, so that neither the unit of the file nor a stretched shape counts.
    Eigen::Matrix3d columns = place.linear();
    for (int column = 0; column < 3; ++column) {
        const double length = columns.col(column).stableNorm();
        if (!(length > 0.0) || !std::isfinite(length))
            return std::nullopt;
        columns.col(column) /= length;
    }
    if (std::abs(columns.determinant()) < 1e-9)
        return std::nullopt;
    return place;
}

class SceneBuilder
{
public:
    explicit SceneBuilder(const prc::Model::PRCModel& builtModel)
        : model(builtModel)
        , materials(builtModel, built.scene)
    {}

    void Add(const PlacedItem& item)
    {
        const std::uint32_t tessellation =
            model.structures[item.structure].parts[item.part].items[item.item].tessellation;
        if (!item.isShown || tessellation == prc::nullIndex)
            return;
        const std::uint32_t mesh = MeshFor(item.structure, tessellation);
        if (mesh == None)
            return;
        const std::optional<Eigen::Affine3d> place = PlaceOf(item.world, built.scene.meshes[mesh]);
        if (place)
            built.scene.instances.push_back({mesh, materials.For(item.style), *place});
        else
            ++flattened;
    }

    BuiltRenderScene Finish()
    {
        built.notes = materials.Notes();
        if (flattened > 0)
            built.notes.push_back("left out: " + std::to_string(flattened) +
                                  " shapes without thickness in their place");
        if (leftOutTriangles > 0)
            built.notes.push_back("left out: " + std::to_string(leftOutTriangles) + " triangles without a place");
        return std::move(built);
    }

private:
    std::uint32_t MeshFor(std::uint32_t structure, std::uint32_t tessellation)
    {
        const auto [known, isNew] = meshes.try_emplace({structure, tessellation}, None);
        if (!isNew)
            return known->second;
        BuiltMesh made = BuildMesh(model.structures[structure].tessellations[tessellation], structure, materials);
        leftOutTriangles += made.leftOutTriangles;
        if (made.mesh.corners.empty())
            return None;
        built.scene.meshes.push_back(std::move(made.mesh));
        known->second = static_cast<std::uint32_t>(built.scene.meshes.size() - 1);
        return known->second;
    }

    const prc::Model::PRCModel& model;
    BuiltRenderScene built;
    PrcMaterials materials;
    std::map<std::pair<std::uint32_t, std::uint32_t>, std::uint32_t> meshes; ///< by structure and tessellation
    std::uint64_t flattened = 0;
    std::uint64_t leftOutTriangles = 0;
};

} // namespace

BuiltRenderScene BuildRenderScene(const prc::Model::PRCModel& model, const prc::Model::PlacedScene& placed)
{
    SceneBuilder builder(model);
    for (const PlacedItem& item : placed.items)
        builder.Add(item);
    return builder.Finish();
}

} // namespace Orvel::Render
