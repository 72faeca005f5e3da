#pragma once

#include "tool/import/ImportedScene.h"

#include <array>
#include <optional>

namespace Orvel::Import
{

/// The one place where materials of scene files become materials for classic lighting: colours for ambient light,
/// diffuse and specular reflection and own light, all in sRGB. The viewer adds ambient, diffuse and own light,
/// multiplies the sum with the picture, and adds a highlight of the specular colour.
///
/// All functions bring what lies outside 0 to 1, or is no number, into that range.
using Colour = std::array<double, 3>;

/// Transfer functions of IEC 61966-2-1.
[[nodiscard]] double SrgbFromLinear(double linear);
[[nodiscard]] double LinearFromSrgb(double encoded);
[[nodiscard]] Colour SrgbFromLinear(const Colour& linear);
[[nodiscard]] Colour LinearFromSrgb(const Colour& encoded);

/// Value that stands in for a texture that only the physical model can use and that is therefore not read: factors are
/// multiplied with it by the reader.
inline constexpr double UnreadTextureMean = 0.5;

/// Light that leaves a surface of its own accord, linear; `strength` may lie above 1.
/// Brought back below 1 without changing the hue, then to sRGB.
[[nodiscard]] Colour EmissiveColour(const Colour& linear, double strength);

/// Physically based material in the terms of glTF 2.0 with KHR_materials_ior, _specular and _transmission. Colours are
/// linear. Defaults are those of glTF.
struct MetallicRoughness
{
    Colour baseColour{1.0, 1.0, 1.0};
    double metallic = 1.0;
    double roughness = 1.0;
    double indexOfRefraction = 1.5;
    double specular = 1.0;
    Colour specularColour{1.0, 1.0, 1.0};
    double transmission = 0.0;
    double opacity = 1.0;
};

/// Sets ambient, diffuse, specular and opacity; leaves everything else as it is.
///
/// - diffuse = base colour, for metals too: a metal shows only what it mirrors, and a classic viewer has no
///   surroundings to mirror, so that the physically right black would hide the part. Because products of sRGB values
///   are close to the sRGB value of the product, a picture multiplied with it keeps its colours.
/// - ambient = diffuse: a surface reflects ambient light as it reflects other light.
/// - specular = F0 * (1 - roughness)^2, with F0 = mix(dielectric, base colour, metallic) and
///   dielectric = min(((n - 1) / (n + 1))^2 * specularColour, 1) * specular  (glTF 2.0, appendix B; KHR_materials_ior,
///   KHR_materials_specular). The highlight of the viewer has one width only, so a rough surface gets a weaker one.
/// - opacity = opacity * (1 - 0.75 * transmission): glass stays visible.
void ConvertMetallicRoughness(const MetallicRoughness& source, ImportedMaterial& material);

/// Material in the terms of KHR_materials_pbrSpecularGlossiness. Colours are linear. Defaults are those of glTF.
struct SpecularGlossiness
{
    Colour diffuse{1.0, 1.0, 1.0};
    Colour specular{1.0, 1.0, 1.0};
    double glossiness = 1.0;
    double opacity = 1.0;
};

/// Sets ambient, diffuse, specular and opacity: ambient = diffuse, specular * glossiness^2, for the reasons given
/// above.
void ConvertSpecularGlossiness(const SpecularGlossiness& source, ImportedMaterial& material);

/// Makes a converted material independent of light. One with a picture stays lit, without a highlight: only the lit
/// colours are sure to be multiplied with it.
void MakeUnlit(ImportedMaterial& material);

/// Material for classic lighting (OBJ, 3DS, FBX, Collada ...): colours are sRGB already, absent where the file has
/// none.
struct ClassicMaterial
{
    std::optional<Colour> ambient{};
    std::optional<Colour> diffuse{};
    std::optional<Colour> specular{};
    std::optional<Colour> emissive{};
    double specularStrength = 1.0;
    double emissiveStrength = 1.0;
    double opacity = 1.0;
};

/// Sets the four colours and the opacity. An absent ambient colour is the diffuse one, an absent diffuse colour is
/// 0.8 grey, white under a picture; specular and emissive are black. A black diffuse colour under a picture
/// (`material.image` is set beforehand) becomes white: many programs write it there and show the picture alone.
void ConvertClassic(const ClassicMaterial& source, ImportedMaterial& material);

} // namespace Orvel::Import
