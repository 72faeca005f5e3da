#pragma once

#include "animation/COrvelSequenceGroup.h"
#include "animation/Export.h"
#include "platform/core/COrvelString.h"
#include "platform/core/COrvelUUID.h"

#include <map>
#include <memory>
#include <utility>
#include <vector>

namespace Orvel
{

class COrvelArchiveBase;
class COrvelSequence;

/// All sequences of the process, and the groups in which they are shown. It owns the groups, not the sequences.
///
/// The order of the virtual functions is relied on.
class ORVEL_ANIMATION_API COrvelSequenceContainer
{
public:
    /// The one container: made on first use, never destroyed, never null.
    static COrvelSequenceContainer* Instance();

    COrvelSequenceContainer(const COrvelSequenceContainer&) = delete;
    COrvelSequenceContainer& operator=(const COrvelSequenceContainer&) = delete;

    // --- archive

    /// Adds the sequences and groups of an archive, in place of those with the same ids. The sequences have reference
    /// count 0 and are whoever's takes them from ListSequences.
    ///
    /// @return false when something could not be read; what was read before stays.
    virtual bool ReadFromArchive(COrvelArchiveBase& archive);
    /// Sequences and groups that are not temporary, the group "Default" and which group is selected.
    virtual bool WriteIntoArchive(COrvelArchiveBase& archive);

    // --- sequences

    /// Replaces `sequences`: those with an order index by that index (equal ones by id), then the others in an order
    /// that is the same for one run.
    ///
    /// @param skipTemporary true leaves out temporary sequences.
    /// @param onlyMarked    true leaves out sequences that are not marked.
    void ListSequences(std::vector<COrvelSequence*>& sequences, bool skipTemporary, bool onlyMarked) const;
    /// Enters a sequence under its id, in place of another one that has it. It must leave before it dies or changes its
    /// id. Null and a sequence without a valid id are ignored.
    void AddSequence(COrvelSequence* sequence);
    /// Null, and a sequence that is not here, are ignored.
    void RemoveSequence(COrvelSequence* sequence);
    /// Null when there is none.
    COrvelSequence* FindSequence(const COrvelUUID& id) const;

    // --- groups

    /// The group that receives new sequences, "Default" at first.
    COrvelSequenceGroup* CurrentGroup() const { return currentGroup.get(); }
    /// Null when there is none.
    COrvelSequenceGroup* FindGroup(const COrvelUUID& id) const;
    /// A new group "Group 1", "Group 2", ..., owned by the container, behind the others in lists.
    COrvelSequenceGroup* CreateGroup();
    /// The groups beside the current one.
    const std::map<COrvelUUID, std::unique_ptr<COrvelSequenceGroup>>& Groups() const { return groups; }

    /// The group that the user works in, a choice that archives keep; "Default" until SelectGroup names another one.
    COrvelSequenceGroup* SelectedGroup() const;
    /// An unknown id selects "Default".
    void SelectGroup(const COrvelUUID& id) { selectedGroupID = id; }

    // --- kept for the host, nothing here reads it

    const COrvelString& Text() const { return text; }
    void SetText(COrvelString newText) { text = std::move(newText); }
    /// Sequences that the host works on; not owned.
    std::vector<COrvelSequence*>& HostSequences() { return hostSequences; }

    // --- reset

    /// Forgets all sequences, which stay alive, and what is kept for the host, and destroys every group but the current
    /// one, which is emptied and named "Default".
    void Reset();

private:
    COrvelSequenceContainer();
    ~COrvelSequenceContainer() = delete;

    bool WriteGroups(COrvelArchiveBase& archive);
    bool ReadSequences(COrvelArchiveBase& archive);
    bool ReadGroups(COrvelArchiveBase& archive);

    std::map<COrvelUUID, COrvelSequence*> sequences;
    std::unique_ptr<COrvelSequenceGroup> currentGroup;
    COrvelUUID selectedGroupID;
    std::map<COrvelUUID, std::unique_ptr<COrvelSequenceGroup>> groups;
    std::vector<COrvelSequence*> hostSequences;
    COrvelString text;
};

} // namespace Orvel
