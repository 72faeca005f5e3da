#include "tool/render/Floor.h"

#include <algorithm>

namespace Orvel::Render
{

namespace
{

/// In radii of the scene: below its lowest point, so that a flat one does not fight with the floor.
constexpr double Gap = 1e-3;

// In radii of the scene, from its middle: shadows become weaker and end.
constexpr float FadeStart = 1.1F;
constexpr float FadeEnd = 1.8F;

constexpr float SkyShadow = 0.55F;
constexpr float KeyShadow = 0.22F;

} // namespace

Floor::Floor(const RenderScene& scene, const SceneSpace& space, const std::optional<Eigen::Vector3d>& upwards)
    : isThere(upwards.has_value() && !scene.instances.empty())
    , up(upwards.value_or(Eigen::Vector3d::UnitZ()).cast<float>())
{
    if (!isThere)
        return;
    const Eigen::Vector3d lowest = -scene.Support(-*upwards) * *upwards;
    height = static_cast<float>(upwards->dot(space.FromWorld() * lowest) - Gap);
}

std::optional<float> Floor::Meets(const Ray& ray) const
{
    const float fall = -up.dot(ray.direction);
    if (!isThere || !(fall > 0.0F))
        return std::nullopt;
    const float distance = (up.dot(ray.origin) - height) / fall;
    const bool isNear = distance > 0.0F && (ray.origin + distance * ray.direction).squaredNorm() < FadeEnd * FadeEnd;
    return isNear ? std::optional(distance) : std::nullopt;
}

float Floor::Shadow(const Eigen::Vector3f& place, const Visibility& visibility) const
{
    const float share = std::clamp((FadeEnd - place.norm()) / (FadeEnd - FadeStart), 0.0F, 1.0F);
    return share * share * (SkyShadow * (1.0F - visibility.sky) + KeyShadow * (1.0F - visibility.key));
}

} // namespace Orvel::Render
