#pragma once

#include "platform/core/COrvelArchiveBase.h"

#include <array>

namespace Orvel
{

/// What a file that is an archive as a whole begins with.
struct ArchiveHeader
{
    static constexpr std::array<std::uint8_t, 8> magic = {'O', 'R', 'V', 'E', 'L', 'A', 'R', 'C'};

    int version = 0;
    bool extendedRecords = false;

    /// False when something else stands here.
    bool ArchiveReadWrite(COrvelArchiveBase& archive)
    {
        auto mark = magic;
        return archive.ReadWriteBytes(mark) && mark == magic && archive.ReadWrite(version, extendedRecords);
    }
};

} // namespace Orvel
