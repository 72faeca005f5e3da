#include "animation/COrvelSequence.h"
#include "animation/COrvelSequenceContainer.h"
#include "platform/core/COrvelMessageManager.h"
#include "platform/core/COrvelSkeletonJoint.h"
#include "tests/animation/KeyFrameFixture.h"

#include <gmock/gmock.h>

namespace Orvel
{
namespace
{

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

class Sequences : public KeyFrames
{
protected:
    static COrvelPtr<COrvelSequence> Create(int orderIndex = 0)
    {
        const COrvelPtr<COrvelSequence> sequence = COrvelSequence::Create();
        sequence->SetOrderIndex(orderIndex);
        return sequence;
    }

    void MoveInto(COrvelSequenceGroup* group, COrvelSequence& sequence)
    {
        container->FindGroup(sequence.GroupID())->RemoveSequence(&sequence);
        sequence.SetGroupID(group->ID());
        group->AddSequence(&sequence);
    }

    DataPtr GiveData(COrvelSequence& sequence, const COrvelID& entity)
    {
        DataPtr data = Over(0, 12, Plain::CreateTransformKeyFrameData(entity, {}));
        sequence.AddKeyFrameData(data, true);
        return data;
    }

    std::vector<COrvelSequence*> Listed(bool skipTemporary = false, bool onlyMarked = false) const
    {
        std::vector<COrvelSequence*> list{nullptr};
        container->ListSequences(list, skipTemporary, onlyMarked);
        return list;
    }
    const std::set<COrvelUUID>& CurrentMembers() const { return container->CurrentGroup()->Members(); }

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
    EXPECT_EQ(first->Duration(), -1);
    EXPECT_EQ(container->CurrentGroup()->Name(), COrvelString("Default"));
    EXPECT_FALSE(container->CurrentGroup()->ID().IsValid());
    EXPECT_EQ(container->CurrentGroup()->OrderIndex(), -1);
    EXPECT_THAT(CurrentMembers(),
                UnorderedElementsAre(first->UUID(), second->UUID(), third->UUID(), copy->UUID(), fourth->UUID()));
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
    GiveData(*sequence, id);
    const COrvelPtr<COrvelSequence> copy = sequence->Duplicate();
    EXPECT_EQ(copy->GroupID(), group->ID());
    EXPECT_THAT(group->Members(), UnorderedElementsAre(sequence->UUID(), copy->UUID()));
    EXPECT_THAT(CurrentMembers(), IsEmpty());
    EXPECT_EQ(copy->PreviewImage(), COrvelTexture("größe.png"));
    EXPECT_EQ(copy->Duration(), 2.5);
    EXPECT_TRUE(copy->Text().IsEmpty() && !copy->IsTemporary() && copy->OrderIndex() == 0 && !copy->HasKeyFrames());

