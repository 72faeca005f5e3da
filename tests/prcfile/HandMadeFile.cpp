#include "tests/prcfile/HandMadeFile.h"

#include "tests/prcfile/FileSections.h"

#include <optional>

namespace prc::Test
{
namespace
{

IdentifierCounter identifiers;

Bytes BytesOf(const BitWriter& section)
{
    return {section.bytes().begin(), section.bytes().end()};
}

void FillOrPut(SectionWriter& section, const Fill& fill, auto... otherwise)
{
    if (fill)
        fill(section);
    else
        Put(section, otherwise...);
}

void WriteOccurrence(SectionWriter& section, const OccurrenceFields& fields)
{
    section.writeEntityType(EntityType::ProductOccurrence);
    section.writeReferenceBase(fields.name, identifiers);
    if (fields.writeGraphics)
        fields.writeGraphics(section);
    else
        section.writeGraphics(nullIndex);
    section.writeIndexPlusOne(fields.part);
    FillOrPut(section, fields.writeReferences, 0, 0);
    Put(section, fields.children.size(), fields.children, Byte(0), false, 1.0, Byte(0), 0);
    section.writeBoolean(static_cast<bool>(fields.writeLocation));
    FillOrPut(section, fields.writeLocation);
    FillOrPut(section, fields.writeEntityReferences, 0);
    section.writeNoMarkups();
    Put(section, 0, false, 0, 0); // views, entity filter, display filters, scene display parameters
    FillOrPut(section, fields.writeAdded);
    section.writeNoUserData();
}

void WriteMesh(SectionWriter& section, const MeshFields& mesh)
{
    Put(section, EntityType::Tessellation3D, false, mesh.coordinates.size(), mesh.coordinates);
    Put(section, true, false, mesh.recalculateNormals);
    if (mesh.recalculateNormals)
        Put(section, Byte(0), 30.0);
    Put(section, mesh.normals.size(), mesh.normals, 0, mesh.indices.size(), mesh.indices, mesh.faces.size());
    for (const FaceFields& face : mesh.faces) {
        Put(section, EntityType::TessellationFace, 0, 0, 0, face.usedEntities, face.start, face.sizes.size(),
            face.sizes, face.textureIndices, static_cast<bool>(face.writeColours));
        FillOrPut(section, face.writeColours);
    }
    Put(section, mesh.textures.size(), mesh.textures);
}

} // namespace

std::vector<std::uint8_t> FileOfStructures(std::span<const HandMadeFile> structures)
{
    FileSections file;
    for (const HandMadeFile& made : structures)
        file.structures.push_back({made.id,
                                   made.pictures,
                                   {BytesOf(made.globals), BytesOf(made.tree), BytesOf(made.tessellation),
                                    FileSections::emptyGeometry, FileSections::emptyExtraGeometry}});
    file.model = BytesOf(structures.back().model);
    return file.File();
}

std::vector<std::uint8_t> HandMadeFile::Bytes() const
{
    return FileOfStructures({this, 1});
}

HandMadeFile FileOf(const std::vector<OccurrenceFields>& occurrences, std::uint32_t styles,
                    const std::vector<Matrix>& coordinateSystems)
{
    HandMadeFile file;
    file.globals.writeEmptySchema();
    WriteGlobals(file.globals, styles, coordinateSystems);
    file.tree = TreeOf(occurrences);
    Put(file.tessellation, EntityType::FileStructureTessellation, 0, false, false, 0, 0);
    Put(file.model, 0, EntityType::ModelFile, 0, false, "model", true, 25.4, 1, HandMadeFile::structureId,
        occurrences.size(), true, 0, 0);
    return file;
}

HandMadeFile PlainFile()
{
    return FileOf({{.name = "root"}});
}

void WriteGlobals(SectionWriter& section, std::uint32_t styles, const std::vector<Matrix>& coordinateSystems)
{
    section.writeEntityType(EntityType::FileStructureGlobals);
    section.writeContentBase(std::nullopt);
    Put(section, 0, 2000.0, 40.0, false, 0); // other file structures, precision, default font, fonts
    Put(section, 1, 0.25, 0.5, 0.75, 0, 0);  // a colour, no pictures, no textures
    Put(section, 1, EntityType::Material);
    section.writeReferenceBase("paint", identifiers);
    Put(section, 1, 1, 1, 1, 0.5, 1.0, 0.625, 1.0, 1.0);
    Put(section, 0, styles); // no line patterns
    for (std::uint32_t style = 0; style < styles; ++style) {
        section.writeEntityType(EntityType::Style);
        section.writeReferenceBase(std::nullopt, identifiers);
        Put(section, 0.0, false, 0, true, 1, false, false, false, false);
    }
    Put(section, 0, coordinateSystems.size()); // no fill patterns
    for (const Matrix& system : coordinateSystems) {
        WriteItemHead(section, EntityType::CoordinateSystem, nullIndex, nullIndex, nullIndex);
        section.writeGeneralTransformation(system);
        section.writeNoUserData();
    }
    section.writeNoUserData();
}

SectionWriter TreeOf(const std::vector<OccurrenceFields>& occurrences, const Fill& writeItems)
{
    SectionWriter section;
    section.writeEntityType(EntityType::FileStructureTree);
    section.writeContentBase(std::nullopt);
    section.writeUnsignedInteger(writeItems ? 1 : 0);
    if (writeItems) {
        section.writeEntityType(EntityType::PartDefinition);
        section.writeReferenceBase("part", identifiers);
        section.writeGraphics(nullIndex);
        Put(section, -1.0, -2.0, -3.0, 4.0, 5.0, 6.0);
        writeItems(section);
        section.writeNoMarkups();
        Put(section, 0, 0); // views, user data
    }
    section.writeUnsignedInteger(static_cast<std::uint32_t>(occurrences.size()));
    for (const OccurrenceFields& fields : occurrences)
        WriteOccurrence(section, fields);
    section.writeEntityType(EntityType::FileStructure);
    section.writeContentBase(std::nullopt);
    Put(section, 1000, occurrences.size(), 0); // next identifier, root, user data
    return section;
}

std::uint32_t LastIdentifier()
{
    return identifiers.nextFree() - 1;
}

void WriteExplicitGraphics(SectionWriter& section, std::uint32_t style, std::uint16_t behaviour)
{
    Put(section, false, 0, style + 1U, static_cast<Byte>(behaviour & 0xFF), static_cast<Byte>(behaviour >> 8));
}

void WriteReferenceHead(SectionWriter& section, std::uint32_t style, EntityType kind)
{
    section.writeEntityType(EntityType::EntityReference);
    section.writeReferenceBase("reference", identifiers);
    WriteExplicitGraphics(section, style, 1);
    Put(section, 0, true, kind);
}

void WriteItemHead(SectionWriter& section, EntityType type, std::uint32_t style, std::uint32_t coordinateSystem,
                   std::uint32_t tessellation)
{
    section.writeEntityType(type);
    section.writeReferenceBase(std::nullopt, identifiers);
    section.writeGraphics(style);
    Put(section, coordinateSystem + 1U, tessellation + 1U);
}

SectionWriter TessellationsOf(std::uint32_t count, const MeshFields& mesh, const Fill& writeMore)
{
    SectionWriter section;
    section.writeEntityType(EntityType::FileStructureTessellation);
    section.writeContentBase(std::nullopt);
    section.writeUnsignedInteger(count);
    WriteMesh(section, mesh);
    FillOrPut(section, writeMore);
    section.writeNoUserData();
    return section;
}

} // namespace prc::Test
