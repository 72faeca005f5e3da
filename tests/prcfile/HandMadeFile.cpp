#include "tests/prcfile/HandMadeFile.h"

#include "platform/prcfile/NullIndex.h"
#include "tests/prcfile/FileSections.h"

#include <optional>

namespace prc::Test
{

namespace
{

IdentifierCounter identifiers;

void WriteOr(const std::function<void(SectionWriter&)>& write, SectionWriter& section,
             const std::function<void(SectionWriter&)>& otherwise)
{
    (write ? write : otherwise)(section);
}

Bytes BytesOf(const BitWriter& section)
{
    return {section.bytes().begin(), section.bytes().end()};
}

} // namespace

std::vector<std::uint8_t> FileOfStructures(std::span<const HandMadeFile> structures)
{
    const Bytes emptyGeometry = {0x99, 0x40, 0x40};
    const Bytes emptyExtraGeometry = {0x99, 0xC0, 0x40};
    FileSections file;
    for (const HandMadeFile& made : structures)
        file.structures.push_back({made.id,
                                   made.pictures,
                                   {BytesOf(made.globals), BytesOf(made.tree), BytesOf(made.tessellation),
                                    emptyGeometry, emptyExtraGeometry}});
    file.model = BytesOf(structures.back().model);
    return file.File();
}

std::vector<std::uint8_t> HandMadeFile::Bytes() const
{
    return FileOfStructures({this, 1});
}

HandMadeFile PlainFile()
{
    HandMadeFile file;
    file.globals.writeEmptySchema();
    WriteGlobals(file.globals, 0);
    file.tree = TreeOf([](SectionWriter& section) { section.writeUnsignedInteger(0); },
                       [](SectionWriter& section) {
                           section.writeUnsignedInteger(1);
                           WriteOccurrence(section, {.name = "root"});
                       },
                       0);
    file.tessellation = TessellationsOf(0, [](SectionWriter&) {});
    file.model.writeEmptySchema();
    file.model.writeEntityType(EntityType::ModelFile);
    file.model.writeContentBase("model");
    file.model.writeBoolean(true);
    file.model.writeDouble(25.4);
    file.model.writeUnsignedInteger(1);
    file.model.writeUniqueId(HandMadeFile::structureId);
    file.model.writeUnsignedInteger(1);
    file.model.writeBoolean(true);
    file.model.writeUnsignedInteger(0);
    file.model.writeNoUserData();
    return file;
}

void WriteGlobals(SectionWriter& section, std::uint32_t styles, const std::vector<Matrix>& coordinateSystems)
{
    section.writeEntityType(EntityType::FileStructureGlobals);
    section.writeContentBase(std::nullopt);
    section.writeUnsignedInteger(0); // other file structures
    section.writeDouble(2000.0);
    section.writeDouble(40.0);
    section.writeString(std::nullopt);
    section.writeUnsignedInteger(0); // fonts
    section.writeUnsignedInteger(1); // colours
    section.writeVector(0.25, 0.5, 0.75);
    section.writeUnsignedInteger(0); // pictures
    section.writeUnsignedInteger(0); // textures
    section.writeUnsignedInteger(1); // materials
    section.writeEntityType(EntityType::Material);
    section.writeReferenceBase("paint", identifiers);
    for (unsigned colour = 0; colour < 4; ++colour)
        section.writeUnsignedInteger(1);
    for (const double number : {0.5, 1.0, 0.625, 1.0, 1.0})
        section.writeDouble(number);
    section.writeUnsignedInteger(0); // line patterns
    section.writeUnsignedInteger(styles);
    for (std::uint32_t style = 0; style < styles; ++style) {
        section.writeEntityType(EntityType::Style);
        section.writeReferenceBase(std::nullopt, identifiers);
        section.writeDouble(0.0);
        section.writeBoolean(false);
        section.writeUnsignedInteger(0);
        section.writeBoolean(true);
        section.writeUnsignedInteger(1);
        section.writeBits(0, 4); // no transparency, nothing additional
    }
    section.writeUnsignedInteger(0); // fill patterns
    section.writeUnsignedInteger(static_cast<std::uint32_t>(coordinateSystems.size()));
    for (const Matrix& system : coordinateSystems) {
        WriteItemHead(section, EntityType::CoordinateSystem, nullIndex, nullIndex, nullIndex);
        section.writeGeneralTransformation(system);
        section.writeNoUserData();
    }
    section.writeNoUserData();
}

SectionWriter TreeOf(const std::function<void(SectionWriter&)>& writeParts,
                     const std::function<void(SectionWriter&)>& writeOccurrences, std::uint32_t root)
{
    SectionWriter section;
    section.writeEntityType(EntityType::FileStructureTree);
    section.writeContentBase(std::nullopt);
    writeParts(section);
    writeOccurrences(section);
    section.writeEntityType(EntityType::FileStructure);
    section.writeContentBase(std::nullopt);
    section.writeUnsignedInteger(1000);
    section.writeIndexPlusOne(root);
    section.writeNoUserData();
    return section;
}

void WriteOccurrence(SectionWriter& section, const OccurrenceFields& fields)
{
    section.writeEntityType(EntityType::ProductOccurrence);
    section.writeReferenceBase(fields.name, identifiers);
    WriteOr(fields.writeGraphics, section, [](SectionWriter& bits) { bits.writeGraphics(nullIndex); });
    section.writeIndexPlusOne(fields.part);
    WriteOr(fields.writeReferences, section, [](SectionWriter& bits) { bits.writeBits(0, 2); });
    section.writeUnsignedInteger(static_cast<std::uint32_t>(fields.children.size()));
    section.writeUnsignedIntegers(fields.children);
    section.writeCharacter(0);
    section.writeBoolean(false);
    section.writeDouble(1.0);
    section.writeCharacter(0);
    section.writeInteger(0);
    section.writeBoolean(static_cast<bool>(fields.writeLocation));
    WriteOr(fields.writeLocation, section, [](SectionWriter&) {});
    WriteOr(fields.writeEntityReferences, section, [](SectionWriter& bits) { bits.writeUnsignedInteger(0); });
    section.writeNoMarkups();
    section.writeBits(0, 4); // views, entity filter, display filters, scene display parameters
    section.writeNoUserData();
}

void WritePart(SectionWriter& section, const std::function<void(SectionWriter&)>& writeItems)
{
    section.writeEntityType(EntityType::PartDefinition);
    section.writeReferenceBase("part", identifiers);
    section.writeGraphics(nullIndex);
    section.writeVector(-1.0, -2.0, -3.0);
    section.writeVector(4.0, 5.0, 6.0);
    writeItems(section);
    section.writeNoMarkups();
    section.writeUnsignedInteger(0); // views
    section.writeNoUserData();
}

std::uint32_t LastIdentifier()
{
    return identifiers.nextFree() - 1;
}

void WriteExplicitGraphics(SectionWriter& section, std::uint32_t style, std::uint16_t behaviour)
{
    section.writeBoolean(false);
    section.writeUnsignedInteger(0);
    section.writeIndexPlusOne(style);
    section.writeCharacter(static_cast<std::uint8_t>(behaviour & 0xFF));
    section.writeCharacter(static_cast<std::uint8_t>(behaviour >> 8));
}

void WriteItemHead(SectionWriter& section, EntityType type, std::uint32_t style, std::uint32_t coordinateSystem,
                   std::uint32_t tessellation)
{
    section.writeEntityType(type);
    section.writeReferenceBase(std::nullopt, identifiers);
    section.writeGraphics(style);
    section.writeIndexPlusOne(coordinateSystem);
    section.writeIndexPlusOne(tessellation);
}

void WriteMesh(SectionWriter& section, const MeshFields& mesh)
{
    const auto writeDoubles = [&section](const std::vector<double>& values) {
        section.writeUnsignedInteger(static_cast<std::uint32_t>(values.size()));
        section.writeDoubles(values);
    };
    section.writeEntityType(EntityType::Tessellation3D);
    section.writeBoolean(false);
    writeDoubles(mesh.coordinates);
    section.writeBoolean(true);
    section.writeBoolean(false);
    section.writeBoolean(mesh.recalculateNormals);
    if (mesh.recalculateNormals) {
        section.writeCharacter(0);
        section.writeDouble(30.0);
    }
    writeDoubles(mesh.normals);
    section.writeUnsignedInteger(0); // wires
    section.writeUnsignedInteger(static_cast<std::uint32_t>(mesh.indices.size()));
    section.writeUnsignedIntegers(mesh.indices);
    section.writeUnsignedInteger(static_cast<std::uint32_t>(mesh.faces.size()));
    for (const FaceFields& face : mesh.faces) {
        section.writeEntityType(EntityType::TessellationFace);
        section.writeBits(0, 3); // styles, start of wires, wire sizes
        section.writeUnsignedInteger(face.usedEntities);
        section.writeUnsignedInteger(face.start);
        section.writeUnsignedInteger(static_cast<std::uint32_t>(face.sizes.size()));
        section.writeUnsignedIntegers(face.sizes);
        section.writeUnsignedInteger(face.textureIndices);
        section.writeBoolean(static_cast<bool>(face.writeColours));
        if (face.writeColours)
            face.writeColours(section);
    }
    writeDoubles(mesh.textures);
}

SectionWriter TessellationsOf(std::uint32_t count, const std::function<void(SectionWriter&)>& write)
{
    SectionWriter section;
    section.writeEntityType(EntityType::FileStructureTessellation);
    section.writeContentBase(std::nullopt);
    section.writeUnsignedInteger(count);
    write(section);
    section.writeNoUserData();
    return section;
}

} // namespace prc::Test
