#include "platform/prcfile/BitWriter.h"

#include "platform/prcfile/BitEncoding.h"

#include <algorithm>
#include <bit>
#include <cassert>
#include <limits>
#include <new>

namespace prc
{

namespace
{

constexpr std::size_t smallestBuffer = 256;
constexpr std::size_t storedWord = 8; ///< a cursor stores whole words
constexpr unsigned longestInteger = 37;

/// Moves a bit string towards its front by less than a byte. The bits in front of it are lost, zeros follow it.
///
/// @param bytes one byte behind the string must be readable.
void shiftUp(std::uint8_t* bytes, std::size_t count, unsigned bits)
{
    std::size_t at = 0;
    for (; at + 8 <= count; at += 8) {
        std::uint64_t word = 0;
        for (unsigned k = 0; k < 8; ++k)
            word = word << 8 | bytes[at + k];
        word = word << bits | static_cast<std::uint64_t>(bytes[at + 8] >> (8 - bits));
        for (unsigned k = 0; k < 8; ++k)
            bytes[at + k] = static_cast<std::uint8_t>(word >> (56 - 8 * k));
    }
    for (; at < count; ++at)
        bytes[at] = static_cast<std::uint8_t>(bytes[at] << bits | bytes[at + 1] >> (8 - bits));
}

} // namespace

BitWriter::BitWriter(std::size_t leading)
    : leadingBytes(leading)
    , firstByte(leading)
{
    buffer.resize(leading + smallestBuffer);
    std::fill_n(buffer.data(), leading, std::uint8_t{0});
    cursor = BitCursor(buffer.data() + leading);
}

void BitWriter::reserve(std::size_t bits)
{
    const auto used = static_cast<std::size_t>(cursor.currentByte() - buffer.data());
    const std::size_t needed = used + bits / 8 + 2 + storedWord;
    if (needed < used)
        throw std::bad_alloc();
    if (needed <= buffer.size())
        return;
    // The factor keeps the cost of moving in proportion to what is written. The last byte may be incomplete: a cursor
    // keeps its bits itself.
    buffer.resize(std::max(needed, buffer.size() + buffer.size() / 2));
    cursor.rebase(buffer.data() + used);
}

void BitWriter::writeBoolean(bool value)
{
    reserve(1);
    putBoolean(cursor, value);
}

void BitWriter::writeBits(std::uint32_t value, unsigned count)
{
    reserve(count);
    cursor.put(value, count);
}

void BitWriter::writeCharacter(std::uint8_t value)
{
    reserve(8);
    putCharacter(cursor, value);
}

void BitWriter::writeUnsignedInteger(std::uint32_t value)
{
    reserve(longestUnsignedInteger);
    putUnsignedInteger(cursor, value);
}

void BitWriter::writeInteger(std::int32_t value)
{
    reserve(longestInteger);
    putInteger(cursor, value);
}

void BitWriter::writeDouble(double value)
{
    reserve(longestDouble);
    putDouble(cursor, value);
}

void BitWriter::writeString(std::optional<std::string_view> text)
{
    if (!text) {
        writeBoolean(false);
        return;
    }
    if (text->size() > std::numeric_limits<std::uint32_t>::max())
        throw std::bad_alloc();
    reserve(1 + longestUnsignedInteger + text->size() * 8);
    putBoolean(cursor, true);
    putUnsignedInteger(cursor, static_cast<std::uint32_t>(text->size()));
    for (const char character : *text)
        putCharacter(cursor, static_cast<std::uint8_t>(character));
}

void BitWriter::writeUnsignedIntegers(std::span<const std::uint32_t> values)
{
    reserve(values.size() * longestUnsignedInteger);
    BitCursor local = cursor; // kept in registers, which a member could not be
    for (const std::uint32_t value : values)
        putUnsignedInteger(local, value);
    cursor = local;
}

void BitWriter::writeDoubles(std::span<const double> values)
{
    reserve(values.size() * longestDouble);
    BitCursor local = cursor;
    for (const double value : values)
        putDouble(local, value);
    cursor = local;
}

void BitWriter::writeBefore(const BitWriter& prefix)
{
    const std::size_t prefixBits = prefix.bitCount();
    assert(firstByte == leadingBytes && prefixBits <= leadingBytes * 8 &&
           "the prefix fits into the leading room, once");
    const std::span<const std::uint8_t> prefixBytes = prefix.bytes();
    const auto shift = static_cast<unsigned>((leadingBytes * 8 - prefixBits) % 8);

    reserve(8);
    std::uint8_t* const first = buffer.data() + leadingBytes - prefixBytes.size();
    if (shift != 0) {
        std::uint8_t* const sharedByte = buffer.data() + leadingBytes - 1;
        const std::size_t shiftedBytes = bytes().size() + 1;
        sharedByte[shiftedBytes] = 0;
        shiftUp(sharedByte, shiftedBytes, shift);
        *sharedByte = static_cast<std::uint8_t>(*sharedByte | prefixBytes.back());
        std::copy(prefixBytes.begin(), prefixBytes.end() - 1, first);
    } else {
        std::copy(prefixBytes.begin(), prefixBytes.end(), first);
    }
    firstByte = leadingBytes - prefixBytes.size();
    movedUp = shift;
}

std::size_t BitWriter::bitCount() const
{
    const auto used = static_cast<std::size_t>(cursor.currentByte() - buffer.data());
    return (used - leadingBytes) * 8 + cursor.bitsInCurrentByte();
}

std::span<const std::uint8_t> BitWriter::bytes() const
{
    // The cursor has stored the bits of an incomplete byte as well, with zeros behind them.
    const std::size_t endBit = leadingBytes * 8 + bitCount() - movedUp;
    return buffer.view().subspan(firstByte, (endBit + 7) / 8 - firstByte);
}

} // namespace prc
