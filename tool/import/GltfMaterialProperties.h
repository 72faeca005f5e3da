#pragma once

#include <tiny_gltf.h>

#include <optional>
#include <span>
#include <string_view>

namespace Orvel::Import
{

/// How many numbers a property of a material has, by its path below the material as JSON pointers write it
/// ("pbrMetallicRoughness/baseColorFactor"); nothing for properties that the import does not use.
[[nodiscard]] std::optional<int> MaterialPropertyWidth(std::string_view path);

/// Gives a property its value.
/// @param path   one for which MaterialPropertyWidth answers.
/// @param values that many numbers.
void SetMaterialProperty(tinygltf::Material& material, std::string_view path, std::span<const double> values);

} // namespace Orvel::Import
