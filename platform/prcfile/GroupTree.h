#pragma once

#include "platform/prcfile/BoundingBox.h"
#include "platform/prcfile/NullIndex.h"
#include "platform/prcfile/SectionWriter.h"
#include "platform/prcfile/TessellationSection.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace prc
{

/// The tree of groups of a file and what is placed in them, and the section that holds it.
///
/// A group becomes a product occurrence; its meshes become the representation items of a part of its own, and a mesh
/// with a matrix becomes a nameless child with a part of one item.
class GroupTree
{
public:
    /// @param matrix the identity leaves the group without a location.
    void beginGroup(std::optional<std::string> name, const Matrix& matrix);

    /// @throws std::logic_error when no group is open.
    void endGroup();

    /// @param style style index, nullIndex for none.
    void place(std::uint32_t tessellation, std::uint32_t style, const TessellationSummary& summary);

    /// As above, with a matrix between the mesh and the open group.
    void placeAt(const Matrix& matrix, std::uint32_t tessellation, std::uint32_t style,
                 const TessellationSummary& summary);

    [[nodiscard]] bool hasOpenGroups() const { return openGroups.size() > 1; }

    /// Settles the root. Called once, before the operations below.
    void close();

    /// Both as the file refers to it: the last occurrence.
    [[nodiscard]] std::uint32_t rootOccurrence() const;
    [[nodiscard]] const std::optional<std::string>& rootName() const;

    void write(SectionWriter& section, IdentifierCounter& identifiers) const;

private:
    struct Item
    {
        std::uint32_t tessellation;
        std::uint32_t style;
    };

    struct Part
    {
        std::vector<Item> items;
        BoundingBox box;
    };

    struct Occurrence
    {
        std::optional<std::string> name;
        std::uint32_t location = nullIndex; ///< of `locations`.
        std::uint32_t part = nullIndex;
        std::vector<std::uint32_t> children;
    };

    struct OpenGroup
    {
        Occurrence occurrence;
        Part part;
    };

    std::uint32_t addLocation(const Matrix& matrix);
    void addPartTo(Occurrence& occurrence, Part&& part);
    std::uint32_t addOccurrence(Occurrence&& occurrence);
    void writePart(SectionWriter& section, IdentifierCounter& identifiers, const Part& part) const;
    void writeOccurrence(SectionWriter& section, IdentifierCounter& identifiers, const Occurrence& occurrence) const;

    /// The first stands for the top of the file and is never closed by a caller.
    std::vector<OpenGroup> openGroups{1};
    std::vector<Part> parts;
    std::vector<Occurrence> occurrences; ///< complete ones, children before their parents.
    std::vector<Matrix> locations;
};

} // namespace prc
