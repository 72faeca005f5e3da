#include "animation/COrvelKeyFrameDataHideShow.h"
#include "animation/COrvelKeyFrameDataLight.h"
#include "animation/COrvelKeyFrameDataMaterial.h"
#include "animation/COrvelKeyFrameDataMorph.h"
#include "animation/COrvelKeyFrameDataTransformBSplineFollower.h"
#include "animation/COrvelKeyFrameDataTransformRoundTable.h"
#include "animation/COrvelKeyFrameDataTransformSphericalCamera.h"
#include "animation/COrvelKeyFrameDataVertices.h"
#include "animation/CameraInterpolation.h"
#include "animation/KeyFrameRange.h"
#include "animation/TransformInterpolation.h"
#include "platform/core/COrvelBasicGeneralMaterial.h"
#include "platform/core/COrvelBasicPointLight.h"
#include "platform/core/COrvelMaterial.h"
#include "platform/core/COrvelSceneNode.h"
#include "tests/animation/KeyFrameFixture.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <climits>
#include <functional>
#include <random>
#include <vector>

namespace Orvel
{

namespace
{

using Transform = COrvelKeyFrameDataTransform;
using Camera = COrvelKeyFrameDataTransformCamera;
using SphericalCamera = COrvelKeyFrameDataTransformSphericalCamera;
using RoundTable = COrvelKeyFrameDataTransformRoundTable;
using Follower = COrvelKeyFrameDataTransformBSplineFollower;
using Material = COrvelKeyFrameDataMaterial;
using Light = COrvelKeyFrameDataLight;
using Morph = COrvelKeyFrameDataMorph;
using HideShow = COrvelKeyFrameDataHideShow;
using Vertices = COrvelKeyFrameDataVertices;

class KeyFrameEvaluation : public KeyFrames
{
protected:
    COrvelPtr<Transform> StorePlain(int start, int end, const COrvelMatrix& matrix)
    {
        return Store(start, end, Transform::CreateTransformKeyFrameData(id, matrix));
    }
};

TEST_F(KeyFrameEvaluation, KnowsNothingOfAnUnknownEntity)
{
    EXPECT_EQ(manager->KeyFrameDataAtFrame(id, 0), nullptr);
    StorePlain(0, 5, {});
    EXPECT_EQ(manager->KeyFrameDataAtFrame(COrvelTransform::Create(&document)->ID(), 0), nullptr);
    EXPECT_EQ(manager->KeyFrameDataAtFrame(COrvelID(), 0), nullptr);
}

TEST_F(KeyFrameEvaluation, ShowsADataInsideAndHoldsItOutside)
{
    const COrvelPtr<Transform> stored = StorePlain(10, 20, Shift(2, 3, 5));
    const auto inside = StateAt<Transform>(id, 15);
    EXPECT_EQ(inside->StartFrame(), 15);
    EXPECT_EQ(inside->EndFrame(), 15);
    EXPECT_EQ(inside->WorkingFrame(), 15);
    EXPECT_EQ(inside->Matrix(), Shift(2, 3, 5));
    EXPECT_EQ(inside->ReferenceCount(), 1);
    EXPECT_NE(inside, stored);
    EXPECT_EQ(stored->WorkingFrame(), 15) << "evaluation moves it";

    for (const int frame : {5, -3, INT_MIN}) {
        const auto before = StateAt<Transform>(id, frame);
        EXPECT_NE(before, stored);
        EXPECT_EQ(before->WorkingFrame(), 10) << frame;
        EXPECT_EQ(before->EndFrame(), 20) << frame;
    }
    for (const int frame : {21, 30, INT_MAX}) {
        const auto behind = StateAt<Transform>(id, frame);
        EXPECT_EQ(behind->WorkingFrame(), 20) << frame;
        EXPECT_EQ(behind->StartFrame(), 10) << frame;
        EXPECT_EQ(behind->SequenceNumber(), 1);
    }
    EXPECT_EQ(stored->ReferenceCount(), 2);
}

TEST_F(KeyFrameEvaluation, ShowsADataOfOneFrameThere)
{
    StorePlain(10, 10, Shift(2, 3, 5));
    const auto state = StateAt<Transform>(id, 10);
    EXPECT_EQ(state->StartFrame(), 10);
    EXPECT_EQ(state->WorkingFrame(), 10);
}

TEST_F(KeyFrameEvaluation, BlendsTransformsHalfWayAndEndsExactly)
{
    StorePlain(0, 0, Shift(2, 3, 5));
    StorePlain(10, 10, Shift(12, 13, 15));
    const auto half = StateAt<Transform>(id, 5);
    EXPECT_TRUE(half->Matrix().IsNear(Shift(7, 8, 10), 1e-12));
    EXPECT_EQ(half->WorkingFrame(), 5);
    EXPECT_EQ(half->AnimatedEntityID(), id);
    EXPECT_EQ(half->ReferenceCount(), 1);
    EXPECT_EQ(StateAt<Transform>(id, 10)->Matrix(), Shift(12, 13, 15));
}

TEST_F(KeyFrameEvaluation, BlendsTransformsWithTheModesThatFaceTheGap)
{
    const COrvelPtr<Transform> first = StorePlain(0, 0, {});
    const COrvelPtr<Transform> second = StorePlain(10, 10, Shift(1, 0, 0));
    first->SetEaseIn(3);
    second->SetEaseOut(3);
    EXPECT_NEAR(StateAt<Transform>(id, 1)->Matrix().M(0, 3), 0.1, 1e-12) << "modes that face away count for nothing";
    second->SetEaseIn(2);
    EXPECT_NEAR(StateAt<Transform>(id, 1)->Matrix().M(0, 3), 0.1, 1e-12) << "1 - 45 / 50";
    EXPECT_NEAR(StateAt<Transform>(id, 5)->Matrix().M(0, 3), 0.7, 1e-12) << "1 - 15 / 50";
    first->SetEaseOut(1);
    EXPECT_NEAR(StateAt<Transform>(id, 5)->Matrix().M(0, 3), 0.6, 1e-12);
    EXPECT_NEAR(StateAt<Transform>(id, 6)->Matrix().M(0, 3), 0.6, 1e-12);
}

TEST_F(KeyFrameEvaluation, BlendsAboutThePivotOfTheDataStoredLater)
{
    // Half a turn about a pivot leaves the pivot where it is.
    const COrvel3DVertex pivot(4, 0, 0);
    const COrvelMatrix turned = Shift(4, 0, 0) * COrvelMatrix().DefineByRotation(2.0, 0, 0, 1) * Shift(-4, 0, 0);
    const COrvelPtr<Transform> second = StorePlain(10, 10, turned);
    const COrvelPtr<Transform> first = StorePlain(0, 0, {});
    first->SetPivot(pivot);
    second->SetPivot({0, 0, 9});
    for (const double scale : {1.0, 2.0}) {
        transform->SetUniformizationMatrix(COrvelMatrix::CreateScalling({scale, scale, scale}));
        const auto state = StateAt<Transform>(id, 5);
        EXPECT_EQ(state->Pivot(), pivot) << "the first one was stored last";
        EXPECT_LT((state->Matrix() * pivot - pivot).Length(), 1e-12) << scale;
        EXPECT_TRUE(state->Matrix().IsNear(
            Shift(4, 0, 0) * COrvelMatrix().DefineByRotation(1.0, 0, 0, 1) * Shift(-4, 0, 0), 1e-12));
    }
    second->SetSequenceNumber(first->SequenceNumber());
    EXPECT_EQ(StateAt<Transform>(id, 5)->Pivot(), COrvel3DVertex(0, 0, 9)) << "the next one wins a tie";
}

TEST_F(KeyFrameEvaluation, TakesTheEndsOfMovingDataAsTheyFaceTheGap)
{
    const COrvelPtr<RoundTable> table = Store(
        0, 9, RoundTable::CreateRoundTableKeyFrameData(id, Shift(2, 0, 0), {}, 0, 9, 90, {}, {0, 0, 1}, 0, 9, 0, 0));
    EXPECT_EQ(table->Type(), eKeyFrameDataType_TransformRoundTable);
    StorePlain(19, 30, Shift(0, 2, 8) * COrvelMatrix().DefineByRotation(1.5707963267948966, 0, 0, 1));
    table->SetWorkingFrame(3);
    EXPECT_TRUE(StateAt<Transform>(id, 14)->Matrix().IsNear(
        Shift(0, 2, 4) * COrvelMatrix().DefineByRotation(1.5707963267948966, 0, 0, 1), 1e-12))
        << "the table has reached 90 degrees";
    EXPECT_EQ(table->WorkingFrame(), 9);
}

TEST_F(KeyFrameEvaluation, BlendsCamerasAsTransformsUnlessBothAskForMore)
{
    const COrvelPtr<Camera> first =
        Store(0, 0, Camera::CreateCameraKeyFrameData(id, Shift(1, 2, 3), 20, 10, true, 4, 1));
    const COrvelPtr<Camera> second =
        Store(10, 10, Camera::CreateCameraKeyFrameData(id, Shift(11, 2, 3), 60, 30, true, 8, 3));
    second->SetPivot({7, 11, 13});
    first->SetUsesCameraBlend(true);
    const auto state = StateAt<Camera>(id, 5);
    EXPECT_EQ(state->Type(), eKeyFrameDataType_TransformCamera);
    EXPECT_TRUE(state->Matrix().IsNear(Shift(6, 2, 3), 1e-12));
    EXPECT_DOUBLE_EQ(state->FieldOfView(), 40);
    EXPECT_DOUBLE_EQ(state->DistanceToTarget(), 20);
    EXPECT_DOUBLE_EQ(state->DOFFStop(), 2);
    EXPECT_DOUBLE_EQ(state->DOFDistance(), 6);
    EXPECT_FALSE(state->DOFIsEnabled());
    EXPECT_EQ(state->Pivot(), COrvel3DVertex(7, 11, 13));
    EXPECT_EQ(state->WorkingFrame(), 5);

    second->SetUsesCameraBlend(true);
    second->SetEaseIn(2);
    const COrvelBasicCamera wanted = InterpolateCameraGap(first->BasicCamera(), second->BasicCamera(), 5, 0, 10, 0, 2);
    const auto blended = StateAt<Camera>(id, 5);
    EXPECT_TRUE(blended->Matrix().IsNear(wanted.ComputeLocalToWorld(), 1e-12));
    EXPECT_DOUBLE_EQ(blended->FieldOfView(), 48) << "7 tenths of the way";
    EXPECT_DOUBLE_EQ(blended->DistanceToTarget(), 24);
    EXPECT_TRUE(blended->DOFIsEnabled());
    EXPECT_FALSE(blended->IsOrbit());
}

TEST_F(KeyFrameEvaluation, BlendsGridsAsCameras)
{
    COrvelBasicCamera eye;
    eye.SetFOV(20);
    const auto first = Store(0, 3, SphericalCamera::CreateSphericalCameraKeyFrameData(id, eye));
    eye.SetFOV(60);
    const auto second = Store(13, 20, SphericalCamera::CreateSphericalCameraKeyFrameData(id, eye));
    const auto state = StateAt<SphericalCamera>(id, 8);
    EXPECT_DOUBLE_EQ(state->FieldOfView(), 40);
    EXPECT_TRUE(state->IsOrbit());
    EXPECT_TRUE(state->Matrix().IsNear(
        InterpolateCameras(first->BasicCamera(), second->BasicCamera(), 0.5).ComputeLocalToWorld(), 1e-12));
}

TEST_F(KeyFrameEvaluation, BlendsMaterialsTowardsTheMaterialOfTheNearerName)
{
    const COrvelMaterial* const paint = COrvelMaterial::Create(&document, "paint");
    const COrvelMaterial* const rust = COrvelMaterial::Create(&document, "rust");
    COrvelBasicGeneralMaterial looks;
    looks.SetName("fresh");
    looks.SetDiffuseColor({0, 0.25, 0.5, 1});
    Store(0, 0, Material::CreateMaterialKeyFrameData(paint->ID(), &looks, paint->ID()));
    looks.SetName("worn");
    looks.SetDiffuseColor({1, 0.25, 0.5, 1});
    const auto second = Store(10, 10, Material::CreateMaterialKeyFrameData(paint->ID(), &looks, rust->ID()));
    for (int frame = 1; frame < 10; ++frame) {
        const auto state = StateAt<Material>(paint->ID(), frame);
        EXPECT_EQ(state->TargetEntityID(), frame < 5 ? paint->ID() : rust->ID()) << frame;
        EXPECT_EQ(state->AnimatedEntityID(), paint->ID());
        EXPECT_NEAR(state->Material()->ApproximateToGeneralMaterial()->DiffuseColor().R(), frame / 10.0, 1e-12);
        EXPECT_EQ(state->WorkingFrame(), frame);
        EXPECT_EQ(state->Material()->ReferenceCount(), 0) << "owned by the data alone";
    }
    second->SetMaterial(nullptr);
    EXPECT_EQ(StateAt<Material>(paint->ID(), 3)->Material(), nullptr);
}

TEST_F(KeyFrameEvaluation, BlendsLightsOfOneKindAndElseAnswersTheStoredOne)
{
    COrvelBasicPointLight lamp;
    lamp.SetIntensity(1);
    const COrvelID target = COrvelTransform::Create(&document)->ID();
    const auto first = Store(0, 4, Light::CreateLightKeyFrameData(id, &lamp, target));
    lamp.SetIntensity(3);
    const auto second = Store(14, 20, Light::CreateLightKeyFrameData(id, &lamp, id));
    const auto state = StateAt<Light>(id, 9);
    EXPECT_DOUBLE_EQ(state->Light()->Intensity(), 2);
    EXPECT_EQ(state->TargetEntityID(), target);
    EXPECT_EQ(state->WorkingFrame(), 9);

    const COrvelBasicDirectionalLight sun;
    second->SetLight(std::unique_ptr<COrvelBasicLight>(sun.Clone()));
    EXPECT_EQ(manager->KeyFrameDataAtFrame(id, 9), first);
    EXPECT_EQ(first->WorkingFrame(), 4);
    EXPECT_EQ(first->ReferenceCount(), 2) << "here and in the manager";
    second->SetLight(nullptr);
    EXPECT_EQ(manager->KeyFrameDataAtFrame(id, 9), first);
    first->SetLight(nullptr);
    EXPECT_EQ(manager->KeyFrameDataAtFrame(id, 9), first);
}

TEST_F(KeyFrameEvaluation, HoldsShapesAndVisibilityAcrossAGap)
{
    Store(0, 3, HideShow::CreateHideShowKeyFrameData(id, true));
    Store(10, 12, HideShow::CreateHideShowKeyFrameData(id, false));
    const auto hidden = StateAt<HideShow>(id, 9);
    EXPECT_TRUE(hidden->IsHidden());
    EXPECT_EQ(hidden->WorkingFrame(), 9);
    EXPECT_EQ(hidden->EndFrame(), 3);
    EXPECT_FALSE(StateAt<HideShow>(id, 10)->IsHidden());

    const COrvelID mesh = COrvelTransform::Create(&document)->ID();
    const COrvelBasicVectorsTable round({COrvel3DVertex(1, 2, 3)});
    const COrvelBasicVectorsTable flat({COrvel3DVertex(7, 11, 13)});
    Store(0, 0, Vertices::CreateVerticesKeyFrameData(mesh, &round));
    const auto second = Store(10, 10, Vertices::CreateVerticesKeyFrameData(mesh, &flat));
    const auto state = StateAt<Vertices>(mesh, 9);
    ASSERT_TRUE(state->TableAtWorkingFrame());
    EXPECT_EQ(*state->TableAtWorkingFrame(), round);
    second->RemoveTables();
    EXPECT_EQ(StateAt<Vertices>(mesh, 9)->TableAtWorkingFrame(), nullptr) << "there is nothing to go to";
}

TEST_F(KeyFrameEvaluation, BlendsMorphWeightsWithEasing)
{
    const COrvelID face = COrvelTransform::Create(&document)->ID();
    Store(0, 0, Morph::CreateMorphKeyFrameData(id, face, 1.0));
    const auto second = Store(10, 10, Morph::CreateMorphKeyFrameData(id, id, 3.0));
    EXPECT_DOUBLE_EQ(StateAt<Morph>(id, 5)->Weight(), 2.0);
    EXPECT_EQ(StateAt<Morph>(id, 5)->ObjectID(), face);
    second->SetEaseIn(2);
    EXPECT_DOUBLE_EQ(StateAt<Morph>(id, 5)->Weight(), 2.4);
}

/// Every pair of types that may stand around a gap.
class KeyFrameGaps : public KeyFrameEvaluation
{
protected:
    COrvelKeyFrameData* Make(const COrvelID& entity, int type)
    {
        const COrvelBasicGeneralMaterial looks;
        const COrvelBasicPointLight lamp;
        const COrvelBasicVectorsTable shape;
        switch (type) {
        case eKeyFrameDataType_Transform:
            return Transform::CreateTransformKeyFrameData(entity, {});
        case eKeyFrameDataType_Material:
            return Material::CreateMaterialKeyFrameData(entity, &looks, entity);
        case eKeyFrameDataType_TransformCamera:
            return Camera::CreateCameraKeyFrameData(entity, {});
        case eKeyFrameDataType_Vertices:
            return Vertices::CreateVerticesKeyFrameData(entity, &shape);
        case eKeyFrameDataType_Light:
            return Light::CreateLightKeyFrameData(entity, &lamp, entity);
        case eKeyFrameDataType_TransformRoundTable:
            return RoundTable::CreateRoundTableKeyFrameData(entity, {}, {}, 0, 1, 90, {}, {0, 0, 1}, 0, 1, 0, 0);
        case eKeyFrameDataType_TransformBSplineFollower:
            return Follower::CreateBSplineFollowerKeyFrameData(entity);
        case eKeyFrameDataType_TransformSphericalCamera:
            return SphericalCamera::CreateSphericalCameraKeyFrameData(entity, {});
        case eKeyFrameDataType_HideShow:
            return HideShow::CreateHideShowKeyFrameData(entity, true);
        default:
            return Morph::CreateMorphKeyFrameData(entity, entity, 1.0);
        }
    }

