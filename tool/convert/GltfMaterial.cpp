#include "tool/convert/GltfMaterial.h"

#include "tool/import/MaterialConversion.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace Orvel::Convert
{

namespace
{

constexpr double DielectricReflection = 0.04; ///< glTF 2.0, appendix B: index of refraction 1.5
constexpr double UsualRoughness = 0.5;
constexpr const char* SpecularExtension = "KHR_materials_specular";

/// The highlight is DielectricReflection * (1 - roughness)^2 for a grey one that is weak enough; a coloured or stronger
/// one takes the extension, which multiplies the reflection.
void SetSpecular(const Colour& specular, tinygltf::Material& material)
{
    const Colour linear = Import::LinearFromSrgb(specular);
    const auto [low, high] = std::ranges::minmax(linear);
    if (high <= DielectricReflection && high - low < 1e-9) {
        material.pbrMetallicRoughness.roughnessFactor = 1.0 - std::sqrt(high / DielectricReflection);
        return;
    }
    const double smoothness = 1.0 - UsualRoughness;
    tinygltf::Value::Array factors;
    for (const double channel : linear)
        factors.emplace_back(channel / (DielectricReflection * smoothness * smoothness));
    material.pbrMetallicRoughness.roughnessFactor = UsualRoughness;
    material.extensions[SpecularExtension] =
        tinygltf::Value(tinygltf::Value::Object{{"specularColorFactor", tinygltf::Value(factors)}});
}

} // namespace

tinygltf::Material GltfMaterialOf(const Material& material, const Picture* picture, int texture)
{
    tinygltf::Material result;
    result.name = material.name;
    const Colour base = Import::LinearFromSrgb(material.diffuse);
    const Colour emissive = Import::LinearFromSrgb(material.emissive);
    result.pbrMetallicRoughness.baseColorFactor = {base[0], base[1], base[2], material.opacity};
    result.pbrMetallicRoughness.metallicFactor = 0.0;
    result.emissiveFactor = {emissive[0], emissive[1], emissive[2]};
    SetSpecular(material.specular, result);
    if (picture != nullptr)
        result.pbrMetallicRoughness.baseColorTexture.index = texture;
    const bool isTransparent = material.opacity < 1.0 || (picture != nullptr && picture->hasAlpha);
    result.alphaMode = isTransparent ? "BLEND" : "OPAQUE";
    return result;
}

} // namespace Orvel::Convert
