#pragma once

#include "platform/core/COrvelBasicMaterial.h"
#include "platform/core/COrvelBasicSceneState.h"
#include "platform/core/COrvelDocument.h"
#include "tool/import/ImportReport.h"
#include "tool/import/ImportedScene.h"
#include "tool/import/TextureFiles.h"
#include "tool/import/UnitGroup.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Orvel
{
class COrvelCamera;
class COrvelMaterial;
class COrvelSceneNode;
} // namespace Orvel

namespace Orvel::Import
{

/// Which axis points up in the document.
enum class Up
{
    Default, ///< z, when the source says what is up in it; else as it is
    Y,       ///< a source that does not say counts as y-up
    Z,       ///< a source that does not say counts as y-up
    Keep     ///< as it is
};

struct BuildOptions
{
    double creaseAngleInDegrees = 35.0; ///< for shapes without normals, see MakeCreaseNormals
    std::optional<double> scale = {};   ///< finite and above 0; nothing: millimetres, when the source says its unit
    Up up = Up::Default;
};

/// What stands in a document, for people.
struct BuildSummary
{
    std::string format;              ///< of the source: "glTF 2.0", ...
    std::size_t nodes = 0;           ///< groups and objects, without the group for units and axes
    std::size_t objects = 0;         ///< of these, objects with a mesh
    std::size_t hiddenNodes = 0;     ///< of these, nodes that are hidden themselves
    std::size_t meshes = 0;          ///< shapes that are stored: one for all objects that share it
    std::size_t trianglesStored = 0; ///< in the meshes, each counted once
    std::size_t trianglesPlaced = 0; ///< in the objects
    std::size_t materials = 0;       ///< materials of the source that objects use, and the default if one uses it
    std::vector<TextureFile> textures;
    std::optional<UnitChange> unitChange; ///< what the group for units and axes does, when there is one
};

/// A camera of the scene: its place is a node of the document, its values are these.
struct DocumentCamera
{
    COrvelCamera* node = nullptr; ///< owned by the document
    ImportedCamera values;
};

/// A variant of the scene: some materials are replaced by others.
struct DocumentVariant
{
    std::string name;
    COrvelBasicSceneState state; ///< replacements are owned by BuiltDocument::looks
};

/// A document and what is known of it.
struct BuiltDocument
{
    std::unique_ptr<COrvelDocument> document; ///< never null
    std::vector<DocumentCamera> cameras;      ///< in the order of the tree
    /// For each node of the scene the document's node that carries its local matrix.
    std::vector<COrvelSceneNode*> nodes;
    /// For each material of the scene those that stand for it, see below; none for one that nothing shows.
    std::vector<std::vector<COrvelMaterial*>> materials;
    std::vector<DocumentVariant> variants;
    std::vector<std::unique_ptr<COrvelBasicMaterial>> looks; ///< of the scene's materials
    std::vector<ImportedClip> clips; ///< of the scene; their nodes and materials are positions in the lists above
    BuildSummary summary;
};

/// Nodes nested deeper than this are refused: the exporter follows the tree by recursion.
inline constexpr std::size_t MaximumNodeDepth = 1000;

/// Builds the document of a scene.
///
/// - Tree, names and local matrices are those of the scene. A node with one part, no children and no camera becomes a
/// 3D
///   object; any other node becomes a group with one object for each part beside its sub-groups, since an exporter does
///   not look below an object. A camera's group is a COrvelCamera.
/// - Objects of one shape in one material share their geometry. A file keeps such objects as instances only while their
///   material belongs to no other shape, and instances all look alike: so each combination of shape, texture
///   coordinates and material that is used more than once has a geometry and a material of its own. Objects with a
///   shape of their own share one material for each material of the scene. Parts whose material is another one in some
///   variant of the scene than that of others have a material apart from theirs.
/// - The parts of a node that agree in name, material and kind of data become one, unless they are shared (MergeParts).
/// - Triangles keep number and order. Points that no triangle uses are dropped. Shapes without normals get them
/// (MakeCreaseNormals); points are joined only in
///   shapes that say so. A shape without triangles becomes a group.
/// - One group (UnitGroup.h) stands above all others when units or axes change.
///
/// @param scene    consumed: its arrays go into the document's tables.
/// @param textures makes the files that the materials name; its temporary folder must outlive the export.
/// @throws ImportError when nodes are nested more than MaximumNodeDepth deep. std::system_error from TextureFiles.
[[nodiscard]] BuiltDocument BuildDocument(ImportedScene scene, TextureFiles& textures, const BuildOptions& options);

} // namespace Orvel::Import
