#include "platform/prcfile/MaterialTable.h"

#include "platform/prcfile/NullIndex.h"
#include "platform/prcfile/TessellationChecks.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <stdexcept>

namespace prc
{

namespace
{

// Viewers take a ratio or an angle of 0 for damage; neither concerns ready tessellations.
constexpr double chordHeightRatio = 2000.0;
constexpr double tessellationAngleInDegrees = 40.0;

constexpr std::uint32_t pngFormat = 0;

constexpr std::uint8_t twoDimensional = 2;
constexpr std::int32_t storedCoordinates = 1;
constexpr std::uint32_t diffuseMap = 1;
constexpr std::uint8_t lightingMode = 1;

enum class TextureFunction : std::int32_t
{
    Modulate = 1,
    Replace = 2
};

enum class TextureWrapping : std::int32_t
{
    Repeat = 1,
    ClampToBorder = 2
};

/// Colours are counted in numbers, not in colours.
constexpr std::uint32_t colourIndexPlusOne(std::uint32_t colour)
{
    return 3 * colour + 1;
}

double clampedToUnit(double value)
{
    return std::clamp(value, 0.0, 1.0);
}

/// Dark enough to be seen on a white page.
PRCmaterial visibleDefault()
{
    PRCmaterial material;
    material.ambient = {0.15, 0.15, 0.15, 1.0};
    material.diffuse = {0.5, 0.5, 0.5, 1.0};
    material.specular = {0.15, 0.15, 0.15, 1.0};
    material.shininess = 0.25;
    return material;
}

void checkNumbers(const PRCmaterial& material)
{
    for (const PRCcolor* const colour : {&material.ambient, &material.diffuse, &material.emissive, &material.specular})
    {
        const std::array<double, 4> numbers = {colour->red, colour->green, colour->blue, colour->alpha};
        if (!allFinite(numbers))
            throw std::invalid_argument("a colour of a material is not finite");
    }
    if (!std::isfinite(material.alpha) || !std::isfinite(material.shininess))
        throw std::invalid_argument("alpha or shininess of a material is not finite");
}

/// @return false when the material has no picture.
bool checkPicture(const PRCmaterial& material)
{
    if (material.pictureData == nullptr || material.pictureWidth == 0 || material.pictureHeight == 0)
        return false;
    if (material.pictureFormat != PRCpictureFormat::Rgb && material.pictureFormat != PRCpictureFormat::Rgba)
        throw std::invalid_argument("a picture is neither RGB nor RGBA");
    // PNG files keep sizes in 31 bits.
    constexpr std::uint32_t largestSide = std::numeric_limits<std::int32_t>::max();
    if (material.pictureWidth > largestSide || material.pictureHeight > largestSide)
        throw std::invalid_argument("a picture is too large");
    const std::uint64_t size =
        std::uint64_t{material.pictureWidth} * material.pictureHeight * bytesPerPixel(material.pictureFormat);
    if (size != material.pictureSize)
        throw std::invalid_argument("the size of a picture does not fit its width, height and format");
    return true;
}

} // namespace

std::uint32_t MaterialTable::add(const PRCmaterial& material)
{
    checkNumbers(material);
    const bool hasPicture = checkPicture(material);

    Material entry{};
    const std::array<const PRCcolor*, 4> given = {&material.ambient, &material.diffuse, &material.emissive,
                                                  &material.specular};
    for (std::size_t k = 0; k < given.size(); ++k) {
        entry.colours[k] = addColour(*given[k]);
        entry.alphas[k] = clampedToUnit(given[k]->alpha);
    }
    entry.shininess = clampedToUnit(material.shininess);
    entry.alpha = clampedToUnit(material.alpha);
    if (hasPicture) {
        const std::uint32_t picture =
            pictureStore.add(material.pictureFormat, material.pictureWidth, material.pictureHeight,
                             {material.pictureData, material.pictureSize});
        entry.texture = Texture{picture, material.pictureReplace, material.pictureRepeat};
    }
    materials.push_back(entry);
    return size() - 1;
}

std::uint32_t MaterialTable::addColour(const PRCcolor& colour)
{
    const Rgb rgb = {clampedToUnit(colour.red), clampedToUnit(colour.green), clampedToUnit(colour.blue)};
    const auto [position, isNew] = numberByColour.try_emplace(rgb, static_cast<std::uint32_t>(colours.size()));
    if (isNew)
        colours.push_back(rgb);
    return position->second;
}

std::uint32_t MaterialTable::textureCount() const
{
    return static_cast<std::uint32_t>(
        std::ranges::count_if(materials, [](const Material& material) { return material.texture.has_value(); }));
}

void MaterialTable::write(SectionWriter& section, IdentifierCounter& identifiers)
{
    if (materials.empty())
        add(visibleDefault());
    section.writeEmptySchema();
    section.writeEntityType(EntityType::FileStructureGlobals);
    section.writeContentBase(std::nullopt);
    section.writeUnsignedInteger(0); // other file structures referred to
    section.writeDouble(chordHeightRatio);
    section.writeDouble(tessellationAngleInDegrees);
    section.writeString(std::nullopt); // default font
    section.writeUnsignedInteger(0);   // fonts
    writeColours(section);
    writePictures(section);
    writeTextureDefinitions(section, identifiers);
    writeMaterials(section, identifiers);
    section.writeUnsignedInteger(0); // line patterns
    writeStyles(section, identifiers);
    section.writeUnsignedInteger(0); // fill patterns
    section.writeUnsignedInteger(0); // coordinate systems
    section.writeNoUserData();
}

void MaterialTable::writeColours(SectionWriter& section) const
{
    section.writeUnsignedInteger(static_cast<std::uint32_t>(colours.size()));
    for (const Rgb& colour : colours)
        section.writeVector(colour[0], colour[1], colour[2]);
}

void MaterialTable::writePictures(SectionWriter& section) const
{
    const std::vector<Picture>& pictures = pictureStore.pictures();
    section.writeUnsignedInteger(static_cast<std::uint32_t>(pictures.size()));
    for (std::uint32_t number = 0; number < pictures.size(); ++number) {
        section.writeEntityType(EntityType::Picture);
        section.writeContentBase(std::nullopt);
        section.writeUnsignedInteger(pngFormat);
        section.writeIndexPlusOne(number); // of the uncompressed files
        section.writeUnsignedInteger(pictures[number].width);
        section.writeUnsignedInteger(pictures[number].height);
    }
}

void MaterialTable::writeTextureDefinitions(SectionWriter& section, IdentifierCounter& identifiers) const
{
    section.writeUnsignedInteger(textureCount());
    for (const Material& material : materials) {
        if (!material.texture)
            continue;
        const auto function = material.texture->replace ? TextureFunction::Replace : TextureFunction::Modulate;
        const auto wrapping = material.texture->repeat ? TextureWrapping::Repeat : TextureWrapping::ClampToBorder;
        section.writeEntityType(EntityType::TextureDefinition);
        section.writeReferenceBase(std::nullopt, identifiers);
        section.writeIndexPlusOne(material.texture->picture);
        section.writeCharacter(twoDimensional);
        section.writeInteger(storedCoordinates);
        section.writeUnsignedInteger(diffuseMap);
        section.writeUnsignedInteger(0); // intensities
        section.writeUnsignedInteger(0); // components
        section.writeInteger(static_cast<std::int32_t>(function));
        section.writeInteger(0); // blend source of the colours
        section.writeInteger(0); // blend source of alpha
        section.writeCharacter(lightingMode);
        section.writeInteger(static_cast<std::int32_t>(wrapping)); // along s
        section.writeInteger(static_cast<std::int32_t>(wrapping)); // along t
        section.writeBoolean(false);                               // no texture transformation
    }
}

void MaterialTable::writeMaterials(SectionWriter& section, IdentifierCounter& identifiers) const
{
    section.writeUnsignedInteger(size() + textureCount());
    std::uint32_t position = 0;
    std::uint32_t textureDefinition = 0;
    for (const Material& material : materials) {
        section.writeEntityType(EntityType::Material);
        section.writeReferenceBase(std::nullopt, identifiers);
        for (const std::uint32_t colour : material.colours)
            section.writeUnsignedInteger(colourIndexPlusOne(colour));
        section.writeDouble(material.shininess);
        section.writeDoubles(material.alphas);
        const std::uint32_t plainMaterial = position++;
        if (!material.texture)
            continue;
        section.writeEntityType(EntityType::TextureApplication);
        section.writeReferenceBase(std::nullopt, identifiers);
        section.writeIndexPlusOne(plainMaterial);
        section.writeIndexPlusOne(textureDefinition++);
        section.writeIndexPlusOne(nullIndex); // no further texture
        section.writeIndexPlusOne(0);         // the first set of texture coordinates
        ++position;
    }
}

void MaterialTable::writeStyles(SectionWriter& section, IdentifierCounter& identifiers) const
{
    section.writeUnsignedInteger(size());
    std::uint32_t position = 0;
    for (const Material& material : materials) {
        // The texture application stands behind its material and is what a textured style names.
        const std::uint32_t applied = material.texture ? position + 1 : position;
        position = applied + 1;
        const bool transparent = material.alpha < 1.0;
        section.writeEntityType(EntityType::Style);
        section.writeReferenceBase(std::nullopt, identifiers);
        section.writeDouble(0.0);             // line width
        section.writeBoolean(false);          // no picture as line pattern
        section.writeIndexPlusOne(nullIndex); // no line pattern
        section.writeBoolean(true);           // a material, not a colour
        section.writeIndexPlusOne(applied);
        section.writeBoolean(transparent);
        if (transparent)
            section.writeCharacter(static_cast<std::uint8_t>(std::lround(material.alpha * 255.0)));
        section.writeBits(0, 3); // additional values
    }
}

} // namespace prc
