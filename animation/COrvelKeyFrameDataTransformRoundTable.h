#pragma once

#include "animation/COrvelKeyFrameDataTransform.h"
#include "platform/core/COrvelNormal.h"

namespace Orvel
{

/// An object that turns about an axis.
class ORVEL_ANIMATION_API COrvelKeyFrameDataTransformRoundTable : public COrvelKeyFrameDataTransform
{
public:
    /// The data's pivot becomes the point of the axis in the object's own coordinates.
    ///
    /// @param reference        the object's transform at the start.
    /// @param axisFrame        to the coordinates of the axis.
    /// @param angle            degrees over the range.
    /// @param point, direction of the axis; a zero direction never turns.
    /// @return new, reference count 0.
    static COrvelKeyFrameDataTransformRoundTable*
    CreateRoundTableKeyFrameData(const COrvelID& id, const COrvelMatrix& reference, const COrvelMatrix& axisFrame,
                                 int start, int end, double angle, const COrvel3DVertex& point,
                                 const COrvel3DVertex& direction, int constantSpeedStart, int constantSpeedEnd,
                                 int easeIn, int easeOut);

    void RestoreFromCopy(COrvelObject* copy) override;
    /// Range, angle, axis ("Normal", a COrvelNormal) and frames of constant speed.
    void* DataMemberSearch(int index, int& type, COrvelString& name, bool apply) override;
    bool ReadFromArchive(COrvelArchiveBase& archive) override;
    bool WriteIntoArchive(COrvelArchiveBase& archive) override;
    int Type() const override { return eKeyFrameDataType_TransformRoundTable; }
    /// The snapshot is a plain transform data.
    COrvelKeyFrameDataTransform* Clone(bool atWorkingFrame) const override;
    COrvelMatrix Matrix() const override;

    const COrvelMatrix& AxisFrame() const { return axisFrame; }
    void SetAxisFrame(const COrvelMatrix& frame) { axisFrame = frame; }
    double AngleInDegrees() const { return angleInDegrees; }
    void SetAngleInDegrees(double angle) { angleInDegrees = angle; }
    /// The axis: a base point and a direction.
    const COrvelNormal& Normal() const { return normal; }
    void SetNormal(const COrvelNormal& axis) { normal = axis; }
    const COrvelMatrix& Reference() const { return reference; }
    void SetReference(const COrvelMatrix& newReference) { reference = newReference; }

protected:
    explicit COrvelKeyFrameDataTransformRoundTable(const COrvelID& id);
    COrvelKeyFrameDataTransformRoundTable(const COrvelKeyFrameDataTransformRoundTable&) = default;
    COrvelKeyFrameDataTransformRoundTable& operator=(const COrvelKeyFrameDataTransformRoundTable&) = default;

private:
    COrvelMatrix axisFrame;
    double angleInDegrees = 0.0;
    COrvelNormal normal;
    COrvelMatrix reference;
};

} // namespace Orvel
