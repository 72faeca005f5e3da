#pragma once

#include "platform/prcfile/EntityTypes.h"
#include "platform/prcfile/Matrix.h"
#include "platform/prcfile/NullIndex.h"
#include "platform/prcfile/PRCGraphics.h"

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

/// The product tree of a file structure. All indices count from 0; nullIndex is "none", also where the file named
/// something that does not exist. Styles and coordinate systems are those of the same file structure.
namespace prc::Model
{

/// A thing inside a part: mostly a tessellation in a style.
struct RepresentationItem
{
    EntityType type = EntityType::PolyBrepModel; ///< PolyBrepModel and BrepModel are drawn alike.
    Name name;
    std::uint32_t identifier = 0; ///< unique within the file structure.
    Graphics graphics;
    std::uint32_t coordinateSystem = nullIndex; ///< position in Globals::coordinateSystems: where the item stands.
    std::uint32_t tessellation = nullIndex;     ///< position in FileStructure::tessellations.
    bool isClosed = false;
    std::uint32_t set = nullIndex; ///< position in the same list of the set that holds the item; it stands before it.
    std::array<std::uint32_t, 2> body{nullIndex, nullIndex}; ///< context and body of exact geometry, if any.
    std::optional<Matrix> transformation;                    ///< of a CoordinateSystem.
};

struct Part
{
    Name name;
    std::uint32_t identifier = 0;
    Graphics graphics;
    std::array<double, 3> minimum{}; ///< the box as stated.
    std::array<double, 3> maximum{};
    std::vector<RepresentationItem> items; ///< sets stand before what they hold.
};

/// Another style for something below an occurrence.
struct EntityReference
{
    Graphics graphics;
    std::uint32_t coordinateSystem = nullIndex;
    EntityType kind{};                   ///< ReferenceOnBase, ReferenceOnTopology; 0 without a target.
    std::uint32_t entityType = 0;        ///< of the target, or its topology type (149: a face).
    std::uint32_t structure = nullIndex; ///< position in PRCModel::structures.
    std::uint32_t identifier = 0;        ///< ReferenceOnBase: of the target.
    std::array<std::uint32_t, 2> body{nullIndex, nullIndex}; ///< ReferenceOnTopology: context and body.
    std::vector<std::uint32_t> topologyIndices;
};

/// An occurrence in this or another file structure.
struct OccurrenceReference
{
    std::uint32_t structure = nullIndex;  ///< position in PRCModel::structures.
    std::uint32_t occurrence = nullIndex; ///< position in its occurrences.
};

/// A node of the tree.
struct ProductOccurrence
{
    Name name;
    std::uint32_t identifier = 0;
    Graphics graphics;
    std::uint32_t part = nullIndex; ///< position in FileStructure::parts.
    OccurrenceReference prototype;  ///< gives the part and the children that the occurrence has not itself.
    OccurrenceReference externalData;
    std::vector<std::uint32_t> children; ///< positions in FileStructure::occurrences.
    bool isSuppressed = false;
    bool unitFromAuthoringSystem = false;
    double unitInMillimetres = 1.0;
    std::optional<Matrix> location; ///< to the parent; absent: the identity.
    std::vector<EntityReference> entityReferences;
};

} // namespace prc::Model
