#pragma once

#include "animation/COrvelKeyFrameData.h"
#include "platform/core/COrvelBasicLight.h"

#include <memory>
#include <utility>

namespace Orvel
{

/// The values that a COrvelLight has.
class ORVEL_ANIMATION_API COrvelKeyFrameDataLight : public COrvelKeyFrameData
{
public:
    /// @param light  copied; null for none.
    /// @param target the light entity that receives the values.
    /// @return new, reference count 0.
    static COrvelKeyFrameDataLight* CreateLightKeyFrameData(const COrvelID& id, const COrvelBasicLight* light,
                                                            const COrvelID& target);

    bool ReadFromArchive(COrvelArchiveBase& archive) override;
    bool WriteIntoArchive(COrvelArchiveBase& archive) override;
    int Type() const override { return eKeyFrameDataType_Light; }
    /// Loads the values into the target light.
    void RestoreEntity(COrvelKeyFrameManager* manager) override;
    void ApplyToEntity() override;
    COrvelKeyFrameDataLight* Clone(bool atWorkingFrame) const override;
    /// True while a light source that is not deleted shines with the target light.
    bool IsApplicable() const override;

    /// Owned by this data; null when it holds none.
    COrvelBasicLight* Light() const { return light.get(); }
    /// Takes the light over; null for none.
    void SetLight(std::unique_ptr<COrvelBasicLight> newLight) { light = std::move(newLight); }

protected:
    COrvelKeyFrameDataLight(const COrvelID& id, const COrvelBasicLight* newLight);
    COrvelKeyFrameDataLight(const COrvelKeyFrameDataLight& other);

private:
    std::unique_ptr<COrvelBasicLight> light;
};

} // namespace Orvel
