#pragma once

#include "tool/import/ImportedScene.h"

#include <string>
#include <vector>

namespace Orvel::Import
{

/// What a part of a node is called: the name of its mesh; the node's where the mesh has none, or only that of the
/// part's material, which several loaders fill in.
[[nodiscard]] const std::string& PartName(const ImportedNode& node, const ImportedPart& part,
                                          const std::vector<ImportedMaterial>& materials);

/// Joins the parts of each node that agree in name, material and kind of data, so that a mesh with several materials
/// has one part for each of them: files that switch materials to and fro bring a part for each switch.
///
/// Triangles keep their order within what is joined. Shapes that are shown more than once stay apart, so that they
/// can be shared. Takes time in proportion to the data; the geometries that were joined to others are left empty.
void MergeParts(ImportedScene& scene);

} // namespace Orvel::Import
