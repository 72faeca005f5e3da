#pragma once

#include "tool/convert/MeshScene.h"

#include <optional>

namespace Orvel::Convert
{

/// How lengths and axes of a converted scene are to be.
struct UnitOptions
{
    double millimetresPerUnit = 1.0; ///< of the model
    bool toMetres = false;           ///< the format is defined in metres, y up
    std::optional<double> scale;     ///< lengths are multiplied by this instead of being brought to metres; above 0
};

/// Takes the group away that `orvelprc export` adds for units and axes, so that the scene is what it was before, and
/// adds one where the format asks for another unit or axis than the scene then has: axes turn only where the group told
/// how they stand.
void ApplyUnits(MeshScene& scene, const UnitOptions& options);

} // namespace Orvel::Convert
