#include "animation/COrvelKeyFrame.h"
#include "animation/COrvelKeyFrameDataHideShow.h"
#include "animation/COrvelKeyFrameDataLight.h"
#include "animation/COrvelKeyFrameDataMaterial.h"
#include "animation/COrvelKeyFrameDataTransform.h"
#include "animation/COrvelKeyFrameDataTransformBSplineFollower.h"
#include "animation/COrvelKeyFrameDataVertices.h"
#include "animation/COrvelKeyFrameManager.h"
#include "animation/KeyFrameFixture.h"
#include "platform/core/COrvel3DObject.h"
#include "platform/core/COrvelBasicGeneralMaterial.h"
#include "platform/core/COrvelGeometry.h"
#include "platform/core/COrvelLight.h"
#include "platform/core/COrvelLightSource.h"
#include "platform/core/COrvelLinePath.h"
#include "platform/core/COrvelMaterial.h"
#include "platform/core/COrvelSkeletonJoint.h"
#include "platform/core/COrvelVerticiesTable.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <numbers>

namespace Orvel
{
namespace
{

using testing::ElementsAre;
using testing::IsEmpty;

class KeyFrameLookup : public KeyFrames
{
protected:
    COrvelSceneNode* Node(COrvelSceneNode* parent, const COrvelMatrix& matrix = {})
    {
        return Placed(COrvelSceneNode::Create(&document), parent, matrix);
    }

    template <class NodeClass>
    static NodeClass* Placed(NodeClass* node, COrvelSceneNode* parent, const COrvelMatrix& matrix = {})
    {
        node->SetLocalMatrix(matrix);
        if (parent)
            parent->AddChild(node);
        return node;
    }

    /// Gives the node's transform a data over frames 2 to 4.
    COrvelPtr<COrvelKeyFrameDataTransform> Animate(const COrvelSceneNode* node, const COrvelMatrix& matrix = {})
    {
        return Store(2, 4,
                     COrvelKeyFrameDataTransform::CreateTransformKeyFrameData(node->LocalTransform()->ID(), matrix));
    }

    COrvelPtr<COrvelKeyFrameDataMaterial> Animate(const COrvelMaterial* material, const COrvelBasicMaterial* looks)
    {
        return Store(3, 5,
                     COrvelKeyFrameDataMaterial::CreateMaterialKeyFrameData(material->ID(), looks, material->ID()));
    }

    COrvelPtr<COrvelKeyFrameDataLight> Animate(const COrvelLight* light)
    {
        return Store(6, 7,
                     COrvelKeyFrameDataLight::CreateLightKeyFrameData(light->ID(), light->BasicLight(), light->ID()));
    }

