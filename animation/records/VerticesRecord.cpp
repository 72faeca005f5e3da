// What vertex data store behind the record of every key frame data: a table for each frame.

#include "animation/COrvelKeyFrameDataVertices.h"
#include "platform/core/COrvelArchiveBase.h"
#include "platform/core/COrvelTablesCreator.h"

namespace Orvel
{

bool COrvelKeyFrameDataVertices::WriteIntoArchive(COrvelArchiveBase& archive)
{
    auto count = static_cast<uint32>(tables.size());
    if (!COrvelKeyFrameData::WriteIntoArchive(archive) || !archive.ReadWrite(count))
        return false;
    COrvelBasicVectorsTable none;
    for (const auto& table : tables)
        if (!archive.ReadWrite(table ? *table : none))
            return false;
    return true;
}

bool COrvelKeyFrameDataVertices::ReadFromArchive(COrvelArchiveBase& archive)
{
    constexpr uint32 bytesPerTable = 4; // the number of its positions
    uint32 count = 0;
    tables.clear();
    if (!COrvelKeyFrameData::ReadFromArchive(archive) || !archive.ReadWriteCount(count, bytesPerTable))
        return false;
    for (uint32 k = 0; k < count; ++k) {
        std::unique_ptr<COrvelBasicVectorsTable> table(COrvelTablesCreator::CreateVectorsTable());
        if (!archive.ReadWrite(*table))
            return false;
        // No shape is without positions: this is a frame without a table.
        AddTable(table->Count() > 0 ? std::move(table) : nullptr);
    }
    return true;
}

} // namespace Orvel
