#include "platform/prcfile/SectionReader.h"

#include "platform/prcfile/TextRepair.h"

#include <limits>
#include <string_view>
#include <utility>

namespace prc
{

namespace
{

/// Parts that a Cartesian transformation states, in this order but for the scales.
enum CartesianBits : unsigned
{
    Translation = 0x01,
    Rotation = 0x02,
    Mirror = 0x04,
    UniformScale = 0x08,
    NonUniformScale = 0x10,
    NonOrthogonal = 0x20,
    Homogeneous = 0x40
};

using Vector = std::array<double, 3>;

Vector cross(const Vector& a, const Vector& b)
{
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

} // namespace

bool SectionReader::charge(std::uint64_t bytes)
{
    if (budget.take(bytes))
        return true;
    fail("the model takes up more than the limit of " + std::to_string(budget.whole()) + " bytes");
    return false;
}

std::uint32_t SectionReader::readCount(unsigned minimumBits, std::size_t bytesEach, const char* what)
{
    const std::uint32_t count = readUnsignedInteger();
    if (!ok())
        return 0;
    if (count > bitsLeft() / minimumBits) {
        fail(std::to_string(count) + " " + what + " are announced, more than the rest of the section can hold");
        return 0;
    }
    return charge(std::uint64_t{count} * bytesEach) ? count : 0;
}

bool SectionReader::expectEntity(EntityType type, const char* what)
{
    const std::size_t start = bitPosition();
    const std::uint32_t found = readEntityType();
    if (!ok())
        return false;
    if (found == static_cast<std::uint32_t>(type))
        return true;
    fail(std::string("expected ") + what + " (" + std::to_string(static_cast<std::uint32_t>(type)) + ") at bit " +
         std::to_string(start) + ", found " + entityTypeName(found));
    return false;
}

Model::Name SectionReader::readString()
{
    if (!readBoolean())
        return std::nullopt;
    const std::uint32_t length = readCount(8, 1, "bytes of a text");
    std::string text(length, '\0');
    for (char& byte : text)
        byte = static_cast<char>(readCharacter());
    if (!ok())
        return std::nullopt;
    return validUtf8(std::move(text));
}

UniqueId SectionReader::readUniqueId()
{
    UniqueId id{};
    for (std::uint32_t& number : id)
        number = readUnsignedInteger();
    return id;
}

Vector SectionReader::readVector()
{
    const double x = readDouble();
    const double y = readDouble();
    const double z = readDouble();
    return {x, y, z};
}

void SectionReader::readDoubles(std::vector<double>& values, std::uint32_t count)
{
    values.resize(count);
    for (double& value : values)
        value = readDouble();
}

void SectionReader::readUnsignedIntegers(std::vector<std::uint32_t>& values, std::uint32_t count)
{
    values.resize(count);
    for (std::uint32_t& value : values)
        value = readUnsignedInteger();
}

void SectionReader::skipTitle()
{
    const bool isNumber = readBoolean();
    if (isNumber)
        readUnsignedInteger();
    else
        skipString();
}

void SectionReader::skipAttributeValue()
{
    enum Kind : std::uint32_t
    {
        Integer = 1,
        Double = 2,
        Time = 3,
        String = 4,
        TwoNumbers = 5
    };
    const std::uint32_t kind = readUnsignedInteger();
    switch (kind) {
    case Integer:
    case Time:
        readUnsignedInteger(); // both integers are framed alike
        break;
    case Double:
        readDouble();
        break;
    case String:
        skipString();
        break;
    case TwoNumbers:
        readUnsignedInteger();
        readUnsignedInteger();
        break;
    default:
        fail("expected a kind of attribute from 1 to 5, found " + std::to_string(kind));
        break;
    }
}

void SectionReader::skipAttributes()
{
    const std::uint32_t attributes = readCount(13, 0, "attributes");
    for (std::uint32_t attribute = 0; attribute < attributes && ok(); ++attribute) {
        if (!expectEntity(EntityType::Attribute, "an attribute"))
            return;
        skipTitle();
        const std::uint32_t entries = readCount(3, 0, "entries of an attribute");
        for (std::uint32_t entry = 0; entry < entries && ok(); ++entry) {
            skipTitle();
            skipAttributeValue();
        }
        readAddedFields(EntityType::Attribute);
    }
}

Model::Name SectionReader::readContentBase()
{
    skipAttributes();
    const bool sameAsBefore = readBoolean();
    if (!sameAsBefore)
        currentName = readString();
    else if (currentName && !charge(currentName->size()))
        return std::nullopt; // many entities may repeat one long name
    return ok() ? currentName : std::nullopt;
}

std::uint32_t SectionReader::readReferenceBase(Model::Name& name)
{
    name = readContentBase();
    readUnsignedInteger(); // in the authoring system, of a session
    readUnsignedInteger(); // in the authoring system, lasting
    return readUnsignedInteger();
}

Model::Graphics SectionReader::readGraphics()
{
    const bool sameAsBefore = readBoolean();
    if (!sameAsBefore) {
        currentGraphics.layer = readIndexPlusOne();
        currentGraphics.style = readIndexPlusOne();
        const std::uint8_t low = readCharacter();
        const std::uint8_t high = readCharacter();
        currentGraphics.behaviour = static_cast<std::uint16_t>(low | high << 8);
        currentGraphics.stated = true;
    }
    readAddedFields(EntityType::BaseWithGraphics);
    return currentGraphics;
}

Matrix SectionReader::readTransformation()
{
    const std::uint32_t type = readEntityType();
    if (type == static_cast<std::uint32_t>(EntityType::CartesianTransformation))
        return readCartesianTransformation();
    if (type != static_cast<std::uint32_t>(EntityType::GeneralTransformation)) {
        fail("expected a transformation (202 or 207), found " + entityTypeName(type));
        return identityMatrix;
    }
    Matrix matrix{};
    for (std::size_t column = 0; column < 4; ++column) {
        for (std::size_t row = 0; row < 4; ++row)
            matrix[4 * row + column] = readDouble();
    }
    readAddedFields(EntityType::GeneralTransformation);
    return matrix;
}

Matrix SectionReader::readCartesianTransformation()
{
    const unsigned behaviour = readCharacter();
    std::array<Vector, 3> columns = {{{1.0, 0.0, 0.0}, {0.0, 1.0, 0.0}, {0.0, 0.0, 1.0}}};
    Vector translation{};
    std::array<double, 4> lastRow{0.0, 0.0, 0.0, 1.0};
    if ((behaviour & Translation) != 0)
        translation = readVector();
    if ((behaviour & NonOrthogonal) != 0) {
        for (Vector& column : columns)
            column = readVector();
    } else if ((behaviour & Rotation) != 0) {
        columns[0] = readVector();
        columns[1] = readVector();
        columns[2] = cross(columns[0], columns[1]);
    }
    if ((behaviour & Mirror) != 0)
        columns[2] = cross(columns[1], columns[0]);
    Vector scale{1.0, 1.0, 1.0};
    if ((behaviour & NonUniformScale) != 0)
        scale = readVector();
    else if ((behaviour & UniformScale) != 0)
        scale.fill(readDouble());
    if ((behaviour & Homogeneous) != 0) {
        for (double& number : lastRow)
            number = readDouble();
    }
    readAddedFields(EntityType::CartesianTransformation);
    Matrix matrix{};
    for (std::size_t row = 0; row < 3; ++row) {
        for (std::size_t column = 0; column < 3; ++column)
            matrix[4 * row + column] = columns[column][row] * scale[column];
        matrix[4 * row + 3] = translation[row];
        matrix[12 + row] = lastRow[row];
    }
    matrix[15] = lastRow[3];
    return matrix;
}

void SectionReader::skipUserData()
{
    const std::uint32_t bits = readUnsignedInteger();
    if (ok() && bits > bitsLeft()) {
        fail(std::to_string(bits) + " bits of user data are announced, more than the rest of the section holds");
        return;
    }
    skip(bits);
}

void readSchemas(SectionReader& section, Schemas& schemas)
{
    constexpr std::size_t mapEntry = 96; // bytes of a tree node with its vector, roughly
    const std::uint32_t count = section.readCount(2, mapEntry, "schemas");
    for (std::uint32_t number = 0; number < count && section.ok(); ++number) {
        const std::uint32_t type = section.readEntityType();
        const std::uint32_t tokens = section.readCount(1, sizeof(std::uint32_t), "tokens of a schema");
        section.readUnsignedIntegers(schemas[type], tokens);
    }
    if (!section.ok())
        schemas.clear();
}

namespace
{

struct TypeName
{
    EntityType type;
    const char* name;
};

constexpr TypeName typeNames[] = {
    {EntityType::Tessellation3D, "a mesh"},
    {EntityType::Tessellation3DCompressed, "a compressed mesh"},
    {EntityType::TessellationFace, "a face"},
    {EntityType::Tessellation3DWire, "a wire tessellation"},
    {EntityType::TessellationMarkup, "a markup tessellation"},
    {EntityType::Attribute, "an attribute"},
    {EntityType::CartesianTransformation, "a Cartesian transformation"},
    {EntityType::EntityReference, "an entity reference"},
    {EntityType::MarkupLinkedItem, "a linked item of a markup"},
    {EntityType::ReferenceOnBase, "a reference on an entity"},
    {EntityType::ReferenceOnTopology, "a reference on topology"},
    {EntityType::GeneralTransformation, "a general transformation"},
    {EntityType::BrepModel, "a boundary representation"},
    {EntityType::Curve, "a curve"},
    {EntityType::Direction, "a direction"},
    {EntityType::Plane, "a plane"},
    {EntityType::PointSet, "a point set"},
    {EntityType::PolyBrepModel, "a polygonal model"},
    {EntityType::PolyWire, "a polyline"},
    {EntityType::Set, "a set"},
    {EntityType::CoordinateSystem, "a coordinate system"},
    {EntityType::ModelFile, "a model file"},
    {EntityType::FileStructure, "a file structure"},
    {EntityType::FileStructureGlobals, "globals"},
    {EntityType::FileStructureTree, "a tree"},
    {EntityType::FileStructureTessellation, "tessellations"},
    {EntityType::FileStructureGeometry, "geometry"},
    {EntityType::FileStructureExtraGeometry, "extra geometry"},
    {EntityType::ProductOccurrence, "a product occurrence"},
    {EntityType::PartDefinition, "a part definition"},
    {EntityType::Filter, "a filter"},
    {EntityType::View, "a view"},
    {EntityType::Style, "a style"},
    {EntityType::Material, "a material"},
    {EntityType::Picture, "a picture"},
    {EntityType::TextureApplication, "a texture application"},
    {EntityType::TextureDefinition, "a texture definition"},
    {EntityType::TextureTransformation, "a texture transformation"},
    {EntityType::LinePattern, "a line pattern"},
    {EntityType::DottingPattern, "a dotting pattern"},
    {EntityType::HatchingPattern, "a hatching pattern"},
    {EntityType::SolidPattern, "a solid pattern"},
    {EntityType::VPicturePattern, "a vector picture pattern"},
};

} // namespace

std::string entityTypeName(std::uint32_t type)
{
    for (const TypeName& entry : typeNames) {
        if (static_cast<std::uint32_t>(entry.type) == type)
            return std::string(entry.name) + " (" + std::to_string(type) + ")";
    }
    return "the unknown type " + std::to_string(type);
}

} // namespace prc
