#pragma once

#include "tool/render/RenderScene.h"

#include <Eigen/Geometry>

#include <vector>

namespace Orvel::Render
{

/// The space that rays are traced in: the scene's bounding ball is the unit ball around the origin, so that single
/// precision suffices wherever and however large the scene is.
class SceneSpace
{
public:
    explicit SceneSpace(const RenderScene& scene);

    [[nodiscard]] const Eigen::Affine3d& FromWorld() const { return fromWorld; }

    /// From the coordinates in which the mesh of an instance is kept.
    [[nodiscard]] const Eigen::Affine3d& FromMesh(std::size_t instance) const { return fromMesh[instance]; }

private:
    Eigen::Affine3d fromWorld;
    std::vector<Eigen::Affine3d> fromMesh; ///< by instance
};

} // namespace Orvel::Render
