#pragma once

#include "platform/core/COrvelMatrix.h"
#include "tool/import/GltfDocument.h"
#include "tool/import/ImportedAnimation.h"

namespace Orvel::Import
{

/// The local transform of a node: its matrix as it stands, otherwise composed of its pose.
/// @throws ImportError when a number leaves the range of double, or the matrix is a projection (bottom row).
[[nodiscard]] COrvelMatrix LocalTransform(const tinygltf::Node& node);

/// Translation, rotation and scale of a node as they stand; those of a node with a matrix are the neutral ones.
[[nodiscard]] ImportedPose LocalPose(const tinygltf::Node& node);

} // namespace Orvel::Import
