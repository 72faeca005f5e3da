#include "animation/COrvelKeyFrameDataMaterial.h"

#include "animation/COrvelKeyFrameManager.h"
#include "animation/OwnedCopy.h"
#include "platform/core/COrvelMaterial.h"

namespace Orvel
{

COrvelKeyFrameDataMaterial::COrvelKeyFrameDataMaterial(const COrvelID& id, const COrvelBasicMaterial* newMaterial)
    : COrvelKeyFrameData(id)
    , material(OwnedCopy(newMaterial))
{}

COrvelKeyFrameDataMaterial::COrvelKeyFrameDataMaterial(const COrvelKeyFrameDataMaterial& other)
    : COrvelKeyFrameData(other)
    , material(OwnedCopy(other.material.get()))
{}

COrvelKeyFrameDataMaterial* COrvelKeyFrameDataMaterial::CreateMaterialKeyFrameData(const COrvelID& id,
                                                                                   const COrvelBasicMaterial* material,
                                                                                   const COrvelID& target)
{
    auto* const data = new COrvelKeyFrameDataMaterial(id, material);
    data->SetTargetEntityID(target);
    return data;
}

void COrvelKeyFrameDataMaterial::RestoreEntity(COrvelKeyFrameManager* manager)
{
    auto* const target = dynamic_cast<COrvelMaterial*>(TargetEntityID().Entity());
    if (!target)
        return;
    target->LoadBasicMaterial(material.get(), false);

    // Each data of an entity may have a material of its own; only one of them is in the scene.
    COrvelKeyFrameManager* const timeline = manager ? manager : COrvelKeyFrameManager::Instance();
    const COrvelID shownID = timeline->TargetIDAtCurrentFrame(AnimatedEntityID());
    auto* const shown = dynamic_cast<COrvelMaterial*>(shownID.Entity());
    if (!shown || shown == target)
        return;
    shown->ReplaceWith(target);
    shown->MarkAsHidden(true);
    target->MarkAsHidden(false);
}

void COrvelKeyFrameDataMaterial::ApplyToEntity()
{
    RestoreEntity(nullptr);
}

COrvelKeyFrameDataMaterial* COrvelKeyFrameDataMaterial::Clone(bool atWorkingFrame) const
{
    if (!atWorkingFrame)
        return new COrvelKeyFrameDataMaterial(*this);
    auto* const snapshot = new COrvelKeyFrameDataMaterial(COrvelID(), material.get());
    MakeSnapshot(*snapshot);
    return snapshot;
}

} // namespace Orvel
