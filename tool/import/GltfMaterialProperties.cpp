#include "tool/import/GltfMaterialProperties.h"

#include <algorithm>
#include <cassert>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

namespace Orvel::Import
{

namespace
{

using tinygltf::Material;
using tinygltf::Value;
using Numbers = std::span<const double>;

/// A property of the format itself has a setter, one of an extension stands in the extension's object.
struct Property
{
    std::string_view path;
    int width;
    void (*set)(Material& material, Numbers values);
};

constexpr Property Properties[] = {
    {"emissiveFactor", 3, [](Material& m, Numbers v) { m.emissiveFactor.assign(v.begin(), v.end()); }},
    {"alphaCutoff", 1, [](Material& m, Numbers v) { m.alphaCutoff = v[0]; }},
    {"pbrMetallicRoughness/baseColorFactor", 4,
     [](Material& m, Numbers v) { m.pbrMetallicRoughness.baseColorFactor.assign(v.begin(), v.end()); }},
    {"pbrMetallicRoughness/metallicFactor", 1,
     [](Material& m, Numbers v) { m.pbrMetallicRoughness.metallicFactor = v[0]; }},
    {"pbrMetallicRoughness/roughnessFactor", 1,
     [](Material& m, Numbers v) { m.pbrMetallicRoughness.roughnessFactor = v[0]; }},
    {"extensions/KHR_materials_emissive_strength/emissiveStrength", 1, nullptr},
    {"extensions/KHR_materials_ior/ior", 1, nullptr},
    {"extensions/KHR_materials_specular/specularFactor", 1, nullptr},
    {"extensions/KHR_materials_specular/specularColorFactor", 3, nullptr},
    {"extensions/KHR_materials_transmission/transmissionFactor", 1, nullptr},
    {"extensions/KHR_materials_pbrSpecularGlossiness/diffuseFactor", 4, nullptr},
    {"extensions/KHR_materials_pbrSpecularGlossiness/specularFactor", 3, nullptr},
    {"extensions/KHR_materials_pbrSpecularGlossiness/glossinessFactor", 1, nullptr},
};

const Property* Find(std::string_view path)
{
    const auto* const found = std::ranges::find(Properties, path, &Property::path);
    return found == std::end(Properties) ? nullptr : found;
}

void SetInExtension(Material& material, std::string_view path, Numbers values)
{
    path.remove_prefix(path.find('/') + 1);
    const std::size_t slash = path.find('/');
    Value& extension = material.extensions[std::string(path.substr(0, slash))];
    if (!extension.IsObject())
        extension = Value(Value::Object());
    Value& member = extension.Get<Value::Object>()[std::string(path.substr(slash + 1))];
    member = values.size() == 1 ? Value(values[0]) : Value(Value::Array(values.begin(), values.end()));
}

} // namespace

std::optional<int> MaterialPropertyWidth(std::string_view path)
{
    const Property* const property = Find(path);
    return property ? std::optional(property->width) : std::nullopt;
}

void SetMaterialProperty(tinygltf::Material& material, std::string_view path, std::span<const double> values)
{
    const Property* const property = Find(path);
    assert(property && values.size() == static_cast<std::size_t>(property->width) && "the property is known");
    if (property->set)
        property->set(material, values);
    else
        SetInExtension(material, path, values);
}

} // namespace Orvel::Import
