#include "platform/core/COrvel3DObject.h"
#include "platform/core/COrvelDocument.h"
#include "platform/core/COrvelLightSource.h"
#include "platform/core/COrvelNodeVisitor.h"
#include "platform/core/COrvelSceneNode.h"
#include "platform/core/COrvelTransform.h"
#include "tests/core/ValueTestHelpers.h"

#include <gmock/gmock.h>

namespace Orvel
{
namespace
{

using testing::ElementsAre;
using testing::IsEmpty;
using Tests::IsNear;

/// root - left - leaf
///      - right
class SceneTree : public testing::Test
{
protected:
    SceneTree()
    {
        document.AddRootNode(root);
        root->AddChild(left);
        root->AddChild(right);
        left->AddChild(leaf);
    }

    std::vector<COrvelSceneNode*> ChildrenOf(const COrvelSceneNode* node, bool includeDeleted = true)
    {
        node->Children(listed, includeDeleted);
        return listed;
    }

    std::vector<COrvelSceneNode*> Roots()
    {
        document.ListRootSceneNodes(listed);
        return listed;
    }

    COrvelDocument document;
    COrvelSceneNode* const root = COrvelSceneNode::Create(&document, "root");
    COrvelSceneNode* const left = COrvelSceneNode::Create(&document, "left");
    COrvelSceneNode* const right = COrvelSceneNode::Create(&document, "right");
    COrvelSceneNode* const leaf = COrvelSceneNode::Create(&document, "leaf");
    /// Shared by all listings: each must replace what the one before it left.
    std::vector<COrvelSceneNode*> listed{nullptr, nullptr};
};

TEST_F(SceneTree, ListsChildrenAndRootsInOrderDeletedOnesOnRequest)
{
    left->SetDeleted(true);
    EXPECT_THAT(ChildrenOf(root, true), ElementsAre(left, right));
    EXPECT_THAT(ChildrenOf(root, false), ElementsAre(right));
    EXPECT_THAT(ChildrenOf(leaf), IsEmpty());

    COrvelSceneNode* const second = COrvelSceneNode::Create(&document);
    EXPECT_TRUE(document.AddRootNode(second));
    EXPECT_TRUE(document.AddRootNode(root)) << "a root keeps its place";
    root->SetDeleted(true);
    EXPECT_THAT(Roots(), ElementsAre(root, second)) << "roots always";
    EXPECT_TRUE(document.RemoveRootNode(root));
    EXPECT_FALSE(document.RemoveRootNode(root));
    EXPECT_FALSE(document.AddRootNode(nullptr));
    EXPECT_THAT(Roots(), ElementsAre(second));
}

TEST_F(SceneTree, RefusesCyclesAndNull)
{
    const std::pair<COrvelSceneNode*, COrvelSceneNode*> refused[] = {{root, root}, {leaf, leaf}, {left, root},
                                                                     {leaf, left}, {leaf, root}, {root, nullptr}};
    for (const auto& [parent, child] : refused)
        EXPECT_FALSE(parent->AddChild(child)) << parent->Name().CString();
    EXPECT_THAT(ChildrenOf(root), ElementsAre(left, right));
    EXPECT_THAT(Roots(), ElementsAre(root));
    EXPECT_EQ(left->Parent(), root);
}

TEST_F(SceneTree, MovesNodesBetweenParentsAndRoots)
{
    EXPECT_TRUE(right->AddChild(left));
    EXPECT_THAT(ChildrenOf(root), ElementsAre(right));
    EXPECT_EQ(leaf->NodePathToRoot(true), COrvelNodePath({root, right, left, leaf}));

    EXPECT_TRUE(document.AddRootNode(left));
    EXPECT_THAT(ChildrenOf(right), IsEmpty());
    EXPECT_THAT(Roots(), ElementsAre(root, left));

    EXPECT_TRUE(left->AddChild(root));
    EXPECT_THAT(Roots(), ElementsAre(left)) << "a child is no root any more";
    EXPECT_FALSE(root->RemoveChild(leaf)) << "a grandchild's child";
    EXPECT_TRUE(left->RemoveChild(leaf));
    EXPECT_EQ(leaf->Parent(), nullptr);
    EXPECT_THAT(ChildrenOf(left), ElementsAre(root));
}

TEST_F(SceneTree, WorldMatrixIsTheProductAlongTheRootFirstPath)
{
    // Shifts alone would not notice a wrong order: the root is turned a quarter about z.
    COrvelMatrix turned;
    turned.DefineByRotation(1.5707963267948966, 0, 0, 1);
    root->SetLocalMatrix(COrvelMatrix::CreateTranslation({5, 0, 0}) * turned);
    left->SetLocalMatrix(COrvelMatrix::CreateTranslation({1, 0, 0}));
    leaf->SetLocalMatrix(COrvelMatrix::CreateScalling({2, 3, 5}));

    EXPECT_TRUE(IsNear(left->LocalToWorldMatrix().Translation(), {5, 1, 0}, 1e-15));
    EXPECT_TRUE(IsNear(leaf->LocalToWorldMatrix() * COrvel3DVertex(7, 11, 13), {5 - 33, 1 + 14, 65}, 1e-14));
    EXPECT_EQ(right->LocalToWorldMatrix(), root->LocalMatrix()) << "a node without a transform";
}

TEST_F(SceneTree, PathsRunFromTheRoot)
{
    EXPECT_EQ(leaf->NodePathToRoot(true), COrvelNodePath({root, left, leaf}));
    EXPECT_EQ(leaf->NodePathToRoot(true).SceneNode(), leaf);
    COrvelNodePath path({right});
    leaf->NodePathToRoot(path, false);
    EXPECT_EQ(path, COrvelNodePath({root, left}));
    root->NodePathToRoot(path, false);
    EXPECT_TRUE(path.IsEmpty());
    EXPECT_EQ(path.SceneNode(), nullptr);
}

TEST_F(SceneTree, NearestCommonParentIsTheLongestCommonBeginning)
{
    const auto common = [](std::vector<COrvelSceneNode*> nodes) {
        std::vector<COrvelNodePath> paths;
        for (COrvelSceneNode* const node : nodes)
            paths.push_back(node->NodePathToRoot(true));
        return COrvelSceneNode::NearestCommonParent(paths);
    };
    COrvelSceneNode* const sibling = COrvelSceneNode::Create(&document);
    left->AddChild(sibling);
    COrvelSceneNode* const elsewhere = COrvelSceneNode::Create(&document);
    document.AddRootNode(elsewhere);

    EXPECT_EQ(common({leaf, sibling}), COrvelNodePath({root, left}));
    EXPECT_EQ(common({leaf, left}), COrvelNodePath({root, left})) << "a node and its own descendant";
    EXPECT_EQ(common({leaf}), COrvelNodePath({root, left, leaf}));
    EXPECT_EQ(common({leaf, sibling, right}), COrvelNodePath({root}));
    EXPECT_TRUE(common({leaf, elsewhere}).IsEmpty());
    EXPECT_TRUE(common({}).IsEmpty());
}

TEST_F(SceneTree, SelectedTreesAreTheLowerEndsOfThePaths)
{
    const std::vector<COrvelNodePath> paths = {left->NodePathToRoot(true), COrvelNodePath(),
                                               right->NodePathToRoot(true)};
    right->Hide();
    COrvelSceneNode::ListAllSelectedSceneTrees(paths, listed, false, true);
    EXPECT_THAT(listed, ElementsAre(left));
    COrvelSceneNode::ListAllSelectedSceneTrees(paths, listed, true, true);
    EXPECT_THAT(listed, ElementsAre(left, right));
    COrvelSceneNode::ListAllSelectedSceneTrees(paths, listed, true, false);
    EXPECT_THAT(listed, ElementsAre(left, leaf, right));

    left->Hide();
    left->Hide();
    EXPECT_FALSE(leaf->IsHidden()) << "it is the node's own mark";
    left->UnHide();
    EXPECT_FALSE(left->IsHidden());
}

class RecordingVisitor final : public COrvelNodeVisitor
{
public:
    bool VisitSceneNode(COrvelSceneNode* node) override
    {
        visited.push_back(node);
        return !node->IsDeleted();
    }

