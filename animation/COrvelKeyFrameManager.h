#pragma once

#include "animation/COrvelKeyFrameData.h"
#include "animation/Export.h"
#include "platform/core/COrvelDataMembersManager.h"
#include "platform/core/COrvelID.h"
#include "platform/core/COrvelMatrix.h"
#include "platform/core/COrvelNodePath.h"
#include "platform/core/COrvelPtr.h"
#include "platform/core/COrvelUUID.h"

#include <map>
#include <set>
#include <unordered_map>
#include <utility>
#include <vector>

namespace Orvel
{

class COrvel3DObject;
class COrvelBasicMaterial;
class COrvelEntity;
class COrvelKeyFrame;
class COrvelKeyFrameDataTransformBSplineFollower;
class COrvelLinePath;
class COrvelSceneNode;
class COrvelSequenceContainer;
class COrvelSkeletonJoint;

using KeyFrameDataList = std::vector<COrvelPtr<COrvelKeyFrameData>>;
/// The data of one entity by their StartFrame().
using KeyFrameDataByFrame = std::map<int, COrvelPtr<COrvelKeyFrameData>>;
/// Data by the id of their collapsing group.
using KeyFrameDataByGroup = std::map<COrvelUUID, KeyFrameDataList>;
/// First and last frame, both included.
using FrameRange = std::pair<int, int>;

/// A timeline: for every animated entity the key frame data that make up its motion, in the order of their frames. The
/// process-wide manager holds the animation of the scene; a COrvelSequence is another one.
///
/// The data of one entity never share a frame. The manager holds one reference on each. Listing operations append to
/// what their argument holds already. Unknown ids answer null, false or nothing.
///
/// Evaluating moves the working frames of stored data, so what a lookup of stored data returned changes with it.
class ORVEL_ANIMATION_API COrvelKeyFrameManager : public COrvelDataMembersManager
{
public:
    COrvelKeyFrameManager();
    COrvelKeyFrameManager(const COrvelKeyFrameManager&) = delete;
    COrvelKeyFrameManager& operator=(const COrvelKeyFrameManager&) = delete;
    ~COrvelKeyFrameManager() override;

    /// The whole timeline. Data that are not applicable are left out of what is written; what is read is added to what
    /// is there, in place of data with the same entity and start frame, and brought from older layouts into today's.
    /// Ids are translated (COrvelID::SetReadingMode).
    ///
    /// @return false when something could not be read or written; what was read before stays.
    bool ArchiveReadWrite(COrvelArchiveBase& archive) override;

    // --- the process-wide manager

    /// The installed manager; an empty one is made and installed when there is none. Never null.
    static COrvelKeyFrameManager* Instance();
    /// Installs `manager`, which the process owns from then on: it is destroyed, whatever its reference count, when
    /// another one is installed. The installed one itself changes nothing; null leaves none.
    static void SetInstance(COrvelKeyFrameManager* manager);

    // --- evaluation

    /// The state of an entity at any frame: inside a data its snapshot, before the first and behind the last data a
    /// copy of these, in a gap a blend. See KeyFrameEvaluation.cpp.
    ///
    /// @param id not resolved through the aliases.
    /// @return a data of its own with working frame `frame`. A light that cannot be blended is answered by the stored
    ///         data before the gap itself. Null for an unknown id, and for a gap whose ends have no blend.
    COrvelPtr<COrvelKeyFrameData> KeyFrameDataAtFrame(const COrvelID& id, int frame);
    /// Product of the matrices along a path, root first, each animated transform taken at `frame`. Null entries and
    /// nodes without a local transform count as identity.
    COrvelMatrix WorldMatrixAtFrame(COrvelNodePath path, int frame);
    /// The state of every animated entity at `frame`.
    COrvelKeyFrame KeyFrameAtFrame(int frame);
    /// The target of the evaluated state of the aliased `id` at the current frame; the default id when there is none.
    COrvelID TargetIDAtCurrentFrame(const COrvelID& id);

    // --- lookup

