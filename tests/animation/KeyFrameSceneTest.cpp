#include "animation/COrvelKeyFrameDataHideShow.h"
#include "animation/COrvelKeyFrameDataLight.h"
#include "animation/COrvelKeyFrameDataMaterial.h"
#include "animation/COrvelKeyFrameDataMorph.h"
#include "animation/COrvelKeyFrameDataTransformBSplineFollower.h"
#include "animation/COrvelKeyFrameDataTransformRoundTable.h"
#include "animation/COrvelKeyFrameDataTransformSphericalCamera.h"
#include "animation/COrvelKeyFrameDataVertices.h"
#include "platform/core/COrvel3DObject.h"
#include "platform/core/COrvel3DVectorsTable.h"
#include "platform/core/COrvelBasicGeneralMaterial.h"
#include "platform/core/COrvelBasicPointLight.h"
#include "platform/core/COrvelCamera.h"
#include "platform/core/COrvelGeometry.h"
#include "platform/core/COrvelLight.h"
#include "platform/core/COrvelLightSource.h"
#include "platform/core/COrvelLinePath.h"
#include "platform/core/COrvelMaterial.h"
#include "platform/core/COrvelMorphingTable.h"
#include "tests/animation/KeyFrameFixture.h"

#include <gmock/gmock.h>

#include <cmath>

