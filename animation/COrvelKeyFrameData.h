#pragma once

#include "animation/Export.h"
#include "animation/KeyFrameDataTypes.h"
#include "animation/MotionProfiles.h"
#include "platform/core/COrvelDataMembersManager.h"
#include "platform/core/COrvelID.h"
#include "platform/core/COrvelUUID.h"

namespace Orvel
{

class COrvelKeyFrameManager;

/// One piece of an entity's animation: covers the whole frames StartFrame() to EndFrame() and gives the entity's state
/// at any of them, the working frame.
///
/// Reference counted: whoever makes a data holds it in a COrvelPtr. The virtual functions follow those of
/// COrvelDataMembersManager; their order is relied on.
class ORVEL_ANIMATION_API COrvelKeyFrameData : public COrvelDataMembersManager
{
public:
    /// The part of the record that all data share; a subclass appends its own. Layouts of the version that was read
    /// last are understood (COrvelDocumentsContainer); the newest one is written.
    bool ReadFromArchive(COrvelArchiveBase& archive) override;
    bool WriteIntoArchive(COrvelArchiveBase& archive) override;
    /// Clone(false).
    COrvelKeyFrameData* MakeCopy() override;

    /// One of enumKeyFrameDataType.
    virtual int Type() const = 0;
    /// Writes a held material or light into the target entity; other data do nothing. A material that `manager` shows
    /// at its current frame in place of the data's own is swapped out of the scene as well.
    ///
    /// @param manager null for the process-wide one.
    virtual void RestoreEntity(COrvelKeyFrameManager* manager) = 0;
    /// Writes the state at EffectiveFrame() into the scene. Nothing when the entity is missing or of another class.
    virtual void ApplyToEntity() = 0;
    /// A copy with reference count 0, owned by the caller.
    ///
    /// @param atWorkingFrame false: everything is copied. true: the state at EffectiveFrame() as a data of that single
    ///                       frame, for the same entities; easing, sequence number and collapsing group are not taken
    ///                       along.
    virtual COrvelKeyFrameData* Clone(bool atWorkingFrame) const = 0;

    // --- range
    //
    // Frames below 0 count as 0.

    /// Raises a working frame that would lie before the range.
    ///
    /// @param pushEnd true: an end before `frame` becomes `frame` too; false: it stays.
    /// @return the frame that was stored.
    virtual int SetStartFrame(int frame, bool pushEnd);
    /// Lowers a working frame that would lie behind the range.
    ///
    /// @param pushStart true: a start behind `frame` becomes `frame` too; false: it stays.
    /// @return the frame that was stored.
    virtual int SetEndFrame(int frame, bool pushStart);
    /// Moves the range. Nothing when it would start before frame 0.
    virtual void ShiftFrames(int delta);
    /// Multiplies every frame, truncating to whole frames. Nothing for a factor below 1.
    virtual void ScaleFrames(double factor);

    /// Does nothing.
    virtual void Refresh();
    /// False for data whose subject is gone; they are left out of saved files.
    virtual bool IsApplicable() const;

    int StartFrame() const { return startFrame; }
    int EndFrame() const { return endFrame; }
    int WorkingFrame() const { return workingFrame; }
    /// Stored as given. Every evaluation by a manager sets it.
    void SetWorkingFrame(int frame) { workingFrame = frame; }
    /// The frame whose state is meant: the only one of the range, else the working frame.
    int EffectiveFrame() const { return startFrame == endFrame ? startFrame : workingFrame; }
    /// Range, working frame and frames of constant speed all become `frame`.
    void SetFrame(int frame);

    // --- timing

    /// First and last frame at constant speed of the data's own motion; before and behind them it speeds up and slows
    /// down. The setters push the other one along and keep both inside the range, so the range is set first.
    int ConstantSpeedStartFrame() const { return constantSpeedStartFrame; }
    int ConstantSpeedEndFrame() const { return constantSpeedEndFrame; }
    void SetConstantSpeedStartFrame(int frame);
    void SetConstantSpeedEndFrame(int frame);

    /// Sets the range, then the frames of constant speed inside it, then the easing modes.
    void SetTiming(int start, int end, int newConstantSpeedStart, int newConstantSpeedEnd, int newEaseIn,
                   int newEaseOut);

