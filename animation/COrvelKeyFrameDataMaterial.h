#pragma once

#include "animation/COrvelKeyFrameData.h"
#include "platform/core/COrvelBasicMaterial.h"

#include <memory>
#include <utility>

namespace Orvel
{

/// The looks that a COrvelMaterial has.
class ORVEL_ANIMATION_API COrvelKeyFrameDataMaterial : public COrvelKeyFrameData
{
public:
    /// @param material copied; null for none.
    /// @param target   the material entity that receives the looks.
    /// @return new, reference count 0.
    static COrvelKeyFrameDataMaterial*
    CreateMaterialKeyFrameData(const COrvelID& id, const COrvelBasicMaterial* material, const COrvelID& target);

    bool ReadFromArchive(COrvelArchiveBase& archive) override;
    bool WriteIntoArchive(COrvelArchiveBase& archive) override;
    int Type() const override { return eKeyFrameDataType_Material; }
    /// Loads the looks into the target material. When the entity's material at the manager's current frame is another
    /// one, the target takes its place in every object that shows it: the other is marked as hidden, the target is not.
    void RestoreEntity(COrvelKeyFrameManager* manager) override;
    /// RestoreEntity with the process-wide manager.
    void ApplyToEntity() override;
    COrvelKeyFrameDataMaterial* Clone(bool atWorkingFrame) const override;

    /// Owned by this data; null when it holds none.
    COrvelBasicMaterial* Material() const { return material.get(); }
    /// Takes the material over; null for none.
    void SetMaterial(std::unique_ptr<COrvelBasicMaterial> newMaterial) { material = std::move(newMaterial); }

protected:
    COrvelKeyFrameDataMaterial(const COrvelID& id, const COrvelBasicMaterial* newMaterial);
    COrvelKeyFrameDataMaterial(const COrvelKeyFrameDataMaterial& other);

private:
    std::unique_ptr<COrvelBasicMaterial> material;
};

} // namespace Orvel
