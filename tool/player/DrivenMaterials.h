#pragma once

#include "platform/prcfile/PRCGlobals.h"
#include "tool/player/FileTree.h"
#include "tool/player/NodeList.h"

#include <nlohmann/json.hpp>

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <vector>

namespace Orvel::Player
{

/// What a player sets of a material: ambient, diffuse, emissive and specular colour and the opacity, 0 to 255. Exports
/// give all materials the same shininess.
inline constexpr std::size_t LookWidth = 13;
using Look = std::array<std::int32_t, LookWidth>;

/// The materials that a player changes: which meshes show them, and their looks.
class DrivenMaterials
{
public:
    /// @param changed   material numbers; those that no mesh shows are left out.
    /// @param inGlobals, inTree of the exported file; not owned; must outlive this object.
    DrivenMaterials(const std::set<int>& changed, const prc::Model::Globals& inGlobals, const FileTree& inTree);

    /// The position of a material in the data; nothing for one that is not among them.
    [[nodiscard]] std::optional<std::size_t> PositionOf(int number) const;

    /// The look of any material of the file.
    [[nodiscard]] Look LookOf(int number) const;

    /// Whether two materials of the file show different pictures.
    [[nodiscard]] bool PicturesDiffer(int number, int other) const;

    /// Position of a look in the data.
    std::size_t AddLook(const Look& look);

    /// For each material the nodes all of whose meshes show it, in the terms of `nodes`.
    [[nodiscard]] nlohmann::ordered_json Uses(NodeList& nodes) const;

    /// First the looks of the materials at rest, then those that were added.
    [[nodiscard]] nlohmann::ordered_json Looks() const { return looks; }

private:
    const prc::Model::Globals& globals;
    const FileTree& tree;
    std::map<int, std::size_t> positions; ///< by material number
    std::vector<Look> looks;
    std::map<Look, std::size_t> addedLooks;
};

} // namespace Orvel::Player
