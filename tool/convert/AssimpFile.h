#pragma once

#include "tool/convert/MeshScene.h"
#include "tool/import/ImportReport.h"

#include <filesystem>
#include <string>
#include <vector>

namespace Orvel::Convert
{

enum class FlatFormat
{
    Obj,
    ObjWithoutMaterials,
    Stl,
    Ply
};

/// Writes a file of a format without a tree, through Assimp: every mesh is brought to its places, in single precision.
///
/// Obj writes a material library beside the file, NAME.mtl, and the pictures, NAME-1.png and so on, where NAME.obj is
/// the name of the file.
///
/// @param report takes what the format cannot hold.
/// @return the names of the files that stand beside `file`, in its folder.
/// @throws ConvertError when there is nothing to write or the file cannot be written; std::bad_alloc.
std::vector<std::string> WriteFlat(const MeshScene& scene, FlatFormat format, const std::filesystem::path& file,
                                   Import::ImportReport& report);

} // namespace Orvel::Convert
