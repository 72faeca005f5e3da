#include "platform/core/COrvel3DObject.h"
#include "platform/core/COrvelCamera.h"
#include "platform/core/COrvelDocument.h"
#include "platform/core/COrvelDocumentsContainer.h"
#include "platform/core/COrvelGeometry.h"
#include "platform/core/COrvelLight.h"
#include "platform/core/COrvelLightSource.h"
#include "platform/core/COrvelMaterial.h"
#include "platform/core/COrvelPolygonsTable.h"
#include "platform/core/COrvelPtr.h"
#include "platform/core/COrvelTextureCoordinatesTable.h"
#include "platform/core/COrvelTransform.h"
#include "platform/core/COrvelVerticiesTable.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <memory>
#include <random>

namespace Orvel
{
namespace
{

using testing::ElementsAre;
using testing::IsEmpty;

TEST(EntityIdentity, IsFoundByIdAndGuidUntilTheEntityIsGone)
{
    auto document = std::make_unique<COrvelDocument>();
    COrvelSceneNode* const node = COrvelSceneNode::Create(document.get(), "größe 中");
    const COrvelID id = node->ID();
    const COrvelUUID guid = node->GetGuid();

    EXPECT_EQ(id.Entity(), node);
    EXPECT_EQ(id.Document(), document.get());
    EXPECT_EQ(COrvelEntity::GetEntityByGuid(guid), node);

    node->SetDeleted(true);
    EXPECT_EQ(id.Entity(), node) << "soft deletion hides nothing from the registry";

    document.reset();
    EXPECT_EQ(id.Entity(), nullptr);
    EXPECT_EQ(id.Document(), nullptr);
    EXPECT_EQ(COrvelEntity::GetEntityByGuid(guid), nullptr);
    EXPECT_EQ(id.EntityType(), eEntityType_SceneNode) << "an id tells its type after its entity is gone";
    EXPECT_EQ(COrvelID().Entity(), nullptr);
    EXPECT_EQ(COrvelEntity::GetEntityByGuid(COrvelUUID()), nullptr);
}

TEST(EntityIdentity, OrdersIdsByTypeThenByCreationAndNeverGivesOneAgain)
{
    COrvelDocument document;
    const COrvelID camera = COrvelCamera::Create(&document)->ID();
    const COrvelID firstMaterial = COrvelMaterial::Create(&document)->ID();
    COrvel3DObject* const object = COrvel3DObject::Create(&document);
    const COrvelID objectId = object->ID();
    const COrvelID secondMaterial = COrvelMaterial::Create(&document)->ID();
    document.Destroy(object);
    const COrvelID laterObject = COrvel3DObject::Create(&document)->ID();

    std::vector<COrvelID> ids = {secondMaterial, laterObject, camera, COrvelID(), firstMaterial, objectId};
    std::sort(ids.begin(), ids.end());
    EXPECT_THAT(ids, ElementsAre(COrvelID(), objectId, laterObject, camera, firstMaterial, secondMaterial));
    EXPECT_EQ(objectId.Entity(), nullptr);
    EXPECT_EQ(COrvelID(eEntityType_Material, camera.Number()).Entity(), nullptr) << "the number of another type";
    EXPECT_EQ(COrvelID(eEntityType_3DObject, laterObject.Number() + 1).Entity(), nullptr);
}

TEST(EntityIdentity, CarriesTheTypeNumbersThatArchivesAndGroupingKnow)
{
    COrvelDocument document;
    const COrvelEntity* const entities[] = {COrvel3DObject::Create(&document),       COrvelCamera::Create(&document),
                                            COrvelMaterial::Create(&document),       COrvelTransform::Create(&document),
                                            COrvelVerticiesTable::Create(&document), COrvelLight::Create(&document),
                                            COrvelGeometry::Create(&document)};
    std::vector<int> types;
    for (const COrvelEntity* const entity : entities)
        types.push_back(entity->ID().EntityType());
    EXPECT_THAT(types, ElementsAre(1, 2, 4, 64, 256, 8192, 1 << 30));
}

TEST(EntityIdentity, MovesItsEntryWithAChangedGuid)
{
    COrvelDocument document;
    COrvelSceneNode* const node = COrvelSceneNode::Create(&document);
    COrvelSceneNode* const other = COrvelSceneNode::Create(&document);
    const COrvelUUID old = node->GetGuid();
    COrvelUUID fresh;
    fresh.Generate();

    node->SetGuid(fresh);
    EXPECT_EQ(COrvelEntity::GetEntityByGuid(old), nullptr);
    EXPECT_EQ(COrvelEntity::GetEntityByGuid(fresh), node);

    node->SetGuid(fresh);
    EXPECT_EQ(COrvelEntity::GetEntityByGuid(fresh), node) << "the same GUID once more";

    other->SetGuid(fresh);
    node->SetGuid(COrvelUUID());
    EXPECT_FALSE(node->GetGuid().IsValid());
    EXPECT_EQ(COrvelEntity::GetEntityByGuid(fresh), other) << "the entry had passed to the other entity";
    EXPECT_EQ(node->ID().Entity(), node);
}

TEST(EntityOwnership, PutsEntitiesWithoutDocumentIntoTheTemporaryOne)
{
    COrvelDocument* const temporary = COrvelDocumentsContainer::DocumentsContainer()->TheTempDocument();
    ASSERT_NE(temporary, nullptr);
    COrvelCamera* const camera = COrvelCamera::Create(nullptr, "frm0");
    EXPECT_EQ(camera->Document(), temporary);
    std::vector<COrvelCamera*> cameras{nullptr};
    COrvelDocumentsContainer::DocumentsContainer()->TheTempDocument()->ListCameras(cameras);
    EXPECT_THAT(cameras, ElementsAre(camera));
}

TEST(EntityOwnership, KeepsAnEntityAliveForAReferenceBeyondItsDocument)
{
    auto document = std::make_unique<COrvelDocument>();
    COrvelPtr<COrvelMaterial> material(COrvelMaterial::Create(document.get(), "held"));
    COrvelPtr<COrvel3DObject> object(COrvel3DObject::Create(document.get(), "object", nullptr, material.Get()));
    EXPECT_EQ(material->ReferenceCount(), 2);
    const COrvelID id = material->ID();

    document.reset();
    ASSERT_EQ(id.Entity(), material.Get());
    EXPECT_EQ(material->ReferenceCount(), 1);
    EXPECT_EQ(material->Document(), nullptr);
    EXPECT_EQ(object->Material(), material.Get());

    material = nullptr;
    EXPECT_EQ(id.Entity(), nullptr);
    ASSERT_NE(object->Material(), nullptr) << "an object always shows something";
    EXPECT_TRUE(object->Material()->IsDefault());
}

TEST(EntityOwnership, ForgetsActiveAndDefaultEntitiesThatAreDestroyed)
{
    COrvelDocument document;
    COrvelDocument other;
    COrvelCamera* const camera = COrvelCamera::Create(&document);
    document.SetActiveCamera(camera);
    EXPECT_FALSE(document.Destroy(nullptr));
    EXPECT_FALSE(other.Destroy(camera)) << "not its own";
    EXPECT_EQ(document.ActiveCamera(), camera);
    delete camera;
    EXPECT_EQ(document.ActiveCamera(), nullptr);

    COrvelMaterial* const first = document.DefaultMaterial();
    EXPECT_EQ(document.DefaultMaterial(), first);
    const COrvelID firstId = first->ID();
    document.Destroy(first);
    EXPECT_TRUE(document.DefaultMaterial()->IsDefault());
    EXPECT_NE(document.DefaultMaterial()->ID(), firstId);
    EXPECT_TRUE(document.DefaultCamera()->IsDefault());
}

/// One entity of every kind, each linked to every other that it can be linked to.
struct LinkedScene
{
    LinkedScene(COrvelDocument* document, COrvelDocument* resources)
    {
        geometry = Kept(
            COrvelGeometry::Create(resources, {0, 0, 0, 2, 0, 0, 0, 3, 0}, {0, 1, 2}, {0, 0, 1, 0, 0, 1, 0, 0, 1}));
        Kept(geometry->VerticiesTable());
        Kept(geometry->VerticiesNormalsTable());
        Kept(geometry->PolygonsTable());
        COrvelMaterial* const material = Kept(COrvelMaterial::Create(resources, "material"));
        COrvelTransform* const transform = Kept(COrvelTransform::Create(resources));
        COrvelLight* const light = Kept(COrvelLight::Create(resources, "light"));
        COrvelTextureCoordinatesTable* const uvs = Kept(COrvelTextureCoordinatesTable::Create(resources, {0, 0}));
        COrvelSceneNode* const group = Kept(COrvelSceneNode::Create(document, "group"));
        COrvelSceneNode* const inner = Kept(COrvelSceneNode::Create(resources, "inner"));
        COrvelLightSource* const source = Kept(COrvelLightSource::Create(document, "source", light));
        first = Kept(COrvel3DObject::Create(document, "first", geometry, material));
        COrvel3DObject* const second = Kept(COrvel3DObject::Create(resources, "second", geometry, material));
        document->AddRootNode(group);
        group->AddChild(inner);
        for (COrvelSceneNode* const node : std::initializer_list<COrvelSceneNode*>{first, second, source}) {
            inner->AddChild(node);
            node->SetLocalTransform(transform);
        }
        first->SetTextureCoordinatesTable(uvs);
        second->SetTextureCoordinatesTable(uvs);
    }

