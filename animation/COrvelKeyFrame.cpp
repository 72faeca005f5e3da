#include "animation/COrvelKeyFrame.h"

#include <utility>

namespace Orvel
{

COrvelKeyFrame::COrvelKeyFrame(const COrvelKeyFrame& other)
{
    for (const auto& [id, data] : other.keyFrameData)
        keyFrameData.emplace_hint(keyFrameData.end(), id, data->Clone(false));
}

COrvelKeyFrame& COrvelKeyFrame::operator=(COrvelKeyFrame other) noexcept
{
    keyFrameData.swap(other.keyFrameData);
    return *this;
}

COrvelPtr<COrvelKeyFrameData> COrvelKeyFrame::SetKeyFrameData(const COrvelPtr<COrvelKeyFrameData>& data)
{
    if (!data)
        return nullptr;
    COrvelPtr<COrvelKeyFrameData> copy = data->Clone(false);
    return std::exchange(keyFrameData[data->AnimatedEntityID()], std::move(copy));
}

void COrvelKeyFrame::Apply() const
{
    for (const auto& [id, data] : keyFrameData)
        data->ApplyToEntity();
}

} // namespace Orvel