    sequence->SetGroupID(sequence->UUID());
    const COrvelPtr<COrvelSequence> stray = sequence->Duplicate();
    EXPECT_FALSE(stray->GroupID().IsValid()) << "no group has that id";
}

TEST_F(Sequences, AreListedByOrderIndexThenTheRest)
{
    const auto second = Create(2);
    const auto none = Create();
    const auto first = Create(1);
    const auto otherNone = Create();
    const auto before = Create(-4);
    const auto otherSecond = Create(2);
    const auto [low, high] = std::minmax({none.Get(), otherNone.Get()}, std::less<>());
    const auto [early, late] = std::minmax({second.Get(), otherSecond.Get()},
                                           [](const auto* a, const auto* b) { return a->UUID() < b->UUID(); });
    EXPECT_THAT(Listed(), ElementsAre(before.Get(), first.Get(), early, late, low, high));

    first->SetTemporary(true);
    second->SetMarked(true);
    first->SetMarked(true);
    EXPECT_THAT(Listed(true, false), ElementsAre(before.Get(), early, late, low, high));
    EXPECT_THAT(Listed(false, true), ElementsAre(first.Get(), second.Get()));
    EXPECT_THAT(Listed(true, true), ElementsAre(second.Get()));
}

TEST_F(Sequences, LoseTheirIdWhenTheyAreCleared)
{
    const auto sequence = Create(1);
    const COrvelUUID former = sequence->UUID();
    sequence->SetTemporary(true);
    sequence->SetPreviewImage(COrvelTexture("cover.png"));
    sequence->SetDuration(4);
    const DataPtr data = GiveData(*sequence, id);
    StorePlain(0, 12);
    sequence->BakeTimeline();

    sequence->Clear();
    EXPECT_FALSE(sequence->HasKeyFrames());
    EXPECT_EQ(data->ReferenceCount(), 1);
    KeyFrameDataList baked;
    EXPECT_EQ(sequence->ListBakedKeyFrameData(baked), 0);
    EXPECT_EQ(sequence->LastFrame(), 0);
    EXPECT_TRUE(sequence->PreviewImage().IsEmpty());
    EXPECT_FALSE(sequence->IsTemporary());
    EXPECT_EQ(sequence->Duration(), 4);
    EXPECT_EQ(sequence->Name(), COrvelString("Sequence1"));
    EXPECT_FALSE(sequence->UUID().IsValid()) << "asking does not make one";
    EXPECT_THAT(Listed(), IsEmpty());
    EXPECT_THAT(CurrentMembers(), IsEmpty());

    const COrvelUUID uuid = sequence->ValidUUID();
    EXPECT_TRUE(uuid.IsValid());
    EXPECT_NE(uuid, former);
    EXPECT_EQ(sequence->ValidUUID(), uuid);
    EXPECT_EQ(container->FindSequence(uuid), sequence.Get());
    EXPECT_THAT(CurrentMembers(), ElementsAre(uuid));
}

TEST_F(Sequences, GroupsAreNumberedAndFoundById)
{
    COrvelSequenceGroup* const first = container->CreateGroup();
    COrvelSequenceGroup* const second = container->CreateGroup();
    EXPECT_EQ(first->Name(), COrvelString("Group 1"));
    EXPECT_EQ(second->Name(), COrvelString("Group 2"));
    EXPECT_EQ(first->OrderIndex(), 0);
    EXPECT_EQ(second->OrderIndex(), 1);
    EXPECT_EQ(container->FindGroup(second->ID()), second);
    EXPECT_EQ(container->FindGroup(COrvelUUID()), container->CurrentGroup());
    const auto sequence = Create();
    EXPECT_EQ(container->FindGroup(sequence->UUID()), nullptr);
    for (COrvelSequence* const named : {sequence.Get(), sequence.Get(), static_cast<COrvelSequence*>(nullptr)}) {
        first->AddSequence(named);
        second->RemoveSequence(named);
    }
    EXPECT_THAT(first->Members(), ElementsAre(sequence->UUID()));
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
    EXPECT_EQ(container->FindGroup(groupID), nullptr);
    EXPECT_EQ(container->CurrentGroup()->Name(), COrvelString("Default"));
    EXPECT_THAT(CurrentMembers(), IsEmpty());
    EXPECT_TRUE(container->Text().IsEmpty());
    EXPECT_THAT(container->HostSequences(), IsEmpty());
    EXPECT_EQ(sequence->ReferenceCount(), 1);
    EXPECT_EQ(container->CreateGroup()->Name(), COrvelString("Group 2")) << "the count goes on";

    container->AddSequence(other.Get());
    container->AddSequence(nullptr);
    EXPECT_THAT(Listed(), ElementsAre(other.Get()));
}

TEST_F(Sequences, LeaveTheirPlacesWhenTheyAreDestroyedUnlessASuccessorHasTheirId)
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
    EXPECT_EQ(CurrentMembers().size(), 1U);
    successor = nullptr;
    EXPECT_THAT(Listed(), IsEmpty());
    EXPECT_THAT(CurrentMembers(), IsEmpty());
}

/// Keeps what every message said.
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
    COrvelSkeletonJoint* const root = COrvelSkeletonJoint::Create(&document, "hip", eJointType_Root);
    root->SetLocalTransform(transform);
    const auto sequence = Create();
    sequence->SetName("walk");
    const DataPtr data = GiveData(*sequence, id);

    Listener listener;
    sequence->RequestInsertIntoTimeline(1e-9, true);
    sequence->RequestInsertIntoTimeline(-1, true);
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
    EXPECT_THAT(message.Find<KeyFrameDataList>(names[0].c_str()), testing::Pointee(ElementsAre(data)))
        << "the stored data themselves";
    EXPECT_THAT(message.Find<std::vector<COrvelSkeletonJoint*>>(names[1].c_str()), testing::Pointee(ElementsAre(root)));
    EXPECT_THAT(message.Find<COrvelString>(names[2].c_str()), testing::Pointee(COrvelString("walk")));
    EXPECT_THAT(message.Find<double>(names[3].c_str()), testing::Pointee(2.5));
    EXPECT_THAT(message.Find<bool>(names[4].c_str()), testing::Pointee(true));
    EXPECT_EQ(message.Find<int>(names[3].c_str()), nullptr) << "of another type";
    EXPECT_EQ(message.Find<double>("none"), nullptr);
}

} // namespace
} // namespace Orvel
