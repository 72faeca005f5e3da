#include "animation/COrvelSequence.h"

#include "animation/COrvelSequenceContainer.h"
#include "platform/core/COrvelMessageManager.h"

#include <memory>
#include <utility>

namespace Orvel
{

namespace
{

/// A sequence repeated less often than this is not inserted at all.
constexpr double smallestRepeatCount = 1e-9;

/// Where receivers are told that the request comes from: a fixed text that they know it by, whatever the line is.
constexpr const char* originFile = "OrvelAnimation/src/OrvelSequence";
constexpr int originLine = 76;

int NextSequenceNumber()
{
    static int number = 0;
    return ++number;
}

void MoveIntoGroup(COrvelSequence& sequence, COrvelSequenceGroup& group)
{
    if (COrvelSequenceGroup* const former = COrvelSequenceContainer::Instance()->FindGroup(sequence.GroupID()))
        former->RemoveSequence(&sequence);
    sequence.SetGroupID(group.ID());
    group.AddSequence(&sequence);
}

COrvelString Origin()
{
    return COrvelString("file: ") + originFile + ", line #" + COrvelString::FromInt(originLine);
}

} // namespace

COrvelSequence::COrvelSequence()
{
    sequenceID.Generate();
}

COrvelSequence::~COrvelSequence()
{
    LeaveContainer();
}

void COrvelSequence::LeaveContainer()
{
    COrvelSequenceContainer* const container = SequenceContainer();
    // The id may have gone to another sequence meanwhile, which keeps its places.
    const COrvelSequence* const listed = container->FindSequence(sequenceID);
    if (listed && listed != this)
        return;
    if (COrvelSequenceGroup* const group = container->FindGroup(groupID))
        group->RemoveSequence(this);
    container->RemoveSequence(this);
}

COrvelSequence* COrvelSequence::Create()
{
    std::unique_ptr<COrvelSequence> sequence(new COrvelSequence());
    sequence->SetName(COrvelString("Sequence") + COrvelString::FromInt(NextSequenceNumber()));
    COrvelSequenceContainer* const container = sequence->SequenceContainer();
    container->AddSequence(sequence.get());
    if (COrvelSequenceGroup* const group = container->CurrentGroup())
        MoveIntoGroup(*sequence, *group);
    return sequence.release();
}

COrvelSequence* COrvelSequence::Duplicate()
{
    std::unique_ptr<COrvelSequence> copy(new COrvelSequence());
    copy->SetName(Name() + "_copy");
    COrvelSequenceContainer* const container = SequenceContainer();
    container->AddSequence(copy.get());
    if (COrvelSequenceGroup* const group = container->FindGroup(groupID))
        MoveIntoGroup(*copy, *group);
    copy->previewImage = previewImage;
    copy->duration = duration;
    return copy.release();
}

COrvelUUID COrvelSequence::ValidUUID()
{
    // What Clear took out comes back under its new id.
    if (!sequenceID.IsValid())
        EnterContainer();
    return sequenceID;
}

void COrvelSequence::EnterContainer()
{
    if (!sequenceID.IsValid())
        sequenceID.Generate();
    SequenceContainer()->AddSequence(this);
    if (COrvelSequenceGroup* const group = SequenceContainer()->FindGroup(groupID))
        group->AddSequence(this);
}

void COrvelSequence::Clear()
{
    // The container and the group know the sequence by the id that it loses.
    LeaveContainer();
    ClearKeyFrameData();
    previewImage = COrvelTexture();
    temporary = false;
    sequenceID.Reset();
}

void COrvelSequence::RequestInsertIntoTimeline(double numberOfTimesToRepeat, bool blendSequences)
{
    if (!(numberOfTimesToRepeat > smallestRepeatCount))
        return;
    KeyFrameDataList data;
    ListAllKeyFrameData(data);
    COrvelMessage message("eMessageType_INSERT_SEQUENCE_KEY_FRAMES_DATA");
    message.AddValue("keyframesDataToBeCopied", std::move(data));
    message.AddValue("sequenceRootJoints", ListSequenceRootJoints());
    message.AddValue("caption", Name());
    message.AddValue("numberOfTimesToRepeat", numberOfTimesToRepeat);
    message.AddValue("blendSequences", blendSequences);
    COrvelMessageManager::Instance()->DistributeMessage(message, Origin());
}

} // namespace Orvel
