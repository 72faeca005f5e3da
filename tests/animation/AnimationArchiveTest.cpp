#include "animation/COrvelAnimationCollapsingGroupGuidToCaptionMapper.h"
#include "animation/COrvelKeyFrame.h"
#include "animation/COrvelSequence.h"
#include "animation/COrvelSequenceContainer.h"
#include "platform/core/COrvelArchiveReader.h"
#include "platform/core/COrvelArchiveWriter.h"
#include "platform/core/COrvelDocumentsContainer.h"
#include "tests/animation/KeyFrameFixture.h"
#include "tests/animation/RandomTimeline.h"

#include <gmock/gmock.h>

namespace Orvel
{
namespace
{

using testing::ElementsAre;
using Bytes = std::vector<std::uint8_t>;

/// Whether every value of a record is written and read is for the tests of the layouts, which put the bytes together by
/// hand: here, what was read has to give the same bytes.
class AnimationArchive : public KeyFrames
{
protected:
    ~AnimationArchive() override { Forget(); }

    void Fill(COrvelKeyFrameManager& timeline, int dataPerType)
    {
        for (int type = 0; type < RandomTimeline::typeCount; ++type)
            scene.Fill(timeline, type, dataPerType, group);
        timeline.SetCurrentFrame(scene.Integer(0, 50));
    }

    void FillEverything(int dataPerType)
    {
        group.Generate();
        captions->AddCaption(group, "walk");
        manager->SetName("timeline");
        Fill(*manager, dataPerType);
        COrvelSequenceGroup* const shown = container->CreateGroup();
        for (int k = 0; k < 2; ++k) {
            COrvelSequence* const sequence = COrvelSequence::Create();
            Fill(*sequence, dataPerType);
            sequence->SetOrderIndex(scene.Integer(1, 99));
            sequence->SetDuration(scene.Real());
            sequence->SetPreviewImage(COrvelTexture("folder/picture.png"));
        }
        shown->AddSequence(Sequences().front());
        Sequences().front()->SetGroupID(shown->ID());
        container->SelectGroup(shown->ID());
        COrvelSequence::Create()->SetTemporary(true);
        container->CreateGroup()->SetTemporary(true);
    }

    std::vector<COrvelSequence*> Sequences() const
    {
        std::vector<COrvelSequence*> sequences;
        container->ListSequences(sequences, true, false);
        return sequences;
    }

    Bytes Write()
    {
        COrvelArchiveWriter archive;
        EXPECT_TRUE(archive.ReadWrite(*manager, *captions) && container->WriteIntoArchive(archive));
        return archive.Bytes();
    }
    bool Read(std::span<const std::uint8_t> bytes)
    {
        COrvelArchiveReader archive(bytes);
        return archive.ReadWrite(*manager, *captions) && container->ReadFromArchive(archive) && archive.IsAtEnd();
    }
    void Forget()
    {
        COrvelKeyFrameManager::SetInstance(manager = new COrvelKeyFrameManager);
        std::vector<COrvelSequence*> sequences;
        container->ListSequences(sequences, false, false);
        for (const COrvelSequence* const sequence : sequences)
            delete sequence;
        container->Reset();
    }

