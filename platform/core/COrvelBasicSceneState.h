#pragma once

#include <map>

namespace Orvel
{

class COrvelBasicMaterial;
class COrvelMaterial;

/// A variant of a scene: materials that are shown in place of others.
struct COrvelBasicSceneState
{
    /// Replacement by replaced material, ordered by the address of the latter; neither is owned, copies share them.
    std::map<COrvelMaterial*, COrvelBasicMaterial*> materialReplacements;
};

} // namespace Orvel
