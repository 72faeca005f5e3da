#include "platform/core/COrvelSceneNode.h"
#include "tests/animation/KeyFrameFixture.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <random>

namespace Orvel
{
namespace
{

using testing::ElementsAre;
using testing::IsEmpty;

/// Counts how many of its kind are alive.
class CountedData : public HideShow
{
public:
    CountedData(const COrvelID& entity, int& newCount)
        : HideShow(entity, false)
        , count(newCount)
    {
        ++count;
    }
    ~CountedData() override { --count; }

private:
    int& count;
};

std::vector<FrameRange> Ranges(const KeyFrameDataList& list)
{
    std::vector<FrameRange> ranges;
    for (const DataPtr& data : list)
        ranges.emplace_back(data->StartFrame(), data->EndFrame());
    return ranges;
}

class KeyFrameStorage : public KeyFrames
{
protected:
    void Add(std::initializer_list<FrameRange> ranges)
    {
        for (const FrameRange& range : ranges)
            StorePlain(range.first, range.second);
    }

    KeyFrameDataList All() const
    {
        KeyFrameDataList list;
        manager->ListAllKeyFrameData(list);
        return list;
    }
    std::vector<FrameRange> Stored() const { return Ranges(All()); }

    int UpTo(int last) { return std::uniform_int_distribution<int>(0, last)(random); }

