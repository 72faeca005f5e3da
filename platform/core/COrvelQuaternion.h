#pragma once

#include "platform/core/COrvelMatrix.h"
#include "platform/core/Export.h"

namespace Orvel
{

/// A rotation as a unit quaternion w + xi + yj + zk; q and -q are the same rotation.
class ORVEL_CORE_API COrvelQuaternion
{
public:
    /// No rotation.
    COrvelQuaternion() = default;
    COrvelQuaternion(double newW, double newX, double newY, double newZ)
        : w(newW)
        , x(newX)
        , y(newY)
        , z(newZ)
    {}

    [[nodiscard]] double W() const { return w; }
    [[nodiscard]] double X() const { return x; }
    [[nodiscard]] double Y() const { return y; }
    [[nodiscard]] double Z() const { return z; }

    /// The rotation of the 3 x 3 part: that of its first two columns, made orthonormal.
    [[nodiscard]] static COrvelQuaternion FromMatrix(const COrvelMatrix& matrix);
    [[nodiscard]] COrvelMatrix ToMatrix() const;

    /// Spherical interpolation the shorter way round: this at t = 0, the rotation `to` at t = 1.
    [[nodiscard]] COrvelQuaternion Squad(const COrvelQuaternion& to, double t) const;

private:
    double w = 1.0;
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
};

} // namespace Orvel
