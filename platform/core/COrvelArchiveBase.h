#pragma once

#include "platform/core/COrvelString.h"
#include "platform/core/Export.h"
#include "platform/core/Types.h"

#include <cstdint>
#include <span>

namespace Orvel
{

/// The stream that objects store themselves in: one operation serves both directions.
///
/// Numbers are little-endian: int and uint32 in 4 bytes, double in 8 (IEEE 754), bool in one that is 0 or 1; a string
/// is the number of its UTF-8 bytes and these bytes. Every operation answers whether it succeeded; a failed read leaves
/// its value alone.
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
    int Version() const { return version; }
    void SetVersion(int newVersion) { version = newVersion; }
    /// Whether the archive holds sequences, groups, hide and show, morph and caption records. True unless set.
    virtual bool HasExtendedRecords() const;
    void SetExtendedRecords(bool newExtendedRecords) { extendedRecords = newExtendedRecords; }

    [[nodiscard]] bool ReadWrite(int& value);
    [[nodiscard]] bool ReadWrite(uint32& value);
    [[nodiscard]] bool ReadWrite(std::uint64_t& value);
    [[nodiscard]] bool ReadWrite(double& value);
    [[nodiscard]] bool ReadWrite(bool& value);
    [[nodiscard]] bool ReadWrite(COrvelString& value);
    /// As many doubles as there is room for; some may be read when the others cannot.
    [[nodiscard]] bool ReadWrite(std::span<double> values);
    /// An object that stores itself.
    template <class Archivable>
    requires requires(Archivable& value, COrvelArchiveBase& archive) { value.ArchiveReadWrite(archive); }
    [[nodiscard]] bool ReadWrite(Archivable& value) { return value.ArchiveReadWrite(*this); }
    /// Several values, in this order; stops at the first that fails.
    template <class... Values>
    requires(sizeof...(Values) > 1) [[nodiscard]] bool ReadWrite(Values&... values)
    {
        return (ReadWrite(values) && ...);
    }

    /// Reads or writes a number of elements. A count that was read is held against the bytes that are left before
    /// anybody allocates for it.
    ///
    /// @param bytesPerElement smallest size of one element in the archive, at least 1.
    /// @return false when that many elements cannot follow; `count` then keeps its value.
    [[nodiscard]] bool ReadWriteCount(uint32& count, uint32 bytesPerElement);
    /// Reads into or writes from memory. What was read when it fails is not to be used.
    [[nodiscard]] virtual bool ReadWriteBytes(std::span<std::uint8_t> bytes) = 0;

protected:
    /// Bytes that are still to be read; only asked of reader archives.
    virtual std::uint64_t BytesLeft() const = 0;

private:
    template <class Bits>
    bool ReadWriteBits(Bits& bits);

    int version = newestVersion;
    bool extendedRecords = true;
};

} // namespace Orvel
