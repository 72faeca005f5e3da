#pragma once

#include "animation/COrvelKeyFrameDataTransform.h"

namespace Orvel
{

class COrvelLinePath;
class COrvelSceneNode;

/// An object that is carried along a COrvelLinePath.
class ORVEL_ANIMATION_API COrvelKeyFrameDataTransformBSplineFollower : public COrvelKeyFrameDataTransform
{
public:
    /// A data that follows nothing yet.
    ///
    /// @return new, reference count 0.
    static COrvelKeyFrameDataTransformBSplineFollower* CreateBSplineFollowerKeyFrameData(const COrvelID& id);

    void RestoreFromCopy(COrvelObject* copy) override;
    /// Range and frames of constant speed.
    void* DataMemberSearch(int index, int& type, COrvelString& name, bool apply) override;
    bool ReadFromArchive(COrvelArchiveBase& archive) override;
    bool WriteIntoArchive(COrvelArchiveBase& archive) override;
    int Type() const override { return eKeyFrameDataType_TransformBSplineFollower; }
    /// The snapshot is a plain transform data whose target is the animated entity.
    COrvelKeyFrameDataTransform* Clone(bool atWorkingFrame) const override;
    /// True when a path is named.
    bool IsApplicable() const override;

    /// Changes base and offset. true: m * base and offset * inverse(m), which keeps their product; false: base * m and
    /// inverse(m) * offset.
    void MultiplyMatrix(const COrvelMatrix& m, bool preMultiply) override;
    /// The place on the path at EffectiveFrame(), with path and followed node where the process-wide manager has them
    /// at that frame. The base matrix when there is no path or no node to follow, and for a range of one frame.
    ///
    /// The path must not move with this data (COrvelKeyFrameManager::IsNodeDependentOn): the evaluation would not end.
    COrvelMatrix Matrix() const override;
    /// Applies `m` at the path's place at the process-wide manager's current frame; nothing without a path.
    void RebaseOnPath(const COrvelMatrix& m) override;

    const COrvelMatrix& BaseMatrix() const { return base; }
    void SetBaseMatrix(const COrvelMatrix& newMatrix) { base = newMatrix; }
    const COrvelMatrix& OffsetMatrix() const { return offset; }
    void SetOffsetMatrix(const COrvelMatrix& newMatrix) { offset = newMatrix; }
    /// World matrix of the path for which base and offset were made.
    const COrvelMatrix& ReferenceMatrix() const { return reference; }
    void SetReferenceMatrix(const COrvelMatrix& newMatrix) { reference = newMatrix; }
    const COrvelID& PathID() const { return pathID; }
    void SetPathID(const COrvelID& id) { pathID = id; }
    /// The scene node whose parents carry the object.
    const COrvelID& FollowedNodeID() const { return followedNodeID; }
    void SetFollowedNodeID(const COrvelID& id) { followedNodeID = id; }
    /// The path entity, deleted ones included; null when there is none.
    COrvelLinePath* Path() const;
    /// The followed node, deleted ones included; null when there is none.
    COrvelSceneNode* FollowedNode() const;

protected:
    explicit COrvelKeyFrameDataTransformBSplineFollower(const COrvelID& id);
    COrvelKeyFrameDataTransformBSplineFollower(const COrvelKeyFrameDataTransformBSplineFollower&) = default;
    COrvelKeyFrameDataTransformBSplineFollower& operator=(const COrvelKeyFrameDataTransformBSplineFollower&) = default;

private:
    bool ReadPathID(COrvelArchiveBase& archive);

    COrvelMatrix base;
    COrvelMatrix offset;
    COrvelMatrix reference;
    COrvelID pathID;
    COrvelID followedNodeID;
};

} // namespace Orvel