    bool HasKeyFrames() const { return !keyFrameDataByEntity.empty(); }
    /// What is animated in place of `id`, or `id` itself.
    COrvelID ResolveAlias(const COrvelID& id) const;
    /// The stored data of the aliased `id` that covers `frame`; null when there is none.
    COrvelPtr<COrvelKeyFrameData> StoredKeyFrameDataAtFrame(const COrvelID& id, int frame) const;
    /// The same, or else the first one that starts behind `frame`.
    COrvelPtr<COrvelKeyFrameData> StoredKeyFrameDataAtOrAfter(const COrvelID& id, int frame) const;
    COrvelSequenceContainer* SequenceContainer() const { return sequenceContainer; }

    // --- questions about nodes

    /// True when the local transform of the node or of one of its ancestors is animated; false for null.
    bool IsNodeAnimated(COrvelSceneNode* node) const;
    /// True when the node's own local transform is animated; false for null.
    bool IsNodeTransformAnimated(COrvelSceneNode* node) const;
    /// True when the lower end of one of the paths has an animated local transform.
    bool IsAnyPathAnimated(const std::vector<COrvelNodePath>& paths) const;
    /// True when `node` moves with `other`: as its descendant (or itself), or by following a path that does, directly
    /// or through one of its ancestors. False for a null node.
    bool IsNodeDependentOn(COrvelSceneNode* node, COrvelSceneNode* other) const;

    // --- ids

    /// Every animated id, in id order, default ones included.
    void ListAnimatedIDs(std::vector<COrvelID>& ids) const;
    /// The animated ids of materials; the whole vector is then sorted.
    void ListAnimatedMaterialIDs(std::vector<COrvelID>& ids) const;
    /// The animated ids of lights; the whole vector is then sorted.
    void ListAnimatedLightIDs(std::vector<COrvelID>& ids) const;
    /// Inserts the animated ids of a node: its local transform (mask bit 64), the material (4) and vertex table (256)
    /// of a 3D object. Nothing for null.
    ///
    /// @param thisNodeOnly false: of the whole subtree instead, always with all three bits and always in the
    ///                     process-wide manager; deleted nodes are left out with their subtrees.
    void CollectAnimatedIDs(COrvelSceneNode* node, std::set<COrvelID>& ids, int typeMask, bool thisNodeOnly);

    // --- listings of data
    //
    // Entities in id order, the data of each by start frame.

    /// Every frame of every data of `id`, which is not resolved through the aliases.
    void ListKeyFrameNumbers(const COrvelID& id, std::vector<int>& frames) const;
    void ListAllKeyFrameData(KeyFrameDataList& list) const;
    /// The stored data that cover `frame`.
    void ListKeyFrameDataAtFrame(int frame, KeyFrameDataList& list) const;
    /// The stored data of the aliased `id`.
    void ListKeyFrameDataOf(const COrvelID& id, KeyFrameDataList& list) const;
    /// The data that the process-wide manager has for an entity; for a scene node also those of its local transform, of
    /// the vertex table of its geometry and of its light. Nothing for null.
    static void ListKeyFrameDataOfEntity(COrvelEntity* entity, KeyFrameDataList& list);
    /// @param type one of enumKeyFrameDataType.
    void ListKeyFrameDataOfType(int type, KeyFrameDataList& list) const;
    /// The same, of the entities that the last archive read brought.
    void ListReadKeyFrameDataOfType(int type, KeyFrameDataList& list) const;
    /// The materials that stored data hold; they stay theirs. Data without one give none.
    void ListKeyFrameMaterials(std::vector<COrvelBasicMaterial*>& materials) const;
    /// The stored data that follow `path`; none for null.
    void ListPathFollowers(COrvelLinePath* path,
                           std::vector<COrvelKeyFrameDataTransformBSplineFollower*>& followers) const;
    /// What BakeTimeline recorded. @return the number of data appended.
    int ListBakedKeyFrameData(KeyFrameDataList& list) const;

    // --- listings of scene entities
    //
    // Each entity once, in the order found; those that the list holds already are not added again.

    /// The 3D objects that animation moves or recolours.
    void ListAnimated3DObjects(std::vector<COrvel3DObject*>& objects, bool skipMaterialAnimation, bool includeHidden,
                               bool includeDeleted) const;
    /// The light sources that animation moves or changes.
    void ListAnimatedLightSources(std::vector<COrvelSceneNode*>& sources, bool skipLightAnimation, bool includeHidden,
                                  bool includeDeleted) const;
    /// The paths that the local transforms of the nodes follow, one for each stored data that has one.
    void ListFollowedPaths(const std::vector<COrvelSceneNode*>& nodes, std::vector<COrvelLinePath*>& paths) const;
    /// The roots of the skeletons whose joints are animated.
    std::vector<COrvelSkeletonJoint*> ListSequenceRootJoints() const;