    COrvelPtr<COrvelKeyFrameDataTransformBSplineFollower> Follow(const COrvelSceneNode* node,
                                                                 const COrvelLinePath* path, int start = 0)
    {
        const auto data = Store(start, start + 5,
                                COrvelKeyFrameDataTransformBSplineFollower::CreateBSplineFollowerKeyFrameData(
                                    node->LocalTransform()->ID()));
        data->SetPathID(path ? path->ID() : COrvelID());
        return data;
    }
};

TEST_F(KeyFrameLookup, AnswersQuietlyWhenNothingIsAnimated)
{
    EXPECT_FALSE(manager->HasKeyFrames());
    EXPECT_EQ(manager->FirstFrame(), 0);
    EXPECT_EQ(manager->LastFrame(), 0);
    EXPECT_EQ(manager->ComputeLastFrame(), 0);
    std::vector<COrvelID> ids{id};
    manager->ListAnimatedMaterialIDs(ids);
    manager->ListAnimatedIDs(ids);
    EXPECT_THAT(ids, ElementsAre(id));
    std::vector<int> frames{3};
    manager->ListKeyFrameNumbers(id, frames);
    EXPECT_THAT(frames, ElementsAre(3));
    EXPECT_FALSE(manager->KeyFrameDataAtFrame(id, 0));
    EXPECT_FALSE(manager->StoredKeyFrameDataAtOrAfter(id, 0));
    EXPECT_TRUE(manager->KeyFrameAtFrame(0).KeyFrameData().empty());
    EXPECT_TRUE(manager->TargetIDAtCurrentFrame(id).IsDefault());
    EXPECT_THAT(manager->ListSequenceRootJoints(), IsEmpty());
    EXPECT_TRUE(manager->IsSeamlessLoop());
    EXPECT_FALSE(manager->IsNodeAnimated(nullptr));
    EXPECT_FALSE(manager->IsNodeTransformAnimated(nullptr));
    EXPECT_FALSE(manager->IsNodeDependentOn(nullptr, nullptr));
    EXPECT_FALSE(manager->IsAnyPathAnimated({}));
    EXPECT_NE(manager->SequenceContainer(), nullptr);
}

TEST_F(KeyFrameLookup, FindsAnimationFromTheEntityThatIsChanged)
{
    const COrvelID target = COrvelTransform::Create(&document)->ID();
    const auto own = Store(0, 10, COrvelKeyFrameDataTransform::CreateTransformKeyFrameData(id, Shift(2.0, 3.0, 5.0)));
    COrvelPtr<COrvelKeyFrameData> other =
        Over(20, 30, COrvelKeyFrameDataTransform::CreateTransformKeyFrameData(id, Shift(7.0, 11.0, 13.0)));
    other->SetTargetEntityID(target);
    manager->AddKeyFrameData(other, true);

    EXPECT_EQ(manager->ResolveAlias(target), id);
    EXPECT_EQ(manager->StoredKeyFrameDataAtFrame(target, 25), other);
    EXPECT_EQ(manager->StoredKeyFrameDataAtOrAfter(target, 15), other);
    EXPECT_FALSE(manager->StoredKeyFrameDataAtOrAfter(target, 31));
    KeyFrameDataList list;
    manager->ListKeyFrameDataOf(target, list);
    EXPECT_THAT(list, ElementsAre(own, other));
    EXPECT_FALSE(manager->KeyFrameDataAtFrame(target, 25)) << "evaluation takes ids as they are";
    std::vector<int> frames;
    manager->ListKeyFrameNumbers(target, frames);
    EXPECT_THAT(frames, IsEmpty());

    manager->SetCurrentFrame(22);
    EXPECT_EQ(manager->TargetIDAtCurrentFrame(id), target);
    EXPECT_EQ(manager->TargetIDAtCurrentFrame(target), target);
    manager->SetCurrentFrame(4);
    EXPECT_EQ(manager->TargetIDAtCurrentFrame(target), id);
    const COrvelPtr<COrvelKeyFrameData> made =
        COrvelKeyFrameDataTransform::CreateTransformKeyFrameData(target, COrvelMatrix());
    EXPECT_EQ(made->AnimatedEntityID(), id) << "new data are made for the animated entity";
}

TEST_F(KeyFrameLookup, ListsEveryFrameOnce)
{
    Store(11, 20, COrvelKeyFrameDataTransform::CreateTransformKeyFrameData(id, COrvelMatrix()));
    Store(0, 10, COrvelKeyFrameDataTransform::CreateTransformKeyFrameData(id, COrvelMatrix()));
    std::vector<int> frames;
    manager->ListKeyFrameNumbers(id, frames);
    ASSERT_EQ(frames.size(), 21U);
    for (int frame = 0; frame <= 20; ++frame)
        EXPECT_EQ(frames[static_cast<std::size_t>(frame)], frame);
}

TEST_F(KeyFrameLookup, TellsWhichNodesMove)
{
    COrvelSceneNode* const root = Node(nullptr);
    COrvelSceneNode* const middle = Node(root);
    COrvelSceneNode* const leaf = COrvelSceneNode::Create(&document);
    middle->AddChild(leaf);
    COrvelSceneNode* const aside = Node(nullptr);
    Animate(root);

    EXPECT_TRUE(manager->IsNodeAnimated(root));
    EXPECT_TRUE(manager->IsNodeAnimated(leaf)) << "by its grandparent";
    EXPECT_FALSE(manager->IsNodeAnimated(aside));
    EXPECT_TRUE(manager->IsNodeTransformAnimated(root));
    EXPECT_FALSE(manager->IsNodeTransformAnimated(middle)) << "ancestors do not count";
    EXPECT_FALSE(manager->IsNodeTransformAnimated(leaf)) << "it has no transform";
    EXPECT_TRUE(manager->IsAnyPathAnimated({aside->NodePathToRoot(true), root->NodePathToRoot(true)}));
    EXPECT_FALSE(manager->IsAnyPathAnimated({middle->NodePathToRoot(true), COrvelNodePath()}));
}

TEST_F(KeyFrameLookup, MultipliesTheMatricesOfAPathRootFirst)
{
    const COrvelMatrix turn = COrvelMatrix().DefineByRotation(std::numbers::pi / 6.0, 0.0, 0.0, 1.0);
    COrvelSceneNode* const root = Node(nullptr, Shift(7.0, 11.0, 13.0) * turn);
    COrvelSceneNode* const middle = Node(root, Shift(2.0, 3.0, 5.0));
    COrvelSceneNode* const bare = COrvelSceneNode::Create(&document);
    middle->AddChild(bare);
    COrvelSceneNode* const leaf = Node(bare, Shift(1.0, 0.0, 0.0));
    EXPECT_EQ(manager->WorldMatrixAtFrame(leaf->NodePathToRoot(true), 3), leaf->LocalToWorldMatrix());

    Animate(middle, turn * Shift(0.0, 17.0, 0.0));
    // The leaf moves by a data that is filed under another transform.
    COrvelPtr<COrvelKeyFrameData> aliased =
        Over(2, 4, COrvelKeyFrameDataTransform::CreateTransformKeyFrameData(id, Shift(0.0, 0.0, 19.0)));
    aliased->SetTargetEntityID(leaf->LocalTransform()->ID());
    manager->AddKeyFrameData(aliased, true);
    const COrvelMatrix expected = Shift(7.0, 11.0, 13.0) * turn * turn * Shift(0.0, 17.0, 0.0) * Shift(0.0, 0.0, 19.0);
    const COrvelMatrix world = manager->WorldMatrixAtFrame(COrvelNodePath({root, nullptr, middle, bare, leaf}), 3);
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 4; ++column)
            EXPECT_NEAR(world.M(row, column), expected.M(row, column), 1e-12) << row << ", " << column;
    }
    EXPECT_EQ(manager->WorldMatrixAtFrame(COrvelNodePath(), 3), COrvelMatrix());
}

