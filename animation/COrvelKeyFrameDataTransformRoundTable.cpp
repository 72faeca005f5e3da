#include "animation/COrvelKeyFrameDataTransformRoundTable.h"

#include "animation/Angles.h"
#include "animation/ObjectPaths.h"

namespace Orvel
{

COrvelKeyFrameDataTransformRoundTable::COrvelKeyFrameDataTransformRoundTable(const COrvelID& id)
    : COrvelKeyFrameDataTransform(id, COrvelMatrix())
{}

COrvelKeyFrameDataTransformRoundTable* COrvelKeyFrameDataTransformRoundTable::CreateRoundTableKeyFrameData(
    const COrvelID& id, const COrvelMatrix& reference, const COrvelMatrix& axisFrame, int start, int end, double angle,
    const COrvel3DVertex& point, const COrvel3DVertex& direction, int constantSpeedStart, int constantSpeedEnd,
    int easeIn, int easeOut)
{
    auto* const data = new COrvelKeyFrameDataTransformRoundTable(id);
    data->reference = reference;
    data->axisFrame = axisFrame;
    data->angleInDegrees = angle;
    data->normal = COrvelNormal(point, direction);
    data->SetPivot((axisFrame * reference).Inverse() * point);
    data->SetTiming(start, end, constantSpeedStart, constantSpeedEnd, easeIn, easeOut);
    return data;
}

void COrvelKeyFrameDataTransformRoundTable::RestoreFromCopy(COrvelObject* copy)
{
    if (const auto* const other = dynamic_cast<const COrvelKeyFrameDataTransformRoundTable*>(copy)) {
        const KeepEntityIDs keep(*this);
        *this = *other;
    }
}

void* COrvelKeyFrameDataTransformRoundTable::DataMemberSearch(int index, int& type, COrvelString& name, bool apply)
{
    switch (index) {
    case countCommand:
        type = 6;
        return nullptr;
    case 2:
        return DoubleMember(angleInDegrees, "Angle", type, name);
    case 3:
        type = eDataMemberType_Vector;
        name = "Normal";
        return &normal;
    default:
        return FrameMember(index < 2 ? index : index - 2, type, name, apply);
    }
}

COrvelKeyFrameDataTransform* COrvelKeyFrameDataTransformRoundTable::Clone(bool atWorkingFrame) const
{
    if (!atWorkingFrame)
        return new COrvelKeyFrameDataTransformRoundTable(*this);
    return CreateSnapshot(Matrix());
}

COrvelMatrix COrvelKeyFrameDataTransformRoundTable::Matrix() const
{
    const RoundTable table{reference, axisFrame, normal.Point(), normal.Direction(), Radians(angleInDegrees)};
    return RoundTableMatrix(table, Motion());
}

} // namespace Orvel
