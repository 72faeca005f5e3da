#pragma once

#include "tool/import/ImportReport.h"
#include "tool/import/ImportedScene.h"

#include <filesystem>
#include <string>
#include <vector>

namespace Orvel::Import
{

/// A kind of scene file that can be read.
struct SceneFormat
{
    std::string description;             ///< for people: "Wavefront Object Importer" without the last word
    std::vector<std::string> extensions; ///< lower case, without the dot, sorted; never empty
};

/// Reads a scene of any format but glTF 2.0 through Assimp.
///
/// Node tree, names and local matrices come as the file has them; what Assimp bakes into the root node for the sake of
/// units and axes is taken out again and told through `unitInMillimetres` and `upAxis`. A mesh that several nodes use
/// is one geometry. Animations of nodes become clips. Polygons become triangles; points and lines, skins, morphs,
/// animations of meshes, lights and the like are counted in `report`. Picture paths are left as the file gives them
/// (see TextureFiles).
///
/// @param file   a regular file with content, which LoadDocument makes sure of. Opened by the reader; further files
/// that it names (material libraries, buffers) are read from beside it.
/// @param report receives what could not be kept.
/// @throws ImportError when the file is of unknown format or damaged, or when its meshes hold NaN or infinite
///         coordinates or indices out of range. std::bad_alloc passes through. Damaged files are known to crash Assimp
///         or to keep it busy for minutes: callers run this in a process that they can afford to lose.
[[nodiscard]] ImportedScene ReadWithAssimp(const std::filesystem::path& file, ImportReport& report);

/// The formats that ReadWithAssimp accepts, sorted by description, glTF 2.0 not among them.
[[nodiscard]] std::vector<SceneFormat> ListAssimpFormats();

} // namespace Orvel::Import