TEST_F(KeyFrameLookup, SeesDependenceThroughFollowedPaths)
{
    COrvelSceneNode* const rail = Node(nullptr);
    COrvelLinePath* const path = Placed(COrvelLinePath::Create(&document), rail);
    COrvelLinePath* const second = Placed(COrvelLinePath::Create(&document), nullptr);
    COrvelSceneNode* const wagon = Node(nullptr);
    COrvelSceneNode* const wheel = Node(wagon);
    COrvelSceneNode* const aside = Node(nullptr);
    EXPECT_TRUE(manager->IsNodeDependentOn(wheel, wheel));
    EXPECT_TRUE(manager->IsNodeDependentOn(wheel, wagon));
    EXPECT_FALSE(manager->IsNodeDependentOn(wagon, wheel));
    EXPECT_FALSE(manager->IsNodeDependentOn(wheel, rail));

    Follow(wagon, second);
    Follow(wagon, nullptr, 20);
    Follow(second, path);
    EXPECT_TRUE(manager->IsNodeDependentOn(wheel, rail)) << "by the path that the followed path follows";
    EXPECT_FALSE(manager->IsNodeDependentOn(wheel, aside));
    EXPECT_FALSE(manager->IsNodeDependentOn(wheel, nullptr));
    Follow(rail, second);
    EXPECT_FALSE(manager->IsNodeDependentOn(wheel, aside)) << "paths that follow each other come to an end";

    std::vector<COrvelLinePath*> paths{path};
    manager->ListFollowedPaths({wheel, nullptr, wagon, second, rail}, paths);
    EXPECT_THAT(paths, ElementsAre(path, second, path, second));
    const auto again = Follow(aside, second);
    std::vector<COrvelKeyFrameDataTransformBSplineFollower*> followers;
    manager->ListPathFollowers(second, followers);
    EXPECT_EQ(followers.size(), 3U);
    EXPECT_EQ(std::ranges::count(followers, again.Get()), 1);
    manager->ListPathFollowers(nullptr, followers);
    EXPECT_EQ(followers.size(), 3U) << "data without a path follow nothing";
}

