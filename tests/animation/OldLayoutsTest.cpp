#include "animation/COrvelAnimationCollapsingGroupGuidToCaptionMapper.h"
#include "animation/COrvelSequence.h"
#include "animation/COrvelSequenceContainer.h"
#include "platform/core/COrvel3DObject.h"
#include "platform/core/COrvelArchiveReader.h"
#include "platform/core/COrvelArchiveWriter.h"
#include "platform/core/COrvelBasicMetallicMaterial.h"
#include "platform/core/COrvelCamera.h"
#include "platform/core/COrvelDocumentsContainer.h"
#include "platform/core/COrvelGeometry.h"
#include "platform/core/COrvelMorphingTable.h"
#include "tests/animation/KeyFrameFixture.h"

#include <gmock/gmock.h>

#include <vector>

namespace Orvel
{
namespace
{

constexpr int newest = COrvelArchiveBase::newestVersion;

/// Archives put together value by value, as files of a version hold them.
class OldLayouts : public KeyFrames
{
protected:
    OldLayouts() { group.Generate(); }

    void Begin(int newVersion)
    {
        version = newVersion;
        record = std::make_unique<COrvelArchiveWriter>();
        COrvelDocumentsContainer::DocumentsContainer()->SetLastReadDocumentVersion(version);
    }
    template <class... Values>
    void Put(Values... values)
    {
        EXPECT_TRUE((record->ReadWrite(values) && ...));
    }
    template <class... Values>
    void PutSince(int since, Values... values)
    {
        if (version >= since)
            Put(values...);
    }
    static uint32 Count(uint32 count) { return count; }

    /// Frames 3 to 9.
    void PutBase(const COrvelID& entity)
    {
        Put(entity, entity, 3, 9, 5);
        if (version >= 12201)
            Put(3, 1);
        else
            Put(77);
        PutSince(10006, number);
        PutSince(12503, owner->GetGuid(), group);
    }
    void PutTransform(const COrvelID& entity)
    {
        PutBase(entity);
        Put(Shift(2, 3, 5));
        PutSince(10006, COrvel3DVertex(7, 11, 13));
    }

    /// Reads the record whole; one of the newest version must be what is written.
    template <class Archivable>
    void Read(Archivable& value)
    {
        COrvelArchiveReader archive(record->Bytes());
        archive.SetVersion(version);
        EXPECT_TRUE(archive.ReadWrite(value)) << version;
        EXPECT_TRUE(archive.IsAtEnd()) << version;
        if (version == newest) {
            COrvelArchiveWriter again;
            EXPECT_TRUE(again.ReadWrite(value));
            EXPECT_EQ(again.Bytes(), record->Bytes());
        }
    }
    template <class Data>
    COrvelPtr<Data> ReadInto(Data* made)
    {
        COrvelPtr<Data> data(made);
        Read(*data);
        EXPECT_EQ(data->EndFrame(), 9);
        EXPECT_EQ(data->SequenceNumber(), version >= 10006 ? 6 : 0);
        EXPECT_EQ(data->LegacyEasing(), version >= 12201 ? 0 : 77);
        EXPECT_EQ(data->OwnerGuid(), version >= 12503 ? owner->GetGuid() : COrvelUUID());
        EXPECT_EQ(data->CollapsingGroupID(), version >= 12503 ? group : COrvelUUID());
        return data;
    }
    void ExpectTiming(const COrvelKeyFrameData& data, int constantSpeedStart, int constantSpeedEnd, int easeIn,
                      int easeOut) const
    {
        EXPECT_EQ(data.ConstantSpeedStartFrame(), constantSpeedStart) << version;
        EXPECT_EQ(data.ConstantSpeedEndFrame(), constantSpeedEnd) << version;
        EXPECT_EQ(data.EaseIn(), easeIn) << version;
        EXPECT_EQ(data.EaseOut(), easeOut) << version;
    }
    /// Of data that have had a motion since 12201.
    void ExpectMotion(const COrvelKeyFrameData& data) const
    {
        if (version >= 12201)
            ExpectTiming(data, 4, 8, 3, 1);
        else
            ExpectTiming(data, 3, 9, 0, 0);
    }

