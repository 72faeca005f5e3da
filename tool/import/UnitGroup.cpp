#include "tool/import/UnitGroup.h"

#include <array>
#include <cmath>

namespace Orvel::Import
{
namespace
{

/// Row by row: the axes of the source (columns) that become right, up and towards the viewer.
using ViewAxes = std::array<std::array<int, 3>, 3>;

/// How scenes with one axis up stand to their viewer, after COLLADA 1.4.1, element up_axis.
ViewAxes ViewAxesOf(UpAxis up)
{
    switch (up) {
    case UpAxis::X:
        return {{{0, -1, 0}, {1, 0, 0}, {0, 0, 1}}};
    case UpAxis::Z:
        return {{{1, 0, 0}, {0, 0, 1}, {0, -1, 0}}};
    case UpAxis::Y:
    case UpAxis::Unknown:
        break;
    }
    return {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
}

bool TurnsAxes(const UnitChange& change)
{
    return change.from != change.to && change.from != UpAxis::Unknown && change.to != UpAxis::Unknown;
}

bool HasEntriesOf(const COrvelMatrix& matrix, const COrvelMatrix& expected)
{
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 4; ++column) {
            if (matrix.M(row, column) != expected.M(row, column))
                return false;
        }
    }
    return true;
}

} // namespace

bool UnitChange::IsIdentity() const
{
    return scale == 1.0 && !TurnsAxes(*this);
}

COrvelMatrix UnitMatrix(const UnitChange& change)
{
    const bool turns = TurnsAxes(change);
    const ViewAxes source = ViewAxesOf(turns ? change.from : UpAxis::Unknown);
    const ViewAxes target = ViewAxesOf(turns ? change.to : UpAxis::Unknown);
    COrvelMatrix matrix;
    for (std::size_t row = 0; row < 3; ++row) {
        for (std::size_t column = 0; column < 3; ++column) {
            int entry = 0;
            for (std::size_t axis = 0; axis < 3; ++axis)
                entry += target[axis][row] * source[axis][column];
            matrix.M(static_cast<int>(row), static_cast<int>(column)) = entry == 0 ? 0.0 : entry * change.scale;
        }
    }
    return matrix;
}

std::optional<UnitChange> RecogniseUnitGroup(std::string_view name, const COrvelMatrix& matrix)
{
    if (name != UnitGroupName)
        return std::nullopt;
    // Each column holds the scale once, with either sign.
    const double scale = std::abs(matrix.M(0, 0) + matrix.M(1, 0) + matrix.M(2, 0));
    if (!std::isfinite(scale) || scale == 0.0)
        return std::nullopt;

    using enum UpAxis;
    constexpr std::array<std::array<UpAxis, 2>, 6> turns{{{Unknown, Unknown}, {Y, Z}, {X, Z}, {Z, Y}, {X, Y}, {Z, X}}};
    for (const auto& [from, to] : turns) {
        const UnitChange change{scale, from, to};
        if (HasEntriesOf(matrix, UnitMatrix(change)))
            return change;
    }
    return std::nullopt;
}

} // namespace Orvel::Import