    // --- frames

    /// Range of all data added with updated range; it starts at 0 or below.
    int FirstFrame() const { return firstFrame; }
    void SetFirstFrame(int frame) { firstFrame = frame; }
    int LastFrame() const { return lastFrame; }
    void SetLastFrame(int frame) { lastFrame = frame; }
    int CurrentFrame() const { return currentFrame; }
    void SetCurrentFrame(int frame) { currentFrame = frame; }
    /// Stored and cleared with the manager; nothing reads it.
    void SetReservedNumber(int number) { reservedNumber = number; }
    /// Largest EndFrame() of the stored data; 0 when there are none.
    int ComputeLastFrame() const;
    /// Smallest start and largest end of the list. Nothing for an empty list, nor when both frames of `span` are
    /// already other than 0. Here as in the next one, null entries are skipped.
    static void FrameSpan(const KeyFrameDataList& list, FrameRange& span);
    /// Largest end minus smallest start; 0 for an empty list.
    static int FrameLength(const KeyFrameDataList& list);
    /// True when the stored data that cover the first frame show the same state as those that cover the last one:
    /// matrices and morph weights within 0.001, the very same material, light or vertex table. Each data counts as it
    /// stands at its working frame.
    bool IsSeamlessLoop() const;

    // --- changes

    /// Stores a data under its animated entity and start frame, in place of every data that shares a frame with it, and
    /// numbers it when it has no sequence number. Null does nothing.
    ///
    /// @param updateRange true: FirstFrame() and LastFrame() are extended to the data's range.
    /// @return the data that were displaced, by start frame.
    KeyFrameDataList AddKeyFrameData(COrvelPtr<COrvelKeyFrameData>& data, bool updateRange);
    /// Stores a data whose start frame has changed under its new one; what stands there is replaced, nothing else is
    /// displaced. Null does nothing. After another change, the first call for an entity takes linear time in the number
    /// of its data; those that follow are logarithmic.
    void RefileKeyFrameData(const COrvelPtr<COrvelKeyFrameData>& data);
    /// Puts the scene into the state of frame 0, then empties the manager. LastFrame() stays, and data that are added
    /// later are numbered on from those that were taken.
    ///
    /// @return every data it had.
    KeyFrameDataList TakeAllKeyFrameData();
    /// Takes out the data of `id` (not aliased) at `frame`; null when there is none.
    COrvelPtr<COrvelKeyFrameData> TakeKeyFrameDataAt(const COrvelID& id, int frame);
    /// Moves the data of `id` (not aliased) that share a frame with [from, to] to the end of `list`.
    void TakeKeyFrameDataInRange(int from, int to, const COrvelID& id, KeyFrameDataList& list);
    /// Takes out all data of the aliased `id`, and the aliases that led to them.
    KeyFrameDataList TakeAllKeyFrameDataOf(const COrvelID& id);
    /// Removes what is stored at the start frame of each data; null entries are skipped.
    void RemoveKeyFrameData(const KeyFrameDataList& list);
    void RemoveKeyFrameData(const COrvelPtr<COrvelKeyFrameData>& data);
    /// Moves data so that the first one of the list starts at frame 0. Null entries are skipped; stored data must be
    /// filed anew afterwards.
    static void MoveToFrameZero(KeyFrameDataList& list);
    /// Records the process-wide manager's animation frame by frame, over the range of this manager.
    void BakeTimeline();
    /// Forgets all data, baked ones included, aliases and counts; all frames become 0.
    void ClearKeyFrameData();

    // --- collapsing groups
    //
    // Data that are shown under one caption share a group id and name the entity that the group hangs from; see
    // KeyFrameManagerCollapsingGroups.cpp. The captions are in COrvelAnimationCollapsingGroupGuidToCaptionMapper.

