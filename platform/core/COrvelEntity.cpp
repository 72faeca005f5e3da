#include "platform/core/COrvelEntity.h"

#include "platform/core/COrvelDocument.h"
#include "platform/core/COrvelDocumentsContainer.h"
#include "platform/core/EntityRegistry.h"

namespace Orvel
{

COrvelEntity::COrvelEntity(int type)
    : id(type, EntityRegistry::Instance().NextNumber())
    , ownership(*this)
{
    guid.Generate();
}

// What the body throws leaves through the destructor: the object is complete once the other constructor is done.
COrvelEntity::COrvelEntity(COrvelDocument* document, int type)
    : COrvelEntity(type)
{
    EntityRegistry::Instance().Enter(*this);
    COrvelDocument* const owner =
        document ? document : COrvelDocumentsContainer::DocumentsContainer()->TheTempDocument();
    ownership.Set(owner->entities);
    IncrementReferenceCount();
}

COrvelEntity::~COrvelEntity()
{
    EntityRegistry::Instance().Leave(*this);
}

void COrvelEntity::SetGuid(const COrvelUUID& newGuid)
{
    EntityRegistry::Instance().ChangeGuid(*this, guid, newGuid);
    guid = newGuid;
}

COrvelEntity* COrvelEntity::GetEntityByGuid(const COrvelUUID& guid)
{
    return EntityRegistry::Instance().Find(guid);
}

COrvelEntity* COrvelID::Entity() const
{
    return EntityRegistry::Instance().Find(*this);
}

COrvelDocument* COrvelID::Document() const
{
    const COrvelEntity* const entity = Entity();
    return entity ? entity->Document() : nullptr;
}

} // namespace Orvel
