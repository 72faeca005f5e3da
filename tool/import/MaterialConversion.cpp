#include "tool/import/MaterialConversion.h"

#include <algorithm>
#include <cmath>

namespace Orvel::Import
{

namespace
{

constexpr double OpacityLostToTransmission = 0.75;
constexpr double DefaultDiffuse = 0.8;

/// Into 0 to 1; what is no number becomes 0.
double Unit(double value)
{
    return value > 0.0 ? std::min(value, 1.0) : 0.0;
}

Colour Unit(const Colour& colour)
{
    return {Unit(colour[0]), Unit(colour[1]), Unit(colour[2])};
}

/// Down to 1 at most, all channels by the same factor, so that the hue stays.
Colour WithinRange(const Colour& colour)
{
    Colour result{};
    for (std::size_t i = 0; i < result.size(); ++i)
        result[i] = std::isfinite(colour[i]) ? std::max(colour[i], 0.0) : 0.0;
    const double highest = std::max({result[0], result[1], result[2], 1.0});
    for (double& channel : result)
        channel /= highest;
    return result;
}

Colour Scaled(const Colour& colour, double factor)
{
    return {colour[0] * factor, colour[1] * factor, colour[2] * factor};
}

/// Share of light that comes back along the normal of a material that is no metal, for each channel.
Colour DielectricReflection(const MetallicRoughness& source)
{
    const double ior = std::isfinite(source.indexOfRefraction) ? std::max(source.indexOfRefraction, 0.0) : 1.5;
    const double ratio = (ior - 1.0) / (ior + 1.0);
    Colour reflection{};
    for (std::size_t i = 0; i < reflection.size(); ++i)
        reflection[i] = Unit(ratio * ratio * source.specularColour[i]) * Unit(source.specular);
    return reflection;
}

} // namespace

double SrgbFromLinear(double linear)
{
    const double value = Unit(linear);
    // 1.055 - 0.055 falls short of 1 by a rounding step; white must stay white.
    if (value == 1.0)
        return 1.0;
    return value <= 0.0031308 ? 12.92 * value : 1.055 * std::pow(value, 1.0 / 2.4) - 0.055;
}

double LinearFromSrgb(double encoded)
{
    const double value = Unit(encoded);
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

Colour SrgbFromLinear(const Colour& linear)
{
    return {SrgbFromLinear(linear[0]), SrgbFromLinear(linear[1]), SrgbFromLinear(linear[2])};
}

Colour LinearFromSrgb(const Colour& encoded)
{
    return {LinearFromSrgb(encoded[0]), LinearFromSrgb(encoded[1]), LinearFromSrgb(encoded[2])};
}

Colour EmissiveColour(const Colour& linear, double strength)
{
    return SrgbFromLinear(WithinRange(Scaled(linear, strength)));
}

void ConvertMetallicRoughness(const MetallicRoughness& source, ImportedMaterial& material)
{
    const Colour base = Unit(source.baseColour);
    const Colour dielectric = DielectricReflection(source);
    const double metallic = Unit(source.metallic);
    const double smoothness = 1.0 - Unit(source.roughness);
    Colour reflection{};
    for (std::size_t i = 0; i < reflection.size(); ++i)
        reflection[i] = dielectric[i] + (base[i] - dielectric[i]) * metallic;

    material.diffuse = SrgbFromLinear(base);
    material.ambient = material.diffuse;
    material.specular = SrgbFromLinear(Scaled(reflection, smoothness * smoothness));
    material.opacity = Unit(source.opacity) * (1.0 - OpacityLostToTransmission * Unit(source.transmission));
}

void ConvertSpecularGlossiness(const SpecularGlossiness& source, ImportedMaterial& material)
{
    const double glossiness = Unit(source.glossiness);
    material.diffuse = SrgbFromLinear(source.diffuse);
    material.ambient = material.diffuse;
    material.specular = SrgbFromLinear(Scaled(Unit(source.specular), glossiness * glossiness));
    material.opacity = Unit(source.opacity);
}

void MakeUnlit(ImportedMaterial& material)
{
    constexpr Colour Black{};
    material.specular = Black;
    material.emissive = Black;
    if (material.image != None)
        return;
    material.emissive = material.diffuse;
    material.diffuse = Black;
    material.ambient = Black;
}

void ConvertClassic(const ClassicMaterial& source, ImportedMaterial& material)
{
    constexpr Colour Black{};
    constexpr Colour White{1.0, 1.0, 1.0};
    const bool hasPicture = material.image != None;
    const Colour absent = hasPicture ? White : Colour{DefaultDiffuse, DefaultDiffuse, DefaultDiffuse};
    material.diffuse = Unit(source.diffuse.value_or(absent));
    if (hasPicture && material.diffuse == Black)
        material.diffuse = White;
    material.ambient = Unit(source.ambient.value_or(material.diffuse));
    material.specular = Unit(Scaled(source.specular.value_or(Black), source.specularStrength));
    material.emissive = WithinRange(Scaled(source.emissive.value_or(Black), source.emissiveStrength));
    material.opacity = Unit(source.opacity);
}

} // namespace Orvel::Import
