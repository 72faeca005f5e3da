#include "tests/animation/KeyFrameFixture.h"

#include <limits>

namespace Orvel
{
namespace
{

class KeyFrameRanges : public KeyFrames
{
protected:
    /// What a manager with that range records of the process-wide one.
    static KeyFrameDataList Baked(int first, int last)
    {
        COrvelKeyFrameManager record;
        record.SetFirstFrame(first);
        record.SetLastFrame(last);
        record.BakeTimeline();
        EXPECT_FALSE(record.HasKeyFrames()) << "the record is kept beside the timeline";
        KeyFrameDataList baked{nullptr};
        const int count = record.ListBakedKeyFrameData(baked);
        EXPECT_EQ(static_cast<std::size_t>(count) + 1, baked.size()) << "what the list holds already stays";
        baked.erase(baked.begin());
        return baked;
    }
};

TEST_F(KeyFrameRanges, SpanFromTheFirstStartToTheLastEnd)
{
    const KeyFrameDataList list{PlainOver(12, 20), nullptr, PlainOver(5, 9), PlainOver(7, 15)};
    struct Case
    {
        KeyFrameDataList list;
        FrameRange before, after;
    };
    const Case cases[] = {{{}, {0, 0}, {0, 0}},     {{nullptr}, {0, 0}, {0, 0}}, {list, {0, 0}, {5, 20}},
                          {list, {0, 99}, {5, 20}}, {list, {99, 0}, {5, 20}},    {list, {1, 99}, {1, 99}}};
    for (const Case& asked : cases) {
        FrameRange span = asked.before;
        COrvelKeyFrameManager::FrameSpan(asked.list, span);
        EXPECT_EQ(span, asked.after) << asked.before.first << " to " << asked.before.second;
    }
    EXPECT_EQ(COrvelKeyFrameManager::FrameLength(list), 15);
    EXPECT_EQ(COrvelKeyFrameManager::FrameLength({}), 0);
}

TEST_F(KeyFrameRanges, MoveToFrameZeroTogether)
{
    KeyFrameDataList list{nullptr, PlainOver(5, 9), PlainOver(12, 20)};
    list[2]->SetTiming(12, 20, 14, 17, 0, 0);
    list[2]->SetWorkingFrame(19);
    COrvelKeyFrameManager::MoveToFrameZero(list);
    EXPECT_EQ(FramesOf(*list[1]), std::vector<int>({0, 4, 0, 0, 0}));
    EXPECT_EQ(FramesOf(*list[2]), std::vector<int>({7, 15, 9, 12, 7}));
    KeyFrameDataList none;
    COrvelKeyFrameManager::MoveToFrameZero(none);
}

TEST_F(KeyFrameRanges, LoopWithoutASeamWhenBothEndsShowTheSame)
{
    StorePlain(0, 10, Shift(2, 3, 5));
    EXPECT_TRUE(manager->IsSeamlessLoop()) << "one data is at both ends";
    const auto last = StorePlain(11, 20, Shift(2, 3, 5.002));
    EXPECT_FALSE(manager->IsSeamlessLoop());
    last->SetStoredMatrix(Shift(2, 3.0009, 5));
    EXPECT_TRUE(manager->IsSeamlessLoop());

    const COrvelID other = NewTransform();
    Store(0, 4, Plain::CreateTransformKeyFrameData(other, {}));
    EXPECT_FALSE(manager->IsSeamlessLoop()) << "only one of the ends has a state of the second entity";
    const auto turned = Store(15, 20, Camera::CreateCameraKeyFrameData(other, {}, 40, 2, false, 3, 5));
    EXPECT_TRUE(manager->IsSeamlessLoop()) << "cameras are placements too";
    turned->SetStoredMatrix(Shift(0, 0, -0.5));
    EXPECT_FALSE(manager->IsSeamlessLoop());
}

TEST_F(KeyFrameRanges, LoopByTheRulesOfEachKindOfData)
{
    const COrvelID other = NewTransform();
    const COrvelBasicGeneralMaterial looks;
    const COrvelBasicPointLight glow;
    const COrvelBasicVectorsTable positions({{1, 2, 3}});
    const auto hide = [&](bool hidden) { return HideShow::CreateHideShowKeyFrameData(id, hidden); };
    const auto morph = [&](const COrvelID& of, double w) { return Morph::CreateMorphKeyFrameData(id, of, w); };
    const auto paint = [&](auto* shown) { return Material::CreateMaterialKeyFrameData(id, shown, id); };
    const auto shine = [&](auto* shown) { return Light::CreateLightKeyFrameData(id, shown, id); };
    const auto bend = [&](auto* shown) { return Vertices::CreateVerticesKeyFrameData(id, shown); };
    constexpr COrvelBasicMaterial* noLooks = nullptr;
    constexpr COrvelBasicLight* noLight = nullptr;
    constexpr COrvelBasicVectorsTable* noTable = nullptr;
    struct Case
    {
        const char* what;
        COrvelKeyFrameData* first;
        COrvelKeyFrameData* last;
        bool seamless;
    };
    const Case cases[] = {
        {"hidden at both ends", hide(true), hide(true), true},
        {"hidden at one end", hide(true), hide(false), false},
        {"weights near each other", morph(id, 0.25), morph(id, 0.2509), true},
        {"weights apart", morph(id, 0.25), morph(id, 0.252), false},
        {"weights of two objects", morph(id, 0.25), morph(other, 0.25), false},
        {"equal materials, but not one", paint(&looks), paint(&looks), false},
        {"no material", paint(noLooks), paint(noLooks), true},
        {"equal lights, but not one", shine(&glow), shine(&glow), false},
        {"no light", shine(noLight), shine(noLight), true},
        {"equal tables, but not one", bend(&positions), bend(&positions), false},
        {"no table", bend(noTable), bend(noTable), true},
        {"two kinds", hide(false), paint(noLooks), false},
    };
    for (const Case& one : cases) {
        Store(0, 2, one.first);
        EXPECT_TRUE(manager->IsSeamlessLoop()) << "the very same object is at both ends: " << one.what;
        Store(3, 5, one.last);
        EXPECT_EQ(manager->IsSeamlessLoop(), one.seamless) << one.what;
        manager->ClearKeyFrameData();
    }
}

TEST_F(KeyFrameRanges, BakeTheSceneFrameByFrame)
{
    StorePlain(0, 3, Shift(2, 3, 5));
    StorePlain(7, 9, Shift(6, 3, 5));
    const COrvelID eye = NewTransform();
    Store(0, 8, Camera::CreateCameraKeyFrameData(eye, {}, 40, 2, false, 3, 5));
    const KeyFrameDataList baked = Baked(3, 5);
    ASSERT_EQ(baked.size(), 6U);
    for (int frame = 3; frame <= 5; ++frame) {
        const auto position = static_cast<std::size_t>(2 * (frame - 3));
        const auto* const moved = dynamic_cast<const Plain*>(baked[position].Get());
        ASSERT_NE(moved, nullptr) << "entities in id order, frame " << frame;
        EXPECT_EQ(moved->StartFrame(), frame);
        EXPECT_EQ(moved->EndFrame(), frame);
        EXPECT_NEAR(moved->Matrix().M(0, 3), frame - 1, 1e-12);
        const DataPtr& camera = baked[position + 1];
        EXPECT_EQ(camera->AnimatedEntityID(), eye);
        EXPECT_EQ(camera->EndFrame(), 8) << "cameras keep their range";
    }
    EXPECT_TRUE(Baked(6, 5).empty()) << "an inverted range records nothing";
}

TEST_F(KeyFrameRanges, BakeLightsThatCannotBeBlendedWithoutTouchingTheScene)
{
    const COrvelBasicPointLight point;
    const COrvelBasicDirectionalLight sun;
    const auto first = Store(0, 2, Light::CreateLightKeyFrameData(id, &point, id));
    Store(8, 9, Light::CreateLightKeyFrameData(id, &sun, id));
    const KeyFrameDataList baked = Baked(4, 5);
    ASSERT_EQ(baked.size(), 2U);
    EXPECT_EQ(baked[0]->StartFrame(), 4);
    EXPECT_EQ(baked[1]->StartFrame(), 5);
    EXPECT_EQ(first->StartFrame(), 0);
    EXPECT_EQ(first->EndFrame(), 2);
}

TEST_F(KeyFrameRanges, ReachTheLargestFrame)
{
    constexpr int largest = std::numeric_limits<int>::max();
    StorePlain(largest - 1, largest);
    std::vector<int> frames;
    manager->ListKeyFrameNumbers(id, frames);
    EXPECT_EQ(frames, std::vector<int>({largest - 1, largest}));
    EXPECT_EQ(Baked(largest, largest).size(), 1U);
}

} // namespace
} // namespace Orvel
