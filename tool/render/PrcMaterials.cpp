#include "tool/render/PrcMaterials.h"

#include "platform/image/ImageFile.h"
#include "platform/prcfile/PRCPicture.h"
#include "tool/render/ColourSpace.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace Orvel::Render
{

namespace
{

using prc::Model::DecodedPicture;

/// Of all pixels of a picture together.
constexpr std::uint64_t LargestPictureInBytes = std::uint64_t{1} << 29;

/// Share of light that bare metal mirrors, about: what a highlight of that strength says of the surface's smoothness.
constexpr float StrongestHighlight = 0.9F;

Eigen::Vector3f ColourAt(const prc::Model::Globals& globals, std::uint32_t index)
{
    if (index >= globals.colours.size())
        return Eigen::Vector3f::Zero();
    const prc::Model::Colour& colour = globals.colours[index];
    Eigen::Vector3f linear;
    for (std::size_t channel = 0; channel < 3; ++channel)
        linear[static_cast<Eigen::Index>(channel)] = LinearFromSrgb(static_cast<float>(colour[channel]));
    return linear;
}

/// Classic shading knows the width of a highlight and its strength; many files have one width for all. Weak highlights
/// then stand for rough surfaces.
float RoughnessOf(double shininess, const Eigen::Vector3f& specular)
{
    const float byStrength = 1.0F - std::sqrt(std::min(specular.maxCoeff() / StrongestHighlight, 1.0F));
    const float byWidth = 1.0F - static_cast<float>(std::clamp(shininess, 0.0, 1.0));
    return std::clamp(0.6F * byStrength + 0.4F * byWidth, 0.06F, 1.0F);
}

Wrap WrapOf(std::int32_t wrapping)
{
    switch (wrapping) {
    case 2:
    case 3:
    case 4:
        return Wrap::Clamp;
    case 5:
        return Wrap::Mirror;
    default:
        return Wrap::Repeat;
    }
}

void TakePlacement(const prc::Model::TextureDefinition& definition, Material& material)
{
    material.wrapU = WrapOf(definition.wrapS);
    material.wrapV = WrapOf(definition.wrapT);
    if (!definition.transformation)
        return;
    const prc::Model::TextureTransformation& stated = *definition.transformation;
    for (Eigen::Index axis = 0; axis < 2; ++axis) {
        const bool flips = axis == 0 ? stated.flipS : stated.flipT;
        const auto at = static_cast<std::size_t>(axis);
        const double scale = flips ? -stated.scale[at] : stated.scale[at];
        const double offset = flips ? 1.0 - stated.translation[at] : stated.translation[at];
        if (std::isfinite(scale) && std::isfinite(offset)) {
            material.textureScale[axis] = static_cast<float>(scale);
            material.textureOffset[axis] = static_cast<float>(offset);
        }
    }
}

/// @return RGBA, whatever the picture has.
std::vector<std::uint8_t> ToRgba(DecodedPicture picture)
{
    const std::size_t step = picture.components;
    if (step == 4)
        return std::move(picture.pixels);
    std::vector<std::uint8_t> rgba(std::size_t{4} * picture.size.width * picture.size.height);
    const bool isGrey = step < 3;
    const std::uint8_t* from = picture.pixels.data();
    for (std::size_t to = 0; to < rgba.size(); to += 4, from += step) {
        rgba[to] = from[0];
        rgba[to + 1] = isGrey ? from[0] : from[1];
        rgba[to + 2] = isGrey ? from[0] : from[2];
        rgba[to + 3] = step == 2 ? from[1] : std::uint8_t{255};
    }
    return rgba;
}

/// Decodes what the reader of PRC files leaves encoded.
std::optional<Texture> DecodeJpeg(std::span<const std::uint8_t> bytes)
{
    const Bitmap decoded = ImageFile::Decode(FIF_JPEG, bytes);
    const Bitmap bitmap(decoded ? FreeImage_ConvertTo32Bits(decoded.get()) : nullptr);
    if (!bitmap)
        return std::nullopt;
    const std::uint32_t width = FreeImage_GetWidth(bitmap.get());
    const std::uint32_t height = FreeImage_GetHeight(bitmap.get());
    std::vector<std::uint8_t> rgba;
    rgba.reserve(std::size_t{4} * width * height);
    for (std::uint32_t row = height; row-- > 0;) {
        const BYTE* pixel = FreeImage_GetScanLine(bitmap.get(), static_cast<int>(row));
        for (std::uint32_t column = 0; column < width; ++column, pixel += 4)
            rgba.insert(rgba.end(), {pixel[FI_RGBA_RED], pixel[FI_RGBA_GREEN], pixel[FI_RGBA_BLUE], 255});
    }
    return Texture(width, height, std::move(rgba));
}

bool IsDrawable(prc::Model::PictureSize size)
{
    return size.width > 0 && size.height > 0 && std::uint64_t{4} * size.width <= LargestPictureInBytes / size.height;
}

std::optional<Texture> Decode(const prc::Model::FileStructure& structure, std::uint32_t picture)
{
    if (!IsDrawable(prc::Model::sizeOf(structure, picture)))
        return std::nullopt;
    if (structure.globals.pictures[picture].format == prc::Model::PictureFormat::Jpeg)
        return DecodeJpeg(prc::Model::storedBytes(structure, picture));
    DecodedPicture decoded = prc::Model::decodePicture(structure, picture, LargestPictureInBytes);
    if (!decoded.error.empty() || !IsDrawable(decoded.size) || decoded.components < 1 || decoded.components > 4)
        return std::nullopt;
    const prc::Model::PictureSize size = decoded.size;
    return Texture(size.width, size.height, ToRgba(std::move(decoded)));
}

} // namespace

std::uint32_t PrcMaterials::For(const prc::Model::StyleReference& style)
{
    const auto [known, isNew] = materialByStyle.try_emplace({style.structure, style.style}, None);
    if (isNew) {
        scene.materials.push_back(Make(style));
        known->second = static_cast<std::uint32_t>(scene.materials.size() - 1);
    }
    return known->second;
}

Material PrcMaterials::Make(const prc::Model::StyleReference& style)
{
    Material material;
    if (style.structure >= model.structures.size() || style.style == prc::nullIndex)
        return material;
    const prc::Model::Globals& globals = model.structures[style.structure].globals;
    const prc::Model::Appearance appearance = prc::Model::appearanceOf(globals, style.style);
    if (appearance.colour != nullptr) {
        for (std::size_t channel = 0; channel < 3; ++channel)
            material.diffuse[static_cast<Eigen::Index>(channel)] =
                LinearFromSrgb(static_cast<float>((*appearance.colour)[channel]));
    }
    if (appearance.material != nullptr) {
        material.specular = ColourAt(globals, appearance.material->specular);
        material.emissive = ColourAt(globals, appearance.material->emissive);
        material.roughness = RoughnessOf(appearance.material->shininess, material.specular);
    }
    material.opacity = static_cast<float>(std::clamp(appearance.alpha, 0.0, 1.0));
    if (appearance.texture != nullptr) {
        material.texture = TextureFor(style.structure, appearance.texture->picture);
        TakePlacement(*appearance.texture, material);
    }
    return material;
}

std::uint32_t PrcMaterials::TextureFor(std::uint32_t structure, std::uint32_t picture)
{
    const auto [known, isNew] = textureByPicture.try_emplace({structure, picture}, None);
    if (!isNew || picture == prc::nullIndex)
        return known->second;
    std::optional<Texture> texture = Decode(model.structures[structure], picture);
    if (texture) {
        scene.textures.push_back(std::move(*texture));
        known->second = static_cast<std::uint32_t>(scene.textures.size() - 1);
    } else {
        notes.push_back("picture " + std::to_string(picture) + " of a texture cannot be decoded");
    }
    return known->second;
}

} // namespace Orvel::Render