TEST_F(KeyFrameLookup, ListsIdsAndDataByKind)
{
    COrvelMaterial* const glass = COrvelMaterial::Create(&document, "glass");
    COrvelMaterial* const steel = COrvelMaterial::Create(&document, "steel");
    COrvelLight* const lamp = COrvelLight::Create(&document, "lamp");
    const COrvelBasicGeneralMaterial looks;
    const auto steelData = Animate(steel, &looks);
    const auto glassData = Animate(glass, nullptr);
    const auto lampData = Animate(lamp);
    const auto moved = Store(0, 9, COrvelKeyFrameDataTransform::CreateTransformKeyFrameData(id, COrvelMatrix()));
    const auto nameless =
        Store(1, 1, COrvelKeyFrameDataTransform::CreateTransformKeyFrameData(COrvelID(), COrvelMatrix()));

    const COrvelID large(eEntityType_LightSource * 4, 1000);
    std::vector<COrvelID> ids{large};
    manager->ListAnimatedMaterialIDs(ids);
    EXPECT_THAT(ids, ElementsAre(glass->ID(), steel->ID(), large)) << "everything is sorted";
    manager->ListAnimatedLightIDs(ids);
    EXPECT_THAT(ids, ElementsAre(glass->ID(), steel->ID(), large, lamp->ID()));
    ids.clear();
    manager->ListAnimatedIDs(ids);
    EXPECT_THAT(ids, ElementsAre(COrvelID(), glass->ID(), steel->ID(), id, lamp->ID()));

    std::vector<COrvelBasicMaterial*> materials;
    manager->ListKeyFrameMaterials(materials);
    EXPECT_THAT(materials, ElementsAre(steelData->Material())) << "a data without a material gives none";

    KeyFrameDataList list;
    manager->ListAllKeyFrameData(list);
    EXPECT_THAT(list, ElementsAre(nameless, glassData, steelData, moved, lampData));
    list.clear();
    manager->ListKeyFrameDataOfType(eKeyFrameDataType_Material, list);
    manager->ListKeyFrameDataAtFrame(5, list);
    EXPECT_THAT(list, ElementsAre(glassData, steelData, glassData, steelData, moved));
    list.clear();
    manager->ListReadKeyFrameDataOfType(eKeyFrameDataType_Material, list);
    EXPECT_THAT(list, IsEmpty()) << "nothing was read from an archive";
}

TEST_F(KeyFrameLookup, ListsTheDataOfWhatANodeUses)
{
    COrvelGeometry* const geometry = COrvelGeometry::Create(&document, {0.0, 0.0, 0.0, 3.0, 0.0, 0.0}, {});
    COrvel3DObject* const object =
        Placed(COrvel3DObject::Create(&document, "wheel", geometry, COrvelMaterial::Create(&document)), nullptr);
    COrvelLight* const lamp = COrvelLight::Create(&document);
    COrvelLightSource* const source = COrvelLightSource::Create(&document, "lamp", lamp);
    const auto hidden = Store(0, 1, COrvelKeyFrameDataHideShow::CreateHideShowKeyFrameData(object->ID(), true));
    const auto moved = Animate(object);
    const auto bent =
        Store(5, 5, COrvelKeyFrameDataVertices::CreateVerticesKeyFrameData(geometry->VerticiesTable()->ID(), nullptr));
    const auto coloured = Animate(object->Material(), nullptr);
    const auto dimmed = Animate(lamp);

    const COrvelKeyFrameManager other;
    KeyFrameDataList list;
    other.ListKeyFrameDataOfEntity(object, list);
    EXPECT_THAT(list, ElementsAre(hidden, moved, bent)) << "in the process-wide manager";
    list.clear();
    COrvelKeyFrameManager::ListKeyFrameDataOfEntity(source, list);
    COrvelKeyFrameManager::ListKeyFrameDataOfEntity(object->Material(), list);
    COrvelKeyFrameManager::ListKeyFrameDataOfEntity(nullptr, list);
    EXPECT_THAT(list, ElementsAre(dimmed, coloured));
}

