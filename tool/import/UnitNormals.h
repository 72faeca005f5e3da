#pragma once

#include "tool/import/ImportReport.h"
#include "tool/import/ImportedScene.h"

#include <string>

namespace Orvel::Import
{

/// Brings the normals of a file to unit length, the same way for every format.
///
/// Normals whose length differs from 1 by no more than writing few decimals explains keep the numbers of the file.
/// Those without a direction (zero, or not finite) become the mean of the triangles around their point, weighted by
/// area, or +z; a warning counts them. Where none has a direction, none is left: they are to be made.
///
/// @param where begins the warning: "mesh 'Wheel'".
void MakeNormalsUnit(ImportedGeometry& shape, const std::string& where, ImportReport& report);

} // namespace Orvel::Import