    RandomTimeline scene;
    COrvelUUID group;
    COrvelSequenceContainer* container = COrvelSequenceContainer::Instance();
    COrvelAnimationCollapsingGroupGuidToCaptionMapper* captions =
        COrvelAnimationCollapsingGroupGuidToCaptionMapper::Instance();
};

TEST_F(AnimationArchive, BringsBackTimelinesSequencesGroupsAndCaptions)
{
    for (int round = 0; round < 5; ++round) {
        FillEverything(1 + round);
        const Bytes bytes = Write();
        Forget();
        container->HostSequences().push_back(nullptr);
        ASSERT_TRUE(Read(bytes));
        EXPECT_EQ(Write(), bytes);
        EXPECT_EQ(manager->Name(), "timeline");
        EXPECT_EQ(*captions->FindCaption(group), "walk");
        ASSERT_EQ(Sequences().size(), 2u) << "the temporary one is not stored";
        EXPECT_EQ(container->Groups().size(), 1u);
        EXPECT_EQ(container->SelectedGroup(), container->Groups().begin()->second.get());
        EXPECT_EQ(container->Text(), "Default");
        EXPECT_TRUE(container->HostSequences().empty());
        EXPECT_EQ(manager->ResolveAlias(scene.transforms[0]->ID()), scene.transforms[0]->ID());
        KeyFrameDataList read;
        manager->ListReadKeyFrameDataOfType(eKeyFrameDataType_Light, read);
        EXPECT_EQ(read.size(), static_cast<std::size_t>(1 + round));
        Forget();
    }
}

TEST_F(AnimationArchive, IsRefusedWhenCutAnywhere)
{
    FillEverything(1);
    const Bytes bytes = Write();
    Forget();
    for (std::size_t cut = 0; cut < bytes.size(); ++cut) {
        ASSERT_FALSE(Read(std::span(bytes).first(cut))) << cut;
        ASSERT_FALSE(COrvelID::IsReadingMode());
        Forget();
    }
}

TEST_F(AnimationArchive, SurvivesDamage)
{
    FillEverything(2);
    const Bytes bytes = Write();
    Forget();
    int readable = 0;
    for (int round = 0; round < 2000; ++round) {
        Bytes damaged = bytes;
        for (int k = scene.Integer(1, 3); k > 0; --k)
            damaged[static_cast<std::size_t>(scene.Integer(0, static_cast<int>(bytes.size()) - 1))] =
                static_cast<std::uint8_t>(scene.Integer(0, 255));
        readable += Read(damaged) ? 1 : 0;
        std::vector<COrvelID> ids;
        manager->ListAnimatedIDs(ids);
        for (const COrvelID& animated : ids)
            manager->KeyFrameDataAtFrame(animated, scene.Integer(0, 40));
        Forget();
    }
    EXPECT_GT(readable, 500) << "most bytes are numbers of which any is as good";
    EXPECT_LT(readable, 2000);
}

TEST_F(AnimationArchive, NumbersDataWithoutHolesOnlyWhileItIsWritten)
{
    const auto add = [this](int start, int number) {
        DataPtr data = Over(start, start, scene.Make(eKeyFrameDataType_TransformBSplineFollower));
        data->SetSequenceNumber(number);
        manager->AddKeyFrameData(data, false);
        return data;
    };
    const auto numbers = [this] {
        KeyFrameDataList all;
        manager->ListAllKeyFrameData(all);
        std::vector<int> list;
        for (const auto& data : all)
            list.push_back(data->SequenceNumber());
        return list;
    };
    add(0, 0);
    add(10, 70);
    dynamic_cast<Follower&>(*add(20, 9)).SetPathID(COrvelID());
    add(30, 40);
    add(40, 70);
    const Bytes bytes = Write();
    EXPECT_THAT(numbers(), ElementsAre(1, 70, 9, 40, 70));
    EXPECT_EQ(add(50, 0)->SequenceNumber(), 2) << "the count goes on from where it was";
    Forget();
    ASSERT_TRUE(Read(bytes));
    EXPECT_THAT(numbers(), ElementsAre(1, 3, 2, 3)) << "without the data that follows no path";
    EXPECT_EQ(add(50, 0)->SequenceNumber(), 4);
}

TEST_F(AnimationArchive, HangsGroupsFromEntitiesThatLive)
{
    COrvelUUID old;
    old.Generate();
    group.Generate();
    const DataPtr data = Store(2, 3, scene.Make(eKeyFrameDataType_Transform));
    data->SetCollapsingGroupID(group);
    data->SetOwnerGuid(old);
    const Bytes bytes = Write();
    const auto readOwner = [&] {
        Forget();
        EXPECT_TRUE(Read(bytes));
        const auto read = manager->StoredKeyFrameDataAtFrame(scene.transforms[0]->ID(), 2);
        EXPECT_EQ(read->CollapsingGroupID(), group);
        return read->OwnerGuid();
    };
    EXPECT_EQ(readOwner(), COrvelUUID()) << "nobody has that GUID any more";
    COrvelDocumentsContainer::DocumentsContainer()->AddReplacedUUID(old, scene.object->GetGuid());
    EXPECT_EQ(readOwner(), scene.object->GetGuid());
    scene.path->SetGuid(old);
    EXPECT_EQ(readOwner(), old) << "the GUID itself comes first";
}

TEST_F(AnimationArchive, TranslatesIdsOfTimelinesAndSequences)
{
    FillEverything(1);
    const Bytes bytes = Write();
    Forget();
    const COrvelID fresh = NewTransform();
    COrvelDocumentsContainer::DocumentsContainer()->AddTranslatedID(scene.transforms[0]->ID(), fresh);
    ASSERT_TRUE(Read(bytes));
    std::vector<COrvelKeyFrameManager*> timelines{manager};
    for (COrvelSequence* const sequence : Sequences())
        timelines.push_back(sequence);
    for (const COrvelKeyFrameManager* const timeline : timelines) {
        KeyFrameDataList list;
        timeline->ListKeyFrameDataOf(fresh, list);
        ASSERT_EQ(list.size(), 1u);
        EXPECT_EQ(list[0]->TargetEntityID(), fresh);
        EXPECT_EQ(list[0]->AnimatedEntityID(), fresh);
    }
}

TEST_F(AnimationArchive, FilesASequenceUnderTheIdThatItReads)
{
    COrvelPtr<COrvelSequence> original = COrvelSequence::Create();
    const COrvelPtr<COrvelSequence> copy = COrvelSequence::Create();
    const COrvelUUID former = copy->UUID();
    const COrvelUUID taken = original->UUID();
    COrvelArchiveWriter archive;
    ASSERT_TRUE(archive.ReadWrite(*original));
    COrvelArchiveReader reader(archive.Bytes());
    ASSERT_TRUE(reader.ReadWrite(*copy));
    original = nullptr;
    EXPECT_EQ(container->FindSequence(taken), copy.Get());
    EXPECT_EQ(container->FindSequence(former), nullptr);
    EXPECT_THAT(container->CurrentGroup()->Members(), ElementsAre(taken));
}

TEST_F(AnimationArchive, KeepsSnapshots)
{
    Fill(*manager, 1);
    COrvelKeyFrame written = manager->KeyFrameAtFrame(3);
    COrvelArchiveWriter archive;
    ASSERT_TRUE(written.WriteIntoArchive(archive));
    COrvelKeyFrame read;
    read.SetKeyFrameData(Over(0, 0, HideShow::CreateHideShowKeyFrameData({8, 1000011}, true)));
    COrvelArchiveReader reader(archive.Bytes());
    ASSERT_TRUE(read.ReadFromArchive(reader) && reader.IsAtEnd());
    ASSERT_EQ(read.KeyFrameData().size(), static_cast<std::size_t>(RandomTimeline::typeCount))
        << "what was there before is gone";
    COrvelArchiveWriter again;
    EXPECT_TRUE(read.WriteIntoArchive(again));
    EXPECT_EQ(again.Bytes(), archive.Bytes());
    Bytes unknownType = archive.Bytes();
    unknownType[4 + 12] = 10; // behind the count and the first id
    COrvelArchiveReader damaged(unknownType);
    EXPECT_FALSE(read.ReadFromArchive(damaged));
    EXPECT_TRUE(read.KeyFrameData().empty());
}

} // namespace
} // namespace Orvel