    std::vector<COrvelSceneNode*> visited;
};

TEST_F(SceneTree, VisitorWalksDepthFirstAndLeavesOutOnlyTheSubtreeThatWasRefused)
{
    COrvelSceneNode* const second = COrvelSceneNode::Create(&document);
    document.AddRootNode(second);
    RecordingVisitor visitor;
    visitor.TraverseDocument(&document);
    EXPECT_THAT(visitor.visited, ElementsAre(root, left, leaf, right, second));

    left->SetDeleted(true);
    visitor.visited.clear();
    visitor.TraverseDocument(&document);
    EXPECT_THAT(visitor.visited, ElementsAre(root, left, right, second));

    visitor.visited.clear();
    visitor.Traverse(right, COrvelMatrix(), root);
    EXPECT_THAT(visitor.visited, ElementsAre(right)) << "neither siblings nor anything above";
    visitor.Traverse(nullptr, COrvelMatrix(), nullptr);
    visitor.TraverseDocument(nullptr);
    EXPECT_EQ(visitor.visited.size(), 1u);
}

class SharedTransform : public SceneTree
{
protected:
    SharedTransform()
    {
        leaf->AddChild(object);
        right->AddChild(deletedObject);
        right->AddChild(source);
        deletedObject->SetDeleted(true);
    }

