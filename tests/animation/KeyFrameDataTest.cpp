#include "animation/COrvelKeyFrameDataHideShow.h"
#include "animation/COrvelKeyFrameDataLight.h"
#include "animation/COrvelKeyFrameDataMaterial.h"
#include "animation/COrvelKeyFrameDataMorph.h"
#include "animation/COrvelKeyFrameDataTransformBSplineFollower.h"
#include "animation/COrvelKeyFrameDataTransformRoundTable.h"
#include "animation/COrvelKeyFrameDataTransformSphericalCamera.h"
#include "animation/COrvelKeyFrameDataVertices.h"
#include "platform/core/COrvelBasicGeneralMaterial.h"
#include "platform/core/COrvelBasicPointLight.h"
#include "tests/animation/KeyFrameFixture.h"
#include "tests/support/VirtualFunctionSlot.h"

#include <gmock/gmock.h>

#include <climits>
#include <limits>
#include <memory>
#include <string>
#include <vector>

namespace Orvel
{

namespace
{

using testing::ElementsAre;
using testing::HasSubstr;

using Transform = COrvelKeyFrameDataTransform;
using Camera = COrvelKeyFrameDataTransformCamera;
using SphericalCamera = COrvelKeyFrameDataTransformSphericalCamera;
using RoundTable = COrvelKeyFrameDataTransformRoundTable;
using Follower = COrvelKeyFrameDataTransformBSplineFollower;

/// Start, end, constant-speed start and end, working frame.
std::vector<int> FramesOf(const COrvelKeyFrameData& data)
{
    return {data.StartFrame(), data.EndFrame(), data.ConstantSpeedStartFrame(), data.ConstantSpeedEndFrame(),
            data.WorkingFrame()};
}

class KeyFrameData : public KeyFrames
{
protected:
    COrvelPtr<Transform> Plain() { return Transform::CreateTransformKeyFrameData(id, Shift(2, 3, 5)); }

