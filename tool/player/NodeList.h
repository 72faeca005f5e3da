#pragma once

#include "tool/player/FileTree.h"

#include <nlohmann/json.hpp>

#include <cstddef>
#include <vector>

namespace Orvel::Player
{

/// The nodes that a player has to find in the scene, each with those above it, by which it is found.
class NodeList
{
public:
    /// @param fileTree not owned; must outlive this object.
    explicit NodeList(const FileTree& fileTree)
        : tree(fileTree)
        , numbers(fileTree.nodes.size(), Unlisted)
    {}

    /// @param position in the tree.
    /// @return the node's position in the list.
    int Add(std::size_t position);

    /// For each node the parent's position in the list (-1 for none), its place among the parent's children, its name.
    [[nodiscard]] nlohmann::ordered_json Data() const;

private:
    static constexpr int Unlisted = -1;

    const FileTree& tree;
    std::vector<int> numbers; ///< for each node of the tree its position in the list
    std::vector<std::size_t> listed;
};

} // namespace Orvel::Player
