#pragma once

#include <bit>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace prc
{

/// Appends bits, most significant first, to memory that somebody else has made large enough.
///
/// A small value type: hot loops work on a local copy, which compilers keep in registers. Every put() stores a whole
/// word, so 8 bytes behind the last bit must be writable; bits behind the last one put are zero.
class BitCursor
{
public:
    /// Most bits that one put() takes. Up to 7 bits wait in the accumulator, and one bit has to stay free so that the
    /// shift past complete bytes never reaches the width of the word.
    static constexpr unsigned maxBits = 56;

    BitCursor() = default;

    /// @param start first byte to write, not owned.
    explicit BitCursor(std::uint8_t* start)
        : position(start)
    {}

    /// Appends the low `count` bits of `bits`; the others must be zero.
    ///
    /// @param count 1 to maxBits.
    void put(std::uint64_t bits, unsigned count)
    {
        assert(count >= 1 && count <= maxBits && bits >> count == 0 && "put() takes 1 to 56 clean bits");
        accumulator |= bits << (64 - pendingBits - count);
        storeBigEndian(accumulator);
        pendingBits += count;
        const unsigned completeBytes = pendingBits >> 3;
        position += completeBytes;
        accumulator <<= completeBytes * 8;
        pendingBits &= 7;
    }

    /// The byte that the next bit goes to.
    [[nodiscard]] std::uint8_t* currentByte() const { return position; }

    /// Bits of the current byte that are taken already, 0 to 7.
    [[nodiscard]] unsigned bitsInCurrentByte() const { return pendingBits; }

    /// Continues in other memory that holds the bytes before the current one at the same distance.
    void rebase(std::uint8_t* newCurrentByte) { position = newCurrentByte; }

private:
    void storeBigEndian(std::uint64_t word) const
    {
        if constexpr (std::endian::native == std::endian::little) {
#if defined(_MSC_VER)
            word = _byteswap_uint64(word);
#else
            word = __builtin_bswap64(word);
#endif
        }
        std::memcpy(position, &word, sizeof word);
    }

    std::uint8_t* position = nullptr;
    std::uint64_t accumulator = 0; ///< pending bits at the top, zeros below.
    unsigned pendingBits = 0;
};

} // namespace prc
