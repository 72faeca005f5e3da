#pragma once

#include "platform/core/COrvelString.h"
#include "platform/core/Export.h"
#include "platform/core/Types.h"

#include <cstdint>

namespace Orvel
{

/// The stream that objects store themselves in: one operation serves both directions.
///
/// A failed read leaves its value alone. Every operation answers whether it succeeded.
class ORVEL_CORE_API COrvelArchiveBase
{
public:
    /// Layout version of archives that are written today.
    static constexpr int newestVersion = 13014;

    COrvelArchiveBase() = default;
    COrvelArchiveBase(const COrvelArchiveBase&) = delete;
    COrvelArchiveBase& operator=(const COrvelArchiveBase&) = delete;
    virtual ~COrvelArchiveBase();

    /// Direction of the archive; constant for its life.
    virtual bool IsReaderArchive() const = 0;
    /// Layout version of the bytes that are read or written.
    virtual int Version() const = 0;
    /// Whether the archive holds sequences, groups, hide and show, morph and caption records. True here.
    virtual bool HasExtendedRecords() const;

    [[nodiscard]] virtual bool ReadWrite(int& value) = 0;
    [[nodiscard]] virtual bool ReadWrite(uint32& value) = 0;
    [[nodiscard]] virtual bool ReadWrite(double& value) = 0;
    [[nodiscard]] virtual bool ReadWrite(bool& value) = 0;
    [[nodiscard]] virtual bool ReadWrite(COrvelString& value) = 0;
    /// An object that stores itself.
    template <class Archivable>
    requires requires(Archivable& value, COrvelArchiveBase& archive) { value.ArchiveReadWrite(archive); }
    [[nodiscard]] bool ReadWrite(Archivable& value) { return value.ArchiveReadWrite(*this); }

    /// Reads or writes a number of elements. A count that was read is held against the bytes that are left before
    /// anybody allocates for it.
    ///
    /// @param bytesPerElement smallest size of one element in the archive, at least 1.
    /// @return false when that many elements cannot follow; `count` then keeps its value.
    [[nodiscard]] bool ReadWriteCount(uint32& count, uint32 bytesPerElement);

protected:
    /// Bytes that are still to be read; only asked of reader archives.
    virtual std::uint64_t BytesLeft() const = 0;
};

} // namespace Orvel
