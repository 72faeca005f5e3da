#pragma once

#include "platform/core/COrvel3DVertex.h"
#include "platform/core/Export.h"

#include <vector>

namespace Orvel
{

/// The curve of a line path: a uniform B-spline, of degree 1 for a polyline.
///
/// Parameters run from 0 to 1, evenly over the spans of the curve (not over its length); values outside are clamped.
/// The `flag` of the queries is reserved: callers pass 0, and every value gives the same answer.
///
/// With its two directions every point carries a frame that does not turn about the tangent from point to point, unlike
/// one made from the curvature, which flips at inflections. On a closed curve the frame at the end is the one at the
/// start: what it would be out by is turned back evenly along the way.
class ORVEL_CORE_API COrvelBasicPath
{
public:
    static constexpr int MaximumDegree = 5;

    /// A curve without points: stays at the origin.
    COrvelBasicPath() = default;

    /// Straight lines from point to point; a closed one returns to its first point.
    [[nodiscard]] static COrvelBasicPath Polyline(std::vector<COrvel3DVertex> points, bool closed);

    /// An open curve starts at the first control point and ends at the last; a closed one goes smoothly round.
    ///
    /// @param degree 1 to MaximumDegree, brought into range; an open curve also needs more control points than that and
    ///               takes the highest degree that it has points for.
    [[nodiscard]] static COrvelBasicPath BSpline(std::vector<COrvel3DVertex> controlPoints, int degree, bool closed);

    [[nodiscard]] const std::vector<COrvel3DVertex>& ControlPoints() const { return controlPoints; }
    [[nodiscard]] int Degree() const { return degree; }

    /// True when the curve ends where it starts: made closed, or with its ends in one place.
    [[nodiscard]] bool IsClosed() const { return closed; }

    [[nodiscard]] COrvel3DVertex Point(double u, int flag) const;

    /// Tangent of length 1; where the curve stands still, the direction in which it leaves or comes.
    [[nodiscard]] COrvel3DVertex FirstDirection(double u, int flag) const;

    /// Across the tangent, length 1.
    [[nodiscard]] COrvel3DVertex SecondDirection(double u, int flag) const;

private:
    COrvelBasicPath(std::vector<COrvel3DVertex> points, int wantedDegree, bool wantedClosed);

    // Places on the curve are counted in spans inside: whole numbers at the knots, without rounding.
    [[nodiscard]] double PlaceAt(double u) const;
    [[nodiscard]] COrvel3DVertex PointAt(double place) const;
    [[nodiscard]] COrvel3DVertex DerivativeAt(double place) const;
    [[nodiscard]] COrvel3DVertex TangentAt(double place) const;
    [[nodiscard]] COrvel3DVertex CarrySecond(const COrvel3DVertex& second, double from, double to) const;
    void BuildSeconds();

    std::vector<COrvel3DVertex> controlPoints;
    int degree = 1;
    bool periodic = false;
    bool closed = false;
    int spans = 0;                       // 0: the curve is a single point
    double standstill = 0.0;             // derivatives up to this length have no direction
    std::vector<COrvel3DVertex> seconds; // second directions at evenly spaced places, before the closing turn
    double closingTurn = 0.0;            // radians about the tangent over the whole curve
};

} // namespace Orvel
