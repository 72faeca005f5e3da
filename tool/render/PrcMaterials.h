#pragma once

#include "platform/prcfile/PRCModel.h"
#include "platform/prcfile/PRCScene.h"
#include "tool/render/RenderScene.h"

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace Orvel::Render
{

/// Makes materials and textures of a PRC model's styles, each once.
class PrcMaterials
{
public:
    /// @param sourceModel and builtScene, to which materials and textures are added: not owned.
    PrcMaterials(const prc::Model::PRCModel& sourceModel, RenderScene& builtScene)
        : model(sourceModel)
        , scene(builtScene)
    {}

    /// @return index into the scene's materials: for no style, or one that says nothing, a light grey one.
    [[nodiscard]] std::uint32_t For(const prc::Model::StyleReference& style);

    /// What could not be taken over.
    [[nodiscard]] const std::vector<std::string>& Notes() const { return notes; }

private:
    using Key = std::pair<std::uint32_t, std::uint32_t>; ///< structure, number in it

    [[nodiscard]] Material Make(const prc::Model::StyleReference& style);
    [[nodiscard]] std::uint32_t TextureFor(std::uint32_t structure, std::uint32_t picture);

    const prc::Model::PRCModel& model;
    RenderScene& scene;
    std::map<Key, std::uint32_t> materialByStyle;
    std::map<Key, std::uint32_t> textureByPicture;
    std::vector<std::string> notes;
};

} // namespace Orvel::Render
