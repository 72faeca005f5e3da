#include "animation/COrvelKeyFrameDataLight.h"

#include "animation/OwnedCopy.h"
#include "platform/core/COrvelLight.h"

namespace Orvel
{

COrvelKeyFrameDataLight::COrvelKeyFrameDataLight(const COrvelID& id, const COrvelBasicLight* newLight)
    : COrvelKeyFrameData(id)
    , light(OwnedCopy(newLight))
{}

COrvelKeyFrameDataLight::COrvelKeyFrameDataLight(const COrvelKeyFrameDataLight& other)
    : COrvelKeyFrameData(other)
    , light(OwnedCopy(other.light.get()))
{}

COrvelKeyFrameDataLight* COrvelKeyFrameDataLight::CreateLightKeyFrameData(const COrvelID& id,
                                                                          const COrvelBasicLight* light,
                                                                          const COrvelID& target)
{
    auto* const data = new COrvelKeyFrameDataLight(id, light);
    data->SetTargetEntityID(target);
    return data;
}

void COrvelKeyFrameDataLight::RestoreEntity(COrvelKeyFrameManager*)
{
    if (auto* const target = dynamic_cast<COrvelLight*>(TargetEntityID().Entity()))
        target->LoadBasicLight(light.get(), false);
}

void COrvelKeyFrameDataLight::ApplyToEntity()
{
    RestoreEntity(nullptr);
}

COrvelKeyFrameDataLight* COrvelKeyFrameDataLight::Clone(bool atWorkingFrame) const
{
    if (!atWorkingFrame)
        return new COrvelKeyFrameDataLight(*this);
    auto* const snapshot = new COrvelKeyFrameDataLight(COrvelID(), light.get());
    MakeSnapshot(*snapshot);
    return snapshot;
}

bool COrvelKeyFrameDataLight::IsApplicable() const
{
    const auto* const target = dynamic_cast<const COrvelLight*>(TargetEntityID().Entity());
    return target && target->NumberOfUndeletedLightSourcesReferencingThisLight() > 0;
}

} // namespace Orvel
