#include "platform/core/COrvelArchiveBase.h"

#include <cassert>

namespace Orvel
{

COrvelArchiveBase::~COrvelArchiveBase() = default;

bool COrvelArchiveBase::HasExtendedRecords() const
{
    return true;
}

bool COrvelArchiveBase::ReadWriteCount(uint32& count, uint32 bytesPerElement)
{
    assert(bytesPerElement > 0 && "an element that takes no bytes says nothing about how many can follow");
    uint32 stored = count;
    if (!ReadWrite(stored))
        return false;
    if (IsReaderArchive() && std::uint64_t{stored} * bytesPerElement > BytesLeft())
        return false;
    count = stored;
    return true;
}

} // namespace Orvel