    template <class Entity>
    Entity* Kept(Entity* entity)
    {
        entities.push_back(entity);
        return entity;
    }

    std::vector<COrvelEntity*> entities;
    COrvelGeometry* geometry;
    COrvel3DObject* first;
};

TEST(DestructionOrder, IsFreeForLinkedEntities)
{
    // Which order could go wrong is not obvious; the checkers of the sanitizer build judge each.
    std::mt19937 random(20);
    for (int round = 0; round < 200; ++round) {
        COrvelDocument document;
        LinkedScene scene(&document, &document);
        std::shuffle(scene.entities.begin(), scene.entities.end(), random);
        std::vector<COrvelID> ids;
        for (const COrvelEntity* const entity : scene.entities)
            ids.push_back(entity->ID());
        for (COrvelEntity* const entity : scene.entities)
            ASSERT_TRUE(document.Destroy(entity));
        for (const COrvelID& id : ids)
            ASSERT_EQ(id.Entity(), nullptr) << "type " << id.EntityType();
        std::vector<COrvelSceneNode*> roots;
        document.ListRootSceneNodes(roots);
        ASSERT_THAT(roots, IsEmpty());
    }
}

TEST(DestructionOrder, IsFreeForDocumentsThatShareEntities)
{
    for (const bool resourcesFirst : {true, false}) {
        auto document = std::make_unique<COrvelDocument>();
        auto resources = std::make_unique<COrvelDocument>();
        const LinkedScene scene(document.get(), resources.get());
        if (resourcesFirst) {
            resources.reset();
            EXPECT_EQ(scene.first->Geometry(), nullptr);
            EXPECT_EQ(scene.first->LocalTransform(), nullptr);
            EXPECT_EQ(scene.first->Parent(), nullptr);
            EXPECT_EQ(scene.first->TextureCoordinatesTable(), nullptr);
        } else {
            document.reset();
            std::vector<COrvel3DObject*> objects;
            scene.geometry->ObjectsReferencingThisGeometry(objects);
            EXPECT_EQ(objects.size(), 1u) << "only the object of the resources document is left";
        }
    }
}

TEST(LargeDocument, IsBuiltListedAndDestroyedInLinearTime)
{
    // A quadratic step anywhere would take minutes here and run into the time limit of the tests.
    constexpr std::size_t groups = 100000;
    constexpr std::size_t instances = 10000;
    auto document = std::make_unique<COrvelDocument>();
    COrvelSceneNode* const root = COrvelSceneNode::Create(document.get(), "root");
    document->AddRootNode(root);
    COrvelGeometry* const geometry = COrvelGeometry::Create(document.get());
    COrvelMaterial* const material = COrvelMaterial::Create(document.get(), "material");
    COrvelTransform* const transform = COrvelTransform::Create(document.get());
    COrvelSceneNode* chain = root;
    COrvel3DObject* last = nullptr;
    for (std::size_t k = 0; k < groups; ++k) {
        COrvelSceneNode* const group = COrvelSceneNode::Create(document.get());
        COrvel3DObject* const object =
            COrvel3DObject::Create(document.get(), {}, k < instances ? geometry : nullptr, material);
        object->SetLocalTransform(transform);
        // Half of them one below the other, half of them side by side.
        chain->AddChild(group);
        group->AddChild(object);
        if (k % 2 == 1)
            chain = group;
        last = object;
    }

    std::vector<COrvel3DObject*> objects;
    geometry->ObjectsReferencingThisGeometry().First()->ListInstances(objects, true, false, true);
    EXPECT_EQ(objects.size(), instances);
    transform->ListAll3DObjectsThisTransformAffect(objects);
    EXPECT_EQ(objects.size(), groups);
    EXPECT_EQ(last->NodePathToRoot(true).Count(), groups / 2 + 2);

    // Undone in the order that suits a list searched from its end least.
    for (COrvel3DObject* const object : objects) {
        object->SetGeometry(nullptr);
        object->SetMaterial(nullptr);
        object->SetLocalTransform(nullptr);
        object->Parent()->RemoveChild(object);
    }
    transform->ListAll3DObjectsThisTransformAffect(objects);
    EXPECT_THAT(objects, IsEmpty());
    document.reset();
}

} // namespace
} // namespace Orvel