    /// Makes one new group of the data, hung from the only entity that shows them or else from the nearest common
    /// parent of those that do. Null entries and data that nothing shows stay out of it. Nothing happens when there is
    /// no such parent or it has no valid GUID.
    static void CollapseKeyFrameData(const KeyFrameDataList& data, COrvelString caption);
    /// Makes one new group, hung from the root, for each of the given skeletons that some of the data move. A data that
    /// moves several of them ends in the group of the last one.
    static void CollapseKeyFrameDataBySkeleton(const KeyFrameDataList& data,
                                               const std::vector<COrvelSkeletonJoint*>& roots, COrvelString caption);
    /// Gives moved data a group of their own, without caption, when both ends of their span lie outside that of the
    /// group. Nothing when the group has fewer than two data or its first one no owner.
    ///
    /// @param moved, group without null entries.
    static void DetachFromCollapsingGroup(KeyFrameDataList& moved, const KeyFrameDataList& group);
    /// The data that are in a collapsing group, each group's in the order of the list.
    static KeyFrameDataByGroup KeyFrameDataByCollapsingGroup(const KeyFrameDataList& data);
    /// Stores the span of each group.
    static void CollapsingGroupSpans(const KeyFrameDataByGroup& groups, std::map<COrvelUUID, FrameRange>& spans);
    /// Appends the living entities that the groups of the data hang from, each once.
    static void ListCollapsingGroupOwners(const KeyFrameDataList& data, std::vector<COrvelEntity*>& owners);
    /// Appends the group ids of what ListKeyFrameDataOfEntity lists, valid or not, each once. So do the next two, which
    /// leave entries alone that are there already.
    static void ListCollapsingGroupIDs(COrvelEntity* entity, std::vector<COrvelUUID>& ids);
    static void CollapsingGroupIDsByEntity(const std::vector<COrvelEntity*>& entities,
                                           std::map<COrvelEntity*, std::vector<COrvelUUID>>& ids);
    /// The data with those group ids; of two entities that share one, the first has it.
    static void KeyFrameDataByCollapsingGroupOfEntities(const std::map<COrvelEntity*, std::vector<COrvelUUID>>& ids,
                                                        KeyFrameDataByGroup& groups);
    /// True when a group hangs from the node or from a node below it, deleted ones left out, among that node's own
    /// data. False for null.
    static bool OwnsCollapsingGroup(COrvelSceneNode* node);

private:
    // Of the archive record, see animation/records.
    class DenseNumbering;
    bool WriteRecord(COrvelArchiveBase& archive);
    bool ReadRecord(COrvelArchiveBase& archive);
    bool ReadEntityData(COrvelArchiveBase& archive, const COrvelID& id);
    void ConvertOldLayouts();
    void MoveCamerasToTransforms();
    void SplitMorphWeights();

    /// The data of `id` itself; null when it has none.
    const KeyFrameDataByFrame* FindKeyFrameData(const COrvelID& id) const;
    bool IsAnimated(const COrvelID& id) const { return keyFrameDataByEntity.contains(id); }
    void StoreKeyFrameData(const COrvelPtr<COrvelKeyFrameData>& data);
    /// Takes a data out of where it stands, whatever its start frame is now, to be stored anew.
    void Unfile(KeyFrameDataByFrame& dataByFrame, const COrvelKeyFrameData& data);

    std::map<COrvelID, KeyFrameDataByFrame> keyFrameDataByEntity;
    std::map<COrvelID, COrvelID> entityAliases; // from target entities to animated ones
    std::map<COrvelID, int> dataCountByEntity;
    int currentFrame = 0;
    int firstFrame = 0;
    int lastFrame = 0;
    int reservedNumber = 0;
    // Numbers and counts as they were before an archive is written, which numbers the data densely.
    std::map<COrvelKeyFrameData*, int> savedNumbers;
    std::map<COrvelID, int> savedCounts;
    KeyFrameDataList bakedKeyFrameData;
    COrvelSequenceContainer* sequenceContainer = nullptr;
    std::set<COrvelID> readIDs;
    // Where the data of an entity stand, whatever their start frames say: a moved timeline is filed anew data by data.
    // Every change but that one forgets it.
    std::map<COrvelID, std::unordered_map<const COrvelKeyFrameData*, int>> filedFrames;
};

} // namespace Orvel
