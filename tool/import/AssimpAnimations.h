#pragma once

#include "tool/import/ImportReport.h"
#include "tool/import/ImportedScene.h"

#include <assimp/scene.h>

#include <span>
#include <vector>

namespace Orvel::Import
{

/// The nodes of Assimp whose transforms, multiplied in this order, make the local matrix of one imported node. None for
/// a node whose matrix comes from elsewhere.
using TransformSources = std::vector<const aiNode*>;

/// Takes the animations of nodes over into `imported`; those of meshes are counted as left out. Where a file has
/// several nodes of one name, the first one moves. A node whose keys are out of order or not finite is left out with a
/// remark: loaders that repeat motion beyond its keys are known to make such keys of good ones.
///
/// @param sources one for each imported node.
void TakeAnimations(const aiScene& scene, std::span<const TransformSources> sources, ImportedScene& imported,
                    ImportReport& report);

} // namespace Orvel::Import
