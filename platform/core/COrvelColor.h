#pragma once

namespace Orvel
{

/// Red, green, blue and alpha, usually 0 to 1; nothing is clamped or converted.
class COrvelColor
{
public:
    /// Opaque black.
    COrvelColor() = default;
    COrvelColor(double red, double green, double blue, double alpha = 1.0)
        : r(red)
        , g(green)
        , b(blue)
        , a(alpha)
    {}

    [[nodiscard]] double R() const { return r; }
    [[nodiscard]] double G() const { return g; }
    [[nodiscard]] double B() const { return b; }
    [[nodiscard]] double A() const { return a; }

    [[nodiscard]] bool operator==(const COrvelColor&) const = default;

private:
    double r = 0.0;
    double g = 0.0;
    double b = 0.0;
    double a = 1.0;
};

} // namespace Orvel
