#include "tool/import/AssimpMaterial.h"

#include "tool/import/AssimpText.h"
#include "tool/import/MaterialConversion.h"

#include <assimp/material.h>

#include <array>
#include <cstring>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <utility>

namespace Orvel::Import
{

namespace
{

// Keys of the Blender loader, which has none of the general ones for transparency.
constexpr const char* BlenderTransparencyIsUsed = "$mat.blend.transparency.use";
constexpr const char* BlenderTransparencyAlpha = "$mat.blend.transparency.alpha";

std::optional<Colour> ColourOf(const aiMaterial& material, const char* key)
{
    aiColor4D colour;
    if (material.Get(key, 0, 0, colour) != aiReturn_SUCCESS)
        return std::nullopt;
    return Colour{static_cast<double>(colour.r), static_cast<double>(colour.g), static_cast<double>(colour.b)};
}

std::optional<double> NumberOf(const aiMaterial& material, const char* key)
{
    ai_real value = 0;
    if (material.Get(key, 0, 0, value) != aiReturn_SUCCESS)
        return std::nullopt;
    return static_cast<double>(value);
}

std::string NameOf(const aiMaterial& material)
{
    aiString name;
    return material.Get(AI_MATKEY_NAME, name) == aiReturn_SUCCESS ? Utf8From(name) : std::string();
}

bool HasColour(const aiMaterial& material, const char* key, float grey)
{
    const double channel = static_cast<double>(grey);
    return ColourOf(material, key) == Colour{channel, channel, channel};
}

bool HasPictures(const aiMaterial& material)
{
    for (int type = aiTextureType_NONE; type <= AI_TEXTURE_TYPE_MAX; ++type)
        if (material.GetTextureCount(static_cast<aiTextureType>(type)) > 0)
            return true;
    return false;
}

/// The look that the loader gives to a name for want of a definition.
bool IsUndefined(const aiMaterial& material, const AssimpLoader& loader)
{
    return loader.greysUndefinedMaterials && HasColour(material, "$clr.diffuse", 0.6F) &&
           HasColour(material, "$clr.ambient", 0.0F) && HasColour(material, "$clr.specular", 0.0F) &&
           HasColour(material, "$clr.emissive", 0.0F) && NumberOf(material, "$mat.opacity") == 1.0 &&
           !HasPictures(material);
}

/// A material that the file knows nothing of: the loaders make up grey ones for meshes without a material.
bool IsMadeUp(const aiMaterial& material, const AssimpLoader& loader)
{
    if (IsUndefined(material, loader))
        return true;
    // Name and colour: what the library adds to a scene without any material.
    constexpr unsigned PropertiesOfAdded = 2;
    const std::string name = NameOf(material);
    const bool mayBeNamed = loader.namesItsMaterials && material.mNumProperties != PropertiesOfAdded;
    if (name.empty() ? !loader.inventsMaterials : name != AI_DEFAULT_MATERIAL_NAME || mayBeNamed)
        return false;
    const auto diffuse = ColourOf(material, "$clr.diffuse");
    const bool grey = !diffuse || ((*diffuse)[0] == (*diffuse)[1] && (*diffuse)[1] == (*diffuse)[2]);
    return grey && material.GetTextureCount(aiTextureType_DIFFUSE) == 0;
}

double OpacityOf(const aiMaterial& material, const AssimpLoader& loader)
{
    int blenderUses = 0;
    if (material.Get(BlenderTransparencyIsUsed, 0, 0, blenderUses) == aiReturn_SUCCESS)
        return blenderUses != 0 ? NumberOf(material, BlenderTransparencyAlpha).value_or(1.0) : 1.0;
    const double opacity = NumberOf(material, "$mat.opacity").value_or(1.0);
    return loader.zeroOpacityIsOpaque && opacity <= 0.0 ? 1.0 : opacity;
}

void ConvertColours(const aiMaterial& source, const AssimpLoader& loader, ImportedMaterial& material)
{
    const double opacity = OpacityOf(source, loader);
    if (const auto base = ColourOf(source, "$clr.base")) {
        MetallicRoughness physical;
        physical.baseColour = *base;
        physical.metallic = NumberOf(source, "$mat.metallicFactor").value_or(0.0);
        physical.roughness = NumberOf(source, "$mat.roughnessFactor").value_or(1.0);
        physical.opacity = opacity;
        ConvertMetallicRoughness(physical, material);
        if (const auto emissive = ColourOf(source, "$clr.emissive"))
            material.emissive = EmissiveColour(*emissive, 1.0);
        return;
    }
    ClassicMaterial classic;
    classic.ambient = ColourOf(source, "$clr.ambient");
    classic.diffuse = ColourOf(source, "$clr.diffuse");
    classic.specular = ColourOf(source, "$clr.specular");
    classic.emissive = ColourOf(source, "$clr.emissive");
    classic.specularStrength = NumberOf(source, "$mat.shinpercent").value_or(1.0);
    classic.opacity = opacity;
    ConvertClassic(classic, material);
}

/// The pictures of one scene: embedded and external ones, each once.
class Pictures
{
public:
    Pictures(const aiScene& scene, ImportedScene& target, ImportReport& remarks)
        : source(scene)
        , imported(target)
        , report(remarks)
    {}

