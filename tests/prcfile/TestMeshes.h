#pragma once

#include "platform/prcfile/oPRCFile.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace prc::Test
{

/// Which arrays a test mesh has beside its points.
struct MeshArrays
{
    bool normals = false;
    bool texture = false;
};

/// An open strip of three triangles over five points, no two coordinates alike, with its arrays in the order that
/// add3DTess expects.
///
/// @param style of the face, nullIndex for none.
[[nodiscard]] std::unique_ptr<PRC3DTess> StripMesh(MeshArrays arrays = {}, std::uint32_t style = nullIndex);

/// Hands over the mesh and expects the pointer to be taken.
std::uint32_t Add(oPRCFile& file, std::unique_ptr<PRC3DTess> mesh);

/// A matrix with a quarter turn about z, a scale along x and the translation (1, 2, 3), row by row.
[[nodiscard]] std::vector<double> QuarterTurn();

/// A material that no other number gives.
[[nodiscard]] PRCmaterial NumberedMaterial(unsigned number);

} // namespace prc::Test