namespace Orvel
{

namespace
{

using testing::ElementsAre;

using Transform = COrvelKeyFrameDataTransform;
using Camera = COrvelKeyFrameDataTransformCamera;
using SphericalCamera = COrvelKeyFrameDataTransformSphericalCamera;
using RoundTable = COrvelKeyFrameDataTransformRoundTable;
using Follower = COrvelKeyFrameDataTransformBSplineFollower;

constexpr double Degree = 0.017453292519943295;

/// From (0, -10, 0) level to the origin.
COrvelBasicCamera LevelCamera()
{
    COrvelBasicCamera camera;
    camera.SetPosition({0, -10, 0});
    camera.SetDir(0, 1, 0);
    camera.SetDistanceToTarget(10);
    camera.SetCamUp(0, 0, 1);
    return camera;
}

void ExpectNear(const COrvel3DVertex& got, const COrvel3DVertex& want, double tolerance = 1e-9)
{
    EXPECT_LT((got - want).Length(), tolerance) << got.X() << " " << got.Y() << " " << got.Z() << " instead of "
                                                << want.X() << " " << want.Y() << " " << want.Z();
}

/// Writing data into the scene, and what they take from it.
class KeyFrameScene : public KeyFrames
{
protected:
    /// A camera under a turned and shifted parent.
    COrvelCamera* CarriedCamera()
    {
        COrvelSceneNode* const parent = COrvelSceneNode::Create(&document, "crane");
        parent->SetLocalMatrix(Shift(7, 11, 13) * COrvelMatrix().DefineByRotation(0.5, 1, 2, 3));
        COrvelCamera* const camera = COrvelCamera::Create(&document, "eye");
        parent->AddChild(camera);
        document.AddRootNode(parent);
        return camera;
    }
};

TEST_F(KeyFrameScene, PlacesTransforms)
{
    COrvelPtr<Transform> data(Transform::CreateTransformKeyFrameData(id, Shift(2, 3, 5)));
    data->ApplyToEntity();
    EXPECT_EQ(transform->Matrix(), Shift(2, 3, 5));
    data->MultiplyMatrix(COrvelMatrix::CreateScalling({2, 2, 2}), true);
    EXPECT_EQ(data->Matrix(), COrvelMatrix::CreateScalling({2, 2, 2}) * Shift(2, 3, 5));
    data->MultiplyMatrix(Shift(1, 0, 0), false);
    EXPECT_EQ(data->Matrix().Translation(), COrvel3DVertex(6, 6, 10));
    const COrvelMatrix before = data->Matrix();
    data->RebaseOnPath(Shift(9, 9, 9));
    EXPECT_EQ(data->Matrix(), before) << "only followers have a path";

    document.Destroy(transform);
    data->ApplyToEntity();
    COrvelPtr<Transform> misfiled(
        Transform::CreateTransformKeyFrameData(COrvelSceneNode::Create(&document)->ID(), Shift(1, 1, 1)));
    misfiled->ApplyToEntity();
}

TEST_F(KeyFrameScene, PlacesCamerasAndSetsTheirOptics)
{
    COrvelCamera* const camera = CarriedCamera();
    const COrvelMatrix placement = Shift(1, 2, 3) * COrvelMatrix().DefineByRotation(0.8, 3, 1, 2);
    const COrvelPtr<Camera> data(
        Camera::CreateCameraKeyFrameData(camera->LocalTransform()->ID(), placement, 55, 17, true, 8, 2.8));
    data->ApplyToEntity();
    EXPECT_TRUE(camera->LocalMatrix().IsNear(placement, 1e-12));
    EXPECT_DOUBLE_EQ(camera->DistanceFromTarget(), 17);
    EXPECT_EQ(camera->FOV(), 55);
    EXPECT_TRUE(camera->DOFIsEnabled());
    EXPECT_EQ(camera->DOF(), 8);
    EXPECT_EQ(camera->DOFFStop(), 2.8);
}

TEST_F(KeyFrameScene, MakesCameraDataFromNodes)
{
    COrvelCamera* const camera = CarriedCamera();
    camera->LocalTransform()->LoadMatrix(Shift(1, 2, 3));
    camera->SetDistanceToTarget(17);
    camera->SetFOV(55);
    camera->SetDOF(true, 8, 2.8);
    const COrvelPtr<Camera> data(Camera::CreateCameraKeyFrameData(camera));
    EXPECT_EQ(data->AnimatedEntityID(), camera->LocalTransform()->ID());
    EXPECT_EQ(data->Matrix(), Shift(1, 2, 3));
    EXPECT_NEAR(data->DistanceToTarget(), 17, 1e-12);
    EXPECT_EQ(data->FieldOfView(), 55);
    EXPECT_TRUE(data->DOFIsEnabled());
    EXPECT_FALSE(data->IsOrbit());

    const COrvelPtr<Camera> orbit(Camera::CreateOrbitCameraKeyFrameData(camera, 10, 19, 180, true, 12, 16, 2, 1));
    EXPECT_EQ(orbit->StartFrame(), 10);
    EXPECT_EQ(orbit->EndFrame(), 19);
    EXPECT_EQ(orbit->ConstantSpeedStartFrame(), 12);
    EXPECT_EQ(orbit->ConstantSpeedEndFrame(), 16);
    EXPECT_EQ(orbit->EaseIn(), 2);
    EXPECT_EQ(orbit->EaseOut(), 1);
    EXPECT_TRUE(orbit->IsOrbit());
    EXPECT_TRUE(orbit->Descends());
    EXPECT_EQ(orbit->AngleInDegrees(), 180);
    EXPECT_EQ(orbit->FieldOfView(), 55);

    COrvelSceneNode* const plain = COrvelSceneNode::Create(&document, "no transform");
    EXPECT_EQ(Camera::CreateOrbitCameraKeyFrameData(plain, 0, 1, 90, false, 0, 0, 0, 0), nullptr);
    EXPECT_EQ(Camera::CreateOrbitCameraKeyFrameData(nullptr, 0, 1, 90, false, 0, 0, 0, 0), nullptr);
    plain->SetLocalMatrix(Shift(1, 2, 3));
    const COrvelPtr<Camera> round(Camera::CreateOrbitCameraKeyFrameData(plain, 0, 1, 90, false, 0, 0, 0, 0));
    EXPECT_EQ(round->FieldOfView(), 30);
    camera->SetLocalTransform(nullptr);
    EXPECT_EQ(Camera::CreateCameraKeyFrameData(camera), nullptr);
    EXPECT_EQ(Camera::CreateCameraKeyFrameData(static_cast<COrvelCamera*>(nullptr)), nullptr);
}

TEST_F(KeyFrameScene, TurnsOrbitsOneStepShortOfTheFullAngle)
{
    const COrvelPtr<Camera> data = Over(10, 45, Camera::CreateCameraKeyFrameData(id, LevelCamera()));
    data->SetConstantSpeedStartFrame(10);
    data->SetConstantSpeedEndFrame(45);
    data->SetWorkingFrame(19);
    ExpectNear(data->BasicCamera().Position(), {0, -10, 0});
    data->SetOrbit(true);
    for (const int frame : {45, 10, 19, 28}) {
        data->SetWorkingFrame(frame);
        const double angle = 10.0 * (frame - 10) * Degree;
        ExpectNear(data->BasicCamera().Position(), {-10 * std::sin(angle), -10 * std::cos(angle), 0});
        ExpectNear(data->Matrix().Translation(), data->BasicCamera().Position());
        ExpectNear(data->BasicCamera().LookAt(), {0, 0, 0});
    }
    // Outside its range a camera stands where it stands at the end.
    data->SetWorkingFrame(45);
    const COrvelMatrix last = data->Matrix();
    data->SetWorkingFrame(1000);
    EXPECT_EQ(data->Matrix(), last);
    data->SetConstantSpeedEndFrame(30);
    ExpectNear(data->BasicCamera().Position(), {0, -10, 0});
}

TEST_F(KeyFrameScene, VisitsTheViewsOfItsGrid)
{
    COrvelBasicCamera eye = LevelCamera();
    eye.SetDOF(true, 8.0, 2.8);
    const COrvelPtr<SphericalCamera> data = Over(10, 21, SphericalCamera::CreateSphericalCameraKeyFrameData(id, eye));
    EXPECT_EQ(data->Centre(), COrvel3DVertex(0, 0, 0));
    data->SetCentre({1, 2, 3});
    data->SetColumns(4);
    data->SetRows(3);
    const auto eyeAt = [&](int frame) {
        data->SetWorkingFrame(frame);
        EXPECT_TRUE(data->Matrix().IsNear(data->BasicCamera().ComputeLocalToWorld(), 0.0));
        return data->BasicCamera().Position() - COrvel3DVertex(1, 2, 3);
    };
    data->SetGridType(SphericalCamera::eGridType_Hemispherical);
    const double half = 10 * std::sqrt(0.5);
    ExpectNear(eyeAt(10), {0, -10, 0});
    ExpectNear(eyeAt(11), {10, 0, 0});
    ExpectNear(eyeAt(12), {0, 10, 0});
    ExpectNear(eyeAt(13), {-10, 0, 0});
    ExpectNear(eyeAt(14), {0, -half, half});
    ExpectNear(eyeAt(18), {0, 0, 10});
    EXPECT_FALSE(data->BasicCamera().DOFIsEnabled());
    data->SetGridType(SphericalCamera::eGridType_Spherical);
    ExpectNear(eyeAt(10), {0, 0, 10});
    ExpectNear(eyeAt(15), {10, 0, 0});
    ExpectNear(eyeAt(18), {0, 0, -10});
    // The circle turns against the sense of an orbit, about what the camera looks at, with its depth of field.
    data->SetGridType(SphericalCamera::eGridType_RoundTable);
    ExpectNear(eyeAt(13) + COrvel3DVertex(1, 2, 3), {10, 0, 0});
    EXPECT_TRUE(data->BasicCamera().DOFIsEnabled());
    data->SetOrbit(false);
    EXPECT_TRUE(data->Matrix().IsNear(eye.ComputeLocalToWorld(), 0.0));
    data->SetOrbit(true);
    // Through its base class it is the same camera.
    const Camera& camera = *data;
    ExpectNear(camera.BasicCamera().Position(), {10, 0, 0});
}

TEST_F(KeyFrameScene, TurnsRoundTablesAboutTheirPivot)
{
    const COrvelMatrix reference = Shift(2, 3, 5) * COrvelMatrix::CreateRotaionAroundX(0.3);
    const COrvelMatrix frame = COrvelMatrix().DefineByRotation(0.7, 1, 2, 3) * Shift(7, 0, 1);
    const COrvelPtr<RoundTable> data(RoundTable::CreateRoundTableKeyFrameData(id, reference, frame, 10, 19, 90,
                                                                              {1, -1, 4}, {0, 0.5, 2}, 10, 19, 2, 1));
    EXPECT_EQ(data->EaseIn(), 2);
    EXPECT_EQ(data->EaseOut(), 1);
    EXPECT_EQ(data->Normal(), COrvelNormal({1, -1, 4}, {0, 0.5, 2}));
    EXPECT_TRUE(data->Matrix().IsNear(reference, 1e-12));
    const COrvel3DVertex still = reference * data->Pivot();
    const COrvelMatrix toAxis = frame.Inverse();
    ExpectNear(frame * still, {1, -1, 4});
    for (int step = 0; step < 10; ++step) {
        data->SetWorkingFrame(10 + step);
        ExpectNear(data->Matrix() * data->Pivot(), still);
        const COrvelMatrix turn = toAxis * Shift(1, -1, 4) *
                                  COrvelMatrix().DefineByRotation(10 * step * Degree, 0, 0.5, 2) * Shift(-1, 1, -4) *
                                  frame;
        EXPECT_TRUE(data->Matrix().IsNear(turn * reference, 1e-9)) << step;
    }
    const COrvelPtr<RoundTable> clamped(
        RoundTable::CreateRoundTableKeyFrameData(id, {}, {}, 0, 0, 0, {}, {}, -1, -1, 0, 0));
    EXPECT_EQ(clamped->ConstantSpeedStartFrame(), 0);
    EXPECT_EQ(clamped->Matrix(), COrvelMatrix());
}

/// A cart on rails that run along x from (0, 0, 0) to (9, 0, 0), carried by a lift; the cart stands in a wagon.
class KeyFrameFollower : public KeyFrameScene
{
protected:
    KeyFrameFollower()
    {
        rails->SetBasicPath(COrvelBasicPath::Polyline({{0, 0, 0}, {9, 0, 0}}, false));
        lift->AddChild(rails);
        lift->SetLocalTransform(liftPlace);
        wagon->AddChild(cart);
        wagon->SetLocalMatrix(Shift(100, 0, 0));
        cart->SetLocalTransform(transform);
        transform->LoadMatrix(Shift(0, 0, 50)); // of no account while the cart follows the rails
        data = Over(10, 19, Follower::CreateBSplineFollowerKeyFrameData(id));
        data->SetConstantSpeedStartFrame(10);
        data->SetConstantSpeedEndFrame(19);
        data->SetBaseMatrix(Shift(100, 5, 0));
        data->SetPathID(rails->ID());
        data->SetFollowedNodeID(cart->ID());
    }

