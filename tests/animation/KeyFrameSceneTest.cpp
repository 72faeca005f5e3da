#include "animation/Angles.h"
#include "platform/core/COrvel3DObject.h"
#include "platform/core/COrvel3DVectorsTable.h"
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

/// Writing data into the scene, and what they take from it.
class KeyFrameScene : public KeyFrames
{
protected:
    /// A camera under a turned and shifted parent.
    COrvelCamera* CarriedCamera()
    {
        COrvelSceneNode* const parent = COrvelSceneNode::Create(&document, "crane");
        parent->SetLocalMatrix(Shift(7, 11, 13) * Turn(0.5, 1, 2, 3));
        COrvelCamera* const camera = COrvelCamera::Create(&document, "eye");
        parent->AddChild(camera);
        document.AddRootNode(parent);
        return camera;
    }
};

TEST_F(KeyFrameScene, PlacesTransforms)
{
    const COrvelPtr<Plain> data = PlainOver(0, 0, Shift(2, 3, 5));
    data->ApplyToEntity();
    EXPECT_EQ(transform->Matrix(), Shift(2, 3, 5));
    data->MultiplyMatrix(COrvelMatrix::CreateScalling({2, 2, 2}), true);
    EXPECT_EQ(data->Matrix(), COrvelMatrix::CreateScalling({2, 2, 2}) * Shift(2, 3, 5));
    data->MultiplyMatrix(Shift(1, 0, 0), false);
    const COrvelMatrix wanted = COrvelMatrix::CreateScalling({2, 2, 2}) * Shift(3, 3, 5);
    EXPECT_EQ(data->Matrix(), wanted);
    data->RebaseOnPath(Shift(9, 9, 9));
    EXPECT_EQ(data->Matrix(), wanted) << "only followers have a path";
}

TEST_F(KeyFrameScene, LeavesAloneWhatIsGoneOrOfAnotherClass)
{
    const COrvelID node = COrvelSceneNode::Create(&document)->ID();
    const COrvelID gone = NewTransform();
    document.Destroy(gone.Entity());
    const COrvelBasicGeneralMaterial looks;
    const COrvelBasicPointLight lamp;
    const COrvelBasicVectorsTable shape;
    for (const COrvelID& wrong : {node, gone, id, COrvelID()}) {
        const std::vector<DataPtr> all{Camera::CreateCameraKeyFrameData(wrong, {}),
                                       Material::CreateMaterialKeyFrameData(wrong, &looks, wrong),
                                       Light::CreateLightKeyFrameData(wrong, &lamp, wrong),
                                       Morph::CreateMorphKeyFrameData(wrong, wrong, 1),
                                       Vertices::CreateVerticesKeyFrameData(wrong, &shape),
                                       HideShow::CreateHideShowKeyFrameData(wrong, wrong != node)};
        for (const DataPtr& data : all)
            data->ApplyToEntity();
        EXPECT_FALSE(all[2]->IsApplicable());
    }
    EXPECT_FALSE(static_cast<COrvelSceneNode*>(node.Entity())->IsHidden());
}

TEST_F(KeyFrameScene, PlacesCamerasAndSetsTheirOptics)
{
    COrvelCamera* const camera = CarriedCamera();
    const COrvelMatrix placement = Shift(1, 2, 3) * Turn(0.8, 3, 1, 2);
    const COrvelPtr<Camera> data(
        Camera::CreateCameraKeyFrameData(camera->LocalTransform()->ID(), placement, 55, 17, true, 8, 2.8));
    data->ApplyToEntity();
    EXPECT_TRUE(camera->LocalMatrix().IsNear(placement, 1e-12));

    // The way back, from the camera to a data.
    const COrvelPtr<Camera> taken(Camera::CreateCameraKeyFrameData(camera));
    EXPECT_EQ(taken->AnimatedEntityID(), camera->LocalTransform()->ID());
    EXPECT_EQ(taken->Matrix(), camera->LocalMatrix());
    EXPECT_NEAR(taken->DistanceToTarget(), 17, 1e-12);
    EXPECT_EQ(taken->FieldOfView(), 55);
    EXPECT_TRUE(taken->DOFIsEnabled());
    EXPECT_EQ(taken->DOFDistance(), 8);
    EXPECT_EQ(taken->DOFFStop(), 2.8);
    EXPECT_FALSE(taken->IsOrbit());
}

TEST_F(KeyFrameScene, MakesOrbitsFromNodes)
{
    COrvelCamera* const camera = CarriedCamera();
    camera->SetFOV(55);
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
    const COrvelPtr<Camera> data(Camera::CreateCameraKeyFrameData(id, LevelCamera()));
    data->SetTiming(10, 45, 10, 45, 0, 0);
    data->SetWorkingFrame(19);
    ExpectNear(data->BasicCamera().Position(), {0, -10, 0});
    data->SetOrbit(true);
    for (const int frame : {10, 19, 28, 45, 1000}) {
        data->SetWorkingFrame(frame);
        const double angle = Radians(10.0 * (std::min(frame, 45) - 10));
        ExpectNear(data->BasicCamera().Position(), {-10 * std::sin(angle), -10 * std::cos(angle), 0});
        ExpectNear(data->Matrix().Translation(), data->BasicCamera().Position());
    }
    data->SetConstantSpeedEndFrame(30);
    ExpectNear(data->BasicCamera().Position(), {0, -10, 0});
}

