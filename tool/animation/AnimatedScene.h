#pragma once

#include "animation/COrvelKeyFrameManager.h"
#include "animation/COrvelSequence.h"
#include "platform/core/COrvelBasicSceneState.h"
#include "platform/core/COrvelPtr.h"
#include "tool/import/DocumentBuilder.h"
#include "tool/import/ImportReport.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace Orvel::Animate
{

/// How far the key frame data may stray from the scene's own motion at any frame.
struct Tolerance
{
    double position = 1e-4;       ///< of a node's origin, as a part of the diagonal of the box around the scene at rest
    double angleInDegrees = 0.02; ///< of a node's axes, see TransformTolerance
    double colour = 1.0 / 512.0;  ///< of a channel of a colour, and of an opacity; half a step of an 8-bit channel
};

struct AnimationOptions
{
    double framesPerSecond = 24.0;     ///< finite, above 0
    std::string clip = {};             ///< becomes the timeline; empty: the first one
    std::string camera = {};           ///< becomes the active one; empty: the first one that moves
    std::int64_t mostFrames = 100'000; ///< a clip that has more is refused
    Tolerance tolerance = {};
};

/// The animation of a document in the terms of the export.
struct AnimatedScene
{
    /// The timeline, never null. To be released into the hands of COrvelPRCWriter::SetKeyFrameManager.
    std::unique_ptr<COrvelKeyFrameManager> manager;
    std::string timelineClip; ///< what the timeline shows; empty: nothing moves
    double framesPerSecond = 0.0;
    /// One for each clip, in the sequence container for as long as they are held here, named like the clips.
    std::vector<COrvelPtr<COrvelSequence>> sequences;
    /// For COrvelPRCWriter::ExportToMemory: the variants of the scene; their replacements belong to the BuiltDocument.
    std::vector<COrvelBasicSceneState> sceneStates;
    std::vector<std::string> sceneStateNames; ///< one for each of them
    COrvelCamera* camera = nullptr;           ///< the document's active one; null when there is none
};

/// Appends the variants of a document.
void AddSceneStates(const Import::BuiltDocument& built, AnimatedScene& animated);

/// Turns the clips of a document into key frame data: the timeline, and a sequence for each clip, all from frame 0 on.
///
/// Each motion is sampled at every frame and then reduced to the frames that are needed to stay within the tolerance.
/// What stands still at rest throughout a clip gets no data. The frames of a clip end with the first one that does not
/// lie before its last key.
///
/// Equal input gives equal key frame data and ids: the process's generator of UUIDs is seeded anew here.
///
/// @param built  its document must outlive the result. The active camera is set, and the distance to its target.
/// @param report receives what the user should know.
/// @throws ImportError when a name in the options belongs to nothing, and when a clip has too many frames.
[[nodiscard]] AnimatedScene MakeAnimatedScene(const Import::BuiltDocument& built, const AnimationOptions& options,
                                              Import::ImportReport& report);

} // namespace Orvel::Animate
