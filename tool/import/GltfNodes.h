#pragma once

#include "tool/import/GltfAccessors.h"
#include "tool/import/GltfDocument.h"
#include "tool/import/GltfMeshes.h"
#include "tool/import/ImportReport.h"
#include "tool/import/ImportedScene.h"

#include <set>
#include <string>
#include <vector>

namespace Orvel::Import
{

/// Brings the nodes of the scene that is shown, with their parts and cameras, into an imported scene.
class GltfNodes
{
public:
    /// The arguments are not owned and must outlive the object.
    GltfNodes(const GltfDocument& document, GltfAccessors& accessors, GltfMeshes& meshes, ImportedScene& scene,
              ImportReport& report);

    /// Fills nodes and roots, and what hangs on them. Nodes stand in the order in which a walk from the roots, parents
    /// first, meets them; instances of EXT_mesh_gpu_instancing follow their node.
    ///
    /// @throws ImportError when nodes form no forest, and for faults in what hangs on them.
    void Convert();

    /// The imported node of each node of the file; None for those outside the scene.
    [[nodiscard]] const std::vector<Index>& ImportedNodes() const { return imported; }

private:
    struct Visit
    {
        int node = -1;
        Index parent = None;
    };

    std::vector<int> Roots() const;
    std::vector<int> NodesWithoutParent() const;
    void Enter(const Visit& visit);
    void ConvertNode(int node, ImportedNode& target);
    void ExpandInstances(int node, Index parent);
    Index ConvertCamera(int camera);

    const GltfDocument& document;
    GltfAccessors& accessors;
    GltfMeshes& meshes;
    ImportedScene& scene;
    ImportReport& report;
    std::vector<Index> imported;
    std::vector<Index> cameras;
    std::set<int> skins;
};

} // namespace Orvel::Import
