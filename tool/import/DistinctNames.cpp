#include "tool/import/DistinctNames.h"

#include "platform/core/COrvelCamera.h"
#include "platform/core/COrvelDocument.h"
#include "platform/core/COrvelSceneNode.h"

#include <algorithm>
#include <cstddef>
#include <set>
#include <unordered_map>

namespace Orvel::Import
{

std::vector<std::string> DistinctNames(std::vector<std::string> names, const std::string& kind)
{
    for (std::size_t i = 0; i < names.size(); ++i)
        if (names[i].empty())
            names[i] = kind + " " + std::to_string(i + 1);
    std::set<std::string> given(names.begin(), names.end());
    std::unordered_map<std::string, std::size_t> timesSeen;
    for (std::string& name : names) {
        std::size_t& times = timesSeen[name];
        if (++times == 1)
            continue;
        std::string distinct;
        do
            distinct = name + " (" + std::to_string(times) + ")";
        while (!given.insert(distinct).second && ++times > 0);
        name = std::move(distinct);
    }
    return names;
}

void GiveDistinctNodeNames(const COrvelDocument& document)
{
    std::vector<COrvelSceneNode*> nodes;
    std::vector<COrvelSceneNode*> roots;
    document.ListRootSceneNodes(roots);
    for (COrvelSceneNode* const root : roots)
        for (COrvelSceneNode* node = root; node; node = node->NextInSubtree(root))
            nodes.push_back(node);
    // Users choose cameras by name, so that these give way to nobody else.
    std::stable_partition(nodes.begin(), nodes.end(),
                          [](COrvelSceneNode* node) { return dynamic_cast<COrvelCamera*>(node) != nullptr; });
    std::vector<std::string> names;
    names.reserve(nodes.size());
    for (const COrvelSceneNode* const node : nodes)
        names.push_back(node->Name().toStdString());
    const std::vector<std::string> distinct = DistinctNames(names, "Node");
    for (std::size_t i = 0; i < nodes.size(); ++i)
        if (distinct[i] != names[i])
            nodes[i]->SetName(COrvelString(distinct[i]));
}

} // namespace Orvel::Import
