#pragma once

#include "platform/core/Export.h"

#include <cmath>

namespace Orvel
{

class COrvelArchiveBase;
class COrvelMatrix;

/// A point or a vector in space. Three doubles in a row and nothing else, so an array of them is an array of
/// coordinates.
class ORVEL_CORE_API COrvel3DVertex
{
public:
    COrvel3DVertex() = default;
    constexpr COrvel3DVertex(double newX, double newY, double newZ)
        : x(newX)
        , y(newY)
        , z(newZ)
    {}

    [[nodiscard]] constexpr double X() const { return x; }
    [[nodiscard]] constexpr double Y() const { return y; }
    [[nodiscard]] constexpr double Z() const { return z; }
    void SetX(double value) { x = value; }
    void SetY(double value) { y = value; }
    void SetZ(double value) { z = value; }

    [[nodiscard]] constexpr COrvel3DVertex operator-() const { return {-x, -y, -z}; }
    constexpr COrvel3DVertex& operator+=(const COrvel3DVertex& other);
    constexpr COrvel3DVertex& operator-=(const COrvel3DVertex& other);
    constexpr COrvel3DVertex& operator*=(double factor);
    [[nodiscard]] constexpr bool operator==(const COrvel3DVertex&) const = default;

    [[nodiscard]] constexpr double Dot(const COrvel3DVertex& other) const;

    /// Right-handed: x cross y is z.
    [[nodiscard]] constexpr COrvel3DVertex Cross(const COrvel3DVertex& other) const;

    [[nodiscard]] double Length() const { return std::hypot(x, y, z); }

    /// The vector of length 1 in the same direction; a vector of length 0, or one with a coordinate that is not finite,
    /// comes back unchanged.
    [[nodiscard]] COrvel3DVertex Normalised() const;
    void Normalise() { *this = Normalised(); }

    /// A vector of length 1 across this one, always the same for the same direction. (1, 0, 0) for a zero vector.
    [[nodiscard]] COrvel3DVertex AnyPerpendicular() const;

    /// Maps this point by `matrix`, translation included.
    void ModifyByTransform(const COrvelMatrix& matrix);

    bool ArchiveReadWrite(COrvelArchiveBase& archive);

private:
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
};

static_assert(sizeof(COrvel3DVertex) == 3 * sizeof(double));

constexpr COrvel3DVertex& COrvel3DVertex::operator+=(const COrvel3DVertex& other)
{
    x += other.x;
    y += other.y;
    z += other.z;
    return *this;
}

constexpr COrvel3DVertex& COrvel3DVertex::operator-=(const COrvel3DVertex& other)
{
    x -= other.x;
    y -= other.y;
    z -= other.z;
    return *this;
}

constexpr COrvel3DVertex& COrvel3DVertex::operator*=(double factor)
{
    x *= factor;
    y *= factor;
    z *= factor;
    return *this;
}

constexpr double COrvel3DVertex::Dot(const COrvel3DVertex& other) const
{
    return x * other.x + y * other.y + z * other.z;
}

constexpr COrvel3DVertex COrvel3DVertex::Cross(const COrvel3DVertex& other) const
{
    return {y * other.z - z * other.y, z * other.x - x * other.z, x * other.y - y * other.x};
}

[[nodiscard]] constexpr COrvel3DVertex operator+(COrvel3DVertex left, const COrvel3DVertex& right)
{
    return left += right;
}

[[nodiscard]] constexpr COrvel3DVertex operator-(COrvel3DVertex left, const COrvel3DVertex& right)
{
    return left -= right;
}

[[nodiscard]] constexpr COrvel3DVertex operator*(COrvel3DVertex vector, double factor)
{
    return vector *= factor;
}

[[nodiscard]] constexpr COrvel3DVertex operator*(double factor, COrvel3DVertex vector)
{
    return vector *= factor;
}

} // namespace Orvel
