#pragma once

#include "platform/core/COrvelMatrix.h"
#include "tool/import/ImportedScene.h"

#include <optional>
#include <string_view>

namespace Orvel::Import
{

/// Name of the group above all others that brings a scene into the units and axes of the exported file. Part of the
/// file format of the program: whoever reads a file back finds the group by this name and undoes it.
inline constexpr std::string_view UnitGroupName = "Units and axes";

/// What such a group does.
struct UnitChange
{
    double scale = 1.0;            ///< lengths are multiplied by this; positive
    UpAxis from = UpAxis::Unknown; ///< axis that pointed up before; Unknown: the axes stay
    UpAxis to = UpAxis::Unknown;   ///< axis that points up afterwards; Unknown: the axes stay

    /// True when coordinates stay as they are.
    [[nodiscard]] bool IsIdentity() const;
};

/// The matrix of the group: a rotation by right angles whose entries are exactly 0, 1 or -1, times the scale. With y up
/// in the source and z up in the target (x, y, z) becomes scale * (x, -z, y).
[[nodiscard]] COrvelMatrix UnitMatrix(const UnitChange& change);

/// Tells whether a group is one that UnitMatrix made, by its name and by the form of its matrix. A file has it only as
/// the one group at its top.
///
/// @return what the group does; nothing for every other group. `from` and `to` are a pair of axes with this rotation.
[[nodiscard]] std::optional<UnitChange> RecogniseUnitGroup(std::string_view name, const COrvelMatrix& matrix);

} // namespace Orvel::Import
