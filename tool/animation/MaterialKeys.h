#pragma once

#include "tool/animation/KeyReduction.h"
#include "tool/import/ImportedScene.h"

#include <vector>

namespace Orvel
{
class COrvelKeyFrameManager;
class COrvelMaterial;
} // namespace Orvel

namespace Orvel::Animate
{

/// How the looks of the materials that stand for one of the scene's change: the frames that are kept and the looks
/// there.
struct MaterialKeys
{
    std::vector<COrvelMaterial*> materials;      ///< owned by their document
    std::vector<KeyRange> ranges;                ///< empty: the looks are those at rest throughout
    std::vector<Import::ImportedMaterial> looks; ///< one for each range
};

/// @param materials   not empty; alike.
/// @param samples     the looks at each frame, from frame 0 on; not empty.
/// @param tolerance   what a channel of a colour, or the opacity, may be off; both run from 0 to 1.
[[nodiscard]] MaterialKeys ReduceMaterial(std::vector<COrvelMaterial*> materials,
                                          const std::vector<Import::ImportedMaterial>& samples, double tolerance);

/// Stores the keys as material key frame data of each of the materials.
void StoreKeys(const MaterialKeys& keys, COrvelKeyFrameManager& manager);

} // namespace Orvel::Animate
