#pragma once

#include "tool/render/RenderScene.h"
#include "tool/render/SceneSpace.h"

#include <Eigen/Core>

#include <cstdint>
#include <memory>
#include <optional>

namespace Orvel::Render
{

/// A half-line in scene space. The direction needs no unit length; distances along the ray count in its lengths.
struct Ray
{
    Eigen::Vector3f origin;
    Eigen::Vector3f direction;
};

/// Where a ray meets a triangle: at (1 - u - v) * first + u * second + v * third corner.
struct RayHit
{
    std::uint32_t instance = 0;
    std::uint32_t triangle = 0;
    float u = 0.0F;
    float v = 0.0F;
    float distance = 0.0F;
};

/// Finds what rays meet. One thread builds and traces, in the same steps on every machine.
class RayTracer
{
public:
    /// @param scene and space: not owned, must outlive this object.
    /// @throws std::runtime_error when the ray tracing library fails; std::bad_alloc.
    RayTracer(const RenderScene& scene, const SceneSpace& space);
    RayTracer(const RayTracer&) = delete;
    RayTracer& operator=(const RayTracer&) = delete;
    ~RayTracer();

    /// @param from nothing nearer counts.
    [[nodiscard]] std::optional<RayHit> FirstHit(const Ray& ray, float from) const;

    /// Whether something that lets less than half of the light through lies between the origin and a distance.
    [[nodiscard]] bool IsBlocked(const Ray& ray, float to) const;

private:
    class Trees;

    std::unique_ptr<Trees> trees; ///< null for an empty scene
};

} // namespace Orvel::Render
