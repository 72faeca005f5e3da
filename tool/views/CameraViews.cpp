#include "tool/views/CameraViews.h"

#include "platform/core/COrvelCamera.h"

#include <algorithm>
#include <cmath>

namespace Orvel::Views
{

namespace
{

/// Anything beyond is seen as through a fish's eye.
constexpr double LargestAngleInDegrees = 170.0;
constexpr double SmallestAngleInDegrees = 0.1;

Eigen::Vector3d ToEigen(const COrvel3DVertex& vertex)
{
    return {vertex.X(), vertex.Y(), vertex.Z()};
}

double DistanceToMiddle(const View& view, const Eigen::Vector3d& forward, const Support& shape)
{
    const double depth = shape(forward) + shape(-forward);
    const double middle = (shape(forward) - shape(-forward)) / 2.0 - forward.dot(view.eye);
    if (!std::isfinite(depth) || !std::isfinite(middle))
        return 1.0;
    // A middle beside or behind the eye is no point to turn around: one as far away as the shape is deep stands in.
    constexpr double Nearest = 0.01; // of the depth
    const double fallback = depth > 0.0 ? depth : 1.0;
    return middle > Nearest * fallback ? middle : fallback;
}

View ViewOf(const Import::DocumentCamera& camera, const Support& shape)
{
    const COrvelBasicCamera placed = camera.node->ComputeBasicCamera();
    View view;
    view.name = camera.node->Name().toStdString();
    view.eye = ToEigen(placed.Position());
    view.up = ToEigen(placed.CamUp());
    const Eigen::Vector3d forward = ToEigen(placed.CamDir());
    view.target = view.eye + DistanceToMiddle(view, forward, shape) * forward;
    view.span = Span::Height;
    if (camera.values.perspective) {
        view.fieldOfViewInDegrees =
            std::clamp(camera.values.verticalFieldOfViewInDegrees, SmallestAngleInDegrees, LargestAngleInDegrees);
        return view;
    }
    view.projection = Projection::Parallel;
    const double scale = ToEigen(camera.node->LocalToWorldMatrix().Axis(1)).norm();
    const double height = camera.values.orthographicHeight * scale;
    view.size = std::isfinite(height) && height > 0.0 ? height : 1.0;
    return view;
}

} // namespace

std::vector<View> CameraViews(const std::vector<Import::DocumentCamera>& cameras, const Support& shape)
{
    std::vector<View> views;
    views.reserve(cameras.size());
    for (const Import::DocumentCamera& camera : cameras)
        views.push_back(ViewOf(camera, shape));
    return views;
}

} // namespace Orvel::Views
