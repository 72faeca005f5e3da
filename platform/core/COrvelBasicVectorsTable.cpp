#include "platform/core/COrvelBasicVectorsTable.h"

#include "platform/core/COrvelArchiveBase.h"

namespace Orvel
{

bool COrvelBasicVectorsTable::ArchiveReadWrite(COrvelArchiveBase& archive)
{
    constexpr std::size_t coordinates = 3;
    static_assert(sizeof(COrvel3DVertex) == coordinates * sizeof(double), "vectors are stored as one array of doubles");
    const auto valuesOf = [](std::vector<COrvel3DVertex>& vectors) {
        return std::span(reinterpret_cast<double*>(vectors.data()), coordinates * vectors.size());
    };
    auto count = static_cast<uint32>(Count());
    if (count != Count() || !archive.ReadWriteCount(count, sizeof(COrvel3DVertex)))
        return false;
    if (!archive.IsReaderArchive())
        return !items || archive.ReadWrite(valuesOf(*items));
    std::vector<COrvel3DVertex> read(count);
    if (!archive.ReadWrite(valuesOf(read)))
        return false;
    Assign(std::move(read));
    return true;
}

} // namespace Orvel
