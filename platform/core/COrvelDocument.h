#pragma once

#include "platform/core/COrvelID.h"
#include "platform/core/COrvelUsers.h"
#include "platform/core/Export.h"

#include <cstddef>
#include <memory>
#include <vector>

namespace Orvel
{

class COrvelCamera;
class COrvelEntity;
class COrvelMaterial;
class COrvelMaterialStore;
class COrvelSceneNode;

/// A scene: its root nodes, its active camera, and every entity that was created in it.
///
/// @code
/// COrvelDocument document;
/// COrvelSceneNode* group = COrvelSceneNode::Create(&document, "wheels");
/// COrvel3DObject* wheel = COrvel3DObject::Create(&document, "front left");
/// wheel->SetGeometry(COrvelGeometry::Create(&document, positions, triangles));
/// group->AddChild(wheel);
/// document.AddRootNode(group);
/// @endcode
class ORVEL_CORE_API COrvelDocument
{
public:
    COrvelDocument();
    COrvelDocument(const COrvelDocument&) = delete;
    COrvelDocument& operator=(const COrvelDocument&) = delete;
    /// Gives up every entity: those that nobody else holds are destroyed, in creation order.
    ~COrvelDocument();

    /// Replaces `nodes` with the root nodes, deleted ones included, in the order in which they were added.
    void ListRootSceneNodes(std::vector<COrvelSceneNode*>& nodes) const;
    /// Makes `node` a root, taking it from its parent or from another document's roots.
    ///
    /// @return false for null. A node that is a root of this document already keeps its place.
    bool AddRootNode(COrvelSceneNode* node);
    /// @return false when `node` is no root of this document. The node stays alive.
    bool RemoveRootNode(COrvelSceneNode* node);

    /// Null when none is set or when it was destroyed.
    COrvelCamera* ActiveCamera() const;
    /// @param camera not owned; null for none.
    void SetActiveCamera(COrvelCamera* camera);

    /// What an object without a material of its own shows; made on first use, never null.
    COrvelMaterial* DefaultMaterial();
    /// Made on first use, never null; no root and not the active camera by itself.
    COrvelCamera* DefaultCamera();

    /// Replaces `cameras` with every camera of the document, in creation order.
    void ListCameras(std::vector<COrvelCamera*>& cameras) const;
    /// Replaces `materials` with every material of the document, in creation order.
    void ListMaterials(std::vector<COrvelMaterial*>& materials) const;
    /// Every entity of the document, in creation order.
    const COrvelUsers<COrvelEntity, COrvelDocument>& Entities() const { return entities; }

    /// Makes room for `count` more materials whose addresses rise in creation order: maps with materials as keys then
    /// list them in that order. To be called before the first of them is created.
    void ReserveMaterials(std::size_t count);

    /// Drops the document's reference on `entity`, which destroys it unless somebody else holds one.
    ///
    /// @return false when `entity` is null or belongs to another document.
    bool Destroy(COrvelEntity* entity);

private:
    friend class COrvelEntity;
    friend class COrvelMaterial;

    std::unique_ptr<COrvelMaterialStore> materialStore;
    COrvelUsers<COrvelEntity, COrvelDocument> entities;
    COrvelUsers<COrvelSceneNode, COrvelDocument> rootNodes;
    COrvelID activeCamera;
    COrvelID defaultMaterial;
    COrvelID defaultCamera;
};

} // namespace Orvel
