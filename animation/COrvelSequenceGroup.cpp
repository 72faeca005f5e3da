#include "animation/COrvelSequenceGroup.h"

#include "animation/COrvelSequence.h"

namespace Orvel
{

void COrvelSequenceGroup::AddSequence(const COrvelSequence* sequence)
{
    if (sequence)
        members.insert(sequence->UUID());
}

void COrvelSequenceGroup::RemoveSequence(const COrvelSequence* sequence)
{
    if (sequence)
        members.erase(sequence->UUID());
}

} // namespace Orvel
