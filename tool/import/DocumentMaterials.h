#pragma once

#include "platform/core/COrvelBasicGeneralMaterial.h"
#include "platform/core/COrvelBasicSceneState.h"
#include "tool/import/ImportedScene.h"
#include "tool/import/TextureFiles.h"

#include <cstddef>
#include <map>
#include <memory>
#include <utility>
#include <vector>

namespace Orvel
{
class COrvelDocument;
class COrvelMaterial;
} // namespace Orvel

namespace Orvel::Import
{

/// Sets colours and opacity, nothing else.
void GiveColours(COrvelBasicGeneralMaterial& target, const ImportedMaterial& source);

/// Makes the document's materials out of a scene's. Index None stands for the document's default material, a light
/// grey.
class DocumentMaterials
{
public:
    /// @param document, scene, textures not owned; must outlive this object. Textures are asked for when the first
    ///                                  material with them is made.
    DocumentMaterials(COrvelDocument& document, const ImportedScene& scene, TextureFiles& textures);

    /// To be called once before any material is made: later maps list the materials in the order in which they were
    /// made as long as they fit into the room that is made here.
    /// @param count how many materials there will be at most, besides the default one.
    void MakeRoom(std::size_t count);

    /// The one material that stands for all uses of a material that look alike in every variant of the scene.
    /// @param variants row of the scene's table; None: nothing changes.
    COrvelMaterial* Shared(Index index, Index variants);

    /// Another material that looks like `index`, in every variant too, and has its name.
    COrvelMaterial* Own(Index index, Index variants);

    /// For each variant of the scene the materials that it replaces. What replaces them stays in this object's hands
    /// until TakeLooks().
    [[nodiscard]] const std::vector<COrvelBasicSceneState>& Variants() const { return variants; }

    /// Hands over all looks that were made; no material can be asked for any more.
    [[nodiscard]] std::vector<std::unique_ptr<COrvelBasicMaterial>> TakeLooks();

    /// For each material of the scene the document's materials that stand for it, in the order in which they were made.
    [[nodiscard]] const std::vector<std::vector<COrvelMaterial*>>& Made() const { return made; }

    /// How many different materials were asked for.
    [[nodiscard]] std::size_t Used() const { return looks.size(); }

private:
    COrvelBasicGeneralMaterial& LooksOf(Index index);
    void GiveLooks(COrvelBasicGeneralMaterial& target, const ImportedMaterial& source);

    COrvelDocument& document;
    const ImportedScene& scene;
    TextureFiles& textures;
    std::map<Index, std::unique_ptr<COrvelBasicGeneralMaterial>> looks;
    std::map<std::pair<Index, Index>, COrvelMaterial*> shared; ///< by material and row of variants
    std::vector<std::vector<COrvelMaterial*>> made;
    std::vector<COrvelBasicSceneState> variants;
};

} // namespace Orvel::Import
