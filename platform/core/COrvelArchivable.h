#pragma once

#include "platform/core/Export.h"

namespace Orvel
{

class COrvelArchiveBase;

/// Anything that stores itself in an archive.
///
/// The order of the virtual functions is relied on: destructor, ArchiveReadWrite, ReadFromArchive, WriteIntoArchive.
class ORVEL_CORE_API COrvelArchivable
{
public:
    COrvelArchivable() = default;
    COrvelArchivable(const COrvelArchivable&) = default;
    COrvelArchivable(COrvelArchivable&&) = default;
    COrvelArchivable& operator=(const COrvelArchivable&) = default;
    COrvelArchivable& operator=(COrvelArchivable&&) = default;
    virtual ~COrvelArchivable();

    /// Calls ReadFromArchive for a reader archive, WriteIntoArchive otherwise. Called with qualification from an
    /// override, it is that class's "base part".
    ///
    /// @return false as soon as a value could not be read or written.
    virtual bool ArchiveReadWrite(COrvelArchiveBase& archive);
    /// Reads nothing and succeeds.
    virtual bool ReadFromArchive(COrvelArchiveBase& archive);
    /// Writes nothing and succeeds.
    virtual bool WriteIntoArchive(COrvelArchiveBase& archive);
};

} // namespace Orvel
