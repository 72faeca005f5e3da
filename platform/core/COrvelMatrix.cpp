#include "platform/core/COrvelMatrix.h"

#include "platform/core/COrvelArchiveBase.h"
#include "platform/core/OrthonormalFrame.h"

#include <Eigen/Geometry>

#include <cmath>

namespace Orvel
{

namespace
{

COrvelMatrix FromAxes(const OrthonormalFrame& axes)
{
    COrvelMatrix matrix;
    for (int column = 0; column < 3; ++column) {
        const COrvel3DVertex& axis = axes[static_cast<std::size_t>(column)];
        matrix.M(0, column) = axis.X();
        matrix.M(1, column) = axis.Y();
        matrix.M(2, column) = axis.Z();
    }
    return matrix;
}

COrvelMatrix Transposed(const COrvelMatrix& matrix)
{
    COrvelMatrix transposed;
    for (int row = 0; row < 4; ++row)
        for (int column = 0; column < 4; ++column)
            transposed.M(row, column) = matrix.M(column, row);
    return transposed;
}

COrvelMatrix FrameMatrix(const COrvel3DVertex& first, const COrvel3DVertex& second)
{
    return FromAxes(MakeOrthonormalFrame(first, second));
}

COrvelMatrix Shearing(int row, int column, double s)
{
    COrvelMatrix matrix;
    matrix.M(row, column) = s;
    return matrix;
}

double LengthRatio(const COrvel3DVertex& to, const COrvel3DVertex& from)
{
    const double ratio = to.Length() / from.Length();
    return std::isfinite(ratio) && ratio > 0.0 ? ratio : 1.0;
}

} // namespace

bool COrvelMatrix::IsNear(const COrvelMatrix& other, double tolerance) const
{
    for (std::size_t i = 0; i < values.size(); ++i)
        if (!(std::abs(values[i] - other.values[i]) <= tolerance))
            return false;
    return true;
}

COrvelMatrix COrvelMatrix::operator*(const COrvelMatrix& right) const
{
    COrvelMatrix product;
    for (std::size_t row = 0; row < 4; ++row) {
        const double* const left = &values[4 * row];
        for (std::size_t column = 0; column < 4; ++column)
            product.values[4 * row + column] = left[0] * right.values[column] + left[1] * right.values[4 + column] +
                                               left[2] * right.values[8 + column] + left[3] * right.values[12 + column];
    }
    return product;
}

COrvel3DVertex COrvelMatrix::TransformDirection(const COrvel3DVertex& direction) const
{
    return {M(0, 0) * direction.X() + M(0, 1) * direction.Y() + M(0, 2) * direction.Z(),
            M(1, 0) * direction.X() + M(1, 1) * direction.Y() + M(1, 2) * direction.Z(),
            M(2, 0) * direction.X() + M(2, 1) * direction.Y() + M(2, 2) * direction.Z()};
}

COrvel3DVertex operator*(const COrvelMatrix& matrix, const COrvel3DVertex& point)
{
    return matrix.TransformDirection(point) + matrix.Translation();
}

COrvelMatrix& COrvelMatrix::DefineByRotation(double angle, double x, double y, double z)
{
    return DefineByRotation(angle, COrvel3DVertex(x, y, z));
}

COrvelMatrix& COrvelMatrix::DefineByRotation(double angle, const COrvel3DVertex& axis)
{
    *this = COrvelMatrix();
    const COrvel3DVertex unit = axis.Normalised();
    if (unit == COrvel3DVertex())
        return *this;
    const Eigen::AngleAxisd turn(angle, Eigen::Vector3d(unit.X(), unit.Y(), unit.Z()));
    const Eigen::Matrix3d rotation = turn.toRotationMatrix();
    for (int row = 0; row < 3; ++row)
        for (int column = 0; column < 3; ++column)
            M(row, column) = rotation(row, column);
    return *this;
}

COrvelMatrix COrvelMatrix::CreateRotaionAroundX(double angle)
{
    return COrvelMatrix().DefineByRotation(angle, 1.0, 0.0, 0.0);
}

COrvelMatrix COrvelMatrix::CreateTranslation(const COrvel3DVertex& offset)
{
    COrvelMatrix matrix;
    matrix.M(0, 3) = offset.X();
    matrix.M(1, 3) = offset.Y();
    matrix.M(2, 3) = offset.Z();
    return matrix;
}

COrvelMatrix COrvelMatrix::CreateScalling(const COrvel3DVertex& factors)
{
    COrvelMatrix matrix;
    matrix.M(0, 0) = factors.X();
    matrix.M(1, 1) = factors.Y();
    matrix.M(2, 2) = factors.Z();
    return matrix;
}

COrvelMatrix COrvelMatrix::CreateShearingYX(double s)
{
    return Shearing(1, 0, s);
}

COrvelMatrix COrvelMatrix::CreateShearingZX(double s)
{
    return Shearing(2, 0, s);
}

COrvelMatrix COrvelMatrix::CreateShearingZY(double s)
{
    return Shearing(2, 1, s);
}

COrvelMatrix COrvelMatrix::CreateCoordinatesTransform(const COrvel3DVertex& point1, const COrvel3DVertex& first1,
                                                      const COrvel3DVertex& second1, const COrvel3DVertex& point0,
                                                      const COrvel3DVertex& first0, const COrvel3DVertex& second0,
                                                      bool scaled)
{
    // Going to a frame and back is the identity up to rounding only; a motion that stands still must not drift.
    if (point1 == point0 && first1 == first0 && second1 == second0)
        return {};
    // The inverse of an orthonormal frame is its transpose.
    COrvelMatrix motion = FrameMatrix(first1, second1) * Transposed(FrameMatrix(first0, second0));
    if (scaled) {
        const double ratio = LengthRatio(first1, first0);
        motion *= CreateScalling({ratio, ratio, ratio});
    }
    return CreateTranslation(point1) * motion * CreateTranslation(-point0);
}

bool COrvelMatrix::ArchiveReadWrite(COrvelArchiveBase& archive)
{
    std::array<double, 16> archived = values;
    if (!archive.ReadWrite(std::span<double>(archived)))
        return false;
    values = archived;
    return true;
}

} // namespace Orvel
