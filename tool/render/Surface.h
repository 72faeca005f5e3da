#pragma once

#include "tool/render/RayTracer.h"
#include "tool/render/RenderScene.h"
#include "tool/render/SceneSpace.h"

#include <Eigen/Core>

#include <cstdint>
#include <vector>

namespace Orvel::Render
{

/// A ray through a picture and how it changes to the next pixel and to the next row.
struct PixelRay
{
    Ray ray;
    Ray alongX; ///< differences of origin and direction
    Ray alongY;
};

/// A point of a surface as its viewer sees it, in scene space. Colours are linear.
struct Surface
{
    Eigen::Vector3f position;
    Eigen::Vector3f face;   ///< unit normal of the triangle, on the viewer's side
    Eigen::Vector3f normal; ///< unit normal for shading, on the viewer's side
    Eigen::Vector3f diffuse;
    Eigen::Vector3f specular;
    Eigen::Vector3f emissive;
    float roughness;
    float opacity;
    std::uint32_t instance;
};

/// Finds what a ray has met.
class SurfaceFinder
{
public:
    /// @param shownScene and space: not owned, must outlive this object.
    SurfaceFinder(const RenderScene& shownScene, const SceneSpace& space);

    /// @param share side of the part of a pixel that the ray stands for: 1 for all of it.
    [[nodiscard]] Surface At(const RayHit& hit, const PixelRay& ray, float share) const;

    /// Where rays to the light start: off the surface, and where triangles stand for a curved one, off them.
    ///
    /// @param surface what At found at the hit.
    [[nodiscard]] Eigen::Vector3f RaisedFrom(const Surface& surface, const RayHit& hit) const;

private:
    struct Triangle;

    [[nodiscard]] Triangle TriangleOf(const RayHit& hit) const;
    [[nodiscard]] Eigen::Vector3f NormalAt(const RayHit& hit, const Surface& surface,
                                           const Eigen::Vector3f& toViewer) const;
    void TakeMaterial(const RayHit& hit, const Triangle& triangle, const PixelRay& ray, float share,
                      Surface& surface) const;

    const RenderScene& scene;
    std::vector<Eigen::Affine3f> fromMesh;     ///< by instance
    std::vector<Eigen::Matrix3f> normalMatrix; ///< by instance
};

/// Opacity where a ray meets a surface, 0 to 1.
[[nodiscard]] float OpacityAt(const RenderScene& scene, const RayHit& hit);

/// False when everything in the material is opaque.
[[nodiscard]] bool MayLetLightThrough(const RenderScene& scene, std::uint32_t material);

} // namespace Orvel::Render
