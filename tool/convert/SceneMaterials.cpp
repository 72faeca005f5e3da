#include "tool/convert/SceneMaterials.h"

#include "platform/prcfile/PRCPicture.h"

#include <FreeImage.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <span>

namespace Orvel::Convert
{

namespace
{

using namespace prc::Model;

/// Into 0 to 1; what is no number becomes 0.
double Unit(double value)
{
    return value > 0.0 ? std::min(value, 1.0) : 0.0;
}

Convert::Colour ColourAt(const Globals& globals, std::uint32_t colour, const Convert::Colour& otherwise)
{
    if (colour >= globals.colours.size())
        return otherwise;
    Convert::Colour result = globals.colours[colour];
    for (double& channel : result)
        channel = Unit(channel);
    return result;
}

/// The style has it as a byte, the material as a number: the number, where both say the same.
double OpacityOf(const Style& style, const Appearance& appearance)
{
    const double opacity = Unit(appearance.alpha);
    if (!style.transparency || appearance.material == nullptr)
        return opacity;
    const double exact = Unit(appearance.material->diffuseAlpha);
    return std::lround(exact * 255.0) == *style.transparency ? exact : opacity;
}

Wrap WrapOf(std::int32_t number)
{
    constexpr std::int32_t Mirrored = 5;
    if (number == Mirrored)
        return Wrap::Mirror;
    return number <= 1 ? Wrap::Repeat : Wrap::Clamp;
}

bool HasAlpha(const DecodedPicture& decoded)
{
    if (decoded.components != 2 && decoded.components != 4)
        return false;
    for (std::size_t i = decoded.components - 1; i < decoded.pixels.size(); i += decoded.components) {
        if (decoded.pixels[i] != 255)
            return true;
    }
    return false;
}

struct UnloadBitmap
{
    void operator()(FIBITMAP* bitmap) const { FreeImage_Unload(bitmap); }
};

struct CloseMemory
{
    void operator()(FIMEMORY* memory) const { FreeImage_CloseMemory(memory); }
};

/// @return empty when the picture cannot be encoded.
std::vector<std::uint8_t> PngOf(const DecodedPicture& decoded)
{
    const auto width = static_cast<int>(decoded.size.width);
    const auto height = static_cast<int>(decoded.size.height);
    const std::unique_ptr<FIBITMAP, UnloadBitmap> bitmap(FreeImage_Allocate(width, height, 32));
    const std::unique_ptr<FIMEMORY, CloseMemory> memory(FreeImage_OpenMemory());
    if (!bitmap || !memory)
        return {};
    const bool isGrey = decoded.components < 3;
    const bool hasAlpha = decoded.components % 2 == 0;
    const std::uint8_t* pixel = decoded.pixels.data();
    for (int row = height - 1; row >= 0; --row) { // bitmaps begin with the bottom row
        BYTE* line = FreeImage_GetScanLine(bitmap.get(), row);
        for (int column = 0; column < width; ++column, line += 4, pixel += decoded.components) {
            line[FI_RGBA_RED] = pixel[0];
            line[FI_RGBA_GREEN] = pixel[isGrey ? 0 : 1];
            line[FI_RGBA_BLUE] = pixel[isGrey ? 0 : 2];
            line[FI_RGBA_ALPHA] = hasAlpha ? pixel[decoded.components - 1] : BYTE{255};
        }
    }
    BYTE* bytes = nullptr;
    DWORD size = 0;
    if (FreeImage_SaveToMemory(FIF_PNG, bitmap.get(), memory.get(), PNG_DEFAULT) == 0 ||
        FreeImage_AcquireMemory(memory.get(), &bytes, &size) == 0)
        return {};
    return {bytes, bytes + size};
}

} // namespace

std::uint32_t SceneMaterials::MaterialOf(const StyleReference& style)
{
    if (style.structure >= model.structures.size())
        return None;
    const auto [found, isNew] = materials.try_emplace({style.structure, style.style}, None);
    if (isNew) {
        const Appearance appearance = appearanceOf(model.structures[style.structure].globals, style.style);
        if (appearance.material != nullptr || appearance.colour != nullptr || appearance.texture != nullptr) {
            const Convert::Material material = Make(style, appearance);
            found->second =
                equals.try_emplace(material, static_cast<std::uint32_t>(scene.materials.size())).first->second;
            if (found->second == scene.materials.size())
                scene.materials.push_back(material);
        }
    }
    return found->second;
}

Convert::Material SceneMaterials::Make(const StyleReference& style, const Appearance& appearance)
{
    const Globals& globals = model.structures[style.structure].globals;
    const Name& name = globals.styles[style.style].name;
    Convert::Material material;
    material.opacity = OpacityOf(globals.styles[style.style], appearance);
    if (appearance.colour != nullptr)
        material.diffuse =
            ColourAt(globals, static_cast<std::uint32_t>(appearance.colour - globals.colours.data()), {});
    material.ambient = material.diffuse;
    if (const prc::Model::Material* const stored = appearance.material) {
        material.ambient = ColourAt(globals, stored->ambient, material.diffuse);
        material.specular = ColourAt(globals, stored->specular, {});
        material.emissive = ColourAt(globals, stored->emissive, {});
        material.shininess = Unit(stored->shininess);
        material.name = stored->name.value_or("");
    }
    if (name && !name->empty())
        material.name = *name;
    if (appearance.texture != nullptr)
        AddTexture(material, style.structure, *appearance.texture);
    return material;
}

void SceneMaterials::AddTexture(Convert::Material& material, std::uint32_t structure, const TextureDefinition& texture)
{
    if (texture.picture == prc::nullIndex)
        return;
    if (texture.transformation)
        report.CountLeftOut("texture transform", "texture transforms");
    material.picture = PictureOf(structure, texture.picture);
    material.wrap = {WrapOf(texture.wrapS), WrapOf(texture.wrapT)};
}

std::uint32_t SceneMaterials::PictureOf(std::uint32_t structure, std::uint32_t picture)
{
    const auto [found, isNew] = pictures.try_emplace({structure, picture}, None);
    if (!isNew)
        return found->second;
    const FileStructure& file = model.structures[structure];
    const prc::Model::Picture& stored = file.globals.pictures[picture];
    Convert::Picture made;
    made.name = stored.name.value_or("");
    made.isJpeg = stored.format == PictureFormat::Jpeg;
    const std::span<const std::uint8_t> bytes = storedBytes(file, picture);
    if (made.isJpeg) {
        made.file.assign(bytes.begin(), bytes.end());
    } else {
        const DecodedPicture decoded = decodePicture(file, picture);
        if (!decoded.error.empty()) {
            report.Warn("texture " + std::to_string(picture) + " is left out: " + decoded.error);
            return None;
        }
        made.hasAlpha = HasAlpha(decoded);
        made.file = stored.format == PictureFormat::Png ? std::vector<std::uint8_t>(bytes.begin(), bytes.end())
                                                        : PngOf(decoded);
    }
    if (made.file.empty()) {
        report.Warn("texture " + std::to_string(picture) + " is left out: it is empty");
        return None;
    }
    found->second = static_cast<std::uint32_t>(scene.pictures.size());
    scene.pictures.push_back(std::move(made));
    return found->second;
}

} // namespace Orvel::Convert
