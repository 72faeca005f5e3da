#include "animation/COrvelKeyFrameDataVertices.h"

#include "platform/core/COrvel3DVectorsTable.h"

#include <cstdint>

namespace Orvel
{

namespace
{

std::unique_ptr<COrvelBasicVectorsTable> CopyOf(const COrvelBasicVectorsTable* table)
{
    return table ? std::make_unique<COrvelBasicVectorsTable>(*table) : nullptr;
}

} // namespace

COrvelKeyFrameDataVertices::COrvelKeyFrameDataVertices(const COrvelID& id)
    : COrvelKeyFrameData(id)
{}

COrvelKeyFrameDataVertices::COrvelKeyFrameDataVertices(const COrvelKeyFrameDataVertices& other)
    : COrvelKeyFrameData(other)
{
    tables.reserve(other.tables.size());
    for (const auto& table : other.tables)
        tables.push_back(CopyOf(table.get()));
}

COrvelKeyFrameDataVertices* COrvelKeyFrameDataVertices::CreateVerticesKeyFrameData(const COrvelID& id,
                                                                                   const COrvelBasicVectorsTable* table)
{
    std::unique_ptr<COrvelKeyFrameDataVertices> data(new COrvelKeyFrameDataVertices(id));
    if (table)
        data->AddTable(CopyOf(table));
    // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDeleteLeaks): the data has taken the table over
    return data.release();
}

void COrvelKeyFrameDataVertices::ApplyToEntity()
{
    if (auto* const table = dynamic_cast<COrvel3DVectorsTable*>(AnimatedEntityID().Entity()))
        table->ReplaceBasicTable(TableAtWorkingFrame());
}

COrvelKeyFrameDataVertices* COrvelKeyFrameDataVertices::Clone(bool atWorkingFrame) const
{
    if (!atWorkingFrame)
        return new COrvelKeyFrameDataVertices(*this);
    COrvelKeyFrameDataVertices* const snapshot = CreateVerticesKeyFrameData(COrvelID(), TableAtWorkingFrame());
    MakeSnapshot(*snapshot);
    return snapshot;
}

COrvelBasicVectorsTable* COrvelKeyFrameDataVertices::TableAtWorkingFrame() const
{
    const std::int64_t index = std::int64_t{EffectiveFrame()} - StartFrame();
    if (index < 0 || static_cast<std::uint64_t>(index) >= tables.size())
        return nullptr;
    return tables[static_cast<std::size_t>(index)].get();
}

} // namespace Orvel
