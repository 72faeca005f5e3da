#pragma once

#include "platform/core/Export.h"

#include <cstddef>
#include <vector>

namespace Orvel
{

class COrvelSceneNode;

/// The nodes from a root down to a node, **root first**, so that the product of their matrices in path order is a world
/// matrix. A value; the nodes are not owned, and entries may be null.
class ORVEL_CORE_API COrvelNodePath
{
public:
    using const_iterator = std::vector<COrvelSceneNode*>::const_iterator;

    COrvelNodePath() = default;
    /// @param rootFirst root, ..., lowest node.
    explicit COrvelNodePath(std::vector<COrvelSceneNode*> rootFirst);

    const_iterator begin() const { return nodes.begin(); }
    const_iterator end() const { return nodes.end(); }
    std::size_t Count() const { return nodes.size(); }
    bool IsEmpty() const { return nodes.empty(); }
    /// @param index 0 for the root, below Count().
    COrvelSceneNode* At(std::size_t index) const { return nodes[index]; }
    /// The lower end, furthest from the root; null for an empty path.
    COrvelSceneNode* SceneNode() const { return nodes.empty() ? nullptr : nodes.back(); }

    /// Adds a node below the lower end.
    void Append(COrvelSceneNode* node) { nodes.push_back(node); }
    bool operator==(const COrvelNodePath&) const = default;

private:
    std::vector<COrvelSceneNode*> nodes;
};

} // namespace Orvel