TEST_F(KeyFrameLookup, ListsAnimatedObjectsOnceEach)
{
    COrvelSceneNode* const group = Node(nullptr);
    COrvelMaterial* const paint = COrvelMaterial::Create(&document);
    const auto object = [&](COrvelSceneNode* parent, COrvelMaterial* material) {
        return Placed(COrvel3DObject::Create(&document, {}, nullptr, material), parent);
    };
    COrvel3DObject* const painted = object(nullptr, paint);
    COrvel3DObject* const moved = object(group, paint);
    COrvel3DObject* const hidden = object(group, nullptr);
    COrvel3DObject* const deleted = object(group, nullptr);
    COrvel3DObject* const shown = object(nullptr, nullptr);
    object(nullptr, nullptr);
    hidden->Hide();
    deleted->SetDeleted(true);
    Animate(group);
    Animate(moved);
    Animate(paint, nullptr);
    Store(0, 1, COrvelKeyFrameDataHideShow::CreateHideShowKeyFrameData(shown->ID(), false));

    const auto list = [this](bool skipMaterialAnimation, bool includeHidden, bool includeDeleted) {
        std::vector<COrvel3DObject*> objects;
        manager->ListAnimated3DObjects(objects, skipMaterialAnimation, includeHidden, includeDeleted);
        return objects;
    };
    EXPECT_THAT(list(false, true, true), ElementsAre(shown, painted, moved, hidden, deleted));
    EXPECT_THAT(list(true, false, false), ElementsAre(shown, moved));
    EXPECT_THAT(list(true, true, false), ElementsAre(shown, moved, hidden));
    EXPECT_THAT(list(true, false, true), ElementsAre(shown, moved, deleted));
}

TEST_F(KeyFrameLookup, ListsAnimatedLightSourcesOnceEach)
{
    COrvelSceneNode* const group = Node(nullptr);
    COrvelLight* const lamp = COrvelLight::Create(&document);
    COrvelLightSource* const lit = COrvelLightSource::Create(&document, "lit", lamp);
    COrvelLightSource* const both = Placed(COrvelLightSource::Create(&document, "both", lamp), group);
    COrvelLightSource* const hidden = Placed(COrvelLightSource::Create(&document, "hidden"), group);
    COrvelLightSource* const deleted = Placed(COrvelLightSource::Create(&document, "deleted"), group);
    hidden->Hide();
    deleted->SetDeleted(true);
    Animate(lamp);
    Animate(group);

    std::vector<COrvelSceneNode*> sources;
    manager->ListAnimatedLightSources(sources, false, true, true);
    EXPECT_THAT(sources, ElementsAre(both, hidden, deleted, lit)) << "transforms come before lights";
    sources.clear();
    manager->ListAnimatedLightSources(sources, true, false, false);
    EXPECT_THAT(sources, ElementsAre(both));
    manager->ListAnimatedLightSources(sources, false, false, false);
    EXPECT_THAT(sources, ElementsAre(both, lit)) << "one that is listed already is not added again";
}

TEST_F(KeyFrameLookup, ListsTheRootsOfAnimatedSkeletons)
{
    COrvelSkeletonJoint* const hip =
        Placed(COrvelSkeletonJoint::Create(&document, "hip", eJointType_Root), Node(nullptr));
    COrvelSkeletonJoint* const knee = Placed(COrvelSkeletonJoint::Create(&document, "knee"), hip);
    COrvelSkeletonJoint* const foot = Placed(COrvelSkeletonJoint::Create(&document, "foot"), knee);
    COrvelSkeletonJoint* const neck = Placed(COrvelSkeletonJoint::Create(&document, "neck", eJointType_Root), nullptr);
    COrvelSkeletonJoint* const loose = Placed(COrvelSkeletonJoint::Create(&document, "loose"), nullptr);
    Animate(Node(hip));
    EXPECT_THAT(manager->ListSequenceRootJoints(), IsEmpty()) << "a node in a skeleton is no joint of it";
    for (const COrvelSkeletonJoint* const joint : {foot, loose, neck, knee})
        Animate(joint);
    EXPECT_THAT(manager->ListSequenceRootJoints(), ElementsAre(hip, neck));
}

