#pragma once

#include "animation/COrvelKeyFrameData.h"

namespace Orvel
{

/// Whether a COrvelSceneNode is hidden.
class ORVEL_ANIMATION_API COrvelKeyFrameDataHideShow : public COrvelKeyFrameData
{
public:
    /// @return new, reference count 0.
    static COrvelKeyFrameDataHideShow* CreateHideShowKeyFrameData(const COrvelID& id, bool hidden);

    /// Nothing in archives older than this kind of data.
    bool ArchiveReadWrite(COrvelArchiveBase& archive) override;
    int Type() const override { return eKeyFrameDataType_HideShow; }
    void RestoreEntity(COrvelKeyFrameManager*) override {}
    void ApplyToEntity() override;
    COrvelKeyFrameDataHideShow* Clone(bool atWorkingFrame) const override;

    bool IsHidden() const { return hidden; }
    void SetHidden(bool newHidden) { hidden = newHidden; }

protected:
    COrvelKeyFrameDataHideShow(const COrvelID& id, bool newHidden);
    COrvelKeyFrameDataHideShow(const COrvelKeyFrameDataHideShow&) = default;
    COrvelKeyFrameDataHideShow& operator=(const COrvelKeyFrameDataHideShow&) = default;

private:
    bool hidden = false;
};

} // namespace Orvel
