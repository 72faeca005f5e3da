#pragma once

#include "tool/import/DocumentBuilder.h"
#include "tool/script/SceneScript.h"

#include <map>
#include <string>
#include <vector>

namespace Orvel
{
class COrvelKeyFrameManager;
class COrvelSceneNode;
} // namespace Orvel

namespace Orvel::Script
{

/// The nodes of a document by name.
class NodeLookUp
{
public:
    explicit NodeLookUp(const COrvelDocument& document);

    /// @param place a node's name, or the end of its path: "parent/node".
    /// @throws Import::ImportError when no node has it, or several.
    [[nodiscard]] COrvelSceneNode& Find(const std::string& place) const;

private:
    void Enter(COrvelSceneNode* node);

    std::multimap<std::string, COrvelSceneNode*> nodes;
};

/// Hides or shows nodes, each with everything below it that hides with it.
void ApplyVisibility(const std::vector<NodeVisibility>& visibility, const NodeLookUp& nodes);

/// Stores the turns of nodes in the timeline.
void AddTurns(const std::vector<TurningNode>& turns, const NodeLookUp& nodes, COrvelKeyFrameManager& timeline);

} // namespace Orvel::Script
