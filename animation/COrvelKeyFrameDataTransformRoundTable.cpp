#include "animation/COrvelKeyFrameDataTransformRoundTable.h"

#include "animation/ObjectPaths.h"

namespace Orvel
{

namespace
{

constexpr double Pi = 3.141592653589793;

} // namespace

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
    data->SetStartFrame(start, true);
    data->SetEndFrame(end, true);
    data->SetConstantSpeedStartFrame(constantSpeedStart);
    data->SetConstantSpeedEndFrame(constantSpeedEnd);
    data->SetEaseIn(easeIn);
    data->SetEaseOut(easeOut);
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
    case 0:
        return StartFrameMember(type, name, apply);
    case 1:
        return EndFrameMember(type, name, apply);
    case 2:
        return DoubleMember(angleInDegrees, "Angle", type, name);
    case 3:
        type = eDataMemberType_Vector;
        name = "Normal";
        return &normal;
    case 4:
        return ConstantSpeedStartFrameMember(type, name, apply);
    case 5:
        return ConstantSpeedEndFrameMember(type, name, apply);
    default:
        return nullptr;
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
    const RoundTable table{reference, axisFrame, normal.Point(), normal.Direction(), angleInDegrees / 180.0 * Pi};
    return RoundTableMatrix(table, Motion());
}

} // namespace Orvel