    /// Type of the state between two data of these types; -1 for none.
    int TypeBetween(const COrvelID& entity, int first, int second)
    {
        manager = new COrvelKeyFrameManager;
        COrvelKeyFrameManager::SetInstance(manager);
        Store(0, 3, Make(entity, first));
        Store(10, 13, Make(entity, second));
        const COrvelPtr<COrvelKeyFrameData> state = manager->KeyFrameDataAtFrame(entity, 7);
        return state ? state->Type() : -1;
    }
};

TEST_F(KeyFrameGaps, HaveABlendForMatchingTypesOnly)
{
    const std::vector<int> transforms{0, 2, 5, 6, 7};
    const auto isTransform = [&](int type) { return std::ranges::count(transforms, type) != 0; };
    for (int first = 0; first < 10; ++first) {
        for (int second = 0; second < 10; ++second) {
            int wanted = first == second ? first : -1;
            if (first == 0 || first == 5 || first == 6)
                wanted = isTransform(second) ? 0 : -1;
            if (first == 2 && second == 7)
                wanted = 2;
            if (first == 8)
                wanted = 8;
            EXPECT_EQ(TypeBetween(id, first, second), wanted) << first << " to " << second;
        }
    }
}

TEST_F(KeyFrameGaps, BlendTransformsOfTransformEntitiesOnly)
{
    const COrvelID node = COrvelSceneNode::Create(&document)->ID();
    for (const int type : {0, 2, 5, 6})
        EXPECT_EQ(TypeBetween(node, type, type), -1) << type;
    EXPECT_EQ(TypeBetween(node, 7, 7), 7) << "grids are blended as cameras";
    document.Destroy(transform);
    EXPECT_EQ(TypeBetween(id, 0, 0), -1);
}

TEST_F(KeyFrameGaps, KeepEqualStates)
{
    const COrvelMatrix matrix = Shift(2, 3, 5) * COrvelMatrix().DefineByRotation(0.7, 1, 2, 3) *
                                COrvelMatrix::CreateScalling({2, 3, 5}) * COrvelMatrix::CreateShearingZX(0.5);
    StorePlain(0, 3, matrix)->SetEaseOut(1);
    StorePlain(10, 13, matrix)->SetPivot({7, 11, 13});
    for (int frame = 4; frame < 10; ++frame)
        EXPECT_TRUE(StateAt<Transform>(id, frame)->Matrix().IsNear(matrix, 1e-11)) << frame;
}

TEST_F(KeyFrameGaps, RunBackwardsAsTheyRunForwards)
{
    const COrvelMatrix first = Shift(2, 3, 5) * COrvelMatrix().DefineByRotation(0.7, 1, 2, 3);
    const COrvelMatrix second = Shift(-4, 1, 9) * COrvelMatrix().DefineByRotation(2.1, 3, -1, 2);
    StorePlain(0, 0, first);
    StorePlain(10, 10, second);
    const COrvelPtr<COrvelKeyFrameManager> reversed(new COrvelKeyFrameManager);
    for (const auto& [frame, matrix] : {std::pair(0, second), std::pair(10, first)}) {
        COrvelPtr<COrvelKeyFrameData> data = Over(frame, frame, Transform::CreateTransformKeyFrameData(id, matrix));
        reversed->AddKeyFrameData(data, true);
    }
    for (int frame = 1; frame < 10; ++frame) {
        const auto back = reversed->KeyFrameDataAtFrame(id, 10 - frame);
        EXPECT_TRUE(
            dynamic_cast<Transform*>(back.Get())->Matrix().IsNear(StateAt<Transform>(id, frame)->Matrix(), 1e-9))
            << frame;
    }
}

// --- against a slow, obvious reference

/// One entity's data in a row.
struct Piece
{
    int start = 0;
    int end = 0;
    COrvelMatrix matrix;
    COrvel3DVertex pivot;
    int easeIn = 0;
    int easeOut = 0;
    int number = 0;
};

COrvelMatrix ReferenceAt(const std::vector<Piece>& pieces, int frame)
{
    const Piece* previous = nullptr;
    const Piece* next = nullptr;
    for (const Piece& piece : pieces) {
        if (piece.start <= frame && frame <= piece.end)
            return piece.matrix;
        if (piece.end < frame && (!previous || piece.end > previous->end))
            previous = &piece;
        if (piece.start > frame && (!next || piece.start < next->start))
            next = &piece;
    }
    if (!previous)
        return next->matrix;
    if (!next)
        return previous->matrix;
    const Piece& later = previous->number > next->number ? *previous : *next;
    return InterpolateTransformGap(previous->matrix, next->matrix, later.pivot, frame, previous->end, next->start,
                                   previous->easeOut, next->easeIn);
}

class RandomTimelines : public KeyFrameEvaluation
{
protected:
    int Number(int low, int high) { return std::uniform_int_distribution<int>(low, high)(random); }
    double Real() { return std::uniform_real_distribution<double>(-5.0, 5.0)(random); }

