#pragma once

#include "platform/prcfile/PRCModel.h"
#include "platform/prcfile/PRCScene.h"
#include "tool/convert/MeshScene.h"
#include "tool/import/ImportReport.h"

namespace Orvel::Convert
{

/// Takes a PRC model apart into meshes, materials and nodes.
///
/// An occurrence becomes a node; what it holds is shown by the node itself when it is a single thing without a name or
/// a place of its own, else by a child for each. A tessellation is stored once for each style that it is drawn in.
///
/// @param scene  made from `model`.
/// @param report takes what was left out or changed: meshes in forms that the reader does not decode, exact geometry,
///               hidden things that will be shown, ...
/// @throws ConvertError when the model has things to show but none of them can be decoded; std::bad_alloc.
[[nodiscard]] MeshScene BuildMeshScene(const prc::Model::PRCModel& model, const prc::Model::PlacedScene& scene,
                                       Import::ImportReport& report);

} // namespace Orvel::Convert
