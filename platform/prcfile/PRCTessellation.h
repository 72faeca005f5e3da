#pragma once

#include "platform/prcfile/EntityTypes.h"
#include "platform/prcfile/Export.h"
#include "platform/prcfile/NullIndex.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace prc::Model
{

/// One face of a tessellation: runs of triangles out of its index array.
struct Face
{
    std::vector<std::uint32_t> styles; ///< positions in Globals::styles, nullIndex for none; the first is the face's.
    std::uint32_t usedEntities = 0;    ///< bits that say which kinds of runs the face has, see FaceRun.
    std::uint32_t startWire = 0;
    std::vector<std::uint32_t> wireSizes;
    std::uint32_t startTriangulated = 0; ///< position in Tessellation::triangulatedIndices.
    std::vector<std::uint32_t> sizesTriangulated;
    std::uint32_t textureCoordinateIndices = 0; ///< for each corner of a textured run.
    std::uint32_t colourComponents = 0;         ///< of vertexColours: 3 or 4; 0 without.
    std::vector<std::uint8_t> vertexColours;    ///< for each corner of each run, in the order of the indices.
    std::uint32_t behaviour = 0;
    std::uint32_t triangleCount = 0; ///< after taking fans and strips apart; 0 for a face that cannot be used.
    bool isUsable = true;            ///< false: the reader has found its indices or sizes wrong, or knows no such runs.
};

/// A mesh: flat arrays of coordinates that any number of faces index.
struct Tessellation
{
    EntityType type = EntityType::Tessellation3D;
    std::vector<double> coordinates;        ///< x, y, z of each point.
    std::vector<double> normalCoordinates;  ///< x, y, z of each normal; empty when they are to be computed.
    std::vector<double> textureCoordinates; ///< u, v of each entry; v = 0 is the bottom edge of the picture.
    std::vector<std::uint32_t> wireIndices; ///< as stored.
    /// As stored: offsets into the flat arrays, so 3 x the point or normal, 2 x the texture coordinates.
    std::vector<std::uint32_t> triangulatedIndices;
    std::vector<Face> faces;
    bool hasFaces = false;
    bool hasLoops = false;
    bool isCalculated = false;
    bool mustRecalculateNormals = false;
    double creaseAngleInDegrees = 0.0; ///< only with mustRecalculateNormals.

    [[nodiscard]] std::size_t pointCount() const { return coordinates.size() / 3; }
    [[nodiscard]] std::size_t normalCount() const { return normalCoordinates.size() / 3; }
};

/// The corners of triangles, three each, counter-clockwise seen from outside. The arrays run in parallel.
struct TriangleCorners
{
    std::vector<std::uint32_t> points;             ///< the point's number: its x stands at 3 x this.
    std::vector<std::uint32_t> normals;            ///< nullIndex for a corner without.
    std::vector<std::uint32_t> textureCoordinates; ///< the pair's number: its u stands at 2 x this; nullIndex: none.
    std::vector<std::uint32_t> colours;            ///< the colour's number in Face::vertexColours; nullIndex: none.
};

/// Takes the runs of a face apart into single triangles, and appends their corners.
///
/// @param face of `tessellation` as the reader left both; a face that is not usable appends nothing.
PRCFILE_API void appendTriangles(const Tessellation& tessellation, const Face& face, TriangleCorners& corners);

} // namespace prc::Model
