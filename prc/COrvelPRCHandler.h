#pragma once

#include "platform/core/COrvelNodeVisitor.h"
#include "platform/core/COrvelString.h"
#include "platform/core/Types.h"

#include <map>
#include <vector>

namespace prc
{
class oPRCFile;
} // namespace prc

namespace Orvel
{

class COrvel3DObject;
class COrvelBasicMaterial;
struct COrvelBasicSceneState;
class COrvelCamera;
class COrvelDocument;
class COrvelMaterial;
class COrvelPRCMapper;
class COrvelSceneNode;

/// The converter: turns a document into a PRC file. One for each process, shared by all writers.
///
/// One class, several rooms. Each group of operations stands in the folder of its subsystem:
///   - settings and the instance                    prc/COrvelPRCHandler.cpp
///   - the two runs                                 writer/ExportRuns.cpp
///   - traversal, groups, instancing                prc/SceneTraversal.cpp
///   - meshes                                       prc/MeshExtraction.cpp
///   - materials of key frames                      prc/MaterialConversion.cpp
///   - scene-state materials                        prc/SceneStateMaterials.cpp
///   - material animation                           mapping/MaterialAnimation.cpp
///   - camera animation                             mapping/CameraAnimation.cpp
///
/// Not thread-safe: one export at a time in a process. The instance lives until the process ends, and the class has no
/// virtual destructor: nobody destroys it.
class COrvelPRCHandler final : public COrvelNodeVisitor
{
public:
    using MaterialNumbers = std::map<COrvelMaterial*, uint32>; ///< host material -> PRC material index plus one

    /// The process-wide converter, made on the first call. std::bad_alloc passes through, and the next call tries
    /// again.
    static COrvelPRCHandler* Instance();

    /// The visitor's callback. The converter walks the scene with its own recursion: this does nothing.
    /// @return true.
    bool VisitSceneNode(COrvelSceneNode* node) override;

    // Runs.

    /// The plain run: writes all live nodes of the document under the 8-bit form of `fileName`.
    /// @return false for a null document, before anything is prepared or opened. Exceptions of the PRC file
    ///         (std::system_error when it cannot be written), of the host and of allocation pass through; the
    ///         process-wide caches are empty again on every way out.
    bool WriteDocument(COrvelDocument* document, COrvelString fileName);

    /// The animated run: as the plain run, plus the materials of scene states and of the key frame manager's animation,
    /// all recorded in the mapper with the flight of the document's active camera.
    /// @param sceneStates may be null.
    /// @return as WriteDocument.
    bool WriteAnimatedDocument(COrvelDocument* document, COrvelString fileName,
                               std::vector<COrvelBasicSceneState>* sceneStates);

    /// Gives the plain run its own material numbers and mapper, emptied, whatever was set before.
    void PrepareExport();

    /// Fills `materialNumbers` and `mapper` with the animated run's own, emptied, where they are null; what is set
    /// stays as it is.
    void PrepareAnimatedExport();

    // Traversal.

    /// Writes the group of a node and its whole subtree into the group that is open in `file`, and numbers the nodes.
    /// Recurses once for each level of the tree.
    /// @param node not deleted.
    void VisitNode(COrvelSceneNode* node, prc::oPRCFile& file);

    /// Lists the live children of a node: first the 3D objects, then all others, each in the node's order.
    /// @param children empty on entry.
    void CollectChildren(COrvelSceneNode* node, std::vector<COrvelSceneNode*>& children);

    /// Takes the number back from a node whose group holds nothing: no 3D object, and no live child.
    void DropIfEmpty(COrvelSceneNode* node);

    // Meshes.

    /// Adds the object's material and mesh to the file and places the mesh in the open group.
    /// @param tessellation out: the index of the tessellation, the null index for a geometry without polygons;
    ///                     untouched for an object without vertices, for which nothing is added.
    void ExtractMesh(prc::oPRCFile& file, COrvel3DObject* object, uint32& tessellation);

    // Materials.

    /// Adds the material of a key frame to the file.
    /// @param index out: its PRC material index (not plus one).
    /// @return true.
    bool AddKeyFrameMaterial(COrvelBasicMaterial* material, uint32& index, prc::oPRCFile& file);

    /// Adds every replacement material of every scene state to the file and records in the mapper which stands for
    /// which.
    /// @param sceneStates may be null or empty: nothing happens.
    void ExtractSceneStateMaterials(prc::oPRCFile& file, std::vector<COrvelBasicSceneState>* sceneStates);

    // Animation. All three read the process-wide key frame manager and its sequences.

    /// Adds the material of every frame of the timeline, from 0 to the last one, for every animated material that the
    /// file knows, and records them in the mapper as material numbers. A material whose evaluation ends early is
    /// recorded up to there.
    void ExtractMaterialAnimation(prc::oPRCFile& file);

    /// The same for every sequence that is not temporary: the frames from the start of a material's first key frame in
    /// it to the end of its last, recorded as PRC indices under the sequence's UUID text and under its name. A sequence
    /// without animated materials is recorded with nothing in it.
    void ExtractMaterialSequenceAnimation(prc::oPRCFile& file);

    /// Records in the mapper where the camera stands at each frame of the timeline, and leaves a camera for each,
    /// "frm0", "frm1" ..., in the temporary document. Target distance and projection are those that it has now.
    /// @param camera null, deleted, default and unanimated ones record nothing.
    void ExtractCameraAnimation(COrvelCamera* camera);

    /// The mapper that the current run writes into. Not owned.
    COrvelPRCMapper* mapper = nullptr;
    /// The material numbers of the current run. Not owned.
    MaterialNumbers* materialNumbers = nullptr;
    /// Larger side, in pixels, that textures are scaled down to.
    int maximumTextureSize = 1024;

private:
    COrvelPRCHandler() = default;

    void PlaceMesh(COrvel3DObject* object, prc::oPRCFile& file);
};

} // namespace Orvel
