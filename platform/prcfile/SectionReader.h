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
    /// Name and identifier of an entity that others can refer to.
    struct Identity
    {
        Model::Name name;
        std::uint32_t identifier = 0;
    };

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

    /// An index as most are stored, plus one.
    ///
    /// @return nullIndex for none.
    std::uint32_t readIndexPlusOne() { return readUnsignedInteger() - 1U; }

    Model::Name readContentBase();
    Identity readReferenceBase();
    Model::Graphics readGraphics();

    /// Of either kind, as a matrix.
    Matrix readTransformation();

    void skipUserData();

    /// Reads the fields that the file's writer adds to entities of this type.
    void readAddedFields(EntityType type) { schemaRunner.run(static_cast<std::uint32_t>(type), *this); }

private:
    void skipAttributes();
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
