#pragma once

#include "platform/prcfile/BitWriter.h"
#include "platform/prcfile/EntityTypes.h"
#include "platform/prcfile/Matrix.h"
#include "platform/prcfile/UniqueId.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace prc
{

/// Hands out the identifiers that are unique within a file structure: 1, 2, 3 ...
class IdentifierCounter
{
public:
    std::uint32_t take() { return next++; }
    [[nodiscard]] std::uint32_t nextFree() const { return next; }

private:
    std::uint32_t next = 1;
};

/// A section of a file structure under construction: the bit stream and the building blocks that entities share.
class SectionWriter : public BitWriter
{
public:
    using BitWriter::BitWriter;

    void writeEntityType(EntityType type);

    /// "Nothing added" in front of sections that newer writers could extend.
    void writeEmptySchema();

    /// No attributes, and a name. A missing name is said once in full, after which "the same as before" is enough: a
    /// reader would otherwise give unnamed entities the name of their predecessor.
    void writeContentBase(std::optional<std::string_view> name);

    /// As above, with the identifiers of an entity that others can refer to.
    void writeReferenceBase(std::optional<std::string_view> name, IdentifierCounter& identifiers);

    /// Layer, style and visibility; never left out as "the same as before", which readers understand differently.
    ///
    /// @param style style index, nullIndex for none.
    void writeGraphics(std::uint32_t style);

    /// An index as most are stored: plus one, so that 0 can say "none".
    ///
    /// @param index nullIndex for none.
    void writeIndexPlusOne(std::uint32_t index);

    void writeVector(double x, double y, double z);
    void writeUniqueId(const UniqueId& id);
    void writeGeneralTransformation(const Matrix& matrix);
    void writeNoMarkups();
    void writeNoUserData();

private:
    bool previousNameIsNull = false; ///< false in front of the first name as well.
};

} // namespace prc
