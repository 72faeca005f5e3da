#pragma once

#include "tool/animation/AnimatedScene.h"

#include <string>

namespace Orvel::Animate
{

/// Writes the animation of a document: its timeline, sequences, groups and captions, the active camera, and a table of
/// the document's entities, by which another run finds them again. Scene states stay with the scene.
///
/// @param file replaced when all is written, see COrvelArchiveWriter.
/// @return false when it cannot be written.
[[nodiscard]] bool SaveAnimation(const COrvelDocument& document, AnimatedScene& animated, const std::string& file);

/// Reads what SaveAnimation has written, for the same scene read anew. The active camera is set, and the distance to
/// its target.
///
/// @param built its document must outlive the result.
/// @param mostFrames a timeline or sequence that has more is refused.
/// @throws ImportError when the file is none of these, damaged, or of another scene.
[[nodiscard]] AnimatedScene LoadAnimation(const Import::BuiltDocument& built, const std::string& file,
                                          std::int64_t mostFrames);

} // namespace Orvel::Animate