TEST_F(KeyFrameLookup, CollectsTheAnimatedIdsOfATree)
{
    COrvelSceneNode* const root = Node(nullptr);
    COrvelSceneNode* const deleted = Node(root);
    deleted->SetDeleted(true);
    COrvelSceneNode* const below = Node(deleted);
    COrvelGeometry* const geometry = COrvelGeometry::Create(&document, {0.0, 0.0, 0.0, 3.0, 0.0, 0.0}, {});
    COrvel3DObject* const object =
        Placed(COrvel3DObject::Create(&document, "wheel", geometry, COrvelMaterial::Create(&document)), root);
    for (const COrvelSceneNode* const node : {root, deleted, below, static_cast<COrvelSceneNode*>(object)})
        Animate(node);
    Animate(object->Material(), nullptr);
    const COrvelID vertices = geometry->VerticiesTable()->ID();
    Store(5, 5, COrvelKeyFrameDataVertices::CreateVerticesKeyFrameData(vertices, nullptr));
    const COrvelID rootMove = root->LocalTransform()->ID();
    const COrvelID move = object->LocalTransform()->ID();
    const COrvelID material = object->Material()->ID();

    const auto collect = [&](COrvelSceneNode* node, int typeMask) {
        std::set<COrvelID> ids;
        manager->CollectAnimatedIDs(node, ids, typeMask, true);
        return ids;
    };
    EXPECT_THAT(collect(object, 64), ElementsAre(move));
    EXPECT_THAT(collect(object, 4), ElementsAre(material));
    EXPECT_THAT(collect(object, 256 | 4), ElementsAre(material, vertices));
    EXPECT_THAT(collect(deleted, 64), ElementsAre(deleted->LocalTransform()->ID())) << "asked for by itself";
    EXPECT_THAT(collect(nullptr, 324), IsEmpty());

    std::set<COrvelID> ids;
    COrvelKeyFrameManager other;
    other.CollectAnimatedIDs(root, ids, 4, false);
    EXPECT_THAT(ids, ElementsAre(material, rootMove, move, vertices))
        << "a tree is always searched for every kind, in the process-wide manager, without deleted nodes";
    ids.clear();
    other.CollectAnimatedIDs(object, ids, 324, true);
    EXPECT_THAT(ids, IsEmpty()) << "a single node is asked for in this manager";
}

TEST_F(KeyFrameLookup, TakesSnapshotsOfTheScene)
{
    Store(0, 4, COrvelKeyFrameDataTransform::CreateTransformKeyFrameData(id, Shift(2.0, 3.0, 5.0)));
    COrvelSceneNode* const node = COrvelSceneNode::Create(&document);
    const auto hidden = Store(2, 6, COrvelKeyFrameDataHideShow::CreateHideShowKeyFrameData(node->ID(), true));

    COrvelKeyFrame snapshot = manager->KeyFrameAtFrame(3);
    ASSERT_EQ(snapshot.KeyFrameData().size(), 2U);
    for (const auto& [entity, data] : snapshot.KeyFrameData())
        EXPECT_EQ(data->WorkingFrame(), 3);
    const COrvelKeyFrame copy = snapshot;
    EXPECT_NE(copy.KeyFrameData().at(id), snapshot.KeyFrameData().at(id)) << "a copy has data of its own";

    const COrvelPtr<COrvelKeyFrameData> before = snapshot.KeyFrameData().at(node->ID());
    hidden->SetHidden(false);
    EXPECT_EQ(snapshot.SetKeyFrameData(hidden), before);
    EXPECT_NE(snapshot.KeyFrameData().at(node->ID()), COrvelPtr<COrvelKeyFrameData>(hidden));
    EXPECT_FALSE(snapshot.SetKeyFrameData(nullptr));

    copy.Apply();
    EXPECT_EQ(transform->Matrix(), Shift(2.0, 3.0, 5.0));
    EXPECT_TRUE(node->IsHidden());
    snapshot.Apply();
    EXPECT_FALSE(node->IsHidden());
    snapshot = copy;
    snapshot.Apply();
    EXPECT_TRUE(node->IsHidden());
}

} // namespace
} // namespace Orvel
