#include "animation/COrvelKeyFrame.h"
#include "platform/core/COrvel3DObject.h"
#include "platform/core/COrvelGeometry.h"
#include "platform/core/COrvelLight.h"
#include "platform/core/COrvelLightSource.h"
#include "platform/core/COrvelLinePath.h"
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
using testing::IsEmpty;

class KeyFrameLookup : public KeyFrames
{
protected:
    /// Gives a new node a local transform and a parent.
    template <class NodeClass>
    static NodeClass* Placed(NodeClass* node, COrvelSceneNode* parent = nullptr, const COrvelMatrix& matrix = {})
    {
        node->SetLocalMatrix(matrix);
        if (parent)
            parent->AddChild(node);
        return node;
    }
    COrvelSceneNode* Node(COrvelSceneNode* parent = nullptr, const COrvelMatrix& matrix = {})
    {
        return Placed(COrvelSceneNode::Create(&document), parent, matrix);
    }
    COrvel3DObject* Wheel(COrvelSceneNode* parent = nullptr)
    {
        COrvelGeometry* const geometry = COrvelGeometry::Create(&document, {0, 0, 0, 3, 0, 0}, {});
        return Placed(COrvel3DObject::Create(&document, "wheel", geometry, COrvelMaterial::Create(&document)), parent);
    }

    COrvelPtr<Plain> Animate(const COrvelSceneNode* node, const COrvelMatrix& matrix = {})
    {
        return Store(2, 4, Plain::CreateTransformKeyFrameData(node->LocalTransform()->ID(), matrix));
    }
    COrvelPtr<Material> Animate(const COrvelMaterial* material, const COrvelBasicMaterial* looks = nullptr)
    {
        return Store(3, 5, Material::CreateMaterialKeyFrameData(material->ID(), looks, material->ID()));
    }
    COrvelPtr<Light> Animate(const COrvelLight* light)
    {
        return Store(6, 7, Light::CreateLightKeyFrameData(light->ID(), light->BasicLight(), light->ID()));
    }
    COrvelPtr<Vertices> Bend(const COrvel3DObject* object)
    {
        return Store(5, 5, Vertices::CreateVerticesKeyFrameData(object->Geometry()->VerticiesTable()->ID(), nullptr));
    }
    COrvelPtr<Follower> Follow(const COrvelSceneNode* node, const COrvelLinePath* path, int start = 0)
    {
        const auto data =
            Store(start, start + 5, Follower::CreateBSplineFollowerKeyFrameData(node->LocalTransform()->ID()));
        data->SetPathID(path ? path->ID() : COrvelID());
        return data;
    }
};

TEST_F(KeyFrameLookup, AnswersQuietlyWhenNothingIsAnimated)
{
    EXPECT_EQ(manager->ComputeLastFrame(), 0);
    EXPECT_FALSE(manager->StoredKeyFrameDataAtOrAfter(id, 0));
    EXPECT_TRUE(manager->KeyFrameAtFrame(0).KeyFrameData().empty());
    EXPECT_TRUE(manager->TargetIDAtCurrentFrame(id).IsDefault());
    EXPECT_TRUE(manager->IsSeamlessLoop());
    EXPECT_FALSE(manager->IsNodeAnimated(nullptr));
    EXPECT_FALSE(manager->IsNodeTransformAnimated(nullptr));
    EXPECT_FALSE(manager->IsNodeDependentOn(nullptr, nullptr));
}

TEST_F(KeyFrameLookup, FindsAnimationFromTheEntityThatIsChanged)
{
    const COrvelID target = NewTransform();
    const DataPtr own = StorePlain(0, 10);
    DataPtr other = PlainOver(20, 30);
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
    const DataPtr made = Plain::CreateTransformKeyFrameData(target, {});
    EXPECT_EQ(made->AnimatedEntityID(), id) << "new data are made for the animated entity";
    own->SetEntityID(target);
    EXPECT_EQ(own->TargetEntityID(), id);
}

