#include "platform/core/COrvelDocument.h"

#include "platform/core/COrvelCamera.h"
#include "platform/core/COrvelMaterial.h"
#include "platform/core/COrvelMaterialStore.h"

namespace Orvel
{

namespace
{

/// @tparam Entity the class whose objects, and no others, have ids of the given type.
template <class Entity>
void ListEntitiesOfType(const COrvelUsers<COrvelEntity, COrvelDocument>& entities, int type,
                        std::vector<Entity*>& listed)
{
    listed.clear();
    for (COrvelEntity* const entity : entities)
        if (entity->ID().EntityType() == type)
            listed.push_back(static_cast<Entity*>(entity));
}

} // namespace

COrvelDocument::COrvelDocument()
    : materialStore(std::make_unique<COrvelMaterialStore>())
    , entities(*this)
    , rootNodes(*this)
{}

COrvelDocument::~COrvelDocument()
{
    while (COrvelEntity* const entity = entities.First())
        Destroy(entity);
}

void COrvelDocument::ListRootSceneNodes(std::vector<COrvelSceneNode*>& nodes) const
{
    nodes.assign(rootNodes.begin(), rootNodes.end());
}

bool COrvelDocument::AddRootNode(COrvelSceneNode* node)
{
    if (!node)
        return false;
    node->parent.Reset();
    node->rootOf.Set(rootNodes);
    return true;
}

bool COrvelDocument::RemoveRootNode(COrvelSceneNode* node)
{
    if (!node || node->rootOf.Get() != this)
        return false;
    node->rootOf.Reset();
    return true;
}

COrvelCamera* COrvelDocument::ActiveCamera() const
{
    return static_cast<COrvelCamera*>(activeCamera.Entity());
}

void COrvelDocument::SetActiveCamera(COrvelCamera* camera)
{
    activeCamera = camera ? camera->ID() : COrvelID();
}

COrvelMaterial* COrvelDocument::DefaultMaterial()
{
    if (COrvelEntity* const existing = defaultMaterial.Entity())
        return static_cast<COrvelMaterial*>(existing);
    COrvelMaterial* const material = COrvelMaterial::Create(this, "Default");
    material->isDefault = true;
    defaultMaterial = material->ID();
    return material;
}

COrvelCamera* COrvelDocument::DefaultCamera()
{
    if (COrvelEntity* const existing = defaultCamera.Entity())
        return static_cast<COrvelCamera*>(existing);
    COrvelCamera* const camera = COrvelCamera::Create(this, "Default");
    camera->isDefault = true;
    defaultCamera = camera->ID();
    return camera;
}

void COrvelDocument::ListCameras(std::vector<COrvelCamera*>& cameras) const
{
    ListEntitiesOfType(entities, eEntityType_Camera, cameras);
}

void COrvelDocument::ListMaterials(std::vector<COrvelMaterial*>& materials) const
{
    ListEntitiesOfType(entities, eEntityType_Material, materials);
}

void COrvelDocument::ReserveMaterials(std::size_t count)
{
    materialStore->Reserve(count);
}

bool COrvelDocument::Destroy(COrvelEntity* entity)
{
    if (!entity || entity->Document() != this)
        return false;
    entity->ownership.Reset();
    entity->DecrementReferenceCount();
    return true;
}

} // namespace Orvel
