#pragma once

#include "platform/core/COrvelBasicGeneralMaterial.h"
#include "tool/import/ImportedScene.h"
#include "tool/import/TextureFiles.h"

#include <cstddef>
#include <map>
#include <memory>
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
    /// @param ownCount how many materials Own will be asked for.
    void MakeRoom(std::size_t ownCount);

    /// The one material that stands for all uses of `index`.
    COrvelMaterial* Shared(Index index);

    /// Another material that looks like `index` and has its name.
    COrvelMaterial* Own(Index index);

    /// For each material of the scene the document's materials that stand for it, in the order in which they were made.
    [[nodiscard]] const std::vector<std::vector<COrvelMaterial*>>& Made() const { return made; }

    /// How many different materials were asked for.
    [[nodiscard]] std::size_t Used() const { return looks.size(); }

private:
    const COrvelBasicGeneralMaterial& LooksOf(Index index);
    void GiveLooks(COrvelBasicGeneralMaterial& target, const ImportedMaterial& source);

    COrvelDocument& document;
    const ImportedScene& scene;
    TextureFiles& textures;
    std::map<Index, std::unique_ptr<COrvelBasicGeneralMaterial>> looks;
    std::vector<COrvelMaterial*> shared; ///< null: not made yet
    std::vector<std::vector<COrvelMaterial*>> made;
};

} // namespace Orvel::Import
