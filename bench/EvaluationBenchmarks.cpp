#include "animation/COrvelKeyFrameDataMaterial.h"
#include "animation/COrvelKeyFrameDataTransform.h"
#include "animation/COrvelKeyFrameDataTransformCamera.h"
#include "animation/COrvelKeyFrameDataVertices.h"
#include "animation/COrvelKeyFrameManager.h"
#include "platform/core/COrvelBasicGeneralMaterial.h"
#include "platform/core/COrvelDocument.h"
#include "platform/core/COrvelSceneNode.h"
#include "platform/core/COrvelTransform.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <random>
#include <vector>

namespace
{

using namespace Orvel;

/// A scene and the process-wide timeline over it.
struct Timeline
{
    Timeline() { COrvelKeyFrameManager::SetInstance(manager); }
    ~Timeline() { COrvelKeyFrameManager::SetInstance(nullptr); }

    void Store(int start, int end, COrvelKeyFrameData* made)
    {
        COrvelPtr<COrvelKeyFrameData> data(made);
        data->SetStartFrame(start, true);
        data->SetEndFrame(end, true);
        manager->AddKeyFrameData(data, true);
    }

    COrvelDocument document;
    COrvelKeyFrameManager* manager = new COrvelKeyFrameManager;
};

COrvelMatrix Placement(int k)
{
    return COrvelMatrix::CreateTranslation({0.1 * k, 3.0, 5.0}) *
           COrvelMatrix().DefineByRotation(0.01 * k, 1.0, 2.0, 3.0);
}

std::vector<int> ShuffledFrames(int first, int last, int step)
{
    std::vector<int> frames;
    for (int frame = first; frame <= last; frame += step)
        frames.push_back(frame);
    std::shuffle(frames.begin(), frames.end(), std::mt19937(20250117));
    return frames;
}

void Evaluate(benchmark::State& state, COrvelKeyFrameManager& manager, const COrvelID& id,
              const std::vector<int>& frames)
{
    std::size_t next = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(manager.KeyFrameDataAtFrame(id, frames[next]));
        next = next + 1 == frames.size() ? 0 : next + 1;
    }
    state.SetItemsProcessed(state.iterations());
}

enum class Order
{
    Forwards, ///< as an export visits them
    Shuffled  ///< far apart in memory: every search misses the processor's caches
};

/// Inside one of many data of an entity: the cost may grow with the logarithm of their number only.
void StateInsideData(benchmark::State& state, Order order)
{
    Timeline timeline;
    const COrvelID id = COrvelTransform::Create(&timeline.document)->ID();
    const int count = static_cast<int>(state.range(0));
    for (int k = 0; k < count; ++k)
        timeline.Store(10 * k, 10 * k + 9, COrvelKeyFrameDataTransform::CreateTransformKeyFrameData(id, Placement(k)));
    std::vector<int> frames = ShuffledFrames(0, 10 * count - 1, 3);
    if (order == Order::Forwards)
        std::sort(frames.begin(), frames.end());
    Evaluate(state, *timeline.manager, id, frames);
}
BENCHMARK_CAPTURE(StateInsideData, Forwards, Order::Forwards)->Arg(1)->Arg(1'000)->Arg(100'000);
BENCHMARK_CAPTURE(StateInsideData, Shuffled, Order::Shuffled)->Arg(1)->Arg(1'000)->Arg(100'000);

/// In the gap between two data; the data stored are as many as above.
void TransformBlend(benchmark::State& state)
{
    Timeline timeline;
    const COrvelID id = COrvelTransform::Create(&timeline.document)->ID();
    const int count = static_cast<int>(state.range(0));
    for (int k = 0; k < count; ++k)
        timeline.Store(10 * k, 10 * k, COrvelKeyFrameDataTransform::CreateTransformKeyFrameData(id, Placement(k)));
    Evaluate(state, *timeline.manager, id, ShuffledFrames(4, 10 * (count - 1), 10));
}
BENCHMARK(TransformBlend)->Arg(2)->Arg(1'000)->Arg(100'000);

