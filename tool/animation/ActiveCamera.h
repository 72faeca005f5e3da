#pragma once

#include "tool/animation/SceneExtent.h"
#include "tool/import/DocumentBuilder.h"
#include "tool/import/ImportReport.h"

#include <string>

namespace Orvel
{
class COrvelKeyFrameManager;
}

namespace Orvel::Animate
{

/// Makes a camera the document's active one: the one that is asked for, otherwise the first one that moves, itself or
/// with what it hangs on. It then looks at the point of its line of sight that is nearest to the scene's middle.
///
/// @param name of a camera or of its node; empty: none is asked for.
/// @return null when no camera moves and none is asked for; the document then stays as it is.
/// @throws ImportError when no camera has the name.
COrvelCamera* ChooseActiveCamera(const Import::BuiltDocument& built, const std::string& name,
                                 const COrvelKeyFrameManager& manager, const SceneExtent& extent,
                                 Import::ImportReport& report);

} // namespace Orvel::Animate
