#include "platform/prcfile/GlobalsReader.h"

#include <string>

namespace prc
{

namespace
{

using namespace Model;

void skipFonts(SectionReader& section)
{
    const std::uint32_t fonts = section.readCount(3, 0, "fonts");
    for (std::uint32_t font = 0; font < fonts && section.ok(); ++font) {
        section.readString();
        section.readUnsignedInteger(); // character set
        const std::uint32_t sizes = section.readCount(9, 0, "sizes of a font");
        for (std::uint32_t size = 0; size < sizes && section.ok(); ++size) {
            section.readUnsignedInteger();
            section.readCharacter();
        }
    }
}

void readPicture(SectionReader& section, Picture& picture)
{
    if (!section.expectEntity(EntityType::Picture, "a picture"))
        return;
    picture.name = section.readContentBase();
    picture.format = static_cast<PictureFormat>(section.readUnsignedInteger());
    picture.file = section.readIndexPlusOne();
    picture.width = section.readUnsignedInteger();
    picture.height = section.readUnsignedInteger();
    section.readAddedFields(EntityType::Picture);
}

template <std::size_t Count>
std::array<double, Count> readNumbers(SectionReader& section)
{
    std::array<double, Count> numbers;
    for (double& number : numbers)
        number = section.readDouble();
    return numbers;
}

TextureTransformation readTextureTransformation(SectionReader& section)
{
    enum : unsigned
    {
        Translation = 1,
        Rotation = 2,
        UniformScale = 8,
        NonUniformScale = 16,
        NonOrthogonal = 32,
        Homogeneous = 64
    };
    TextureTransformation result;
    if (!section.expectEntity(EntityType::TextureTransformation, "a texture transformation"))
        return result;
    result.flipS = section.readBoolean();
    result.flipT = section.readBoolean();
    section.readBoolean(); // two-dimensional
    const unsigned behaviour = section.readCharacter();
    if ((behaviour & Translation) != 0)
        result.translation = readNumbers<2>(section);
    if ((behaviour & Rotation) != 0) {
        section.fail("a texture is rotated in a form that is not known");
        return result;
    }
    if ((behaviour & UniformScale) != 0)
        result.scale.fill(section.readDouble());
    if ((behaviour & NonUniformScale) != 0)
        result.scale = readNumbers<2>(section);
    if ((behaviour & NonOrthogonal) != 0)
        result.nonOrthogonal = readNumbers<4>(section);
    if ((behaviour & Homogeneous) != 0)
        result.homogeneous = readNumbers<3>(section);
    section.readAddedFields(EntityType::TextureTransformation);
    return result;
}

void readTextureMapping(SectionReader& section, TextureDefinition& texture)
{
    constexpr std::int32_t mappedByOperator = 3;
    texture.dimension = section.readCharacter();
    texture.mappingType = section.readInteger();
    if (texture.mappingType == mappedByOperator) {
        texture.mappingOperator = section.readInteger();
        if (section.readBoolean())
            texture.mappingTransformation = section.readTransformation();
    }
    texture.mappingAttributes = section.readUnsignedInteger();
    section.readDoubles(texture.intensities, section.readCount(2, sizeof(double), "intensities of a texture"));
    texture.components.resize(section.readCount(8, 1, "components of a texture"));
    for (std::uint8_t& component : texture.components)
        component = section.readCharacter();
}

void readTextureFunction(SectionReader& section, TextureDefinition& texture)
{
    constexpr std::int32_t blend = 3;
    constexpr unsigned alphaTest = 2;
    texture.function = section.readInteger();
    if (texture.function == blend)
        texture.blendColour = readNumbers<4>(section);
    if (section.readInteger() != 0) // source of the blended colour
        section.readInteger();
    if (section.readInteger() != 0) // source of the blended alpha
        section.readInteger();
    texture.applicationMode = section.readCharacter();
    if ((texture.applicationMode & alphaTest) != 0) {
        texture.alphaTest = section.readInteger();
        texture.alphaReference = section.readDouble();
    }
}

void readTextureDefinition(SectionReader& section, TextureDefinition& texture)
{
    if (!section.expectEntity(EntityType::TextureDefinition, "a texture definition"))
        return;
    section.readIdentity(texture);
    texture.picture = section.readIndexPlusOne();
    readTextureMapping(section, texture);
    readTextureFunction(section, texture);
    texture.wrapS = section.readInteger();
    if (texture.dimension > 1)
        texture.wrapT = section.readInteger();
    if (texture.dimension > 2)
        texture.wrapR = section.readInteger();
    if (section.readBoolean())
        texture.transformation = readTextureTransformation(section);
    section.readAddedFields(EntityType::TextureDefinition);
}

Material readMaterial(SectionReader& section)
{
    Material material;
    section.readIdentity(material);
    for (std::uint32_t* const colour : {&material.ambient, &material.diffuse, &material.emissive, &material.specular})
        *colour = section.readIndexPlusOne();
    for (double* const number : {&material.shininess, &material.ambientAlpha, &material.diffuseAlpha,
                                 &material.emissiveAlpha, &material.specularAlpha})
        *number = section.readDouble();
    section.readAddedFields(EntityType::Material);
    return material;
}

TextureApplication readTextureApplication(SectionReader& section)
{
    TextureApplication application;
    section.readIdentity(application);
    application.material = section.readIndexPlusOne();
    application.texture = section.readIndexPlusOne();
    application.next = section.readIndexPlusOne();
    application.coordinateSet = section.readIndexPlusOne();
    section.readAddedFields(EntityType::TextureApplication);
    return application;
}

void readMaterialEntry(SectionReader& section, MaterialEntry& entry)
{
    const std::uint32_t type = section.readEntityType();
    if (type == static_cast<std::uint32_t>(EntityType::Material))
        entry = readMaterial(section);
    else if (type == static_cast<std::uint32_t>(EntityType::TextureApplication))
        entry = readTextureApplication(section);
    else
        section.fail("expected a material (702) or a texture application (711), found " + entityTypeName(type));
}

void readLinePattern(SectionReader& section, LinePattern& pattern)
{
    if (!section.expectEntity(EntityType::LinePattern, "a line pattern"))
        return;
    section.readIdentity(pattern);
    section.readDoubles(pattern.lengths, section.readCount(2, sizeof(double), "lengths of a line pattern"));
    pattern.phase = section.readDouble();
    pattern.realLength = section.readBoolean();
    section.readAddedFields(EntityType::LinePattern);
}

void readStyle(SectionReader& section, Style& style)
{
    if (!section.expectEntity(EntityType::Style, "a style"))
        return;
    section.readIdentity(style);
    style.lineWidth = section.readDouble();
    const bool isVectorPicture = section.readBoolean();
    const std::uint32_t pattern = section.readIndexPlusOne();
    if (!isVectorPicture)
        style.linePattern = pattern;
    const bool isMaterial = section.readBoolean();
    (isMaterial ? style.material : style.colour) = section.readIndexPlusOne();
    if (section.readBoolean())
        style.transparency = section.readCharacter();
    constexpr unsigned additionalBytes = 3;
    for (unsigned number = 0; number < additionalBytes; ++number) {
        if (section.readBoolean())
            section.readCharacter();
    }
    section.readAddedFields(EntityType::Style);
}

void skipFillPattern(SectionReader& section)
{
    const std::uint32_t type = section.readEntityType();
    const auto entity = static_cast<EntityType>(type);
    if (entity != EntityType::DottingPattern && entity != EntityType::HatchingPattern &&
        entity != EntityType::SolidPattern) {
        section.fail("expected a fill pattern (723, 724, 725), found " + entityTypeName(type));
        return;
    }
    section.skipReferenceBase();
    section.readUnsignedInteger(); // next pattern
    if (entity == EntityType::DottingPattern) {
        section.readDouble();
        section.readBoolean();
        section.readUnsignedInteger();
    } else if (entity == EntityType::SolidPattern) {
        section.readBoolean();
        section.readUnsignedInteger();
    } else {
        const std::uint32_t hatches = section.readCount(11, 0, "hatches");
        for (std::uint32_t hatch = 0; hatch < hatches && section.ok(); ++hatch) {
            readNumbers<5>(section);
            section.readUnsignedInteger();
        }
    }
    section.readAddedFields(entity);
}

void readCoordinateSystem(SectionReader& section, CoordinateSystem& system)
{
    if (!section.expectEntity(EntityType::CoordinateSystem, "a coordinate system"))
        return;
    section.readIdentity(system);
    section.readGraphics();
    section.readUnsignedInteger(); // a coordinate system of its own
    section.readUnsignedInteger(); // tessellation
    system.transformation = section.readTransformation();
    section.readAddedFields(EntityType::CoordinateSystem);
    section.skipUserData();
}

} // namespace

void readGlobals(SectionReader& section, Globals& globals)
{
    if (!section.expectEntity(EntityType::FileStructureGlobals, "the globals"))
        return;
    section.readContentBase();
    const std::uint32_t references = section.readCount(4, sizeof(UniqueId), "referenced file structures");
    for (std::uint32_t number = 0; number < references && section.ok(); ++number)
        globals.referencedStructures.push_back(section.readUniqueId());
    globals.chordHeightRatio = section.readDouble();
    globals.tessellationAngleInDegrees = section.readDouble();
    section.readString(); // default font
    skipFonts(section);
    section.readTable(globals.colours, 6, "colours", [&section](Colour& colour) { colour = section.readVector(); });
    section.readTable(globals.pictures, 14, "pictures", [&section](auto& entry) { readPicture(section, entry); });
    section.readTable(globals.textures, 20, "texture definitions",
                      [&section](auto& entry) { readTextureDefinition(section, entry); });
    section.readTable(globals.materials, 20, "materials",
                      [&section](auto& entry) { readMaterialEntry(section, entry); });
    section.readTable(globals.linePatterns, 10, "line patterns",
                      [&section](auto& entry) { readLinePattern(section, entry); });
    section.readTable(globals.styles, 20, "styles", [&section](auto& entry) { readStyle(section, entry); });
    const std::uint32_t patterns = section.readCount(20, 0, "fill patterns");
    for (; globals.fillPatternCount < patterns && section.ok(); ++globals.fillPatternCount)
        skipFillPattern(section);
    section.readTable(globals.coordinateSystems, 20, "coordinate systems",
                      [&section](auto& entry) { readCoordinateSystem(section, entry); });
    section.readAddedFields(EntityType::FileStructureGlobals);
    section.skipUserData();
}

} // namespace prc
