#pragma once

#include <tiny_gltf.h>

#include <cstddef>
#include <vector>

namespace Orvel::Import
{

/// The material of a primitive in each variant of the file (KHR_materials_variants); -1 where it keeps its own.
/// @return as many as there are variants; nothing for a primitive that has none.
/// @throws ImportError when the primitive names a variant that does not exist.
[[nodiscard]] std::vector<int> MaterialsOfVariants(const tinygltf::Primitive& primitive, std::size_t variantCount);

} // namespace Orvel::Import
