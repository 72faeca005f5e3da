#include "animation/CameraInterpolation.h"
#include "animation/TransformInterpolation.h"
#include "platform/core/COrvelMaterial.h"
#include "platform/core/COrvelSceneNode.h"
#include "tests/animation/KeyFrameFixture.h"

#include <algorithm>
#include <climits>
#include <random>
#include <vector>

namespace Orvel
{
namespace
{

class KeyFrameEvaluation : public KeyFrames
{
protected:
    /// In the blended place of the fixture's transform.
    COrvelMatrix PlaceAt(int frame) { return StateAt<Plain>(id, frame)->Matrix(); }
};

TEST_F(KeyFrameEvaluation, ShowsADataInsideAndHoldsItOutside)
{
    EXPECT_EQ(manager->KeyFrameDataAtFrame(id, 0), nullptr);
    const COrvelPtr<Plain> stored = StorePlain(10, 20, Shift(2, 3, 5));
    EXPECT_EQ(manager->KeyFrameDataAtFrame(NewTransform(), 15), nullptr);
    EXPECT_EQ(manager->KeyFrameDataAtFrame(COrvelID(), 15), nullptr);
    struct Case
    {
        int frame, start, end, working;
    };
    const Case cases[] = {{15, 15, 15, 15}, {10, 10, 10, 10}, {20, 20, 20, 20},      {5, 10, 20, 10},
                          {-3, 10, 20, 10}, {21, 10, 20, 20}, {INT_MIN, 10, 20, 10}, {INT_MAX, 10, 20, 20}};
    for (const Case& asked : cases) {
        SCOPED_TRACE(asked.frame);
        const auto state = StateAt<Plain>(id, asked.frame);
        EXPECT_NE(state, stored);
        EXPECT_EQ(state->ReferenceCount(), 1);
        EXPECT_EQ(FrameRange(state->StartFrame(), state->EndFrame()), FrameRange(asked.start, asked.end));
        EXPECT_EQ(state->WorkingFrame(), asked.working);
        EXPECT_EQ(state->Matrix(), Shift(2, 3, 5));
        EXPECT_EQ(stored->WorkingFrame(), asked.working) << "evaluation moves it";
    }
    EXPECT_EQ(stored->ReferenceCount(), 2);
}

TEST_F(KeyFrameEvaluation, BlendsAboutThePivotOfTheDataStoredLater)
{
    // Half a turn about a pivot leaves the pivot where it is.
    const COrvelPtr<Plain> second = StorePlain(10, 10, Shift(4, 0, 0) * Turn(2, 0, 0, 1) * Shift(-4, 0, 0));
    const COrvelPtr<Plain> first = StorePlain(0, 0);
    first->SetPivot({4, 0, 0});
    second->SetPivot({0, 0, 9});
    for (const double scale : {1.0, 2.0}) {
        transform->SetUniformizationMatrix(COrvelMatrix::CreateScalling({scale, scale, scale}));
        EXPECT_EQ(StateAt<Plain>(id, 5)->Pivot(), first->Pivot()) << "the first one was stored last";
        EXPECT_TRUE(PlaceAt(5).IsNear(Shift(4, 0, 0) * Turn(1, 0, 0, 1) * Shift(-4, 0, 0), 1e-12)) << scale;
    }
    second->SetSequenceNumber(first->SequenceNumber());
    EXPECT_EQ(StateAt<Plain>(id, 5)->Pivot(), COrvel3DVertex(0, 0, 9)) << "the next one wins a tie";
}

TEST_F(KeyFrameEvaluation, TakesTheEndsOfMovingDataAsTheyFaceTheGap)
{
    const auto table =
        Store(0, 9, Table::CreateRoundTableKeyFrameData(id, {}, {}, 0, 9, 90, {}, {0, 0, 1}, 0, 9, 0, 0));
    const COrvelMatrix quarter = Turn(1.5707963267948966, 0, 0, 1);
    StorePlain(19, 30, Shift(0, 2, 8) * quarter);
    table->SetWorkingFrame(3);
    EXPECT_TRUE(PlaceAt(14).IsNear(Shift(0, 1, 4) * quarter, 1e-12)) << "the table has reached 90 degrees";
}

TEST_F(KeyFrameEvaluation, BlendsCamerasAsTransformsUnlessBothAskForMore)
{
    const auto first = Store(0, 0, Camera::CreateCameraKeyFrameData(id, Shift(1, 2, 3), 20, 10, true, 4, 1));
    const auto second = Store(10, 10, Camera::CreateCameraKeyFrameData(id, Shift(11, 2, 3), 60, 30, true, 8, 3));
    second->SetPivot({7, 11, 13});
    first->SetUsesCameraBlend(true);
    const auto state = StateAt<Camera>(id, 5);
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
    const auto first = Store(0, 3, Grid::CreateSphericalCameraKeyFrameData(id, LevelCamera()));
    const auto second = Store(13, 20, Grid::CreateSphericalCameraKeyFrameData(id, {}));
    const auto state = StateAt<Grid>(id, 8);
    EXPECT_DOUBLE_EQ(state->FieldOfView(), 36);
    EXPECT_TRUE(state->IsOrbit());
    EXPECT_TRUE(state->Matrix().IsNear(
        InterpolateCameras(first->BasicCamera(), second->BasicCamera(), 0.5).ComputeLocalToWorld(), 1e-12));
}

TEST_F(KeyFrameEvaluation, BlendsMaterialsTowardsTheMaterialOfTheNearerName)
{
    const COrvelID paint = COrvelMaterial::Create(&document, "paint")->ID();
    const COrvelID rust = COrvelMaterial::Create(&document, "rust")->ID();
    COrvelBasicGeneralMaterial looks;
    looks.SetName("fresh");
    looks.SetDiffuseColor({0, 0.25, 0.5, 1});
    Store(0, 0, Material::CreateMaterialKeyFrameData(paint, &looks, paint));
    looks.SetName("worn");
    looks.SetDiffuseColor({1, 0.25, 0.5, 1});
    const auto second = Store(10, 10, Material::CreateMaterialKeyFrameData(paint, &looks, rust));
    for (int frame = 1; frame < 10; ++frame) {
        SCOPED_TRACE(frame);
        const auto state = StateAt<Material>(paint, frame);
        EXPECT_EQ(state->TargetEntityID(), frame < 5 ? paint : rust);
        EXPECT_EQ(state->AnimatedEntityID(), paint);
        EXPECT_NEAR(state->Material()->ApproximateToGeneralMaterial()->DiffuseColor().R(), frame / 10.0, 1e-12);
        EXPECT_EQ(state->WorkingFrame(), frame);
        EXPECT_EQ(state->Material()->ReferenceCount(), 0) << "owned by the data alone";
    }
    second->SetMaterial(nullptr);
    EXPECT_EQ(StateAt<Material>(paint, 3)->Material(), nullptr);
}

TEST_F(KeyFrameEvaluation, BlendsLightsOfOneKindAndElseAnswersTheStoredOne)
{
    COrvelBasicPointLight lamp;
    lamp.SetIntensity(1);
    const COrvelID target = NewTransform();
    const auto first = Store(0, 4, Light::CreateLightKeyFrameData(id, &lamp, target));
    lamp.SetIntensity(3);
    const auto second = Store(14, 20, Light::CreateLightKeyFrameData(id, &lamp, id));
    const auto state = StateAt<Light>(id, 9);
    EXPECT_DOUBLE_EQ(state->Light()->Intensity(), 2);
    EXPECT_EQ(state->TargetEntityID(), target);
    EXPECT_EQ(state->WorkingFrame(), 9);

    second->SetLight(std::make_unique<COrvelBasicDirectionalLight>());
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

    const COrvelID mesh = NewTransform();
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
    const COrvelID face = NewTransform();
    Store(0, 0, Morph::CreateMorphKeyFrameData(id, face, 1));
    const auto second = Store(10, 10, Morph::CreateMorphKeyFrameData(id, id, 3));
    EXPECT_DOUBLE_EQ(StateAt<Morph>(id, 5)->Weight(), 2);
    EXPECT_EQ(StateAt<Morph>(id, 5)->ObjectID(), face);
    second->SetEaseIn(2);
    EXPECT_DOUBLE_EQ(StateAt<Morph>(id, 5)->Weight(), 2.4);
}

/// Every pair of types that may stand around a gap.
class KeyFrameGaps : public KeyFrameEvaluation
{
protected:
    /// In the order of their type numbers.
    static std::vector<DataPtr> OfEveryType(const COrvelID& entity)
    {
        const COrvelBasicGeneralMaterial looks;
        const COrvelBasicPointLight lamp;
        const COrvelBasicVectorsTable shape;
        return {Plain::CreateTransformKeyFrameData(entity, {}),
                Material::CreateMaterialKeyFrameData(entity, &looks, entity),
                Camera::CreateCameraKeyFrameData(entity, {}),
                Vertices::CreateVerticesKeyFrameData(entity, &shape),
                Light::CreateLightKeyFrameData(entity, &lamp, entity),
                Table::CreateRoundTableKeyFrameData(entity, {}, {}, 0, 1, 90, {}, {0, 0, 1}, 0, 1, 0, 0),
                Follower::CreateBSplineFollowerKeyFrameData(entity),
                Grid::CreateSphericalCameraKeyFrameData(entity, {}),
                HideShow::CreateHideShowKeyFrameData(entity, true),
                Morph::CreateMorphKeyFrameData(entity, entity, 1)};
    }

