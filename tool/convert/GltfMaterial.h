#pragma once

#include "tool/convert/MeshScene.h"

#include <tiny_gltf.h>

namespace Orvel::Convert
{

/// The material in the terms of glTF: the counterpart of Import::ConvertMetallicRoughness for what is no metal.
/// @param picture what the material's picture holds; null for none.
/// @param texture its number in the glTF file.
[[nodiscard]] tinygltf::Material GltfMaterialOf(const Material& material, const Picture* picture, int texture);

} // namespace Orvel::Convert
