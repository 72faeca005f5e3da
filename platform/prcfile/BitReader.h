#pragma once

#include "platform/prcfile/DoubleDecoding.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string>
#include <utility>

namespace prc
{

/// Reads the primitive types of a PRC bit stream.
///
/// Errors stick: from the first on, nothing but zeros and nulls come back, so that a caller may look at ok() once for
/// several values. Inline, for the loops that read whole arrays.
class BitReader
{
public:
    /// Zeros that have to follow the stream in memory: values are read in words and only then checked against the end.
    static constexpr std::size_t paddingBytes = 32;

    /// @param bytes the stream, followed by paddingBytes zeros; not owned.
    explicit BitReader(std::span<const std::uint8_t> bytes)
        : data(bytes.data())
        , end(bytes.size() * 8)
        , table(&DoubleDecodingTable::instance())
    {}

    [[nodiscard]] bool ok() const { return !failed; }
    [[nodiscard]] std::size_t bitsLeft() const { return end - position; }
    [[nodiscard]] std::size_t bitPosition() const { return position; }
    [[nodiscard]] std::size_t bitCount() const { return end; }

    bool readBoolean() { return readBits(1) != 0; }
    std::uint8_t readCharacter() { return static_cast<std::uint8_t>(readBits(8)); }

    /// @param count 1 to 32.
    std::uint32_t readBits(unsigned count)
    {
        const std::uint64_t bits = window();
        advance(count);
        return failed ? 0 : static_cast<std::uint32_t>(bits >> (64 - count));
    }

    std::uint32_t readUnsignedInteger();
    std::int32_t readInteger();
    double readDouble();

    void skip(std::size_t bits) { advance(bits); }

    /// Passes over a text.
    void skipString()
    {
        if (readBoolean())
            skip(std::size_t{readUnsignedInteger()} * 8);
    }

    /// Ends the reading: everything after this is zero.
    ///
    /// @param why what was expected; the first one is kept.
    void fail(std::string why)
    {
        if (!failed)
            failAt(position, std::move(why));
    }

    /// Where and why reading ended: a bit from the start of the stream. Only after a failure.
    [[nodiscard]] std::size_t failurePosition() const { return failedAt; }
    [[nodiscard]] const std::string& failureReason() const { return reason; }

private:
    /// The next 57 bits at least, in the high bits.
    [[nodiscard]] std::uint64_t window() const
    {
        std::uint64_t word = 0;
        std::memcpy(&word, data + (position >> 3), sizeof(word));
        if constexpr (std::endian::native == std::endian::little)
            word = __builtin_bswap64(word);
        return word << (position & 7);
    }

    void advance(std::size_t bits)
    {
        if (bits > end - position) [[unlikely]]
            failAt(position, {});
        else
            position += bits;
    }

    void failAt(std::size_t where, std::string why);
    std::uint64_t readMantissaBytes(std::uint64_t bytesBefore);
    std::uint64_t readMantissaWithDistances(std::uint64_t pattern, unsigned byte);

