#include "animation/COrvelKeyFrameDataHideShow.h"
#include "animation/COrvelKeyFrameDataTransform.h"
#include "animation/COrvelKeyFrameManager.h"
#include "animation/KeyFrameFixture.h"
#include "animation/KeyFrameRange.h"
#include "platform/core/COrvelSceneNode.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <random>

namespace Orvel
{
namespace
{

using testing::ElementsAre;
using testing::IsEmpty;

/// Counts how many of its kind are alive.
class CountedData : public COrvelKeyFrameDataHideShow
{
public:
    CountedData(const COrvelID& entity, int& newCount)
        : COrvelKeyFrameDataHideShow(entity, false)
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
    for (const COrvelPtr<COrvelKeyFrameData>& data : list)
        ranges.emplace_back(data->StartFrame(), data->EndFrame());
    return ranges;
}

class KeyFrameStorage : public KeyFrames
{
protected:
    COrvelPtr<COrvelKeyFrameData> Data(int start, int end)
    {
        return Over(start, end, COrvelKeyFrameDataTransform::CreateTransformKeyFrameData(id, Shift(start, end, 13.0)));
    }

    /// Adds data with these frames; what the last one displaced comes back.
    KeyFrameDataList Add(std::initializer_list<FrameRange> ranges)
    {
        KeyFrameDataList displaced;
        for (const FrameRange& range : ranges) {
            COrvelPtr<COrvelKeyFrameData> data = Data(range.first, range.second);
            displaced = manager->AddKeyFrameData(data, true);
        }
        return displaced;
    }

