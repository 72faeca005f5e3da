#pragma once

#include "platform/prcfile/PRCModel.h"
#include "platform/prcfile/PRCScene.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace Orvel::Cli
{

/// What a stored mesh amounts to.
struct MeshStatistics
{
    std::uint32_t structure = 0; ///< position of its file structure
    std::uint32_t index = 0;     ///< position among the tessellations of the structure
    std::string type;            ///< "mesh", "compressed mesh", "wire", "markup"
    std::uint64_t points = 0;
    std::uint64_t normals = 0;
    std::uint64_t textureCoordinates = 0;
    std::uint64_t faces = 0;
    std::uint64_t unusableFaces = 0;
    std::uint64_t triangles = 0;
    std::uint64_t instances = 0; ///< places in the scene
    bool hasBox = false;         ///< false: there are no points
    std::array<double, 3> minimum{};
    std::array<double, 3> maximum{};
};

/// Numbers over a whole model.
struct ModelStatistics
{
    std::vector<MeshStatistics> meshes; ///< of all file structures, one after the other
    std::uint64_t placedMeshes = 0;
    std::uint64_t storedTriangles = 0;
    std::uint64_t placedTriangles = 0;
    std::uint64_t parts = 0;
    std::uint64_t sharedMeshes = 0; ///< those with more than one instance
};

[[nodiscard]] ModelStatistics StatisticsOf(const prc::Model::PRCModel& model, const prc::Model::PlacedScene& scene);

} // namespace Orvel::Cli
