#pragma once

#include "tool/render/Lighting.h"
#include "tool/render/RayTracer.h"
#include "tool/render/RenderScene.h"
#include "tool/render/SceneSpace.h"

#include <Eigen/Core>

#include <optional>

namespace Orvel::Render
{

/// An invisible plane that the scene stands on and casts its shadow on. In scene space.
class Floor
{
public:
    /// @param upwards unit length, in world coordinates; nothing: there is no floor.
    Floor(const RenderScene& scene, const SceneSpace& space, const std::optional<Eigen::Vector3d>& upwards);

    [[nodiscard]] const Eigen::Vector3f& Up() const { return up; }

    /// Where a ray from above meets the floor, so near to the scene that there may be a shadow.
    [[nodiscard]] std::optional<float> Meets(const Ray& ray) const;

    /// How much of what lies behind the floor is covered by the shadow at a place on it: 0 to 1.
    [[nodiscard]] float Shadow(const Eigen::Vector3f& place, const Visibility& visibility) const;

private:
    bool isThere;
    Eigen::Vector3f up;
    float height = 0.0F; ///< along `up`
};

} // namespace Orvel::Render
