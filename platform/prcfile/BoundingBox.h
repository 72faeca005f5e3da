#pragma once

#include <array>
#include <limits>
#include <span>

namespace prc
{

/// The smallest box, parallel to the axes, around a set of points; empty at first.
class BoundingBox
{
public:
    /// @param coordinates x, y, z of each point, finite.
    void include(std::span<const double> coordinates);
    void include(const BoundingBox& other);

    /// The box as viewers accept it: flat sides are widened a little, since a part whose box is flat or a point makes
    /// whole trees vanish; no points at all give a small box around the origin.
    [[nodiscard]] BoundingBox widened() const;

    [[nodiscard]] const std::array<double, 3>& minimum() const { return low; }
    [[nodiscard]] const std::array<double, 3>& maximum() const { return high; }

private:
    static constexpr double infinity = std::numeric_limits<double>::infinity();

    std::array<double, 3> low{infinity, infinity, infinity};
    std::array<double, 3> high{-infinity, -infinity, -infinity};
};

} // namespace prc