    std::mt19937 random{20261122};
};

TEST_F(KeyFrameStorage, NumbersTheDataOfAnEntityInTheOrderOfTheirFirstAdding)
{
    DataPtr second = PlainOver(20, 30);
    DataPtr first = PlainOver(40, 50);
    DataPtr numbered = PlainOver(60, 70);
    numbered->SetSequenceNumber(9);
    DataPtr third = PlainOver(0, 5);
    DataPtr elsewhere = Plain::CreateTransformKeyFrameData(NewTransform(), {});
    for (DataPtr* const data : {&first, &second, &elsewhere, &numbered, &first, &third})
        manager->AddKeyFrameData(*data, false);
    EXPECT_EQ(first->SequenceNumber(), 1) << "a number once given is kept";
    EXPECT_EQ(second->SequenceNumber(), 2);
    EXPECT_EQ(third->SequenceNumber(), 3);
    EXPECT_EQ(numbered->SequenceNumber(), 9);
    EXPECT_EQ(elsewhere->SequenceNumber(), 1) << "each entity counts for itself";
}

TEST_F(KeyFrameStorage, ExtendsTheFrameRangeOnRequest)
{
    DataPtr unranged = PlainOver(90, 95);
    manager->AddKeyFrameData(unranged, false);
    EXPECT_EQ(manager->LastFrame(), 0);
    EXPECT_EQ(manager->ComputeLastFrame(), 95);
    Add({{20, 30}, {5, 8}});
    EXPECT_EQ(manager->FirstFrame(), 0) << "it starts at 0 and never rises";
    EXPECT_EQ(manager->LastFrame(), 30);
    const DataPtr refiled = PlainOver(40, 45);
    manager->RefileKeyFrameData(refiled);
    EXPECT_EQ(manager->LastFrame(), 30);
    EXPECT_EQ(refiled->SequenceNumber(), 4) << "a data that was not here is stored and numbered";
    DataPtr none;
    EXPECT_THAT(manager->AddKeyFrameData(none, true), IsEmpty());
    manager->RefileKeyFrameData(none);
    EXPECT_EQ(All().size(), 4U);
}

TEST_F(KeyFrameStorage, RefilesMovedTimelinesAsByASearchForEachData)
{
    for (int round = 0; round < 60; ++round) {
        SCOPED_TRACE(round);
        for (int k = 0; k < 20; ++k)
            StorePlain(10 * k, 10 * k + UpTo(9));
        KeyFrameDataByFrame model;
        KeyFrameDataList list = All();
        for (const DataPtr& data : list)
            model[data->StartFrame()] = data;
        const auto drop = [&](const KeyFrameDataList& dropped) {
            std::erase_if(model, [&](const auto& one) { return std::ranges::count(dropped, one.second) != 0; });
        };
        // By the distance of the data, so that each takes the place of another one, or by any other.
        const int distance = 10 * UpTo(2) + UpTo(1);
        std::ranges::shuffle(list, random);
        for (const DataPtr& data : list) {
            data->ShiftFrames(distance);
            manager->RefileKeyFrameData(data);
            drop({data});
            model[data->StartFrame()] = data;
            if (UpTo(9) == 0) {
                KeyFrameDataList taken;
                manager->TakeKeyFrameDataInRange(100, 110, id, taken);
                drop(taken);
            }
        }
        KeyFrameDataList expected;
        for (const auto& [start, data] : model)
            expected.push_back(data);
        ASSERT_EQ(All(), expected);
        manager->ClearKeyFrameData();
    }
}

TEST_F(KeyFrameStorage, TakesAllDataOfAnEntityWithTheirAliases)
{
    const COrvelID target = NewTransform();
    DataPtr elsewhere = PlainOver(5, 6);
    elsewhere->SetTargetEntityID(target);
    manager->AddKeyFrameData(elsewhere, true);
    Add({{0, 3}});
    EXPECT_FALSE(manager->TakeKeyFrameDataAt(target, 5)) << "single frames are not taken through an alias";

    EXPECT_THAT(Ranges(manager->TakeAllKeyFrameDataOf(target)), ElementsAre(FrameRange(0, 3), FrameRange(5, 6)));
    EXPECT_EQ(manager->ResolveAlias(target), target);
    EXPECT_FALSE(manager->HasKeyFrames());
    EXPECT_THAT(manager->TakeAllKeyFrameDataOf(id), IsEmpty());
}

TEST_F(KeyFrameStorage, RemovesWhatStandsAtTheStartFrame)
{
    Add({{0, 3}, {5, 9}, {12, 20}});
    manager->RemoveKeyFrameData({nullptr, PlainOver(5, 6), PlainOver(13, 20), PlainOver(12, 12)});
    EXPECT_THAT(Stored(), ElementsAre(FrameRange(0, 3)));
    manager->RemoveKeyFrameData(DataPtr());
    for (int times = 0; times < 2; ++times) {
        manager->RemoveKeyFrameData(DataPtr(PlainOver(0, 0)));
        EXPECT_FALSE(manager->HasKeyFrames());
    }
}

TEST_F(KeyFrameStorage, TakesAllDataAfterPuttingTheSceneIntoFrameZero)
{
    StorePlain(0, 0, Shift(7, 11, 13));
    StorePlain(10, 10, Shift(2, 3, 5));
    COrvelSceneNode* const node = COrvelSceneNode::Create(&document, "late");
    Store(4, 8, HideShow::CreateHideShowKeyFrameData(node->ID(), true));
    manager->SetCurrentFrame(6);
    manager->SetFirstFrame(-3);

    EXPECT_THAT(Ranges(manager->TakeAllKeyFrameData()),
                ElementsAre(FrameRange(4, 8), FrameRange(0, 0), FrameRange(10, 10)))
        << "entities in id order";
    EXPECT_EQ(transform->Matrix(), Shift(7, 11, 13));
    EXPECT_TRUE(node->IsHidden()) << "before the first data its state holds";
    EXPECT_FALSE(manager->HasKeyFrames());
    EXPECT_EQ(manager->CurrentFrame(), 0);
    EXPECT_EQ(manager->FirstFrame(), 0);
    EXPECT_EQ(manager->LastFrame(), 10);
    EXPECT_EQ(StorePlain(1, 2)->SequenceNumber(), 3) << "numbering goes on";
}

TEST_F(KeyFrameStorage, SharesDataWithThoseWhoHoldThem)
{
    int alive = 0;
    const auto store = [&](int start, int end) { return Store(start, end, new CountedData(id, alive)); };
    store(0, 5);
    const auto held = store(10, 15);
    EXPECT_EQ(held->ReferenceCount(), 2);
    {
        DataPtr over = Over(3, 12, new CountedData(id, alive));
        const KeyFrameDataList displaced = manager->AddKeyFrameData(over, true);
        EXPECT_EQ(displaced.size(), 2U);
        EXPECT_EQ(alive, 3) << "displaced data live in the result";
    }
    EXPECT_EQ(alive, 2) << "with the result goes the one that nobody else holds";
    EXPECT_EQ(held->ReferenceCount(), 1);

    const auto kept = store(20, 25);
    store(30, 35);
    COrvelKeyFrameManager::SetInstance(manager);
    EXPECT_EQ(alive, 4) << "the installed manager installed again stays";
    COrvelKeyFrameManager::SetInstance(new COrvelKeyFrameManager);
    EXPECT_EQ(alive, 2) << "the old manager is destroyed, and what only it held";
    EXPECT_EQ(kept->ReferenceCount(), 1);
    EXPECT_EQ(kept->StartFrame(), 20);
}

/// The same timeline as a plain list, searched from end to end.
struct TimelineModel
{
    KeyFrameDataList TakeOverlapping(int first, int last)
    {
        KeyFrameDataList taken;
        for (int frame = first; frame <= last; ++frame) {
            if (const DataPtr data = At(frame)) {
                taken.push_back(data);
                std::erase(list, data);
            }
        }
        return taken;
    }

