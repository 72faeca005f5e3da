#pragma once

#include "mapping/Export.h"
#include "platform/core/COrvelBasicCamera.h"
#include "platform/core/COrvelString.h"

#include <map>
#include <utility>
#include <vector>

namespace Orvel
{

class COrvelSceneNode;

/// The record that an animated export leaves for the host: which PRC node and material stands for what, and when.
///
/// A plain value: it numbers nothing itself and never looks into the scene; node pointers are keys only. The host owns
/// it, hands it to `COrvelPRCWriter::SetPRCMapper` and reads it after the export.
///
/// Two kinds of numbers occur. A *PRC node index* is the position of a node's group in the depth-first order in which
/// groups are opened. A *material number* is a PRC material index plus one. `materialAnimation` holds material numbers
/// for its frames, `materialSequenceAnimation` holds PRC material indices (without the plus one); the keys of both are
/// material numbers.
///
/// The data members and their order are part of the interface: hosts are compiled against this declaration.
class ORVEL_PRCWRITER_API COrvelPRCMapper
{
public:
    using MaterialReplacements = std::map<int, int>;        ///< material number -> material number
    using MaterialFrames = std::map<int, std::vector<int>>; ///< material number -> one number for each frame
    using CameraFrames = std::vector<std::pair<COrvelBasicCamera, COrvelString>>;

    COrvelPRCMapper() = default;
    COrvelPRCMapper(const COrvelPRCMapper&) = default;
    /// Takes over every container; the source is left with empty ones and its `nextNodeIndex` unchanged.
    COrvelPRCMapper(COrvelPRCMapper&& source) noexcept;
    COrvelPRCMapper& operator=(const COrvelPRCMapper&) = default;
    /// As the move constructor; self-assignment changes nothing.
    COrvelPRCMapper& operator=(COrvelPRCMapper&& source) noexcept;
    ~COrvelPRCMapper() = default;

    // Recording, done by the converter during a run. All arguments are copied and left unmodified.

    /// Records the PRC node index of a node, inserting or overwriting.
    void AddMapping(COrvelSceneNode* node, int index);
    /// Records the replacements of the scene state at position `ordinal` (from 0), replacing a former map whole.
    void AddMapping(int ordinal, std::map<int, int>& replacements);
    /// Records the material numbers of an animated material at frames 0, 1, 2 ..., replacing former ones whole.
    void AddMapping(int materialNumber, std::vector<int>& numbersByFrame);
    /// Records a sequence's material animation under `key`, replacing a former one whole.
    void AddMaterialSequenceAnimationMapping(COrvelString key, std::map<int, std::vector<int>> animation);
    /// Replaces the camera list whole. Passing the member itself does nothing.
    void SetCameraAnimationData(std::vector<std::pair<COrvelBasicCamera, COrvelString>>& cameras);
    /// Forgets a node's index. `nextNodeIndex` and `hiddenNodeIndices` are the caller's to adjust.
    void RemoveMemberFromMap(COrvelSceneNode* node);
    /// Empties the node members and the scene states and sets `nextNodeIndex` to 0; the three animation members stay.
    void Reset();

    // Queries for the host.

    /// @return the node's PRC node index, -1 when it has none (a null node too).
    [[nodiscard]] int MapIntoIndex(COrvelSceneNode* node) const;
    /// @param replacements replaced by the state's map when the ordinal is known, else untouched.
    /// @return true when the ordinal is known and its map is not empty.
    bool MapIntoMaterials(int ordinal, std::map<int, int>& replacements) const;
    /// @param animation replaced by `materialAnimation`.
    void ListMaterialAnimation(std::map<int, std::vector<int>>& animation) const;
    /// Finds the first entry, in key order, whose key equals `key` (by ==); on a miss the output is untouched.
    void ListMaterialSequenceAnimation(COrvelString key, std::map<int, std::vector<int>>& animation) const;
    /// @param cameras replaced by `cameraAnimation`.
    void ListCameraAnimation(std::vector<std::pair<COrvelBasicCamera, COrvelString>>& cameras) const;

    /// PRC node indices of the nodes that were hidden when visited, in visiting order.
    std::vector<int> hiddenNodeIndices;
    /// The index that the next visited node receives.
    int nextNodeIndex = 0;
    /// Scene node, by identity, to PRC node index.
    std::map<COrvelSceneNode*, int> nodeIndices;
    /// Position of a scene state in the exported list to the replacements that it makes.
    std::map<int, std::map<int, int>> sceneStateMaterials;
    /// Material number to the material numbers at frames 0, 1, 2 ... of the timeline.
    std::map<int, std::vector<int>> materialAnimation;
    /// Sequence key (its UUID's text, and its name) to: material number to PRC material indices, frame by frame from
    /// the first frame of the material's first key frame in the sequence on.
    std::map<COrvelString, std::map<int, std::vector<int>>> materialSequenceAnimation;
    /// The active camera at frames 0, 1, 2 ... and a name for each.
    std::vector<std::pair<COrvelBasicCamera, COrvelString>> cameraAnimation;
};

} // namespace Orvel
