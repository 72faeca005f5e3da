#pragma once

#include "tool/animation/AnimatedScene.h"
#include "tool/animation/MaterialKeys.h"
#include "tool/animation/TransformKeys.h"

#include <vector>

namespace Orvel::Animate
{

/// The key frames of one clip.
struct ClipKeys
{
    int lastFrame = 0;
    std::vector<TransformKeys> transforms;
    std::vector<MaterialKeys> materials;
};

/// The frame of a clip that shows its last key.
/// @throws ImportError when the clip has more frames than the options allow.
[[nodiscard]] int LastFrameOf(const Import::ImportedClip& clip, const AnimationOptions& options);

/// @param sceneSize diagonal of the box around the scene.
/// @throws ImportError as LastFrameOf does.
[[nodiscard]] ClipKeys MakeClipKeys(const Import::BuiltDocument& built, const Import::ImportedClip& clip,
                                    double sceneSize, const AnimationOptions& options);

/// Stores all key frames, and the last frame.
void StoreKeys(const ClipKeys& keys, COrvelKeyFrameManager& manager);

} // namespace Orvel::Animate
