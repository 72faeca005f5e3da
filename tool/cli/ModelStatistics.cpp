#include "tool/cli/ModelStatistics.h"

#include <algorithm>

namespace Orvel::Cli
{

namespace
{

using prc::EntityType;
using prc::Model::Face;
using prc::Model::Tessellation;

std::string TypeName(EntityType type)
{
    switch (type) {
    case EntityType::Tessellation3D:
        return "mesh";
    case EntityType::Tessellation3DCompressed:
        return "compressed mesh";
    case EntityType::Tessellation3DWire:
        return "wire";
    default:
        return "markup";
    }
}

void MeasureBox(const Tessellation& mesh, MeshStatistics& statistics)
{
    statistics.hasBox = mesh.pointCount() > 0;
    for (std::size_t point = 0; point < mesh.pointCount(); ++point) {
        for (std::size_t axis = 0; axis < 3; ++axis) {
            const double value = mesh.coordinates[3 * point + axis];
            double& low = statistics.minimum[axis];
            double& high = statistics.maximum[axis];
            low = point == 0 ? value : std::min(low, value);
            high = point == 0 ? value : std::max(high, value);
        }
    }
}

MeshStatistics MeasureMesh(const Tessellation& mesh)
{
    MeshStatistics statistics;
    statistics.type = TypeName(mesh.type);
    statistics.points = mesh.pointCount();
    statistics.normals = mesh.normalCount();
    statistics.textureCoordinates = mesh.textureCoordinates.size() / 2;
    statistics.faces = mesh.faces.size();
    for (const Face& face : mesh.faces) {
        statistics.triangles += face.triangleCount;
        statistics.unusableFaces += face.isUsable ? 0 : 1;
    }
    MeasureBox(mesh, statistics);
    return statistics;
}

} // namespace

ModelStatistics StatisticsOf(const prc::Model::PRCModel& model, const prc::Model::PlacedScene& scene)
{
    ModelStatistics statistics;
    std::vector<std::size_t> firstMesh; // by structure
    for (std::uint32_t number = 0; number < model.structures.size(); ++number) {
        const prc::Model::FileStructure& structure = model.structures[number];
        firstMesh.push_back(statistics.meshes.size());
        statistics.parts += structure.parts.size();
        for (const Tessellation& mesh : structure.tessellations) {
            MeshStatistics measured = MeasureMesh(mesh);
            measured.structure = number;
            measured.index = static_cast<std::uint32_t>(statistics.meshes.size() - firstMesh.back());
            statistics.storedTriangles += measured.triangles;
            statistics.meshes.push_back(std::move(measured));
        }
    }
    for (const prc::Model::PlacedItem& item : scene.items) {
        const std::uint32_t mesh = model.structures[item.structure].parts[item.part].items[item.item].tessellation;
        if (mesh == prc::nullIndex)
            continue;
        MeshStatistics& placed = statistics.meshes[firstMesh[item.structure] + mesh];
        ++placed.instances;
        ++statistics.placedMeshes;
        statistics.placedTriangles += placed.triangles;
    }
    statistics.sharedMeshes = static_cast<std::uint64_t>(
        std::ranges::count_if(statistics.meshes, [](const MeshStatistics& mesh) { return mesh.instances > 1; }));
    return statistics;
}

} // namespace Orvel::Cli
