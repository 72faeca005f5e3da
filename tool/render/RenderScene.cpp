#include "tool/render/RenderScene.h"

#include <algorithm>
#include <cmath>

namespace Orvel::Render
{

namespace
{

constexpr double Infinity = std::numeric_limits<double>::infinity();

double LargestProduct(const std::vector<float>& points, const Eigen::Vector3d& direction)
{
    double largest = -Infinity;
    for (std::size_t at = 0; at + 2 < points.size(); at += 3)
        largest = std::max(largest, direction[0] * static_cast<double>(points[at]) +
                                        direction[1] * static_cast<double>(points[at + 1]) +
                                        direction[2] * static_cast<double>(points[at + 2]));
    return largest;
}

} // namespace

double RenderScene::Support(const Eigen::Vector3d& direction) const
{
    double farthest = -Infinity;
    for (const Instance& instance : instances) {
        const Eigen::Vector3d local = instance.toWorld.linear().transpose() * direction;
        const double origin = direction.dot(instance.toWorld.translation());
        // The points of a mesh lie within -1 to 1: most instances need no look at them.
        const double bound = origin + local.cwiseAbs().sum();
        if (bound > farthest)
            farthest = std::max(farthest, origin + LargestProduct(meshes[instance.mesh].points, local));
    }
    return farthest;
}

BoundingBall BallAround(const RenderScene& scene)
{
    if (scene.instances.empty())
        return {};
    BoundingBall ball;
    Eigen::Vector3d half;
    for (int axis = 0; axis < 3; ++axis) {
        const double to = scene.Support(Eigen::Vector3d::Unit(axis));
        const double from = -scene.Support(-Eigen::Vector3d::Unit(axis));
        ball.centre[axis] = from / 2.0 + to / 2.0;
        half[axis] = to / 2.0 - from / 2.0;
    }
    const double radius = half.norm();
    if (radius > 0.0)
        ball.radius = radius;
    return ball;
}

} // namespace Orvel::Render
