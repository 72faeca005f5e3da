#include "animation/COrvelAnimationCollapsingGroupGuidToCaptionMapper.h"
#include "platform/core/COrvel3DObject.h"
#include "platform/core/COrvelGeometry.h"
#include "platform/core/COrvelLight.h"
#include "platform/core/COrvelLightSource.h"
#include "platform/core/COrvelMaterial.h"
#include "platform/core/COrvelSkeletonJoint.h"
#include "platform/core/COrvelVerticiesTable.h"
#include "tests/animation/KeyFrameFixture.h"

#include <gmock/gmock.h>

namespace Orvel
{
namespace
{

using testing::ElementsAre;
using Manager = COrvelKeyFrameManager;

class CollapsingGroups : public KeyFrames
{
protected:
    CollapsingGroups()
    {
        root->AddChild(group);
        group->AddChild(left);
        group->AddChild(right);
        left->SetLocalTransform(transform);
    }

    DataPtr Move(int start, int end, const COrvelTransform* moved)
    {
        return Store(start, end, Plain::CreateTransformKeyFrameData(moved->ID(), Shift(2, 3, 5)));
    }
    /// A transform of its own for a node, animated over one frame.
    DataPtr MoveNode(COrvelSceneNode* node)
    {
        node->SetLocalTransform(COrvelTransform::Create(&document));
        return Move(4, 4, node->LocalTransform());
    }
    static COrvelUUID NewID()
    {
        COrvelUUID id;
        id.Generate();
        return id;
    }

