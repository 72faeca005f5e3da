#include "platform/core/COrvelArchiveReader.h"
#include "platform/core/COrvelArchiveWriter.h"
#include "platform/core/COrvelBasicLight.h"
#include "platform/core/COrvelCamera.h"
#include "platform/core/COrvelDocument.h"
#include "platform/core/COrvelLight.h"
#include "platform/core/COrvelLightSource.h"
#include "platform/core/COrvelTransform.h"
#include "tests/core/ValueTestHelpers.h"

#include <gmock/gmock.h>

#include <memory>

namespace Orvel
{
namespace
{

using testing::ElementsAre;
using Tests::IsNear;

class CameraPlacement : public testing::Test
{
protected:
    CameraPlacement()
    {
        COrvelMatrix turned;
        turned.DefineByRotation(0.7, 1, 2, 3);
        parent->SetLocalMatrix(COrvelMatrix::CreateTranslation({7, 11, 13}) * turned);
        parent->AddChild(camera);
        value.SetLookAtAndPositionFromLookAtTarget({1, 2, 3}, {17, -19, 23}, true);
        value.SetFOV(42);
        value.SetDOF(true, 8, 2.8);
    }

    COrvelDocument document;
    COrvelSceneNode* const parent = COrvelSceneNode::Create(&document);
    COrvelCamera* const camera = COrvelCamera::Create(&document, "camera");
    COrvelBasicCamera value;
};

TEST_F(CameraPlacement, SurvivesATurnedAndShiftedParent)
{
    camera->LoadBasicCamera(value, true);
    EXPECT_TRUE(IsNear(camera->LocalToWorldMatrix(), value.ComputeLocalToWorld()));
    EXPECT_TRUE(IsNear(camera->Position(), {17, -19, 23}));
    EXPECT_TRUE(IsNear(camera->LookAt(), {1, 2, 3}));
    EXPECT_TRUE(IsNear(camera->CamUp(), value.CamUp()));

    const COrvelBasicCamera computed = camera->ComputeBasicCamera();
    EXPECT_TRUE(IsNear(computed.LookAt(), {1, 2, 3}));
    EXPECT_NEAR(computed.DistanceFromTarget(), value.DistanceFromTarget(), 1e-12);
    EXPECT_EQ(computed.FOV(), 42);
    EXPECT_TRUE(computed.DOFIsEnabled());
    EXPECT_EQ(computed.DOF(), 8);
    EXPECT_EQ(computed.DOFFStop(), 2.8);

    const COrvelMatrix local = camera->LocalMatrix();
    camera->LoadBasicCamera(computed, true);
    EXPECT_TRUE(IsNear(camera->LocalMatrix(), local, 4e-11)) << "loading what was computed moves nothing";
}

TEST_F(CameraPlacement, IsLeftAloneUnlessAskedFor)
{
    const COrvelMatrix placed = COrvelMatrix::CreateTranslation({2, 3, 5});
    camera->SetLocalMatrix(placed);
    camera->LoadBasicCamera(value, false);
    EXPECT_EQ(camera->LocalMatrix(), placed);
    EXPECT_EQ(camera->ProjectionMatrix().FOV(), 42);
    EXPECT_EQ(camera->DistanceFromTarget(), value.DistanceFromTarget());

    COrvelCamera* const other = COrvelCamera::Create(&document);
    EXPECT_NE(other->LocalTransform(), camera->LocalTransform()) << "each has a transform of its own";
    EXPECT_TRUE(IsNear(other->LookAt(), {0, 0, -1}));
}

TEST(BasicLight, BlendsWithItsOwnKindOnly)
{
    COrvelBasicPointLight lamp;
    lamp.SetName("lamp");
    lamp.SetColor({1.0, 0.5, 0.0, 1.0});
    lamp.SetIntensity(2);
    lamp.SetRange(10);
    COrvelBasicPointLight bulb;
    bulb.SetName("bulb");
    bulb.SetColor({0.0, 0.25, 1.0, 1.0});
    bulb.SetIntensity(6);
    bulb.SetRange(30);

    const std::unique_ptr<COrvelBasicLight> blend(lamp.Interpolate(&bulb, 0.25));
    ASSERT_NE(blend, nullptr);
    EXPECT_EQ(blend->Name(), "lamp");
    EXPECT_EQ(blend->Color(), COrvelColor(0.75, 0.4375, 0.25, 1.0));
    EXPECT_EQ(blend->Intensity(), 3);
    EXPECT_EQ(dynamic_cast<COrvelBasicPointLight&>(*blend).Range(), 15);
    const std::unique_ptr<COrvelBasicLight> half(lamp.Interpolate(&bulb, 0.5));
    EXPECT_EQ(half->Name(), "bulb");

    const COrvelBasicSpotLight spot;
    EXPECT_EQ(lamp.Interpolate(&spot, 0.5), nullptr) << "a spot light is a point light, but no light of its kind";
    EXPECT_EQ(spot.Interpolate(&lamp, 0.5), nullptr);
    EXPECT_EQ(lamp.Interpolate(nullptr, 0.5), nullptr);
}

TEST(BasicLight, IsArchivedByKindAndReadByDescriptionWhereTheKindIsUnknown)
{
    COrvelBasicSpotLight spot;
    spot.SetName("spot");
    spot.SetIntensity(5);
    spot.SetRange(70);
    spot.SetAnglesInDegrees(20, 35);
    COrvelArchiveWriter writer;
    ASSERT_TRUE(spot.ArchiveReadWrite(writer));

    COrvelArchiveReader archive(writer.Bytes());
    const std::unique_ptr<COrvelBasicLight> read(COrvelBasicLight::CreateBasicLight(spot.KindName()));
    ASSERT_TRUE(read && read->ArchiveReadWrite(archive));
    EXPECT_TRUE(archive.IsAtEnd());
    EXPECT_EQ(dynamic_cast<COrvelBasicSpotLight&>(*read).InnerAngleInDegrees(), 20);
    EXPECT_EQ(dynamic_cast<COrvelBasicSpotLight&>(*read).OuterAngleInDegrees(), 35);

    COrvelArchiveReader described(writer.Bytes());
    COrvelBasicPointLight fallback;
    ASSERT_TRUE(fallback.ReadDescribed(described, spot.StructureDescription()));
    EXPECT_TRUE(described.IsAtEnd());
    EXPECT_EQ(fallback.Name(), "spot");
    EXPECT_EQ(fallback.Intensity(), 5);
    EXPECT_EQ(fallback.Range(), 70);
    EXPECT_EQ(COrvelBasicLight::CreateBasicLight("no such kind"), nullptr);
}

TEST(Light, KnowsItsSourcesAndKeepsItsNameWhenItTakesOtherValues)
{
    COrvelDocument document;
    COrvelBasicDirectionalLight sun;
    sun.SetName("sun");
    COrvelLight* const light = COrvelLight::Create(&document, sun);
    COrvelLightSource* const first = COrvelLightSource::Create(&document, "first", light);
    COrvelLightSource* const second = COrvelLightSource::Create(&document, "second", light);
    second->SetDeleted(true);
    std::vector<COrvelSceneNode*> sources{nullptr};
    light->GetLightSourcesReferencingThisLight(sources);
    EXPECT_THAT(sources, ElementsAre(first, second));
    EXPECT_EQ(light->NumberOfUndeletedLightSourcesReferencingThisLight(), 1);
    first->SetLight(nullptr);
    EXPECT_EQ(first->Light(), nullptr);
    EXPECT_EQ(light->NumberOfUndeletedLightSourcesReferencingThisLight(), 0);

    COrvelBasicPointLight lamp;
    lamp.SetName("lamp");
    light->LoadBasicLight(&lamp, false);
    light->LoadBasicLight(nullptr, false);
    EXPECT_EQ(light->BasicLight()->KindName(), lamp.KindName());
    EXPECT_EQ(light->Name(), "sun");
}

} // namespace
} // namespace Orvel
