#pragma once

#include "tool/import/ImportReport.h"
#include "tool/import/ImportedScene.h"

namespace Orvel::Import
{

/// Adds a clip to the scene, unless it changes nothing: then the report tells.
void AddClip(ImportedClip clip, ImportedScene& scene, ImportReport& report);

} // namespace Orvel::Import
