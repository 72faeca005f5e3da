#pragma once

#include "tool/render/Texture.h"

#include <Eigen/Core>
#include <Eigen/Geometry>

#include <cstdint>
#include <limits>
#include <vector>

namespace Orvel::Render
{

inline constexpr std::uint32_t None = std::numeric_limits<std::uint32_t>::max();

/// How a surface looks. Colours are linear.
struct Material
{
    Eigen::Vector3f diffuse{0.6F, 0.6F, 0.6F};
    Eigen::Vector3f specular{0.0F, 0.0F, 0.0F}; ///< share of light that is mirrored
    Eigen::Vector3f emissive{0.0F, 0.0F, 0.0F};
    float roughness = 0.5F; ///< 0: a mirror, 1: mirrors without any form
    float opacity = 1.0F;
    std::uint32_t texture = None; ///< index into RenderScene::textures; multiplied with diffuse and emissive colour
    Wrap wrapU = Wrap::Repeat;
    Wrap wrapV = Wrap::Repeat;
    Eigen::Array2f textureScale{1.0F, 1.0F}; ///< applied to texture coordinates before the offset
    Eigen::Array2f textureOffset{0.0F, 0.0F};
};

/// One shape. Triangles have three entries in each array of corners. A point p of the file stands here as
/// (p - centre) / scale, within -1 to 1.
struct Mesh
{
    std::vector<float> points;                ///< x, y, z
    std::vector<std::uint32_t> corners;       ///< the point of each corner
    std::vector<float> normals;               ///< x, y, z
    std::vector<std::uint32_t> cornerNormals; ///< None: the corner has the triangle's own; empty: no corner has any
    std::vector<float> textureCoordinates;    ///< u, v; v = 0 is the bottom edge of the picture
    std::vector<std::uint32_t> cornerTextureCoordinates; ///< None: u = v = 0; empty: no corner has any
    std::vector<std::uint8_t> cornerColours; ///< RGBA of each corner, in place of the diffuse colour; empty: none
    std::vector<std::uint32_t> materials; ///< of each triangle, None: that of the instance; empty: that of the instance
    Eigen::Vector3d centre{0.0, 0.0, 0.0};
    double scale = 1.0;

    [[nodiscard]] std::size_t TriangleCount() const { return corners.size() / 3; }
};

/// A shape in its place.
struct Instance
{
    std::uint32_t mesh = 0;
    std::uint32_t material = 0;
    Eigen::Affine3d toWorld; ///< from the coordinates in which the mesh is kept; invertible
};

/// What a picture shows: everything that is visible, ready for tracing. World coordinates are those of the file.
struct RenderScene
{
    std::vector<Mesh> meshes;
    std::vector<Instance> instances;
    std::vector<Material> materials; ///< at least one when there are instances
    std::vector<Texture> textures;

    /// How far the scene reaches in a direction, see Views::Support; -infinity for an empty scene.
    [[nodiscard]] double Support(const Eigen::Vector3d& direction) const;
    [[nodiscard]] auto SupportFunction() const
    {
        return [this](const Eigen::Vector3d& direction) { return Support(direction); };
    }
};

/// A ball around everything in the scene; radius 1 for an empty scene, and never 0.
struct BoundingBall
{
    Eigen::Vector3d centre{0.0, 0.0, 0.0};
    double radius = 1.0;
};

[[nodiscard]] BoundingBall BallAround(const RenderScene& scene);

} // namespace Orvel::Render
