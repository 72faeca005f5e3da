#pragma once

#include <cstdint>
#include <vector>

namespace prc
{

/// The kinds of entities that a face may draw, values of PRCTessFace::usedEntitiesFlag.
namespace UsedEntities
{
inline constexpr std::uint32_t triangles = 2;
inline constexpr std::uint32_t texturedTriangles = 512;
} // namespace UsedEntities

/// One face of a PRC3DTess: a run of triangles out of the index array of the tessellation, with its own style or
/// colours.
///
/// The writer takes triangles (UsedEntities); what else the format's faces can hold, wires and fans, is refused by
/// oPRCFile::add3DTess.
struct PRCTessFace
{
    std::uint32_t usedEntitiesFlag = 0; ///< UsedEntities::triangles or UsedEntities::texturedTriangles.

    /// Texture coordinates at each corner: 1 for textured triangles, else 0.
    std::uint32_t numberOfTextureCoordinateIndexes = 0;

    std::vector<std::uint32_t> sizesTriangulated; ///< one entry: the number of triangles.

    /// Style of the face: empty, or one style index as oPRCFile::addMaterial returned it. It wins over the style with
    /// which the tessellation is placed.
    std::vector<std::uint32_t> lineAttributes;

    std::uint32_t startWire = 0; ///< position of the first wire index of the face; 0.

    /// Position in PRC3DTess::triangulatedIndex of the first entry of the face. Faces follow each other without gaps.
    std::uint32_t startTriangulated = 0;

    std::vector<std::uint32_t> sizesWire; ///< empty.

    bool isRgba = false; ///< vertex colours have four bytes instead of three.

    /// Empty, or a colour for each corner of each triangle, in the order of the indices: 3 or 4 bytes.
    std::vector<std::uint8_t> rgbaVertices;

    std::uint32_t behaviour = 1; ///< written with the line attributes; 1 shows the face.
};

} // namespace prc