void CameraBlend(benchmark::State& state)
{
    Timeline timeline;
    const COrvelID id = COrvelTransform::Create(&timeline.document)->ID();
    for (const int frame : {0, 100}) {
        auto* const data =
            COrvelKeyFrameDataTransformCamera::CreateCameraKeyFrameData(id, Placement(frame), 40, 10, true, 8, 2.8);
        data->SetUsesCameraBlend(state.range(0) != 0);
        timeline.Store(frame, frame, data);
    }
    Evaluate(state, *timeline.manager, id, ShuffledFrames(1, 99, 1));
}
BENCHMARK(CameraBlend)->ArgName("asCameras")->Arg(0)->Arg(1);

void MaterialBlend(benchmark::State& state)
{
    Timeline timeline;
    const COrvelID id = COrvelTransform::Create(&timeline.document)->ID();
    for (const int frame : {0, 100}) {
        COrvelBasicGeneralMaterial looks;
        looks.SetName("paint of the left front door");
        looks.SetDiffuseColor({0.01 * frame, 0.5, 0.25, 1.0});
        timeline.Store(frame, frame, COrvelKeyFrameDataMaterial::CreateMaterialKeyFrameData(id, &looks, id));
    }
    Evaluate(state, *timeline.manager, id, ShuffledFrames(1, 99, 1));
}
BENCHMARK(MaterialBlend);

/// Behind the last of 100 shapes of a mesh: what is held is copied with all of its tables.
void HeldShapes(benchmark::State& state)
{
    Timeline timeline;
    const COrvelID id = COrvelTransform::Create(&timeline.document)->ID();
    const std::vector<COrvel3DVertex> positions(static_cast<std::size_t>(state.range(0)));
    auto* const data = COrvelKeyFrameDataVertices::CreateVerticesKeyFrameData(id, nullptr);
    for (int k = 0; k < 100; ++k)
        data->AddTable(std::make_unique<COrvelBasicVectorsTable>(positions));
    timeline.Store(0, 99, data);
    Evaluate(state, *timeline.manager, id, {100, 150, 200});
}
BENCHMARK(HeldShapes)->Arg(10'000);

/// A whole timeline is moved by the distance of its data, so that each takes the place of the next one, and filed anew
/// data by data.
void RefiledTimeline(benchmark::State& state)
{
    Timeline timeline;
    const COrvelID id = COrvelTransform::Create(&timeline.document)->ID();
    const int count = static_cast<int>(state.range(0));
    for (int k = 0; k < count; ++k)
        timeline.Store(10 * k, 10 * k + 9, COrvelKeyFrameDataTransform::CreateTransformKeyFrameData(id, Placement(k)));
    KeyFrameDataList list;
    timeline.manager->ListAllKeyFrameData(list);
    int distance = 10;
    for (auto _ : state) {
        for (const COrvelPtr<COrvelKeyFrameData>& data : list) {
            data->ShiftFrames(distance);
            timeline.manager->RefileKeyFrameData(data);
        }
        distance = -distance;
    }
    state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK(RefiledTimeline)->Arg(1'000)->Arg(100'000)->Unit(benchmark::kMillisecond);

/// The world matrix at the end of a chain of animated nodes.
void WorldMatrix(benchmark::State& state)
{
    Timeline timeline;
    COrvelSceneNode* node = nullptr;
    for (int depth = 0; depth < 8; ++depth) {
        COrvelSceneNode* const child = COrvelSceneNode::Create(&timeline.document);
        child->SetLocalMatrix(Placement(depth));
        for (const int frame : {0, 100})
            timeline.Store(frame, frame,
                           COrvelKeyFrameDataTransform::CreateTransformKeyFrameData(child->LocalTransform()->ID(),
                                                                                    Placement(frame)));
        if (node)
            node->AddChild(child);
        node = child;
    }
    const COrvelNodePath path = node->NodePathToRoot(true);
    for (auto _ : state)
        benchmark::DoNotOptimize(timeline.manager->WorldMatrixAtFrame(path, 37));
    state.SetItemsProcessed(state.iterations() * 8);
}
BENCHMARK(WorldMatrix);

} // namespace
