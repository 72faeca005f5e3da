#include "platform/core/COrvelQuaternion.h"

#include "platform/core/OrthonormalFrame.h"

#include <Eigen/Geometry>

namespace Orvel
{

namespace
{

COrvelQuaternion FromEigen(const Eigen::Quaterniond& q)
{
    return {q.w(), q.x(), q.y(), q.z()};
}

} // namespace

COrvelQuaternion COrvelQuaternion::FromMatrix(const COrvelMatrix& matrix)
{
    const OrthonormalFrame frame = MakeOrthonormalFrame(matrix.Axis(0), matrix.Axis(1));
    Eigen::Matrix3d rotation;
    for (int column = 0; column < 3; ++column) {
        const COrvel3DVertex& axis = frame[static_cast<std::size_t>(column)];
        rotation.col(column) << axis.X(), axis.Y(), axis.Z();
    }
    return FromEigen(Eigen::Quaterniond(rotation).normalized());
}

COrvelMatrix COrvelQuaternion::ToMatrix() const
{
    const Eigen::Matrix3d rotation = Eigen::Quaterniond(w, x, y, z).normalized().toRotationMatrix();
    COrvelMatrix matrix;
    for (int row = 0; row < 3; ++row)
        for (int column = 0; column < 3; ++column)
            matrix.M(row, column) = rotation(row, column);
    return matrix;
}

COrvelQuaternion COrvelQuaternion::Squad(const COrvelQuaternion& to, double t) const
{
    // Eigen turns the second one round when the two lie in opposite halves, and goes straight when they nearly
    // coincide.
    const Eigen::Quaterniond from(w, x, y, z);
    return FromEigen(from.slerp(t, Eigen::Quaterniond(to.w, to.x, to.y, to.z)).normalized());
}

} // namespace Orvel
