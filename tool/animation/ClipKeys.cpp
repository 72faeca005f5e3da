#include "tool/animation/ClipKeys.h"

#include "tool/animation/SceneExtent.h"
#include "tool/import/TrackEvaluation.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <numbers>
#include <string>

namespace Orvel::Animate
{

namespace
{

/// A last key that lies this part of a frame behind a frame still belongs to it: times are rounded to single precision
/// in most files.
constexpr double FrameRounding = 1e-3;

/// One value for each frame, from frame 0 on.
template <class Value, class At>
std::vector<Value> Sample(int lastFrame, double framesPerSecond, const At& valueAt)
{
    std::vector<Value> samples;
    samples.reserve(static_cast<std::size_t>(lastFrame) + 1);
    for (int frame = 0; frame <= lastFrame; ++frame)
        samples.push_back(valueAt(frame / framesPerSecond));
    return samples;
}

} // namespace

int LastFrameOf(const Import::ImportedClip& clip, const AnimationOptions& options)
{
    const double last = std::max(std::ceil(clip.seconds * options.framesPerSecond - FrameRounding), 0.0);
    if (last + 1.0 > static_cast<double>(options.mostFrames) || last >= std::numeric_limits<int>::max())
        throw Import::ImportError("animation " + Import::Quoted(clip.name) + " has " +
                                  (last < 1e15 ? std::to_string(static_cast<std::int64_t>(last) + 1) : "too many") +
                                  " frames, and the limit is " + std::to_string(options.mostFrames));
    return static_cast<int>(last);
}

ClipKeys MakeClipKeys(const Import::BuiltDocument& built, const Import::ImportedClip& clip, double sceneSize,
                      const AnimationOptions& options)
{
    ClipKeys keys;
    keys.lastFrame = LastFrameOf(clip, options);
    for (const Import::ImportedNodeChannel& channel : clip.nodes) {
        COrvelSceneNode* const node = built.nodes[static_cast<std::size_t>(channel.node)];
        if (!node)
            continue;
        const auto samples = Sample<COrvelMatrix>(keys.lastFrame, options.framesPerSecond, [&channel](double seconds) {
            return Import::MatrixAt(channel, seconds);
        });
        const TransformTolerance tolerance{options.tolerance.position * sceneSize / std::max(ScaleAbove(*node), 1e-300),
                                           options.tolerance.angleInDegrees * std::numbers::pi / 180.0};
        TransformKeys reduced = ReduceTransform(*node, samples, tolerance);
        if (!reduced.ranges.empty())
            keys.transforms.push_back(std::move(reduced));
    }
    for (const Import::ImportedMaterialChannel& channel : clip.materials) {
        const std::vector<COrvelMaterial*>& materials = built.materials[static_cast<std::size_t>(channel.material)];
        if (materials.empty())
            continue;
        const auto samples = Sample<Import::ImportedMaterial>(keys.lastFrame, options.framesPerSecond, channel.looksAt);
        MaterialKeys reduced = ReduceMaterial(materials, samples, options.tolerance.colour);
        if (!reduced.ranges.empty())
            keys.materials.push_back(std::move(reduced));
    }
    return keys;
}

void StoreKeys(const ClipKeys& keys, COrvelKeyFrameManager& manager)
{
    for (const TransformKeys& transform : keys.transforms)
        StoreKeys(transform, manager);
    for (const MaterialKeys& material : keys.materials)
        StoreKeys(material, manager);
    manager.SetLastFrame(keys.lastFrame);
}

} // namespace Orvel::Animate
