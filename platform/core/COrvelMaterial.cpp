#include "platform/core/COrvelMaterial.h"

#include "platform/core/COrvel3DObject.h"
#include "platform/core/COrvelBasicGeneralMaterial.h"
#include "platform/core/COrvelDocument.h"
#include "platform/core/COrvelDocumentsContainer.h"
#include "platform/core/COrvelMaterialStore.h"

#include <cassert>
#include <utility>

namespace Orvel
{

namespace
{

COrvelDocument& OwnerFor(COrvelDocument* document)
{
    return document ? *document : *COrvelDocumentsContainer::DocumentsContainer()->TheTempDocument();
}

} // namespace

COrvelMaterial::COrvelMaterial(COrvelDocument* document, std::unique_ptr<COrvelBasicMaterial> looks)
    : COrvelEntity(document, eEntityType_Material)
    , basicMaterial(std::move(looks))
    , objectsUsingThis(*this)
{}

COrvelMaterial::~COrvelMaterial() = default;

COrvelMaterial* COrvelMaterial::Create(COrvelDocument* document, COrvelString name)
{
    COrvelDocument& owner = OwnerFor(document);
    std::unique_ptr<COrvelBasicMaterial> looks(COrvelBasicGeneralMaterial::Create());
    looks->SetName(name);
    COrvelMaterial* const material = new (owner) COrvelMaterial(&owner, std::move(looks));
    material->SetName(std::move(name));
    return material;
}

COrvelMaterial* COrvelMaterial::Create(COrvelDocument* document, const COrvelBasicMaterial& looks)
{
    COrvelDocument& owner = OwnerFor(document);
    std::unique_ptr<COrvelBasicMaterial> copy(looks.Clone());
    COrvelMaterial* const material = new (owner) COrvelMaterial(&owner, std::move(copy));
    material->SetName(looks.Name());
    return material;
}

COrvelBasicGeneralMaterial* COrvelMaterial::ApproximateToOrvelGeneralMaterial() const
{
    return basicMaterial->ApproximateToGeneralMaterial();
}

void COrvelMaterial::LoadBasicMaterial(const COrvelBasicMaterial* looks, bool takeName)
{
    if (!looks)
        return;
    // The looks may be this material's own: they are copied before anything goes.
    basicMaterial.reset(looks->Clone());
    if (takeName)
        SetName(std::as_const(*basicMaterial).Name());
}

void COrvelMaterial::ReplaceWith(COrvelMaterial* other)
{
    if (!other || other == this)
        return;
    std::vector<COrvel3DObject*> objects;
    GetObjectsReferencingThisMaterial(objects);
    for (COrvel3DObject* const object : objects)
        object->SetMaterial(other);
}

void COrvelMaterial::GetObjectsReferencingThisMaterial(std::vector<COrvel3DObject*>& objects) const
{
    objects.assign(objectsUsingThis.begin(), objectsUsingThis.end());
    if (!IsDefault() || !Document())
        return;
    for (COrvelEntity* const entity : Document()->Entities()) {
        if (entity->ID().EntityType() != eEntityType_3DObject)
            continue;
        COrvel3DObject* const object = static_cast<COrvel3DObject*>(entity);
        if (!object->HasOwnMaterial())
            objects.push_back(object);
    }
}

void* COrvelMaterial::operator new([[maybe_unused]] std::size_t size, COrvelDocument& document)
{
    assert(size == sizeof(COrvelMaterial) && "the class is final");
    return document.materialStore->Allocate();
}

void COrvelMaterial::operator delete(void* memory, COrvelDocument&)
{
    COrvelMaterialStore::Free(memory);
}

void COrvelMaterial::operator delete(void* memory)
{
    COrvelMaterialStore::Free(memory);
}

} // namespace Orvel
