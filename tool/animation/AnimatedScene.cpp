#include "tool/animation/AnimatedScene.h"

#include "platform/core/COrvelDocument.h"
#include "platform/core/COrvelUUID.h"
#include "tool/animation/ActiveCamera.h"
#include "tool/animation/ClipKeys.h"
#include "tool/animation/NameList.h"
#include "tool/animation/SceneExtent.h"

#include <algorithm>
#include <cstddef>

namespace Orvel::Animate
{

namespace
{

/// Any number will do; ids of sequences need to differ within one scene only.
constexpr std::uint64_t SeedOfIds = 0x6F727665;

std::size_t PositionOfClip(const std::vector<Import::ImportedClip>& clips, const std::string& name)
{
    const auto found = std::ranges::find(clips, name, &Import::ImportedClip::name);
    if (found != clips.end())
        return static_cast<std::size_t>(found - clips.begin());
    std::vector<std::string> names;
    names.reserve(clips.size());
    for (const Import::ImportedClip& clip : clips)
        names.push_back(clip.name);
    throw Import::ImportError(NotFound("clip", name, names));
}

COrvelPtr<COrvelSequence> MakeSequence(const Import::ImportedClip& clip, int orderIndex)
{
    COrvelPtr<COrvelSequence> sequence(COrvelSequence::Create());
    sequence->SetName(COrvelString(clip.name));
    sequence->SetOrderIndex(orderIndex);
    return sequence;
}

} // namespace

void AddSceneStates(const Import::BuiltDocument& built, AnimatedScene& animated)
{
    for (const Import::DocumentVariant& variant : built.variants) {
        animated.sceneStates.push_back(variant.state);
        animated.sceneStateNames.push_back(variant.name);
    }
}

AnimatedScene MakeAnimatedScene(const Import::BuiltDocument& built, const AnimationOptions& options,
                                Import::ImportReport& report)
{
    const std::vector<Import::ImportedClip>& clips = built.clips;
    const std::size_t timeline = options.clip.empty() ? 0 : PositionOfClip(clips, options.clip);
    // Before anything is sampled: a clip that is refused costs nothing.
    for (const Import::ImportedClip& clip : clips)
        static_cast<void>(LastFrameOf(clip, options));

    COrvelUUID::SeedGenerator(SeedOfIds);
    AnimatedScene animated;
    animated.manager = std::make_unique<COrvelKeyFrameManager>();
    animated.framesPerSecond = options.framesPerSecond;
    const SceneExtent extent = MeasureScene(*built.document);
    for (std::size_t i = 0; i < clips.size(); ++i) {
        const ClipKeys keys = MakeClipKeys(built, clips[i], extent.Diagonal(), options);
        if (i == timeline) {
            StoreKeys(keys, *animated.manager);
            animated.timelineClip = clips[i].name;
        }
        animated.sequences.push_back(MakeSequence(clips[i], static_cast<int>(i) + 1));
        StoreKeys(keys, *animated.sequences.back());
    }
    AddSceneStates(built, animated);
    animated.camera = ChooseActiveCamera(built, options.camera, *animated.manager, extent, report);
    return animated;
}

} // namespace Orvel::Animate
