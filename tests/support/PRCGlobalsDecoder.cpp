#include "tests/support/PRCDecoderSections.h"

#include <algorithm>
#include <set>

namespace Orvel::Test
{
namespace
{

using Reader = PRCSectionReader;

void DecodeColours(Reader& reader, PRCContent& content)
{
    const size_t count = reader.Count(6);
    std::set<Vector3> known;
    for (size_t i = 0; i < count; ++i) {
        Vector3 colour{};
        for (double& component : colour)
            component = reader.ZeroToOne("colour component");
        reader.Require(known.insert(colour).second || !reader.IsOwnWriter(), "colour stored twice");
        content.colours.push_back(colour);
    }
}

void DecodePictures(Reader& reader, PRCContent& content)
{
    const size_t count = reader.Count(20);
    for (size_t i = 0; i < count; ++i) {
        Picture picture;
        reader.Expect(EntityType::PictureEntity);
        picture.name = reader.Base();
        picture.format = reader.UnsignedInteger();
        picture.file = static_cast<uint32_t>(reader.Index(content.storedFiles.size(), "uncompressed file"));
        picture.width = reader.UnsignedInteger();
        picture.height = reader.UnsignedInteger();
        try {
            const bool isOwn = reader.IsOwnWriter();
            DecodePicture(content.storedFiles[picture.file], isOwn ? Strictness::OwnWriter : Strictness::Format,
                          picture);
        } catch (const std::runtime_error& error) {
            reader.Fail("picture " + std::to_string(i) + ": " + error.what());
        }
        content.pictures.push_back(std::move(picture));
    }
}

/// Equal pixels must not be stored twice, and what is stored must be used.
void CheckStoredFiles(const Reader& reader, const PRCContent& content)
{
    std::set<std::vector<uint8_t>> known;
    for (const std::vector<uint8_t>& file : content.storedFiles)
        reader.Require(known.insert(file).second, "two stored files are equal");
    std::set<uint32_t> used;
    for (const Picture& picture : content.pictures)
        used.insert(picture.file);
    reader.Require(used.size() == content.storedFiles.size(), "a stored file belongs to no picture");
}

TextureDefinition DecodeTextureDefinition(Reader& reader, const PRCContent& content)
{
    TextureDefinition texture;
    reader.Expect(EntityType::TextureDefinitionEntity);
    texture.name = reader.ReferencedBase();
    texture.picture = reader.Index(content.pictures.size(), "picture");
    reader.ExpectCharacter(2, "texture dimension");
    reader.ExpectInteger(1, "texture mapping type");
    reader.ExpectUnsigned(1, "texture mapping attributes");
    reader.ExpectUnsigned(0, "attribute intensity count");
    reader.ExpectUnsigned(0, "attribute component count");
    texture.function = reader.Integer();
    reader.Require(texture.function == 1 || texture.function == 2, "texture function is neither modulate nor replace");
    reader.ExpectInteger(0, "blend source RGB");
    reader.ExpectInteger(0, "blend source alpha");
    texture.applicationMode = reader.Character();
    reader.Require(texture.applicationMode <= 1, "texture application mode is neither 0 nor lighting");
    texture.wrapS = reader.Integer();
    texture.wrapT = reader.Integer();
    const auto isWrapping = [](int32_t mode) { return mode == 1 || mode == 2; };
    reader.Require(isWrapping(texture.wrapS) && isWrapping(texture.wrapT),
                   "texture wrapping is neither repeat nor clamp");
    reader.ExpectBit(false, "texture transformation");
    return texture;
}

/// A colour index counts doubles: colour k stands as 3 k + 1.
const Vector3& DecodeColourIndex(Reader& reader, const PRCContent& content)
{
    const size_t stored = reader.UnsignedInteger();
    reader.Require(stored % 3 == 1 && stored / 3 < content.colours.size(), "colour index is not 3 k + 1 of a colour");
    return content.colours[stored / 3];
}

Material DecodeMaterial(Reader& reader, const PRCContent& content)
{
    Material material;
    material.name = reader.ReferencedBase();
    for (Vector3* colour : {&material.ambient, &material.diffuse, &material.emissive, &material.specular})
        *colour = DecodeColourIndex(reader, content);
    material.shininess = reader.ZeroToOne("shininess");
    for (double* alpha :
         {&material.ambientAlpha, &material.diffuseAlpha, &material.emissiveAlpha, &material.specularAlpha})
        *alpha = reader.ZeroToOne("alpha");
    return material;
}

TextureApplication DecodeTextureApplication(Reader& reader, const PRCContent& content)
{
    TextureApplication application;
    application.name = reader.ReferencedBase();
    // Only entries that were read before: the material stands in front of its texture application.
    application.material = reader.Index(content.materials.size(), "material of a texture application");
    reader.Require(std::holds_alternative<Material>(content.materials[application.material]),
                   "texture application refers to a texture application");
    application.textureDefinition = reader.Index(content.textureDefinitions.size(), "texture definition");
    reader.ExpectUnsigned(0, "next texture application index + 1");
    reader.ExpectUnsigned(1, "texture coordinate set + 1");
    return application;
}

void DecodeMaterials(Reader& reader, PRCContent& content)
{
    const size_t count = reader.Count(25);
    for (size_t i = 0; i < count; ++i) {
        const uint32_t type = reader.UnsignedInteger();
        if (type == static_cast<uint32_t>(EntityType::MaterialEntity))
            content.materials.emplace_back(DecodeMaterial(reader, content));
        else if (type == static_cast<uint32_t>(EntityType::TextureApplicationEntity))
            content.materials.emplace_back(DecodeTextureApplication(reader, content));
        else
            reader.Fail("entity " + std::to_string(type) + " in the material table");
    }
}

Style DecodeStyle(Reader& reader, const PRCContent& content)
{
    Style style;
    reader.Expect(EntityType::StyleEntity);
    style.name = reader.ReferencedBase();
    reader.ExpectDouble(0, "line width");
    reader.ExpectBit(false, "vector picture");
    reader.ExpectUnsigned(0, "line pattern index + 1");
    reader.ExpectBit(true, "style is a material");
    style.material = reader.Index(content.materials.size(), "material of a style");
    if (reader.Bit())
        style.transparency = reader.Character();
    for (const char* field : {"additional 1", "additional 2", "additional 3"})
        reader.ExpectBit(false, field);
    return style;
}

} // namespace

void DecodeGlobals(PRCSectionReader& reader, PRCContent& content)
{
    reader.ExpectUnsigned(0, "schema count");
    reader.Expect(EntityType::Globals);
    reader.ExpectUnnamedBase();
    reader.ExpectUnsigned(0, "referenced file structures");
    content.chordHeightRatio = reader.Double();
    content.tessellationAngleInDegrees = reader.Double();
    reader.Require(content.chordHeightRatio > 0, "chord height ratio is not positive");
    reader.Require(content.tessellationAngleInDegrees > 0, "tessellation angle is not positive");
    reader.Require(!reader.String(), "default font name is not null");
    reader.ExpectUnsigned(0, "font count");
    DecodeColours(reader, content);
    DecodePictures(reader, content);
    if (reader.IsOwnWriter())
        CheckStoredFiles(reader, content);
    const size_t textureCount = reader.Count(60);
    for (size_t i = 0; i < textureCount; ++i)
        content.textureDefinitions.push_back(DecodeTextureDefinition(reader, content));
    DecodeMaterials(reader, content);
    reader.ExpectUnsigned(0, "line pattern count");
    const size_t styleCount = reader.Count(30);
    for (size_t i = 0; i < styleCount; ++i)
        content.styles.push_back(DecodeStyle(reader, content));
    reader.ExpectUnsigned(0, "fill pattern count");
    reader.ExpectUnsigned(0, "coordinate system count");
    reader.ExpectNoUserData();
    reader.Finish();
}

} // namespace Orvel::Test
