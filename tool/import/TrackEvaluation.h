#pragma once

#include "platform/core/COrvelMatrix.h"
#include "tool/import/ComposeTransform.h"
#include "tool/import/ImportedAnimation.h"

#include <span>

namespace Orvel::Import
{

/// The value of a track at a time, as the glTF 2.0 specification has it (Appendix C, "Animation Sampler Interpolation
/// Modes").
///
/// @param track moves.
/// @param value out: replaced; as many numbers as each value of the track has.
void EvaluateTrack(const ImportedTrack& track, double seconds, std::span<double> value);

/// The same for a track of rotations; of unit length.
[[nodiscard]] Quaternion EvaluateRotation(const ImportedTrack& track, double seconds);

/// The local matrix of a node at a time.
[[nodiscard]] COrvelMatrix MatrixAt(const ImportedNodeChannel& channel, double seconds);

} // namespace Orvel::Import