    std::vector<FrameRange> Stored() const
    {
        KeyFrameDataList list;
        manager->ListAllKeyFrameData(list);
        return Ranges(list);
    }
};

TEST_F(KeyFrameStorage, DisplacesEveryDataThatSharesAFrame)
{
    struct Case
    {
        std::initializer_list<FrameRange> stored;
        FrameRange added;
        std::vector<FrameRange> displaced;
    };
    const Case cases[] = {
        {{{0, 10}, {11, 20}}, {21, 30}, {}},
        {{{0, 10}}, {10, 20}, {{0, 10}}},
        {{{0, 10}, {12, 20}}, {5, 15}, {{0, 10}, {12, 20}}},
        {{{0, 10}}, {3, 4}, {{0, 10}}},
        {{{0, 2}, {4, 4}, {6, 9}}, {3, 5}, {{4, 4}}},
        {{{7, 7}}, {7, 7}, {{7, 7}}},
    };
    for (const Case& one : cases) {
        SCOPED_TRACE(testing::PrintToString(one.added));
        Add(one.stored);
        EXPECT_EQ(Ranges(Add({one.added})), one.displaced);
        EXPECT_EQ(std::ranges::count(Stored(), one.added), 1);
        EXPECT_EQ(Stored().size(), one.stored.size() + 1 - one.displaced.size());
        manager->ClearKeyFrameData();
    }
    COrvelPtr<COrvelKeyFrameData> none;
    EXPECT_THAT(manager->AddKeyFrameData(none, true), IsEmpty());
    EXPECT_FALSE(manager->HasKeyFrames());
}

TEST_F(KeyFrameStorage, NumbersTheDataOfAnEntityInTheOrderOfTheirFirstAdding)
{
    COrvelPtr<COrvelKeyFrameData> second = Data(20, 30);
    COrvelPtr<COrvelKeyFrameData> first = Data(40, 50);
    COrvelPtr<COrvelKeyFrameData> numbered = Data(60, 70);
    numbered->SetSequenceNumber(9);
    COrvelPtr<COrvelKeyFrameData> third = Data(0, 5);
    COrvelTransform* const other = COrvelTransform::Create(&document);
    COrvelPtr<COrvelKeyFrameData> elsewhere =
        COrvelKeyFrameDataTransform::CreateTransformKeyFrameData(other->ID(), COrvelMatrix());
    for (COrvelPtr<COrvelKeyFrameData>* data : {&first, &second, &elsewhere, &numbered, &first, &third})
        manager->AddKeyFrameData(*data, false);
    EXPECT_EQ(first->SequenceNumber(), 1) << "a number once given is kept";
    EXPECT_EQ(second->SequenceNumber(), 2);
    EXPECT_EQ(third->SequenceNumber(), 3);
    EXPECT_EQ(numbered->SequenceNumber(), 9);
    EXPECT_EQ(elsewhere->SequenceNumber(), 1) << "each entity counts for itself";
}

TEST_F(KeyFrameStorage, ExtendsTheFrameRangeOnRequest)
{
    COrvelPtr<COrvelKeyFrameData> unranged = Data(90, 95);
    manager->AddKeyFrameData(unranged, false);
    EXPECT_EQ(manager->LastFrame(), 0);
    EXPECT_EQ(manager->ComputeLastFrame(), 95);
    Add({{20, 30}, {5, 8}});
    EXPECT_EQ(manager->FirstFrame(), 0) << "it starts at 0 and never rises";
    EXPECT_EQ(manager->LastFrame(), 30);
}

TEST_F(KeyFrameStorage, RefilesADataUnderItsNewStartFrame)
{
    Add({{0, 4}, {10, 14}});
    COrvelPtr<COrvelKeyFrameData> moved = manager->StoredKeyFrameDataAtFrame(id, 10);
    moved->SetStartFrame(2, false);
    manager->RefileKeyFrameData(moved);
    EXPECT_THAT(Stored(), ElementsAre(FrameRange(0, 4), FrameRange(2, 14))) << "nothing is displaced";
    EXPECT_EQ(manager->StoredKeyFrameDataAtFrame(id, 11), moved);
    EXPECT_EQ(moved->SequenceNumber(), 2);

    moved->SetStartFrame(0, false);
    manager->RefileKeyFrameData(moved);
    EXPECT_THAT(Stored(), ElementsAre(FrameRange(0, 14))) << "what stood there is replaced";

    const COrvelPtr<COrvelKeyFrameData> unstored = Data(20, 25);
    manager->RefileKeyFrameData(unstored);
    EXPECT_EQ(unstored->SequenceNumber(), 3) << "a data that was not here is stored and numbered";
    manager->RefileKeyFrameData(nullptr);
    EXPECT_THAT(Stored(), ElementsAre(FrameRange(0, 14), FrameRange(20, 25)));
    EXPECT_EQ(manager->LastFrame(), 14) << "the range of the timeline does not change";
}

TEST_F(KeyFrameStorage, RefilesMovedTimelinesAsByASearchForEachData)
{
    std::mt19937 random(20261123);
    const auto upTo = [&random](int last) { return std::uniform_int_distribution<int>(0, last)(random); };
    KeyFrameDataByFrame model;
    const auto refile = [&](const COrvelPtr<COrvelKeyFrameData>& data) {
        std::erase_if(model, [&](const auto& stored) { return stored.second == data; });
        model[data->StartFrame()] = data;
        manager->RefileKeyFrameData(data);
    };
    for (int round = 0; round < 60; ++round) {
        SCOPED_TRACE(round);
        Add({{10 * upTo(30), 300}});
        for (int k = 0; k < 20; ++k)
            Add({{10 * k, 10 * k + upTo(9)}});
        KeyFrameDataList list;
        manager->ListAllKeyFrameData(list);
        model.clear();
        for (const COrvelPtr<COrvelKeyFrameData>& data : list)
            model[data->StartFrame()] = data;
        // By the distance of the data, so that each replaces the next one, or by any other.
        const int distance = 10 * upTo(2) + upTo(1);
        std::ranges::shuffle(list, random);
        for (const COrvelPtr<COrvelKeyFrameData>& data : list) {
            data->ShiftFrames(distance);
            refile(data);
            if (upTo(9) == 0) {
                KeyFrameDataList taken;
                manager->TakeKeyFrameDataInRange(100, 110, id, taken);
                std::erase_if(model, [&](const auto& one) { return std::ranges::count(taken, one.second) != 0; });
            }
        }
        KeyFrameDataList expected;
        for (const auto& [start, data] : model)
            expected.push_back(data);
        KeyFrameDataList got;
        manager->ListAllKeyFrameData(got);
        ASSERT_EQ(got, expected);
        manager->ClearKeyFrameData();
    }
}

TEST_F(KeyFrameStorage, TakesDataOutByFrame)
{
    Add({{0, 10}});
    const COrvelPtr<COrvelKeyFrameData> only = manager->TakeKeyFrameDataAt(id, 5);
    ASSERT_TRUE(only);
    EXPECT_EQ(only->EndFrame(), 10);
    EXPECT_EQ(only->ReferenceCount(), 1);
    EXPECT_FALSE(manager->HasKeyFrames()) << "an entity without data leaves";
    EXPECT_FALSE(manager->TakeKeyFrameDataAt(id, 5));

    Add({{0, 3}, {5, 9}, {12, 20}, {30, 40}});
    EXPECT_FALSE(manager->TakeKeyFrameDataAt(id, 4));
    KeyFrameDataList taken{only};
    manager->TakeKeyFrameDataInRange(9, 12, id, taken);
    manager->TakeKeyFrameDataInRange(50, 45, id, taken);
    EXPECT_THAT(Ranges(taken), ElementsAre(FrameRange(0, 10), FrameRange(5, 9), FrameRange(12, 20)));
    EXPECT_THAT(Stored(), ElementsAre(FrameRange(0, 3), FrameRange(30, 40)));
    manager->TakeKeyFrameDataInRange(0, 100, id, taken);
    EXPECT_FALSE(manager->HasKeyFrames());
}

TEST_F(KeyFrameStorage, TakesAllDataOfAnEntityWithTheirAliases)
{
    const COrvelID target = COrvelTransform::Create(&document)->ID();
    COrvelPtr<COrvelKeyFrameData> elsewhere = Data(5, 6);
    elsewhere->SetTargetEntityID(target);
    manager->AddKeyFrameData(elsewhere, true);
    Add({{0, 3}});
    EXPECT_EQ(manager->ResolveAlias(target), id);
    EXPECT_FALSE(manager->TakeKeyFrameDataAt(target, 5)) << "single frames are not taken through an alias";

    EXPECT_THAT(Ranges(manager->TakeAllKeyFrameDataOf(target)), ElementsAre(FrameRange(0, 3), FrameRange(5, 6)));
    EXPECT_EQ(manager->ResolveAlias(target), target);
    EXPECT_FALSE(manager->HasKeyFrames());
    EXPECT_THAT(manager->TakeAllKeyFrameDataOf(id), IsEmpty());
}

TEST_F(KeyFrameStorage, RemovesWhatStandsAtTheStartFrame)
{
    Add({{0, 3}, {5, 9}, {12, 20}});
    manager->RemoveKeyFrameData({nullptr, Data(5, 6), Data(13, 20), Data(12, 12)});
    EXPECT_THAT(Stored(), ElementsAre(FrameRange(0, 3)));
    manager->RemoveKeyFrameData(COrvelPtr<COrvelKeyFrameData>());
    manager->RemoveKeyFrameData(Data(0, 0));
    EXPECT_FALSE(manager->HasKeyFrames());
    manager->RemoveKeyFrameData(Data(0, 0));
}

TEST_F(KeyFrameStorage, TakesAllDataAfterPuttingTheSceneIntoFrameZero)
{
    Store(0, 0, COrvelKeyFrameDataTransform::CreateTransformKeyFrameData(id, Shift(7.0, 11.0, 13.0)));
    Store(10, 10, COrvelKeyFrameDataTransform::CreateTransformKeyFrameData(id, Shift(2.0, 3.0, 5.0)));
    COrvelSceneNode* const node = COrvelSceneNode::Create(&document, "late");
    Store(4, 8, COrvelKeyFrameDataHideShow::CreateHideShowKeyFrameData(node->ID(), true));
    manager->SetCurrentFrame(6);
    manager->SetFirstFrame(-3);

    EXPECT_THAT(Ranges(manager->TakeAllKeyFrameData()),
                ElementsAre(FrameRange(4, 8), FrameRange(0, 0), FrameRange(10, 10)))
        << "entities in id order";
    EXPECT_EQ(transform->Matrix(), Shift(7.0, 11.0, 13.0));
    EXPECT_TRUE(node->IsHidden()) << "before the first data its state holds";
    EXPECT_FALSE(manager->HasKeyFrames());
    EXPECT_EQ(manager->CurrentFrame(), 0);
    EXPECT_EQ(manager->FirstFrame(), 0);
    EXPECT_EQ(manager->LastFrame(), 10);

    const auto later = Store(1, 2, COrvelKeyFrameDataTransform::CreateTransformKeyFrameData(id, COrvelMatrix()));
    EXPECT_EQ(later->SequenceNumber(), 3) << "numbering goes on";
}

TEST_F(KeyFrameStorage, SharesDataWithThoseWhoHoldThem)
{
    int alive = 0;
    const auto store = [&](int start, int end) { return Store(start, end, new CountedData(id, alive)); };
    store(0, 5);
    const auto held = store(10, 15);
    EXPECT_EQ(held->ReferenceCount(), 2);
    {
        COrvelPtr<COrvelKeyFrameData> over = Over(3, 12, new CountedData(id, alive));
        const KeyFrameDataList displaced = manager->AddKeyFrameData(over, true);
        EXPECT_EQ(displaced.size(), 2U);
        EXPECT_EQ(alive, 3) << "displaced data live in the result";
    }
    EXPECT_EQ(alive, 2) << "with the result goes the one that nobody else holds";
    EXPECT_EQ(held->ReferenceCount(), 1);

    const auto kept = store(20, 25);
    store(30, 35);
    COrvelKeyFrameManager::SetInstance(new COrvelKeyFrameManager);
    EXPECT_EQ(alive, 2) << "the old manager is destroyed, and what only it held";
    EXPECT_EQ(kept->ReferenceCount(), 1);
    EXPECT_EQ(kept->StartFrame(), 20);
    manager = nullptr;
}

/// The same timeline as a plain list, searched from end to end.
class TimelineModel
{
public:
    std::vector<COrvelPtr<COrvelKeyFrameData>> TakeOverlapping(int first, int last)
    {
        std::vector<COrvelPtr<COrvelKeyFrameData>> taken;
        for (int frame = first; frame <= last; ++frame) {
            if (const COrvelPtr<COrvelKeyFrameData> data = At(frame)) {
                taken.push_back(data);
                std::erase(list, data);
            }
        }
        return taken;
    }

