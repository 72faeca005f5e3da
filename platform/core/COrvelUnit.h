#pragma once

namespace Orvel
{

/// A unit of length.
class COrvelUnit
{
public:
    /// @param millimetres length of one unit.
    explicit COrvelUnit(double millimetres = 1.0)
        : lengthInMillimetres(millimetres)
    {}

    [[nodiscard]] double LengthInMillimetres() const { return lengthInMillimetres; }

    [[nodiscard]] bool operator==(const COrvelUnit&) const = default;

private:
    double lengthInMillimetres;
};

} // namespace Orvel
