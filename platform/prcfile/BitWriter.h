#pragma once

#include "platform/prcfile/BitCursor.h"
#include "platform/prcfile/ByteBuffer.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace prc
{

/// A PRC bit stream under construction: the primitive types, in memory that grows as needed.
///
/// All operations may throw std::bad_alloc; the stream then ends before the value.
class BitWriter
{
public:
    /// @param leadingBytes room left free in front of the first bit, see writeBefore().
    explicit BitWriter(std::size_t leadingBytes = 0);

    void writeBoolean(bool value);
    void writeBits(std::uint32_t value, unsigned count); ///< the low `count` bits, 1 to 32.
    void writeCharacter(std::uint8_t value);
    void writeUnsignedInteger(std::uint32_t value);
    void writeInteger(std::int32_t value);
    void writeDouble(double value); ///< finite; negative zero is written as zero.
    void writeString(std::optional<std::string_view> text);
    void writeUnsignedIntegers(std::span<const std::uint32_t> values); ///< without a count.
    void writeDoubles(std::span<const double> values);                 ///< without a count; finite.

    /// Makes room for `bits` bits; writing that many cannot throw then.
    void reserve(std::size_t bits);

    /// Moves all bits up so that those of `prefix` stand directly before them, in the room that was left in front.
    ///
    /// @param prefix at most 8 bits shorter than the leading room. Called once, after the last write.
    void writeBefore(const BitWriter& prefix);

    /// Bits written, without the leading room.
    [[nodiscard]] std::size_t bitCount() const;

    /// The stream, the last byte filled up with zeros. Valid until the next call of a member.
    [[nodiscard]] std::span<const std::uint8_t> bytes() const;

private:
    ByteBuffer buffer;
    BitCursor cursor;
    std::size_t leadingBytes;
    std::size_t firstByte;   ///< of what bytes() shows.
    std::size_t movedUp = 0; ///< bits by which writeBefore() moved the stream behind the cursor's back.
};

} // namespace prc
