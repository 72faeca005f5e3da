#include "animation/COrvelKeyFrameDataTransform.h"

#include "platform/core/COrvelTransform.h"

namespace Orvel
{

COrvelKeyFrameDataTransform::COrvelKeyFrameDataTransform(const COrvelID& id, const COrvelMatrix& newMatrix)
    : COrvelKeyFrameData(id)
    , matrix(newMatrix)
{}

COrvelKeyFrameDataTransform* COrvelKeyFrameDataTransform::CreateTransformKeyFrameData(const COrvelID& id,
                                                                                      const COrvelMatrix& newMatrix)
{
    return new COrvelKeyFrameDataTransform(id, newMatrix);
}

void COrvelKeyFrameDataTransform::RestoreFromCopy(COrvelObject* copy)
{
    if (const auto* const other = dynamic_cast<const COrvelKeyFrameDataTransform*>(copy)) {
        const KeepEntityIDs keep(*this);
        *this = *other;
    }
}

void* COrvelKeyFrameDataTransform::DataMemberSearch(int index, int& type, COrvelString& name, bool apply)
{
    switch (index) {
    case countCommand:
        type = 1;
        return nullptr;
    case 0:
        return WorkingFrameMember(type, name, apply);
    default:
        return nullptr;
    }
}

void COrvelKeyFrameDataTransform::ApplyToEntity()
{
    if (auto* const transform = dynamic_cast<COrvelTransform*>(AnimatedEntityID().Entity()))
        transform->LoadMatrix(Matrix());
}

COrvelKeyFrameDataTransform* COrvelKeyFrameDataTransform::Clone(bool atWorkingFrame) const
{
    if (!atWorkingFrame)
        return new COrvelKeyFrameDataTransform(*this);
    return CreateSnapshot(Matrix());
}

COrvelKeyFrameDataTransform* COrvelKeyFrameDataTransform::CreateSnapshot(const COrvelMatrix& shown) const
{
    auto* const snapshot = new COrvelKeyFrameDataTransform(COrvelID(), shown);
    MakeSnapshot(*snapshot);
    return snapshot;
}

void COrvelKeyFrameDataTransform::MultiplyMatrix(const COrvelMatrix& m, bool preMultiply)
{
    matrix = preMultiply ? m * matrix : matrix * m;
}

COrvelMatrix COrvelKeyFrameDataTransform::Matrix() const
{
    return matrix;
}

void COrvelKeyFrameDataTransform::RebaseOnPath(const COrvelMatrix&) {}

} // namespace Orvel
