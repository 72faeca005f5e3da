#pragma once

#include "animation/COrvelKeyFrameData.h"
#include "platform/core/COrvel3DVertex.h"
#include "platform/core/COrvelMatrix.h"

namespace Orvel
{

/// A placement of a COrvelTransform; base of everything that moves one.
class ORVEL_ANIMATION_API COrvelKeyFrameDataTransform : public COrvelKeyFrameData
{
public:
    /// @return new, reference count 0.
    static COrvelKeyFrameDataTransform* CreateTransformKeyFrameData(const COrvelID& id, const COrvelMatrix& newMatrix);

    /// Takes over everything but the two entity ids from a copy of this class; anything else is ignored.
    void RestoreFromCopy(COrvelObject* copy) override;
    /// One member, "Working Frame".
    void* DataMemberSearch(int index, int& type, COrvelString& name, bool apply) override;

    bool ReadFromArchive(COrvelArchiveBase& archive) override;
    bool WriteIntoArchive(COrvelArchiveBase& archive) override;
    int Type() const override { return eKeyFrameDataType_Transform; }
    void RestoreEntity(COrvelKeyFrameManager*) override {}
    /// Loads Matrix() into the animated transform.
    void ApplyToEntity() override;
    /// The snapshot holds Matrix() and has its pivot at the origin.
    COrvelKeyFrameDataTransform* Clone(bool atWorkingFrame) const override;

    /// Multiplies the stored matrix.
    ///
    /// @param preMultiply true: m * stored; false: stored * m.
    virtual void MultiplyMatrix(const COrvelMatrix& m, bool preMultiply);
    /// The transform at EffectiveFrame().
    virtual COrvelMatrix Matrix() const;
    /// Of a data that follows a path: applies `m`, given in coordinates of the path, to what is carried. Others do
    /// nothing.
    virtual void RebaseOnPath(const COrvelMatrix& m);

    const COrvelMatrix& StoredMatrix() const { return matrix; }
    void SetStoredMatrix(const COrvelMatrix& newMatrix) { matrix = newMatrix; }
    /// The point, in the coordinates that the transform maps from, about which gaps are blended.
    const COrvel3DVertex& Pivot() const { return pivot; }
    void SetPivot(const COrvel3DVertex& point) { pivot = point; }

protected:
    COrvelKeyFrameDataTransform(const COrvelID& id, const COrvelMatrix& newMatrix);
    COrvelKeyFrameDataTransform(const COrvelKeyFrameDataTransform&) = default;
    COrvelKeyFrameDataTransform& operator=(const COrvelKeyFrameDataTransform&) = default;

    /// A plain transform data of the frame EffectiveFrame(), reference count 0.
    COrvelKeyFrameDataTransform* CreateSnapshot(const COrvelMatrix& shown) const;

private:
    COrvelMatrix matrix;
    COrvel3DVertex pivot;
};

} // namespace Orvel
