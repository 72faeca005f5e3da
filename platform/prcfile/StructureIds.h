#pragma once

#include "platform/prcfile/NullIndex.h"
#include "platform/prcfile/PRCModel.h"
#include "platform/prcfile/UniqueId.h"

#include <cstdint>
#include <map>
#include <span>

namespace prc
{

/// Finds the file structures of a file by their ids. Of several with the same id the first is found.
class StructureIds
{
public:
    explicit StructureIds(std::span<const Model::FileStructure> structures)
    {
        std::uint32_t number = 0;
        for (const Model::FileStructure& structure : structures)
            numbers.emplace(structure.id, number++);
    }

    /// @return the position of the structure, nullIndex when there is none with this id.
    [[nodiscard]] std::uint32_t find(const UniqueId& id) const
    {
        const auto found = numbers.find(id);
        return found == numbers.end() ? nullIndex : found->second;
    }

private:
    std::map<UniqueId, std::uint32_t> numbers;
};

} // namespace prc
