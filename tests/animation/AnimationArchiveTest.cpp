#include "animation/COrvelAnimationCollapsingGroupGuidToCaptionMapper.h"
#include "animation/COrvelKeyFrame.h"
#include "animation/COrvelSequence.h"
#include "animation/COrvelSequenceContainer.h"
#include "platform/core/COrvelArchiveReader.h"
#include "platform/core/COrvelArchiveWriter.h"
#include "platform/core/COrvelBasicMetallicMaterial.h"
#include "platform/core/COrvelDocumentsContainer.h"
#include "platform/core/COrvelLight.h"
#include "platform/core/COrvelLightSource.h"
#include "platform/core/COrvelLinePath.h"
#include "tests/animation/KeyFrameFixture.h"

#include <gmock/gmock.h>

#include <random>

namespace Orvel
{

namespace
{

using testing::ElementsAre;
using Bytes = std::vector<std::uint8_t>;
using Numbers = std::vector<double>;

constexpr int typeCount = 10;

void Append(Numbers& numbers, double value)
{
    numbers.push_back(value);
}
void Append(Numbers& numbers, const COrvelMatrix& matrix)
{
    numbers.insert(numbers.end(), matrix.Values().begin(), matrix.Values().end());
}
void Append(Numbers& numbers, const COrvel3DVertex& point)
{
    numbers.insert(numbers.end(), {point.X(), point.Y(), point.Z()});
}
void Append(Numbers& numbers, const COrvelID& id)
{
    numbers.push_back(static_cast<double>(id.Number()));
}

/// Data without a motion of their own have no use for frames of constant speed and do not store them.
bool IsSteady(const COrvelKeyFrameData& data)
{
    return !dynamic_cast<const Camera*>(&data) && !dynamic_cast<const Table*>(&data) &&
           !dynamic_cast<const Follower*>(&data);
}

/// Everything that a data holds, by what its accessors say.
Numbers ContentOf(const COrvelKeyFrameData& data)
{
    Numbers all;
    const auto add = [&all](const auto&... values) { (Append(all, values), ...); };
    add(data.Type(), data.StartFrame(), data.EndFrame(), data.WorkingFrame(), data.EaseIn(), data.EaseOut(),
        data.SequenceNumber(), data.CollapsingGroupID().Data()[3], data.OwnerGuid().Data()[5], data.TargetEntityID(),
        data.AnimatedEntityID());
    if (const auto* const plain = dynamic_cast<const Plain*>(&data))
        add(plain->StoredMatrix(), plain->Pivot());
    if (!IsSteady(data))
        add(data.ConstantSpeedStartFrame(), data.ConstantSpeedEndFrame());
    if (const auto* const camera = dynamic_cast<const Camera*>(&data))
        add(camera->DistanceToTarget(), camera->AngleInDegrees(), camera->Descends(), camera->IsOrbit(),
            camera->UsesCameraBlend(), camera->FieldOfView(), camera->DOFDistance(), camera->DOFFStop(),
            camera->DOFIsEnabled());
    if (const auto* const grid = dynamic_cast<const Grid*>(&data))
        add(grid->GridType(), grid->Rows(), grid->Columns(), grid->VerticalWrap(), grid->Centre());
    if (const auto* const table = dynamic_cast<const Table*>(&data))
        add(table->Reference(), table->AxisFrame(), table->Normal().Point(), table->Normal().Direction(),
            table->AngleInDegrees());
    if (const auto* const follower = dynamic_cast<const Follower*>(&data))
        add(follower->BaseMatrix(), follower->OffsetMatrix(), follower->ReferenceMatrix(), follower->PathID(),
            follower->FollowedNodeID());
    if (const auto* const material = dynamic_cast<const Material*>(&data))
        add(material->Material() ? dynamic_cast<COrvelBasicMetallicMaterial&>(*material->Material()).Roughness() : -1);
    if (const auto* const light = dynamic_cast<const Light*>(&data))
        add(light->Light() ? light->Light()->Intensity() : -1);
    if (const auto* const shapes = dynamic_cast<const Vertices*>(&data)) {
        const auto* const shape = shapes->TableAtWorkingFrame();
        add(static_cast<double>(shapes->TableCount()), shape ? shape->Item(1) : COrvel3DVertex());
    }
    if (const auto* const hideShow = dynamic_cast<const HideShow*>(&data))
        add(hideShow->IsHidden());
    if (const auto* const morph = dynamic_cast<const Morph*>(&data))
        add(morph->Weight(), morph->ObjectID());
    return all;
}

class AnimationArchive : public KeyFrames
{
protected:
    AnimationArchive()
    {
        COrvelLightSource::Create(&document, "source", lamp);
        for (COrvelTransform*& one : transforms)
            one = COrvelTransform::Create(&document);
    }
    ~AnimationArchive() override { Forget(); }

