#pragma once

#include "tool/import/AssimpAnimations.h"
#include "tool/import/AssimpFrame.h"
#include "tool/import/AssimpLoaders.h"
#include "tool/import/ImportReport.h"
#include "tool/import/ImportedScene.h"

#include <assimp/scene.h>

#include <span>
#include <vector>

namespace Orvel::Import
{

/// Takes the node tree and the cameras over into `imported`.
///
/// A root that only stands for the file is left away, so that its children become roots. The nodes that the FBX loader
/// makes of pivots become the one node that they stand for. A camera that does not look along -z of its node gets a
/// child node that does.
///
/// @param meshes for each mesh of `scene` its part; those without a geometry are passed over.
/// @return for each node of `imported` where its matrix comes from; none for a root that the loader has turned.
/// @throws ImportError when a node names a mesh that does not exist.
[[nodiscard]] std::vector<TransformSources> TakeNodes(const aiScene& scene, const AssimpLoader& loader,
                                                      const SceneFrame& frame, std::span<const ImportedPart> meshes,
                                                      ImportedScene& imported);

} // namespace Orvel::Import
