#include "tool/script/ScriptedNodes.h"

#include "animation/COrvelKeyFrameDataTransformRoundTable.h"
#include "animation/COrvelKeyFrameManager.h"
#include "platform/core/COrvelDocument.h"
#include "platform/core/COrvelSceneNode.h"
#include "platform/core/COrvelTransform.h"

namespace Orvel::Script
{

namespace
{

/// Whether a path from the root ends with the names of `place`, which slashes part. Names may hold slashes themselves.
bool PathEndsWith(COrvelSceneNode* node, std::string_view place)
{
    for (; node; node = node->Parent()) {
        const std::string name = node->Name().toStdString();
        if (place == name)
            return true;
        if (!place.ends_with(name) || place.size() <= name.size() || place[place.size() - name.size() - 1] != '/')
            return false;
        place.remove_suffix(name.size() + 1);
    }
    return false;
}

COrvelTransform& TransformOf(COrvelSceneNode& node)
{
    if (!node.LocalTransform())
        node.SetLocalTransform(COrvelTransform::Create(node.Document(), COrvelMatrix()));
    return *node.LocalTransform();
}

} // namespace

NodeLookUp::NodeLookUp(const COrvelDocument& document)
{
    std::vector<COrvelSceneNode*> roots;
    document.ListRootSceneNodes(roots);
    for (COrvelSceneNode* root : roots)
        Enter(root);
}

void NodeLookUp::Enter(COrvelSceneNode* node)
{
    nodes.emplace(node->Name().toStdString(), node);
    std::vector<COrvelSceneNode*> children;
    node->Children(children, true);
    for (COrvelSceneNode* child : children)
        Enter(child);
}

COrvelSceneNode& NodeLookUp::Find(const std::string& place) const
{
    // A name that holds slashes is found as a whole, any other by what follows the last one.
    const std::size_t slash = place.rfind('/');
    auto range = nodes.equal_range(place);
    if (range.first == range.second && slash != std::string::npos)
        range = nodes.equal_range(place.substr(slash + 1));
    COrvelSceneNode* found = nullptr;
    for (auto entry = range.first; entry != range.second; ++entry) {
        if (!PathEndsWith(entry->second, place))
            continue;
        if (found)
            throw Import::ImportError("the scene script names the node " + Import::Quoted(place) +
                                      ", but there are several: name its parents too, as in 'parent/node'");
        found = entry->second;
    }
    if (!found)
        throw Import::ImportError("the scene script names the node " + Import::Quoted(place) +
                                  ", which does not exist");
    return *found;
}

void ApplyVisibility(const std::vector<NodeVisibility>& visibility, const NodeLookUp& nodes)
{
    for (const NodeVisibility& entry : visibility) {
        COrvelSceneNode& node = nodes.Find(entry.node);
        if (entry.visible)
            node.UnHide();
        else
            node.Hide();
    }
}

void AddTurns(const std::vector<TurningNode>& turns, const NodeLookUp& nodes, COrvelKeyFrameManager& timeline)
{
    for (const TurningNode& turn : turns) {
        const COrvelTransform& transform = TransformOf(nodes.Find(turn.node));
        const COrvelMatrix rest = transform.Matrix();
        const COrvel3DVertex origin(rest.M(0, 3), rest.M(1, 3), rest.M(2, 3));
        const auto [steadyFrom, steadyTo] = turn.constantSpeed.value_or(std::pair(turn.from, turn.to));
        COrvelPtr<COrvelKeyFrameData> data(COrvelKeyFrameDataTransformRoundTable::CreateRoundTableKeyFrameData(
            transform.ID(), rest, COrvelMatrix(), turn.from, turn.to, turn.angleInDegrees, turn.point.value_or(origin),
            turn.direction, steadyFrom, steadyTo, 0, 0));
        timeline.AddKeyFrameData(data, true);
    }
}

} // namespace Orvel::Script
