#include "platform/prcfile/TreeReader.h"

#include <vector>

namespace prc
{

namespace
{

using namespace Model;

constexpr std::size_t deepestSets = 64;

bool isRepresentationItem(EntityType type)
{
    switch (type) {
    case EntityType::BrepModel:
    case EntityType::Curve:
    case EntityType::Plane:
    case EntityType::PointSet:
    case EntityType::PolyBrepModel:
    case EntityType::PolyWire:
    case EntityType::Set:
    case EntityType::CoordinateSystem:
        return true;
    default:
        return false;
    }
}

/// Reads the entities of one tree section; what they refer to in other file structures is found by the ids of these.
class TreeSectionReader
{
public:
    TreeSectionReader(SectionReader& sectionReader, const StructureIds& structureIds, std::size_t ownNumber)
        : section(sectionReader)
        , ids(structureIds)
        , own(ownNumber)
    {}

    void readPart(Part& part);
    void readOccurrence(ProductOccurrence& occurrence);
    [[nodiscard]] std::uint32_t readRoot();

private:
    template <typename Entity>
    void readNamedGraphics(Entity& entity)
    {
        section.readIdentity(entity);
        entity.graphics = section.readGraphics();
    }

    void refuseAny(const char* what);
    void refuseMarkupsAndViews();
    void readItems(Part& part);
    std::uint32_t readItem(RepresentationItem& item);
    void readExactBody(RepresentationItem& item);
    void closeItem(EntityType type);
    OccurrenceReference readOccurrenceReference();
    std::uint32_t readStructure();
    void readEntityReference(EntityReference& reference);
    void readReferenceTarget(EntityReference& reference);