    int Integer(int from, int to) { return std::uniform_int_distribution(from, to)(random); }
    double Real() { return std::uniform_real_distribution(-9.0, 9.0)(random); }
    COrvel3DVertex Point() { return {Real(), Real(), Real()}; }
    COrvelMatrix Matrix()
    {
        return COrvelMatrix().DefineByRotation(Real(), Point()) * COrvelMatrix::CreateTranslation(Point());
    }
    COrvelBasicVectorsTable Shape() { return COrvelBasicVectorsTable({Point(), Point()}); }

    COrvelKeyFrameData* MakeCamera(Camera* camera)
    {
        camera->SetStoredMatrix(Matrix());
        camera->SetDistanceToTarget(Real());
        camera->SetAngleInDegrees(Real());
        camera->SetDescends(Integer(0, 1) == 1);
        camera->SetUsesCameraBlend(Integer(0, 1) == 1);
        camera->SetFieldOfView(Integer(2, 170));
        camera->SetDOF(Integer(0, 1) == 1, Real(), Real());
        if (auto* const grid = dynamic_cast<Grid*>(camera)) {
            grid->SetGridType(Integer(0, 2));
            grid->SetRows(Integer(1, 5));
            grid->SetColumns(Integer(1, 5));
            grid->SetVerticalWrap(Integer(0, 1) == 1);
            grid->SetCentre(Point());
        } else {
            camera->SetOrbit(Integer(0, 1) == 1);
        }
        return camera;
    }

    COrvelKeyFrameData* Make(int type)
    {
        const COrvelID& moved = transforms[type]->ID();
        switch (type) {
        case eKeyFrameDataType_Material: {
            COrvelBasicMetallicMaterial metal;
            metal.SetName("größe");
            metal.SetRoughness(Real());
            return Material::CreateMaterialKeyFrameData(steel, Integer(0, 3) ? &metal : nullptr, steel);
        }
        case eKeyFrameDataType_Light: {
            COrvelBasicSpotLight spot;
            spot.SetIntensity(Real());
            return Light::CreateLightKeyFrameData(lamp->ID(), Integer(0, 3) ? &spot : nullptr, lamp->ID());
        }
        case eKeyFrameDataType_TransformCamera:
            return MakeCamera(Camera::CreateCameraKeyFrameData(moved, COrvelBasicCamera()));
        case eKeyFrameDataType_TransformSphericalCamera:
            return MakeCamera(Grid::CreateSphericalCameraKeyFrameData(moved, COrvelBasicCamera()));
        case eKeyFrameDataType_TransformRoundTable:
            return Table::CreateRoundTableKeyFrameData(moved, Matrix(), Matrix(), 0, 0, Real(), Point(), Point(), 0, 0,
                                                       0, 0);
        case eKeyFrameDataType_TransformBSplineFollower: {
            auto* const follower = Follower::CreateBSplineFollowerKeyFrameData(moved);
            follower->SetBaseMatrix(Matrix());
            follower->SetOffsetMatrix(Matrix());
            follower->SetReferenceMatrix(Matrix());
            follower->SetPathID(path->ID());
            follower->SetFollowedNodeID(node->ID());
            return follower;
        }
        case eKeyFrameDataType_Vertices: {
            auto* const shape = Vertices::CreateVerticesKeyFrameData({256, 1000003}, nullptr);
            for (int k = Integer(1, 4); k > 0; --k)
                shape->AddTable(Integer(0, 3) ? std::make_unique<COrvelBasicVectorsTable>(Shape()) : nullptr);
            return shape;
        }
        case eKeyFrameDataType_HideShow:
            return HideShow::CreateHideShowKeyFrameData(node->ID(), Integer(0, 1) == 1);
        case eKeyFrameDataType_Morph:
            return Morph::CreateMorphKeyFrameData({1073741824, 1000005}, {1, 1000007}, Real());
        default:
            return Plain::CreateTransformKeyFrameData(moved, Matrix());
        }
    }

