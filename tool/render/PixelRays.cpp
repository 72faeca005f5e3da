#include "tool/render/PixelRays.h"

namespace Orvel::Render
{

PixelRays::PixelRays(const Views::View& view, const SceneSpace& space, std::uint32_t width, std::uint32_t height)
{
    const Views::ViewFrame frame = Views::FrameOf(view);
    const Views::HalfExtent half = Views::HalfExtentOf(view, static_cast<double>(width) / height);
    const Eigen::Vector3d eye = space.FromWorld() * view.eye;
    Eigen::Vector3d stepX = 2.0 * half.horizontal / width * frame.right;
    Eigen::Vector3d stepY = -2.0 * half.vertical / height * frame.up;
    Eigen::Vector3d toCorner = half.vertical * frame.up - half.horizontal * frame.right;
    const Eigen::Vector3f none = Eigen::Vector3f::Zero();
    if (view.projection == Views::Projection::Perspective) {
        corner = {eye.cast<float>(), (frame.forward + toCorner).cast<float>()};
        alongX = {none, stepX.cast<float>()};
        alongY = {none, stepY.cast<float>()};
        return;
    }
    // What is seen has no beginning: the eye goes back until nothing of the scene, the unit ball, is behind it.
    const Eigen::Vector3d start = eye - (eye.dot(frame.forward) + 1.1) * frame.forward;
    const Eigen::Matrix3d toScene = space.FromWorld().linear();
    corner = {(start + toScene * toCorner).cast<float>(), frame.forward.cast<float>()};
    alongX = {(toScene * stepX).cast<float>(), none};
    alongY = {(toScene * stepY).cast<float>(), none};
}

PixelRay PixelRays::Through(float x, float y) const
{
    return {{corner.origin + x * alongX.origin + y * alongY.origin,
             corner.direction + x * alongX.direction + y * alongY.direction},
            alongX,
            alongY};
}

float PixelRays::PixelSize(float distance) const
{
    return (alongX.origin + distance * alongX.direction).norm();
}

} // namespace Orvel::Render
