#include "tool/import/GltfMaterials.h"

#include "tool/import/FileEnding.h"
#include "tool/import/MaterialConversion.h"

#include <algorithm>
#include <cctype>
#include <initializer_list>
#include <string>
#include <utility>

namespace Orvel::Import
{

namespace
{

using Extensions = tinygltf::ExtensionMap;
using tinygltf::Value;

const Value* Extension(const Extensions& extensions, const char* name)
{
    const auto found = extensions.find(name);
    return found == extensions.end() || !found->second.IsObject() ? nullptr : &found->second;
}

double Number(const Value& object, const char* member, double fallback)
{
    const Value& value = object.Get(member);
    return value.IsNumber() ? value.GetNumberAsDouble() : fallback;
}

/// The list's length was checked with the shape of the document.
Colour Triple(const Value& object, const char* member)
{
    Colour colour{1.0, 1.0, 1.0};
    const Value& list = object.Get(member);
    for (std::size_t i = 0; list.IsArray() && i < std::min(colour.size(), list.ArrayLen()); ++i)
        colour[i] = list.Get(static_cast<int>(i)).GetNumberAsDouble();
    return colour;
}

int Integer(const Value& object, const char* member, int fallback)
{
    const Value& value = object.Get(member);
    return value.IsInt() ? value.GetNumberAsInt() : fallback;
}

/// A place where a material names the picture that is shown.
struct PictureUse
{
    int texture = -1;
    int coordinateSet = 0;
    const Value* transform = nullptr;
};

const Value* SpecularGlossinessOf(const tinygltf::Material& material)
{
    return Extension(material.extensions, "KHR_materials_pbrSpecularGlossiness");
}

PictureUse PictureOf(const tinygltf::Material& material)
{
    PictureUse use;
    if (const Value* classic = SpecularGlossinessOf(material)) {
        const Value& texture = classic->Get("diffuseTexture");
        if (!texture.IsObject())
            return use;
        use.texture = Integer(texture, "index", -1);
        use.coordinateSet = Integer(texture, "texCoord", 0);
        if (const Value& extensions = texture.Get("extensions"); extensions.Has("KHR_texture_transform"))
            use.transform = &extensions.Get("KHR_texture_transform");
    } else {
        const tinygltf::TextureInfo& texture = material.pbrMetallicRoughness.baseColorTexture;
        use.texture = texture.index;
        use.coordinateSet = texture.texCoord;
        use.transform = Extension(texture.extensions, "KHR_texture_transform");
    }
    if (use.transform != nullptr && use.transform->IsObject())
        use.coordinateSet = Integer(*use.transform, "texCoord", use.coordinateSet);
    return use;
}

bool ChangesCoordinates(const Value& transform)
{
    if (!transform.IsObject())
        return false;
    const auto differs = [&](const char* member, double neutral) {
        const Value& list = transform.Get(member);
        bool found = false;
        for (std::size_t i = 0; i < list.ArrayLen(); ++i)
            found = found || list.Get(static_cast<int>(i)).GetNumberAsDouble() != neutral;
        return found;
    };
    return differs("offset", 0.0) || differs("scale", 1.0) || Number(transform, "rotation", 0.0) != 0.0;
}

/// Opacity as the alpha mode wants it, and whether the picture's alpha takes part in it.
double ApplyAlphaMode(const tinygltf::Material& source, double alpha, ImportedMaterial& material)
{
    material.imageAlphaCounts = false;
    if (source.alphaMode == "BLEND") {
        material.imageAlphaCounts = true;
        return alpha;
    }
    if (source.alphaMode == "MASK") {
        // With the factor below the cutoff no picture can lift a point above it.
        material.imageAlphaCounts = true;
        return alpha >= source.alphaCutoff ? 1.0 : 0.0;
    }
    return 1.0;
}

double Transmission(const tinygltf::Material& material)
{
    const Value* extension = Extension(material.extensions, "KHR_materials_transmission");
    if (extension == nullptr)
        return 0.0;
    const double unread = extension->Has("transmissionTexture") ? UnreadTextureMean : 1.0;
    return Number(*extension, "transmissionFactor", 0.0) * unread;
}

MetallicRoughness PhysicalValues(const tinygltf::Material& material)
{
    const tinygltf::PbrMetallicRoughness& pbr = material.pbrMetallicRoughness;
    const double unread = pbr.metallicRoughnessTexture.index >= 0 ? UnreadTextureMean : 1.0;
    MetallicRoughness values;
    values.baseColour = {pbr.baseColorFactor[0], pbr.baseColorFactor[1], pbr.baseColorFactor[2]};
    values.metallic = pbr.metallicFactor * unread;
    values.roughness = pbr.roughnessFactor * unread;
    if (const Value* ior = Extension(material.extensions, "KHR_materials_ior"))
        values.indexOfRefraction = Number(*ior, "ior", values.indexOfRefraction);
    if (const Value* specular = Extension(material.extensions, "KHR_materials_specular")) {
        values.specular = Number(*specular, "specularFactor", 1.0);
        values.specularColour = Triple(*specular, "specularColorFactor");
    }
    values.transmission = Transmission(material);
    return values;
}

void ConvertPhysical(const tinygltf::Material& source, ImportedMaterial& material)
{
    MetallicRoughness values = PhysicalValues(source);
    values.opacity = ApplyAlphaMode(source, source.pbrMetallicRoughness.baseColorFactor[3], material);
    ConvertMetallicRoughness(values, material);
}

void ConvertGlossy(const tinygltf::Material& source, const Value& extension, ImportedMaterial& material)
{
    const Value& diffuse = extension.Get("diffuseFactor");
    const double alpha = diffuse.ArrayLen() == 4 ? diffuse.Get(3).GetNumberAsDouble() : 1.0;
    const double unread = extension.Has("specularGlossinessTexture") ? UnreadTextureMean : 1.0;
    SpecularGlossiness values;
    values.diffuse = Triple(extension, "diffuseFactor");
    values.specular = Triple(extension, "specularFactor");
    for (double& channel : values.specular)
        channel *= unread;
    values.glossiness = Number(extension, "glossinessFactor", 1.0) * unread;
    values.opacity = ApplyAlphaMode(source, alpha, material);
    ConvertSpecularGlossiness(values, material);
}

Colour OwnLight(const tinygltf::Material& source)
{
    // Most of an emissive texture is black as a rule: its factor alone would make the whole part shine.
    if (source.emissiveTexture.index >= 0)
        return {};
    const Value* strength = Extension(source.extensions, "KHR_materials_emissive_strength");
    return EmissiveColour({source.emissiveFactor[0], source.emissiveFactor[1], source.emissiveFactor[2]},
                          strength == nullptr ? 1.0 : Number(*strength, "emissiveStrength", 1.0));
}

/// KTX 2, Basis and AVIF: made for graphics cards and browsers, unknown to the program's picture reader.
bool CannotBeShown(const GltfDocument::Image& image)
{
    const std::string type = LowerCase(image.mimeType);
    if (type == "image/ktx2" || type == "image/avif" || type == "image/basis")
        return true;
    const std::string uri = LowerCase(image.uri.substr(0, image.uri.starts_with("data:") ? 64 : image.uri.size()));
    return uri.starts_with("data:image/ktx2") || uri.starts_with("data:image/avif") || uri.ends_with(".ktx2") ||
           uri.ends_with(".basis") || uri.ends_with(".avif");
}

/// The picture behind a texture, of several the one that is most widely readable; -1 when there is none.
int SourceOf(const tinygltf::Texture& texture)
{
    if (texture.source >= 0)
        return texture.source;
    for (const char* name : {"EXT_texture_webp", "MSFT_texture_dds", "KHR_texture_basisu"})
        if (const Value* extension = Extension(texture.extensions, name))
            return Integer(*extension, "source", -1);
    return -1;
}

std::string FileNamePart(const std::string& path)
{
    const std::size_t slash = path.find_last_of("/\\");
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

} // namespace

void ConvertLooks(const tinygltf::Material& source, ImportedMaterial& material)
{
    if (const Value* extension = SpecularGlossinessOf(source))
        ConvertGlossy(source, *extension, material);
    else
        ConvertPhysical(source, material);
    material.emissive = OwnLight(source);
    if (source.extensions.contains("KHR_materials_unlit"))
        MakeUnlit(material);
}

GltfMaterials::GltfMaterials(const GltfDocument& gltfDocument, GltfBuffers& gltfBuffers,
                             std::filesystem::path baseFolder, ImportedScene& importedScene, ImportReport& importReport)
    : document(gltfDocument)
    , buffers(gltfBuffers)
    , folder(std::move(baseFolder))
    , scene(importedScene)
    , report(importReport)
    , converted(document.model.materials.size(), None)
    , convertedImages(document.images.size(), None)
{}

Index GltfMaterials::Convert(int material)
{
    if (material < 0)
        return None;
    const auto position = static_cast<std::size_t>(material);
    if (converted.at(position) == None) {
        ImportedMaterial made = Make(document.model.materials[position]);
        converted[position] = static_cast<Index>(scene.materials.size());
        scene.materials.push_back(std::move(made));
    }
    return converted[position];
}

bool GltfMaterials::HasPicture(int material) const
{
    return material >= 0 && PictureOf(document.model.materials.at(static_cast<std::size_t>(material))).texture >= 0;
}

int GltfMaterials::CoordinateSet(int material) const
{
    return material < 0 ? 0 : PictureOf(document.model.materials.at(static_cast<std::size_t>(material))).coordinateSet;
}

ImportedMaterial GltfMaterials::Make(const tinygltf::Material& source)
{
    const PictureUse picture = PictureOf(source);
    ImportedMaterial material;
    material.name = source.name;
    material.image = Picture(picture.texture);
    if (material.image != None && picture.transform != nullptr && ChangesCoordinates(*picture.transform))
        report.CountLeftOut("texture transform", "texture transforms");

    ConvertLooks(source, material);
    CountUnreadTextures(source);
    return material;
}

void GltfMaterials::CountUnreadTextures(const tinygltf::Material& source)
{
    const auto count = [&](bool present, const char* one, const char* many) {
        report.CountLeftOut(one, many, present ? 1 : 0);
    };
    count(source.normalTexture.index >= 0, "normal texture", "normal textures");
    count(source.occlusionTexture.index >= 0, "occlusion texture", "occlusion textures");
    count(source.emissiveTexture.index >= 0, "emissive texture", "emissive textures");
    const Value* glossy = SpecularGlossinessOf(source);
    count(glossy == nullptr && source.pbrMetallicRoughness.metallicRoughnessTexture.index >= 0,
          "metallic-roughness texture", "metallic-roughness textures");
    count(glossy != nullptr && glossy->Has("specularGlossinessTexture"), "specular-glossiness texture",
          "specular-glossiness textures");
}

Index GltfMaterials::Picture(int texture)
{
    if (texture < 0)
        return None;
    const tinygltf::Texture& source = document.model.textures.at(static_cast<std::size_t>(texture));
    const int image = SourceOf(source);
    if (image < 0 || CannotBeShown(document.images.at(static_cast<std::size_t>(image)))) {
        report.CountLeftOut("texture in an image format that cannot be shown",
                            "textures in an image format that cannot be shown");
        return None;
    }
    return ConvertImage(image);
}

Index GltfMaterials::ConvertImage(int image)
{
    const auto position = static_cast<std::size_t>(image);
    if (convertedImages.at(position) != None)
        return convertedImages[position];

    const GltfDocument::Image& source = document.images[position];
    ImportedImage picture;
    if (source.bufferView >= 0) {
        const std::span<const std::byte> bytes = buffers.View(source.bufferView);
        picture.encoded.assign(bytes.begin(), bytes.end());
    } else if (IsDataUri(source.uri))
        picture.encoded = DecodeDataUri(source.uri);
    else
        picture.path = FileNameOfUri(source.uri, folder);
    if (picture.encoded.empty() && picture.path.empty()) {
        report.Warn("images[" + std::to_string(image) + "] is empty");
        return None;
    }

    picture.name = source.name.empty() ? FileNamePart(picture.path) : source.name;
    if (picture.name.empty())
        picture.name = "image " + std::to_string(image);
    convertedImages[position] = static_cast<Index>(scene.images.size());
    scene.images.push_back(std::move(picture));
    return convertedImages[position];
}

} // namespace Orvel::Import
