#pragma once

#include "platform/core/COrvel3DVertex.h"
#include "platform/core/Export.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <utility>
#include <vector>

namespace Orvel
{

class COrvelArchiveBase;

/// The positions of one shape, and nothing else. Copies share one array until one of them changes: animation copies the
/// shapes of whole meshes at every evaluated frame.
class ORVEL_CORE_API COrvelBasicVectorsTable
{
public:
    COrvelBasicVectorsTable() = default;
    explicit COrvelBasicVectorsTable(std::vector<COrvel3DVertex> vectors) { Assign(std::move(vectors)); }

    [[nodiscard]] std::uint64_t Count() const { return Items().size(); }

    /// @param k 0 to Count() - 1.
    [[nodiscard]] const COrvel3DVertex& Item(std::uint64_t k) const { return Items()[static_cast<std::size_t>(k)]; }

    /// All items in one row; valid until the table changes or dies.
    [[nodiscard]] std::span<const COrvel3DVertex> Items() const
    {
        return items ? std::span<const COrvel3DVertex>(*items) : std::span<const COrvel3DVertex>();
    }

    void Add(const COrvel3DVertex& item)
    {
        if (!items)
            items = std::make_shared<std::vector<COrvel3DVertex>>();
        else if (items.use_count() > 1)
            items = std::make_shared<std::vector<COrvel3DVertex>>(*items);
        items->push_back(item);
    }
    void Assign(std::vector<COrvel3DVertex> vectors)
    {
        items = std::make_shared<std::vector<COrvel3DVertex>>(std::move(vectors));
    }

    [[nodiscard]] bool operator==(const COrvelBasicVectorsTable& other) const
    {
        return items == other.items || std::ranges::equal(Items(), other.Items());
    }

    /// The number of positions, then three doubles for each.
    bool ArchiveReadWrite(COrvelArchiveBase& archive);

private:
    std::shared_ptr<std::vector<COrvel3DVertex>> items; // null: none
};

} // namespace Orvel
