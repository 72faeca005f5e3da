#include "tool/import/DocumentMaterials.h"

#include "platform/core/COrvelDocument.h"
#include "platform/core/COrvelMaterial.h"
#include "platform/core/COrvelTexture.h"

#include <array>

namespace Orvel::Import
{
namespace
{

/// Light enough to show its shape on a dark ground and on a white page.
constexpr double DefaultGrey = 0.75;
constexpr double DefaultHighlight = 0.1;

void MakeLightGrey(COrvelBasicGeneralMaterial& material)
{
    const COrvelColor grey(DefaultGrey, DefaultGrey, DefaultGrey);
    material.SetAmbientColor(grey);
    material.SetDiffuseColor(grey);
    material.SetSpecularColor({DefaultHighlight, DefaultHighlight, DefaultHighlight});
    material.SetEmissiveColor({0.0, 0.0, 0.0});
}

COrvelColor OpaqueColor(const std::array<double, 3>& channels)
{
    return {channels[0], channels[1], channels[2]};
}

} // namespace

void GiveColours(COrvelBasicGeneralMaterial& target, const ImportedMaterial& source)
{
    target.SetAmbientColor(OpaqueColor(source.ambient));
    // Viewers differ in which of the two they follow: the alpha of the diffuse colour or the opacity.
    target.SetDiffuseColor({source.diffuse[0], source.diffuse[1], source.diffuse[2], source.opacity});
    target.SetSpecularColor(OpaqueColor(source.specular));
    target.SetEmissiveColor(OpaqueColor(source.emissive));
    target.SetOpacity(source.opacity);
}

DocumentMaterials::DocumentMaterials(COrvelDocument& theDocument, const ImportedScene& theScene,
                                     TextureFiles& theTextures)
    : document(theDocument)
    , scene(theScene)
    , textures(theTextures)
    , made(theScene.materials.size())
    , variants(theScene.variants.size())
{}

void DocumentMaterials::MakeRoom(std::size_t count)
{
    document.ReserveMaterials(1 + count);
    COrvelBasicGeneralMaterial looksOfDefault;
    MakeLightGrey(looksOfDefault);
    document.DefaultMaterial()->LoadBasicMaterial(&looksOfDefault, false);
}

COrvelMaterial* DocumentMaterials::Shared(Index index, Index row)
{
    if (index == None && row == None) {
        LooksOf(index);
        return document.DefaultMaterial();
    }
    COrvelMaterial*& material = shared[{index, row}];
    if (!material)
        material = Own(index, row);
    return material;
}

COrvelMaterial* DocumentMaterials::Own(Index index, Index row)
{
    COrvelMaterial* const material = COrvelMaterial::Create(&document, LooksOf(index));
    if (index != None)
        made[static_cast<std::size_t>(index)].push_back(material);
    if (row == None)
        return material;
    const std::vector<Index>& replacements = scene.variantMaterials[static_cast<std::size_t>(row)];
    for (std::size_t i = 0; i < replacements.size(); ++i)
        if (replacements[i] != None)
            variants[i].materialReplacements.emplace(material, &LooksOf(replacements[i]));
    return material;
}

std::vector<std::unique_ptr<COrvelBasicMaterial>> DocumentMaterials::TakeLooks()
{
    std::vector<std::unique_ptr<COrvelBasicMaterial>> taken;
    for (auto& [index, material] : looks)
        taken.push_back(std::move(material));
    return taken;
}

COrvelBasicGeneralMaterial& DocumentMaterials::LooksOf(Index index)
{
    std::unique_ptr<COrvelBasicGeneralMaterial>& entry = looks[index];
    if (entry)
        return *entry;
    entry.reset(COrvelBasicGeneralMaterial::Create());
    if (index == None) {
        MakeLightGrey(*entry);
        entry->SetName(document.DefaultMaterial()->Name());
    } else {
        GiveLooks(*entry, scene.materials[static_cast<std::size_t>(index)]);
    }
    return *entry;
}

void DocumentMaterials::GiveLooks(COrvelBasicGeneralMaterial& target, const ImportedMaterial& source)
{
    target.SetName(COrvelString(source.name));
    GiveColours(target, source);
    if (source.image == None)
        return;
    // Also a picture that cannot be used: the exporter then marks the material as textured and keeps the texture
    // coordinates of its meshes.
    const ImportedImage& image = scene.images[static_cast<std::size_t>(source.image)];
    target.SetTexture(textureTypeDiffuse,
                      COrvelTexture(COrvelString(textures.FileFor(image, source.image, source.imageAlphaCounts))));
}

} // namespace Orvel::Import
