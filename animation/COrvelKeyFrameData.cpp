#include "animation/COrvelKeyFrameData.h"

#include "animation/COrvelKeyFrameManager.h"

#include <algorithm>
#include <cstdint>
#include <limits>

namespace Orvel
{

namespace
{

constexpr int LastInt = std::numeric_limits<int>::max();
constexpr int FirstInt = std::numeric_limits<int>::min();

// Frames are computed in 64 bits: what does not fit an int is stored as its nearest end.
int StoredFrame(std::int64_t frame)
{
    return static_cast<int>(std::clamp<std::int64_t>(frame, FirstInt, LastInt));
}

int ScaledFrame(int frame, double factor)
{
    // An infinite factor leaves frame 0 where it is; their product would be no number.
    return frame == 0 ? 0 : static_cast<int>(std::clamp<double>(frame * factor, FirstInt, LastInt));
}

/// Raised first, then lowered: of an inverted range the end counts.
template <class Number>
Number KeptInside(Number frame, Number start, Number end)
{
    return std::min(std::max(frame, start), end);
}

} // namespace

COrvelKeyFrameData::COrvelKeyFrameData(const COrvelID& id)
{
    SetEntityID(id);
}

COrvelKeyFrameData::KeepEntityIDs::KeepEntityIDs(COrvelKeyFrameData& newData)
    : data(newData)
    , target(newData.targetEntityID)
    , animated(newData.animatedEntityID)
{}

COrvelKeyFrameData::KeepEntityIDs::~KeepEntityIDs()
{
    data.targetEntityID = target;
    data.animatedEntityID = animated;
}

COrvelKeyFrameData* COrvelKeyFrameData::MakeCopy()
{
    return Clone(false);
}

int COrvelKeyFrameData::SetStartFrame(int frame, bool pushEnd)
{
    frame = std::max(frame, 0);
    if (pushEnd)
        endFrame = std::max(endFrame, frame);
    startFrame = frame;
    workingFrame = std::max(workingFrame, frame);
    return frame;
}

int COrvelKeyFrameData::SetEndFrame(int frame, bool pushStart)
{
    frame = std::max(frame, 0);
    if (pushStart)
        startFrame = std::min(startFrame, frame);
    endFrame = frame;
    workingFrame = std::min(workingFrame, frame);
    return frame;
}

void COrvelKeyFrameData::ShiftFrames(int delta)
{
    const std::int64_t distance = delta;
    if (startFrame + distance < 0)
        return;
    startFrame = StoredFrame(startFrame + distance);
    endFrame = StoredFrame(std::max<std::int64_t>(0, endFrame + distance));
    constantSpeedStartFrame = StoredFrame(constantSpeedStartFrame + distance);
    constantSpeedEndFrame = StoredFrame(constantSpeedEndFrame + distance);
    // The old working frame is brought into the new range before it moves.
    workingFrame = StoredFrame(KeptInside(workingFrame, startFrame, endFrame) + distance);
}

void COrvelKeyFrameData::ScaleFrames(double factor)
{
    if (!(factor >= 1.0))
        return;
    workingFrame = ScaledFrame(workingFrame, factor);
    startFrame = std::max(0, ScaledFrame(startFrame, factor));
    workingFrame = std::max(workingFrame, startFrame);
    endFrame = std::max(0, ScaledFrame(endFrame, factor));
    workingFrame = std::min(workingFrame, endFrame);
    constantSpeedStartFrame = ScaledFrame(constantSpeedStartFrame, factor);
    constantSpeedEndFrame = ScaledFrame(constantSpeedEndFrame, factor);
}

void COrvelKeyFrameData::Refresh() {}

bool COrvelKeyFrameData::IsApplicable() const
{
    return true;
}

void COrvelKeyFrameData::SetFrame(int frame)
{
    startFrame = frame;
    endFrame = frame;
    constantSpeedStartFrame = frame;
    constantSpeedEndFrame = frame;
    workingFrame = frame;
}

void COrvelKeyFrameData::SetConstantSpeedStartFrame(int frame)
{
    frame = std::max(frame, 0);
    constantSpeedEndFrame = std::max(constantSpeedEndFrame, frame);
    constantSpeedStartFrame = frame;
    KeepConstantSpeedInRange();
}

void COrvelKeyFrameData::SetConstantSpeedEndFrame(int frame)
{
    frame = std::max(frame, 0);
    constantSpeedStartFrame = std::min(constantSpeedStartFrame, frame);
    constantSpeedEndFrame = frame;
    KeepConstantSpeedInRange();
}

void COrvelKeyFrameData::SetTiming(int start, int end, int newConstantSpeedStart, int newConstantSpeedEnd,
                                   int newEaseIn, int newEaseOut)
{
    SetStartFrame(start, true);
    SetEndFrame(end, true);
    SetConstantSpeedStartFrame(newConstantSpeedStart);
    SetConstantSpeedEndFrame(newConstantSpeedEnd);
    SetEaseIn(newEaseIn);
    SetEaseOut(newEaseOut);
}

void COrvelKeyFrameData::KeepConstantSpeedInRange()
{
    constantSpeedStartFrame = KeptInside(constantSpeedStartFrame, startFrame, endFrame);
    constantSpeedEndFrame = KeptInside(constantSpeedEndFrame, startFrame, endFrame);
}

void COrvelKeyFrameData::SetEntityID(const COrvelID& id)
{
    animatedEntityID = COrvelKeyFrameManager::Instance()->ResolveAlias(id);
    targetEntityID = animatedEntityID;
}

void COrvelKeyFrameData::MakeSnapshot(COrvelKeyFrameData& snapshot) const
{
    const int frame = EffectiveFrame();
    snapshot.SetStartFrame(frame, false);
    snapshot.SetEndFrame(frame, false);
    snapshot.SetWorkingFrame(frame);
    snapshot.SetConstantSpeedStartFrame(frame);
    snapshot.SetConstantSpeedEndFrame(frame);
    // Both ids as they are: an alias that was made meanwhile leads elsewhere.
    snapshot.targetEntityID = targetEntityID;
    snapshot.animatedEntityID = animatedEntityID;
}

MotionStep COrvelKeyFrameData::Motion() const
{
    const std::int64_t start = startFrame;
    const std::int64_t last = std::clamp<std::int64_t>(endFrame - start, 0, LastInt - 1);
    const auto step = [&](int frame) { return static_cast<int>(std::clamp<std::int64_t>(frame - start, 0, last)); };
    const int constantSpeedStart = step(constantSpeedStartFrame);
    return {static_cast<int>(last + 1), step(EffectiveFrame()), constantSpeedStart,
            std::max(constantSpeedStart, step(constantSpeedEndFrame))};
}

void* COrvelKeyFrameData::IntMember(int& member, const char* label, int& type, COrvelString& name)
{
    type = eDataMemberType_Int;
    name = label;
    return &member;
}

void* COrvelKeyFrameData::DoubleMember(double& member, const char* label, int& type, COrvelString& name)
{
    type = eDataMemberType_Double;
    name = label;
    return &member;
}

void* COrvelKeyFrameData::BoolMember(bool& member, const char* label, int& type, COrvelString& name)
{
    type = eDataMemberType_Bool;
    name = label;
    return &member;
}

void* COrvelKeyFrameData::FrameMember(int position, int& type, COrvelString& name, bool apply)
{
    switch (position) {
    case 0:
        if (apply)
            SetStartFrame(startFrame, true);
        return IntMember(startFrame, "Start Frame", type, name);
    case 1:
        if (apply)
            SetEndFrame(endFrame, true);
        return IntMember(endFrame, "End Frame", type, name);
    case 2:
        if (apply)
            SetConstantSpeedStartFrame(constantSpeedStartFrame);
        return IntMember(constantSpeedStartFrame, "Constant Speed Start Frame", type, name);
    case 3:
        if (apply)
            SetConstantSpeedEndFrame(constantSpeedEndFrame);
        return IntMember(constantSpeedEndFrame, "Constant Speed End Frame", type, name);
    default:
        return nullptr;
    }
}

void* COrvelKeyFrameData::WorkingFrameMember(int& type, COrvelString& name, bool apply)
{
    if (apply) {
        const int frame = SetStartFrame(startFrame, false);
        SetEndFrame(frame, false);
        SetWorkingFrame(frame);
    }
    return IntMember(startFrame, "Working Frame", type, name);
}

} // namespace Orvel
