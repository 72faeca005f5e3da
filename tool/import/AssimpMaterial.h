#pragma once

#include "tool/import/AssimpLoaders.h"
#include "tool/import/AssimpMesh.h"
#include "tool/import/ImportReport.h"
#include "tool/import/ImportedScene.h"

#include <assimp/scene.h>

#include <vector>

namespace Orvel::Import
{

/// What becomes of one material of Assimp.
struct TakenMaterial
{
    Index material = None;           ///< None: made up by the loader for meshes without a material
    TextureCoordinateSet set = None; ///< of the mesh, for the material's picture
};

/// Takes all materials and their pictures over into `imported`; the pixels of embedded pictures move out of `scene`.
/// @return an entry for each material of `scene`.
[[nodiscard]] std::vector<TakenMaterial> TakeMaterials(aiScene& scene, const AssimpLoader& loader,
                                                       ImportedScene& imported, ImportReport& report);

} // namespace Orvel::Import