    int version = newest;
    int number = 6;
    std::unique_ptr<COrvelArchiveWriter> record;
    COrvelSceneNode* owner = COrvelSceneNode::Create(&document, "owner");
    COrvelUUID group;
    COrvelMatrix moved = Shift(17, 19, 23);
};

TEST_F(OldLayouts, OfTransforms)
{
    for (const int each : {10005, 10006, 12200, 12201, 12502, 12503, newest}) {
        Begin(each);
        PutTransform(id);
        const auto data = ReadInto(Plain::CreateTransformKeyFrameData(COrvelID(), moved));
        EXPECT_EQ(data->TargetEntityID(), id);
        EXPECT_EQ(data->StoredMatrix(), Shift(2, 3, 5));
        EXPECT_EQ(data->Pivot(), version >= 10006 ? COrvel3DVertex(7, 11, 13) : COrvel3DVertex());
    }
    Begin(newest);
    Put(id, id, 6, 6, 0, 0, 0, 1, COrvelUUID(), COrvelUUID(), moved, COrvel3DVertex());
    const COrvelPtr<Plain> single = Plain::CreateTransformKeyFrameData(id, moved);
    Read(*single);
    ExpectTiming(*single, 6, 6, 0, 0);
}

TEST_F(OldLayouts, OfCamerasAndTheirGrids)
{
    COrvelBasicCamera whole;
    whole.SetPosition({29, 31, 37});
    whole.SetDistanceToTarget(41);
    whole.SetFOV(61);
    for (const int each : {10005, 10013, 10014, 10049, 10050, 10063, 10064, 10070, 10071, 12200, 12201, newest}) {
        const bool isWhole = each < 10014;
        Begin(each);
        if (isWhole) {
            PutBase(id);
            Put(true, 270.0, whole);
        } else {
            PutTransform(id);
            Put(43.0, 270.0, true, false, false);
        }
        PutSince(10050, 53.0);
        PutSince(10071, 47.0, 2.8, true);
        PutSince(12201, 4, 8);
        Put(2, 5, 6, true);
        PutSince(10064, COrvel3DVertex(7, 8, 9));
        const auto data = ReadInto(Grid::CreateSphericalCameraKeyFrameData(id, COrvelBasicCamera()));
        EXPECT_EQ(data->StoredMatrix(), isWhole ? whole.ComputeLocalToWorld() : Shift(2, 3, 5));
        EXPECT_EQ(data->DistanceToTarget(), isWhole ? 41 : 43);
        EXPECT_EQ(data->AngleInDegrees(), 270);
        EXPECT_TRUE(data->Descends());
        EXPECT_EQ(data->IsOrbit(), isWhole);
        EXPECT_EQ(data->UsesCameraBlend(), isWhole);
        EXPECT_EQ(data->FieldOfView(), version >= 10050 ? 53 : 30);
        EXPECT_EQ(data->DOFDistance(), version >= 10071 ? 47 : 5);
        EXPECT_EQ(data->DOFFStop(), version >= 10071 ? 2.8 : 1.4);
        EXPECT_EQ(data->DOFIsEnabled(), version >= 10071);
        ExpectMotion(*data);
        EXPECT_EQ(data->GridType() * 100 + data->Rows() * 10 + data->Columns(), 256);
        EXPECT_EQ(data->Centre(), version >= 10064 ? COrvel3DVertex(7, 8, 9) : COrvelBasicCamera().LookAt());
    }
}

TEST_F(OldLayouts, OfRoundTables)
{
    for (const int each : {10001, 10002, 10006, 12200, 12201, newest}) {
        Begin(each);
        PutTransform(id);
        Put(moved, 270.0, COrvelNormal({1, 2, 3}, {4, 5, 6}));
        PutSince(10002, Shift(29, 31, 37));
        PutSince(12201, 4, 8);
        const auto data = ReadInto(
            Table::CreateRoundTableKeyFrameData(id, COrvelMatrix(), COrvelMatrix(), 0, 0, 0, {}, {}, 0, 0, 2, 2));
        EXPECT_EQ(data->Reference(), moved);
        EXPECT_EQ(data->Normal(), COrvelNormal({1, 2, 3}, {4, 5, 6}));
        EXPECT_EQ(data->AxisFrame(), version >= 10002 ? Shift(29, 31, 37) : COrvelMatrix());
        ExpectMotion(*data);
    }
}

TEST_F(OldLayouts, OfFollowers)
{
    const COrvelID path(32, 1000003);
    COrvelDocumentsContainer::DocumentsContainer()->AddLinePathID(17, path);
    const struct
    {
        int version, constantSpeedStart, constantSpeedEnd, easeIn, easeOut;
    } cases[] = {{10046, 3, 9, 0, 0}, {10047, 4, 8, 1, 2}, {10047, 3, 8, 0, 2}, {10999, 4, 9, 1, 0},
                 {11000, 3, 9, 0, 0}, {12200, 3, 8, 0, 2}, {12201, 4, 8, 3, 1}, {newest, 4, 8, 3, 1}};
    for (const auto& [each, constantSpeedStart, constantSpeedEnd, easeIn, easeOut] : cases) {
        Begin(each);
        PutTransform(id);
        Put(moved);
        if (version >= 11000)
            Put(path);
        else
            Put(17);
        Put(Shift(29, 31, 37), Shift(41, 43, 47), owner->ID());
        PutSince(10047, constantSpeedStart, constantSpeedEnd);
        const auto data = ReadInto(Follower::CreateBSplineFollowerKeyFrameData(COrvelID()));
        EXPECT_EQ(data->BaseMatrix(), moved);
        EXPECT_EQ(data->PathID(), path);
        EXPECT_EQ(data->OffsetMatrix(), Shift(29, 31, 37));
        EXPECT_EQ(data->ReferenceMatrix(), Shift(41, 43, 47));
        EXPECT_EQ(data->FollowedNode(), owner);
        ExpectTiming(*data, constantSpeedStart, constantSpeedEnd, easeIn, easeOut);
    }
}

TEST_F(OldLayouts, OfShapes)
{
    const COrvelBasicVectorsTable none;
    const COrvelBasicVectorsTable shape({{7, 11, 13}, {17, 19, 23}});
    for (const int each : {12502, newest}) {
        Begin(each);
        PutBase(id);
        Put(Count(3), none, none, shape);
        const auto data = ReadInto(Vertices::CreateVerticesKeyFrameData(COrvelID(), nullptr));
        EXPECT_EQ(data->TableCount(), 3u);
        ASSERT_NE(data->TableAtWorkingFrame(), nullptr) << "of frame 5";
        EXPECT_EQ(*data->TableAtWorkingFrame(), shape);
        data->SetWorkingFrame(3);
        EXPECT_EQ(data->TableAtWorkingFrame(), nullptr);
    }
}

TEST_F(OldLayouts, OfMaterialsAndLights)
{
    COrvelBasicMetallicMaterial metal;
    metal.SetEmissiveColor({0.25, 0.5, 0.75, 1});
    COrvelBasicSpotLight spot;
    spot.SetRange(70);
    for (const char* const kind : {"", "no such kind"}) {
        const bool isKnown = *kind == '\0';
        for (const int each : {10029, 10030, newest}) {
            const auto putHeld = [&](auto& held, auto... embedded) {
                Begin(each);
                PutBase(id);
                Put(isKnown ? held.KindName() : COrvelString(kind), embedded...);
                if (each >= 10030)
                    Put(held.StructureDescription());
                else
                    Put(5);
                EXPECT_TRUE(record->ReadWrite(held));
                if (!isKnown)
                    version = std::min(version, newest - 1); // what is read is of another kind than what was written
            };
            putHeld(metal, Count(0));
            const COrvelPtr<Material> material = Material::CreateMaterialKeyFrameData(COrvelID(), nullptr, COrvelID());
            COrvelArchiveReader archive(record->Bytes());
            ASSERT_EQ(archive.ReadWrite(*material), isKnown || each >= 10030);
            putHeld(spot);
            if (!material->Material())
                continue;
            EXPECT_TRUE(archive.IsAtEnd());
            EXPECT_EQ(material->Material()->KindName(), isKnown ? metal.KindName() : "COrvelBasicGeneralMaterial");
            EXPECT_EQ(material->Material()->ApproximateToGeneralMaterial()->EmissiveColor(), metal.EmissiveColor());
            const auto light = ReadInto(Light::CreateLightKeyFrameData(COrvelID(), nullptr, COrvelID()));
            ASSERT_NE(light->Light(), nullptr);
            EXPECT_EQ(light->Light()->KindName(), isKnown ? spot.KindName() : "COrvelBasicPointLight");
            EXPECT_EQ(dynamic_cast<COrvelBasicPointLight&>(*light->Light()).Range(), 70);
        }
    }
}

TEST_F(OldLayouts, OfDataThatOlderArchivesLackHoldNothing)
{
    const COrvelID object(1, 1000007);
    for (const int each : {10211, 10212, 13002, 13003, 13013, 13014}) {
        Begin(each);
        const COrvelPtr<HideShow> hideShow = HideShow::CreateHideShowKeyFrameData(id, false);
        if (version >= 10212) {
            PutBase(id);
            Put(true);
        }
        Read(*hideShow);
        EXPECT_EQ(hideShow->IsHidden(), version >= 10212);
        Begin(each);
        const COrvelPtr<Morph> morph = Morph::CreateMorphKeyFrameData(id, COrvelID(), 0.0);
        if (version >= 13003)
            PutBase(id);
        if (version >= 13014)
            Put(object, 0.25);
        else
            PutSince(13003, Count(2), 0.5, 0.75);
        Read(*morph);
        EXPECT_EQ(morph->Weights(),
                  version == 13003 || version == 13013 ? std::vector({0.5, 0.75}) : std::vector<double>());
        EXPECT_EQ(morph->Weight(), version >= 13014 ? 0.25 : 0);
    }
    COrvelArchiveReader without{std::span<const std::uint8_t>()};
    without.SetExtendedRecords(false);
    const DataPtr hideShow = HideShow::CreateHideShowKeyFrameData(id, false);
    EXPECT_TRUE(without.ReadWrite(*hideShow)) << "an archive may lack these records whatever its version";
}

/// A timeline with one transform data and, where that can be said, one that was not applicable.
class OldTimelines : public OldLayouts
{
protected:
    void PutTimeline()
    {
        PutSince(10059, COrvelString("timeline"), COrvelString());
        Put(Count(1), id, Count(version >= 10003 && version < newest ? 2 : 1));
        if (version < newest)
            PutSince(10003, false);
        PutSince(10003, true);
        Put(3, Count(0));
        PutTransform(id);
        Put(Count(1), target, id, 4, 0, 9);
        PutSince(10006, Count(1), id, static_cast<uint32>(number));
    }