    COrvelPtr<COrvelKeyFrameData> At(int frame) const
    {
        for (const COrvelPtr<COrvelKeyFrameData>& data : list) {
            if (data->StartFrame() <= frame && frame <= data->EndFrame())
                return data;
        }
        return nullptr;
    }

    std::vector<COrvelPtr<COrvelKeyFrameData>> list;
};

constexpr int frameCount = 60;

void ExpectSameFrames(const COrvelKeyFrameManager& manager, const COrvelID& entity, const TimelineModel& model)
{
    std::vector<int> expectedFrames;
    COrvelPtr<COrvelKeyFrameData> next;
    for (int frame = frameCount + 5; frame >= -2; --frame) {
        const COrvelPtr<COrvelKeyFrameData> expected = model.At(frame);
        if (expected)
            next = expected;
        if (expected)
            expectedFrames.insert(expectedFrames.begin(), frame);
        ASSERT_EQ(manager.StoredKeyFrameDataAtFrame(entity, frame), expected) << "frame " << frame;
        ASSERT_EQ(manager.StoredKeyFrameDataAtOrAfter(entity, frame), next) << "frame " << frame;
    }
    std::vector<int> frames;
    manager.ListKeyFrameNumbers(entity, frames);
    ASSERT_EQ(frames, expectedFrames);
}

void ExpectSameHolders(const COrvelKeyFrameManager& manager, const COrvelID& entity, const TimelineModel& model)
{
    KeyFrameDataList stored;
    manager.ListKeyFrameDataOf(entity, stored);
    ASSERT_EQ(stored.size(), model.list.size());
    for (const COrvelPtr<COrvelKeyFrameData>& data : model.list)
        ASSERT_EQ(data->ReferenceCount(), 3) << "held by the manager, the model and this list";
}

TEST_F(KeyFrameStorage, AgreesWithAnExhaustiveModelOverRandomEdits)
{
    std::mt19937 random(20261122);
    const auto upTo = [&random](int last) { return std::uniform_int_distribution<int>(0, last)(random); };
    const COrvelID entities[] = {id, COrvelTransform::Create(&document)->ID()};
    TimelineModel models[2];
    for (int edit = 0; edit < 600; ++edit) {
        SCOPED_TRACE(edit);
        const auto which = static_cast<std::size_t>(upTo(1));
        const COrvelID& entity = entities[which];
        TimelineModel& model = models[which];
        const int first = upTo(frameCount);
        const int last = std::min(frameCount, first + upTo(edit % 7 == 0 ? 25 : 6));
        KeyFrameDataList taken;
        KeyFrameDataList expected;
        switch (upTo(9)) {
        case 0:
            expected = model.TakeOverlapping(first, last);
            manager->TakeKeyFrameDataInRange(first, last, entity, taken);
            break;
        case 1:
            expected = model.TakeOverlapping(first, first);
            if (const auto one = manager->TakeKeyFrameDataAt(entity, first))
                taken.push_back(one);
            break;
        case 2:
            for (const COrvelPtr<COrvelKeyFrameData>& data : model.TakeOverlapping(first, first))
                manager->RemoveKeyFrameData(data);
            break;
        default: {
            COrvelPtr<COrvelKeyFrameData> added =
                Over(first, last, COrvelKeyFrameDataTransform::CreateTransformKeyFrameData(entity, COrvelMatrix()));
            expected = model.TakeOverlapping(first, last);
            taken = manager->AddKeyFrameData(added, true);
            model.list.push_back(added);
        }
        }
        ASSERT_EQ(taken, expected);
        taken.clear();
        expected.clear();
        ASSERT_NO_FATAL_FAILURE(ExpectSameFrames(*manager, entity, model));
        ASSERT_NO_FATAL_FAILURE(ExpectSameHolders(*manager, entity, model));
    }
    EXPECT_EQ(Stored().size(), models[0].list.size() + models[1].list.size());
}

TEST_F(KeyFrameStorage, FindsTheDataThatShareFramesWithAnInterval)
{
    KeyFrameDataByFrame data;
    for (const auto& [start, end] : {FrameRange(2, 4), FrameRange(5, 5), FrameRange(8, 12), FrameRange(20, 29)})
        data[start] = Data(start, end);
    for (int first = 0; first < 32; ++first) {
        for (int last = first - 1; last < 32; ++last) {
            std::vector<int> expected;
            for (const auto& [start, one] : data) {
                if (start <= last && one->EndFrame() >= first && first <= last)
                    expected.push_back(start);
            }
            std::vector<int> found;
            const KeyFrameRange range = FindKeyFrameRange(data, first, last);
            for (auto one = range.begin; one != range.end; ++one)
                found.push_back(one->first);
            ASSERT_EQ(found, expected) << first << " to " << last;
        }
    }
}

TEST_F(KeyFrameStorage, CopesWithTheLargestFrames)
{
    constexpr int largest = std::numeric_limits<int>::max();
    Add({{largest - 2, largest}});
    std::vector<int> frames;
    manager->ListKeyFrameNumbers(id, frames);
    EXPECT_THAT(frames, ElementsAre(largest - 2, largest - 1, largest));
    EXPECT_EQ(manager->LastFrame(), largest);

    COrvelKeyFrameManager record;
    record.SetFirstFrame(largest);
    record.SetLastFrame(largest);
    record.BakeTimeline();
    KeyFrameDataList baked;
    EXPECT_EQ(record.ListBakedKeyFrameData(baked), 1);
    EXPECT_THAT(Ranges(baked), ElementsAre(FrameRange(largest, largest)));
}

} // namespace
} // namespace Orvel
