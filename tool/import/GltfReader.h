#pragma once

#include "tool/import/ImportReport.h"
#include "tool/import/ImportedScene.h"

#include <filesystem>

namespace Orvel::Import
{

/// Whether a file is for ReadGltf(): its extension is .gltf or .glb, or its content is a binary glTF file or JSON text
/// with an "asset" member. False for glTF 1.x, which is another format, and for what cannot be opened.
[[nodiscard]] bool IsGltf(const std::filesystem::path& file);

/// Reads the default scene of a glTF 2.0 file (the first one where none is the default; all root nodes where the file
/// has no scenes), with the buffers that it points to. Pictures stay encoded, and those in files of their own are not
/// opened.
///
/// Node matrices are those of the file in double precision: `matrix` as it stands, otherwise T * R * S with the
/// quaternion as given (brought to unit length only where it is off by more than rounding). Primitives over the same
/// accessors share one geometry. Texture coordinates are those that the base colour texture uses, turned over so that v
/// = 0 is the bottom edge.
///
/// Animations become clips: translation, rotation and scale of nodes, and, through KHR_animation_pointer, these and the
/// values of materials. KHR_materials_variants become variants.
///
/// @param report what the exported file cannot hold is counted here, and what was repaired is told.
/// @throws ImportError when the file, or a buffer in use, cannot be read or breaks the format: indices and ranges
///         outside their tables, coordinates that are not finite, keys that are not finite or out of order, nodes in a
///         circle, with two parents or more than 1000 levels deep, JSON more than 256 levels deep.
[[nodiscard]] ImportedScene ReadGltf(const std::filesystem::path& file, ImportReport& report);

} // namespace Orvel::Import
