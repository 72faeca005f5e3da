#include "mapping/COrvelPRCMapper.h"
#include "platform/core/COrvel3DObject.h"
#include "platform/core/COrvelBasicGeneralMaterial.h"
#include "platform/core/COrvelColor.h"
#include "platform/core/COrvelDocument.h"
#include "platform/core/COrvelGeometry.h"
#include "platform/core/COrvelMaterial.h"
#include "prc/ExportCaches.h"
#include "support/PRCPlacement.h"
#include "tests/prc/PRCRun.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

namespace Orvel::Test
{
namespace
{

using testing::ElementsAre;

class SceneTraversal : public testing::Test
{
protected:
    COrvelSceneNode* Group(const char* name, COrvelSceneNode* parent)
    {
        COrvelSceneNode* const node = COrvelSceneNode::Create(&document, name);
        Attach(node, parent);
        return node;
    }

    COrvel3DObject* Object(const char* name, COrvelSceneNode* parent, COrvelGeometry* geometry = nullptr,
                           COrvelMaterial* material = nullptr)
    {
        COrvel3DObject* const node = COrvel3DObject::Create(&document, name, geometry, material);
        Attach(node, parent);
        return node;
    }

    COrvelGeometry* Triangle(double size)
    {
        return COrvelGeometry::Create(&document, {0.0, 0.0, 0.0, size, 0.0, 0.0, 0.0, size, 1.0}, {0, 1, 2});
    }

    COrvelMaterial* Material(double red)
    {
        COrvelBasicGeneralMaterial looks;
        looks.SetDiffuseColor(COrvelColor(red, 0.25, 0.75, 1.0));
        return COrvelMaterial::Create(&document, looks);
    }

    PRCContent Export()
    {
        std::vector<COrvelSceneNode*> roots;
        document.ListRootSceneNodes(roots);
        for (COrvelSceneNode* root : roots)
            run.converter.VisitNode(root, run.file);
        return run.Finish();
    }

    int NumberOf(COrvelSceneNode* node) const { return run.converter.mapper->MapIntoIndex(node); }

