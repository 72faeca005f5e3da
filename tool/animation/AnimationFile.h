#pragma once

#include "tool/animation/AnimatedScene.h"

#include <string>

namespace Orvel::Animate
{

/// The animation of a scene and how fast it is shown.
struct StoredAnimation
{
    AnimatedScene scene;
    double framesPerSecond = 0.0;
};

/// Writes the animation of a document: its timeline, sequences, groups and captions, the active camera, and a table of
/// the document's entities, by which another run finds them again.
///
/// @param file replaced when all is written, see COrvelArchiveWriter.
/// @return false when it cannot be written.
[[nodiscard]] bool SaveAnimation(const COrvelDocument& document, AnimatedScene& animated, double framesPerSecond,
                                 const std::string& file);

/// Reads what SaveAnimation has written, for the same scene read anew. The active camera is set, and the distance to
/// its target.
///
/// @param document must outlive the result.
/// @param mostFrames a timeline or sequence that has more is refused.
/// @throws ImportError when the file is none of these, damaged, or of another scene.
[[nodiscard]] StoredAnimation LoadAnimation(COrvelDocument& document, const std::string& file, std::int64_t mostFrames);

} // namespace Orvel::Animate
