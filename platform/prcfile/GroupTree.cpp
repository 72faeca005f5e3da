#include "platform/prcfile/GroupTree.h"

#include <cassert>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace prc
{

namespace
{

constexpr const char* addedRootName = "Scene";

std::uint32_t number(std::size_t index)
{
    return static_cast<std::uint32_t>(index);
}

void writeItem(SectionWriter& section, IdentifierCounter& identifiers, std::uint32_t tessellation, std::uint32_t style)
{
    section.writeEntityType(EntityType::PolyBrepModel);
    section.writeReferenceBase(std::nullopt, identifiers);
    section.writeGraphics(style);
    section.writeIndexPlusOne(nullIndex); // no coordinate system of its own
    section.writeIndexPlusOne(tessellation);
    section.writeBoolean(false); // not known to be closed
    section.writeNoUserData();
}

} // namespace

void GroupTree::beginGroup(std::optional<std::string> name, const Matrix& matrix)
{
    OpenGroup group;
    group.occurrence.name = std::move(name);
    group.occurrence.location = addLocation(matrix);
    openGroups.push_back(std::move(group));
}

void GroupTree::endGroup()
{
    if (!hasOpenGroups())
        throw std::logic_error("endgroup without begingroup");
    OpenGroup group = std::move(openGroups.back());
    openGroups.pop_back();
    addPartTo(group.occurrence, std::move(group.part));
    const std::uint32_t occurrence = addOccurrence(std::move(group.occurrence));
    openGroups.back().occurrence.children.push_back(occurrence);
}

void GroupTree::place(std::uint32_t tessellation, std::uint32_t style, const TessellationSummary& summary)
{
    Part& part = openGroups.back().part;
    part.items.push_back({tessellation, style});
    part.box.include(summary.box);
}

void GroupTree::placeAt(const Matrix& matrix, std::uint32_t tessellation, std::uint32_t style,
                        const TessellationSummary& summary)
{
    beginGroup(std::nullopt, matrix);
    place(tessellation, style, summary);
    endGroup();
}

void GroupTree::close()
{
    assert(!hasOpenGroups() && "every group is closed");
    OpenGroup& top = openGroups.front();
    const bool singleRoot = top.occurrence.children.size() == 1 && top.part.items.empty();
    if (singleRoot)
        return;
    top.occurrence.name = addedRootName;
    addPartTo(top.occurrence, std::move(top.part));
    addOccurrence(std::move(top.occurrence));
}

std::uint32_t GroupTree::rootOccurrence() const
{
    return number(occurrences.size() - 1);
}

const std::optional<std::string>& GroupTree::rootName() const
{
    return occurrences.back().name;
}

std::uint32_t GroupTree::addLocation(const Matrix& matrix)
{
    if (matrix == identityMatrix)
        return nullIndex;
    locations.push_back(matrix);
    return number(locations.size() - 1);
}

/// A group without meshes gets no part: viewers take parts without geometry for damage.
void GroupTree::addPartTo(Occurrence& occurrence, Part&& part)
{
    if (part.items.empty())
        return;
    parts.push_back(std::move(part));
    occurrence.part = number(parts.size() - 1);
}

std::uint32_t GroupTree::addOccurrence(Occurrence&& occurrence)
{
    occurrences.push_back(std::move(occurrence));
    return number(occurrences.size() - 1);
}

void GroupTree::write(SectionWriter& section, IdentifierCounter& identifiers) const
{
    section.writeEntityType(EntityType::FileStructureTree);
    section.writeContentBase(std::nullopt);
    section.writeUnsignedInteger(number(parts.size()));
    for (const Part& part : parts)
        writePart(section, identifiers, part);
    section.writeUnsignedInteger(number(occurrences.size()));
    for (const Occurrence& occurrence : occurrences)
        writeOccurrence(section, identifiers, occurrence);
    section.writeEntityType(EntityType::FileStructure);
    section.writeContentBase(std::nullopt);
    section.writeUnsignedInteger(identifiers.nextFree());
    section.writeIndexPlusOne(rootOccurrence());
    section.writeNoUserData();
}

void GroupTree::writePart(SectionWriter& section, IdentifierCounter& identifiers, const Part& part) const
{
    const BoundingBox box = part.box.widened();
    section.writeEntityType(EntityType::PartDefinition);
    section.writeReferenceBase(std::nullopt, identifiers);
    section.writeGraphics(nullIndex);
    section.writeDoubles(box.minimum());
    section.writeDoubles(box.maximum());
    section.writeUnsignedInteger(number(part.items.size()));
    for (const Item& item : part.items)
        writeItem(section, identifiers, item.tessellation, item.style);
    section.writeNoMarkups();
    section.writeUnsignedInteger(0); // views
    section.writeNoUserData();
}

void GroupTree::writeOccurrence(SectionWriter& section, IdentifierCounter& identifiers,
                                const Occurrence& occurrence) const
{
    section.writeEntityType(EntityType::ProductOccurrence);
    section.writeReferenceBase(occurrence.name, identifiers);
    section.writeGraphics(nullIndex);
    section.writeIndexPlusOne(occurrence.part);
    section.writeIndexPlusOne(nullIndex); // no prototype
    section.writeIndexPlusOne(nullIndex); // no external data
    section.writeUnsignedInteger(number(occurrence.children.size()));
    section.writeUnsignedIntegers(occurrence.children);
    section.writeCharacter(0);   // behaviour
    section.writeBoolean(false); // the unit does not come from an authoring system
    section.writeDouble(1.0);    // unit: that of the model file holds
    section.writeCharacter(0);   // flags
    section.writeInteger(0);     // load status
    const bool hasLocation = occurrence.location != nullIndex;
    section.writeBoolean(hasLocation);
    if (hasLocation)
        section.writeGeneralTransformation(locations[occurrence.location]);
    section.writeUnsignedInteger(0); // entity references
    section.writeNoMarkups();
    section.writeUnsignedInteger(0); // views
    section.writeBoolean(false);     // no filter
    section.writeUnsignedInteger(0); // display filters
    section.writeUnsignedInteger(0); // scene display parameters
    section.writeNoUserData();
}

} // namespace prc