    COrvel3DVertex PlaceAt(int frame)
    {
        data->SetWorkingFrame(frame);
        return data->Matrix().Translation();
    }

    COrvelSceneNode* lift = COrvelSceneNode::Create(&document, "lift");
    COrvelTransform* liftPlace = COrvelTransform::Create(&document);
    COrvelLinePath* rails = COrvelLinePath::Create(&document, "rails");
    COrvelSceneNode* wagon = COrvelSceneNode::Create(&document, "wagon");
    COrvelSceneNode* cart = COrvelSceneNode::Create(&document, "cart");
    COrvelPtr<Follower> data;
};

TEST_F(KeyFrameFollower, GoesAlongThePathWhereverThatIs)
{
    ExpectNear(PlaceAt(10), {0, 5, 0});
    ExpectNear(PlaceAt(14), {4, 5, 0});
    ExpectNear(PlaceAt(19), {9, 5, 0});
    // The lift rises 1 a frame from frame 10 on.
    Store(10, 10, Transform::CreateTransformKeyFrameData(liftPlace->ID(), {}));
    Store(20, 20, Transform::CreateTransformKeyFrameData(liftPlace->ID(), Shift(0, 0, 10)));
    ExpectNear(PlaceAt(14), {4, 5, 4});
    // And the wagon is pulled away under the cart.
    wagon->SetLocalMatrix(Shift(300, 0, 0));
    ExpectNear(PlaceAt(14), {-196, 5, 4});
    // The cart's own data does not stand in its way.
    COrvelPtr<COrvelKeyFrameData> stored = data;
    manager->AddKeyFrameData(stored, true);
    ExpectNear(StateAt<Transform>(id, 14)->Matrix().Translation(), {-196, 5, 4});
    EXPECT_EQ(StateAt<Transform>(id, 14)->Type(), eKeyFrameDataType_Transform);
    ExpectNear(manager->WorldMatrixAtFrame(cart->NodePathToRoot(true), 14).Translation(), {104, 5, 4});
}

TEST_F(KeyFrameFollower, StaysAtItsBaseWithoutAPath)
{
    const COrvel3DVertex base(100, 5, 0);
    rails->SetDeleted(true);
    EXPECT_EQ(PlaceAt(14), base);
    rails->SetDeleted(false);
    cart->SetDeleted(true);
    EXPECT_EQ(PlaceAt(14), base);
    cart->SetDeleted(false);
    data->SetEndFrame(10, false);
    EXPECT_EQ(PlaceAt(10), base) << "one frame is no way";
    data->SetEndFrame(19, false);
    rails->RemoveBasicPath();
    EXPECT_EQ(PlaceAt(14), base);
    EXPECT_TRUE(data->IsApplicable());
    data->SetPathID(cart->ID());
    EXPECT_EQ(data->Path(), nullptr);
    EXPECT_EQ(PlaceAt(14), base);
    data->SetPathID(COrvelID());
    EXPECT_FALSE(data->IsApplicable());
    data->RebaseOnPath(Shift(1, 1, 1));
    EXPECT_EQ(PlaceAt(14), base);
}

TEST_F(KeyFrameFollower, ChangesBaseAndOffset)
{
    const COrvelMatrix base = Shift(100, 5, 0) * COrvelMatrix::CreateRotaionAroundX(0.4);
    const COrvelMatrix offset = Shift(0, 1, 2) * COrvelMatrix::CreateScalling({2, 3, 5});
    const COrvelMatrix m = Shift(7, 11, 13) * COrvelMatrix().DefineByRotation(0.6, 1, 2, 3);
    data->SetBaseMatrix(base);
    data->SetOffsetMatrix(offset);
    data->MultiplyMatrix(m, true);
    EXPECT_TRUE(data->BaseMatrix().IsNear(m * base, 1e-12));
    EXPECT_TRUE((data->OffsetMatrix() * data->BaseMatrix()).IsNear(offset * base, 1e-9)) << "the carried place stays";
    data->SetBaseMatrix(base);
    data->SetOffsetMatrix(offset);
    data->MultiplyMatrix(m, false);
    EXPECT_TRUE(data->BaseMatrix().IsNear(base * m, 1e-12));
    EXPECT_TRUE(data->OffsetMatrix().IsNear(m.Inverse() * offset, 1e-12));
}

TEST_F(KeyFrameFollower, IsRebasedWhereThePathIsAtTheCurrentFrame)
{
    Store(0, 0, Transform::CreateTransformKeyFrameData(liftPlace->ID(), {}));
    Store(20, 20, Transform::CreateTransformKeyFrameData(liftPlace->ID(), Shift(0, 0, 20)));
    manager->SetCurrentFrame(7);
    const COrvelMatrix reference = Shift(1, 0, 0);
    const COrvelMatrix offset = Shift(0, 1, 2) * COrvelMatrix().DefineByRotation(0.3, 0, 0, 1);
    const COrvelMatrix base = data->BaseMatrix();
    data->SetReferenceMatrix(reference);
    data->SetOffsetMatrix(offset);
    const COrvelMatrix m = Shift(7, 11, 13) * COrvelMatrix().DefineByRotation(0.6, 1, 2, 3);
    data->RebaseOnPath(m);
    const COrvelMatrix carried = Shift(0, 0, 7) * reference.Inverse() * offset;
    EXPECT_TRUE((carried * data->BaseMatrix()).IsNear(m * carried * base, 1e-9));
    EXPECT_EQ(data->OffsetMatrix(), offset);
}

// --- materials, lights and the rest

class KeyFrameLooks : public KeyFrameScene
{
protected:
    static COrvelBasicGeneralMaterial Red(double red, const char* name)
    {
        COrvelBasicGeneralMaterial looks;
        looks.SetName(name);
        looks.SetDiffuseColor({red, 0.5, 0.25, 1.0});
        return looks;
    }
    static double RedOf(COrvelMaterial* material)
    {
        return material->ApproximateToOrvelGeneralMaterial()->DiffuseColor().R();
    }