    Piece AnyPiece()
    {
        Piece piece;
        piece.start = Number(0, 90);
        piece.end = piece.start + Number(0, 9);
        piece.matrix = Shift(Real(), Real(), Real()) * COrvelMatrix().DefineByRotation(Real(), Real(), Real(), Real());
        piece.pivot = {Real(), Real(), Real()};
        piece.easeIn = Number(0, 3);
        piece.easeOut = Number(0, 3);
        return piece;
    }

    /// Stores a piece and takes those out of the reference that share a frame with it.
    void Add(std::vector<Piece>& pieces, Piece piece)
    {
        const auto data = Over(piece.start, piece.end, Transform::CreateTransformKeyFrameData(id, piece.matrix));
        data->SetPivot(piece.pivot);
        data->SetEaseIn(piece.easeIn);
        data->SetEaseOut(piece.easeOut);
        COrvelPtr<COrvelKeyFrameData> stored = data;
        const auto displaced = manager->AddKeyFrameData(stored, true);
        const auto sharesAFrame = [&](const Piece& other) {
            return other.start <= piece.end && piece.start <= other.end;
        };
        EXPECT_EQ(displaced.size(), std::erase_if(pieces, sharesAFrame));
        piece.number = data->SequenceNumber();
        pieces.push_back(piece);
    }