    COrvelID target{64, 1000009};
};

TEST_F(OldTimelines, AreReadWithWhatTheyHold)
{
    for (const int each : {10002, 10003, 10005, 10006, 10058, 10059, 13013}) {
        COrvelKeyFrameManager::SetInstance(manager = new COrvelKeyFrameManager);
        Begin(each);
        PutTimeline();
        Read(*manager);
        EXPECT_EQ(manager->Name(), version >= 10059 ? "timeline" : "");
        KeyFrameDataList list;
        manager->ListKeyFrameDataOf(target, list);
        ASSERT_EQ(list.size(), 1u) << "found by its target too";
        EXPECT_EQ(list[0]->StartFrame(), 3);
        EXPECT_EQ(manager->CurrentFrame() * 100 + manager->LastFrame(), 409);
        const auto more = Store(20, 20, Plain::CreateTransformKeyFrameData(id, moved));
        EXPECT_EQ(more->SequenceNumber(), version >= 10006 ? 7 : 1);
    }
}

TEST_F(OldTimelines, OfSequencesAndTheirGroups)
{
    COrvelSequenceContainer& container = *COrvelSequenceContainer::Instance();
    COrvelUUID sequenceID;
    sequenceID.Generate();
    for (const int each : {11006, 11007, 11011, 11012, 11013, 12519, 12520, newest}) {
        Begin(each);
        number = version < newest ? 6 : 1; // as it is written: without holes
        Put(Count(1));
        if (version >= 11007) {
            PutTimeline();
            Put(sequenceID);
            PutSince(11012, 5, group);
            PutSince(11013, COrvelString(version == newest ? "a/b/c.png" : "a\\b/c.png"));
            PutSince(12520, 2.5);
        }
        PutSince(11012, Count(1), group, COrvelString("Walks"), 7, Count(1), sequenceID);
        PutSince(11012, COrvelUUID(), COrvelString("Home"), -1, Count(0), group);
        COrvelArchiveReader archive(record->Bytes());
        archive.SetVersion(version);
        ASSERT_TRUE(container.ReadFromArchive(archive) && archive.IsAtEnd()) << version;
        std::vector<COrvelSequence*> sequences;
        container.ListSequences(sequences, false, false);
        ASSERT_EQ(sequences.size(), version >= 11007 ? 1u : 0u);
        if (version == newest) {
            COrvelArchiveWriter again;
            EXPECT_TRUE(container.WriteIntoArchive(again));
            EXPECT_EQ(again.Bytes(), record->Bytes());
        }
        if (!sequences.empty()) {
            const std::unique_ptr<COrvelSequence> sequence(sequences[0]);
            const bool hasGroup = version >= 11012;
            EXPECT_EQ(sequence->UUID(), sequenceID);
            EXPECT_EQ(sequence->OrderIndex(), hasGroup ? 5 : 0);
            EXPECT_EQ(sequence->PreviewImage().Filename(), version >= 11013 ? "a/b/c.png" : "");
            EXPECT_EQ(sequence->Duration(), version >= 12520 ? 2.5 : -1);
            EXPECT_EQ(container.CurrentGroup()->Name(), hasGroup ? "Home" : "Default");
            EXPECT_EQ(container.SelectedGroup()->Name(), hasGroup ? "Walks" : "Default");
            EXPECT_EQ(container.SelectedGroup()->OrderIndex(), hasGroup ? 7 : -1);
            EXPECT_TRUE(container.SelectedGroup()->Members().contains(sequenceID));
        }
        container.Reset();
    }
    Begin(newest);
    Put(Count(3), Count(2), COrvelUUID());
    COrvelArchiveReader without(record->Bytes());
    without.SetExtendedRecords(false);
    EXPECT_TRUE(container.ReadFromArchive(without) && without.IsAtEnd()) << "counts of records without content";
    EXPECT_TRUE(container.Groups().empty());
}

TEST_F(OldTimelines, OfCaptions)
{
    auto& captions = *COrvelAnimationCollapsingGroupGuidToCaptionMapper::Instance();
    Begin(12506);
    Read(captions);
    Begin(newest);
    Put(5, Count(1), group, COrvelString("walk"));
    Read(captions);
    COrvelUUID other;
    other.Generate();
    Begin(12507);
    Put(8, Count(2), group, COrvelString("run"), other, COrvelString());
    Read(captions);
    EXPECT_EQ(*captions.FindCaption(group), "walk") << "the first caption stays";
    EXPECT_EQ(*captions.FindCaption(other), "Group 8");
}

TEST_F(OldTimelines, WithCamerasFiledUnderTheirNodes)
{
    COrvelCamera* const camera = COrvelCamera::Create(&document, "camera");
    COrvelCamera* const busy = COrvelCamera::Create(&document, "busy");
    camera->SetLocalTransform(nullptr);
    const auto kept = Store(0, 1, Plain::CreateTransformKeyFrameData(busy->LocalTransform()->ID(), moved));
    COrvelBasicCamera whole;
    whole.SetPosition({29, 31, 37});
    Begin(10013);
    Put(Count(2));
    for (const COrvelCamera* const each : {camera, busy}) {
        Put(each->ID(), Count(2), true, 3, Count(2));
        PutBase(each->ID());
        Put(false, 90.0, whole, true, 20, Count(0));
        PutTransform(each->ID());
    }
    Put(Count(1), camera->ID(), camera->ID(), 0, 0, 0, Count(1), camera->ID(), Count(6));
    Read(*manager);
    ASSERT_NE(camera->LocalTransform(), nullptr);
    const COrvelID moves = camera->LocalTransform()->ID();
    std::vector<COrvelID> ids;
    manager->ListAnimatedIDs(ids);
    EXPECT_THAT(ids, testing::UnorderedElementsAre(moves, busy->LocalTransform()->ID()));
    KeyFrameDataList list;
    manager->ListKeyFrameDataOf(moves, list);
    ASSERT_EQ(list.size(), 1u) << "what is no camera data goes";
    auto& data = dynamic_cast<Camera&>(*list[0]);
    EXPECT_EQ(data.StoredMatrix(), whole.ComputeLocalToWorld());
    EXPECT_EQ(data.AnimatedEntityID(), moves);
    EXPECT_EQ(data.StartFrame(), 3);
    EXPECT_EQ(manager->ResolveAlias(moves), moves);
    EXPECT_EQ(Store(30, 31, Plain::CreateTransformKeyFrameData(moves, moved))->SequenceNumber(), 7);
    EXPECT_EQ(manager->StoredKeyFrameDataAtFrame(busy->LocalTransform()->ID(), 1), kept);
    EXPECT_EQ(manager->StoredKeyFrameDataAtFrame(busy->LocalTransform()->ID(), 3), nullptr);
}

TEST_F(OldTimelines, WithMorphWeightsInLists)
{
    COrvel3DObject* const object = COrvel3DObject::Create(&document, "object");
    std::vector<COrvelID> targets;
    for (int k = 0; k < 3; ++k) {
        const COrvelGeometry* const shape = COrvelGeometry::Create(&document);
        object->CreateMorphingTable()->AddMorphGeometry(shape);
        targets.push_back(shape->ID());
    }
    Begin(13013);
    Put(COrvelString(), COrvelString(), Count(1), object->ID(), Count(1), true, 3, Count(9));
    PutBase(object->ID());
    Put(Count(2), 0.25, 0.75, Count(0), 0, 0, 9, Count(0));
    Read(*manager);
    std::vector<COrvelID> ids;
    manager->ListAnimatedIDs(ids);
    EXPECT_EQ(ids, targets);
    const double weights[] = {0.25, 0.75, 0}; // the list was too short
    for (std::size_t k = 0; k < 3; ++k) {
        const auto data = manager->StoredKeyFrameDataAtFrame(targets[k], 9);
        ASSERT_NE(data, nullptr);
        const auto& morph = dynamic_cast<const Morph&>(*data);
        EXPECT_EQ(morph.Weight(), weights[k]) << k;
        EXPECT_EQ(morph.ObjectID(), object->ID());
        EXPECT_EQ(morph.StartFrame() * 100 + morph.EndFrame() * 10 + morph.WorkingFrame(), 395);
    }
}

} // namespace
} // namespace Orvel
