#include "tool/player/FileTree.h"

#include "mapping/COrvelPRCMapper.h"
#include "platform/core/COrvel3DObject.h"
#include "platform/core/COrvelDocument.h"
#include "platform/core/COrvelSceneNode.h"
#include "platform/prcfile/PRCModel.h"

#include <algorithm>
#include <map>
#include <utility>

namespace Orvel::Player
{

namespace
{

using prc::Model::FileStructure;
using prc::Model::ProductOccurrence;

bool IsObject(const COrvelSceneNode* node)
{
    return dynamic_cast<const COrvel3DObject*>(node) != nullptr;
}

/// The children of a node as an export writes them: objects first, and nothing below objects.
std::vector<COrvelSceneNode*> ExportedChildren(const COrvelSceneNode& node)
{
    std::vector<COrvelSceneNode*> children;
    if (IsObject(&node))
        return children;
    node.Children(children, false);
    std::stable_partition(children.begin(), children.end(), IsObject);
    return children;
}

std::vector<COrvelSceneNode*> ExportedRoots(const COrvelDocument& document)
{
    std::vector<COrvelSceneNode*> roots;
    document.ListRootSceneNodes(roots);
    std::erase_if(roots, [](const COrvelSceneNode* root) { return root->IsDeleted(); });
    return roots;
}

int Together(int material, int other)
{
    if (material == NoMaterial || other == NoMaterial)
        return material == NoMaterial ? other : material;
    return material == other ? material : DifferentMaterials;
}

/// The number of the style that the mesh of an item shows: faces have styles of their own before that of the item.
int MaterialOf(const prc::Model::RepresentationItem& item, const FileStructure& structure)
{
    int material = NoMaterial;
    for (const prc::Model::Face& face : structure.tessellations[item.tessellation].faces) {
        const std::uint32_t style = face.styles.empty() ? item.graphics.style : face.styles.front();
        material = Together(material, style == prc::nullIndex ? DifferentMaterials : static_cast<int>(style) + 1);
    }
    return material;
}

/// Walks the file and the document side by side.
class TreeReader
{
public:
    TreeReader(const FileStructure& fileStructure, FileTree& readTree)
        : structure(fileStructure)
        , tree(readTree)
    {}

    void Read(const COrvelDocument& document, std::uint32_t root)
    {
        // A single root of the document is the file's root itself.
        std::vector<COrvelSceneNode*> roots = ExportedRoots(document);
        const bool isOwnRoot = roots.size() == 1;
        Enter(root, isOwnRoot ? roots.front() : nullptr, -1, 0, isOwnRoot ? std::vector<COrvelSceneNode*>() : roots);
        while (!open.empty()) {
            Level& level = open.back();
            const std::vector<std::uint32_t>& children = structure.occurrences[level.occurrence].children;
            if (level.next == children.size()) {
                Leave(level.position);
                open.pop_back();
                continue;
            }
            const std::size_t place = level.next++;
            COrvelSceneNode* const node = place < level.nodes.size() ? level.nodes[place] : nullptr;
            Enter(children[place], node, static_cast<int>(level.position), static_cast<int>(place), {});
        }
    }

private:
    struct Level
    {
        std::uint32_t occurrence = 0;
        std::size_t position = 0;
        std::vector<COrvelSceneNode*> nodes; ///< of the document, one for each child of the occurrence
        std::size_t next = 0;
    };

    void Enter(std::uint32_t occurrence, COrvelSceneNode* node, int parent, int place,
               std::vector<COrvelSceneNode*> children)
    {
        const ProductOccurrence& group = structure.occurrences[occurrence];
        FileNode entry;
        entry.name = group.name.value_or(std::string());
        entry.parent = parent;
        entry.place = place;
        entry.occurrence = occurrence;
        entry.node = node;
        if (group.part != prc::nullIndex)
            AddMeshes(structure.parts[group.part], entry);
        if (node) {
            tree.positions.emplace(node, tree.nodes.size());
            children = ExportedChildren(*node);
        }
        open.push_back({occurrence, tree.nodes.size(), std::move(children), 0});
        tree.nodes.push_back(std::move(entry));
    }

    void AddMeshes(const prc::Model::Part& part, FileNode& entry) const
    {
        for (const prc::Model::RepresentationItem& item : part.items) {
            if (item.tessellation == prc::nullIndex)
                continue;
            entry.hasMeshes = true;
            entry.material = Together(entry.material, MaterialOf(item, structure));
        }
    }

    void Leave(std::size_t position)
    {
        FileNode& left = tree.nodes[position];
        left.end = static_cast<int>(tree.nodes.size());
        if (left.parent < 0)
            return;
        FileNode& parent = tree.nodes[static_cast<std::size_t>(left.parent)];
        parent.hasMeshes = parent.hasMeshes || left.hasMeshes;
        parent.material = Together(parent.material, left.material);
    }

    const FileStructure& structure;
    FileTree& tree;
    std::vector<Level> open;
};

} // namespace

FileTree ReadFileTree(const COrvelDocument& document, const prc::Model::PRCModel& file)
{
    FileTree tree;
    if (file.roots.empty())
        return tree;
    const prc::Model::OccurrenceReference& root = file.roots.front();
    TreeReader(file.structures[root.structure], tree).Read(document, root.occurrence);
    return tree;
}

std::vector<std::size_t> HiddenNodes(const FileTree& tree, const COrvelPRCMapper& mapper)
{
    std::map<int, const COrvelSceneNode*> byNumber;
    for (const auto& [node, number] : mapper.nodeIndices)
        byNumber.emplace(number, node);
    std::vector<std::size_t> hidden;
    for (const int number : mapper.hiddenNodeIndices) {
        const auto found = byNumber.find(number);
        const auto position = found == byNumber.end() ? tree.positions.end() : tree.positions.find(found->second);
        if (position != tree.positions.end() && tree.nodes[position->second].hasMeshes)
            hidden.push_back(position->second);
    }
    return hidden;
}

void SuppressHiddenGroups(const COrvelDocument& document, const COrvelPRCMapper& mapper, prc::Model::PRCModel& file)
{
    if (mapper.hiddenNodeIndices.empty())
        return;
    const FileTree tree = ReadFileTree(document, file);
    for (const std::size_t position : HiddenNodes(tree, mapper)) {
        FileStructure& structure = file.structures[file.roots.front().structure];
        structure.occurrences[tree.nodes[position].occurrence].isSuppressed = true;
    }
}

} // namespace Orvel::Player
