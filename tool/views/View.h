#pragma once

#include <Eigen/Core>

#include <string>

namespace Orvel::Views
{

enum class Projection
{
    Perspective,
    Parallel
};

/// The side of the picture that an angle or a length spans.
enum class Span
{
    Width,
    Height,
    Smaller
};

/// How a picture of a scene is taken: the camera of a preview picture and of a view in a document alike. Right-handed
/// world coordinates, those of the exported file.
struct View
{
    std::string name;
    Eigen::Vector3d eye{0.0, -1.0, 0.0};
    Eigen::Vector3d target{0.0, 0.0, 0.0}; ///< the point to turn around, straight ahead of the eye and apart from it
    Eigen::Vector3d up{0.0, 0.0, 1.0};     ///< not along the line of sight; neither unit length nor at right angles
    Projection projection = Projection::Perspective;
    double fieldOfViewInDegrees = 30.0; ///< full angle, above 0 and below 180; perspective only
    double size = 1.0;                  ///< length that is seen, above 0; parallel only
    Span span = Span::Smaller;          ///< of angle or size
};

/// The axes of a view: unit length, at right angles to each other.
struct ViewFrame
{
    Eigen::Vector3d right;
    Eigen::Vector3d up;
    Eigen::Vector3d forward; ///< from the eye to the target
};

/// A frame for every view: where eye and target agree, or the up vector lies along the line of sight, some frame that
/// holds what is sure.
[[nodiscard]] ViewFrame FrameOf(const View& view);

/// What a view sees of a picture's sides, each from the middle to the edge: tangents of half angles, or half lengths.
struct HalfExtent
{
    double horizontal = 1.0;
    double vertical = 1.0;
};

/// @param half   what the view's span sees: tangent of the half angle, or half the length.
/// @param aspect width of the picture divided by its height, above 0.
[[nodiscard]] HalfExtent HalfExtentFor(double half, Span span, double aspect);

/// The above for a view's own angle or size.
[[nodiscard]] HalfExtent HalfExtentOf(const View& view, double aspect);

} // namespace Orvel::Views
