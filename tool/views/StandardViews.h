#pragma once

#include "tool/views/View.h"

#include <array>
#include <functional>
#include <optional>
#include <string_view>

namespace Orvel::Views
{

enum class StandardView
{
    Iso, ///< from the front, right and above
    Front,
    Back,
    Left,
    Right,
    Top,
    Bottom
};

inline constexpr std::array AllStandardViews{StandardView::Iso,   StandardView::Front, StandardView::Back,
                                             StandardView::Left,  StandardView::Right, StandardView::Top,
                                             StandardView::Bottom};

/// "Iso", "Front", ...
[[nodiscard]] std::string_view NameOf(StandardView view);

/// @param name in any case.
[[nodiscard]] std::optional<StandardView> StandardViewNamed(std::string_view name);

/// Which directions of a world are up and in front. The two are at right angles.
struct Orientation
{
    Eigen::Vector3d up{0.0, 0.0, 1.0};
    Eigen::Vector3d front{0.0, -1.0, 0.0}; ///< from the model to who looks at its front
};

inline const Orientation ZUp{};
inline const Orientation YUp{{0.0, 1.0, 0.0}, {0.0, 0.0, 1.0}};

/// A shape by its support function: how far it reaches in a direction, the largest scalar product of the direction (not
/// of unit length in general) with any of its points. -infinity: there are no points.
using Support = std::function<double(const Eigen::Vector3d& direction)>;

/// A standard view that shows all of a shape, in the middle of the picture and with some air around it. Iso is in
/// perspective, the others are parallel projections. The target has the depth of the shape's middle.
///
/// @param aspect width of the picture divided by its height, above 0.
[[nodiscard]] View MakeStandardView(StandardView view, const Orientation& orientation, double aspect,
                                    const Support& shape);

/// Moves eye and target of a view, and changes the size of a parallel one, so that it shows all of a shape; direction
/// and angle stay. A shape without points leaves the view as it is.
void FitView(View& view, double aspect, const Support& shape);

} // namespace Orvel::Views
