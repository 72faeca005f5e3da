#include "tool/views/View.h"

#include <Eigen/Geometry>

#include <cmath>
#include <numbers>

namespace Orvel::Views
{

namespace
{

/// Short of this sine of the angle between them, two directions count as one.
constexpr double SmallestSine = 1e-9;

Eigen::Vector3d UnitOr(const Eigen::Vector3d& vector, const Eigen::Vector3d& otherwise)
{
    const double length = vector.stableNorm();
    return length > 0.0 && std::isfinite(length) ? Eigen::Vector3d(vector / length) : otherwise;
}

} // namespace

ViewFrame FrameOf(const View& view)
{
    ViewFrame frame;
    frame.forward = UnitOr(view.target - view.eye, Eigen::Vector3d::UnitY());
    const Eigen::Vector3d up = UnitOr(view.up, Eigen::Vector3d::UnitZ());
    Eigen::Vector3d right = frame.forward.cross(up);
    frame.right = right.norm() > SmallestSine ? right.normalized() : frame.forward.unitOrthogonal();
    frame.up = frame.right.cross(frame.forward);
    return frame;
}

HalfExtent HalfExtentFor(double half, Span span, double aspect)
{
    const bool spansWidth = span == Span::Width || (span == Span::Smaller && aspect < 1.0);
    return spansWidth ? HalfExtent{half, half / aspect} : HalfExtent{half * aspect, half};
}

HalfExtent HalfExtentOf(const View& view, double aspect)
{
    const double half = view.projection == Projection::Perspective
                            ? std::tan(view.fieldOfViewInDegrees * std::numbers::pi / 360.0)
                            : view.size / 2.0;
    return HalfExtentFor(half, view.span, aspect);
}

} // namespace Orvel::Views