    COrvelSceneNode* root = COrvelSceneNode::Create(&document, "root");
    COrvelSceneNode* group = COrvelSceneNode::Create(&document, "group");
    COrvel3DObject* left = COrvel3DObject::Create(&document, "left");
    COrvel3DObject* right = COrvel3DObject::Create(&document, "right");
    COrvelAnimationCollapsingGroupGuidToCaptionMapper& captions =
        *COrvelAnimationCollapsingGroupGuidToCaptionMapper::Instance();
};

TEST_F(CollapsingGroups, KeepTheirFirstCaptionAndCountTheEmptyOnes)
{
    const COrvelUUID first = NewID();
    const COrvelUUID second = NewID();
    captions.AddCaption(COrvelUUID(), "");
    captions.AddCaption(first, "");
    captions.AddCaption(second, "");
    captions.AddCaption(first, "walk");
    EXPECT_EQ(*captions.FindCaption(first), "Group 0");
    EXPECT_EQ(*captions.FindCaption(second), "Group 1");
    EXPECT_EQ(captions.Captions().size(), 2u);
    EXPECT_EQ(captions.FindCaption(NewID()), nullptr);
}

TEST_F(CollapsingGroups, HangFromWhatShowsTheAnimation)
{
    COrvelGeometry* const geometry = COrvelGeometry::Create(&document, {0, 0, 0, 1, 0, 0, 0, 1, 0}, {0, 1, 2});
    right->SetGeometry(geometry);
    COrvelLight* const lamp = COrvelLight::Create(&document, "lamp");
    COrvelLightSource* const source = COrvelLightSource::Create(&document, "source", lamp);
    COrvelMaterial* const steel = COrvelMaterial::Create(&document);
    const COrvelID table = geometry->VerticiesTable()->ID();
    const auto made = [this](auto* data) { return DataPtr(Over(3, 7, data)); };
    const struct
    {
        DataPtr data;
        COrvelEntity* owner;
    } cases[] = {
        {Move(3, 7, transform), left},
        {made(Vertices::CreateVerticesKeyFrameData(table, nullptr)), right},
        {made(Light::CreateLightKeyFrameData(lamp->ID(), nullptr, lamp->ID())), source},
        {made(Material::CreateMaterialKeyFrameData(steel->ID(), nullptr, steel->ID())), steel},
        {made(Morph::CreateMorphKeyFrameData(geometry->ID(), right->ID(), 0.5)), geometry},
        {made(Morph::CreateMorphKeyFrameData(right->ID(), right->ID(), 0.5)), right},
    };
    for (const auto& [data, owner] : cases) {
        Manager::CollapseKeyFrameData({nullptr, data}, "moves");
        EXPECT_EQ(data->OwnerGuid(), owner->GetGuid()) << data->Type();
        ASSERT_NE(captions.FindCaption(data->CollapsingGroupID()), nullptr) << data->Type();
        EXPECT_EQ(*captions.FindCaption(data->CollapsingGroupID()), "moves");
    }
    const DataPtr unseen = Move(0, 0, COrvelTransform::Create(&document));
    Manager::CollapseKeyFrameData({unseen, cases[0].data}, "");
    EXPECT_FALSE(unseen->IsInCollapsingGroup());
    EXPECT_EQ(*captions.FindCaption(cases[0].data->CollapsingGroupID()), "Group 0") << "a new group all the same";
}

TEST_F(CollapsingGroups, OfSeveralEntitiesHangFromTheNearestCommonParent)
{
    const DataPtr ofLeft = Move(3, 7, transform);
    const DataPtr ofRight = MoveNode(right);
    Manager::CollapseKeyFrameData({ofLeft, ofRight}, "both");
    EXPECT_EQ(ofLeft->OwnerGuid(), group->GetGuid());
    EXPECT_EQ(ofRight->CollapsingGroupID(), ofLeft->CollapsingGroupID());

    const COrvelUUID before = ofLeft->CollapsingGroupID();
    group->SetGuid(COrvelUUID());
    Manager::CollapseKeyFrameData({ofLeft, ofRight}, "no owner");
    COrvelSceneNode* const elsewhere = COrvelSceneNode::Create(&document, "elsewhere");
    const DataPtr ofElsewhere = MoveNode(elsewhere);
    Manager::CollapseKeyFrameData({ofLeft, ofElsewhere}, "no common parent");
    EXPECT_EQ(ofLeft->CollapsingGroupID(), before);
    EXPECT_FALSE(ofElsewhere->IsInCollapsingGroup());
    EXPECT_EQ(captions.Captions().size(), 1u);
}

TEST_F(CollapsingGroups, AreMadeForEachSkeleton)
{
    const auto joint = [this](enumJointType type) { return COrvelSkeletonJoint::Create(&document, "joint", type); };
    COrvelSkeletonJoint* const hips = joint(eJointType_Root);
    COrvelSkeletonJoint* const knee = joint(eJointType_Inner);
    COrvelSkeletonJoint* const tail = joint(eJointType_Root);
    COrvelSkeletonJoint* const loose = joint(eJointType_Inner);
    hips->AddChild(knee);
    knee->AddChild(left);
    const KeyFrameDataList data = {MoveNode(hips), MoveNode(knee),  Move(3, 7, transform),
                                   MoveNode(tail), MoveNode(loose), MoveNode(right),
                                   nullptr};
    Manager::CollapseKeyFrameDataBySkeleton(data, {hips, hips, nullptr}, "");
    for (std::size_t k = 0; k < 3; ++k) {
        EXPECT_EQ(data[k]->OwnerGuid(), hips->GetGuid()) << k;
        EXPECT_EQ(data[k]->CollapsingGroupID(), data[0]->CollapsingGroupID()) << k;
    }
    for (std::size_t k = 3; k < 6; ++k)
        EXPECT_FALSE(data[k]->IsInCollapsingGroup()) << k;
    Manager::CollapseKeyFrameDataBySkeleton(data, {tail, hips}, "dance");
    EXPECT_EQ(data[3]->OwnerGuid(), tail->GetGuid());
    EXPECT_NE(data[3]->CollapsingGroupID(), data[0]->CollapsingGroupID());
    EXPECT_EQ(*captions.FindCaption(data[3]->CollapsingGroupID()), "dance");
    EXPECT_EQ(captions.Captions().size(), 3u);
}

TEST_F(CollapsingGroups, LetGoOfDataThatMovedOutOfTheirSpan)
{
    const DataPtr late = Move(30, 50, transform);
    const DataPtr early = Move(10, 20, transform);
    Manager::CollapseKeyFrameData({late, early}, "group");
    const COrvelUUID group1 = early->CollapsingGroupID();
    const struct
    {
        int start, end;
        bool detaches;
    } cases[] = {{60, 70, true},  {51, 51, true}, {0, 9, true},   {0, 70, true},
                 {50, 70, false}, {0, 10, false}, {21, 29, false}};
    for (const auto& [start, end, detaches] : cases) {
        KeyFrameDataList moved = {Over(start, end, early->Clone(false)), Over(start, end, early->Clone(false))};
        Manager::DetachFromCollapsingGroup(moved, {late, early});
        EXPECT_EQ(moved[0]->CollapsingGroupID() != group1, detaches) << start;
        EXPECT_EQ(moved[0]->CollapsingGroupID(), moved[1]->CollapsingGroupID()) << start;
        EXPECT_EQ(moved[0]->OwnerGuid(), early->OwnerGuid()) << start;
    }
    KeyFrameDataList moved = {Over(60, 70, early->Clone(false))};
    Manager::DetachFromCollapsingGroup(moved, {late});
    early->SetOwnerGuid(COrvelUUID());
    Manager::DetachFromCollapsingGroup(moved, {late, early});
    EXPECT_EQ(moved[0]->CollapsingGroupID(), group1) << "too small a group, or none that begins with an owner";
    EXPECT_EQ(captions.Captions().size(), 1u) << "the new groups have no captions";
}

TEST_F(CollapsingGroups, AreListedByDataAndByEntity)
{
    const DataPtr first = Move(40, 45, transform);
    const DataPtr second = Move(10, 12, transform);
    const DataPtr single = Move(20, 21, transform);
    const DataPtr other = MoveNode(right);
    Manager::CollapseKeyFrameData({first, second}, "pair");
    Manager::CollapseKeyFrameData({other}, "other");
    const COrvelUUID pair = first->CollapsingGroupID();
    single->SetCollapsingGroupID(NewID());
    const auto groups = Manager::KeyFrameDataByCollapsingGroup({other, first, single, second, nullptr});
    ASSERT_EQ(groups.size(), 2u) << "one has no owner";
    EXPECT_THAT(groups.at(pair), ElementsAre(first, second));
    std::map<COrvelUUID, FrameRange> spans{{pair, {1, 2}}};
    Manager::CollapsingGroupSpans(groups, spans);
    EXPECT_EQ(spans.at(pair), FrameRange(10, 45));

    std::vector<COrvelEntity*> owners{right};
    Manager::ListCollapsingGroupOwners({first, single, other, second}, owners);
    EXPECT_THAT(owners, ElementsAre(right, left));
    std::map<COrvelEntity*, std::vector<COrvelUUID>> ids{{right, {}}};
    Manager::CollapsingGroupIDsByEntity({left, right}, ids);
    EXPECT_THAT(ids.at(left), ElementsAre(pair, single->CollapsingGroupID())) << "by start frame, each once";
    EXPECT_TRUE(ids.at(right).empty()) << "had an entry";
    KeyFrameDataByGroup found{{single->CollapsingGroupID(), {other}}};
    Manager::KeyFrameDataByCollapsingGroupOfEntities(ids, found);
    EXPECT_THAT(found.at(pair), ElementsAre(second, first));
    EXPECT_THAT(found.at(single->CollapsingGroupID()), ElementsAre(other)) << "had an entry";

    EXPECT_TRUE(Manager::OwnsCollapsingGroup(root));
    EXPECT_FALSE(Manager::OwnsCollapsingGroup(nullptr));
    left->SetDeleted(true);
    EXPECT_TRUE(Manager::OwnsCollapsingGroup(root)) << "of the other child";
    right->SetDeleted(true);
    EXPECT_FALSE(Manager::OwnsCollapsingGroup(root));
    EXPECT_TRUE(Manager::OwnsCollapsingGroup(right)) << "asked for itself";
}

} // namespace
} // namespace Orvel
