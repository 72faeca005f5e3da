#include "animation/COrvelSequenceContainer.h"

#include "animation/COrvelSequence.h"

#include <algorithm>
#include <functional>

namespace Orvel
{

namespace
{

constexpr const wchar_t* currentGroupName = L"Default";

int NextGroupNumber()
{
    static int number = 0;
    return ++number;
}

} // namespace

COrvelSequenceContainer::COrvelSequenceContainer()
    : currentGroup(std::make_unique<COrvelSequenceGroup>())
{
    currentGroup->SetName(currentGroupName);
}

COrvelSequenceContainer* COrvelSequenceContainer::Instance()
{
    // Never destroyed: sequences that outlive static objects still leave it.
    static COrvelSequenceContainer* const instance = new COrvelSequenceContainer();
    return instance;
}

void COrvelSequenceContainer::ListSequences(std::vector<COrvelSequence*>& list, bool skipTemporary,
                                            bool onlyMarked) const
{
    list.clear();
    for (const auto& [id, sequence] : sequences) {
        if (skipTemporary && sequence->IsTemporary())
            continue;
        if (onlyMarked && !sequence->IsMarked())
            continue;
        list.push_back(sequence);
    }
    const auto unindexed = std::stable_partition(
        list.begin(), list.end(), [](const COrvelSequence* sequence) { return sequence->OrderIndex() != 0; });
    std::stable_sort(list.begin(), unindexed, [](const COrvelSequence* left, const COrvelSequence* right) {
        return left->OrderIndex() < right->OrderIndex();
    });
    std::sort(unindexed, list.end(), std::less<>());
}

void COrvelSequenceContainer::AddSequence(COrvelSequence* sequence)
{
    if (sequence && sequence->UUID().IsValid())
        sequences.insert_or_assign(sequence->UUID(), sequence);
}

void COrvelSequenceContainer::RemoveSequence(COrvelSequence* sequence)
{
    // The id may have gone to another sequence meanwhile, which stays.
    if (sequence && FindSequence(sequence->UUID()) == sequence)
        sequences.erase(sequence->UUID());
}

COrvelSequence* COrvelSequenceContainer::FindSequence(const COrvelUUID& id) const
{
    const auto found = sequences.find(id);
    return found == sequences.end() ? nullptr : found->second;
}

COrvelSequenceGroup* COrvelSequenceContainer::FindGroup(const COrvelUUID& id) const
{
    const auto found = groups.find(id);
    if (found != groups.end())
        return found->second.get();
    return currentGroup->ID() == id ? currentGroup.get() : nullptr;
}

COrvelSequenceGroup* COrvelSequenceContainer::SelectedGroup() const
{
    COrvelSequenceGroup* const selected = FindGroup(selectedGroupID);
    return selected ? selected : currentGroup.get();
}

COrvelSequenceGroup* COrvelSequenceContainer::CreateGroup()
{
    COrvelUUID id;
    id.Generate();
    auto group = std::make_unique<COrvelSequenceGroup>();
    group->SetID(id);
    group->SetName(COrvelString("Group ") + COrvelString::FromInt(NextGroupNumber()));
    group->SetOrderIndex(static_cast<int>(groups.size()));
    // A generator that a program has seeded twice repeats its ids: the group that has this one keeps it.
    return groups.try_emplace(id, std::move(group)).first->second.get();
}

void COrvelSequenceContainer::Reset()
{
    sequences.clear();
    hostSequences.clear();
    text = COrvelString();
    currentGroup->RemoveAllSequences();
    currentGroup->SetName(currentGroupName);
    groups.clear();
}

} // namespace Orvel
