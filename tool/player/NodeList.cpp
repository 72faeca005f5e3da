#include "tool/player/NodeList.h"

namespace Orvel::Player
{

int NodeList::Add(std::size_t position)
{
    std::vector<std::size_t> missing;
    for (std::size_t step = position; numbers[step] == Unlisted;
         step = static_cast<std::size_t>(tree.nodes[step].parent)) {
        missing.push_back(step);
        if (tree.nodes[step].parent < 0)
            break;
    }
    for (; !missing.empty(); missing.pop_back()) {
        numbers[missing.back()] = static_cast<int>(listed.size());
        listed.push_back(missing.back());
    }
    return numbers[position];
}

nlohmann::ordered_json NodeList::Data() const
{
    std::vector<int> parents;
    std::vector<int> places;
    std::vector<std::string> names;
    for (const std::size_t position : listed) {
        const FileNode& node = tree.nodes[position];
        parents.push_back(node.parent < 0 ? -1 : numbers[static_cast<std::size_t>(node.parent)]);
        places.push_back(node.place);
        names.push_back(node.name);
    }
    return {{"parent", parents}, {"place", places}, {"name", names}};
}

} // namespace Orvel::Player
