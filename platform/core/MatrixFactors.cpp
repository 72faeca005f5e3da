// The operations of COrvelMatrix that take a matrix apart: inverse and decomposition.

#include "platform/core/COrvelMatrix.h"

#include <Eigen/LU>
#include <Eigen/QR>

#include <cmath>
#include <limits>

namespace Orvel
{

namespace
{

Eigen::Matrix3d LinearPart(const COrvelMatrix& matrix)
{
    Eigen::Matrix3d linear;
    for (int row = 0; row < 3; ++row)
        for (int column = 0; column < 3; ++column)
            linear(row, column) = matrix.M(row, column);
    return linear;
}

bool IsAffine(const COrvelMatrix& matrix)
{
    return matrix.M(3, 0) == 0.0 && matrix.M(3, 1) == 0.0 && matrix.M(3, 2) == 0.0 && matrix.M(3, 3) == 1.0;
}

// The power of two that brings a positive number to between 1 and 2: multiplying by it rounds nothing.
double PowerToOne(double largest)
{
    return std::scalbn(1.0, -std::ilogb(largest));
}

// False when there is no inverse. Rows and columns are first brought to one size, for a matrix that merely mixes
// lengths of very different size (flat things, small units far away) is not singular.
template <int Size>
bool Invert(Eigen::Matrix<double, Size, Size> matrix, Eigen::Matrix<double, Size, Size>& inverse)
{
    Eigen::Matrix<double, Size, 1> columnFactors;
    Eigen::Matrix<double, Size, 1> rowFactors;
    for (int i = 0; i < Size; ++i) {
        const double largest = matrix.col(i).cwiseAbs().maxCoeff();
        if (!(largest > 0.0) || !std::isfinite(largest))
            return false;
        columnFactors[i] = PowerToOne(largest);
        matrix.col(i) *= columnFactors[i];
    }
    for (int i = 0; i < Size; ++i) {
        const double largest = matrix.row(i).cwiseAbs().maxCoeff();
        if (!(largest > 0.0))
            return false;
        rowFactors[i] = PowerToOne(largest);
        matrix.row(i) *= rowFactors[i];
    }
    const Eigen::FullPivLU<Eigen::Matrix<double, Size, Size>> factors(matrix);
    if (!factors.isInvertible())
        return false;
    inverse = columnFactors.asDiagonal() * factors.inverse() * rowFactors.asDiagonal();
    return inverse.allFinite();
}

COrvelMatrix AffineInverse(const COrvelMatrix& matrix)
{
    Eigen::Matrix3d linear;
    if (!Invert<3>(LinearPart(matrix), linear))
        return {};
    COrvelMatrix inverse;
    for (int row = 0; row < 3; ++row)
        for (int column = 0; column < 3; ++column)
            inverse.M(row, column) = linear(row, column);
    // Taken from zero, not negated: no translation stays 0, not -0.
    const COrvel3DVertex back = COrvel3DVertex() - inverse.TransformDirection(matrix.Translation());
    if (!std::isfinite(back.X()) || !std::isfinite(back.Y()) || !std::isfinite(back.Z()))
        return {};
    inverse.M(0, 3) = back.X();
    inverse.M(1, 3) = back.Y();
    inverse.M(2, 3) = back.Z();
    return inverse;
}

COrvelMatrix ProjectiveInverse(const COrvelMatrix& matrix)
{
    Eigen::Matrix4d whole;
    for (int row = 0; row < 4; ++row)
        for (int column = 0; column < 4; ++column)
            whole(row, column) = matrix.M(row, column);
    Eigen::Matrix4d inverse;
    COrvelMatrix result;
    if (!Invert<4>(whole, inverse))
        return result;
    for (int row = 0; row < 4; ++row)
        for (int column = 0; column < 4; ++column)
            result.M(row, column) = inverse(row, column);
    return result;
}

// A 3 x 3 matrix as scale * shear * rotation: diagonal, lower triangle with ones in its diagonal, orthonormal.
struct Factors
{
    Eigen::Vector3d scale;
    Eigen::Matrix3d shear;
    Eigen::Matrix3d rotation;
};

// False when the rows are zero, not finite, or lie in one plane to working precision.
bool Factorise(Eigen::Matrix3d rows, Factors& factors)
{
    Eigen::Vector3d sizes;
    for (int i = 0; i < 3; ++i) {
        sizes[i] = rows.row(i).cwiseAbs().maxCoeff();
        if (!(sizes[i] > 0.0) || !rows.row(i).allFinite())
            return false;
        rows.row(i) /= sizes[i];
    }
    // Orthogonalising rows from the first down is the QR factorisation of the transpose, upper triangle turned over.
    const Eigen::HouseholderQR<Eigen::Matrix3d> qr(rows.transpose());
    Eigen::Matrix3d triangle = qr.matrixQR().triangularView<Eigen::Upper>().transpose();
    factors.rotation = Eigen::Matrix3d(qr.householderQ()).transpose();
    for (int i = 0; i < 3; ++i) {
        if (std::abs(triangle(i, i)) <= 16.0 * std::numeric_limits<double>::epsilon() * rows.row(i).norm())
            return false;
        if (triangle(i, i) < 0.0) {
            triangle.col(i) = -triangle.col(i);
            factors.rotation.row(i) = -factors.rotation.row(i);
        }
        factors.scale[i] = triangle(i, i) * sizes[i];
    }
    factors.shear = triangle.diagonal().asDiagonal().inverse() * triangle;
    // A mirroring matrix leaves three rows that are left-handed. Turned round, they are a rotation.
    if (factors.rotation.determinant() < 0.0) {
        factors.scale = -factors.scale;
        factors.rotation = -factors.rotation;
    }
    return true;
}

// Angles of Rx * Ry * Rz.
COrvel3DVertex AnglesOf(const Eigen::Matrix3d& rotation)
{
    const double cosine = std::hypot(rotation(0, 0), rotation(0, 1));
    const double y = std::atan2(rotation(0, 2), cosine);
    // A quarter turn about y lays the other two axes upon each other: only their sum or difference is known.
    if (cosine < 1e-12)
        return {std::atan2(rotation(2, 1), rotation(1, 1)), y, 0.0};
    // Close to it x is uncertain. Taking z from what is left after turning back by x makes up for any error in x.
    const double x = std::atan2(-rotation(1, 2), rotation(2, 2));
    const Eigen::RowVector3d left = std::cos(x) * rotation.row(1) + std::sin(x) * rotation.row(2);
    return {x, y, std::atan2(left[0], left[1])};
}

} // namespace

COrvelMatrix COrvelMatrix::Inverse() const
{
    return IsAffine(*this) ? AffineInverse(*this) : ProjectiveInverse(*this);
}

bool COrvelMatrix::DecomposeMatrix(COrvel3DVertex& scale, COrvel3DVertex& shear, COrvel3DVertex& angles,
                                   COrvel3DVertex& perspective, double* value) const
{
    Factors factors;
    const bool isRegular = Factorise(LinearPart(*this), factors);
    scale = isRegular ? COrvel3DVertex(factors.scale[0], factors.scale[1], factors.scale[2])
                      : COrvel3DVertex(1.0, 1.0, 1.0);
    shear =
        isRegular ? COrvel3DVertex(factors.shear(1, 0), factors.shear(2, 0), factors.shear(2, 1)) : COrvel3DVertex();
    angles = isRegular ? AnglesOf(factors.rotation) : COrvel3DVertex();
    perspective = isRegular ? COrvel3DVertex(M(3, 0), M(3, 1), M(3, 2)) : COrvel3DVertex();
    if (value)
        *value = isRegular ? M(3, 3) : 1.0;
    return isRegular;
}

} // namespace Orvel
