#pragma once

#include "tool/import/ImportedScene.h"

#include <optional>
#include <string_view>

namespace Orvel::Import
{

/// Reads a binary STL file. Equal points are joined; the normals of the facets are passed over, since they say no more
/// than the points do, and shading normals are made from the shape.
///
/// The general library takes five times as long and twenty times the memory for the same, since it keeps every facet's
/// corners apart.
///
/// @param bytes the whole file, of any format.
/// @return nothing for what the library must read: text, damaged files, files without facets, and those with colours.
/// @throws ImportError when a coordinate is infinite or not a number.
[[nodiscard]] std::optional<ImportedScene> ReadBinaryStl(std::string_view bytes);

} // namespace Orvel::Import
