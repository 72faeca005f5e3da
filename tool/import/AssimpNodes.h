#pragma once

#include "tool/import/AssimpFrame.h"
#include "tool/import/AssimpLoaders.h"
#include "tool/import/ImportReport.h"
#include "tool/import/ImportedScene.h"

#include <assimp/scene.h>

#include <span>

namespace Orvel::Import
{

/// Takes the node tree and the cameras over into `imported`.
///
/// A root that only stands for the file is left away, so that its children become roots. The nodes that the FBX loader
/// makes of pivots become the one node that they stand for. A camera that does not look along -z of its node gets a
/// child node that does.
///
/// @param meshes for each mesh of `scene` its part; those without a geometry are passed over.
/// @throws ImportError when a node names a mesh that does not exist.
void TakeNodes(const aiScene& scene, const AssimpLoader& loader, const SceneFrame& frame,
               std::span<const ImportedPart> meshes, ImportedScene& imported);

} // namespace Orvel::Import
