#pragma once

namespace Orvel
{

/// A place in a picture: (0, 0) is its lower left corner, (1, 1) its upper right one; beyond, the picture repeats.
class COrvelTextureCoordinate
{
public:
    COrvelTextureCoordinate() = default;
    constexpr COrvelTextureCoordinate(double newU, double newV)
        : u(newU)
        , v(newV)
    {}

    [[nodiscard]] constexpr double U() const { return u; }
    [[nodiscard]] constexpr double V() const { return v; }

    [[nodiscard]] constexpr bool operator==(const COrvelTextureCoordinate&) const = default;

private:
    double u = 0.0;
    double v = 0.0;
};

static_assert(sizeof(COrvelTextureCoordinate) == 2 * sizeof(double));

} // namespace Orvel
