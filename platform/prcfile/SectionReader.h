#pragma once

#include "platform/prcfile/BitReader.h"
#include "platform/prcfile/EntityTypes.h"
#include "platform/prcfile/Matrix.h"
#include "platform/prcfile/PRCGraphics.h"
#include "platform/prcfile/ReadBudget.h"
#include "platform/prcfile/SchemaProgram.h"
#include "platform/prcfile/UniqueId.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace prc
{

/// A section being read: the bit stream and the building blocks that entities share. Errors stick, see BitReader.
class SectionReader : public BitReader
{
public:
    /// @param bytes         the unpacked section, followed by zeros, see BitReader; not owned.
    /// @param decodedBudget what the model may still take up; not owned.
    /// @param schemas       programs for the entities of the section; not owned.
    SectionReader(std::span<const std::uint8_t> bytes, ReadBudget& decodedBudget, const Schemas& schemas)
        : BitReader(bytes)
        , budget(decodedBudget)
        , schemaRunner(schemas)
    {}

    /// Takes bytes out of what the model may take up; fails the section when they are not left.
    bool charge(std::uint64_t bytes);

    /// A count of elements that follow, each of which takes `minimumBits` at least and `bytesEach` in the model. Fails
    /// when the rest of the section cannot hold so many.
    ///
    /// @return 0 after a failure.
    std::uint32_t readCount(unsigned minimumBits, std::size_t bytesEach, const char* what);

    /// @return 0 after a failure.
    std::uint32_t readEntityType() { return readUnsignedInteger(); }

    /// @return false after failing the section when another type stands here.
    bool expectEntity(EntityType type, const char* what);

    Model::Name readString();
    UniqueId readUniqueId();
    std::array<double, 3> readVector();
    void readDoubles(std::vector<double>& values, std::uint32_t count);
    void readUnsignedIntegers(std::vector<std::uint32_t>& values, std::uint32_t count);

    /// A table: its size, then its entries, which `read` fills one by one. An entry that the section ends in is left
    /// out.
    ///
    /// @param minimumBits that an entry takes.
    template <typename Entry, typename Read>
    void readTable(std::vector<Entry>& entries, unsigned minimumBits, const char* what, Read read)
    {
        const std::uint32_t count = readCount(minimumBits, sizeof(Entry), what);
        entries.reserve(count); // no more than has been charged
        for (std::uint32_t number = 0; number < count && ok(); ++number) {
            read(entries.emplace_back());
            if (!ok())
                entries.pop_back();
        }
    }

    /// An index as most are stored, plus one.
    ///
    /// @return nullIndex for none.
    std::uint32_t readIndexPlusOne() { return readUnsignedInteger() - 1U; }

    Model::Name readContentBase();

    /// As above, with the identifiers of an entity that others can refer to.
    ///
    /// @param name out: its name.
    /// @return the identifier that is unique within the file structure.
    std::uint32_t readReferenceBase(Model::Name& name);

    void skipReferenceBase()
    {
        Model::Name name;
        readReferenceBase(name);
    }

    /// The name and the identifier of an entity that has fields for them.
    template <typename Entity>
    void readIdentity(Entity& entity)
    {
        entity.identifier = readReferenceBase(entity.name);
    }

    Model::Graphics readGraphics();

    /// Of either kind, as a matrix.
    Matrix readTransformation();

    void skipUserData();

    /// Reads the fields that the file's writer adds to entities of this type.
    void readAddedFields(EntityType type) { schemaRunner.run(static_cast<std::uint32_t>(type), *this); }

private:
    void skipAttributes();
    void skipAttributeValue();
    void skipTitle();
    Matrix readCartesianTransformation();

    ReadBudget& budget;
    SchemaRunner schemaRunner;
    Model::Name currentName;
    Model::Graphics currentGraphics;
};

/// Reads the schemas that a section begins with.
///
/// @param schemas out: gets the programs.
void readSchemas(SectionReader& section, Schemas& schemas);

/// What a type code is called in messages: "a style (701)".
[[nodiscard]] std::string entityTypeName(std::uint32_t type);

} // namespace prc
