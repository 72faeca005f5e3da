#include "platform/prcfile/SectionWriter.h"

namespace prc
{

namespace
{

constexpr std::uint8_t behaviourShown = 1;

} // namespace

void SectionWriter::writeEntityType(EntityType type)
{
    writeUnsignedInteger(static_cast<std::uint32_t>(type));
}

void SectionWriter::writeEmptySchema()
{
    writeUnsignedInteger(0);
}

void SectionWriter::writeContentBase(std::optional<std::string_view> name)
{
    writeUnsignedInteger(0); // attributes
    const bool sameAsBefore = !name && previousNameIsNull;
    writeBoolean(sameAsBefore);
    if (!sameAsBefore)
        writeString(name);
    previousNameIsNull = !name;
}

void SectionWriter::writeReferenceBase(std::optional<std::string_view> name, IdentifierCounter& identifiers)
{
    writeContentBase(name);
    writeUnsignedInteger(0); // identifier in the authoring system, of a session
    writeUnsignedInteger(0); // identifier in the authoring system, lasting
    writeUnsignedInteger(identifiers.take());
}

void SectionWriter::writeGraphics(std::uint32_t style)
{
    writeBoolean(false);     // not the same graphics as before
    writeUnsignedInteger(0); // no layer
    writeIndexPlusOne(style);
    writeCharacter(behaviourShown);
    writeCharacter(0);
}

void SectionWriter::writeIndexPlusOne(std::uint32_t index)
{
    writeUnsignedInteger(index + 1U); // nullIndex wraps round to 0
}

void SectionWriter::writeVector(double x, double y, double z)
{
    writeDouble(x);
    writeDouble(y);
    writeDouble(z);
}

void SectionWriter::writeUniqueId(const UniqueId& id)
{
    writeUnsignedIntegers(id);
}

void SectionWriter::writeGeneralTransformation(const Matrix& matrix)
{
    writeEntityType(EntityType::GeneralTransformation);
    for (std::size_t column = 0; column < 4; ++column) {
        for (std::size_t row = 0; row < 4; ++row)
            writeDouble(matrix[4 * row + column]);
    }
}

void SectionWriter::writeNoMarkups()
{
    writeBits(0, 4); // linked items, leaders, markups, annotation entities
}

void SectionWriter::writeNoUserData()
{
    writeUnsignedInteger(0);
}

} // namespace prc
