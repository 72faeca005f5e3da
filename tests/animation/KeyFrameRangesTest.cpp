#include "animation/COrvelKeyFrameDataHideShow.h"
#include "animation/COrvelKeyFrameDataLight.h"
#include "animation/COrvelKeyFrameDataMaterial.h"
#include "animation/COrvelKeyFrameDataMorph.h"
#include "animation/COrvelKeyFrameDataTransform.h"
#include "animation/COrvelKeyFrameDataTransformCamera.h"
#include "animation/COrvelKeyFrameDataVertices.h"
#include "animation/COrvelKeyFrameManager.h"
#include "animation/KeyFrameFixture.h"
#include "platform/core/COrvel3DObject.h"
#include "platform/core/COrvelBasicCamera.h"
#include "platform/core/COrvelBasicGeneralMaterial.h"
#include "platform/core/COrvelBasicPointLight.h"
#include "platform/core/COrvelGeometry.h"
#include "platform/core/COrvelLight.h"
#include "platform/core/COrvelMaterial.h"
#include "platform/core/COrvelVerticiesTable.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Orvel
{
namespace
{

using testing::ElementsAre;
using testing::IsEmpty;

class KeyFrameRanges : public KeyFrames
{
protected:
    COrvelKeyFrameDataTransform* Placement(const COrvelMatrix& matrix = {}) const
    {
        return COrvelKeyFrameDataTransform::CreateTransformKeyFrameData(id, matrix);
    }
    COrvelPtr<COrvelKeyFrameData> Range(int start, int end) const { return Over(start, end, Placement()); }
};

TEST_F(KeyFrameRanges, SpanFromTheFirstStartToTheLastEnd)
{
    const KeyFrameDataList list{Range(12, 20), nullptr, Range(5, 9), Range(7, 15)};
    FrameRange span;
    COrvelKeyFrameManager::FrameSpan({}, span);
    COrvelKeyFrameManager::FrameSpan({nullptr}, span);
    EXPECT_EQ(span, FrameRange(0, 0));
    COrvelKeyFrameManager::FrameSpan(list, span);
    EXPECT_EQ(span, FrameRange(5, 20));
    span = {0, 99};
    COrvelKeyFrameManager::FrameSpan(list, span);
    EXPECT_EQ(span, FrameRange(5, 20)) << "one frame other than 0 does not keep the span";
    span = {1, 99};
    COrvelKeyFrameManager::FrameSpan(list, span);
    EXPECT_EQ(span, FrameRange(1, 99));

    EXPECT_EQ(COrvelKeyFrameManager::FrameLength(list), 15);
    EXPECT_EQ(COrvelKeyFrameManager::FrameLength({}), 0);
}

TEST_F(KeyFrameRanges, MoveToFrameZeroTogether)
{
    KeyFrameDataList list{nullptr, Range(5, 9), Range(12, 20)};
    list[2]->SetConstantSpeedStartFrame(14);
    list[2]->SetConstantSpeedEndFrame(17);
    list[2]->SetWorkingFrame(19);
    COrvelKeyFrameManager::MoveToFrameZero(list);
    EXPECT_EQ(list[1]->StartFrame(), 0);
    EXPECT_EQ(list[1]->EndFrame(), 4);
    EXPECT_EQ(list[2]->StartFrame(), 7);
    EXPECT_EQ(list[2]->EndFrame(), 15);
    EXPECT_EQ(list[2]->ConstantSpeedStartFrame(), 9);
    EXPECT_EQ(list[2]->ConstantSpeedEndFrame(), 12);
    EXPECT_EQ(list[2]->WorkingFrame(), 7);

    // Data of a manager are found where they were until they are filed anew.
    const auto stored = Store(30, 34, Placement());
    KeyFrameDataList held{stored};
    COrvelKeyFrameManager::MoveToFrameZero(held);
    manager->RefileKeyFrameData(held.front());
    EXPECT_EQ(manager->StoredKeyFrameDataAtFrame(id, 3), stored);
    EXPECT_FALSE(manager->StoredKeyFrameDataAtOrAfter(id, 5));
    KeyFrameDataList none;
    COrvelKeyFrameManager::MoveToFrameZero(none);
    EXPECT_THAT(none, IsEmpty());
}

TEST_F(KeyFrameRanges, LoopWithoutASeamWhenBothEndsShowTheSame)
{
    Store(0, 10, Placement(Shift(2.0, 3.0, 5.0)));
    EXPECT_TRUE(manager->IsSeamlessLoop()) << "one data is at both ends";
    const auto last = Store(11, 20, Placement(Shift(2.0, 3.0, 5.002)));
    EXPECT_FALSE(manager->IsSeamlessLoop());
    last->SetStoredMatrix(Shift(2.0, 3.0009, 5.0));
    EXPECT_TRUE(manager->IsSeamlessLoop());

    COrvelTransform* const other = COrvelTransform::Create(&document);
    Store(0, 4, COrvelKeyFrameDataTransform::CreateTransformKeyFrameData(other->ID(), COrvelMatrix()));
    EXPECT_FALSE(manager->IsSeamlessLoop()) << "only one of the ends has a state of the second entity";
    const auto turned = Store(15, 20,
                              COrvelKeyFrameDataTransformCamera::CreateCameraKeyFrameData(other->ID(), COrvelMatrix(),
                                                                                          40.0, 2.0, false, 3.0, 5.0));
    EXPECT_TRUE(manager->IsSeamlessLoop()) << "cameras are placements too";
    turned->SetStoredMatrix(Shift(0.0, 0.0, -0.5));
    EXPECT_FALSE(manager->IsSeamlessLoop());
}

TEST_F(KeyFrameRanges, LoopByTheRulesOfEachKindOfData)
{
    COrvelGeometry* const shape = COrvelGeometry::Create(&document, {0.0, 0.0, 0.0, 3.0, 0.0, 0.0}, {});
    const COrvelID object = COrvel3DObject::Create(&document)->ID();
    const COrvelID otherObject = COrvel3DObject::Create(&document)->ID();
    const COrvelID material = COrvelMaterial::Create(&document)->ID();
    const COrvelID light = COrvelLight::Create(&document)->ID();
    const COrvelID table = shape->VerticiesTable()->ID();
    const COrvelBasicGeneralMaterial looks;
    const COrvelBasicPointLight glow;
    const COrvelBasicVectorsTable positions({{1.0, 2.0, 3.0}});
    const auto hide = [&](bool hidden) {
        return COrvelKeyFrameDataHideShow::CreateHideShowKeyFrameData(object, hidden);
    };
    const auto morph = [&](const COrvelID& of, double weight) {
        return COrvelKeyFrameDataMorph::CreateMorphKeyFrameData(shape->ID(), of, weight);
    };
    const auto paint = [&](const COrvelBasicMaterial* shown) {
        return COrvelKeyFrameDataMaterial::CreateMaterialKeyFrameData(material, shown, material);
    };
    const auto shine = [&](const COrvelBasicLight* shown) {
        return COrvelKeyFrameDataLight::CreateLightKeyFrameData(light, shown, light);
    };
    const auto bend = [&](const COrvelBasicVectorsTable* shown) {
        return COrvelKeyFrameDataVertices::CreateVerticesKeyFrameData(table, shown);
    };
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
        {"weights near each other", morph(object, 0.25), morph(object, 0.2509), true},
        {"weights apart", morph(object, 0.25), morph(object, 0.252), false},
        {"weights of two objects", morph(object, 0.25), morph(otherObject, 0.25), false},
        {"equal materials, but not one", paint(&looks), paint(&looks), false},
        {"no material", paint(nullptr), paint(nullptr), true},
        {"equal lights, but not one", shine(&glow), shine(&glow), false},
        {"no light", shine(nullptr), shine(nullptr), true},
        {"equal tables, but not one", bend(&positions), bend(&positions), false},
        {"no table", bend(nullptr), bend(nullptr), true},
    };
    for (const Case& one : cases) {
        SCOPED_TRACE(one.what);
        Store(0, 2, one.first);
        EXPECT_TRUE(manager->IsSeamlessLoop()) << "the very same object is at both ends";
        Store(3, 5, one.last);
        EXPECT_EQ(manager->IsSeamlessLoop(), one.seamless);
        manager->ClearKeyFrameData();
    }

    // Two kinds of data never match, whatever they hold.
    Store(0, 2, hide(false));
    Store(3, 5, paint(nullptr));
    EXPECT_FALSE(manager->IsSeamlessLoop());
}

TEST_F(KeyFrameRanges, BakeTheSceneFrameByFrame)
{
    Store(0, 3, Placement(Shift(2.0, 3.0, 5.0)));
    Store(7, 9, Placement(Shift(6.0, 3.0, 5.0)));
    COrvelTransform* const cameraTransform = COrvelTransform::Create(&document);
    Store(0, 8,
          COrvelKeyFrameDataTransformCamera::CreateCameraKeyFrameData(cameraTransform->ID(), COrvelMatrix(), 40.0, 2.0,
                                                                      false, 3.0, 5.0));
    COrvelKeyFrameManager record;
    record.SetFirstFrame(3);
    record.SetLastFrame(5);
    record.BakeTimeline();
    KeyFrameDataList baked{nullptr};
    ASSERT_EQ(record.ListBakedKeyFrameData(baked), 6);
    ASSERT_EQ(baked.size(), 7U) << "what the list holds already stays";
    for (int frame = 3; frame <= 5; ++frame) {
        const auto position = static_cast<std::size_t>(2 * (frame - 3) + 1);
        const auto* const moved = dynamic_cast<const COrvelKeyFrameDataTransform*>(baked[position].Get());
        ASSERT_NE(moved, nullptr) << "entities in id order, frame " << frame;
        EXPECT_EQ(moved->StartFrame(), frame);
        EXPECT_EQ(moved->EndFrame(), frame);
        EXPECT_NEAR(moved->Matrix().M(0, 3), 2.0 + (frame - 3), 1e-12);
        const COrvelPtr<COrvelKeyFrameData>& camera = baked[position + 1];
        ASSERT_EQ(camera->Type(), eKeyFrameDataType_TransformCamera);
        EXPECT_EQ(camera->AnimatedEntityID(), cameraTransform->ID());
    }
    record.SetFirstFrame(6);
    record.BakeTimeline();
    EXPECT_EQ(record.ListBakedKeyFrameData(baked), 6) << "an inverted range records nothing";
    EXPECT_FALSE(record.HasKeyFrames()) << "the record is kept beside the timeline";
}

TEST_F(KeyFrameRanges, BakeLightsThatCannotBeBlendedWithoutTouchingTheScene)
{
    COrvelLight* const light = COrvelLight::Create(&document);
    const COrvelBasicPointLight point;
    const COrvelBasicDirectionalLight sun;
    const auto first = Store(0, 2, COrvelKeyFrameDataLight::CreateLightKeyFrameData(light->ID(), &point, light->ID()));
    Store(8, 9, COrvelKeyFrameDataLight::CreateLightKeyFrameData(light->ID(), &sun, light->ID()));
    COrvelKeyFrameManager record;
    record.SetFirstFrame(4);
    record.SetLastFrame(5);
    record.BakeTimeline();
    KeyFrameDataList baked;
    ASSERT_EQ(record.ListBakedKeyFrameData(baked), 2);
    EXPECT_EQ(baked[0]->StartFrame(), 4);
    EXPECT_EQ(baked[1]->StartFrame(), 5);
    EXPECT_EQ(first->StartFrame(), 0);
    EXPECT_EQ(first->EndFrame(), 2);
    EXPECT_EQ(manager->StoredKeyFrameDataAtFrame(light->ID(), 2), first);
}

} // namespace
} // namespace Orvel