    std::vector<COrvelSceneNode*> Nodes(bool includeDeleted = true)
    {
        transform->ListSceneNodesReferencingThisTransform(listed, includeDeleted);
        return listed;
    }

    COrvel3DObject* const object = COrvel3DObject::Create(&document, "object");
    COrvel3DObject* const deletedObject = COrvel3DObject::Create(&document, "deleted object");
    COrvelLightSource* const source = COrvelLightSource::Create(&document, "source");
    COrvelTransform* const transform = COrvelTransform::Create(&document, COrvelMatrix::CreateScalling({2, 3, 5}));
    std::vector<COrvel3DObject*> objects{nullptr};
};

TEST_F(SharedTransform, MovesItsNodesAndKnowsThemInTheOrderInWhichTheyTookIt)
{
    right->SetLocalTransform(transform);
    left->SetLocalTransform(transform);
    left->SetLocalTransform(transform);
    EXPECT_THAT(Nodes(), ElementsAre(right, left));
    const COrvelMatrix shifted = COrvelMatrix::CreateTranslation({7, 11, 13});
    left->SetLocalMatrix(shifted);
    EXPECT_EQ(right->LocalMatrix(), shifted);
    EXPECT_EQ(transform->Matrix(), shifted);

    right->SetDeleted(true);
    EXPECT_THAT(Nodes(false), ElementsAre(left));
    right->SetLocalTransform(COrvelTransform::Create(&document));
    EXPECT_THAT(Nodes(), ElementsAre(left));
    left->SetLocalTransform(nullptr);
    EXPECT_THAT(Nodes(), IsEmpty());
    EXPECT_EQ(left->LocalMatrix(), COrvelMatrix());
}

TEST_F(SharedTransform, AffectsEveryObjectBelowItsNodesOnce)
{
    // The node that comes last stands above the first: its subtree holds the first one's.
    leaf->SetLocalTransform(transform);
    right->SetLocalTransform(transform);
    root->SetLocalTransform(transform);
    transform->ListAll3DObjectsThisTransformAffect(objects);
    EXPECT_THAT(objects, ElementsAre(object, deletedObject));
    transform->ListAllLightSourcesThisTransformAffect(listed);
    EXPECT_THAT(listed, ElementsAre(source));

    root->SetLocalTransform(nullptr);
    right->SetLocalTransform(nullptr);
    leaf->SetLocalTransform(nullptr);
    object->SetLocalTransform(transform);
    transform->ListAll3DObjectsThisTransformAffect(objects);
    EXPECT_THAT(objects, ElementsAre(object)) << "the node itself counts, its surroundings do not";
    transform->ListAllLightSourcesThisTransformAffect(listed);
    EXPECT_THAT(listed, IsEmpty());
}

} // namespace
} // namespace Orvel