    COrvelDocument document;
    PRCRun run;

private:
    void Attach(COrvelSceneNode* node, COrvelSceneNode* parent)
    {
        if (parent)
            parent->AddChild(node);
        else
            document.AddRootNode(node);
    }
};

std::vector<std::string> NamesDepthFirst(const PRCContent& content)
{
    std::vector<std::string> names;
    for (const PlacedOccurrence& place : WalkTree(content))
        names.push_back(place.path.back());
    return names;
}

TEST_F(SceneTraversal, VisitsObjectsBeforeGroupsAndSkipsDeletedNodes)
{
    COrvelSceneNode* const root = Group("machine", nullptr);
    COrvelSceneNode* const arm = Group("arm", root);
    COrvel3DObject* const plate = Object("plate", root);
    COrvelSceneNode* const leg = Group("leg", root);
    Object("gone", root)->SetDeleted(true);
    COrvel3DObject* const screw = Object("screw", root);
    COrvel3DObject* const hand = Object("hand", arm);
    COrvel3DObject* const foot = Object("foot", leg);
    Object("never visited", foot);

    const PRCContent content = Export();
    EXPECT_THAT(NamesDepthFirst(content), ElementsAre("machine", "plate", "screw", "arm", "hand", "leg", "foot"));
    EXPECT_THAT((std::vector<int>{NumberOf(root), NumberOf(plate), NumberOf(screw), NumberOf(arm), NumberOf(hand),
                                  NumberOf(leg), NumberOf(foot)}),
                ElementsAre(0, 1, 2, 3, 4, 5, 6));
    EXPECT_EQ(run.converter.mapper->nextNodeIndex, 7);
}

TEST_F(SceneTraversal, GivesBackTheNumbersOfGroupsThatHoldNothing)
{
    COrvelSceneNode* const root = Group("root", nullptr);
    COrvelSceneNode* const empty = Group("empty", root);
    COrvelSceneNode* const holder = Group("holder", root);
    COrvelSceneNode* const emptyInside = Group("empty inside", holder);
    COrvelSceneNode* const onlyDeleted = Group("only deleted", root);
    Group("deleted", onlyDeleted)->SetDeleted(true);
    COrvelSceneNode* const last = Group("last", root);
    COrvel3DObject* const object = Object("object", last);
    Object("deleted child", object)->SetDeleted(true);

    const PRCContent content = Export();
    EXPECT_THAT(NamesDepthFirst(content),
                ElementsAre("root", "empty", "holder", "empty inside", "only deleted", "last", "object"))
        << "the groups stay in the file";
    EXPECT_THAT((std::vector<int>{NumberOf(root), NumberOf(empty), NumberOf(holder), NumberOf(emptyInside),
                                  NumberOf(onlyDeleted), NumberOf(last), NumberOf(object)}),
                ElementsAre(0, -1, 1, -1, -1, 2, 3))
        << "an object keeps its number whatever became of its children";
}

TEST_F(SceneTraversal, ListsHiddenNodesInVisitingOrderWithoutDroppedOnes)
{
    COrvelSceneNode* const root = Group("root", nullptr);
    root->Hide();
    COrvelSceneNode* const dropped = Group("dropped", root);
    dropped->Hide();
    COrvelSceneNode* const shown = Group("shown", root);
    Object("inside", shown)->Hide();
    Object("object", root)->Hide();

    Export();
    EXPECT_EQ(NumberOf(dropped), -1);
    EXPECT_THAT(run.converter.mapper->hiddenNodeIndices, ElementsAre(0, 1, 3));
    EXPECT_EQ(NumberOf(shown), 2) << "it takes the number of the dropped node without looking hidden";
}

TEST_F(SceneTraversal, KeepsNamesAndLocalMatrices)
{
    const double sine = 0.5;
    const double cosine = std::sqrt(3.0) / 2.0;
    const Matrix matrix{cosine, -2.0 * sine, 0.0,  7.0,  sine, 2.0 * cosine, 0.25, 11.0,
                        0.0,    0.0,         -3.0, 13.0, 0.0,  0.0,          0.0,  1.0};
    COrvelSceneNode* const root = Group("größe 中 \xF0\x9F\x9A\x82", nullptr);
    COrvelSceneNode* const child = Group("child", root);
    child->SetLocalMatrix(COrvelMatrix(matrix));
    Group("", child);

    const PRCContent content = Export();
    const std::vector<PlacedOccurrence> found = FindByPath(content, {"größe 中 \xF0\x9F\x9A\x82", "child"});
    ASSERT_EQ(found.size(), 1U);
    const ProductOccurrence& occurrence = content.occurrences[found[0].occurrence];
    ASSERT_TRUE(occurrence.location.has_value());
    EXPECT_EQ(*occurrence.location, matrix);
    EXPECT_FALSE(content.occurrences[content.root].location.has_value()) << "an identity is left out";
}

TEST_F(SceneTraversal, StoresSharedGeometryOnceAndPlacesItAgain)
{
    COrvelSceneNode* const root = Group("root", nullptr);
    COrvelGeometry* const shared = Triangle(5.0);
    COrvelMaterial* const red = Material(0.9);
    Object("first", root, shared, red);
    Object("second", root, shared, red)->Hide();
    Object("alone", root, Triangle(3.0), red);

    const PRCContent content = Export();
    EXPECT_EQ(content.tessellations.size(), 2U);
    const std::vector<PlacedMesh> meshes = PlacedMeshes(content);
    ASSERT_EQ(meshes.size(), 3U);
    EXPECT_EQ(meshes[0].tessellation, meshes[1].tessellation);
    EXPECT_NE(meshes[0].tessellation, meshes[2].tessellation);
    for (const PlacedMesh& mesh : meshes)
        EXPECT_EQ(MaterialOf(content, mesh).material->diffuse, (Vector3{0.9, 0.25, 0.75}));
}

TEST_F(SceneTraversal, ExtractsSharedGeometryAgainForAnotherMaterial)
{
    COrvelSceneNode* const root = Group("root", nullptr);
    COrvelGeometry* const shared = Triangle(5.0);
    COrvelMaterial* const red = Material(0.9);
    COrvelMaterial* const blue = Material(0.1);
    Object("first", root, shared, red);
    Object("second", root, shared, blue);
    const COrvel3DObject* const third = Object("third", root, shared, blue);

    const PRCContent content = Export();
    EXPECT_EQ(content.tessellations.size(), 2U);
    const std::vector<PlacedMesh> meshes = PlacedMeshes(content);
    ASSERT_EQ(meshes.size(), 3U);
    EXPECT_EQ(MaterialOf(content, meshes[0]).material->diffuse[0], 0.9);
    EXPECT_EQ(MaterialOf(content, meshes[1]).material->diffuse[0], 0.1);
    EXPECT_EQ(meshes[2].tessellation, meshes[1].tessellation);
    EXPECT_EQ(ExportCaches::Instance().tessellationByGeometry.at(third->GeometyDefinitionID()), 1U);
}

TEST_F(SceneTraversal, DoesNotShareAMeshThatHasADeletedTwinOnly)
{
    COrvelSceneNode* const root = Group("root", nullptr);
    COrvelGeometry* const shared = Triangle(5.0);
    Object("first", root, shared);
    Object("twin", root, shared)->SetDeleted(true);
    Export();
    EXPECT_TRUE(ExportCaches::Instance().tessellationByGeometry.empty());
}

TEST_F(SceneTraversal, NeverPlacesTheMeshOfAnotherGeometryForOneWithoutVertices)
{
    COrvelSceneNode* const root = Group("root", nullptr);
    COrvelMaterial* const red = Material(0.9);
    Object("mesh", root, Triangle(2.0), red);
    COrvelGeometry* const nothing = COrvelGeometry::Create(&document);
    Object("nothing", root, nothing, red);
    Object("nothing again", root, nothing, red);
    Object("no geometry", root, nullptr, red);

    const PRCContent content = Export();
    EXPECT_EQ(PlacedMeshes(content).size(), 1U);
    EXPECT_EQ(run.converter.materialNumbers->size(), 1U);
}

} // namespace
} // namespace Orvel::Test
