#include "platform/prcfile/BitReader.h"

#include <utility>

namespace prc
{

void BitReader::failAt(std::size_t where, std::string why)
{
    if (failed)
        return;
    failed = true;
    failedAt = where;
    reason = why.empty() ? "the section ends in the middle of a value" : std::move(why);
    position = end; // zeros follow the end
}

std::int32_t BitReader::readInteger()
{
    std::uint32_t value = 0;
    unsigned shift = 0;
    while (readBoolean()) {
        if (shift == 32) {
            fail("a whole number has at most four bytes");
            return 0;
        }
        value |= std::uint32_t{readCharacter()} << shift;
        shift += 8;
    }
    if (failed || shift == 0)
        return 0;
    const bool isNegative = (value >> (shift - 1) & 1) != 0;
    if (isNegative && shift < 32)
        value |= ~std::uint32_t{0} << shift;
    return static_cast<std::int32_t>(value);
}

/// The rest of a mantissa in which bytes refer to earlier bytes of the number.
///
/// @param pattern the big-endian pattern, its high 16 bits and the mantissa bytes before `byte` set.
/// @param byte    number of mantissa bytes that are known, 0 to 5.
/// @return the six low bytes.
std::uint64_t BitReader::readMantissaWithDistances(std::uint64_t pattern, unsigned byte)
{
    constexpr unsigned fill = 0;
    constexpr unsigned fillButLast = 6;
    constexpr unsigned invalid = 7;
    // Positions count the bytes of the pattern from its high end; mantissa byte 0 is number 2.
    const auto at = [&pattern](unsigned place) { return pattern >> (56 - 8 * place) & 0xFF; };
    const auto set = [&pattern](unsigned place, std::uint64_t value) { pattern |= value << (56 - 8 * place); };
    for (unsigned place = byte + 2; place < 8; ++place) {
        if (readBoolean()) {
            set(place, readCharacter());
            continue;
        }
        const unsigned form = readBits(3);
        if (form == invalid || (form != fill && form != fillButLast && form > place)) {
            fail("a double refers to a byte of itself that it does not have");
            return 0;
        }
        if (form == fill || form == fillButLast) {
            const std::uint64_t last = at(place - 1);
            const unsigned filledEnd = form == fill ? 8 : 7;
            for (; place < filledEnd; ++place)
                set(place, last);
            if (form == fillButLast)
                set(7, readCharacter());
            break;
        }
        set(place, at(place - form));
    }
    return pattern & 0xFFFFFFFFFFFFU;
}

} // namespace prc
