#include "animation/Angles.h"
#include "platform/core/COrvelLinePath.h"
#include "tests/animation/KeyFrameFixture.h"

namespace Orvel
{
namespace
{

using KeyFrameTable = KeyFrames;

TEST_F(KeyFrameTable, TurnsAboutItsPivotAndReachesTheAngle)
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
    const COrvelMatrix last = data->Matrix();
    data->SetTiming(10, 19, 13, 16, 0, 0);
    EXPECT_TRUE(data->Matrix().IsNear(last, 1e-12)) << "in any timing";
    data->SetNormal({});
    EXPECT_TRUE(data->Matrix().IsNear(reference, 1e-12)) << "no axis, no turn";
    data->SetFrame(10);
    EXPECT_EQ(data->Matrix(), reference);
}

/// A cart on rails from (0, 0, 0) to (9, 0, 0), carried by a lift; the cart stands in a wagon.
class KeyFrameFollower : public KeyFrames
{
protected:
    KeyFrameFollower()
    {
        Lay({{0, 0, 0}, {9, 0, 0}});
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

    void Lay(std::vector<COrvel3DVertex> points, bool closed = false)
    {
        rails->SetBasicPath(COrvelBasicPath::Polyline(std::move(points), closed));
    }

    /// The lift rises 1 a frame from frame 10 on.
    void RaiseLift()
    {
        Store(10, 10, Plain::CreateTransformKeyFrameData(liftPlace->ID(), {}));
        Store(20, 20, Plain::CreateTransformKeyFrameData(liftPlace->ID(), Shift(0, 0, 10)));
    }

    COrvelMatrix MatrixAt(int frame)
    {
        data->SetWorkingFrame(frame);
        return data->Matrix();
    }
    COrvel3DVertex PlaceAt(int frame) { return MatrixAt(frame).Translation(); }

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

TEST_F(KeyFrameFollower, TurnsWithThePathAndStopsOneStepShortOnAClosedOne)
{
    // Rails that were made elsewhere, with a corner.
    liftPlace->LoadMatrix(Shift(10, 20, 30));
    data->SetReferenceMatrix(Shift(10, 20, 30));
    data->SetBaseMatrix(Shift(10, 20, 30));
    wagon->SetLocalMatrix({});
    data->SetTiming(10, 18, 10, 18, 0, 0);
    Lay({{0, 0, 0}, {4, 0, 0}, {4, 4, 0}});
    EXPECT_TRUE(MatrixAt(10).IsNear(Shift(10, 20, 30), 1e-12));
    ExpectNear(PlaceAt(12), {12, 20, 30});
    ExpectNear(PlaceAt(16), {14, 22, 30});
    ExpectNear(MatrixAt(16).Axis(0), {0, 1, 0});
    Lay({{0, 0, 0}, {4, 0, 0}, {4, 4, 0}}, true);
    for (int step = 0; step < 9; ++step)
        ExpectNear(PlaceAt(10 + step) - COrvel3DVertex(10, 20, 30), rails->BasicPath()->Point(step / 9.0, 0));
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

} // namespace
} // namespace Orvel
