#include "tool/render/SceneSpace.h"

namespace Orvel::Render
{

SceneSpace::SceneSpace(const RenderScene& scene)
{
    const BoundingBall ball = BallAround(scene);
    fromWorld = Eigen::Scaling(1.0 / ball.radius) * Eigen::Translation3d(-ball.centre);
    fromMesh.reserve(scene.instances.size());
    for (const Instance& instance : scene.instances)
        fromMesh.push_back(fromWorld * instance.toWorld);
}

} // namespace Orvel::Render
