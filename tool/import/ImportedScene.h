#pragma once

#include "platform/core/COrvelMatrix.h"
#include "tool/import/ImportedAnimation.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace Orvel::Import
{

/// Index into one of the tables of an ImportedScene; `None` where there is nothing to point at.
using Index = int;
inline constexpr Index None = -1;

/// A picture as the scene file brings it: a place on disk, the bytes of an encoded file, or bare pixels.
struct ImportedImage
{
    std::string name; ///< for messages; never empty
    std::string path; ///< UTF-8, as the scene file gives it (may be foreign: "C:\\tex\\a.PNG"); empty when embedded
    std::vector<std::byte> encoded; ///< a complete picture file (PNG, JPEG, ...), when embedded
    std::vector<std::byte> pixels;  ///< RGBA bytes, top row first, 4 * width * height, when embedded without encoding
    std::uint32_t width = 0;        ///< of `pixels`
    std::uint32_t height = 0;       ///< of `pixels`
};

/// A material in the terms of the exported format: classic lighting, colours in sRGB, 0 to 1. The readers convert.
struct ImportedMaterial
{
    std::string name;
    std::array<double, 3> ambient{0.0, 0.0, 0.0};
    std::array<double, 3> diffuse{0.8, 0.8, 0.8};
    std::array<double, 3> specular{0.0, 0.0, 0.0};
    std::array<double, 3> emissive{0.0, 0.0, 0.0};
    double opacity = 1.0;
    Index image = None;            ///< base colour or diffuse texture
    bool imageAlphaCounts = false; ///< false: the material is opaque whatever the picture's alpha channel holds
};

/// One shape: triangles over points, in the node's own coordinates. Every index lies below the number of points, and
/// every number is finite: readers check before they fill it.
struct ImportedGeometry
{
    std::vector<double> positions;        ///< 3 per point
    std::vector<double> normals;          ///< 3 per point, unit length; empty: none in the file, to be made
    std::vector<std::uint32_t> triangles; ///< 3 per triangle, counter-clockwise seen from outside
    bool welded = true;                   ///< false: every triangle has points of its own and equal ones may be joined
};

/// Texture coordinates for the points of one geometry: v = 0 is the bottom edge of the picture.
struct ImportedTextureCoordinates
{
    std::vector<double> values; ///< 2 per point of the geometry that it is used with
};

/// One shape in one material. Equal `geometry` means one shared shape.
struct ImportedPart
{
    std::string name; ///< the mesh's name; empty: the node's name serves
    Index geometry = None;
    Index textureCoordinates = None;
    Index material = None; ///< None: the document's default material
    Index variants = None; ///< index into ImportedScene::variantMaterials; None: this material in every variant
};

struct ImportedNode
{
    std::string name;                ///< UTF-8, as in the file; may be empty
    COrvelMatrix matrix;             ///< local transform, exactly as the file has it (composed in double precision)
    std::vector<Index> children;     ///< indices into ImportedScene::nodes
    std::vector<ImportedPart> parts; ///< the shapes at this node
    Index camera = None;             ///< index into ImportedScene::cameras
    bool hidden = false;
};

/// A camera looks along -z of its node, y up.
struct ImportedCamera
{
    std::string name;
    bool perspective = true;
    double verticalFieldOfViewInDegrees = 45.0; ///< the full angle; perspective only
    double orthographicHeight = 0.0;            ///< full height in scene units; orthographic only
};

enum class UpAxis
{
    Unknown,
    X,
    Y,
    Z
};

/// What a reader found in a scene file, before it becomes a document. Nodes form a forest: every node is reached from
/// `roots` exactly once (readers check: no cycle, no second parent).
struct ImportedScene
{
    std::string format;             ///< for people: "glTF 2.0", "Wavefront OBJ", ...
    double unitInMillimetres = 0.0; ///< length of one scene unit; 0: the file does not say
    UpAxis upAxis = UpAxis::Unknown;
    std::vector<ImportedNode> nodes;
    std::vector<Index> roots;
    std::vector<ImportedGeometry> geometries;
    std::vector<ImportedTextureCoordinates> textureCoordinates;
    std::vector<ImportedMaterial> materials;
    std::vector<ImportedImage> images;
    std::vector<ImportedCamera> cameras;
    std::vector<ImportedClip> clips;
    std::vector<std::string> variants; ///< distinct names of the variants of the whole scene, which change materials
    /// For each variant the material that a part shows in it; None: the part's own.
    std::vector<std::vector<Index>> variantMaterials;
};

} // namespace Orvel::Import