TEST_F(KeyFrameLookup, TellsWhichNodesMove)
{
    COrvelSceneNode* const root = Node();
    COrvelSceneNode* const middle = Node(root);
    COrvelSceneNode* const leaf = COrvelSceneNode::Create(&document);
    middle->AddChild(leaf);
    COrvelSceneNode* const aside = Node();
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
    const COrvelMatrix turn = Turn(0.5, 0, 0, 1);
    COrvelSceneNode* const root = Node(nullptr, Shift(7, 11, 13) * turn);
    COrvelSceneNode* const middle = Node(root, Shift(2, 3, 5));
    COrvelSceneNode* const bare = COrvelSceneNode::Create(&document);
    middle->AddChild(bare);
    COrvelSceneNode* const leaf = Node(bare, Shift(1, 0, 0));
    EXPECT_EQ(manager->WorldMatrixAtFrame(leaf->NodePathToRoot(true), 3), leaf->LocalToWorldMatrix());

    Animate(middle, turn * Shift(0, 17, 0));
    // The leaf moves by a data that is filed under another transform.
    DataPtr aliased = PlainOver(2, 4, Shift(0, 0, 19));
    aliased->SetTargetEntityID(leaf->LocalTransform()->ID());
    manager->AddKeyFrameData(aliased, true);
    EXPECT_TRUE(manager->WorldMatrixAtFrame(COrvelNodePath({root, nullptr, middle, bare, leaf}), 3)
                    .IsNear(Shift(7, 11, 13) * turn * turn * Shift(0, 17, 19), 1e-12));
    EXPECT_EQ(manager->WorldMatrixAtFrame(COrvelNodePath(), 3), COrvelMatrix());
}

TEST_F(KeyFrameLookup, SeesDependenceThroughFollowedPaths)
{
    COrvelSceneNode* const rail = Node();
    COrvelLinePath* const path = Placed(COrvelLinePath::Create(&document), rail);
    COrvelLinePath* const second = Placed(COrvelLinePath::Create(&document));
    COrvelSceneNode* const wagon = Node();
    COrvelSceneNode* const wheel = Node(wagon);
    COrvelSceneNode* const aside = Node();
    EXPECT_TRUE(manager->IsNodeDependentOn(wheel, wheel));
    EXPECT_TRUE(manager->IsNodeDependentOn(wheel, wagon));
    EXPECT_FALSE(manager->IsNodeDependentOn(wagon, wheel));
    EXPECT_FALSE(manager->IsNodeDependentOn(wheel, rail));
    Follow(wagon, second);
    Follow(wagon, nullptr, 20);
    Follow(second, path);
    EXPECT_TRUE(manager->IsNodeDependentOn(wheel, rail)) << "by the path that the followed path follows";
    EXPECT_FALSE(manager->IsNodeDependentOn(wheel, nullptr));
    Follow(rail, second);
    EXPECT_FALSE(manager->IsNodeDependentOn(wheel, aside)) << "paths that follow each other come to an end";

    std::vector<COrvelLinePath*> paths{path};
    manager->ListFollowedPaths({wheel, nullptr, wagon, second, rail}, paths);
    EXPECT_THAT(paths, ElementsAre(path, second, path, second));
    const auto again = Follow(aside, second);
    std::vector<Follower*> followers;
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
    const auto glassData = Animate(glass);
    const auto lampData = Animate(lamp);
    const auto moved = StorePlain(0, 9);
    const auto nameless = Store(1, 1, Plain::CreateTransformKeyFrameData(COrvelID(), {}));

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
    COrvel3DObject* const object = Wheel();
    COrvelLight* const lamp = COrvelLight::Create(&document);
    COrvelLightSource* const source = COrvelLightSource::Create(&document, "lamp", lamp);
    const auto hidden = Store(0, 1, HideShow::CreateHideShowKeyFrameData(object->ID(), true));
    const auto moved = Animate(object);
    const auto bent = Bend(object);
    const auto coloured = Animate(object->Material());
    const auto dimmed = Animate(lamp);

    const COrvelKeyFrameManager other;
    KeyFrameDataList list;
    other.ListKeyFrameDataOfEntity(object, list);
    EXPECT_THAT(list, ElementsAre(hidden, moved, bent)) << "in the process-wide manager";
    list.clear();
    for (COrvelEntity* const entity :
         {static_cast<COrvelEntity*>(source), static_cast<COrvelEntity*>(object->Material()),
          static_cast<COrvelEntity*>(nullptr)})
        COrvelKeyFrameManager::ListKeyFrameDataOfEntity(entity, list);
    EXPECT_THAT(list, ElementsAre(dimmed, coloured));
}

TEST_F(KeyFrameLookup, ListsAnimatedObjectsOnceEach)
{
    COrvelSceneNode* const group = Node();
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
    Animate(paint);
    Store(0, 1, HideShow::CreateHideShowKeyFrameData(shown->ID(), false));

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
    COrvelSceneNode* const group = Node();
    COrvelLight* const lamp = COrvelLight::Create(&document);
    COrvelLightSource* const lit = COrvelLightSource::Create(&document, "lit", lamp);
    COrvelLightSource* const both = Placed(COrvelLightSource::Create(&document, "both", lamp), group);
    COrvelLightSource* const hidden = Placed(COrvelLightSource::Create(&document, "hidden"), group);
    hidden->Hide();
    Animate(lamp);
    Animate(group);
    std::vector<COrvelSceneNode*> sources;
    manager->ListAnimatedLightSources(sources, true, false, false);
    EXPECT_THAT(sources, ElementsAre(both));
    manager->ListAnimatedLightSources(sources, false, true, false);
    EXPECT_THAT(sources, ElementsAre(both, hidden, lit)) << "transforms come before lights, each source once";
}

