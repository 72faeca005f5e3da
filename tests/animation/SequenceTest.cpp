#include "animation/COrvelKeyFrameDataTransform.h"
#include "animation/COrvelSequence.h"
#include "animation/COrvelSequenceContainer.h"
#include "platform/core/COrvelDocument.h"
#include "platform/core/COrvelMessageManager.h"
#include "platform/core/COrvelSkeletonJoint.h"
#include "platform/core/COrvelTransform.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Orvel
{
namespace
{

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

class Sequences : public testing::Test
{
protected:
    COrvelPtr<COrvelSequence> Create(int orderIndex = 0)
    {
        const COrvelPtr<COrvelSequence> sequence = COrvelSequence::Create();
        sequence->SetOrderIndex(orderIndex);
        return sequence;
    }

    static void MoveInto(COrvelSequenceGroup* group, COrvelSequence& sequence)
    {
        COrvelSequenceContainer::Instance()->FindGroup(sequence.GroupID())->RemoveSequence(&sequence);
        sequence.SetGroupID(group->ID());
        group->AddSequence(&sequence);
    }

    std::vector<COrvelSequence*> Listed(bool skipTemporary = false, bool onlyMarked = false) const
    {
        std::vector<COrvelSequence*> list{nullptr};
        container->ListSequences(list, skipTemporary, onlyMarked);
        return list;
    }

    COrvelSequenceContainer* container = COrvelSequenceContainer::Instance();
};

TEST_F(Sequences, AreNumberedAndJoinTheCurrentGroup)
{
    const auto first = Create();
    const auto second = Create();
    const auto third = Create();
    const COrvelPtr<COrvelSequence> copy = third->Duplicate();
    const auto fourth = Create();
    EXPECT_EQ(first->Name(), COrvelString("Sequence1"));
    EXPECT_EQ(third->Name(), COrvelString("Sequence3"));
    EXPECT_EQ(copy->Name(), COrvelString("Sequence3_copy"));
    EXPECT_EQ(fourth->Name(), COrvelString("Sequence4")) << "copies are not counted";

    const COrvelSequenceGroup* const group = container->CurrentGroup();
    EXPECT_EQ(group->Name(), COrvelString("Default"));
    EXPECT_FALSE(group->ID().IsValid());
    EXPECT_EQ(group->OrderIndex(), -1);
    EXPECT_THAT(group->Members(),
                UnorderedElementsAre(first->UUID(), second->UUID(), third->UUID(), copy->UUID(), fourth->UUID()));
    EXPECT_FALSE(first->IsTemporary());
    EXPECT_FALSE(first->IsMarked());
    EXPECT_EQ(first->Duration(), -1.0);
    EXPECT_EQ(first->ReferenceCount(), 1);
}

TEST_F(Sequences, AreCopiedIntoTheirGroupWithoutTheirData)
{
    COrvelSequenceGroup* const group = container->CreateGroup();
    const auto sequence = Create(3);
    MoveInto(group, *sequence);
    sequence->SetPreviewImage(COrvelTexture("größe.png"));
    sequence->SetDuration(2.5);
    sequence->SetText("text");
    sequence->SetTemporary(true);
    COrvelDocument document;
    COrvelPtr<COrvelKeyFrameData> data = COrvelKeyFrameDataTransform::CreateTransformKeyFrameData(
        COrvelTransform::Create(&document)->ID(), COrvelMatrix());
    sequence->AddKeyFrameData(data, true);

    const COrvelPtr<COrvelSequence> copy = sequence->Duplicate();
    EXPECT_EQ(copy->GroupID(), group->ID());
    EXPECT_THAT(group->Members(), UnorderedElementsAre(sequence->UUID(), copy->UUID()));
    EXPECT_THAT(container->CurrentGroup()->Members(), IsEmpty());
    EXPECT_EQ(copy->PreviewImage(), COrvelTexture("größe.png"));
    EXPECT_EQ(copy->Duration(), 2.5);
    EXPECT_EQ(copy->Text(), COrvelString());
    EXPECT_FALSE(copy->IsTemporary());
    EXPECT_EQ(copy->OrderIndex(), 0);
    EXPECT_FALSE(copy->HasKeyFrames());

    sequence->SetGroupID(sequence->UUID());
    const COrvelPtr<COrvelSequence> stray = sequence->Duplicate();
    EXPECT_FALSE(stray->GroupID().IsValid()) << "no group has that id";
    EXPECT_EQ(group->Members().count(stray->UUID()), 0U);
}

TEST_F(Sequences, AreListedByOrderIndexThenTheRest)
{
    const auto second = Create(2);
    const auto none = Create();
    const auto first = Create(1);
    const auto otherNone = Create();
    const auto before = Create(-4);
    const auto otherSecond = Create(2);
    COrvelSequence* low = none.Get();
    COrvelSequence* high = otherNone.Get();
    if (std::less<>()(high, low))
        std::swap(low, high);
    COrvelSequence* early = second.Get();
    COrvelSequence* late = otherSecond.Get();
    if (late->UUID() < early->UUID())
        std::swap(early, late);
    EXPECT_THAT(Listed(), ElementsAre(before.Get(), first.Get(), early, late, low, high));

    first->SetTemporary(true);
    second->SetMarked(true);
    first->SetMarked(true);
    EXPECT_THAT(Listed(true, false), ElementsAre(before.Get(), early, late, low, high));
    EXPECT_THAT(Listed(false, true), ElementsAre(first.Get(), second.Get()));
    EXPECT_THAT(Listed(true, true), ElementsAre(second.Get()));
}

TEST_F(Sequences, LeaveContainerAndGroupWhenTheyAreDestroyed)
{
    const auto kept = Create();
    {
        const auto dropped = Create();
        const COrvelPtr<COrvelSequence> copy = dropped->Duplicate();
        EXPECT_EQ(Listed().size(), 3U);
    }
    EXPECT_THAT(Listed(), ElementsAre(kept.Get()));
    EXPECT_THAT(container->CurrentGroup()->Members(), ElementsAre(kept->UUID()));
}

TEST_F(Sequences, LoseTheirIdWhenTheyAreCleared)
{
    const auto sequence = Create(1);
    const COrvelUUID former = sequence->UUID();
    sequence->SetTemporary(true);
    sequence->SetPreviewImage(COrvelTexture("cover.png"));
    sequence->SetDuration(4.0);
    sequence->SetLastFrame(12);
    COrvelDocument document;
    COrvelPtr<COrvelKeyFrameData> data = COrvelKeyFrameDataTransform::CreateTransformKeyFrameData(
        COrvelTransform::Create(&document)->ID(), COrvelMatrix());
    sequence->AddKeyFrameData(data, true);
    sequence->BakeTimeline();

    sequence->Clear();
    EXPECT_FALSE(sequence->HasKeyFrames());
    EXPECT_EQ(data->ReferenceCount(), 1);
    EXPECT_EQ(sequence->LastFrame(), 0);
    EXPECT_TRUE(sequence->PreviewImage().IsEmpty());
    EXPECT_FALSE(sequence->IsTemporary());
    EXPECT_EQ(sequence->Duration(), 4.0);
    EXPECT_EQ(sequence->Name(), COrvelString("Sequence1"));
    EXPECT_FALSE(sequence->UUID().IsValid()) << "asking does not make one";
    EXPECT_THAT(Listed(), IsEmpty());
    EXPECT_THAT(container->CurrentGroup()->Members(), IsEmpty());

    const COrvelUUID id = sequence->ValidUUID();
    EXPECT_TRUE(id.IsValid());
    EXPECT_NE(id, former);
    EXPECT_EQ(sequence->ValidUUID(), id);
    EXPECT_EQ(container->FindSequence(id), sequence.Get());
    EXPECT_THAT(container->CurrentGroup()->Members(), ElementsAre(id));
}

TEST_F(Sequences, GroupsAreNumberedAndFoundById)
{
    COrvelSequenceGroup* const first = container->CreateGroup();
    COrvelSequenceGroup* const second = container->CreateGroup();
    EXPECT_EQ(first->Name(), COrvelString("Group 1"));
    EXPECT_EQ(second->Name(), COrvelString("Group 2"));
    EXPECT_EQ(first->OrderIndex(), 0);
    EXPECT_EQ(second->OrderIndex(), 1);
    EXPECT_TRUE(second->ID().IsValid());
    EXPECT_EQ(container->FindGroup(second->ID()), second);
    EXPECT_EQ(container->FindGroup(COrvelUUID()), container->CurrentGroup());
    COrvelUUID unknown;
    unknown.Generate();
    EXPECT_EQ(container->FindGroup(unknown), nullptr);
    EXPECT_EQ(container->Groups().size(), 2U);

    const auto sequence = Create();
    for (int times = 0; times < 2; ++times)
        first->AddSequence(sequence.Get());
    first->AddSequence(nullptr);
    second->RemoveSequence(sequence.Get());
    EXPECT_THAT(first->Members(), ElementsAre(sequence->UUID()));
    first->RemoveSequence(nullptr);
    first->RemoveSequence(sequence.Get());
    EXPECT_THAT(first->Members(), IsEmpty());
}

TEST_F(Sequences, OutliveAResetOfTheContainer)
{
    const auto sequence = Create(1);
    const auto other = Create(2);
    COrvelSequenceGroup* const group = container->CreateGroup();
    const COrvelUUID groupID = group->ID();
    MoveInto(group, *other);
    container->CurrentGroup()->SetName("Walk cycles");
    container->SetText("shown");
    container->HostSequences().push_back(sequence.Get());

    container->Reset();
    EXPECT_THAT(Listed(), IsEmpty());
    EXPECT_TRUE(container->Groups().empty());
    EXPECT_EQ(container->FindGroup(groupID), nullptr);
    EXPECT_EQ(container->CurrentGroup()->Name(), COrvelString("Default"));
    EXPECT_THAT(container->CurrentGroup()->Members(), IsEmpty());
    EXPECT_TRUE(container->Text().IsEmpty());
    EXPECT_THAT(container->HostSequences(), IsEmpty());
    EXPECT_EQ(sequence->ReferenceCount(), 1);
    EXPECT_EQ(container->CreateGroup()->Name(), COrvelString("Group 2")) << "the count goes on";

    container->AddSequence(other.Get());
    container->AddSequence(nullptr);
    EXPECT_THAT(Listed(), ElementsAre(other.Get()));
}

TEST_F(Sequences, ShareAnIdOnlyWithTheirSuccessor)
{
    COrvelUUID::SeedGenerator(7);
    const auto first = Create();
    COrvelUUID::SeedGenerator(7);
    auto successor = Create();
    COrvelUUID::SetGenerator({});
    ASSERT_EQ(first->UUID(), successor->UUID());
    EXPECT_THAT(Listed(), ElementsAre(successor.Get()));
    first->Clear();
    EXPECT_THAT(Listed(), ElementsAre(successor.Get())) << "the successor keeps its place";
    EXPECT_EQ(container->CurrentGroup()->Members().size(), 1U);
    successor = nullptr;
    EXPECT_THAT(Listed(), IsEmpty());
}

/// Keeps what the last message said.
class Listener : public COrvelMessageReceiver
{
public:
    Listener() { COrvelMessageManager::Instance()->RegisterReceiver(this); }
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;
    ~Listener() { COrvelMessageManager::Instance()->RemoveReceiver(this); }

    void ReceiveMessage(COrvelMessage& message, const COrvelString& origin) override
    {
        messages.push_back(message);
        origins.push_back(origin.toStdString());
    }

    std::vector<COrvelMessage> messages;
    std::vector<std::string> origins;
};

TEST_F(Sequences, AskForTheirInsertionIntoTheTimeline)
{
    COrvelDocument document;
    COrvelSkeletonJoint* const root = COrvelSkeletonJoint::Create(&document, "hip", eJointType_Root);
    root->SetLocalMatrix(COrvelMatrix());
    const auto sequence = Create();
    sequence->SetName("walk");
    COrvelPtr<COrvelKeyFrameData> data =
        COrvelKeyFrameDataTransform::CreateTransformKeyFrameData(root->LocalTransform()->ID(), COrvelMatrix());
    sequence->AddKeyFrameData(data, true);

    sequence->RequestInsertIntoTimeline(2.0, false);
    Listener listener;
    sequence->RequestInsertIntoTimeline(1e-9, true);
    sequence->RequestInsertIntoTimeline(-1.0, true);
    EXPECT_THAT(listener.messages, IsEmpty()) << "nothing is repeated";

    sequence->RequestInsertIntoTimeline(2.5, true);
    ASSERT_EQ(listener.messages.size(), 1U);
    const COrvelMessage& message = listener.messages.front();
    EXPECT_EQ(message.Type(), COrvelString("eMessageType_INSERT_SEQUENCE_KEY_FRAMES_DATA"));
    EXPECT_THAT(listener.origins, ElementsAre("file: OrvelAnimation/src/OrvelSequence, line #76"));
    std::vector<std::string> names;
    for (std::size_t position = 0; position < message.Count(); ++position)
        names.push_back(message.Value(position).Name().toStdString());
    ASSERT_THAT(names, ElementsAre("keyframesDataToBeCopied", "sequenceRootJoints", "caption", "numberOfTimesToRepeat",
                                   "blendSequences"));

    const auto* const sent = message.Find<KeyFrameDataList>("keyframesDataToBeCopied");
    ASSERT_NE(sent, nullptr);
    EXPECT_THAT(*sent, ElementsAre(data)) << "the stored data themselves";
    const auto* const joints = message.Find<std::vector<COrvelSkeletonJoint*>>("sequenceRootJoints");
    ASSERT_NE(joints, nullptr);
    EXPECT_THAT(*joints, ElementsAre(root));
    const auto* const caption = message.Find<COrvelString>("caption");
    ASSERT_NE(caption, nullptr);
    EXPECT_EQ(*caption, COrvelString("walk"));
    const auto* const count = message.Find<double>("numberOfTimesToRepeat");
    ASSERT_NE(count, nullptr);
    EXPECT_EQ(*count, 2.5);
    const auto* const blend = message.Find<bool>("blendSequences");
    ASSERT_NE(blend, nullptr);
    EXPECT_TRUE(*blend);
}

} // namespace
} // namespace Orvel
