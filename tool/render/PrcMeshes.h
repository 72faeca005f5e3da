#pragma once

#include "platform/prcfile/PRCTessellation.h"
#include "tool/render/RenderScene.h"

#include <cstdint>

namespace Orvel::Render
{

class PrcMaterials;

struct BuiltMesh
{
    Mesh mesh; ///< without corners when there is nothing to draw
    std::uint64_t leftOutTriangles = 0;
};

/// Takes the faces of a tessellation apart.
///
/// @param structure whose globals the faces' styles stand in.
/// @param materials receives the materials of faces that have their own.
[[nodiscard]] BuiltMesh BuildMesh(const prc::Model::Tessellation& tessellation, std::uint32_t structure,
                                  PrcMaterials& materials);

} // namespace Orvel::Render
