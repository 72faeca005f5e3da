#pragma once

#include "tool/animation/AnimatedScene.h"
#include "tool/import/DocumentBuilder.h"
#include "tool/script/SceneScript.h"

#include <memory>
#include <vector>

namespace Orvel
{
class COrvelBasicMaterial;
}

namespace Orvel::Script
{

/// Materials that scene states of a script show; they must outlive the export.
using ScriptLooks = std::vector<std::unique_ptr<COrvelBasicMaterial>>;

/// Adds what a script says to a scene: key frame data join the timeline (in place of what moves the same thing at the
/// same frames), scene states and sequences stand behind the scene's own, the script's camera becomes the active one.
///
/// @param built    its document must outlive the export.
/// @param animated of that document.
/// @return the looks of the states, to be kept.
/// @throws Import::ImportError when a name fits no node or material, or several nodes, or when a frame lies behind the
///         limit of `options`.
[[nodiscard]] ScriptLooks ApplyScript(const SceneScript& script, const Animate::AnimationOptions& options,
                                      Import::BuiltDocument& built, Animate::AnimatedScene& animated);

} // namespace Orvel::Script
