// The animated run beside the plain cost of what it adds to the file: materials.

#include "animation/COrvelKeyFrameDataMaterial.h"
#include "animation/COrvelKeyFrameDataTransform.h"
#include "animation/COrvelKeyFrameManager.h"
#include "mapping/COrvelPRCMapper.h"
#include "platform/core/COrvel3DObject.h"
#include "platform/core/COrvelBasicGeneralMaterial.h"
#include "platform/core/COrvelBasicSceneState.h"
#include "platform/core/COrvelCamera.h"
#include "platform/core/COrvelColor.h"
#include "platform/core/COrvelDocument.h"
#include "platform/core/COrvelGeometry.h"
#include "platform/core/COrvelMaterial.h"
#include "platform/core/COrvelTexture.h"
#include "platform/core/COrvelTransform.h"
#include "platform/core/enumTextureType.h"
#include "writer/COrvelPRCWriter.h"

#include <benchmark/benchmark.h>

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace Orvel
{
namespace
{

constexpr int FrameCount = 300;
constexpr int MaterialCount = 50;

/// A picture file that lives as long as the program runs.
class Picture
{
public:
    Picture()
    {
        std::ofstream out(path, std::ios::binary);
        out << "P6 256 256 255\n";
        for (int i = 0; i < 256 * 256 * 3; ++i)
            out.put(static_cast<char>(i * i / 97));
    }
    Picture(const Picture&) = delete;
    Picture& operator=(const Picture&) = delete;
    ~Picture() { std::filesystem::remove(path); }

    [[nodiscard]] std::string Path() const { return path.string(); }

private:
    std::filesystem::path path =
        std::filesystem::temp_directory_path() / ("orvel-bench-" + std::to_string(::getpid()) + ".ppm");
};

COrvelBasicGeneralMaterial Look(int material, int frame, bool textured)
{
    static const Picture picture;
    COrvelBasicGeneralMaterial look;
    look.SetDiffuseColor(COrvelColor(frame / static_cast<double>(FrameCount), material / 50.0, 0.5));
    if (textured)
        look.SetTexture(enumTextureType(1), COrvelTexture(COrvelString(picture.Path())));
    return look;
}

/// Objects in materials of their own.
struct Scene
{
    explicit Scene(bool textured)
    {
        for (int i = 0; i < MaterialCount; ++i) {
            materials.push_back(COrvelMaterial::Create(&document, Look(i, 0, textured)));
            COrvelGeometry* const shape =
                COrvelGeometry::Create(&document, {0, 0, 0, 3, 0, 0, 0, 5, 1.0 * i}, {0, 1, 2});
            document.AddRootNode(COrvel3DObject::Create(&document, "object", shape, materials.back()));
        }
    }

    COrvelDocument document;
    std::vector<COrvelMaterial*> materials;
};

/// The materials change over the whole timeline, and a camera moves.
void Animate(Scene& scene, bool textured, COrvelKeyFrameManager& timeline)
{
    const auto add = [&timeline](COrvelPtr<COrvelKeyFrameData> data, int frame) {
        data->SetFrame(frame);
        timeline.AddKeyFrameData(data, true);
    };
    COrvelCamera* const camera = COrvelCamera::Create(&scene.document, "camera");
    scene.document.AddRootNode(camera);
    scene.document.SetActiveCamera(camera);
    for (const int frame : {0, FrameCount - 1}) {
        for (int i = 0; i < MaterialCount; ++i) {
            const COrvelID id = scene.materials[static_cast<std::size_t>(i)]->ID();
            const COrvelBasicGeneralMaterial look = Look(i, frame, textured);
            add(COrvelKeyFrameDataMaterial::CreateMaterialKeyFrameData(id, &look, id), frame);
        }
        const COrvelMatrix place = COrvelMatrix::CreateTranslation({1.0 * frame, 0.0, 10.0});
        add(COrvelKeyFrameDataTransform::CreateTransformKeyFrameData(camera->LocalTransform()->ID(), place), frame);
    }
}

void Report(benchmark::State& state, const std::string& file)
{
    state.SetItemsProcessed(state.iterations() * FrameCount);
    state.counters["bytes"] = static_cast<double>(std::filesystem::file_size(file));
    std::filesystem::remove(file);
}

/// Items are frames. Argument: whether the materials have a picture.
void ExportAnimation(benchmark::State& state)
{
    const bool textured = state.range(0) != 0;
    const std::string file = "animated-export.prc";
    Scene scene(textured);
    auto* const timeline = new COrvelKeyFrameManager;
    Animate(scene, textured, *timeline);
    COrvelPRCWriter writer;
    writer.SetKeyFrameManager(timeline);
    for (auto _ : state) {
        COrvelPRCMapper mapper;
        writer.SetPRCMapper(&mapper);
        writer.ExportToMemory(&scene.document, file.c_str(), nullptr, nullptr, nullptr);
    }
    writer.SetKeyFrameManager(nullptr);
    Report(state, file);
}
BENCHMARK(ExportAnimation)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

/// As many materials, given as scene states: what ExportAnimation would cost if evaluating were free.
void ExportAsManyMaterials(benchmark::State& state)
{
    const bool textured = state.range(0) != 0;
    const std::string file = "many-materials.prc";
    Scene scene(textured);
    std::vector<COrvelBasicGeneralMaterial> looks;
    looks.reserve(std::size_t{FrameCount} * MaterialCount);
    std::vector<COrvelBasicSceneState> states(FrameCount);
    for (int frame = 0; frame < FrameCount; ++frame) {
        for (int i = 0; i < MaterialCount; ++i) {
            looks.push_back(Look(i, frame, textured));
            COrvelMaterial* const material = scene.materials[static_cast<std::size_t>(i)];
            states[static_cast<std::size_t>(frame)].materialReplacements[material] = &looks.back();
        }
    }
    COrvelPRCWriter writer;
    for (auto _ : state) {
        COrvelPRCMapper mapper;
        writer.SetPRCMapper(&mapper);
        writer.ExportToMemory(&scene.document, file.c_str(), nullptr, nullptr, &states);
    }
    Report(state, file);
}
BENCHMARK(ExportAsManyMaterials)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace Orvel
