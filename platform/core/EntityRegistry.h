#pragma once

#include "platform/core/COrvelID.h"
#include "platform/core/COrvelUUID.h"

#include <cstddef>
#include <cstdint>
#include <unordered_map>

namespace Orvel
{

class COrvelEntity;

/// Finds live entities by number and GUID. It owns nothing. Made on first use and never destroyed, so that entities may
/// leave it however late in the process they end.
class EntityRegistry
{
public:
    static EntityRegistry& Instance();

    /// @return the number of the next entity; from 1, never given twice.
    std::uint64_t NextNumber() { return ++lastNumber; }

    void Enter(COrvelEntity& entity);
    /// Nothing happens for an entity that never entered.
    void Leave(const COrvelEntity& entity);
    /// Files `entity` under `newGuid` in place of `oldGuid`; an invalid one is not filed.
    void ChangeGuid(COrvelEntity& entity, const COrvelUUID& oldGuid, const COrvelUUID& newGuid);

    /// Null when there is none.
    COrvelEntity* Find(const COrvelID& id) const;
    COrvelEntity* Find(const COrvelUUID& guid) const;

private:
    struct HashOfGuid
    {
        std::size_t operator()(const COrvelUUID& guid) const;
    };

    EntityRegistry() = default;
    void LeaveGuid(const COrvelEntity& entity, const COrvelUUID& guid);

    std::uint64_t lastNumber = 0;
    std::unordered_map<std::uint64_t, COrvelEntity*> byNumber;
    std::unordered_map<COrvelUUID, COrvelEntity*, HashOfGuid> byGuid;
};

} // namespace Orvel