    DataPtr At(int frame) const
    {
        for (const DataPtr& data : list) {
            if (data->StartFrame() <= frame && frame <= data->EndFrame())
                return data;
        }
        return nullptr;
    }

    KeyFrameDataList list;
};

constexpr int frameCount = 60;

void ExpectSameTimeline(const COrvelKeyFrameManager& manager, const COrvelID& entity, const TimelineModel& model)
{
    std::vector<int> expectedFrames;
    DataPtr next;
    for (int frame = frameCount + 5; frame >= -2; --frame) {
        const DataPtr expected = model.At(frame);
        if (expected) {
            next = expected;
            expectedFrames.insert(expectedFrames.begin(), frame);
        }
        ASSERT_EQ(manager.StoredKeyFrameDataAtFrame(entity, frame), expected) << "frame " << frame;
        ASSERT_EQ(manager.StoredKeyFrameDataAtOrAfter(entity, frame), next) << "frame " << frame;
    }
    next = nullptr;
    std::vector<int> frames;
    manager.ListKeyFrameNumbers(entity, frames);
    ASSERT_EQ(frames, expectedFrames);
    std::vector<COrvelID> animated;
    manager.ListAnimatedIDs(animated);
    ASSERT_EQ(std::ranges::count(animated, entity), model.list.empty() ? 0 : 1);
    KeyFrameDataList stored;
    manager.ListKeyFrameDataOf(entity, stored);
    ASSERT_EQ(stored.size(), model.list.size());
    for (const DataPtr& data : model.list)
        ASSERT_EQ(data->ReferenceCount(), 3) << "held by the manager, the model and this list";
}

TEST_F(KeyFrameStorage, AgreesWithAnExhaustiveModelOverRandomEdits)
{
    const COrvelID entities[] = {id, NewTransform()};
    TimelineModel models[2];
    for (int edit = 0; edit < 600; ++edit) {
        SCOPED_TRACE(edit);
        const auto which = static_cast<std::size_t>(UpTo(1));
        const COrvelID& entity = entities[which];
        TimelineModel& model = models[which];
        const int kind = UpTo(9);
        const int first = UpTo(frameCount);
        // Now and then much at once; an inverted interval holds nothing to take.
        const int length = edit % 50 == 0 ? frameCount : UpTo(edit % 7 == 0 ? 25 : 6);
        const int last = kind == 1 || kind == 2 ? first : std::min(frameCount, first + length - (kind == 0 ? 1 : 0));
        KeyFrameDataList expected = model.TakeOverlapping(first, last);
        KeyFrameDataList taken;
        if (kind == 0) {
            manager->TakeKeyFrameDataInRange(first, last, entity, taken);
        } else if (kind == 1) {
            if (const DataPtr one = manager->TakeKeyFrameDataAt(entity, first))
                taken.push_back(one);
        } else if (kind == 2) {
            manager->RemoveKeyFrameData(expected);
            taken = expected;
        } else {
            DataPtr added = Over(first, last, Plain::CreateTransformKeyFrameData(entity, {}));
            taken = manager->AddKeyFrameData(added, true);
            model.list.push_back(added);
        }
        ASSERT_EQ(taken, expected);
        taken.clear();
        expected.clear();
        ASSERT_NO_FATAL_FAILURE(ExpectSameTimeline(*manager, entity, model));
    }
    EXPECT_EQ(Stored().size(), models[0].list.size() + models[1].list.size());
}

} // namespace
} // namespace Orvel
