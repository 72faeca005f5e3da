#pragma once

#include "platform/core/COrvelMatrix.h"
#include "tool/animation/TransformKeys.h"

#include <nlohmann/json.hpp>

#include <vector>

namespace Orvel::Player
{

/// The motion of a node as a track; tracks.js tells what stands in it. Rigid motion takes seven numbers a key, motion
/// that scales along the node's axes ten, any other one twelve.
///
/// @param samples   the local matrix at each frame, from frame 0 on; not empty.
/// @param tolerance what the played motion may be off at any frame.
[[nodiscard]] nlohmann::ordered_json MakePoseTrack(const std::vector<COrvelMatrix>& samples,
                                                   const Animate::TransformTolerance& tolerance);

} // namespace Orvel::Player
