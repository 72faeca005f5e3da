#pragma once

#include "platform/prcfile/BitCursor.h"
#include "platform/prcfile/DoubleCodes.h"

#include <bit>
#include <cassert>
#include <cmath>
#include <cstdint>

/// The primitive types of a PRC bit stream, as bits.
///
/// Inline and without a check for room, for the loops that write whole arrays; everything else goes through BitWriter.
namespace prc
{

inline constexpr unsigned longestUnsignedInteger = 37; ///< bits: four bytes with a mark each, and the end.
inline constexpr unsigned longestDouble = 82; ///< bits: code, sign, mantissa mark and nibble, six marked bytes.

namespace Detail
{

/// Spreads six bytes over 54 bits: each byte is preceded by a 1 bit, the mark of a byte that follows in full.
constexpr std::uint64_t markBytes(std::uint64_t sixBytes)
{
    std::uint64_t halves = (sixBytes & 0xFFFFFF000000U) << 3 | (sixBytes & 0xFFFFFFU);
    constexpr std::uint64_t low = 0xFFU | std::uint64_t{0xFF} << 27;
    halves = (halves & low << 16) << 2 | (halves & low << 8) << 1 | (halves & low);
    constexpr std::uint64_t marks = std::uint64_t{0x100} | std::uint64_t{0x100} << 9 | std::uint64_t{0x100} << 18 |
                                    std::uint64_t{0x100} << 27 | std::uint64_t{0x100} << 36 |
                                    std::uint64_t{0x100} << 45;
    return halves | marks;
}

inline constexpr unsigned markedByteBits = 9;
inline constexpr unsigned sixMarkedBytesBits = 6 * markedByteBits;

/// Puts the six low bytes of a mantissa. Bytes are marked and written in full until all that remain repeat the one
/// before them ("0 000"), or all but the last do ("0 110" and the last byte).
///
/// Readers also know references to earlier bytes of the number; writing them makes a widely used viewer show nothing,
/// so they never are.
inline void putMantissaBytes(BitCursor& cursor, std::uint64_t bytes)
{
    constexpr std::uint64_t fillBits = 0b0000;
    constexpr std::uint64_t fillButLastBits = 0b0110;
    constexpr unsigned formBits = 4;

    const std::uint64_t marked = markBytes(bytes);
    // Byte k of `changes`, from the low end, is zero when mantissa byte 5-k equals its predecessor. The stop bits bound
    // the runs at the first byte.
    const std::uint64_t changes = (bytes ^ bytes >> 8) & 0xFFFFFFFFFFU;
    if ((changes & 0xFF) == 0) {
        const unsigned repeated = static_cast<unsigned>(std::countr_zero(changes | std::uint64_t{1} << 40)) / 8;
        const unsigned writtenBits = (6 - repeated) * markedByteBits;
        cursor.put(marked >> (sixMarkedBytesBits - writtenBits) << formBits | fillBits, writtenBits + formBits);
        return;
    }
    const unsigned repeated = static_cast<unsigned>(std::countr_zero(changes >> 8 | std::uint64_t{1} << 32)) / 8;
    if (repeated == 0) {
        cursor.put(marked, sixMarkedBytesBits);
        return;
    }
    const unsigned writtenBits = (5 - repeated) * markedByteBits;
    cursor.put(marked >> (sixMarkedBytesBits - writtenBits) << (formBits + 8) | fillButLastBits << 8 | (bytes & 0xFF),
               writtenBits + formBits + 8);
}

} // namespace Detail

/// @param value finite. Negative zero is written as zero.
inline void putDouble(BitCursor& cursor, double value)
{
    assert(std::isfinite(value) && "the format has no code for infinities and NaN");
    const std::uint64_t pattern = std::bit_cast<std::uint64_t>(value);
    const std::uint64_t sign = pattern >> 63;
    const std::uint64_t magnitude = pattern & ~(std::uint64_t{1} << 63);

    // Looked up without asking the exponent first: the comparison is nearly always predicted, a question about the
    // exponent is not.
    const FrequentDouble& frequent = frequentDoubleSlots[frequentSlot(magnitude)];
    if (frequent.magnitude == magnitude) {
        if (magnitude == 0)
            cursor.put(frequent.code, frequent.length);
        else
            cursor.put(std::uint64_t{frequent.code} << 1 | sign, frequent.length + 1U);
        return;
    }
    const PackedCode code = exponentCodes[static_cast<std::size_t>(magnitude >> mantissaBits)];
    const std::uint64_t codeAndSign = std::uint64_t{codeOf(code)} << 1 | sign;
    const unsigned codeAndSignBits = codeLengthOf(code) + 1;
    const std::uint64_t mantissa = magnitude & ((std::uint64_t{1} << mantissaBits) - 1);
    if (mantissa == 0) {
        cursor.put(codeAndSign << 1, codeAndSignBits + 1);
        return;
    }
    cursor.put((codeAndSign << 1 | 1) << 4 | mantissa >> 48, codeAndSignBits + 5);
    Detail::putMantissaBytes(cursor, mantissa & 0xFFFFFFFFFFFFU);
}

inline void putBoolean(BitCursor& cursor, bool value)
{
    cursor.put(value ? 1 : 0, 1);
}

inline void putCharacter(BitCursor& cursor, std::uint8_t value)
{
    cursor.put(value, 8);
}

/// Bytes from the low end on, each with a 1 before it, up to the last that is not zero; then a 0.
inline void putUnsignedInteger(BitCursor& cursor, std::uint32_t value)
{
    constexpr std::uint64_t marks =
        std::uint64_t{0x100} | std::uint64_t{0x100} << 9 | std::uint64_t{0x100} << 18 | std::uint64_t{0x100} << 27;
    const std::uint64_t wide = value;
    const std::uint64_t fourBytes =
        (wide & 0xFF) << 27 | (wide & 0xFF00) << 10 | (wide & 0xFF0000) >> 7 | wide >> 24 | marks;
    const unsigned bits = (static_cast<unsigned>(std::bit_width(value)) + 7) / 8 * Detail::markedByteBits;
    cursor.put(fourBytes >> (4 * Detail::markedByteBits - bits) << 1, bits + 1);
}

/// Bytes of the two's complement from the low end on, each with a 1 before it, until the rest is the sign of the last;
/// then a 0. Zero is the single 0.
inline void putInteger(BitCursor& cursor, std::int32_t value)
{
    if (value != 0) {
        std::int32_t rest = value;
        bool finished = false;
        while (!finished) {
            const auto byte = static_cast<std::uint8_t>(rest & 0xFF);
            cursor.put(0x100U | byte, Detail::markedByteBits);
            rest >>= 8;
            finished = rest == (static_cast<std::int8_t>(byte) < 0 ? -1 : 0);
        }
    }
    cursor.put(0, 1);
}

} // namespace prc