TEST_F(KeyFrameScene, VisitsTheViewsOfItsGrid)
{
    const COrvelBasicCamera eye = LevelCamera();
    const COrvelPtr<Grid> data = Over(10, 21, Grid::CreateSphericalCameraKeyFrameData(id, eye));
    EXPECT_EQ(data->Centre(), COrvel3DVertex(0, 0, 0));
    data->SetCentre({1, 2, 3});
    data->SetColumns(4);
    data->SetRows(3);
    const double half = 10 * std::sqrt(0.5);
    struct View
    {
        int gridType, frame;
        COrvel3DVertex eye;
        bool depthOfField;
    };
    // The circle turns against the sense of an orbit, about what the camera looks at, with its depth of field.
    const View views[] = {{Grid::eGridType_Hemispherical, 10, {1, -8, 3}, false},
                          {Grid::eGridType_Hemispherical, 13, {-9, 2, 3}, false},
                          {Grid::eGridType_Hemispherical, 14, {1, 2 - half, 3 + half}, false},
                          {Grid::eGridType_Hemispherical, 18, {1, 2, 13}, false},
                          {Grid::eGridType_Spherical, 10, {1, 2, 13}, false},
                          {Grid::eGridType_Spherical, 15, {11, 2, 3}, false},
                          {Grid::eGridType_Spherical, 18, {1, 2, -7}, false},
                          {Grid::eGridType_RoundTable, 13, {10, 0, 0}, true}};
    for (const View& view : views) {
        data->SetGridType(view.gridType);
        data->SetWorkingFrame(view.frame);
        const COrvelBasicCamera shown = static_cast<const Camera&>(*data).BasicCamera();
        ExpectNear(shown.Position(), view.eye);
        EXPECT_EQ(shown.DOFIsEnabled(), view.depthOfField);
        EXPECT_TRUE(data->Matrix().IsNear(shown.ComputeLocalToWorld(), 0));
    }
    data->SetOrbit(false);
    EXPECT_TRUE(data->Matrix().IsNear(eye.ComputeLocalToWorld(), 0));
}

TEST_F(KeyFrameScene, TurnsRoundTablesAboutTheirPivot)
{
    const COrvelMatrix reference = Shift(2, 3, 5) * Turn(0.3, 1, 0, 0);
    const COrvelMatrix frame = Turn(0.7, 1, 2, 3) * Shift(7, 0, 1);
    const COrvelPtr<Table> data(
        Table::CreateRoundTableKeyFrameData(id, reference, frame, 10, 19, 90, {1, -1, 4}, {0, 0.5, 2}, 10, 19, 2, 1));
    EXPECT_EQ(data->EaseIn(), 2);
    EXPECT_EQ(data->EaseOut(), 1);
    const COrvel3DVertex still = reference * data->Pivot();
    ExpectNear(frame * still, {1, -1, 4});
    for (int step = 0; step < 10; ++step) {
        data->SetWorkingFrame(10 + step);
        ExpectNear(data->Matrix() * data->Pivot(), still);
        const COrvelMatrix turn = Shift(1, -1, 4) * Turn(Radians(10 * step), 0, 0.5, 2) * Shift(-1, 1, -4);
        EXPECT_TRUE(data->Matrix().IsNear(frame.Inverse() * turn * frame * reference, 1e-9)) << step;
    }
    const COrvelPtr<Table> clamped(Table::CreateRoundTableKeyFrameData(id, {}, {}, 0, 0, 0, {}, {}, -1, -1, 0, 0));
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
        data->SetTiming(10, 19, 10, 19, 0, 0);
        data->SetBaseMatrix(Shift(100, 5, 0));
        data->SetPathID(rails->ID());
        data->SetFollowedNodeID(cart->ID());
    }

    /// The lift rises 1 a frame from frame 10 on.
    void RaiseLift()
    {
        Store(10, 10, Plain::CreateTransformKeyFrameData(liftPlace->ID(), {}));
        Store(20, 20, Plain::CreateTransformKeyFrameData(liftPlace->ID(), Shift(0, 0, 10)));
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
    COrvelPtr<Follower> data = Follower::CreateBSplineFollowerKeyFrameData(id);
};

TEST_F(KeyFrameFollower, GoesAlongThePathWhereverThatIs)
{
    ExpectNear(PlaceAt(10), {0, 5, 0});
    ExpectNear(PlaceAt(14), {4, 5, 0});
    ExpectNear(PlaceAt(19), {9, 5, 0});
    RaiseLift();
    ExpectNear(PlaceAt(14), {4, 5, 4});
    // And the wagon is pulled away under the cart.
    wagon->SetLocalMatrix(Shift(300, 0, 0));
    ExpectNear(PlaceAt(14), {-196, 5, 4});
    // The cart's own data does not stand in its way.
    DataPtr stored = data;
    manager->AddKeyFrameData(stored, true);
    ExpectNear(StateAt<Plain>(id, 14)->Matrix().Translation(), {-196, 5, 4});
    ExpectNear(manager->WorldMatrixAtFrame(cart->NodePathToRoot(true), 14).Translation(), {104, 5, 4});
}

