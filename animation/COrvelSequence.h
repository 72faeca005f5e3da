#pragma once

#include "animation/COrvelKeyFrameManager.h"
#include "platform/core/COrvelString.h"
#include "platform/core/COrvelTexture.h"
#include "platform/core/COrvelUUID.h"

#include <utility>

namespace Orvel
{

/// A named piece of animation that a user keeps for reuse: a timeline of its own with some settings for display.
///
/// Reference counted; the sequence container knows every sequence but owns none. A sequence leaves the container and
/// its group when it is destroyed.
class ORVEL_ANIMATION_API COrvelSequence : public COrvelKeyFrameManager
{
public:
    /// A new sequence "Sequence1", "Sequence2", ..., in the container and in its current group, reference count 0.
    static COrvelSequence* Create();
    /// A new sequence, named like this one with "_copy", in the same group, with the same preview image and duration
    /// but without key frame data. Reference count 0.
    COrvelSequence* Duplicate();
    ~COrvelSequence() override;

    /// The timeline and the settings but the marks and the text. A sequence that is read enters the container and its
    /// group under the id that it is given; nothing in archives older than sequences.
    bool ArchiveReadWrite(COrvelArchiveBase& archive) override;

    COrvelUUID UUID() const { return sequenceID; }
    /// The same, generated first when it is not valid: the sequence is then in the container and its group again.
    COrvelUUID ValidUUID();
    /// Forgets the key frame data, preview image, temporary mark and id. Without an id the sequence is neither in the
    /// container nor in its group.
    void Clear();

    /// Sends "eMessageType_INSERT_SEQUENCE_KEY_FRAMES_DATA": whoever receives it inserts copies of the data into the
    /// scene's animation. Nothing for a repeat count of 1e-9 or less.
    void RequestInsertIntoTimeline(double numberOfTimesToRepeat, bool blendSequences);

    // --- settings

    /// A temporary sequence is not saved, and left out of lists on request.
    bool IsTemporary() const { return temporary; }
    void SetTemporary(bool newTemporary) { temporary = newTemporary; }
    /// Lists can be restricted to marked sequences.
    bool IsMarked() const { return marked; }
    void SetMarked(bool newMarked) { marked = newMarked; }
    /// Place in lists; 0 for none.
    int OrderIndex() const { return orderIndex; }
    void SetOrderIndex(int index) { orderIndex = index; }
    /// Id of the sequence group that the sequence belongs to; the invalid id for the group "Default".
    const COrvelUUID& GroupID() const { return groupID; }
    /// Groups list their members themselves: this does not change them.
    void SetGroupID(const COrvelUUID& id) { groupID = id; }
    const COrvelString& Text() const { return text; }
    void SetText(COrvelString newText) { text = std::move(newText); }
    const COrvelTexture& PreviewImage() const { return previewImage; }
    void SetPreviewImage(COrvelTexture image) { previewImage = std::move(image); }
    /// -1 when not set.
    double Duration() const { return duration; }
    void SetDuration(double newDuration) { duration = newDuration; }

protected:
    /// With a generated id, in no group and not in the container.
    COrvelSequence();

private:
    friend class COrvelSequenceContainer;

    struct Settings;
    void TakeOver(Settings settings);
    void EnterContainer();
    void LeaveContainer();

    bool temporary = false;
    bool marked = false;
    int orderIndex = 0;
    COrvelUUID groupID;
    COrvelString text;
    COrvelTexture previewImage;
    COrvelUUID sequenceID;
    double duration = -1.0;
};

} // namespace Orvel
