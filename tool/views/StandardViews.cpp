#include "tool/views/StandardViews.h"

#include <Eigen/Geometry>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <numbers>

namespace Orvel::Views
{

namespace
{

constexpr double FieldOfViewInDegrees = 30.0;

/// Share of the picture that stays free at each edge.
constexpr double Air = 0.04;

struct Description
{
    StandardView view;
    std::string_view name;
    Eigen::Vector3d toViewer; ///< towards right, front and up
    Eigen::Vector3d up;       ///< towards right, front and up
    Projection projection;
};

const Description& DescriptionOf(StandardView view)
{
    static const std::array<Description, AllStandardViews.size()> descriptions{{
        {StandardView::Iso, "Iso", {0.85, 1.0, 0.75}, {0, 0, 1}, Projection::Perspective},
        {StandardView::Front, "Front", {0, 1, 0}, {0, 0, 1}, Projection::Parallel},
        {StandardView::Back, "Back", {0, -1, 0}, {0, 0, 1}, Projection::Parallel},
        {StandardView::Left, "Left", {-1, 0, 0}, {0, 0, 1}, Projection::Parallel},
        {StandardView::Right, "Right", {1, 0, 0}, {0, 0, 1}, Projection::Parallel},
        {StandardView::Top, "Top", {0, 0, 1}, {0, -1, 0}, Projection::Parallel},
        {StandardView::Bottom, "Bottom", {0, 0, -1}, {0, 1, 0}, Projection::Parallel},
    }};
    return descriptions[static_cast<std::size_t>(view)];
}

bool EqualInAnyCase(std::string_view a, std::string_view b)
{
    return std::ranges::equal(
        a, b, {}, [](unsigned char c) { return std::tolower(c); }, [](unsigned char c) { return std::tolower(c); });
}

/// Where a shape begins and ends along a direction of unit length.
struct Reach
{
    double from;
    double to;

    [[nodiscard]] double Middle() const { return from + (to - from) / 2.0; }
    [[nodiscard]] double Length() const { return to - from; }
};

Reach ReachAlong(const Eigen::Vector3d& direction, const Support& shape)
{
    return {-shape(-direction), shape(direction)};
}

/// The place of the eye along one side of the picture, and the depth from which the shape just fits between the two
/// edges: the planes through the eye and the edges touch the shape.
struct Wedge
{
    double side;
    double depth;
};

Wedge TouchingWedge(const Eigen::Vector3d& side, const Eigen::Vector3d& forward, double tangent, const Support& shape)
{
    const double plus = shape(side - tangent * forward);
    const double minus = shape(-side - tangent * forward);
    return {(plus - minus) / 2.0, -(plus + minus) / (2.0 * tangent)};
}

/// @param extent of the shape, the largest of its three lengths in the frame; above 0.
void FitPerspective(View& view, const ViewFrame& frame, double aspect, double extent, const Support& shape)
{
    const HalfExtent seen = HalfExtentOf(view, aspect);
    const double inner = 1.0 - 2.0 * Air;
    const Wedge horizontal = TouchingWedge(frame.right, frame.forward, seen.horizontal * inner, shape);
    const Wedge vertical = TouchingWedge(frame.up, frame.forward, seen.vertical * inner, shape);
    const Reach depth = ReachAlong(frame.forward, shape);
    // Flat shapes seen from the edge would end at the eye.
    const double eyeDepth = std::min({horizontal.depth, vertical.depth, depth.from - 0.1 * extent});
    view.eye = horizontal.side * frame.right + vertical.side * frame.up + eyeDepth * frame.forward;
    view.target = view.eye + (depth.Middle() - eyeDepth) * frame.forward;
}

void FitParallel(View& view, const ViewFrame& frame, double aspect, double extent, const Support& shape)
{
    const Reach horizontal = ReachAlong(frame.right, shape);
    const Reach vertical = ReachAlong(frame.up, shape);
    const Reach depth = ReachAlong(frame.forward, shape);
    const HalfExtent ofOne = HalfExtentFor(1.0, view.span, aspect);
    const double needed = std::max(horizontal.Length() / ofOne.horizontal, vertical.Length() / ofOne.vertical);
    view.size = (needed > 0.0 ? needed : extent) / (1.0 - 2.0 * Air);
    view.target = horizontal.Middle() * frame.right + vertical.Middle() * frame.up + depth.Middle() * frame.forward;
    view.eye = view.target - 2.0 * extent * frame.forward;
}

} // namespace

std::string_view NameOf(StandardView view)
{
    return DescriptionOf(view).name;
}

std::optional<StandardView> StandardViewNamed(std::string_view name)
{
    for (const StandardView view : AllStandardViews) {
        if (EqualInAnyCase(name, NameOf(view)))
            return view;
    }
    return std::nullopt;
}

void FitView(View& view, double aspect, const Support& shape)
{
    const ViewFrame frame = FrameOf(view);
    double extent = 0.0;
    for (const Eigen::Vector3d& axis : {frame.right, frame.up, frame.forward}) {
        const Reach reach = ReachAlong(axis, shape);
        if (!std::isfinite(reach.Length()))
            return;
        extent = std::max(extent, reach.Length());
    }
    if (extent <= 0.0)
        extent = 1.0; // a single point
    if (view.projection == Projection::Perspective)
        FitPerspective(view, frame, aspect, extent, shape);
    else
        FitParallel(view, frame, aspect, extent, shape);
}

View MakeStandardView(StandardView standard, const Orientation& orientation, double aspect, const Support& shape)
{
    const Description& description = DescriptionOf(standard);
    Eigen::Matrix3d axes;
    axes << orientation.up.cross(orientation.front), orientation.front, orientation.up;
    View view;
    view.name = description.name;
    view.target.setZero();
    view.eye = (axes * description.toViewer).normalized();
    view.up = axes * description.up;
    view.projection = description.projection;
    view.fieldOfViewInDegrees = FieldOfViewInDegrees;
    FitView(view, aspect, shape);
    return view;
}

} // namespace Orvel::Views
