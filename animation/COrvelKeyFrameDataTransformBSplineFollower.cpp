#include "animation/COrvelKeyFrameDataTransformBSplineFollower.h"

#include "animation/COrvelKeyFrameManager.h"
#include "animation/ObjectPaths.h"
#include "platform/core/COrvelLinePath.h"
#include "platform/core/COrvelSceneNode.h"

namespace Orvel
{

COrvelKeyFrameDataTransformBSplineFollower::COrvelKeyFrameDataTransformBSplineFollower(const COrvelID& id)
    : COrvelKeyFrameDataTransform(id, COrvelMatrix())
{}

COrvelKeyFrameDataTransformBSplineFollower*
COrvelKeyFrameDataTransformBSplineFollower::CreateBSplineFollowerKeyFrameData(const COrvelID& id)
{
    return new COrvelKeyFrameDataTransformBSplineFollower(id);
}

void COrvelKeyFrameDataTransformBSplineFollower::RestoreFromCopy(COrvelObject* copy)
{
    if (const auto* const other = dynamic_cast<const COrvelKeyFrameDataTransformBSplineFollower*>(copy)) {
        const KeepEntityIDs keep(*this);
        *this = *other;
    }
}

void* COrvelKeyFrameDataTransformBSplineFollower::DataMemberSearch(int index, int& type, COrvelString& name, bool apply)
{
    if (index != countCommand)
        return FrameMember(index, type, name, apply);
    type = 4;
    return nullptr;
}

COrvelKeyFrameDataTransform* COrvelKeyFrameDataTransformBSplineFollower::Clone(bool atWorkingFrame) const
{
    if (!atWorkingFrame)
        return new COrvelKeyFrameDataTransformBSplineFollower(*this);
    COrvelKeyFrameDataTransform* const snapshot = CreateSnapshot(Matrix());
    snapshot->SetTargetEntityID(AnimatedEntityID());
    return snapshot;
}

bool COrvelKeyFrameDataTransformBSplineFollower::IsApplicable() const
{
    return !pathID.IsDefault();
}

void COrvelKeyFrameDataTransformBSplineFollower::MultiplyMatrix(const COrvelMatrix& m, bool preMultiply)
{
    // Only the first form keeps offset * base: the second moves what is carried.
    if (preMultiply) {
        base = m * base;
        offset = offset * m.Inverse();
    } else {
        base = base * m;
        offset = m.Inverse() * offset;
    }
}

COrvelMatrix COrvelKeyFrameDataTransformBSplineFollower::Matrix() const
{
    COrvelLinePath* const path = Path();
    COrvelSceneNode* const node = FollowedNode();
    const MotionStep motion = Motion();
    if (!path || path->IsDeleted() || !path->BasicPath() || !node || node->IsDeleted() || motion.frames <= 1)
        return base;
    const int frame = EffectiveFrame();
    COrvelKeyFrameManager* const manager = COrvelKeyFrameManager::Instance();
    const COrvelMatrix parentWorld = manager->WorldMatrixAtFrame(node->NodePathToRoot(false), frame);
    const COrvelMatrix pathWorld = manager->WorldMatrixAtFrame(path->NodePathToRoot(true), frame);
    return FollowerMatrix({base, offset, reference, parentWorld, pathWorld}, *path->BasicPath(), motion);
}

void COrvelKeyFrameDataTransformBSplineFollower::RebaseOnPath(const COrvelMatrix& m)
{
    COrvelLinePath* const path = Path();
    if (!path)
        return;
    COrvelKeyFrameManager* const manager = COrvelKeyFrameManager::Instance();
    const COrvelMatrix pathWorld = manager->WorldMatrixAtFrame(path->NodePathToRoot(true), manager->CurrentFrame());
    const COrvelMatrix moved = pathWorld * reference.Inverse();
    base = offset.Inverse() * moved.Inverse() * m * moved * offset * base;
}

COrvelLinePath* COrvelKeyFrameDataTransformBSplineFollower::Path() const
{
    return dynamic_cast<COrvelLinePath*>(pathID.Entity());
}

COrvelSceneNode* COrvelKeyFrameDataTransformBSplineFollower::FollowedNode() const
{
    return dynamic_cast<COrvelSceneNode*>(followedNodeID.Entity());
}

} // namespace Orvel
