#pragma once

namespace Orvel
{

/// How a camera maps space to its picture.
class COrvelProjectionMatrix
{
public:
    static constexpr double DefaultFOV = 30.0;

    COrvelProjectionMatrix() = default;

    /// @param degrees the full vertical angle.
    explicit COrvelProjectionMatrix(double degrees)
        : fieldOfView(degrees)
    {}

    /// Field of view: the full vertical angle in degrees.
    [[nodiscard]] double FOV() const { return fieldOfView; }

    [[nodiscard]] bool operator==(const COrvelProjectionMatrix&) const = default;

private:
    double fieldOfView = DefaultFOV;
};

} // namespace Orvel