TEST_F(KeyFrameFollower, StaysAtItsBaseWithoutAPath)
{
    const COrvel3DVertex base(100, 5, 0);
    for (COrvelSceneNode* const node : {static_cast<COrvelSceneNode*>(rails), cart}) {
        node->SetDeleted(true);
        EXPECT_EQ(PlaceAt(14), base);
        node->SetDeleted(false);
    }
    data->SetEndFrame(10, false);
    EXPECT_EQ(PlaceAt(10), base) << "one frame is no way";
    data->SetEndFrame(19, false);
    rails->RemoveBasicPath();
    EXPECT_EQ(PlaceAt(14), base);
    EXPECT_TRUE(data->IsApplicable());
    data->SetPathID(cart->ID());
    EXPECT_EQ(PlaceAt(14), base);
    data->SetPathID(COrvelID());
    EXPECT_FALSE(data->IsApplicable());
    data->RebaseOnPath(Shift(1, 1, 1));
    EXPECT_EQ(PlaceAt(14), base);
}

TEST_F(KeyFrameFollower, ChangesBaseAndOffset)
{
    const COrvelMatrix base = Shift(100, 5, 0) * Turn(0.4, 1, 0, 0);
    const COrvelMatrix offset = Shift(0, 1, 2) * COrvelMatrix::CreateScalling({2, 3, 5});
    const COrvelMatrix m = Shift(7, 11, 13) * Turn(0.6, 1, 2, 3);
    for (const bool preMultiply : {true, false}) {
        data->SetBaseMatrix(base);
        data->SetOffsetMatrix(offset);
        data->MultiplyMatrix(m, preMultiply);
        EXPECT_TRUE(data->BaseMatrix().IsNear(preMultiply ? m * base : base * m, 1e-12));
        EXPECT_TRUE(data->OffsetMatrix().IsNear(preMultiply ? offset * m.Inverse() : m.Inverse() * offset, 1e-12));
    }
}

TEST_F(KeyFrameFollower, IsRebasedWhereThePathIsAtTheCurrentFrame)
{
    RaiseLift();
    manager->SetCurrentFrame(17);
    const COrvelMatrix reference = Shift(1, 0, 0);
    const COrvelMatrix offset = Shift(0, 1, 2) * Turn(0.3, 0, 0, 1);
    const COrvelMatrix base = data->BaseMatrix();
    data->SetReferenceMatrix(reference);
    data->SetOffsetMatrix(offset);
    const COrvelMatrix m = Shift(7, 11, 13) * Turn(0.6, 1, 2, 3);
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
        looks.SetDiffuseColor({red, 0.5, 0.25, 1});
        return looks;
    }
    static double RedOf(COrvelMaterial* material)
    {
        return material->ApproximateToOrvelGeneralMaterial()->DiffuseColor().R();
    }

    COrvelMaterial* paint = COrvelMaterial::Create(&document, Red(0, "paint"));
    COrvelMaterial* rust = COrvelMaterial::Create(&document, Red(0.1, "rust"));
};

TEST_F(KeyFrameLooks, GoIntoTheTargetMaterial)
{
    const COrvelBasicGeneralMaterial looks = Red(0.75, "glow");
    for (const COrvelBasicGeneralMaterial* const held :
         {&looks, static_cast<const COrvelBasicGeneralMaterial*>(nullptr)}) {
        const COrvelPtr<Material> data(Material::CreateMaterialKeyFrameData(paint->ID(), held, paint->ID()));
        data->ApplyToEntity();
        EXPECT_EQ(RedOf(paint), 0.75);
        EXPECT_EQ(paint->Name(), COrvelString("paint")) << "the looks change, not the material's name";
        EXPECT_FALSE(paint->IsMarkedAsHidden());
    }
}

TEST_F(KeyFrameLooks, SwapTheMaterialThatIsInTheScene)
{
    const COrvelBasicGeneralMaterial fresh = Red(0.25, "paint");
    const COrvelBasicGeneralMaterial old = Red(0.75, "rust");
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

TEST_F(KeyFrameScene, HidesAndShowsNodes)
{
    COrvelSceneNode* const node = COrvelSceneNode::Create(&document, "wheel");
    COrvelSceneNode* const parent = COrvelSceneNode::Create(&document, "car");
    parent->AddChild(node);
    const COrvelPtr<HideShow> data(HideShow::CreateHideShowKeyFrameData(node->ID(), true));
    data->ApplyToEntity();
    data->ApplyToEntity();
    EXPECT_TRUE(node->IsHidden());
    EXPECT_FALSE(parent->IsHidden());
    data->SetHidden(false);
    data->ApplyToEntity();
    EXPECT_FALSE(node->IsHidden());
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
