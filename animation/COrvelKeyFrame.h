#pragma once

#include "animation/COrvelKeyFrameData.h"
#include "animation/Export.h"
#include "platform/core/COrvelID.h"
#include "platform/core/COrvelPtr.h"

#include <map>

namespace Orvel
{

class COrvelArchiveBase;

/// A snapshot of a scene: one key frame data for each entity, to be applied at once.
class ORVEL_ANIMATION_API COrvelKeyFrame final
{
public:
    COrvelKeyFrame() = default;
    /// Copies every data.
    COrvelKeyFrame(const COrvelKeyFrame& other);
    COrvelKeyFrame(COrvelKeyFrame&&) noexcept = default;
    COrvelKeyFrame& operator=(COrvelKeyFrame other) noexcept;

    // The order of these two is relied on.

    virtual bool WriteIntoArchive(COrvelArchiveBase& archive);
    /// Replaces everything by what is read.
    ///
    /// @return false when something could not be read; what was read before is there.
    virtual bool ReadFromArchive(COrvelArchiveBase& archive);

    /// Stores a copy of `data` under its animated entity. Null does nothing.
    ///
    /// @return what that entity had before; null when nothing.
    COrvelPtr<COrvelKeyFrameData> SetKeyFrameData(const COrvelPtr<COrvelKeyFrameData>& data);
    /// By animated entity.
    const std::map<COrvelID, COrvelPtr<COrvelKeyFrameData>>& KeyFrameData() const { return keyFrameData; }
    /// Writes every data into the scene, in id order.
    void Apply() const;

private:
    std::map<COrvelID, COrvelPtr<COrvelKeyFrameData>> keyFrameData;
};

} // namespace Orvel
