#include "tool/player/DrivenMaterials.h"

#include <algorithm>
#include <cmath>

namespace Orvel::Player
{

namespace
{

constexpr double LookSteps = 255.0;

std::int32_t StepOf(double channel)
{
    return static_cast<std::int32_t>(std::lround(std::clamp(channel, 0.0, 1.0) * LookSteps));
}

std::uint32_t StyleOf(int number)
{
    return static_cast<std::uint32_t>(number - 1);
}

} // namespace

DrivenMaterials::DrivenMaterials(const std::set<int>& changed, const prc::Model::Globals& inGlobals,
                                 const FileTree& inTree)
    : globals(inGlobals)
    , tree(inTree)
{
    std::set<int> shown;
    for (const FileNode& node : tree.nodes)
        if (changed.contains(node.material))
            shown.insert(node.material);
    for (const int number : shown) {
        positions.emplace(number, looks.size());
        looks.push_back(LookOf(number));
    }
}

std::optional<std::size_t> DrivenMaterials::PositionOf(int number) const
{
    const auto found = positions.find(number);
    return found == positions.end() ? std::nullopt : std::optional(found->second);
}

Look DrivenMaterials::LookOf(int number) const
{
    const prc::Model::Appearance appearance = prc::Model::appearanceOf(globals, StyleOf(number));
    Look look{};
    look.back() = StepOf(appearance.alpha);
    if (!appearance.material)
        return look;
    auto channel = look.begin();
    for (const std::uint32_t colour : {appearance.material->ambient, appearance.material->diffuse,
                                       appearance.material->emissive, appearance.material->specular})
    {
        const prc::Model::Colour black{};
        for (const double value : colour == prc::nullIndex ? black : globals.colours[colour])
            *channel++ = StepOf(value);
    }
    return look;
}

bool DrivenMaterials::PicturesDiffer(int number, int other) const
{
    const auto pictureOf = [this](int material) {
        const prc::Model::TextureDefinition* const texture =
            prc::Model::appearanceOf(globals, StyleOf(material)).texture;
        return texture ? texture->picture : prc::nullIndex;
    };
    return pictureOf(number) != pictureOf(other);
}

std::size_t DrivenMaterials::AddLook(const Look& look)
{
    const auto [found, isNew] = addedLooks.try_emplace(look, looks.size());
    if (isNew)
        looks.push_back(look);
    return found->second;
}

nlohmann::ordered_json DrivenMaterials::Uses(NodeList& nodes) const
{
    std::vector<std::vector<int>> uses(positions.size());
    for (std::size_t i = 0; i < tree.nodes.size();) {
        const FileNode& node = tree.nodes[i];
        if (const auto position = PositionOf(node.material))
            uses[*position].push_back(nodes.Add(i));
        // The highest node below which all meshes agree stands for all of them.
        i = node.material == DifferentMaterials ? i + 1 : static_cast<std::size_t>(node.end);
    }
    return uses;
}

} // namespace Orvel::Player
