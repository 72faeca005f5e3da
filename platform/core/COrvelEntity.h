#pragma once

#include "platform/core/COrvelDataMembersManager.h"
#include "platform/core/COrvelID.h"
#include "platform/core/COrvelUUID.h"
#include "platform/core/COrvelUsers.h"
#include "platform/core/EntityTypes.h"
#include "platform/core/Export.h"

namespace Orvel
{

class COrvelDocument;

/// Something that a document owns and that the whole process can find by its id or GUID.
///
/// Each concrete class has a static Create(document). The document holds one reference on each of its entities and
/// drops it when it is destroyed; `delete` and COrvelDocument::Destroy end an entity earlier. An entity that a
/// COrvelPtr keeps alive beyond its document has no document and no links to entities that are gone.
class ORVEL_CORE_API COrvelEntity : public COrvelDataMembersManager
{
public:
    COrvelEntity(const COrvelEntity&) = delete;
    COrvelEntity& operator=(const COrvelEntity&) = delete;
    ~COrvelEntity() override;

    /// Unique in the process and never given again.
    const COrvelID& ID() const { return id; }
    /// Null once the document is gone.
    COrvelDocument* Document() const { return ownership.Get(); }

    /// A deleted entity stays in memory, in every list that it stands in and under its id; those who list it decide.
    bool IsDeleted() const { return deleted; }
    void SetDeleted(bool newDeleted) { deleted = newDeleted; }
    /// True for the material and the camera that a document makes for itself.
    bool IsDefault() const { return isDefault; }

    /// Valid and unique unless SetGuid took that away.
    COrvelUUID GetGuid() const { return guid; }
    /// Names the entity anew; the old GUID finds nothing any more. An invalid one makes the entity unfindable by GUID.
    void SetGuid(const COrvelUUID& newGuid);
    /// @return the live entity with that GUID; null for an unknown or invalid one.
    static COrvelEntity* GetEntityByGuid(const COrvelUUID& guid);

protected:
    /// @param document takes ownership; null stands for the documents container's temporary document.
    /// @param type     one bit of enumEntityType.
    COrvelEntity(COrvelDocument* document, int type);

private:
    friend class COrvelDocument;

    explicit COrvelEntity(int type);

    COrvelID id;
    COrvelUUID guid;
    COrvelUse<COrvelEntity, COrvelDocument> ownership;
    bool deleted = false;
    bool isDefault = false;
};

} // namespace Orvel