    SectionReader& section;
    const StructureIds& ids;
    std::size_t own;
};

/// A count that has to be 0: what would follow has no length and cannot be passed over.
void TreeSectionReader::refuseAny(const char* what)
{
    const std::uint32_t count = section.readUnsignedInteger();
    if (count != 0)
        section.fail("expected no " + std::string(what) + ", which cannot be passed over; found " +
                     std::to_string(count));
}

void TreeSectionReader::refuseMarkupsAndViews()
{
    refuseAny("linked items of markups");
    refuseAny("leaders of markups");
    refuseAny("markups");
    refuseAny("annotations");
    refuseAny("views");
}

void TreeSectionReader::readExactBody(RepresentationItem& item)
{
    if (!section.readBoolean())
        return;
    item.body[0] = section.readUnsignedInteger();
    item.body[1] = section.readUnsignedInteger();
}

/// Reads an item up to its end, or a set up to its first item.
///
/// @return the number of items that follow inside a set.
std::uint32_t TreeSectionReader::readItem(RepresentationItem& item)
{
    constexpr unsigned itemBits = 20;
    const std::uint32_t type = section.readEntityType();
    item.type = static_cast<EntityType>(type);
    if (!isRepresentationItem(item.type)) {
        section.fail("expected a representation item (232 to 240), found " + entityTypeName(type));
        return 0;
    }
    readNamedGraphics(item);
    item.coordinateSystem = section.readIndexPlusOne();
    item.tessellation = section.readIndexPlusOne();
    switch (item.type) {
    case EntityType::Set:
        return section.readCount(itemBits, sizeof(RepresentationItem), "items of a set");
    case EntityType::BrepModel:
        readExactBody(item);
        item.isClosed = section.readBoolean();
        break;
    case EntityType::PolyBrepModel:
        item.isClosed = section.readBoolean();
        break;
    case EntityType::Curve:
    case EntityType::Plane:
        readExactBody(item);
        break;
    case EntityType::CoordinateSystem:
        item.transformation = section.readTransformation();
        break;
    case EntityType::PointSet: {
        const std::uint32_t points = section.readCount(6, 0, "points of a set");
        for (std::uint32_t point = 0; point < points && section.ok(); ++point)
            section.readVector();
        break;
    }
    default:
        break;
    }
    closeItem(item.type);
    return 0;
}

void TreeSectionReader::closeItem(EntityType type)
{
    section.readAddedFields(type);
    section.skipUserData();
}

void TreeSectionReader::readItems(Part& part)
{
    constexpr unsigned itemBits = 20;
    struct OpenSet
    {
        std::uint32_t number; ///< of the set; nullIndex: the part itself.
        std::uint32_t left;   ///< items still to come.
    };
    std::vector<OpenSet> open{
        {nullIndex, section.readCount(itemBits, sizeof(RepresentationItem), "representation items")}};
    while (!open.empty() && section.ok()) {
        if (open.back().left == 0) {
            if (open.back().number != nullIndex)
                closeItem(EntityType::Set);
            open.pop_back();
            continue;
        }
        --open.back().left;
        RepresentationItem& item = part.items.emplace_back();
        item.set = open.back().number;
        const std::uint32_t members = readItem(item);
        if (!section.ok())
            return;
        if (item.type != EntityType::Set)
            continue;
        if (open.size() > deepestSets) {
            section.fail("sets are nested deeper than " + std::to_string(deepestSets) + " levels");
            return;
        }
        open.push_back({static_cast<std::uint32_t>(part.items.size() - 1), members});
    }
}

void TreeSectionReader::readPart(Part& part)
{
    if (!section.expectEntity(EntityType::PartDefinition, "a part definition"))
        return;
    readNamedGraphics(part);
    part.minimum = section.readVector();
    part.maximum = section.readVector();
    readItems(part);
    refuseMarkupsAndViews();
    section.readAddedFields(EntityType::PartDefinition);
    section.skipUserData();
}

/// Reads which file structure something stands in.
std::uint32_t TreeSectionReader::readStructure()
{
    const bool isSame = section.readBoolean();
    return isSame ? static_cast<std::uint32_t>(own) : ids.find(section.readUniqueId());
}

OccurrenceReference TreeSectionReader::readOccurrenceReference()
{
    OccurrenceReference reference;
    reference.occurrence = section.readIndexPlusOne();
    if (reference.occurrence != nullIndex && section.ok())
        reference.structure = readStructure();
    return reference;
}

void TreeSectionReader::readReferenceTarget(EntityReference& reference)
{
    const std::uint32_t kind = section.readEntityType();
    reference.kind = static_cast<EntityType>(kind);
    if (reference.kind == EntityType::ReferenceOnBase) {
        reference.entityType = section.readUnsignedInteger();
        reference.structure = readStructure();
        reference.identifier = section.readUnsignedInteger();
    } else if (reference.kind == EntityType::ReferenceOnTopology) {
        reference.entityType = section.readUnsignedInteger();
        if (section.readBoolean()) {
            reference.structure = readStructure();
            reference.body[0] = section.readUnsignedInteger();
            reference.body[1] = section.readUnsignedInteger();
            section.readUnsignedIntegers(reference.topologyIndices,
                                         section.readCount(1, sizeof(std::uint32_t), "topology indices"));
        }
    } else {
        section.fail("expected a reference (205 or 206), found " + entityTypeName(kind));
        return;
    }
    section.readAddedFields(reference.kind);
}

void TreeSectionReader::readEntityReference(EntityReference& reference)
{
    if (!section.expectEntity(EntityType::EntityReference, "an entity reference"))
        return;
    section.skipReferenceBase();
    reference.graphics = section.readGraphics();
    reference.coordinateSystem = section.readIndexPlusOne();
    if (section.readBoolean())
        readReferenceTarget(reference);
    section.readAddedFields(EntityType::EntityReference);
    section.skipUserData();
}

void TreeSectionReader::readOccurrence(ProductOccurrence& occurrence)
{
    constexpr unsigned suppressed = 0x01;
    if (!section.expectEntity(EntityType::ProductOccurrence, "a product occurrence"))
        return;
    readNamedGraphics(occurrence);
    occurrence.part = section.readIndexPlusOne();
    occurrence.prototype = readOccurrenceReference();
    occurrence.externalData = readOccurrenceReference();
    section.readUnsignedIntegers(occurrence.children,
                                 section.readCount(1, sizeof(std::uint32_t), "children of an occurrence"));
    occurrence.isSuppressed = (section.readCharacter() & suppressed) != 0;
    occurrence.unitFromAuthoringSystem = section.readBoolean();
    occurrence.unitInMillimetres = section.readDouble();
    section.readCharacter(); // kind of product
    section.readInteger();   // load status
    if (section.readBoolean())
        occurrence.location = section.readTransformation();
    constexpr unsigned referenceBits = 20;
    const std::uint32_t references = section.readCount(referenceBits, sizeof(EntityReference), "entity references");
    for (std::uint32_t number = 0; number < references && section.ok(); ++number)
        readEntityReference(occurrence.entityReferences.emplace_back());
    refuseMarkupsAndViews();
    if (section.readBoolean())
        section.fail("expected no entity filter, which cannot be passed over");
    refuseAny("display filters");
    refuseAny("scene display parameters");
    section.readAddedFields(EntityType::ProductOccurrence);
    section.skipUserData();
}

std::uint32_t TreeSectionReader::readRoot()
{
    if (!section.expectEntity(EntityType::FileStructure, "the data of the file structure"))
        return nullIndex;
    section.readContentBase();
    section.readUnsignedInteger(); // next free identifier
    const std::uint32_t root = section.readIndexPlusOne();
    section.readAddedFields(EntityType::FileStructure);
    return root;
}

} // namespace

void readTree(SectionReader& section, const StructureIds& ids, FileStructure& target, std::size_t number)
{
    constexpr unsigned entityBits = 40;
    if (!section.expectEntity(EntityType::FileStructureTree, "the tree"))
        return;
    section.readContentBase();
    TreeSectionReader reader(section, ids, number);
    section.readTable(target.parts, entityBits, "part definitions", [&reader](Part& part) { reader.readPart(part); });
    section.readTable(target.occurrences, entityBits, "product occurrences",
                      [&reader](ProductOccurrence& occurrence) { reader.readOccurrence(occurrence); });
    target.root = reader.readRoot();
    section.readAddedFields(EntityType::FileStructureTree);
    section.skipUserData();
}

} // namespace prc
