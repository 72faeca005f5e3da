#pragma once

#include "animation/Export.h"
#include "platform/core/COrvelString.h"
#include "platform/core/COrvelUUID.h"

#include <set>
#include <utility>

namespace Orvel
{

class COrvelArchiveBase;
class COrvelSequence;

/// Sequences that are shown together, by id.
class ORVEL_ANIMATION_API COrvelSequenceGroup final
{
public:
    /// A group with an invalid id and without a place in lists.
    COrvelSequenceGroup() = default;

    const COrvelUUID& ID() const { return id; }
    void SetID(const COrvelUUID& newID) { id = newID; }
    const COrvelString& Name() const { return name; }
    void SetName(COrvelString newName) { name = std::move(newName); }
    /// -1 for none.
    int OrderIndex() const { return orderIndex; }
    void SetOrderIndex(int index) { orderIndex = index; }
    /// Ids of the sequences.
    const std::set<COrvelUUID>& Members() const { return members; }
    /// A temporary group is not saved.
    bool IsTemporary() const { return temporary; }
    void SetTemporary(bool newTemporary) { temporary = newTemporary; }

    /// Null, and a sequence that is in the group already, are ignored. The sequence itself does not change.
    void AddSequence(const COrvelSequence* sequence);
    /// Null, and a sequence that is not in the group, are ignored.
    void RemoveSequence(const COrvelSequence* sequence);
    void RemoveAllSequences() { members.clear(); }

    /// Everything but the temporary mark; nothing in archives older than groups.
    bool ArchiveReadWrite(COrvelArchiveBase& archive);

private:
    COrvelUUID id;
    COrvelString name;
    int orderIndex = -1;
    std::set<COrvelUUID> members;
    bool temporary = false;
};

} // namespace Orvel
