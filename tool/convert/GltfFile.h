#pragma once

#include "tool/convert/MeshScene.h"

#include <filesystem>

namespace Orvel::Convert
{

enum class GltfForm
{
    Binary, ///< .glb
    Text    ///< .gltf with everything in it, as data URIs
};

/// Writes a glTF 2.0 file that needs no other file: tree, names, transforms in double precision, shared meshes,
/// materials and pictures; points in single precision.
///
/// @throws ConvertError when the scene is empty, or the file cannot be written, or would be larger than the format
/// allows; std::bad_alloc.
void WriteGltf(const MeshScene& scene, GltfForm form, const std::filesystem::path& file);

} // namespace Orvel::Convert
