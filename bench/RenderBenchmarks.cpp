#include "tool/render/Renderer.h"
#include "tool/views/StandardViews.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdint>
#include <vector>

namespace
{

using namespace Orvel;
using namespace Orvel::Render;

/// Hills with smaller ridges on them, smooth normals, between -1 and 1.
Mesh Terrain(std::int64_t triangleCount)
{
    const auto side = static_cast<std::uint32_t>(std::sqrt(static_cast<double>(triangleCount) / 2.0)) + 1;
    const auto height = [](float x, float y) {
        return 0.12F * std::sin(5.0F * x) * std::cos(4.0F * y) + 0.02F * std::sin(31.0F * x + 17.0F * y) +
               0.003F * std::sin(160.0F * x) * std::sin(140.0F * y);
    };
    Mesh mesh;
    for (std::uint32_t row = 0; row < side; ++row) {
        for (std::uint32_t column = 0; column < side; ++column) {
            const float x = 2.0F * static_cast<float>(column) / static_cast<float>(side - 1) - 1.0F;
            const float y = 2.0F * static_cast<float>(row) / static_cast<float>(side - 1) - 1.0F;
            constexpr float Step = 1e-3F;
            const float slopeX = (height(x + Step, y) - height(x - Step, y)) / (2.0F * Step);
            const float slopeY = (height(x, y + Step) - height(x, y - Step)) / (2.0F * Step);
            mesh.points.insert(mesh.points.end(), {x, y, height(x, y)});
            mesh.normals.insert(mesh.normals.end(), {-slopeX, -slopeY, 1.0F});
        }
    }
    for (std::uint32_t row = 0; row + 1 < side; ++row) {
        for (std::uint32_t column = 0; column + 1 < side; ++column) {
            const std::uint32_t at = row * side + column;
            mesh.corners.insert(mesh.corners.end(), {at, at + 1, at + side, at + 1, at + side + 1, at + side});
        }
    }
    mesh.cornerNormals = mesh.corners;
    return mesh;
}

RenderScene TerrainScene(std::int64_t triangleCount)
{
    RenderScene scene;
    scene.meshes.push_back(Terrain(triangleCount));
    scene.materials.emplace_back();
    scene.instances.push_back({0, 0, Eigen::Affine3d::Identity()});
    return scene;
}

/// A whole picture of 1600 x 1200 pixels: the trees for the rays, the view, the rays.
void TerrainPicture(benchmark::State& state)
{
    const RenderScene scene = TerrainScene(state.range(0));
    PictureOptions options;
    options.samples = static_cast<std::uint32_t>(state.range(1));
    const double aspect = static_cast<double>(options.width) / options.height;
    for (auto _ : state) {
        const Renderer renderer(scene);
        const Views::View view =
            Views::MakeStandardView(Views::StandardView::Iso, Views::ZUp, aspect,
                                    [&scene](const Eigen::Vector3d& direction) { return scene.Support(direction); });
        benchmark::DoNotOptimize(renderer.Render(view, options));
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(scene.meshes.front().TriangleCount()));
}
BENCHMARK(TerrainPicture)
    ->ArgNames({"triangles", "samples"})
    ->Args({10'000, 8})
    ->Args({1'000'000, 1})
    ->Args({1'000'000, 8})
    ->Unit(benchmark::kMillisecond);

/// Only what must be done once for all pictures of a scene.
void TerrainTrees(benchmark::State& state)
{
    const RenderScene scene = TerrainScene(state.range(0));
    for (auto _ : state) {
        const Renderer renderer(scene);
        benchmark::DoNotOptimize(&renderer);
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(scene.meshes.front().TriangleCount()));
}
BENCHMARK(TerrainTrees)->Arg(1'000'000)->Unit(benchmark::kMillisecond);

} // namespace
