// The road of one export, from a document in memory to the file, and what it needs of memory.

#include "platform/core/COrvel3DObject.h"
#include "platform/core/COrvelDocument.h"
#include "platform/core/COrvelGeometry.h"
#include "platform/prcfile/oPRCFile.h"
#include "prc/MeshExtraction.h"
#include "writer/COrvelPRCWriter.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <fstream>
#include <string>
#include <vector>

namespace Orvel
{
namespace
{

struct Terrain
{
    std::vector<double> positions;
    std::vector<double> normals;
    std::vector<uint32> triangles;

    [[nodiscard]] std::size_t Bytes() const
    {
        return (positions.size() + normals.size()) * sizeof(double) + triangles.size() * sizeof(uint32);
    }
};

/// A wavy square with smooth normals.
/// @param triangleCount rounded down to a square number of cells of two triangles.
Terrain MakeTerrain(std::int64_t triangleCount)
{
    const auto cells = static_cast<uint32>(std::sqrt(static_cast<double>(triangleCount) / 2.0));
    const uint32 side = cells + 1;
    Terrain terrain;
    terrain.positions.reserve(std::size_t{3} * side * side);
    terrain.normals.reserve(std::size_t{3} * side * side);
    for (uint32 row = 0; row < side; ++row) {
        for (uint32 column = 0; column < side; ++column) {
            const double x = 10.0 * column / cells;
            const double y = 10.0 * row / cells;
            const double slopeX = std::cos(x) * std::cos(0.7 * y);
            const double slopeY = -0.7 * std::sin(x) * std::sin(0.7 * y);
            const double length = std::sqrt(slopeX * slopeX + slopeY * slopeY + 1.0);
            terrain.positions.insert(terrain.positions.end(), {x, y, std::sin(x) * std::cos(0.7 * y)});
            terrain.normals.insert(terrain.normals.end(), {-slopeX / length, -slopeY / length, 1.0 / length});
        }
    }
    terrain.triangles.reserve(std::size_t{6} * cells * cells);
    for (uint32 row = 0; row < cells; ++row) {
        for (uint32 column = 0; column < cells; ++column) {
            const uint32 corner = row * side + column;
            terrain.triangles.insert(terrain.triangles.end(),
                                     {corner, corner + 1, corner + side, corner + 1, corner + side + 1, corner + side});
        }
    }
    return terrain;
}

/// A field of /proc/self/status in bytes, such as "VmHWM:", the peak of what lies in memory.
double StatusBytes(const std::string& field)
{
    std::ifstream status("/proc/self/status");
    std::string name;
    double kilobytes = 0.0;
    while (status >> name) {
        if (name == field && status >> kilobytes)
            return kilobytes * 1024.0;
    }
    return 0.0;
}

void ResetPeak()
{
    std::ofstream("/proc/self/clear_refs") << "5";
}

/// Export of a document that stands in memory. Counter `memory`: the peak that the export adds to what lay in memory
/// before, as a multiple of the document's arrays.
void ExportMesh(benchmark::State& state)
{
    Terrain terrain = MakeTerrain(state.range(0));
    const std::size_t bytes = terrain.Bytes();
    const std::size_t triangles = terrain.triangles.size() / 3;
    COrvelDocument document;
    COrvelGeometry* const geometry = COrvelGeometry::Create(&document, std::move(terrain.positions),
                                                            std::move(terrain.triangles), std::move(terrain.normals));
    document.AddRootNode(COrvel3DObject::Create(&document, "terrain", geometry));
    COrvelPRCWriter writer;

    double most = 0.0;
    for (auto _ : state) {
        ResetPeak();
        const double before = StatusBytes("VmRSS:");
        // The animated run takes the name as it is: the plain one would insert a dot.
        writer.ExportToMemory(&document, "/dev/null", nullptr, nullptr, nullptr);
        most = std::max(most, StatusBytes("VmHWM:") - before);
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(triangles));
    state.counters["memory"] = most / static_cast<double>(bytes);
}
BENCHMARK(ExportMesh)->Arg(10'000)->Arg(100'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond);

/// The tessellation alone: from flat arrays to encoded bits.
void TessellateMesh(benchmark::State& state)
{
    const Terrain terrain = MakeTerrain(state.range(0));
    const auto vertices = static_cast<uint32>(terrain.positions.size() / 3);
    const auto triangles = static_cast<uint32>(terrain.triangles.size() / 3);
    std::vector<std::uint8_t> bytes;
    for (auto _ : state) {
        prc::oPRCFile file(bytes, 1.0, 1);
        benchmark::DoNotOptimize(
            CreateTriangleMesh(vertices, terrain.positions.data(), triangles, terrain.triangles.data(), PRCNullIndex,
                               vertices, terrain.normals.data(), terrain.triangles.data(), 0, nullptr, nullptr, file));
    }
    state.SetItemsProcessed(state.iterations() * triangles);
}
BENCHMARK(TessellateMesh)->Arg(1'000'000)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace Orvel
