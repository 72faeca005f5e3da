#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

/// The prefix code that every double of a PRC bit stream begins with.
///
/// A code stands either for one of 29 frequent values, complete but for its sign, or for a biased exponent, after which
/// sign and mantissa follow. The 2077 codes have 2 to 22 bits and form a complete prefix code. Readers and writers
/// share the tables of this file.
namespace prc
{

inline constexpr unsigned mantissaBits = 52;
inline constexpr std::size_t exponentCount = 2048;
inline constexpr std::size_t frequentDoubleCount = 29;
inline constexpr unsigned longestDoubleCode = 22;

/// A code and its length in one word: the code in the low 22 bits, the length above it.
using PackedCode = std::uint32_t;

namespace PackedCodeBits
{
inline constexpr unsigned lengthShift = 22;
inline constexpr PackedCode codeMask = (PackedCode{1} << lengthShift) - 1;
} // namespace PackedCodeBits

constexpr std::uint32_t codeOf(PackedCode packed)
{
    return packed & PackedCodeBits::codeMask;
}

constexpr unsigned codeLengthOf(PackedCode packed)
{
    return packed >> PackedCodeBits::lengthShift;
}

/// One of the values that have a code of their own.
struct FrequentDouble
{
    std::uint64_t magnitude; ///< IEEE 754 pattern with the sign bit cleared.
    std::uint16_t code;
    std::uint8_t length; ///< in bits.
};

/// By biased exponent.
extern const std::array<PackedCode, exponentCount> exponentCodes;

/// In ascending order; the first is zero, which is written without a sign.
extern const std::array<FrequentDouble, frequentDoubleCount> frequentDoubles;

inline constexpr unsigned frequentSlotBits = 6;
inline constexpr std::size_t frequentSlotCount = std::size_t{1} << frequentSlotBits;

/// A perfect hash of the frequent values; the multiplier was found by trial.
constexpr std::size_t frequentSlot(std::uint64_t magnitude)
{
    constexpr std::uint64_t multiplier = 0xAED2CF47C90DDD19U;
    return static_cast<std::size_t>(magnitude * multiplier >> (64 - frequentSlotBits));
}

/// The frequent values, each in the slot that frequentSlot gives it; other slots hold a magnitude that no value has.
extern const std::array<FrequentDouble, frequentSlotCount> frequentDoubleSlots;

} // namespace prc