    COrvelMaterial* paint = COrvelMaterial::Create(&document, Red(0.0, "paint"));
    COrvelMaterial* rust = COrvelMaterial::Create(&document, Red(0.1, "rust"));
};

TEST_F(KeyFrameLooks, GoIntoTheTargetMaterial)
{
    const COrvelBasicGeneralMaterial looks = Red(0.75, "glow");
    const COrvelPtr<COrvelKeyFrameDataMaterial> data(
        COrvelKeyFrameDataMaterial::CreateMaterialKeyFrameData(paint->ID(), &looks, paint->ID()));
    data->ApplyToEntity();
    EXPECT_EQ(RedOf(paint), 0.75);
    EXPECT_EQ(paint->Name(), COrvelString("paint")) << "the looks change, not the material's name";
    EXPECT_FALSE(paint->IsMarkedAsHidden());

    const COrvelPtr<COrvelKeyFrameDataMaterial> none(
        COrvelKeyFrameDataMaterial::CreateMaterialKeyFrameData(paint->ID(), nullptr, paint->ID()));
    none->ApplyToEntity();
    EXPECT_EQ(RedOf(paint), 0.75);
    none->SetTargetEntityID(id);
    none->ApplyToEntity();
    none->SetTargetEntityID(COrvelID());
    none->ApplyToEntity();
}

TEST_F(KeyFrameLooks, SwapTheMaterialThatIsInTheScene)
{
    const COrvelBasicGeneralMaterial fresh = Red(0.25, "paint");
    const COrvelBasicGeneralMaterial old = Red(0.75, "rust");
    const auto first =
        Store(0, 0, COrvelKeyFrameDataMaterial::CreateMaterialKeyFrameData(paint->ID(), &fresh, paint->ID()));
    const auto second =
        Store(10, 10, COrvelKeyFrameDataMaterial::CreateMaterialKeyFrameData(paint->ID(), &old, rust->ID()));
    COrvel3DObject* const door = COrvel3DObject::Create(&document, "door", nullptr, paint);
    COrvel3DObject* const roof = COrvel3DObject::Create(&document, "roof", nullptr, COrvelMaterial::Create(&document));

    second->ApplyToEntity();
    EXPECT_EQ(door->Material(), rust);
    EXPECT_NE(roof->Material(), rust);
    EXPECT_TRUE(paint->IsMarkedAsHidden());
    EXPECT_FALSE(rust->IsMarkedAsHidden());
    EXPECT_EQ(RedOf(rust), 0.75);
    EXPECT_EQ(RedOf(paint), 0.0);

    manager->SetCurrentFrame(10);
    first->RestoreEntity(nullptr);
    EXPECT_EQ(door->Material(), paint);
    EXPECT_FALSE(paint->IsMarkedAsHidden());
    EXPECT_TRUE(rust->IsMarkedAsHidden());
    EXPECT_EQ(RedOf(paint), 0.25);

    // Another manager knows nothing of what is in the scene.
    const COrvelPtr<COrvelKeyFrameManager> other(new COrvelKeyFrameManager);
    second->RestoreEntity(other.Get());
    EXPECT_EQ(door->Material(), paint);
    EXPECT_TRUE(rust->IsMarkedAsHidden());
}

TEST_F(KeyFrameScene, SetsLights)
{
    COrvelLight* const light = COrvelLight::Create(&document, "lamp");
    COrvelBasicPointLight values;
    values.SetIntensity(3.0);
    const COrvelPtr<COrvelKeyFrameDataLight> data(
        COrvelKeyFrameDataLight::CreateLightKeyFrameData(light->ID(), &values, light->ID()));
    data->ApplyToEntity();
    EXPECT_EQ(light->BasicLight()->Intensity(), 3.0);
    EXPECT_EQ(light->Name(), COrvelString("lamp"));
    EXPECT_FALSE(data->IsApplicable()) << "nothing shines with it";
    COrvelLightSource* const source = COrvelLightSource::Create(&document, "ceiling", light);
    EXPECT_TRUE(data->IsApplicable());
    source->SetDeleted(true);
    EXPECT_FALSE(data->IsApplicable());
    data->SetTargetEntityID(id);
    data->ApplyToEntity();
    EXPECT_FALSE(data->IsApplicable());
}

TEST_F(KeyFrameScene, HidesAndShowsNodes)
{
    COrvelSceneNode* const node = COrvelSceneNode::Create(&document, "wheel");
    COrvelSceneNode* const parent = COrvelSceneNode::Create(&document, "car");
    parent->AddChild(node);
    const COrvelPtr<COrvelKeyFrameDataHideShow> data(
        COrvelKeyFrameDataHideShow::CreateHideShowKeyFrameData(node->ID(), true));
    data->ApplyToEntity();
    data->ApplyToEntity();
    EXPECT_TRUE(node->IsHidden());
    EXPECT_FALSE(parent->IsHidden());
    data->SetHidden(false);
    data->ApplyToEntity();
    EXPECT_FALSE(node->IsHidden());
    document.Destroy(node);
    data->ApplyToEntity();
}

TEST_F(KeyFrameScene, SetsMorphWeights)
{
    COrvelGeometry* const smile = COrvelGeometry::Create(&document);
    COrvel3DObject* const face = COrvel3DObject::Create(&document, "face");
    const COrvelPtr<COrvelKeyFrameDataMorph> data(
        COrvelKeyFrameDataMorph::CreateMorphKeyFrameData(smile->ID(), face->ID(), 0.75));
    data->ApplyToEntity();
    EXPECT_FALSE(face->HasMorphingGeometry()) << "no table is made";
    face->CreateMorphingTable()->AddMorphGeometry(smile);
    data->ApplyToEntity();
    EXPECT_EQ(face->MorphingTable()->MorphWeight(smile), 0.75);
    data->SetObjectID(smile->ID());
    data->ApplyToEntity();
    document.Destroy(face);
    data->ApplyToEntity();
}

TEST_F(KeyFrameScene, SetsPositions)
{
    COrvelVerticiesTable* const table = COrvelVerticiesTable::Create(&document, {1, 2, 3});
    const COrvelBasicVectorsTable shape({COrvel3DVertex(5, 7, 11)});
    COrvelPtr<COrvelKeyFrameDataVertices> data =
        Over(3, 7, COrvelKeyFrameDataVertices::CreateVerticesKeyFrameData(table->ID(), &shape));
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
