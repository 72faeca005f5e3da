#pragma once

#include "platform/core/COrvelMatrix.h"
#include "tool/import/ComposeTransform.h"

#include <array>
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace Orvel::Import
{

struct ImportedMaterial;

enum class Interpolation
{
    Step,       ///< a key's value holds until the next key
    Linear,     ///< straight; rotations turn at constant speed, the shorter way
    CubicSpline ///< Hermite curve through the keys along their tangents; rotations are brought to unit length
};

/// A value over time. Before the first key it is that key's, behind the last one that one's (TrackEvaluation.h).
struct ImportedTrack
{
    Interpolation interpolation = Interpolation::Linear;
    std::vector<double> times; ///< seconds, ascending; empty: the value does not move
    /// As many numbers for each key as the value has; of a cubic spline the tangent before the key (per second), the
    /// value, and the tangent behind it. Values that are rotations have unit length.
    std::vector<double> values;

    [[nodiscard]] bool Moves() const { return !times.empty(); }
};

/// A placement in three parts.
struct ImportedPose
{
    std::array<double, 3> translation{0.0, 0.0, 0.0};
    Quaternion rotation{0.0, 0.0, 0.0, 1.0};
    std::array<double, 3> scale{1.0, 1.0, 1.0};
};

/// A factor of a node's local matrix: translation * rotation * scale where one of them moves, else a fixed matrix.
struct ImportedFactor
{
    COrvelMatrix fixed; ///< used when nothing moves
    ImportedPose rest;  ///< used for what does not move when something else does
    ImportedTrack translation;
    ImportedTrack rotation; ///< x, y, z, w
    ImportedTrack scale;

    [[nodiscard]] bool Moves() const { return translation.Moves() || rotation.Moves() || scale.Moves(); }
};

/// The motion of one node: its local matrix is the product of the factors, in their order.
struct ImportedNodeChannel
{
    int node = -1; ///< index into ImportedScene::nodes
    std::vector<ImportedFactor> factors;
};

/// How the looks of one material change.
struct ImportedMaterialChannel
{
    int material = -1; ///< index into ImportedScene::materials
    /// The material at a time in seconds, with the name and picture that it always has.
    std::function<ImportedMaterial(double seconds)> looksAt;
};

/// A piece of animation with a name. It begins at time 0, whenever its first key comes.
struct ImportedClip
{
    std::string name;                               ///< never empty, and no other clip of the scene has it
    double seconds = 0.0;                           ///< time of the last key
    std::vector<ImportedNodeChannel> nodes;         ///< each node once
    std::vector<ImportedMaterialChannel> materials; ///< each material once
};

} // namespace Orvel::Import
