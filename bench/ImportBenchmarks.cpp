#include "platform/core/COrvelDocument.h"
#include "tool/import/CreaseNormals.h"
#include "tool/import/DocumentBuilder.h"
#include "tool/import/WeldPoints.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

namespace
{

using namespace Orvel;
using namespace Orvel::Import;

/// A wavy sheet with ridges that a crease angle of 35 degrees splits here and there.
ImportedGeometry Sheet(std::int64_t triangleCount)
{
    const auto side = static_cast<std::uint32_t>(std::sqrt(static_cast<double>(triangleCount) / 2.0)) + 1;
    ImportedGeometry sheet;
    for (std::uint32_t y = 0; y < side; ++y) {
        for (std::uint32_t x = 0; x < side; ++x)
            sheet.positions.insert(sheet.positions.end(), {0.1 * x, 0.1 * y, std::sin(0.3 * x) * std::cos(0.2 * y)});
    }
    for (std::uint32_t y = 0; y + 1 < side; ++y) {
        for (std::uint32_t x = 0; x + 1 < side; ++x) {
            const std::uint32_t corner = y * side + x;
            sheet.triangles.insert(sheet.triangles.end(),
                                   {corner, corner + 1, corner + side, corner + 1, corner + side + 1, corner + side});
        }
    }
    return sheet;
}

void CreaseNormals(benchmark::State& state)
{
    const ImportedGeometry sheet = Sheet(state.range(0));
    for (auto _ : state)
        benchmark::DoNotOptimize(MakeCreaseNormals(sheet.positions, sheet.triangles, 35.0));
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(sheet.triangles.size() / 3));
}
BENCHMARK(CreaseNormals)->Arg(10'000)->Arg(100'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond);

/// All triangles around one point, each creased against its neighbours: no operation may look at all pairs.
void CreaseNormalsOfAFan(benchmark::State& state)
{
    const auto count = static_cast<std::uint32_t>(state.range(0));
    std::vector<double> positions{0.0, 0.0, 1.0};
    std::vector<std::uint32_t> triangles;
    for (std::uint32_t i = 0; i < count; ++i) {
        positions.insert(positions.end(), {std::cos(i), std::sin(i), 0.5 * (i % 2)});
        triangles.insert(triangles.end(), {0, 1 + i, 1 + (i + 1) % count});
    }
    for (auto _ : state)
        benchmark::DoNotOptimize(MakeCreaseNormals(positions, triangles, 0.0));
    state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK(CreaseNormalsOfAFan)->Arg(10'000)->Arg(100'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond);

void WeldTriangleSoup(benchmark::State& state)
{
    const ImportedGeometry sheet = Sheet(state.range(0));
    const std::vector<double> soup = GatherPoints(sheet.positions, 3, sheet.triangles);
    const PointStream stream{soup, 3};
    for (auto _ : state) {
        const PointWeld weld = FindEqualPoints({&stream, 1});
        benchmark::DoNotOptimize(GatherPoints(soup, 3, weld.sources));
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(sheet.triangles.size() / 3));
}
BENCHMARK(WeldTriangleSoup)->Arg(10'000)->Arg(100'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond);

/// Groups of ten objects that show a hundred shapes in ten materials.
ImportedScene Assembly(std::int64_t nodeCount)
{
    ImportedScene scene;
    scene.upAxis = UpAxis::Y;
    scene.geometries.assign(100, Sheet(100));
    scene.materials.resize(10);
    scene.nodes.resize(static_cast<std::size_t>(nodeCount));
    Index group = None;
    for (Index i = 0; i < static_cast<Index>(nodeCount); ++i) {
        ImportedNode& node = scene.nodes[static_cast<std::size_t>(i)];
        node.name = "node " + std::to_string(i);
        if (i % 11 == 0) {
            group = i;
            scene.roots.push_back(i);
            continue;
        }
        node.parts.push_back({"", i % 100, None, i % 10});
        scene.nodes[static_cast<std::size_t>(group)].children.push_back(i);
    }
    return scene;
}

void BuildAssembly(benchmark::State& state)
{
    const ImportedScene scene = Assembly(state.range(0));
    ImportReport report;
    for (auto _ : state) {
        TextureFiles textures("scene.gltf", {}, std::filesystem::temp_directory_path(), report);
        benchmark::DoNotOptimize(BuildDocument(scene, textures, {}));
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BuildAssembly)->Arg(1'000)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);

} // namespace
