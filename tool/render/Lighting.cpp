#include "tool/render/Lighting.h"

#include "tool/render/RadicalInverse.h"

#include <Eigen/Geometry>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace Orvel::Render
{

namespace
{

using Eigen::Vector3f;

// Strengths are chosen so that a white surface that faces the key light under an open sky comes out white.
const Vector3f SkyLight{0.46F, 0.48F, 0.52F};
const Vector3f GroundLight{0.20F, 0.19F, 0.18F};
const Vector3f KeyLight{0.66F, 0.64F, 0.60F};
constexpr float CameraLight = 0.08F;

/// Tangent of half the angle that the key light spans.
constexpr float KeySize = 0.12F;

/// In radii of the scene: what is farther away does not darken the sky, or rooms would be black.
constexpr float SkyReach = 0.6F;
constexpr float KeyReach = 4.0F;

/// Share of a classic highlight's strength that the surroundings are mirrored with.
constexpr float MirrorShare = 0.6F;

constexpr float ShoulderStart = 0.75F;

float Smooth(float from, float to, float value)
{
    const float share = std::clamp((value - from) / (to - from), 0.0F, 1.0F);
    return share * share * (3.0F - 2.0F * share);
}

/// Two unit vectors at right angles to a unit vector and each other, which turn smoothly with it (Duff et al.: Building
/// an Orthonormal Basis, Revisited, Journal of Computer Graphics Techniques 6(1), 2017).
void MakeBasis(const Vector3f& normal, Vector3f& first, Vector3f& second)
{
    const float sign = std::copysign(1.0F, normal[2]);
    const float a = -1.0F / (sign + normal[2]);
    const float b = normal[0] * normal[1] * a;
    first = {1.0F + sign * normal[0] * normal[0] * a, sign * b, -sign * normal[0]};
    second = {b, sign + normal[1] * normal[1] * a, -normal[1]};
}

} // namespace

Lighting::Lighting(const Views::ViewFrame& viewer, const Eigen::Vector3d& up, std::uint32_t directions)
{
    // Towards the viewer along the ground, and where he looks straight down, towards his feet.
    Eigen::Vector3d back = -viewer.forward - up * up.dot(-viewer.forward);
    if (back.norm() < 0.3)
        back = -viewer.up - up * up.dot(-viewer.up);
    back.normalize();
    const Eigen::Vector3d right = up.cross(back);
    skyward = up.cast<float>();
    key = (0.55 * back - 0.62 * right + 0.95 * up).normalized().cast<float>();
    rim = (-0.8 * back + 0.9 * right + 0.35 * up).normalized().cast<float>();
    MakeBasis(key, keySide, keyUp);
    points.reserve(directions);
    for (std::uint32_t number = 0; number < directions; ++number) {
        const float radiusSquared = (static_cast<float>(number) + 0.5F) / static_cast<float>(directions);
        const float angle = 2.0F * std::numbers::pi_v<float> * RadicalInverse(number);
        const float radius = std::sqrt(radiusSquared);
        points.push_back({radius * std::cos(angle), radius * std::sin(angle), std::sqrt(1.0F - radiusSquared)});
    }
}

Visibility Lighting::Trace(const RayTracer& tracer, const Vector3f& from, const Vector3f& normal,
                           const DirectionSet& directions) const
{
    Vector3f side;
    Vector3f front;
    MakeBasis(normal, side, front);
    const bool facesKey = normal.dot(key) > 0.0F;
    std::uint32_t sky = 0;
    std::uint32_t lit = 0;
    for (std::uint32_t k = 0; k < directions.count; ++k) {
        const BallPoint& point = points[directions.first + k * directions.step];
        // Projected from the disk up to the half ball, directions come as often as the cosine weighs them.
        const Vector3f direction = point.x * side + point.y * front + point.height * normal;
        if (!tracer.IsBlocked({from, direction}, SkyReach))
            ++sky;
        const Vector3f toKey = key + KeySize * (point.x * keySide + point.y * keyUp);
        if (facesKey && !tracer.IsBlocked({from, toKey}, KeyReach))
            ++lit;
    }
    const auto count = static_cast<float>(directions.count);
    return {static_cast<float>(sky) / count, facesKey ? static_cast<float>(lit) / count : 1.0F};
}

/// The rougher the surface, the more the panels run into each other.
Vector3f Lighting::Mirrored(const Vector3f& direction, float roughness) const
{
    const float height = skyward.dot(direction);
    const float blur = 0.08F + 0.9F * roughness;
    Vector3f light = GroundLight + (SkyLight - GroundLight) * Smooth(-blur, blur, height);
    // A band at the horizon gives metals the dark and bright edges that tell them from paint.
    light *= 1.0F - 0.35F * (1.0F - roughness) * std::exp(-height * height / (0.02F + 0.3F * roughness));
    const float panel = Smooth(0.80F - 0.9F * roughness, 0.93F + 0.05F * roughness, key.dot(direction));
    const float back = Smooth(0.80F - 0.9F * roughness, 0.95F + 0.04F * roughness, rim.dot(direction));
    const float concentration = 1.0F - 0.65F * roughness;
    return light + Vector3f::Constant((1.7F * panel + 0.8F * back) * concentration);
}

Lighting::Shaded Lighting::Shade(const Surface& surface, const Vector3f& toViewer, const Visibility& visibility) const
{
    const float facing = std::clamp(surface.normal.dot(toViewer), 0.0F, 1.0F);
    const float keyFacing = std::max(surface.normal.dot(key), 0.0F);
    const float skyShare = 0.5F + 0.5F * skyward.dot(surface.normal);
    const Vector3f ambient = GroundLight + (SkyLight - GroundLight) * skyShare;
    const Vector3f received =
        ambient * visibility.sky + KeyLight * (keyFacing * visibility.key) + Vector3f::Constant(CameraLight * facing);

    Shaded shaded{Vector3f::Zero(), surface.opacity};
    const Vector3f specular = MirrorShare * surface.specular;
    const float mirrors = specular.maxCoeff();
    float opacity = surface.opacity;
    if (mirrors > 0.0F) {
        // Schlick's approximation, with less of a rise on rough surfaces.
        const float grazing = std::pow(1.0F - facing, 5.0F) * (1.0F - surface.roughness);
        const Vector3f share = specular + grazing * (Vector3f::Ones() - specular);
        const Vector3f direction = 2.0F * surface.normal.dot(toViewer) * surface.normal - toViewer;
        const float seen = 0.3F + 0.7F * visibility.sky * (0.5F + 0.5F * visibility.key);
        shaded.light = share.cwiseProduct(Mirrored(direction, surface.roughness)) * seen;
        // Glass: clear where it is looked through straight, as stated where the way through it is longest.
        if (opacity < 1.0F)
            opacity = std::pow(opacity, 1.0F + facing);
        shaded.coverage = 1.0F - (1.0F - opacity) * (1.0F - share.maxCoeff());
    }
    const float notMirrored = 1.0F - std::min(mirrors, 1.0F);
    shaded.light += opacity * (surface.diffuse.cwiseProduct(received) * notMirrored + surface.emissive);
    return shaded;
}

Vector3f ToneMapped(const Vector3f& light)
{
    constexpr float Rest = 1.0F - ShoulderStart;
    return light.unaryExpr([](float value) {
        if (!(value > ShoulderStart))
            return value > 0.0F ? value : 0.0F;
        return ShoulderStart + Rest * (1.0F - std::exp((ShoulderStart - value) / Rest));
    });
}

} // namespace Orvel::Render