    const std::uint8_t* data;
    std::size_t position = 0; ///< in bits.
    std::size_t end;          ///< in bits.
    const DoubleDecodingTable* table;
    bool failed = false;
    std::size_t failedAt = 0;
    std::string reason;
};

inline std::uint32_t BitReader::readUnsignedInteger()
{
    constexpr std::uint64_t marks = std::uint64_t{1} << 63 | std::uint64_t{1} << 54 | std::uint64_t{1} << 45 |
                                    std::uint64_t{1} << 36 | std::uint64_t{1} << 27;
    const std::uint64_t bits = window();
    if (bits >> 63 == 0) { // zeros are most of what the tree holds
        advance(1);
        return 0;
    }
    const std::uint64_t ends = ~bits & marks;
    if (ends == 0) [[unlikely]] {
        fail("a whole number has at most four bytes");
        return 0;
    }
    const unsigned byteBits = static_cast<unsigned>(std::countl_zero(ends)) / 9 * 8;
    const std::uint64_t fourBytes =
        (bits >> 55 & 0xFF) | (bits >> 46 & 0xFF) << 8 | (bits >> 37 & 0xFF) << 16 | (bits >> 28 & 0xFF) << 24;
    advance(byteBits / 8 * 9 + 1);
    const std::uint64_t value = fourBytes & ((std::uint64_t{1} << byteBits) - 1);
    return failed ? 0 : static_cast<std::uint32_t>(value);
}

/// The six low bytes of a mantissa, in the forms that they usually have: bytes in full, and a fill at the end.
///
/// @param bytesBefore the two high bytes of the number.
inline std::uint64_t BitReader::readMantissaBytes(std::uint64_t bytesBefore)
{
    constexpr std::uint64_t marks = std::uint64_t{1} << 63 | std::uint64_t{1} << 54 | std::uint64_t{1} << 45 |
                                    std::uint64_t{1} << 36 | std::uint64_t{1} << 27 | std::uint64_t{1} << 18;
    constexpr std::uint64_t lowBytes = 0xFFU | std::uint64_t{0xFF} << 27;
    const std::uint64_t bits = window();
    const std::uint64_t marked = bits >> 10;
    const std::uint64_t halves = (marked & lowBytes) | (marked >> 1 & lowBytes << 8) | (marked >> 2 & lowBytes << 16);
    const std::uint64_t sixBytes = (halves & 0xFFFFFFU) | (halves >> 3 & 0xFFFFFF000000U);
    const std::uint64_t ends = ~bits & marks;
    if (ends == 0) {
        advance(54);
        return sixBytes;
    }
    const unsigned full = static_cast<unsigned>(std::countl_zero(ends)) / 9; // bytes given in full: 0 to 5
    const unsigned restBits = (6 - full) * 8;
    const std::uint64_t rest = (std::uint64_t{1} << restBits) - 1;
    const std::uint64_t last = full == 0 ? bytesBefore & 0xFF : sixBytes >> restBits & 0xFF;
    const std::uint64_t filled = (sixBytes & ~rest) | (last * 0x010101010101U & rest);
    const unsigned form = static_cast<unsigned>(bits >> (60 - 9 * full)) & 7;
    if (form == 0) {
        advance(9 * full + 4);
        return filled;
    }
    if (form == 6) {
        advance(9 * full + 12);
        return (filled & ~std::uint64_t{0xFF}) | (bits >> (52 - 9 * full) & 0xFF);
    }
    advance(std::size_t{9} * full);
    return readMantissaWithDistances(bytesBefore << 48 | (sixBytes & ~rest), full);
}

inline double BitReader::readDouble()
{
    std::uint64_t bits = window();
    const DoubleDecodingTable::Entry code = table->find(bits);
    bits <<= code.length;
    const std::uint64_t sign = bits & std::uint64_t{1} << 63;
    if (code.symbol >= DoubleDecodingTable::firstFrequent) {
        const std::uint64_t magnitude = frequentDoubles[code.symbol - DoubleDecodingTable::firstFrequent].magnitude;
        advance(code.length + (magnitude != 0 ? 1U : 0U));
        if (failed) [[unlikely]]
            return 0.0;
        return std::bit_cast<double>(magnitude != 0 ? magnitude | sign : 0);
    }
    constexpr unsigned notFinite = exponentCount - 1;
    if (code.symbol == notFinite) [[unlikely]]
        fail("a double is not finite");
    std::uint64_t pattern = std::uint64_t{code.symbol} << mantissaBits;
    if ((bits << 1 >> 63) == 0) {
        advance(code.length + 2U);
    } else {
        pattern |= (bits << 2 >> 60) << 48;
        advance(code.length + 6U);
        pattern |= readMantissaBytes((pattern | sign) >> 48);
    }
    // Adding zero takes the sign off a zero and leaves all other numbers alone.
    return failed ? 0.0 : std::bit_cast<double>(pattern | sign) + 0.0;
}

} // namespace prc
