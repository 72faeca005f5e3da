#include "tests/support/PRCSectionReader.h"

#include <utility>

namespace Orvel::Test
{

PRCSectionReader::PRCSectionReader(std::string sectionName, std::vector<uint8_t> sectionBytes, Strictness howStrict,
                                   std::vector<uint32_t>& identifiers)
    : PRCBitReader(std::move(sectionName), std::move(sectionBytes), howStrict)
    , uniqueIdentifiers(identifiers)
{}

void PRCSectionReader::Expect(EntityType type)
{
    ExpectUnsigned(static_cast<uint32_t>(type), "entity type");
}

void PRCSectionReader::ExpectUnsigned(uint32_t value, const char* field)
{
    const uint32_t found = UnsignedInteger();
    if (found != value)
        Fail(std::string(field) + ": expected " + std::to_string(value) + ", found " + std::to_string(found));
}

void PRCSectionReader::ExpectInteger(int32_t value, const char* field)
{
    const int32_t found = Integer();
    if (found != value)
        Fail(std::string(field) + ": expected " + std::to_string(value) + ", found " + std::to_string(found));
}

void PRCSectionReader::ExpectCharacter(uint8_t value, const char* field)
{
    const unsigned found = Character();
    if (found != value)
        Fail(std::string(field) + ": expected " + std::to_string(value) + ", found " + std::to_string(found));
}

void PRCSectionReader::ExpectBit(bool value, const char* field)
{
    if (Bit() != value)
        Fail(std::string(field) + (value ? ": expected 1, found 0" : ": expected 0, found 1"));
}

void PRCSectionReader::ExpectDouble(double value, const char* field)
{
    const double found = Double();
    if (found != value)
        Fail(std::string(field) + ": expected " + std::to_string(value) + ", found " + std::to_string(found));
}

/// Our writer spells every name out and takes the one-bit form only for a null after an explicit null: some readers
/// know no current name.
Name PRCSectionReader::CurrentName()
{
    if (Bit()) {
        Require(!IsOwnWriter() || (hasNamedAnything && !currentName), "name left to the current name");
        return currentName;
    }
    const bool previousIsNull = hasNamedAnything && !currentName;
    currentName = String();
    hasNamedAnything = true;
    Require(!IsOwnWriter() || currentName || !previousIsNull, "null name spelt out after a null name");
    return currentName;
}

Name PRCSectionReader::Base()
{
    ExpectUnsigned(0, "attribute count");
    return CurrentName();
}

void PRCSectionReader::ExpectUnnamedBase()
{
    Require(!Base(), "section with a name");
}

Name PRCSectionReader::ReferencedBase()
{
    Name name = Base();
    ExpectUnsigned(0, "non-persistent identifier");
    ExpectUnsigned(0, "persistent identifier");
    uniqueIdentifiers.push_back(UnsignedInteger());
    return name;
}

PRCSectionReader::Graphics PRCSectionReader::BaseWithGraphics(size_t styleCount)
{
    Graphics result{ReferencedBase(), std::nullopt};
    ExpectBit(false, "same graphics");
    ExpectUnsigned(0, "layer index + 1");
    result.style = OptionalIndex(styleCount, "style");
    ExpectCharacter(1, "low byte of the behaviour");
    ExpectCharacter(0, "high byte of the behaviour");
    return result;
}

void PRCSectionReader::ExpectNoMarkup()
{
    for (const char* field : {"linked item count", "leader count", "markup count", "annotation entity count"})
        ExpectUnsigned(0, field);
}

UniqueId PRCSectionReader::CompressedUniqueId()
{
    UniqueId result{};
    for (uint32_t& part : result)
        part = UnsignedInteger();
    return result;
}

std::optional<size_t> PRCSectionReader::OptionalIndex(size_t tableSize, const char* table)
{
    const size_t indexPlusOne = UnsignedInteger();
    if (indexPlusOne > tableSize)
        Fail(std::string(table) + " index " + std::to_string(indexPlusOne - 1) + " in a table of " +
             std::to_string(tableSize));
    return indexPlusOne == 0 ? std::nullopt : std::optional<size_t>(indexPlusOne - 1);
}

size_t PRCSectionReader::Index(size_t tableSize, const char* table)
{
    const std::optional<size_t> index = OptionalIndex(tableSize, table);
    if (!index)
        Fail(std::string(table) + " index is missing");
    return *index;
}

double PRCSectionReader::ZeroToOne(const char* field)
{
    const double value = Double();
    if (value < 0 || value > 1)
        Fail(std::string(field) + " outside 0..1: " + std::to_string(value));
    return value;
}

} // namespace Orvel::Test