    /// None, with a warning, when the file names an embedded picture that it does not hold.
    Index Find(const std::string& reference);

private:
    Index Add(const std::string& reference);
    static ImportedImage TakeEmbedded(const aiTexture& texture, int number);

    const aiScene& source;
    ImportedScene& imported;
    ImportReport& report;
    std::map<std::string, Index> byReference;
    std::map<int, Index> byEmbedded;
};

Index Pictures::Find(const std::string& reference)
{
    const auto [entry, isNew] = byReference.try_emplace(reference, None);
    if (isNew)
        entry->second = Add(reference);
    return entry->second;
}

Index Pictures::Add(const std::string& reference)
{
    const auto [texture, number] = source.GetEmbeddedTextureAndIndex(reference.c_str());
    if (texture == nullptr) {
        if (reference.starts_with('*')) {
            report.Warn("the embedded picture '" + Utf8From(reference) + "' is missing");
            return None;
        }
        ImportedImage& image = imported.images.emplace_back();
        image.path = Utf8From(reference);
        image.name = image.path;
        return static_cast<Index>(imported.images.size() - 1);
    }
    const auto [entry, isNew] = byEmbedded.try_emplace(number, static_cast<Index>(imported.images.size()));
    if (isNew)
        imported.images.push_back(TakeEmbedded(*texture, number));
    return entry->second;
}

ImportedImage Pictures::TakeEmbedded(const aiTexture& texture, int number)
{
    ImportedImage image;
    image.name = Utf8From(texture.mFilename);
    if (image.name.empty())
        image.name = "embedded picture " + std::to_string(number + 1);
    if (texture.pcData == nullptr)
        return image;
    if (texture.mHeight == 0) { // the bytes of a picture file, mWidth of them
        const auto bytes = std::as_bytes(std::span(reinterpret_cast<const char*>(texture.pcData), texture.mWidth));
        image.encoded.assign(bytes.begin(), bytes.end());
        return image;
    }
    image.width = texture.mWidth;
    image.height = texture.mHeight;
    const std::size_t count = std::size_t{texture.mWidth} * texture.mHeight;
    image.pixels.reserve(4 * count);
    for (const aiTexel& texel : std::span(texture.pcData, count))
        for (const unsigned char channel : {texel.r, texel.g, texel.b, texel.a})
            image.pixels.push_back(std::byte{channel});
    return image;
}

std::optional<std::string> PathOf(const aiMaterial& material, aiTextureType type, const AssimpLoader& loader)
{
    aiString path;
    if (material.Get(AI_MATKEY_TEXTURE(type, 0), path) != aiReturn_SUCCESS || path.length == 0)
        return std::nullopt;
    std::string text(path.C_Str(), path.length);
    // X3D lists several places of one picture, which the loader strings together with quotation marks.
    if (loader.format == "X3D")
        text = text.substr(0, text.find('"'));
    return text;
}

bool IsTransformed(const aiMaterial& material, aiTextureType type)
{
    aiUVTransform transform;
    return material.Get(AI_MATKEY_UVTRANSFORM(type, 0), transform) == aiReturn_SUCCESS &&
           (transform.mTranslation != aiVector2D(0, 0) || transform.mScaling != aiVector2D(1, 1) ||
            transform.mRotation != 0);
}

/// Says whether the picture's own transparency is meant: the same picture is the opacity map, or a flag says so.
bool AlphaCounts(const aiMaterial& material, aiTextureType type, const std::string& path, const AssimpLoader& loader)
{
    int flags = 0;
    if (material.Get(AI_MATKEY_TEXFLAGS(type, 0), flags) == aiReturn_SUCCESS) {
        if ((flags & aiTextureFlags_IgnoreAlpha) != 0)
            return false;
        if ((flags & aiTextureFlags_UseAlpha) != 0)
            return true;
    }
    return PathOf(material, aiTextureType_OPACITY, loader) == path;
}

struct PictureKind
{
    aiTextureType type;
    const char* one;
    const char* many;
};

/// Pictures that change the look and have no place in the exported format.
constexpr auto OtherPictures =
    std::to_array<PictureKind>({{aiTextureType_SPECULAR, "specular map", "specular maps"},
                                {aiTextureType_AMBIENT, "ambient map", "ambient maps"},
                                {aiTextureType_EMISSIVE, "emissive map", "emissive maps"},
                                {aiTextureType_HEIGHT, "bump map", "bump maps"},
                                {aiTextureType_NORMALS, "normal map", "normal maps"},
                                {aiTextureType_DISPLACEMENT, "displacement map", "displacement maps"},
                                {aiTextureType_REFLECTION, "reflection map", "reflection maps"},
                                {aiTextureType_LIGHTMAP, "light map", "light maps"},
                                {aiTextureType_METALNESS, "metalness map", "metalness maps"},
                                {aiTextureType_DIFFUSE_ROUGHNESS, "roughness map", "roughness maps"}});

void CountLeftOutPictures(const aiMaterial& source, const ImportedMaterial& material, aiTextureType type,
                          ImportReport& report)
{
    for (const PictureKind& kind : OtherPictures)
        report.CountLeftOut(kind.one, kind.many, source.GetTextureCount(kind.type));
    if (!material.imageAlphaCounts)
        report.CountLeftOut("opacity map", "opacity maps", source.GetTextureCount(aiTextureType_OPACITY));
    const unsigned layers = source.GetTextureCount(type);
    report.CountLeftOut("further texture layer", "further texture layers", layers > 1 ? layers - 1 : 0);
    if (material.image != None && IsTransformed(source, type))
        report.CountLeftOut("texture transform", "texture transforms");
}

/// Finds the material's picture. @return the texture coordinates that go with it.
TextureCoordinateSet TakePicture(const aiMaterial& source, const AssimpLoader& loader, Pictures& pictures,
                                 ImportedMaterial& material, ImportReport& report)
{
    const aiTextureType type =
        source.GetTextureCount(aiTextureType_DIFFUSE) > 0 ? aiTextureType_DIFFUSE : aiTextureType_BASE_COLOR;
    const auto path = PathOf(source, type, loader);
    TextureCoordinateSet set = None;
    if (path) {
        int mapping = aiTextureMapping_UV;
        source.Get(AI_MATKEY_MAPPING(type, 0), mapping);
        int channel = 0;
        source.Get(AI_MATKEY_UVWSRC(type, 0), channel);
        // The X3D loader says "other" of ordinary coordinates.
        if (mapping == aiTextureMapping_UV || loader.format == "X3D") {
            material.image = pictures.Find(*path);
            material.imageAlphaCounts = AlphaCounts(source, type, *path, loader);
            set = channel >= 0 && channel < AI_MAX_NUMBER_OF_TEXTURECOORDS ? channel : 0;
        } else {
            report.CountLeftOut("picture without texture coordinates (projected)",
                                "pictures without texture coordinates (projected)");
        }
    }
    CountLeftOutPictures(source, material, type, report);
    return material.image != None ? set : None;
}

} // namespace

std::vector<TakenMaterial> TakeMaterials(aiScene& scene, const AssimpLoader& loader, ImportedScene& imported,
                                         ImportReport& report)
{
    std::vector<TakenMaterial> taken(scene.mNumMaterials);
    Pictures pictures(scene, imported, report);
    for (unsigned k = 0; k < scene.mNumMaterials; ++k) {
        const aiMaterial& source = *scene.mMaterials[k];
        if (IsMadeUp(source, loader))
            continue;
        ImportedMaterial material;
        material.name = NameOf(source);
        taken[k].set = TakePicture(source, loader, pictures, material, report);
        ConvertColours(source, loader, material);
        taken[k].material = static_cast<Index>(imported.materials.size());
        imported.materials.push_back(std::move(material));
    }
    return taken;
}

} // namespace Orvel::Import