TEST_F(KeyFrameLookup, ListsTheRootsOfAnimatedSkeletons)
{
    const auto joint = [&](COrvelSceneNode* parent, enumJointType type) {
        return Placed(COrvelSkeletonJoint::Create(&document, {}, type), parent);
    };
    COrvelSkeletonJoint* const hip = joint(Node(), eJointType_Root);
    COrvelSkeletonJoint* const knee = joint(hip, eJointType_Inner);
    COrvelSkeletonJoint* const foot = joint(knee, eJointType_Inner);
    COrvelSkeletonJoint* const neck = joint(nullptr, eJointType_Root);
    COrvelSkeletonJoint* const loose = joint(nullptr, eJointType_Inner);
    Animate(Node(hip));
    EXPECT_THAT(manager->ListSequenceRootJoints(), IsEmpty()) << "a node in a skeleton is no joint of it";
    for (const COrvelSkeletonJoint* const moved : {foot, loose, neck, knee})
        Animate(moved);
    EXPECT_THAT(manager->ListSequenceRootJoints(), ElementsAre(hip, neck));
}

TEST_F(KeyFrameLookup, CollectsTheAnimatedIdsOfATree)
{
    COrvelSceneNode* const root = Node();
    COrvelSceneNode* const deleted = Node(root);
    deleted->SetDeleted(true);
    COrvelSceneNode* const below = Node(deleted);
    COrvel3DObject* const object = Wheel(root);
    for (const COrvelSceneNode* const node : {root, deleted, below, static_cast<COrvelSceneNode*>(object)})
        Animate(node);
    Animate(object->Material());
    const COrvelID vertices = Bend(object)->AnimatedEntityID();
    const COrvelID rootMove = root->LocalTransform()->ID();
    const COrvelID move = object->LocalTransform()->ID();
    const COrvelID material = object->Material()->ID();

    const auto collect = [](COrvelKeyFrameManager& from, COrvelSceneNode* node, int typeMask, bool thisNodeOnly) {
        std::set<COrvelID> ids;
        from.CollectAnimatedIDs(node, ids, typeMask, thisNodeOnly);
        return ids;
    };
    EXPECT_THAT(collect(*manager, object, 64, true), ElementsAre(move));
    EXPECT_THAT(collect(*manager, object, 4, true), ElementsAre(material));
    EXPECT_THAT(collect(*manager, object, 256 | 4, true), ElementsAre(material, vertices));
    EXPECT_THAT(collect(*manager, deleted, 64, true), ElementsAre(deleted->LocalTransform()->ID()))
        << "asked for by itself";
    EXPECT_THAT(collect(*manager, nullptr, 324, true), IsEmpty());
    COrvelKeyFrameManager other;
    EXPECT_THAT(collect(other, root, 4, false), ElementsAre(material, rootMove, move, vertices))
        << "a tree is always searched for every kind, in the process-wide manager, without deleted nodes";
    EXPECT_THAT(collect(other, object, 324, true), IsEmpty()) << "a single node is asked for in this manager";
}

TEST_F(KeyFrameLookup, TakesSnapshotsOfTheScene)
{
    StorePlain(0, 4, Shift(2, 3, 5));
    COrvelSceneNode* const node = COrvelSceneNode::Create(&document);
    const auto hidden = Store(2, 6, HideShow::CreateHideShowKeyFrameData(node->ID(), true));
    COrvelKeyFrame snapshot = manager->KeyFrameAtFrame(3);
    ASSERT_EQ(snapshot.KeyFrameData().size(), 2U);
    const COrvelKeyFrame copy = snapshot;
    EXPECT_NE(copy.KeyFrameData().at(id), snapshot.KeyFrameData().at(id)) << "a copy has data of its own";

    const DataPtr before = snapshot.KeyFrameData().at(node->ID());
    hidden->SetHidden(false);
    EXPECT_EQ(snapshot.SetKeyFrameData(hidden), before);
    EXPECT_NE(snapshot.KeyFrameData().at(node->ID()), DataPtr(hidden));
    EXPECT_FALSE(snapshot.SetKeyFrameData(nullptr));
    for (const bool shown : {false, true, false}) {
        (shown ? snapshot : copy).Apply();
        EXPECT_EQ(transform->Matrix(), Shift(2, 3, 5));
        EXPECT_NE(node->IsHidden(), shown);
    }
    snapshot = copy;
    EXPECT_TRUE(dynamic_cast<HideShow*>(snapshot.KeyFrameData().at(node->ID()).Get())->IsHidden());
}

} // namespace
} // namespace Orvel
