#include "platform/core/COrvel3DObject.h"
#include "platform/core/COrvel3DVectorsTable.h"
#include "platform/core/COrvelGeometry.h"
#include "platform/core/COrvelLight.h"
#include "platform/core/COrvelLightSource.h"
#include "platform/core/COrvelMaterial.h"
#include "platform/core/COrvelMorphingTable.h"
#include "tests/animation/KeyFrameFixture.h"

#include <gmock/gmock.h>

namespace Orvel
{
namespace
{

using testing::ElementsAre;

/// Writing data into the scene.
class KeyFrameScene : public KeyFrames
{
protected:
    static COrvelBasicGeneralMaterial Red(double red, const char* name)
    {
        COrvelBasicGeneralMaterial looks;
        looks.SetName(name);
        looks.SetDiffuseColor({red, 0.5, 0.25, 1});
        return looks;
    }
    static double RedOf(COrvelMaterial* material)
    {
        return material->ApproximateToOrvelGeneralMaterial()->DiffuseColor().R();
    }
};

TEST_F(KeyFrameScene, PlacesTransforms)
{
    const COrvelPtr<Plain> data = PlainOver(0, 0, Shift(2, 3, 5));
    data->ApplyToEntity();
    EXPECT_EQ(transform->Matrix(), Shift(2, 3, 5));
    data->MultiplyMatrix(COrvelMatrix::CreateScalling({2, 2, 2}), true);
    data->MultiplyMatrix(Shift(1, 0, 0), false);
    data->RebaseOnPath(Shift(9, 9, 9)); // only followers have a path
    EXPECT_EQ(data->Matrix(), COrvelMatrix::CreateScalling({2, 2, 2}) * Shift(3, 3, 5));
}

TEST_F(KeyFrameScene, LeavesAloneWhatIsGoneOrOfAnotherClass)
{
    COrvelSceneNode* const node = COrvelSceneNode::Create(&document);
    const COrvelID gone = NewTransform();
    document.Destroy(gone.Entity());
    const COrvelBasicGeneralMaterial looks;
    const COrvelBasicPointLight lamp;
    const COrvelBasicVectorsTable shape;
    for (const COrvelID& wrong : {node->ID(), gone, id, COrvelID()}) {
        const COrvelPtr<Light> light(Light::CreateLightKeyFrameData(wrong, &lamp, wrong));
        const std::vector<DataPtr> all{light,
                                       Camera::CreateCameraKeyFrameData(wrong, {}),
                                       Material::CreateMaterialKeyFrameData(wrong, &looks, wrong),
                                       Morph::CreateMorphKeyFrameData(wrong, wrong, 1),
                                       Vertices::CreateVerticesKeyFrameData(wrong, &shape),
                                       HideShow::CreateHideShowKeyFrameData(wrong, wrong != node->ID())};
        for (const DataPtr& data : all)
            data->ApplyToEntity();
        EXPECT_FALSE(light->IsApplicable());
    }
    EXPECT_FALSE(node->IsHidden());
}

TEST_F(KeyFrameScene, LoadsLooksAndSwapsTheMaterialThatIsShown)
{
    COrvelMaterial* const paint = COrvelMaterial::Create(&document, Red(0, "paint"));
    COrvelMaterial* const rust = COrvelMaterial::Create(&document, Red(0.1, "rust"));
    const COrvelBasicGeneralMaterial fresh = Red(0.25, "fresh");
    const COrvelBasicGeneralMaterial old = Red(0.75, "old");
    const auto first = Store(0, 0, Material::CreateMaterialKeyFrameData(paint->ID(), &fresh, paint->ID()));
    const auto second = Store(10, 10, Material::CreateMaterialKeyFrameData(paint->ID(), &old, rust->ID()));
    COrvel3DObject* const door = COrvel3DObject::Create(&document, "door", nullptr, paint);
    COrvel3DObject* const roof = COrvel3DObject::Create(&document, "roof", nullptr, COrvelMaterial::Create(&document));

    second->ApplyToEntity();
    EXPECT_EQ(door->Material(), rust);
    EXPECT_NE(roof->Material(), rust);
    EXPECT_TRUE(paint->IsMarkedAsHidden());
    EXPECT_FALSE(rust->IsMarkedAsHidden());
    EXPECT_EQ(RedOf(rust), 0.75);
    EXPECT_EQ(RedOf(paint), 0);
    EXPECT_EQ(rust->Name(), COrvelString("rust")) << "the looks change, not the material's name";

    manager->SetCurrentFrame(10);
    first->RestoreEntity(nullptr);
    EXPECT_EQ(door->Material(), paint);
    EXPECT_FALSE(paint->IsMarkedAsHidden());
    EXPECT_TRUE(rust->IsMarkedAsHidden());
    EXPECT_EQ(RedOf(paint), 0.25);

    // Another manager knows nothing of what is in the scene.
    const COrvelPtr<COrvelKeyFrameManager> other(new COrvelKeyFrameManager);
    second->SetMaterial(nullptr);
    second->RestoreEntity(other.Get());
    EXPECT_EQ(door->Material(), paint);
    EXPECT_TRUE(rust->IsMarkedAsHidden());
    EXPECT_EQ(RedOf(rust), 0.75) << "without looks there is nothing to load";
}

TEST_F(KeyFrameScene, SetsLights)
{
    COrvelLight* const light = COrvelLight::Create(&document, "lamp");
    COrvelBasicPointLight values;
    values.SetIntensity(3);
    const COrvelPtr<Light> data(Light::CreateLightKeyFrameData(light->ID(), &values, light->ID()));
    data->ApplyToEntity();
    EXPECT_EQ(light->BasicLight()->Intensity(), 3);
    EXPECT_EQ(light->Name(), COrvelString("lamp"));
    EXPECT_FALSE(data->IsApplicable()) << "nothing shines with it";
    COrvelLightSource* const source = COrvelLightSource::Create(&document, "ceiling", light);
    EXPECT_TRUE(data->IsApplicable());
    source->SetDeleted(true);
    EXPECT_FALSE(data->IsApplicable());
}

TEST_F(KeyFrameScene, SetsMorphWeights)
{
    COrvelGeometry* const smile = COrvelGeometry::Create(&document);
    COrvel3DObject* const face = COrvel3DObject::Create(&document, "face");
    const COrvelPtr<Morph> data(Morph::CreateMorphKeyFrameData(smile->ID(), face->ID(), 0.75));
    data->ApplyToEntity();
    EXPECT_FALSE(face->HasMorphingGeometry()) << "no table is made";
    face->CreateMorphingTable()->AddMorphGeometry(smile);
    data->ApplyToEntity();
    EXPECT_EQ(face->MorphingTable()->MorphWeight(smile), 0.75);
}

TEST_F(KeyFrameScene, SetsPositions)
{
    COrvelVerticiesTable* const table = COrvelVerticiesTable::Create(&document, {1, 2, 3});
    const COrvelBasicVectorsTable shape({COrvel3DVertex(5, 7, 11)});
    auto data = Over(3, 7, Vertices::CreateVerticesKeyFrameData(table->ID(), &shape));
    data->SetWorkingFrame(4);
    data->ApplyToEntity();
    EXPECT_THAT(table->Values(), ElementsAre(1, 2, 3)) << "no table for that frame";
    data->SetWorkingFrame(3);
    data->ApplyToEntity();
    data = nullptr;
    EXPECT_THAT(table->Values(), ElementsAre(5, 7, 11));
}

} // namespace
} // namespace Orvel
