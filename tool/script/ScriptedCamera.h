#pragma once

#include "tool/animation/SceneExtent.h"
#include "tool/script/SceneScript.h"

namespace Orvel
{
class COrvelCamera;
class COrvelDocument;
class COrvelKeyFrameManager;
} // namespace Orvel

namespace Orvel::Script
{

/// Makes a script's camera in the document, at its root, stores its moves in the timeline and makes it the active one.
///
/// @param extent of the scene, which a camera without a place sees whole.
/// @return owned by the document.
COrvelCamera* AddCamera(const ScriptCamera& script, const Animate::SceneExtent& extent, COrvelDocument& document,
                        COrvelKeyFrameManager& timeline);

/// The last frame of a move.
[[nodiscard]] long long LastFrameOf(const CameraMove& move);

} // namespace Orvel::Script