    /// Data of every type for different entities, one behind the other.
    void Fill(COrvelKeyFrameManager& timeline, int dataPerType)
    {
        for (int type = 0; type < typeCount; ++type) {
            int start = Integer(0, 5);
            for (int k = 0; k < dataPerType; ++k) {
                DataPtr data = Over(start, start + Integer(0, 9), Make(type));
                data->SetWorkingFrame(start + Integer(0, 3));
                data->SetConstantSpeedStartFrame(start + Integer(0, 9));
                data->SetEaseIn(Integer(0, 3));
                data->SetEaseOut(Integer(0, 3));
                if (auto* const transformData = dynamic_cast<Plain*>(data.Get()))
                    transformData->SetPivot(Point());
                timeline.AddKeyFrameData(data, true);
                start = data->EndFrame() + Integer(1, 9);
            }
        }
        timeline.SetCurrentFrame(Integer(0, 50));
        KeyFrameDataList all;
        timeline.ListAllKeyFrameData(all);
        all.resize(all.size() / 2);
        for (const DataPtr& data : all) {
            data->SetOwnerGuid(node->GetGuid());
            data->SetCollapsingGroupID(group);
        }
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
            sequence->SetOrderIndex(Integer(1, 99));
            sequence->SetDuration(Real());
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

    /// The content of the timeline, then of every sequence.
    std::vector<Numbers> Content() const
    {
        std::vector<Numbers> content;
        const auto append = [&content](const COrvelKeyFrameManager& timeline) {
            content.push_back({1.0 * timeline.CurrentFrame(), 1.0 * timeline.FirstFrame(), 1.0 * timeline.LastFrame()});
            KeyFrameDataList all;
            timeline.ListAllKeyFrameData(all);
            for (const DataPtr& data : all)
                content.push_back(ContentOf(*data));
        };
        append(*manager);
        for (const COrvelSequence* const sequence : Sequences()) {
            append(*sequence);
            content.push_back({1.0 * sequence->OrderIndex(), sequence->Duration(), 1.0 * sequence->UUID().Data()[0],
                               1.0 * sequence->GroupID().Data()[0], 1.0 * sequence->PreviewImage().IsEmpty()});
        }
        return content;
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

    std::mt19937_64 random{20};
    COrvelTransform* transforms[typeCount] = {};
    COrvelID steel{4, 1000001};
    COrvelLight* lamp = COrvelLight::Create(&document, "lamp");
    COrvelLinePath* path = COrvelLinePath::Create(&document, "path");
    COrvelSceneNode* node = COrvelSceneNode::Create(&document, "node");
    COrvelUUID group;
    COrvelSequenceContainer* container = COrvelSequenceContainer::Instance();
    COrvelAnimationCollapsingGroupGuidToCaptionMapper* captions =
        COrvelAnimationCollapsingGroupGuidToCaptionMapper::Instance();
};

TEST_F(AnimationArchive, BringsBackTimelinesSequencesGroupsAndCaptions)
{
    for (int round = 0; round < 5; ++round) {
        FillEverything(1 + round);
        const std::vector<Numbers> content = Content();
        const Bytes bytes = Write();
        Forget();
        container->HostSequences().push_back(nullptr);
        ASSERT_TRUE(Read(bytes));
        EXPECT_EQ(Content(), content);
        EXPECT_EQ(Write(), bytes);
        EXPECT_EQ(manager->Name(), "timeline");
        EXPECT_EQ(*captions->FindCaption(group), "walk");
        ASSERT_EQ(Sequences().size(), 2u) << "the temporary one is not stored";
        EXPECT_EQ(container->Groups().size(), 1u);
        EXPECT_EQ(container->SelectedGroup(), container->Groups().begin()->second.get());
        EXPECT_EQ(container->Text(), "Default");
        EXPECT_TRUE(container->HostSequences().empty());
        EXPECT_EQ(manager->ResolveAlias(transforms[0]->ID()), transforms[0]->ID());
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
        for (int k = Integer(1, 3); k > 0; --k)
            damaged[static_cast<std::size_t>(Integer(0, static_cast<int>(bytes.size()) - 1))] =
                static_cast<std::uint8_t>(Integer(0, 255));
        readable += Read(damaged) ? 1 : 0;
        std::vector<COrvelID> ids;
        manager->ListAnimatedIDs(ids);
        for (const COrvelID& animated : ids)
            manager->KeyFrameDataAtFrame(animated, Integer(0, 40));
        Forget();
    }
    EXPECT_GT(readable, 500) << "most bytes are numbers of which any is as good";
    EXPECT_LT(readable, 2000);
}

TEST_F(AnimationArchive, NumbersDataWithoutHolesOnlyWhileItIsWritten)
{
    const auto add = [this](int start, int number) {
        DataPtr data = Over(start, start, Make(eKeyFrameDataType_TransformBSplineFollower));
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
    const DataPtr data = Store(2, 3, Make(eKeyFrameDataType_Transform));
    data->SetCollapsingGroupID(group);
    data->SetOwnerGuid(old);
    const Bytes bytes = Write();
    const auto readOwner = [&] {
        Forget();
        EXPECT_TRUE(Read(bytes));
        const auto read = manager->StoredKeyFrameDataAtFrame(transforms[0]->ID(), 2);
        EXPECT_EQ(read->CollapsingGroupID(), group);
        return read->OwnerGuid();
    };
    EXPECT_EQ(readOwner(), COrvelUUID()) << "nobody has that GUID any more";
    COrvelDocumentsContainer::DocumentsContainer()->AddReplacedUUID(old, node->GetGuid());
    EXPECT_EQ(readOwner(), node->GetGuid());
    path->SetGuid(old);
    EXPECT_EQ(readOwner(), old) << "the GUID itself comes first";
}

TEST_F(AnimationArchive, TranslatesIdsOfTimelinesAndSequences)
{
    FillEverything(1);
    const Bytes bytes = Write();
    Forget();
    const COrvelID fresh = COrvelTransform::Create(&document)->ID();
    COrvelDocumentsContainer::DocumentsContainer()->AddTranslatedID(transforms[0]->ID(), fresh);
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
    ASSERT_EQ(read.KeyFrameData().size(), static_cast<std::size_t>(typeCount)) << "what was there before is gone";
    for (const auto& [entity, data] : written.KeyFrameData())
        EXPECT_EQ(ContentOf(*read.KeyFrameData().at(entity)), ContentOf(*data));
    Bytes unknownType = archive.Bytes();
    unknownType[4 + 12] = 10; // behind the count and the first id
    COrvelArchiveReader damaged(unknownType);
    EXPECT_FALSE(read.ReadFromArchive(damaged));
    EXPECT_TRUE(read.KeyFrameData().empty());
}

} // namespace

} // namespace Orvel
