#pragma once

#include "platform/core/COrvel3DVertex.h"
#include "platform/core/Export.h"

#include <array>
#include <cassert>
#include <cstddef>

namespace Orvel
{

class COrvelArchiveBase;

/// A 4 x 4 transformation of column vectors: `a * b` maps a point by b first, then by a. The translation stands in
/// column 3, the bottom row of an affine matrix is 0 0 0 1. Angles are radians, rotations right-handed
/// (counter-clockwise for an eye that the axis points at).
class ORVEL_CORE_API COrvelMatrix
{
public:
    /// Identity.
    COrvelMatrix() = default;

    /// @param rowByRow 16 numbers; the translation at positions 3, 7 and 11.
    explicit COrvelMatrix(const std::array<double, 16>& rowByRow)
        : values(rowByRow)
    {}

    /// @param row, column 0 to 3.
    [[nodiscard]] double M(int row, int column) const { return values[Position(row, column)]; }
    [[nodiscard]] double& M(int row, int column) { return values[Position(row, column)]; }

    /// The 16 numbers, row by row.
    bool ArchiveReadWrite(COrvelArchiveBase& archive);

    /// Row by row, the translation at positions 3, 7 and 11.
    [[nodiscard]] const std::array<double, 16>& Values() const { return values; }

    [[nodiscard]] COrvel3DVertex Translation() const { return {values[3], values[7], values[11]}; }

    /// Column `column` of the 3 x 3 part.
    [[nodiscard]] COrvel3DVertex Axis(int column) const { return {M(0, column), M(1, column), M(2, column)}; }

    [[nodiscard]] bool operator==(const COrvelMatrix&) const = default;

    /// True when no entry differs by more than `tolerance`; never for entries that are not numbers.
    [[nodiscard]] bool IsNear(const COrvelMatrix& other, double tolerance) const;

    [[nodiscard]] COrvelMatrix operator*(const COrvelMatrix& right) const;

    /// Right factor: this becomes this * right.
    COrvelMatrix& operator*=(const COrvelMatrix& right) { return *this = *this * right; }

    /// Maps a direction: the 3 x 3 part alone, without the translation.
    [[nodiscard]] COrvel3DVertex TransformDirection(const COrvel3DVertex& direction) const;

    /// The inverse, of projective matrices too. Identity when there is none: singular to working precision, or with
    /// entries that are not finite.
    [[nodiscard]] COrvelMatrix Inverse() const;

    /// Makes this the rotation by `angle` about the axis (x, y, z) through the origin, of any length; a zero axis gives
    /// the identity. @return this matrix.
    COrvelMatrix& DefineByRotation(double angle, double x, double y, double z);
    COrvelMatrix& DefineByRotation(double angle, const COrvel3DVertex& axis);

    [[nodiscard]] static COrvelMatrix CreateRotaionAroundX(double angle);
    [[nodiscard]] static COrvelMatrix CreateTranslation(const COrvel3DVertex& offset);
    [[nodiscard]] static COrvelMatrix CreateScalling(const COrvel3DVertex& factors);

    /// y' = y + s x.
    [[nodiscard]] static COrvelMatrix CreateShearingYX(double s);
    /// z' = z + s x.
    [[nodiscard]] static COrvelMatrix CreateShearingZX(double s);
    /// z' = z + s y.
    [[nodiscard]] static COrvelMatrix CreateShearingZY(double s);

    /// The motion that carries the frame (point0, first0, second0) onto the frame (point1, first1, second1); exactly
    /// the identity when both are equal.
    ///
    /// A frame's axes are its first direction, the part of its second direction across the first, and their cross
    /// product; lengths do not count. A zero first direction, or a second one along the first, is replaced by a
    /// perpendicular of the other.
    ///
    /// @param scaled false: rigid. true: also grows by the ratio of the first directions' lengths, where both have one.
    [[nodiscard]] static COrvelMatrix
    CreateCoordinatesTransform(const COrvel3DVertex& point1, const COrvel3DVertex& first1,
                               const COrvel3DVertex& second1, const COrvel3DVertex& point0,
                               const COrvel3DVertex& first0, const COrvel3DVertex& second0, bool scaled);

    /// Takes the 3 x 3 part apart, so that
    ///   CreateScalling(scale) * CreateShearingYX(shear.X()) * CreateShearingZX(shear.Y()) *
    ///   CreateShearingZY(shear.Z()) * Rx(angles.X()) * Ry(angles.Y()) * Rz(angles.Z())
    /// gives it back. The translation is not looked at. A mirroring matrix has three negative scales.
    ///
    /// @param perspective out: 0 0 0, and *value 1 (null allowed), for affine matrices; else the bottom row.
    /// @return false for a singular 3 x 3 part; the outputs then describe the identity.
    [[nodiscard]] bool DecomposeMatrix(COrvel3DVertex& scale, COrvel3DVertex& shear, COrvel3DVertex& angles,
                                       COrvel3DVertex& perspective, double* value) const;

private:
    [[nodiscard]] static std::size_t Position(int row, int column)
    {
        assert(row >= 0 && row < 4 && column >= 0 && column < 4 && "a matrix has four rows and columns");
        return static_cast<std::size_t>(4 * row + column);
    }

    std::array<double, 16> values{1.0, 0.0, 0.0, 0.0, 0.0, 1.0, 0.0, 0.0, 0.0, 0.0, 1.0, 0.0, 0.0, 0.0, 0.0, 1.0};
};

/// Maps a point, translation included. The result is not divided by a perspective matrix's bottom row.
[[nodiscard]] ORVEL_CORE_API COrvel3DVertex operator*(const COrvelMatrix& matrix, const COrvel3DVertex& point);

} // namespace Orvel
