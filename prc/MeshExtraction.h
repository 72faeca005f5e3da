#pragma once

#include "platform/core/Types.h"

namespace prc
{
class oPRCFile;
} // namespace prc

namespace Orvel
{

class COrvel3DObject;

/// The PRC null index: no tessellation, or no style.
inline constexpr uint32 PRCNullIndex = 4294967295U;

/// @return true when the object has a geometry with at least one vertex, so that extracting it adds something.
[[nodiscard]] bool HasVertices(COrvel3DObject* object);

/// Builds a tessellation of one face from flat arrays and adds it to the file.
///
/// Normals are used when `normalCount` is above 0 and both of their arrays are present, texture coordinates likewise.
/// The index arrays may be one and the same. Nothing is kept of the arrays.
///
/// @param positions                 3 per vertex.
/// @param triangles                 3 vertex indices per triangle.
/// @param style                     style index of the face; PRCNullIndex: none.
/// @param normals                   3 per normal; may be null.
/// @param normalIndices             3 per triangle; may be null.
/// @param textureCoordinates        2 per entry; may be null.
/// @param textureCoordinateIndices  3 per triangle; may be null.
/// @return the index of the new tessellation; PRCNullIndex, with nothing added, when vertices or triangles are missing.
uint32 CreateTriangleMesh(uint32 vertexCount, const double* positions, uint32 triangleCount, const uint32* triangles,
                          uint32 style, uint32 normalCount, const double* normals, const uint32* normalIndices,
                          uint32 textureCoordinateCount, const double* textureCoordinates,
                          const uint32* textureCoordinateIndices, prc::oPRCFile& file);

} // namespace Orvel
