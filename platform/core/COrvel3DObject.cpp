#include "platform/core/COrvel3DObject.h"

#include "platform/core/COrvelDocument.h"
#include "platform/core/COrvelDocumentsContainer.h"
#include "platform/core/COrvelGeometry.h"
#include "platform/core/COrvelMaterial.h"
#include "platform/core/COrvelMorphingTable.h"
#include "platform/core/COrvelTextureCoordinatesTable.h"

#include <string>
#include <utility>

namespace Orvel
{

COrvel3DObject::COrvel3DObject(COrvelDocument* document, COrvelString name)
    : COrvelSceneNode(document, eEntityType_3DObject, std::move(name))
    , geometry(*this)
    , textureCoordinates(*this)
    , material(*this)
{}

COrvel3DObject::~COrvel3DObject() = default;

COrvel3DObject* COrvel3DObject::Create(COrvelDocument* document, COrvelString name, COrvelGeometry* geometry,
                                       COrvelMaterial* material)
{
    COrvel3DObject* const object = new COrvel3DObject(document, std::move(name));
    object->SetGeometry(geometry);
    object->SetMaterial(material);
    return object;
}

void COrvel3DObject::SetGeometry(COrvelGeometry* newGeometry)
{
    if (newGeometry)
        geometry.Set(newGeometry->objectsUsingThis);
    else
        geometry.Reset();
}

void COrvel3DObject::SetTextureCoordinatesTable(COrvelTextureCoordinatesTable* table)
{
    if (table)
        textureCoordinates.Set(table->objectsUsingThis);
    else
        textureCoordinates.Reset();
}

COrvelString COrvel3DObject::GeometyDefinitionID() const
{
    // The number rather than the GUID, which can be set to anything.
    return Geometry() ? COrvelString(std::to_string(Geometry()->ID().Number())) : COrvelString();
}

void COrvel3DObject::ListInstances(std::vector<COrvel3DObject*>& objects, bool includeThis, bool includeDeleted,
                                   bool includeHidden)
{
    const auto wanted = [=, this](const COrvel3DObject* object) {
        return (includeThis || object != this) && (includeDeleted || !object->IsDeleted()) &&
               (includeHidden || !object->IsHidden());
    };

    objects.clear();
    if (!Geometry()) {
        if (wanted(this))
            objects.push_back(this);
        return;
    }
    for (COrvel3DObject* const object : Geometry()->ObjectsReferencingThisGeometry())
        if (wanted(object))
            objects.push_back(object);
}

COrvelMaterial* COrvel3DObject::Material() const
{
    if (COrvelMaterial* const own = material.Get())
        return own;
    COrvelDocument* const document = Document();
    return (document ? document : COrvelDocumentsContainer::DocumentsContainer()->TheTempDocument())->DefaultMaterial();
}

void COrvel3DObject::SetMaterial(COrvelMaterial* newMaterial)
{
    if (newMaterial)
        material.Set(newMaterial->objectsUsingThis);
    else
        material.Reset();
}

bool COrvel3DObject::HasMorphingGeometry() const
{
    return morphingTable && !morphingTable->IsEmpty();
}

COrvelMorphingTable* COrvel3DObject::CreateMorphingTable()
{
    if (!morphingTable)
        morphingTable = std::make_unique<COrvelMorphingTable>();
    return morphingTable.get();
}

} // namespace Orvel
