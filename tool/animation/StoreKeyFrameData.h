#pragma once

#include "animation/COrvelKeyFrameData.h"
#include "animation/COrvelKeyFrameManager.h"
#include "platform/core/COrvelPtr.h"
#include "tool/animation/KeyReduction.h"

namespace Orvel::Animate
{

/// Gives a new data its range and stores it.
inline void StoreKeyFrameData(COrvelPtr<COrvelKeyFrameData> data, const KeyRange& range, COrvelKeyFrameManager& manager)
{
    data->SetFrame(range.start);
    data->SetEndFrame(range.end, true);
    manager.AddKeyFrameData(data, true);
}

} // namespace Orvel::Animate
