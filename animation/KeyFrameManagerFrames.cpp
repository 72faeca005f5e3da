// Frame ranges: of lists of key frame data, of a timeline, and what shows at their ends.

#include "animation/COrvelKeyFrameDataHideShow.h"
#include "animation/COrvelKeyFrameDataLight.h"
#include "animation/COrvelKeyFrameDataMaterial.h"
#include "animation/COrvelKeyFrameDataMorph.h"
#include "animation/COrvelKeyFrameDataTransform.h"
#include "animation/COrvelKeyFrameDataVertices.h"
#include "animation/COrvelKeyFrameManager.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>
#include <utility>

namespace Orvel
{

namespace
{

/// What two states may differ by and still loop without a visible jump.
constexpr double seamTolerance = 0.001;

/// Frames reach from one end of int to the other: differences are taken in 64 bits and stored as the nearest int.
int FrameDifference(int frame, int subtracted)
{
    const std::int64_t difference = std::int64_t{frame} - subtracted;
    return static_cast<int>(
        std::clamp<std::int64_t>(difference, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
}

/// Smallest start and largest end; none for a list without data.
std::optional<FrameRange> Extent(const KeyFrameDataList& list)
{
    std::optional<FrameRange> extent;
    for (const COrvelPtr<COrvelKeyFrameData>& data : list) {
        if (!data)
            continue;
        const FrameRange range(data->StartFrame(), data->EndFrame());
        if (!extent)
            extent = range;
        extent->first = std::min(extent->first, range.first);
        extent->second = std::max(extent->second, range.second);
    }
    return extent;
}

bool AreNear(const COrvelMatrix& left, const COrvelMatrix& right)
{
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 4; ++column) {
            if (!(std::abs(left.M(row, column) - right.M(row, column)) <= seamTolerance))
                return false;
        }
    }
    return true;
}

bool ShowTheSame(const COrvelKeyFrameDataTransform& left, const COrvelKeyFrameDataTransform& right)
{
    return AreNear(left.Matrix(), right.Matrix());
}

bool ShowTheSame(const COrvelKeyFrameDataHideShow& left, const COrvelKeyFrameDataHideShow& right)
{
    return left.IsHidden() == right.IsHidden();
}

// Materials, lights and tables are compared by identity: only one and the same object is sure to look the same.

bool ShowTheSame(const COrvelKeyFrameDataMaterial& left, const COrvelKeyFrameDataMaterial& right)
{
    return left.Material() == right.Material();
}

bool ShowTheSame(const COrvelKeyFrameDataLight& left, const COrvelKeyFrameDataLight& right)
{
    return left.Light() == right.Light();
}

bool ShowTheSame(const COrvelKeyFrameDataVertices& left, const COrvelKeyFrameDataVertices& right)
{
    return left.TableAtWorkingFrame() == right.TableAtWorkingFrame();
}

bool ShowTheSame(const COrvelKeyFrameDataMorph& left, const COrvelKeyFrameDataMorph& right)
{
    return left.ObjectID() == right.ObjectID() && std::abs(left.Weight() - right.Weight()) <= seamTolerance;
}

/// True when both data are of the class and show the same state.
template <class Data>
bool MatchAs(const COrvelKeyFrameData& left, const COrvelKeyFrameData& right)
{
    const auto* const leftData = dynamic_cast<const Data*>(&left);
    const auto* const rightData = dynamic_cast<const Data*>(&right);
    return leftData && rightData && ShowTheSame(*leftData, *rightData);
}

bool Match(const COrvelPtr<COrvelKeyFrameData>& left, const COrvelPtr<COrvelKeyFrameData>& right)
{
    return MatchAs<COrvelKeyFrameDataTransform>(*left, *right) || MatchAs<COrvelKeyFrameDataHideShow>(*left, *right) ||
           MatchAs<COrvelKeyFrameDataMaterial>(*left, *right) || MatchAs<COrvelKeyFrameDataLight>(*left, *right) ||
           MatchAs<COrvelKeyFrameDataVertices>(*left, *right) || MatchAs<COrvelKeyFrameDataMorph>(*left, *right);
}

} // namespace

int COrvelKeyFrameManager::ComputeLastFrame() const
{
    int last = 0;
    for (const auto& [id, dataByFrame] : keyFrameDataByEntity) {
        for (const auto& [start, data] : dataByFrame)
            last = std::max(last, data->EndFrame());
    }
    return last;
}

void COrvelKeyFrameManager::FrameSpan(const KeyFrameDataList& list, FrameRange& span)
{
    if (span.first == 0 || span.second == 0)
        span = Extent(list).value_or(span);
}

int COrvelKeyFrameManager::FrameLength(const KeyFrameDataList& list)
{
    const FrameRange extent = Extent(list).value_or(FrameRange());
    return FrameDifference(extent.second, extent.first);
}

bool COrvelKeyFrameManager::IsSeamlessLoop() const
{
    KeyFrameDataList all;
    ListAllKeyFrameData(all);
    FrameRange span;
    FrameSpan(all, span);
    KeyFrameDataList atStart;
    ListKeyFrameDataAtFrame(span.first, atStart);
    KeyFrameDataList atEnd;
    ListKeyFrameDataAtFrame(span.second, atEnd);
    return std::equal(atStart.begin(), atStart.end(), atEnd.begin(), atEnd.end(), Match);
}

void COrvelKeyFrameManager::MoveToFrameZero(KeyFrameDataList& list)
{
    const auto first = std::find_if(list.begin(), list.end(), [](const auto& data) { return data != nullptr; });
    if (first == list.end())
        return;
    const int origin = (*first)->StartFrame();
    for (const COrvelPtr<COrvelKeyFrameData>& data : list) {
        if (!data)
            continue;
        // Read before the range moves: the setters keep the frames of constant speed inside it.
        const int constantSpeedStart = data->ConstantSpeedStartFrame();
        const int constantSpeedEnd = data->ConstantSpeedEndFrame();
        data->SetStartFrame(FrameDifference(data->StartFrame(), origin), false);
        data->SetEndFrame(FrameDifference(data->EndFrame(), origin), false);
        data->SetConstantSpeedStartFrame(FrameDifference(constantSpeedStart, origin));
        data->SetConstantSpeedEndFrame(FrameDifference(constantSpeedEnd, origin));
        data->SetWorkingFrame(data->StartFrame());
    }
}

void COrvelKeyFrameManager::BakeTimeline()
{
    COrvelKeyFrameManager* const timeline = Instance();
    std::vector<COrvelID> ids;
    timeline->ListAnimatedIDs(ids);
    for (std::int64_t step = firstFrame; step <= lastFrame; ++step) {
        const int frame = static_cast<int>(step);
        for (const COrvelID& id : ids) {
            COrvelPtr<COrvelKeyFrameData> baked = timeline->KeyFrameDataAtFrame(id, frame);
            if (!baked)
                continue;
            // A light that cannot be blended is answered by the stored data itself, which the record must not change.
            if (baked->ReferenceCount() > 1)
                baked = baked->Clone(false);
            // Cameras and round tables are recorded with the range over which they turn.
            if (baked->Type() != eKeyFrameDataType_TransformCamera &&
                baked->Type() != eKeyFrameDataType_TransformRoundTable)
                baked->SetFrame(frame);
            bakedKeyFrameData.push_back(std::move(baked));
        }
    }
}

int COrvelKeyFrameManager::ListBakedKeyFrameData(KeyFrameDataList& list) const
{
    list.insert(list.end(), bakedKeyFrameData.begin(), bakedKeyFrameData.end());
    return static_cast<int>(bakedKeyFrameData.size());
}

} // namespace Orvel
