#include "animation/COrvelKeyFrameDataMorph.h"

#include "platform/core/COrvel3DObject.h"
#include "platform/core/COrvelGeometry.h"
#include "platform/core/COrvelMorphingTable.h"

namespace Orvel
{

COrvelKeyFrameDataMorph::COrvelKeyFrameDataMorph(const COrvelID& id, const COrvelID& object, double newWeight)
    : COrvelKeyFrameData(id)
    , objectID(object)
    , weight(newWeight)
{}

COrvelKeyFrameDataMorph* COrvelKeyFrameDataMorph::CreateMorphKeyFrameData(const COrvelID& id, const COrvelID& object,
                                                                          double weight)
{
    return new COrvelKeyFrameDataMorph(id, object, weight);
}

void COrvelKeyFrameDataMorph::ApplyToEntity()
{
    auto* const object = dynamic_cast<COrvel3DObject*>(objectID.Entity());
    const auto* const geometry = dynamic_cast<const COrvelGeometry*>(AnimatedEntityID().Entity());
    if (object && geometry && object->HasMorphingGeometry())
        object->MorphingTable()->SetMorphWeight(geometry, weight);
}

COrvelKeyFrameDataMorph* COrvelKeyFrameDataMorph::Clone(bool atWorkingFrame) const
{
    if (!atWorkingFrame)
        return new COrvelKeyFrameDataMorph(*this);
    auto* const snapshot = new COrvelKeyFrameDataMorph(COrvelID(), objectID, weight);
    MakeSnapshot(*snapshot);
    return snapshot;
}

} // namespace Orvel
