#pragma once

#include "tool/convert/MeshScene.h"

#include <cstdint>
#include <vector>

namespace Orvel::Convert
{

/// A primitive at one of its places.
struct PlacedPrimitive
{
    std::uint32_t node = None; ///< position in MeshScene::nodes
    const Primitive* source = nullptr;
    prc::Matrix world = prc::identityMatrix;
};

/// All primitives of a scene at all their places, in the order of the nodes.
/// @param scene must outlive the result.
[[nodiscard]] std::vector<PlacedPrimitive> PlacePrimitives(const MeshScene& scene);

/// The points of a placed primitive in the space of the scene: x, y, z each.
[[nodiscard]] std::vector<double> WorldPositions(const PlacedPrimitive& placed);

/// Its normals in the space of the scene, of length 1; empty when it has none.
[[nodiscard]] std::vector<float> WorldNormals(const PlacedPrimitive& placed);

/// True when the transform mirrors, so that triangles must be turned round to be seen from the same side.
[[nodiscard]] bool Mirrors(const prc::Matrix& matrix);

} // namespace Orvel::Convert
