#pragma once

#include "platform/core/Export.h"

#include <compare>
#include <cstdint>

namespace Orvel
{

class COrvelArchiveBase;
class COrvelDocument;
class COrvelEntity;

/// Names an entity for the life of the process, even after the entity is gone. Ordered by type bit, then by number, so
/// entities of one type come in the order of their creation, and the default id first.
class ORVEL_CORE_API COrvelID
{
public:
    /// The default id names nothing.
    COrvelID() = default;

    /// @param type  exactly one bit: the entity's type.
    /// @param count the entity's place in the process-wide count of entities, from 1.
    COrvelID(int type, std::uint64_t count)
        : entityType(type)
        , number(count)
    {}

    [[nodiscard]] bool IsDefault() const { return *this == COrvelID(); }

    /// One type bit; 0 for the default id.
    [[nodiscard]] int EntityType() const { return entityType; }
    [[nodiscard]] std::uint64_t Number() const { return number; }

    /// The live object, soft-deleted ones included; null when there is none (any more).
    [[nodiscard]] COrvelEntity* Entity() const;

    /// The document that owns the live object; null when there is none.
    [[nodiscard]] COrvelDocument* Document() const;

    [[nodiscard]] auto operator<=>(const COrvelID&) const = default;

    /// Type and number. What is read and cannot be the id of an entity fails.
    bool ArchiveReadWrite(COrvelArchiveBase& archive);

    /// While the mode is on, ids that are read from an archive are translated to those that took their place. Records
    /// nest: it is off again after as many calls with false as with true; a call with false too many does nothing.
    static void SetReadingMode(bool on);
    [[nodiscard]] static bool IsReadingMode();

private:
    int entityType = 0;
    std::uint64_t number = 0;
};

/// Keeps the id-reading mode on for a scope, whichever way it is left.
class COrvelIDReadingScope
{
public:
    COrvelIDReadingScope() { COrvelID::SetReadingMode(true); }
    ~COrvelIDReadingScope() { COrvelID::SetReadingMode(false); }
    COrvelIDReadingScope(const COrvelIDReadingScope&) = delete;
    COrvelIDReadingScope& operator=(const COrvelIDReadingScope&) = delete;
};

} // namespace Orvel
