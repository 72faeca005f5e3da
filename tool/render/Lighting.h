#pragma once

#include "tool/render/RayTracer.h"
#include "tool/render/Surface.h"
#include "tool/views/View.h"

#include <Eigen/Core>

#include <cstdint>
#include <vector>

namespace Orvel::Render
{

/// How much of the lights reaches a point: 0 nothing to 1 all.
struct Visibility
{
    float sky = 1.0F;
    float key = 1.0F;
};

/// Some of the directions into which light is looked for, which together cover all directions evenly.
struct DirectionSet
{
    std::uint32_t first = 0;
    std::uint32_t count = 1;
    std::uint32_t step = 1;
};

/// A studio around the scene that turns with the viewer: a bright sky, a large soft key light from above and the left,
/// a weak one at the camera, and panels that glossy surfaces mirror.
class Lighting
{
public:
    /// @param up         unit length: where the sky is.
    /// @param directions how many there are to look for light, 1 or more.
    Lighting(const Views::ViewFrame& viewer, const Eigen::Vector3d& up, std::uint32_t directions);

    /// Looks where sky and key light are hidden.
    ///
    /// @param from       off the surface.
    /// @param normal     of the surface, unit length.
    /// @param directions at least one, none beyond the last.
    [[nodiscard]] Visibility Trace(const RayTracer& tracer, const Eigen::Vector3f& from, const Eigen::Vector3f& normal,
                                   const DirectionSet& directions) const;

    /// Light that leaves a surface towards its viewer, and how much of what lies behind it is covered.
    struct Shaded
    {
        Eigen::Vector3f light; ///< linear, multiplied by the coverage already
        float coverage;        ///< 0 to 1
    };

    /// @param toViewer unit length.
    [[nodiscard]] Shaded Shade(const Surface& surface, const Eigen::Vector3f& toViewer,
                               const Visibility& visibility) const;

private:
    /// A point of the unit disk and its height on the unit ball above.
    struct BallPoint
    {
        float x;
        float y;
        float height;
    };

    [[nodiscard]] Eigen::Vector3f Mirrored(const Eigen::Vector3f& direction, float roughness) const;

    Eigen::Vector3f skyward;
    Eigen::Vector3f key; ///< towards the light, unit length
    Eigen::Vector3f keySide;
    Eigen::Vector3f keyUp;
    Eigen::Vector3f rim; ///< towards a panel behind the scene
    std::vector<BallPoint> points;
};

/// Brings light into the range of a picture: dark and middle tones stay, bright ones approach 1.
[[nodiscard]] Eigen::Vector3f ToneMapped(const Eigen::Vector3f& light);

} // namespace Orvel::Render