    /// [3, 7] at constant speed from 4 to 6, working frame 5.
    COrvelPtr<Transform> WithFrames()
    {
        const COrvelPtr<Transform> data = Over(3, 7, Plain().Get());
        data->SetConstantSpeedStartFrame(4);
        data->SetConstantSpeedEndFrame(6);
        data->SetWorkingFrame(5);
        return data;
    }
};

#ifdef ORVEL_TESTS_SEE_VIRTUAL_SLOTS

TEST_F(KeyFrameData, HasItsVirtualFunctionsInThePromisedOrder)
{
    using Data = COrvelKeyFrameData;
    EXPECT_EQ(Slot(&Data::MakeCopy), 4);
    EXPECT_EQ(Slot(&Data::Type), 12);
    EXPECT_EQ(Slot(&Data::RestoreEntity), 13);
    EXPECT_EQ(Slot(&Data::ApplyToEntity), 14);
    EXPECT_EQ(Slot(&Data::Clone), 15);
    EXPECT_EQ(Slot(&Data::SetStartFrame), 16);
    EXPECT_EQ(Slot(&Data::SetEndFrame), 17);
    EXPECT_EQ(Slot(&Data::ShiftFrames), 18);
    EXPECT_EQ(Slot(&Data::ScaleFrames), 19);
    EXPECT_EQ(Slot(&Data::Refresh), 20);
    EXPECT_EQ(Slot(&Data::IsApplicable), 21);
    EXPECT_EQ(Slot(&SphericalCamera::Clone), 15) << "another result type takes no slot of its own";
    EXPECT_EQ(Slot(&Transform::MultiplyMatrix), 22);
    EXPECT_EQ(Slot(&Follower::Matrix), 23);
    EXPECT_EQ(Slot(&Follower::RebaseOnPath), 24);
}

#endif

TEST_F(KeyFrameData, StartsWithoutFramesAndFiledUnderItsAlias)
{
    const COrvelPtr<Transform> data = Plain();
    EXPECT_THAT(FramesOf(*data), ElementsAre(0, 0, 0, 0, 0));
    EXPECT_EQ(data->ReferenceCount(), 1);
    EXPECT_EQ(data->SequenceNumber(), 0);
    EXPECT_FALSE(data->IsInCollapsingGroup());
    EXPECT_TRUE(data->IsApplicable());

    COrvelTransform* const other = COrvelTransform::Create(&document);
    COrvelPtr<COrvelKeyFrameData> redirected = Plain();
    redirected->SetTargetEntityID(other->ID());
    manager->AddKeyFrameData(redirected, false);
    data->SetEntityID(other->ID());
    EXPECT_EQ(data->AnimatedEntityID(), id);
    EXPECT_EQ(data->TargetEntityID(), id);

    const COrvelPtr<Transform> elsewhere(Transform::CreateTransformKeyFrameData(other->ID(), {}));
    EXPECT_EQ(elsewhere->AnimatedEntityID(), id);
}

TEST_F(KeyFrameData, BelongsToACollapsingGroupWithBothIds)
{
    const COrvelPtr<Transform> data = Plain();
    COrvelUUID uuid;
    uuid.Generate();
    data->SetOwnerGuid(uuid);
    EXPECT_FALSE(data->IsInCollapsingGroup());
    data->SetCollapsingGroupID(uuid);
    EXPECT_TRUE(data->IsInCollapsingGroup());
    data->SetOwnerGuid(COrvelUUID());
    EXPECT_FALSE(data->IsInCollapsingGroup());
}

TEST_F(KeyFrameData, KeepsItsFramesInOrderWhenTheyAreSet)
{
    struct Case
    {
        const char* what;
        void (*change)(COrvelKeyFrameData& data);
        int result[5];
    };
    const Case cases[] = {
        {"start inside", [](auto& data) { EXPECT_EQ(data.SetStartFrame(4, false), 4); }, {4, 7, 4, 6, 5}},
        {"start behind the working frame", [](auto& data) { data.SetStartFrame(6, false); }, {6, 7, 4, 6, 6}},
        {"start behind the end", [](auto& data) { data.SetStartFrame(9, false); }, {9, 7, 4, 6, 9}},
        {"start pushes the end", [](auto& data) { data.SetStartFrame(9, true); }, {9, 9, 4, 6, 9}},
        {"negative start", [](auto& data) { EXPECT_EQ(data.SetStartFrame(-2, true), 0); }, {0, 7, 4, 6, 5}},
        {"end before the working frame", [](auto& data) { EXPECT_EQ(data.SetEndFrame(4, false), 4); }, {3, 4, 4, 6, 4}},
        {"end before the start", [](auto& data) { data.SetEndFrame(1, false); }, {3, 1, 4, 6, 1}},
        {"end pushes the start", [](auto& data) { data.SetEndFrame(1, true); }, {1, 1, 4, 6, 1}},
        {"negative end", [](auto& data) { EXPECT_EQ(data.SetEndFrame(-1, false), 0); }, {3, 0, 4, 6, 0}},
        {"constant speed starts later", [](auto& data) { data.SetConstantSpeedStartFrame(5); }, {3, 7, 5, 6, 5}},
        {"its start pushes its end", [](auto& data) { data.SetConstantSpeedStartFrame(7); }, {3, 7, 7, 7, 5}},
        {"its start stays inside", [](auto& data) { data.SetConstantSpeedStartFrame(99); }, {3, 7, 7, 7, 5}},
        {"its start before the range", [](auto& data) { data.SetConstantSpeedStartFrame(-5); }, {3, 7, 3, 6, 5}},
        {"its end pushes its start", [](auto& data) { data.SetConstantSpeedEndFrame(3); }, {3, 7, 3, 3, 5}},
        {"its end before the range", [](auto& data) { data.SetConstantSpeedEndFrame(0); }, {3, 7, 3, 3, 5}},
        {"its end stays inside", [](auto& data) { data.SetConstantSpeedEndFrame(8); }, {3, 7, 4, 7, 5}},
        {"all at once", [](auto& data) { data.SetFrame(12); }, {12, 12, 12, 12, 12}},
        {"working frame anywhere", [](auto& data) { data.SetWorkingFrame(-40); }, {3, 7, 4, 6, -40}},
        // The old working frame, 5, is raised to the new start, 13, and then moves too.
        {"shift", [](auto& data) { data.ShiftFrames(10); }, {13, 17, 14, 16, 23}},
        {"shift back", [](auto& data) { data.ShiftFrames(-3); }, {0, 4, 1, 3, 1}},
        {"shift below 0", [](auto& data) { data.ShiftFrames(-4); }, {3, 7, 4, 6, 5}},
        {"shift out of all frames", [](auto& data) { data.ShiftFrames(INT_MIN); }, {3, 7, 4, 6, 5}},
        {"shift to the last frame of all",
         [](auto& data) { data.ShiftFrames(INT_MAX); },
         {INT_MAX, INT_MAX, INT_MAX, INT_MAX, INT_MAX}},
        {"scale", [](auto& data) { data.ScaleFrames(1.5); }, {4, 10, 6, 9, 7}},
        {"shrink", [](auto& data) { data.ScaleFrames(0.5); }, {3, 7, 4, 6, 5}},
        {"no number", [](auto& data) { data.ScaleFrames(std::numeric_limits<double>::quiet_NaN()); }, {3, 7, 4, 6, 5}},
        {"scale without end",
         [](auto& data) {
             data.SetStartFrame(0, false);
             data.SetConstantSpeedStartFrame(0);
             data.ScaleFrames(std::numeric_limits<double>::infinity());
         },
         {0, INT_MAX, 0, INT_MAX, INT_MAX}},
        {"scale beyond all frames",
         [](auto& data) { data.ScaleFrames(1e300); },
         {INT_MAX, INT_MAX, INT_MAX, INT_MAX, INT_MAX}},
    };
    for (const Case& tried : cases) {
        const COrvelPtr<Transform> data = WithFrames();
        tried.change(*data);
        EXPECT_THAT(FramesOf(*data), testing::ElementsAreArray(tried.result)) << tried.what;
    }
}

TEST_F(KeyFrameData, ScalesAWorkingFrameIntoItsRange)
{
    const COrvelPtr<Transform> data = Over(3, 7, Plain().Get());
    data->SetWorkingFrame(100);
    data->ScaleFrames(2.0);
    EXPECT_EQ(data->WorkingFrame(), 14);
    data->SetWorkingFrame(-100);
    data->ScaleFrames(2.0);
    EXPECT_EQ(data->WorkingFrame(), 12);

    // An end that an inverted range carries below 0 stays at 0.
    const COrvelPtr<Transform> inverted = WithFrames();
    inverted->SetEndFrame(1, false);
    inverted->ShiftFrames(-2);
    EXPECT_THAT(FramesOf(*inverted), ElementsAre(1, 0, 2, 4, -2));
}

TEST_F(KeyFrameData, MeansItsOnlyFrameWhateverTheWorkingFrame)
{
    const COrvelPtr<Transform> data = WithFrames();
    EXPECT_EQ(data->EffectiveFrame(), 5);
    data->SetFrame(9);
    data->SetWorkingFrame(40);
    EXPECT_EQ(data->EffectiveFrame(), 9);
}

// --- copies

TEST_F(KeyFrameData, CopiesEverythingIntoAnObjectOfItsOwn)
{
    const COrvelPtr<Transform> data = WithFrames();
    COrvelUUID owner;
    owner.Generate();
    data->SetName("wheel");
    data->SetOwnerGuid(owner);
    data->SetEaseIn(2);
    data->SetEaseOut(1);
    data->SetSequenceNumber(6);
    data->SetPivot({7, 11, 13});
    COrvelTransform* const other = COrvelTransform::Create(&document);
    data->SetTargetEntityID(other->ID());

    const COrvelPtr<COrvelKeyFrameData> made = data->MakeCopy();
    EXPECT_EQ(made->ReferenceCount(), 1);
    const auto* const copy = dynamic_cast<const Transform*>(made.Get());
    ASSERT_TRUE(copy);
    EXPECT_EQ(FramesOf(*copy), FramesOf(*data));
    EXPECT_EQ(copy->Name(), COrvelString("wheel"));
    EXPECT_EQ(copy->OwnerGuid(), owner);
    EXPECT_EQ(copy->EaseIn(), 2);
    EXPECT_EQ(copy->EaseOut(), 1);
    EXPECT_EQ(copy->SequenceNumber(), 6);
    EXPECT_EQ(copy->Pivot(), COrvel3DVertex(7, 11, 13));
    EXPECT_EQ(copy->Matrix(), Shift(2, 3, 5));
    EXPECT_EQ(copy->TargetEntityID(), other->ID());
    EXPECT_EQ(copy->AnimatedEntityID(), id);

    // Restoring takes all of it back, for another entity too.
    const COrvelPtr<Transform> restored(Transform::CreateTransformKeyFrameData(other->ID(), {}));
    restored->RestoreFromCopy(made.Get());
    EXPECT_EQ(FramesOf(*restored), FramesOf(*data));
    EXPECT_EQ(restored->SequenceNumber(), 6);
    EXPECT_EQ(restored->Matrix(), Shift(2, 3, 5));
    EXPECT_EQ(restored->AnimatedEntityID(), other->ID()) << "identity is not state";
    EXPECT_EQ(restored->ReferenceCount(), 1);
    const COrvelPtr<COrvelKeyFrameDataHideShow> foreign(
        COrvelKeyFrameDataHideShow::CreateHideShowKeyFrameData(id, true));
    restored->RestoreFromCopy(foreign.Get());
    restored->RestoreFromCopy(nullptr);
    EXPECT_EQ(restored->Matrix(), Shift(2, 3, 5));
}

TEST_F(KeyFrameData, RestoresEveryClassOfTransform)
{
    const COrvelPtr<SphericalCamera> grid(SphericalCamera::CreateSphericalCameraKeyFrameData(id, {}));
    grid->SetRows(5);
    grid->SetDOF(true, 8.0, 2.8);
    const COrvelPtr<SphericalCamera> restoredGrid(SphericalCamera::CreateSphericalCameraKeyFrameData(id, {}));
    restoredGrid->RestoreFromCopy(grid.Get());
    EXPECT_EQ(restoredGrid->Rows(), 5);
    EXPECT_EQ(restoredGrid->DOFDistance(), 8.0);

    const COrvelPtr<Camera> camera(Camera::CreateCameraKeyFrameData(id, Shift(1, 2, 3), 40, 7, true, 8, 2.8));
    restoredGrid->RestoreFromCopy(camera.Get());
    EXPECT_EQ(restoredGrid->FieldOfView(), 30.0) << "another class changes nothing";
    const COrvelPtr<Camera> restoredCamera(Camera::CreateCameraKeyFrameData(id, {}));
    restoredCamera->RestoreFromCopy(camera.Get());
    EXPECT_EQ(restoredCamera->FieldOfView(), 40.0);

    const COrvelPtr<Follower> follower(Follower::CreateBSplineFollowerKeyFrameData(id));
    follower->SetBaseMatrix(Shift(1, 1, 2));
    const COrvelPtr<Follower> restoredFollower(Follower::CreateBSplineFollowerKeyFrameData(id));
    restoredFollower->RestoreFromCopy(follower.Get());
    EXPECT_EQ(restoredFollower->BaseMatrix(), Shift(1, 1, 2));

    const auto makeTable = [&](double angle) {
        return COrvelPtr<RoundTable>(
            RoundTable::CreateRoundTableKeyFrameData(id, {}, {}, 2, 5, angle, {}, {0, 0, 1}, 2, 5, 0, 0));
    };
    const COrvelPtr<RoundTable> restoredTable = makeTable(10.0);
    restoredTable->RestoreFromCopy(makeTable(70.0).Get());
    EXPECT_EQ(restoredTable->AngleInDegrees(), 70.0);
}

/// What every snapshot has in common.
void ExpectSnapshot(const COrvelKeyFrameData& snapshot, const COrvelKeyFrameData& data, int frame)
{
    EXPECT_THAT(FramesOf(snapshot), ElementsAre(frame, frame, frame, frame, frame));
    EXPECT_EQ(snapshot.TargetEntityID(), data.TargetEntityID());
    EXPECT_EQ(snapshot.AnimatedEntityID(), data.AnimatedEntityID());
    EXPECT_EQ(snapshot.SequenceNumber(), 0);
    EXPECT_EQ(snapshot.ReferenceCount(), 1);
}

TEST_F(KeyFrameData, TakesSnapshotsOfTransformsAsPlainOnes)
{
    const COrvelPtr<Transform> plain = WithFrames();
    plain->SetSequenceNumber(4);
    plain->SetPivot({7, 11, 13});
    plain->SetTargetEntityID(COrvelTransform::Create(&document)->ID());
    const COrvelPtr<Transform> snapshot(plain->Clone(true));
    ExpectSnapshot(*snapshot, *plain, 5);
    EXPECT_EQ(snapshot->Matrix(), Shift(2, 3, 5));
    EXPECT_EQ(snapshot->Pivot(), COrvel3DVertex());

    const COrvelPtr<RoundTable> table(
        RoundTable::CreateRoundTableKeyFrameData(id, Shift(2, 0, 0), {}, 10, 19, 90.0, {}, {0, 0, 1}, 10, 19, 0, 0));
    table->SetWorkingFrame(13);
    const COrvelPtr<Transform> turned(table->Clone(true));
    ExpectSnapshot(*turned, *table, 13);
    EXPECT_EQ(turned->Type(), eKeyFrameDataType_Transform);
    EXPECT_TRUE(
        turned->Matrix().IsNear(COrvelMatrix().DefineByRotation(0.5235987755982988, 0, 0, 1) * Shift(2, 0, 0), 1e-12))
        << "30 degrees";
    EXPECT_EQ(COrvelPtr<Transform>(table->Clone(false))->Type(), eKeyFrameDataType_TransformRoundTable);

    const COrvelPtr<Follower> follower = Over(3, 7, Follower::CreateBSplineFollowerKeyFrameData(id));
    follower->SetWorkingFrame(6);
    follower->SetBaseMatrix(Shift(1, 1, 2));
    follower->SetTargetEntityID(plain->TargetEntityID());
    const COrvelPtr<Transform> carried(follower->Clone(true));
    EXPECT_EQ(carried->TargetEntityID(), id) << "the animated entity";
    EXPECT_THAT(FramesOf(*carried), ElementsAre(6, 6, 6, 6, 6));
    EXPECT_EQ(carried->Matrix(), Shift(1, 1, 2));
}

TEST_F(KeyFrameData, TakesCamerasWholeEvenAsSnapshots)
{
    const COrvelPtr<SphericalCamera> grid(SphericalCamera::CreateSphericalCameraKeyFrameData(id, {}));
    grid->SetStartFrame(3, true);
    grid->SetEndFrame(7, true);
    grid->SetRows(4);
    grid->SetSequenceNumber(9);
    const COrvelPtr<SphericalCamera> copy(grid->Clone(true));
    EXPECT_EQ(FramesOf(*copy), FramesOf(*grid));
    EXPECT_EQ(copy->Rows(), 4);
    EXPECT_EQ(copy->SequenceNumber(), 9);
    const COrvelPtr<Camera> camera(Camera::CreateCameraKeyFrameData(id, {}));
    EXPECT_EQ(COrvelPtr<Camera>(camera->Clone(true))->Type(), eKeyFrameDataType_TransformCamera);
}

TEST_F(KeyFrameData, TakesSnapshotsWithCopiesOfWhatItHolds)
{
    const COrvelID target = COrvelTransform::Create(&document)->ID();
    COrvelBasicGeneralMaterial steel;
    steel.SetName("steel");
    const COrvelPtr<COrvelKeyFrameDataMaterial> material =
        Over(3, 7, COrvelKeyFrameDataMaterial::CreateMaterialKeyFrameData(id, &steel, target));
    const COrvelPtr<COrvelKeyFrameDataMaterial> looks(material->Clone(true));
    ExpectSnapshot(*looks, *material, 3);
    EXPECT_NE(looks->Material(), material->Material());
    EXPECT_EQ(looks->Material()->Name(), COrvelString("steel"));
    EXPECT_EQ(COrvelPtr<COrvelKeyFrameDataMaterial>(material->Clone(false))->Material()->Name(), COrvelString("steel"));

    COrvelBasicPointLight lamp;
    lamp.SetIntensity(3.0);
    const COrvelPtr<COrvelKeyFrameDataLight> light =
        Over(3, 7, COrvelKeyFrameDataLight::CreateLightKeyFrameData(id, &lamp, target));
    const COrvelPtr<COrvelKeyFrameDataLight> glow(light->Clone(true));
    ExpectSnapshot(*glow, *light, 3);
    EXPECT_NE(glow->Light(), light->Light());
    EXPECT_EQ(glow->Light()->Intensity(), 3.0);
    EXPECT_EQ(COrvelPtr<COrvelKeyFrameDataLight>(light->Clone(false))->Light()->Intensity(), 3.0);

    const COrvelPtr<COrvelKeyFrameDataHideShow> hide =
        Over(3, 7, COrvelKeyFrameDataHideShow::CreateHideShowKeyFrameData(id, true));
    const COrvelPtr<COrvelKeyFrameDataHideShow> hidden(hide->Clone(true));
    ExpectSnapshot(*hidden, *hide, 3);
    EXPECT_TRUE(hidden->IsHidden());

    const COrvelPtr<COrvelKeyFrameDataMorph> morph =
        Over(3, 7, COrvelKeyFrameDataMorph::CreateMorphKeyFrameData(id, target, 0.25));
    morph->SetWeights({1.0, 2.0});
    const COrvelPtr<COrvelKeyFrameDataMorph> weight(morph->Clone(true));
    ExpectSnapshot(*weight, *morph, 3);
    EXPECT_EQ(weight->ObjectID(), target);
    EXPECT_EQ(weight->Weight(), 0.25);
    EXPECT_TRUE(weight->Weights().empty());
    EXPECT_THAT(COrvelPtr<COrvelKeyFrameDataMorph>(morph->Clone(false))->Weights(), ElementsAre(1.0, 2.0));

    const COrvelPtr<COrvelKeyFrameDataMaterial> none(
        COrvelKeyFrameDataMaterial::CreateMaterialKeyFrameData(id, nullptr, target));
    EXPECT_EQ(COrvelPtr<COrvelKeyFrameDataMaterial>(none->Clone(true))->Material(), nullptr);
}

TEST_F(KeyFrameData, KnowsTheShapeOfEveryFrame)
{
    const COrvelBasicVectorsTable first({COrvel3DVertex(1, 2, 3)});
    const COrvelPtr<COrvelKeyFrameDataVertices> data =
        Over(5, 8, COrvelKeyFrameDataVertices::CreateVerticesKeyFrameData(id, &first));
    data->AddTable(nullptr);
    data->AddTable(std::make_unique<COrvelBasicVectorsTable>(std::vector{COrvel3DVertex(7, 11, 13)}));
    const auto shapeAt = [&](int frame) {
        data->SetWorkingFrame(frame);
        return data->TableAtWorkingFrame();
    };
    ASSERT_TRUE(shapeAt(5));
    EXPECT_EQ(*shapeAt(5), first);
    EXPECT_EQ(shapeAt(6), nullptr);
    EXPECT_EQ(shapeAt(8), nullptr) << "more frames than tables";
    EXPECT_EQ(shapeAt(4), nullptr);
    EXPECT_EQ(shapeAt(INT_MIN), nullptr);

    const COrvelPtr<COrvelKeyFrameDataVertices> nothing(data->Clone(true));
    EXPECT_EQ(nothing->TableCount(), 0u);
    const COrvelBasicVectorsTable* const shown = shapeAt(7);
    const COrvelPtr<COrvelKeyFrameDataVertices> snapshot(data->Clone(true));
    ExpectSnapshot(*snapshot, *data, 7);
    ASSERT_TRUE(snapshot->TableAtWorkingFrame());
    EXPECT_EQ(*snapshot->TableAtWorkingFrame(), *shown);
    EXPECT_NE(snapshot->TableAtWorkingFrame(), shown);
    const COrvelPtr<COrvelKeyFrameDataVertices> copy(data->Clone(false));
    EXPECT_EQ(copy->TableCount(), 3u);
    EXPECT_NE(copy->TableAtWorkingFrame(), shown);
    EXPECT_EQ(*copy->TableAtWorkingFrame(), *shown);
}

// --- property tables

/// "name type" of every member.
std::vector<std::string> PropertiesOf(COrvelKeyFrameData& data)
{
    int count = -7;
    COrvelString name("untouched");
    EXPECT_EQ(data.DataMemberSearch(COrvelDataMembersManager::countCommand, count, name, false), nullptr);
    std::vector<std::string> properties;
    for (int index = 0; index < count; ++index) {
        int type = 0;
        EXPECT_TRUE(data.DataMemberSearch(index, type, name, false)) << index;
        properties.push_back(name.toStdString() + " " + std::to_string(type));
    }
    int type = 55;
    EXPECT_EQ(data.DataMemberSearch(count, type, name, false), nullptr);
    EXPECT_EQ(data.DataMemberSearch(-2, type, name, true), nullptr);
    EXPECT_EQ(type, 55);
    return properties;
}

/// Writes a value into the member of that name and lets the data react, as a host's table does.
template <class Value>
void Enter(COrvelKeyFrameData& data, const char* wanted, Value value)
{
    int count = 0;
    COrvelString name;
    data.DataMemberSearch(COrvelDataMembersManager::countCommand, count, name, false);
    for (int index = 0; index < count; ++index) {
        int type = 0;
        void* const member = data.DataMemberSearch(index, type, name, false);
        if (name != COrvelString(wanted))
            continue;
        *static_cast<Value*>(member) = value;
        EXPECT_EQ(data.DataMemberSearch(index, type, name, true), member);
        return;
    }
    ADD_FAILURE() << "no member " << wanted;
}

TEST_F(KeyFrameData, PublishesTheMembersOfItsClass)
{
    EXPECT_THAT(PropertiesOf(*Plain()), ElementsAre("Working Frame 64"));
    const COrvelPtr<Camera> camera(Camera::CreateCameraKeyFrameData(id, {}));
    EXPECT_THAT(PropertiesOf(*camera),
                ElementsAre("Working Frame 64", "Field Of View [ 1 - 179 ] 16", "Depth Of Field Enabled 32",
                            "Depth Of Field 16", "DOF Field Stop 16"));
    camera->SetOrbit(true);
    EXPECT_THAT(PropertiesOf(*camera),
                ElementsAre("Start Frame 64", "End Frame 64", "Angle 16", "Field Of View [ 1 - 179 ] 16",
                            "Depth Of Field Enabled 32", "Depth Of Field 16", "DOF Field Stop 16"));
    const COrvelPtr<RoundTable> table(
        RoundTable::CreateRoundTableKeyFrameData(id, {}, {}, 0, 9, 90.0, {}, {0, 0, 1}, 0, 9, 0, 0));
    EXPECT_THAT(PropertiesOf(*table), ElementsAre("Start Frame 64", "End Frame 64", "Angle 16", "Normal 8",
                                                  "Constant Speed Start Frame 64", "Constant Speed End Frame 64"));
    const COrvelPtr<Follower> follower(Follower::CreateBSplineFollowerKeyFrameData(id));
    EXPECT_THAT(PropertiesOf(*follower), ElementsAre("Start Frame 64", "End Frame 64", "Constant Speed Start Frame 64",
                                                     "Constant Speed End Frame 64"));
    const COrvelPtr<SphericalCamera> grid(SphericalCamera::CreateSphericalCameraKeyFrameData(id, {}));
    EXPECT_THAT(PropertiesOf(*grid), ElementsAre("Name 1", "Type 1", "Start Frame 64", "Columns 64"));
    grid->SetGridType(SphericalCamera::eGridType_Hemispherical);
    EXPECT_THAT(PropertiesOf(*grid), ElementsAre("Name 1", "Type 1", "Start Frame 64", "Columns 64", "Rows 64"));
    grid->SetGridType(SphericalCamera::eGridType_Spherical);
    EXPECT_THAT(PropertiesOf(*grid),
                ElementsAre("Name 1", "Type 1", "Start Frame 64", "Columns 64", "Rows 64", "Vertical Wrap 32"));
    EXPECT_THAT(
        PropertiesOf(*COrvelPtr<COrvelKeyFrameData>(COrvelKeyFrameDataHideShow::CreateHideShowKeyFrameData(id, true))),
        ElementsAre("Name 1"))
        << "only what every such object has";
}

TEST_F(KeyFrameData, ReactsToEnteredFrames)
{
    const COrvelPtr<Transform> plain = WithFrames();
    Enter(*plain, "Working Frame", 12);
    EXPECT_THAT(FramesOf(*plain), ElementsAre(12, 12, 4, 6, 12));
    Enter(*plain, "Working Frame", -3);
    EXPECT_THAT(FramesOf(*plain), ElementsAre(0, 0, 4, 6, 0));

    const COrvelPtr<Follower> follower = Over(3, 7, Follower::CreateBSplineFollowerKeyFrameData(id));
    Enter(*follower, "Constant Speed End Frame", 99);
    Enter(*follower, "Constant Speed Start Frame", 5);
    EXPECT_THAT(FramesOf(*follower), ElementsAre(3, 7, 5, 7, 3));
    Enter(*follower, "Start Frame", 9);
    EXPECT_THAT(FramesOf(*follower), ElementsAre(9, 9, 5, 7, 9));
    Enter(*follower, "End Frame", 2);
    EXPECT_THAT(FramesOf(*follower), ElementsAre(2, 2, 5, 7, 2));
}

TEST_F(KeyFrameData, KeepsEnteredFieldsOfViewInTheirLimits)
{
    const COrvelPtr<Camera> camera(Camera::CreateCameraKeyFrameData(id, {}));
    for (const bool orbit : {false, true}) {
        camera->SetOrbit(orbit);
        Enter(*camera, "Field Of View [ 1 - 179 ]", 200.0);
        EXPECT_EQ(camera->FieldOfView(), 179.0);
        Enter(*camera, "Field Of View [ 1 - 179 ]", 0.5);
        EXPECT_EQ(camera->FieldOfView(), 1.0);
    }
    Enter(*camera, "Angle", 45.0);
    EXPECT_EQ(camera->AngleInDegrees(), 45.0);
    Enter(*camera, "Depth Of Field Enabled", true);
    Enter(*camera, "Depth Of Field", 8.0);
    Enter(*camera, "DOF Field Stop", 2.8);
    EXPECT_TRUE(camera->DOFIsEnabled());
    EXPECT_EQ(camera->DOFDistance(), 8.0);
    EXPECT_EQ(camera->DOFFStop(), 2.8);
    EXPECT_EQ(COrvelPtr<Camera>(Camera::CreateCameraKeyFrameData(id, {}, 0.0, 1, false, 1, 1))->FieldOfView(), 1.0);
}

TEST_F(KeyFrameData, GivesEveryViewOfAGridAFrame)
{
    const COrvelPtr<SphericalCamera> grid(SphericalCamera::CreateSphericalCameraKeyFrameData(id, {}));
    grid->SetGridType(SphericalCamera::eGridType_Spherical);
    Enter(*grid, "Columns", 4);
    Enter(*grid, "Rows", 3);
    EXPECT_EQ(grid->EndFrame(), 11);
    Enter(*grid, "Start Frame", 10);
    EXPECT_EQ(grid->StartFrame(), 10);
    EXPECT_EQ(grid->EndFrame(), 21);
    Enter(*grid, "Columns", 0);
    EXPECT_EQ(grid->EndFrame(), 21);
    Enter(*grid, "Columns", 5);
    EXPECT_EQ(grid->EndFrame(), 24);
    Enter(*grid, "Rows", 1);
    EXPECT_EQ(grid->EndFrame(), 24) << "too few rows for a sphere";
    grid->SetWorkingFrame(24);
    Enter(*grid, "Rows", 2);
    EXPECT_EQ(grid->EndFrame(), 19);
    EXPECT_EQ(grid->WorkingFrame(), 19);
    Enter(*grid, "Columns", -5);
    EXPECT_EQ(grid->EndFrame(), 10);
    Enter(*grid, "Columns", INT_MAX);
    EXPECT_EQ(grid->EndFrame(), INT_MAX);
    Enter(*grid, "Vertical Wrap", true);
    EXPECT_TRUE(grid->VerticalWrap());
}

TEST_F(KeyFrameData, NamesTheKindOfGrid)
{
    const COrvelPtr<SphericalCamera> grid(SphericalCamera::CreateSphericalCameraKeyFrameData(id, {}));
    const auto kind = [&] {
        int type = 0;
        COrvelString name;
        return static_cast<COrvelString*>(grid->DataMemberSearch(1, type, name, false))->toStdString();
    };
    EXPECT_EQ(kind(), "Round Table");
    grid->SetGridType(SphericalCamera::eGridType_Hemispherical);
    EXPECT_EQ(kind(), "Hemispherical");
    grid->SetGridType(SphericalCamera::eGridType_Spherical);
    EXPECT_EQ(kind(), "Spherical");
}

} // namespace

} // namespace Orvel