    /// Type of the state between two data of these types; -1 for none.
    int TypeBetween(const COrvelID& entity, int first, int second)
    {
        manager->ClearKeyFrameData();
        Store(0, 3, OfEveryType(entity)[static_cast<std::size_t>(first)].Get());
        Store(10, 13, OfEveryType(entity)[static_cast<std::size_t>(second)].Get());
        const DataPtr state = manager->KeyFrameDataAtFrame(entity, 7);
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

// --- against a slow, obvious reference

/// One entity's data in a row.
struct Piece
{
    int start = 0;
    int end = 0;
    COrvelPtr<Plain> data;
};

COrvelMatrix ReferenceAt(const std::vector<Piece>& pieces, int frame)
{
    const Piece* previous = nullptr;
    const Piece* next = nullptr;
    for (const Piece& piece : pieces) {
        if (piece.start <= frame && frame <= piece.end)
            return piece.data->StoredMatrix();
        if (piece.end < frame && (!previous || piece.end > previous->end))
            previous = &piece;
        if (piece.start > frame && (!next || piece.start < next->start))
            next = &piece;
    }
    if (!previous || !next)
        return (previous ? previous : next)->data->StoredMatrix();
    const Plain& from = *previous->data;
    const Plain& to = *next->data;
    return InterpolateTransformGap(from.StoredMatrix(), to.StoredMatrix(),
                                   (from.SequenceNumber() > to.SequenceNumber() ? from : to).Pivot(), frame,
                                   previous->end, next->start, from.EaseOut(), to.EaseIn());
}

TEST_F(KeyFrameEvaluation, AgreesWithTheReferenceAtEveryFrameOfRandomTimelines)
{
    std::mt19937 random(20250117);
    const auto number = [&](int low, int high) { return std::uniform_int_distribution<int>(low, high)(random); };
    const auto real = [&] { return std::uniform_real_distribution<double>(-5, 5)(random); };
    std::vector<Piece> pieces;
    for (int edit = 0; edit < 60; ++edit) {
        Piece piece;
        piece.start = number(0, 90);
        piece.end = piece.start + number(0, 9);
        const COrvelMatrix place = Shift(real(), real(), real()) * Turn(real(), real(), real(), real());
        piece.data = PlainOver(piece.start, piece.end, place);
        piece.data->SetPivot({real(), real(), real()});
        piece.data->SetEaseIn(number(0, 3));
        piece.data->SetEaseOut(number(0, 3));
        DataPtr stored = piece.data;
        manager->AddKeyFrameData(stored, true);
        std::erase_if(pieces, [&](const Piece& other) { return other.start <= piece.end && piece.start <= other.end; });
        pieces.push_back(piece);
        for (int frame = -2; frame < 105; ++frame)
            ASSERT_TRUE(PlaceAt(frame).IsNear(ReferenceAt(pieces, frame), 1e-12)) << edit << ", frame " << frame;
    }
}

} // namespace
} // namespace Orvel