    std::mt19937 random{20250117};
};

TEST_F(RandomTimelines, AreEvaluatedAsTheReferenceAtEveryFrame)
{
    std::vector<Piece> pieces;
    for (int edit = 0; edit < 60; ++edit) {
        Add(pieces, AnyPiece());
        for (int frame = -2; frame < 105; ++frame)
            ASSERT_TRUE(StateAt<Transform>(id, frame)->Matrix().IsNear(ReferenceAt(pieces, frame), 1e-12))
                << "edit " << edit << ", frame " << frame;
    }
}

TEST_F(RandomTimelines, AreSearchedAsByAScan)
{
    KeyFrameDataByFrame data;
    EXPECT_TRUE(FindKeyFrameRange(data, 0, 10).IsEmpty());
    for (int start = Number(0, 3); start < 120; start += Number(1, 9)) {
        const int end = start + Number(0, 4);
        data[start] = Over(start, end, Transform::CreateTransformKeyFrameData(id, {}));
        start = end;
    }
    ASSERT_GT(data.size(), 10u);
    for (int first = -3; first < 130; ++first) {
        for (int last = first - 2; last < first + 25; ++last) {
            std::vector<int> wanted;
            for (const auto& [start, stored] : data)
                if (first <= last && start <= last && first <= stored->EndFrame())
                    wanted.push_back(start);
            const KeyFrameRange range = FindKeyFrameRange(data, first, last);
            std::vector<int> got;
            for (auto found = range.begin; found != range.end; ++found)
                got.push_back(found->first);
            ASSERT_EQ(got, wanted) << first << " to " << last;
        }
    }
}

} // namespace

} // namespace Orvel
