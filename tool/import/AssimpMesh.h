#pragma once

#include "tool/import/AssimpLoaders.h"
#include "tool/import/ImportReport.h"
#include "tool/import/ImportedScene.h"

#include <assimp/mesh.h>

#include <cstddef>
#include <string>

namespace Orvel::Import
{

/// What can be seen of a mesh only before its polygons are split.
struct MeshSurvey
{
    bool ownPoints = false;        ///< no two corners of its polygons share a point
    bool hasPolygons = false;      ///< there is something to split
    std::size_t triangleCount = 0; ///< of its polygons when they are split without loss
};

[[nodiscard]] MeshSurvey SurveyMesh(const aiMesh& mesh);

/// Which of a mesh's texture coordinate sets goes with the picture of its material; None: no picture.
using TextureCoordinateSet = int;

/// Takes the triangles of a mesh over into `scene`, as one geometry and one set of texture coordinates.
///
/// The arrays of `mesh` are released on the way, so that a big mesh is not in memory twice.
///
/// @param mesh   polygons are split into triangles already; faces of one or two points are counted in `report`.
/// @param survey of the same mesh before that.
/// @param set    texture coordinates are left away without a picture: the exported format has no place for them.
/// @return geometry None when the mesh has no triangles. Name and material are left to the caller.
/// @throws ImportError for numbers that are not finite and for indices of points that are not there.
[[nodiscard]] ImportedPart TakeMesh(aiMesh& mesh, const MeshSurvey& survey, TextureCoordinateSet set,
                                    const AssimpLoader& loader, ImportedScene& scene, ImportReport& report);

} // namespace Orvel::Import
