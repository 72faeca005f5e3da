#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

namespace Orvel
{
class COrvelDocument;
class COrvelPRCMapper;
class COrvelSceneNode;
} // namespace Orvel

namespace prc::Model
{
struct PRCModel;
}

namespace Orvel::Player
{

/// Materials are named by their numbers, as in COrvelPRCMapper.
inline constexpr int NoMaterial = -1;         ///< there is no mesh
inline constexpr int DifferentMaterials = -2; ///< several, or a mesh without one

/// A group of an exported file.
struct FileNode
{
    std::string name;                ///< UTF-8
    int parent = -1;                 ///< position in FileTree::nodes; -1 for the root
    int place = 0;                   ///< among the children of its parent, from 0
    int end = 0;                     ///< position behind the last node below this one
    bool hasMeshes = false;          ///< here or below
    int material = NoMaterial;       ///< of all meshes here and below
    std::uint32_t occurrence = 0;    ///< position in the file structure
    COrvelSceneNode* node = nullptr; ///< of the document; null for a root that the file has added
};

/// The groups of an exported file, which node of the document each of them is, and the materials that they show.
struct FileTree
{
    std::vector<FileNode> nodes;                                       ///< depth first, parents before their children
    std::unordered_map<const COrvelSceneNode*, std::size_t> positions; ///< in `nodes`
};

/// @param file written from the document, which is as it was then.
[[nodiscard]] FileTree ReadFileTree(const COrvelDocument& document, const prc::Model::PRCModel& file);

/// Positions in the tree of the nodes that start hidden and have meshes at or below them.
[[nodiscard]] std::vector<std::size_t> HiddenNodes(const FileTree& tree, const COrvelPRCMapper& mapper);

/// Suppresses the groups that start hidden, so that pictures of the model leave them out as a player does.
///
/// @param mapper filled by the export of the document that wrote the file.
void SuppressHiddenGroups(const COrvelDocument& document, const COrvelPRCMapper& mapper, prc::Model::PRCModel& file);

} // namespace Orvel::Player
