#pragma once

#include "platform/core/COrvelObject.h"
#include "platform/core/COrvelString.h"
#include "platform/core/Export.h"

namespace Orvel
{

/// An object with a name and a table of properties that a user interface can show and change.
///
/// Its virtual functions follow those of COrvelObject, in this order.
class ORVEL_CORE_API COrvelDataMembersManager : public COrvelObject
{
public:
    /// Index that asks DataMemberSearch for the number of members.
    static constexpr int countCommand = -1;

    /// The number of the type that a member has in a property table.
    enum enumDataMemberType : int
    {
        eDataMemberType_Text = 1,
        eDataMemberType_Vector = 8,
        eDataMemberType_Double = 16,
        eDataMemberType_Bool = 32,
        eDataMemberType_Int = 64
    };

    /// The stored name itself: changing it renames the object.
    virtual COrvelString& Name();
    const COrvelString& Name() const { return storedName; }
    virtual void SetName(COrvelString newName);
    /// The display name, or the name when none is set.
    virtual COrvelString DisplayName();
    virtual void SetDisplayName(COrvelString newDisplayName);

    /// Property table. The base publishes one member, the text "Name".
    ///
    /// @param index which member, from 0; countCommand stores the number of members in `type` instead.
    /// @param type  out: the member's enumDataMemberType.
    /// @param name  out: the member's label.
    /// @param apply true in a second call, made after a new value was written through the address: the object then
    ///              brings itself in line with that value.
    /// @return address of the member, valid as long as the object; null for countCommand and for an unknown index,
    ///         which leaves `type` and `name` alone.
    virtual void* DataMemberSearch(int index, int& type, COrvelString& name, bool apply);
    /// A new value for a member of the given type; the base has none to offer and answers null.
    virtual void* CreateValue(int type, const COrvelString& name);

    /// Name, then display name.
    bool ReadFromArchive(COrvelArchiveBase& archive) override;
    bool WriteIntoArchive(COrvelArchiveBase& archive) override;

private:
    COrvelString storedName;
    COrvelString storedDisplayName;
};

} // namespace Orvel