    /// Easing modes, two bits each, see EasingApplies. Bit 1 of EaseIn: a gap before this data ends slowly. Bit 0 of
    /// EaseOut: a gap behind it starts slowly.
    int EaseIn() const { return easeIn; }
    void SetEaseIn(int mode) { easeIn = mode; }
    int EaseOut() const { return easeOut; }
    void SetEaseOut(int mode) { easeOut = mode; }
    /// The single easing value of old archives; nothing evaluates it.
    int LegacyEasing() const { return legacyEasing; }
    void SetLegacyEasing(int value) { legacyEasing = value; }

    // --- identity

    /// The data of one entity are numbered from 1 in the order in which a manager first stored them; 0 before that.
    int SequenceNumber() const { return sequenceNumber; }
    void SetSequenceNumber(int number) { sequenceNumber = number; }

    /// The entity whose state the data writes.
    const COrvelID& TargetEntityID() const { return targetEntityID; }
    void SetTargetEntityID(const COrvelID& id) { targetEntityID = id; }
    /// The entity under which a manager files the data; usually the target itself.
    const COrvelID& AnimatedEntityID() const { return animatedEntityID; }
    /// Both ids become what the process-wide manager knows `id` as.
    void SetEntityID(const COrvelID& id);

    // --- collapsing group

    /// GUID of the scene entity that the group hangs from; invalid without a group.
    const COrvelUUID& OwnerGuid() const { return ownerGuid; }
    void SetOwnerGuid(const COrvelUUID& guid) { ownerGuid = guid; }
    /// Shared by all data of one group; invalid without a group.
    const COrvelUUID& CollapsingGroupID() const { return collapsingGroupID; }
    void SetCollapsingGroupID(const COrvelUUID& id) { collapsingGroupID = id; }
    bool IsInCollapsingGroup() const { return ownerGuid.IsValid() && collapsingGroupID.IsValid(); }

protected:
    /// For what the process-wide manager knows `id` as.
    explicit COrvelKeyFrameData(const COrvelID& id);
    COrvelKeyFrameData(const COrvelKeyFrameData&) = default;
    COrvelKeyFrameData& operator=(const COrvelKeyFrameData&) = default;

    /// Leaves the entity ids of a data alone while everything else is assigned to it.
    class KeepEntityIDs
    {
    public:
        explicit KeepEntityIDs(COrvelKeyFrameData& newData);
        KeepEntityIDs(const KeepEntityIDs&) = delete;
        KeepEntityIDs& operator=(const KeepEntityIDs&) = delete;
        ~KeepEntityIDs();

    private:
        COrvelKeyFrameData& data;
        COrvelID target;
        COrvelID animated;
    };

    /// Makes `snapshot` a data of the one frame EffectiveFrame(), for this data's entities.
    void MakeSnapshot(COrvelKeyFrameData& snapshot) const;
    /// The step of the data's own motion at EffectiveFrame(). Steps and frames of constant speed that lie outside the
    /// range count as its ends.
    MotionStep Motion() const;

    // --- parts of archive records

    /// The frames of constant speed, as they stand.
    bool ArchiveConstantSpeed(COrvelArchiveBase& archive);
    /// The frames of constant speed of data that have a motion of their own, in layouts that know them.
    bool WriteMotion(COrvelArchiveBase& archive);
    /// The same for reading; older layouts mean constant speed over the whole range and no easing.
    bool ReadMotion(COrvelArchiveBase& archive);
    void SpanConstantSpeed()
    {
        constantSpeedStartFrame = startFrame;
        constantSpeedEndFrame = endFrame;
    }

    // --- members of property tables

    void* IntMember(int& member, const char* label, int& type, COrvelString& name);
    void* DoubleMember(double& member, const char* label, int& type, COrvelString& name);
    void* BoolMember(bool& member, const char* label, int& type, COrvelString& name);
    /// Start and end of the range, then of constant speed, at the positions 0 to 3; null for any other. A new value
    /// passes through the setter when `apply` is set.
    void* FrameMember(int position, int& type, COrvelString& name, bool apply);
    /// The range collapses to the frame that is shown.
    void* WorkingFrameMember(int& type, COrvelString& name, bool apply);

private:
    void KeepConstantSpeedInRange();

    int startFrame = 0;
    int endFrame = 0;
    int constantSpeedStartFrame = 0;
    int constantSpeedEndFrame = 0;
    COrvelUUID ownerGuid;
    COrvelUUID collapsingGroupID;
    COrvelID targetEntityID;
    COrvelID animatedEntityID;
    int workingFrame = 0;
    int legacyEasing = 0;
    int easeIn = 0;
    int easeOut = 0;
    int sequenceNumber = 0;
};

} // namespace Orvel
