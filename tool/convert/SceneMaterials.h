#pragma once

#include "platform/prcfile/PRCModel.h"
#include "platform/prcfile/PRCScene.h"
#include "tool/convert/MeshScene.h"
#include "tool/import/ImportReport.h"

#include <cstdint>
#include <map>
#include <utility>

namespace Orvel::Convert
{

/// Makes the materials and pictures of a scene, each once and only those that are asked for.
class SceneMaterials
{
public:
    /// All not owned; they must outlive the object.
    SceneMaterials(const prc::Model::PRCModel& readModel, MeshScene& target, Import::ImportReport& importReport)
        : model(readModel)
        , scene(target)
        , report(importReport)
    {}

    /// @return position in MeshScene::materials, the same for equal materials; None for a style that says nothing.
    [[nodiscard]] std::uint32_t MaterialOf(const prc::Model::StyleReference& style);

private:
    using Key = std::pair<std::uint32_t, std::uint32_t>;

    [[nodiscard]] Material Make(const prc::Model::StyleReference& style, const prc::Model::Appearance& appearance);
    void AddTexture(Material& material, std::uint32_t structure, const prc::Model::TextureDefinition& texture);
    [[nodiscard]] std::uint32_t PictureOf(std::uint32_t structure, std::uint32_t picture);

    const prc::Model::PRCModel& model;
    MeshScene& scene;
    Import::ImportReport& report;
    std::map<Key, std::uint32_t> materials;   ///< by structure and style
    std::map<Material, std::uint32_t> equals; ///< files hold the same material again and again
    std::map<Key, std::uint32_t> pictures;    ///< by structure and picture
};

} // namespace Orvel::Convert
