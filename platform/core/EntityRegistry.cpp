#include "platform/core/EntityRegistry.h"

#include "platform/core/COrvelEntity.h"

#include <cstring>

namespace Orvel
{

EntityRegistry& EntityRegistry::Instance()
{
    static EntityRegistry* const registry = new EntityRegistry;
    return *registry;
}

void EntityRegistry::Enter(COrvelEntity& entity)
{
    byNumber.emplace(entity.ID().Number(), &entity);
    byGuid.insert_or_assign(entity.GetGuid(), &entity);
}

void EntityRegistry::Leave(const COrvelEntity& entity)
{
    byNumber.erase(entity.ID().Number());
    LeaveGuid(entity, entity.GetGuid());
}

void EntityRegistry::ChangeGuid(COrvelEntity& entity, const COrvelUUID& oldGuid, const COrvelUUID& newGuid)
{
    if (newGuid.IsValid())
        byGuid.insert_or_assign(newGuid, &entity);
    if (oldGuid != newGuid)
        LeaveGuid(entity, oldGuid);
}

void EntityRegistry::LeaveGuid(const COrvelEntity& entity, const COrvelUUID& guid)
{
    // Another entity may have been given the same GUID since: the entry is then that one's.
    const auto found = byGuid.find(guid);
    if (found != byGuid.end() && found->second == &entity)
        byGuid.erase(found);
}

COrvelEntity* EntityRegistry::Find(const COrvelID& id) const
{
    const auto found = byNumber.find(id.Number());
    return found != byNumber.end() && found->second->ID() == id ? found->second : nullptr;
}

COrvelEntity* EntityRegistry::Find(const COrvelUUID& guid) const
{
    const auto found = byGuid.find(guid);
    return found == byGuid.end() ? nullptr : found->second;
}

std::size_t EntityRegistry::HashOfGuid::operator()(const COrvelUUID& guid) const
{
    std::uint64_t halves[2];
    static_assert(sizeof halves == sizeof(COrvelUUID::Bytes));
    std::memcpy(halves, guid.Data().data(), sizeof halves);
    return static_cast<std::size_t>(halves[0] ^ (halves[1] * 0x9E3779B97F4A7C15u));
}

} // namespace Orvel
