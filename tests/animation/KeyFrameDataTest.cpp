#include "tests/animation/KeyFrameFixture.h"
#include "tests/support/VirtualFunctionSlot.h"

#include <gmock/gmock.h>

#include <climits>
#include <cmath>
#include <memory>
#include <string>
#include <vector>

namespace Orvel
{
namespace
{

using testing::ElementsAre;
using testing::ElementsAreArray;

class KeyFrameData : public KeyFrames
{
protected:
    /// [3, 7] at constant speed from 4 to 6, working frame 5.
    COrvelPtr<Plain> WithFrames()
    {
        const COrvelPtr<Plain> data = PlainOver(3, 7, Shift(2, 3, 5));
        data->SetTiming(3, 7, 4, 6, 0, 0);
        data->SetWorkingFrame(5);
        return data;
    }
    COrvelPtr<Camera> ACamera() { return Camera::CreateCameraKeyFrameData(id, {}); }
    COrvelPtr<Grid> AGrid() { return Grid::CreateSphericalCameraKeyFrameData(id, {}); }
    COrvelPtr<Follower> AFollower() { return Over(3, 7, Follower::CreateBSplineFollowerKeyFrameData(id)); }
    /// A quarter turn of what stands at (2, 0, 0) over [10, 19].
    COrvelPtr<Table> ATable()
    {
        return Table::CreateRoundTableKeyFrameData(id, Shift(2, 0, 0), {}, 10, 19, 90, {}, {0, 0, 1}, 10, 19, 0, 0);
    }
};

#ifdef ORVEL_TESTS_SEE_VIRTUAL_SLOTS

TEST_F(KeyFrameData, HasItsVirtualFunctionsInThePromisedOrder)
{
    using Data = COrvelKeyFrameData;
    const std::int64_t slots[] = {Slot(&Data::MakeCopy),      Slot(&Data::Type),
                                  Slot(&Data::RestoreEntity), Slot(&Data::ApplyToEntity),
                                  Slot(&Data::Clone),         Slot(&Data::SetStartFrame),
                                  Slot(&Data::SetEndFrame),   Slot(&Data::ShiftFrames),
                                  Slot(&Data::ScaleFrames),   Slot(&Data::Refresh),
                                  Slot(&Data::IsApplicable),  Slot(&Plain::MultiplyMatrix),
                                  Slot(&Follower::Matrix),    Slot(&Follower::RebaseOnPath)};
    EXPECT_THAT(slots, ElementsAre(4, 12, 13, 14, 15, 16, 17, 18, 19, 20, 21, 22, 23, 24));
    EXPECT_EQ(Slot(&Grid::Clone), 15) << "another result type takes no slot of its own";
}

#endif

TEST_F(KeyFrameData, KeepsItsFramesInOrderWhenTheyAreSet)
{
    using Data = COrvelKeyFrameData;
    constexpr int last = INT_MAX;
    struct Case
    {
        const char* what;
        void (*change)(Data&);
        int result[5];
    };
    const Case cases[] = {
        {"start inside", [](Data& d) { EXPECT_EQ(d.SetStartFrame(4, false), 4); }, {4, 7, 4, 6, 5}},
        {"start behind the working frame", [](Data& d) { d.SetStartFrame(6, false); }, {6, 7, 4, 6, 6}},
        {"start behind the end", [](Data& d) { d.SetStartFrame(9, false); }, {9, 7, 4, 6, 9}},
        {"start pushes the end", [](Data& d) { d.SetStartFrame(9, true); }, {9, 9, 4, 6, 9}},
        {"negative start", [](Data& d) { EXPECT_EQ(d.SetStartFrame(-2, true), 0); }, {0, 7, 4, 6, 5}},
        {"end before the working frame", [](Data& d) { EXPECT_EQ(d.SetEndFrame(4, false), 4); }, {3, 4, 4, 6, 4}},
        {"end before the start", [](Data& d) { d.SetEndFrame(1, false); }, {3, 1, 4, 6, 1}},
        {"end pushes the start", [](Data& d) { d.SetEndFrame(1, true); }, {1, 1, 4, 6, 1}},
        {"negative end", [](Data& d) { EXPECT_EQ(d.SetEndFrame(-1, false), 0); }, {3, 0, 4, 6, 0}},
        {"constant speed starts later", [](Data& d) { d.SetConstantSpeedStartFrame(5); }, {3, 7, 5, 6, 5}},
        {"its start pushes its end", [](Data& d) { d.SetConstantSpeedStartFrame(7); }, {3, 7, 7, 7, 5}},
        {"its start stays inside", [](Data& d) { d.SetConstantSpeedStartFrame(99); }, {3, 7, 7, 7, 5}},
        {"its start before the range", [](Data& d) { d.SetConstantSpeedStartFrame(-5); }, {3, 7, 3, 6, 5}},
        {"its end pushes its start", [](Data& d) { d.SetConstantSpeedEndFrame(3); }, {3, 7, 3, 3, 5}},
        {"its end before the range", [](Data& d) { d.SetConstantSpeedEndFrame(0); }, {3, 7, 3, 3, 5}},
        {"its end stays inside", [](Data& d) { d.SetConstantSpeedEndFrame(8); }, {3, 7, 4, 7, 5}},
        // The old working frame, 5, is raised to the new start, 13, and then moves too.
        {"shift", [](Data& d) { d.ShiftFrames(10); }, {13, 17, 14, 16, 23}},
        {"shift back", [](Data& d) { d.ShiftFrames(-3); }, {0, 4, 1, 3, 1}},
        {"shift below 0", [](Data& d) { d.ShiftFrames(-4); }, {3, 7, 4, 6, 5}},
        {"shift an end below 0", [](Data& d) { d.SetEndFrame(1, false), d.ShiftFrames(-2); }, {1, 0, 2, 4, -2}},
        {"shift out of all frames", [](Data& d) { d.ShiftFrames(INT_MIN); }, {3, 7, 4, 6, 5}},
        {"shift to the last frame", [](Data& d) { d.ShiftFrames(INT_MAX); }, {last, last, last, last, last}},
        {"scale", [](Data& d) { d.ScaleFrames(1.5); }, {4, 10, 6, 9, 7}},
        {"scale a late frame", [](Data& d) { d.SetWorkingFrame(99), d.ScaleFrames(2); }, {6, 14, 8, 12, 14}},
        {"scale an early frame", [](Data& d) { d.SetWorkingFrame(-99), d.ScaleFrames(2); }, {6, 14, 8, 12, 6}},
        {"shrink", [](Data& d) { d.ScaleFrames(0.5); }, {3, 7, 4, 6, 5}},
        {"scale by no number", [](Data& d) { d.ScaleFrames(NAN); }, {3, 7, 4, 6, 5}},
        {"scale beyond all frames", [](Data& d) { d.ScaleFrames(1e300); }, {last, last, last, last, last}},
        {"scale frame 0", [](Data& d) { d.SetFrame(0), d.ScaleFrames(INFINITY); }, {0, 0, 0, 0, 0}},
    };
    for (const Case& tried : cases) {
        const COrvelPtr<Plain> data = WithFrames();
        tried.change(*data);
        EXPECT_THAT(FramesOf(*data), ElementsAreArray(tried.result)) << tried.what;
    }
}

// --- copies

TEST_F(KeyFrameData, CopiesEverythingIntoAnObjectOfItsOwn)
{
    const COrvelPtr<Plain> data = WithFrames();
    data->SetName("wheel");
    data->SetEaseIn(2);
    data->SetSequenceNumber(6);
    data->SetPivot({7, 11, 13});
    const COrvelID other = NewTransform();
    data->SetTargetEntityID(other);

    const DataPtr made = data->MakeCopy();
    // Restoring takes all of it back, for another entity too.
    const COrvelPtr<Plain> restored(Plain::CreateTransformKeyFrameData(other, {}));
    restored->RestoreFromCopy(made.Get());
    restored->RestoreFromCopy(DataPtr(HideShow::CreateHideShowKeyFrameData(id, true)).Get());
    restored->RestoreFromCopy(nullptr);
    for (const Plain* const copy : {dynamic_cast<Plain*>(made.Get()), restored.Get()}) {
        ASSERT_TRUE(copy);
        EXPECT_EQ(copy->ReferenceCount(), 1);
        EXPECT_EQ(FramesOf(*copy), FramesOf(*data));
        EXPECT_EQ(copy->Name(), COrvelString("wheel"));
        EXPECT_EQ(copy->EaseIn(), 2);
        EXPECT_EQ(copy->SequenceNumber(), 6);
        EXPECT_EQ(copy->Pivot(), COrvel3DVertex(7, 11, 13));
        EXPECT_EQ(copy->Matrix(), Shift(2, 3, 5));
        EXPECT_EQ(copy->TargetEntityID(), other);
        EXPECT_EQ(copy->AnimatedEntityID(), copy == restored.Get() ? other : id) << "identity is not state";
    }
}

TEST_F(KeyFrameData, RestoresEveryClassOfTransform)
{
    const auto restored = [](const auto& copy, const auto& data) {
        data->RestoreFromCopy(copy.Get());
        return data;
    };
    const COrvelPtr<Grid> grid = AGrid();
    grid->SetRows(5);
    grid->SetDOF(true, 8, 2.8);
    const COrvelPtr<Grid> restoredGrid = restored(grid, AGrid());
    EXPECT_EQ(restoredGrid->Rows(), 5);
    EXPECT_EQ(restoredGrid->DOFDistance(), 8);
    const COrvelPtr<Camera> camera(Camera::CreateCameraKeyFrameData(id, {}, 40, 7, true, 8, 2.8));
    EXPECT_EQ(restored(camera, ACamera())->FieldOfView(), 40);
    EXPECT_EQ(restored(camera, AGrid())->FieldOfView(), 30) << "another class changes nothing";
    const COrvelPtr<Follower> follower = AFollower();
    follower->SetBaseMatrix(Shift(1, 1, 2));
    EXPECT_EQ(restored(follower, AFollower())->BaseMatrix(), Shift(1, 1, 2));
    const COrvelPtr<Table> table = ATable();
    table->SetAngleInDegrees(70);
    EXPECT_EQ(restored(table, ATable())->AngleInDegrees(), 70);
}

/// The snapshot, after checking what all of them have in common.
template <class Data>
COrvelPtr<Data> SnapshotOf(const COrvelPtr<Data>& data, int frame)
{
    const COrvelPtr<Data> snapshot(data->Clone(true));
    EXPECT_THAT(FramesOf(*snapshot), ElementsAre(frame, frame, frame, frame, frame));
    EXPECT_EQ(snapshot->TargetEntityID(), data->TargetEntityID());
    EXPECT_EQ(snapshot->AnimatedEntityID(), data->AnimatedEntityID());
    EXPECT_EQ(snapshot->SequenceNumber(), 0);
    EXPECT_EQ(snapshot->ReferenceCount(), 1);
    EXPECT_EQ(COrvelPtr<Data>(data->Clone(false))->Type(), data->Type());
    return snapshot;
}

TEST_F(KeyFrameData, TakesSnapshotsOfTransformsAsPlainOnes)
{
    const COrvelPtr<Plain> plain = WithFrames();
    plain->SetSequenceNumber(4);
    plain->SetPivot({7, 11, 13});
    plain->SetTargetEntityID(NewTransform());
    const COrvelPtr<Plain> snapshot = SnapshotOf(plain, 5);
    EXPECT_EQ(snapshot->Matrix(), Shift(2, 3, 5));
    EXPECT_EQ(snapshot->Pivot(), COrvel3DVertex());
    plain->SetFrame(9);
    plain->SetWorkingFrame(40);
    SnapshotOf(plain, 9);

    const COrvelPtr<Plain> table = ATable();
    table->SetWorkingFrame(13);
    const COrvelPtr<Plain> turned = SnapshotOf(table, 13);
    EXPECT_EQ(turned->Type(), eKeyFrameDataType_Transform);
    EXPECT_TRUE(turned->Matrix().IsNear(Turn(0.5235987755982988, 0, 0, 1) * Shift(2, 0, 0), 1e-12)) << "30 degrees";

    const COrvelPtr<Follower> follower = AFollower();
    follower->SetWorkingFrame(6);
    follower->SetBaseMatrix(Shift(1, 1, 2));
    follower->SetTargetEntityID(plain->TargetEntityID());
    const COrvelPtr<Plain> carried(follower->Clone(true));
    EXPECT_EQ(carried->TargetEntityID(), id) << "the animated entity";
    EXPECT_THAT(FramesOf(*carried), ElementsAre(6, 6, 6, 6, 6));
    EXPECT_EQ(carried->Matrix(), Shift(1, 1, 2));
}

TEST_F(KeyFrameData, TakesCamerasWholeEvenAsSnapshots)
{
    const COrvelPtr<Grid> grid = AGrid();
    grid->SetTiming(3, 7, 4, 6, 0, 0);
    grid->SetRows(4);
    const COrvelPtr<Grid> copy(grid->Clone(true));
    EXPECT_EQ(FramesOf(*copy), FramesOf(*grid));
    EXPECT_EQ(copy->Rows(), 4);
    EXPECT_EQ(COrvelPtr<Camera>(ACamera()->Clone(true))->Type(), eKeyFrameDataType_TransformCamera);
}

TEST_F(KeyFrameData, TakesSnapshotsWithCopiesOfWhatItHolds)
{
    const COrvelID target = NewTransform();
    COrvelBasicGeneralMaterial steel;
    steel.SetName("steel");
    const auto material = Over(3, 7, Material::CreateMaterialKeyFrameData(id, &steel, target));
    const auto looks = SnapshotOf(material, 3);
    EXPECT_NE(looks->Material(), material->Material());
    EXPECT_EQ(looks->Material()->Name(), COrvelString("steel"));
    EXPECT_EQ(COrvelPtr<Material>(material->Clone(false))->Material()->Name(), COrvelString("steel"));
    material->SetMaterial(nullptr);
    EXPECT_EQ(SnapshotOf(material, 3)->Material(), nullptr);

    COrvelBasicPointLight lamp;
    lamp.SetIntensity(3);
    const auto light = Over(3, 7, Light::CreateLightKeyFrameData(id, &lamp, target));
    const auto glow = SnapshotOf(light, 3);
    EXPECT_NE(glow->Light(), light->Light());
    EXPECT_EQ(glow->Light()->Intensity(), 3);
    EXPECT_EQ(COrvelPtr<Light>(light->Clone(false))->Light()->Intensity(), 3);

    EXPECT_TRUE(SnapshotOf(Over(3, 7, HideShow::CreateHideShowKeyFrameData(id, true)), 3)->IsHidden());

    const auto morph = Over(3, 7, Morph::CreateMorphKeyFrameData(id, target, 0.25));
    morph->SetWeights({1, 2});
    const auto weight = SnapshotOf(morph, 3);
    EXPECT_EQ(weight->ObjectID(), target);
    EXPECT_EQ(weight->Weight(), 0.25);
    EXPECT_TRUE(weight->Weights().empty());
    EXPECT_THAT(COrvelPtr<Morph>(morph->Clone(false))->Weights(), ElementsAre(1, 2));
}

TEST_F(KeyFrameData, KnowsTheShapeOfEveryFrame)
{
    const COrvelBasicVectorsTable first({COrvel3DVertex(1, 2, 3)});
    const COrvelBasicVectorsTable third({COrvel3DVertex(7, 11, 13)});
    const auto data = Over(5, 8, Vertices::CreateVerticesKeyFrameData(id, &first));
    data->AddTable(nullptr);
    data->AddTable(std::make_unique<COrvelBasicVectorsTable>(third));
    const auto shapeAt = [&](int frame) {
        data->SetWorkingFrame(frame);
        return data->TableAtWorkingFrame();
    };
    ASSERT_TRUE(shapeAt(5));
    EXPECT_EQ(*shapeAt(5), first);
    for (const int frame : {6, 8, 4, INT_MIN})
        EXPECT_EQ(shapeAt(frame), nullptr) << frame;
    EXPECT_EQ(COrvelPtr<Vertices>(data->Clone(true))->TableCount(), 0U);
    const COrvelBasicVectorsTable* const shown = shapeAt(7);
    const COrvelPtr<Vertices> copy(data->Clone(false));
    EXPECT_EQ(copy->TableCount(), 3U);
    for (const auto& held : {SnapshotOf(data, 7), copy}) {
        ASSERT_TRUE(held->TableAtWorkingFrame());
        EXPECT_NE(held->TableAtWorkingFrame(), shown);
        EXPECT_EQ(*held->TableAtWorkingFrame(), third);
    }
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
    EXPECT_THAT(PropertiesOf(*WithFrames()), ElementsAre("Working Frame 64"));
    const COrvelPtr<Camera> camera = ACamera();
    EXPECT_THAT(PropertiesOf(*camera),
                ElementsAre("Working Frame 64", "Field Of View [ 1 - 179 ] 16", "Depth Of Field Enabled 32",
                            "Depth Of Field 16", "DOF Field Stop 16"));
    camera->SetOrbit(true);
    EXPECT_THAT(PropertiesOf(*camera),
                ElementsAre("Start Frame 64", "End Frame 64", "Angle 16", "Field Of View [ 1 - 179 ] 16",
                            "Depth Of Field Enabled 32", "Depth Of Field 16", "DOF Field Stop 16"));
    EXPECT_THAT(PropertiesOf(*ATable()), ElementsAre("Start Frame 64", "End Frame 64", "Angle 16", "Normal 8",
                                                     "Constant Speed Start Frame 64", "Constant Speed End Frame 64"));
    EXPECT_THAT(
        PropertiesOf(*AFollower()),
        ElementsAre("Start Frame 64", "End Frame 64", "Constant Speed Start Frame 64", "Constant Speed End Frame 64"));
    EXPECT_THAT(PropertiesOf(*DataPtr(HideShow::CreateHideShowKeyFrameData(id, true))), ElementsAre("Name 1"))
        << "only what every such object has";

    const COrvelPtr<Grid> grid = AGrid();
    std::vector<std::string> wanted{"Name 1", "Type 1", "Start Frame 64", "Columns 64"};
    const char* const kinds[] = {"Round Table", "Hemispherical", "Spherical"};
    for (int gridType = 0; gridType < 3; ++gridType) {
        grid->SetGridType(gridType);
        EXPECT_EQ(PropertiesOf(*grid), wanted) << gridType;
        int type = 0;
        COrvelString name;
        EXPECT_EQ(*static_cast<COrvelString*>(grid->DataMemberSearch(1, type, name, false)), kinds[gridType]);
        wanted.push_back(gridType == 0 ? "Rows 64" : "Vertical Wrap 32");
    }
}

TEST_F(KeyFrameData, ReactsToEnteredFrames)
{
    struct Case
    {
        COrvelPtr<Plain> data;
        const char* member;
        int value;
        int result[5];
    };
    const COrvelPtr<Plain> plain = WithFrames();
    const COrvelPtr<Plain> follower = AFollower();
    const COrvelPtr<Plain> table = ATable();
    const Case cases[] = {{plain, "Working Frame", 12, {12, 12, 4, 6, 12}},
                          {plain, "Working Frame", -3, {0, 0, 4, 6, 0}},
                          {follower, "Constant Speed End Frame", 99, {3, 7, 3, 7, 3}},
                          {follower, "Constant Speed Start Frame", 5, {3, 7, 5, 7, 3}},
                          {follower, "Start Frame", 9, {9, 9, 5, 7, 9}},
                          {follower, "End Frame", 2, {2, 2, 5, 7, 2}},
                          {table, "End Frame", 15, {10, 15, 10, 19, 10}},
                          {table, "Constant Speed End Frame", 13, {10, 15, 10, 13, 10}},
                          {table, "Constant Speed Start Frame", 14, {10, 15, 14, 14, 10}}};
    for (const Case& entered : cases) {
        Enter(*entered.data, entered.member, entered.value);
        EXPECT_THAT(FramesOf(*entered.data), ElementsAreArray(entered.result)) << entered.member;
    }
}

TEST_F(KeyFrameData, TakesEnteredOpticsWithinTheirLimits)
{
    const COrvelPtr<Camera> camera(Camera::CreateCameraKeyFrameData(id, {}, 0, 1, false, 1, 1));
    EXPECT_EQ(camera->FieldOfView(), 1);
    for (const bool orbit : {false, true}) {
        camera->SetOrbit(orbit);
        Enter(*camera, "Field Of View [ 1 - 179 ]", 200.0);
        EXPECT_EQ(camera->FieldOfView(), 179);
        Enter(*camera, "Field Of View [ 1 - 179 ]", 0.5);
        EXPECT_EQ(camera->FieldOfView(), 1);
        Enter(*camera, "Depth Of Field Enabled", orbit);
        Enter(*camera, "Depth Of Field", 8.0);
        Enter(*camera, "DOF Field Stop", 2.8);
        EXPECT_EQ(camera->DOFIsEnabled(), orbit);
    }
    Enter(*camera, "Angle", 45.0);
    EXPECT_EQ(camera->AngleInDegrees(), 45);
    EXPECT_EQ(camera->DOFDistance(), 8);
    EXPECT_EQ(camera->DOFFStop(), 2.8);
}

TEST_F(KeyFrameData, GivesEveryViewOfAGridAFrame)
{
    const COrvelPtr<Grid> grid = AGrid();
    grid->SetGridType(Grid::eGridType_Spherical);
    struct Case
    {
        const char* member;
        int value;
        int end;
    };
    const Case cases[] = {{"Columns", 4, 3},  {"Rows", 3, 11},     {"Start Frame", 10, 21},
                          {"Columns", 0, 21}, {"Columns", 5, 24},  {"Rows", 1, 24},
                          {"Rows", 2, 19},    {"Columns", -5, 10}, {"Columns", INT_MAX, INT_MAX}};
    for (const Case& entered : cases) {
        grid->SetWorkingFrame(grid->EndFrame());
        Enter(*grid, entered.member, entered.value);
        EXPECT_EQ(grid->EndFrame(), entered.end) << entered.member << " " << entered.value;
        EXPECT_LE(grid->WorkingFrame(), entered.end) << entered.member << " " << entered.value;
    }
    EXPECT_EQ(grid->StartFrame(), 10);
    Enter(*grid, "Vertical Wrap", true);
    EXPECT_TRUE(grid->VerticalWrap());
}

} // namespace
} // namespace Orvel
