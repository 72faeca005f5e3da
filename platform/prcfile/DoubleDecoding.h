#pragma once

#include "platform/prcfile/DoubleCodes.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace prc
{

/// Finds the prefix code that a double begins with in one or two steps: the first 12 bits lead to the code itself, or,
/// for the longer codes, to a table of the next 10.
class DoubleDecodingTable
{
public:
    static constexpr unsigned firstBits = 12;
    static constexpr unsigned secondBits = longestDoubleCode - firstBits;
    static constexpr std::uint16_t firstFrequent = exponentCount;

    /// What a code stands for.
    struct Entry
    {
        std::uint16_t symbol = 0; ///< a biased exponent, or firstFrequent + position in frequentDoubles.
        std::uint16_t length = 0; ///< of the code in bits; 0 in the first table: `symbol` is a second table.
    };

    DoubleDecodingTable();

    /// @param bits the stream from the code on, in the high bits: at least longestDoubleCode of them.
    [[nodiscard]] Entry find(std::uint64_t bits) const
    {
        const Entry entry = first[static_cast<std::size_t>(bits >> (64 - firstBits))];
        if (entry.length != 0) [[likely]]
            return entry;
        const auto rest = static_cast<std::size_t>(bits << firstBits >> (64 - secondBits));
        return second[(std::size_t{entry.symbol} << secondBits) + rest];
    }

    /// The table, made at the first call.
    static const DoubleDecodingTable& instance();

private:
    void add(std::uint32_t code, unsigned length, std::uint16_t symbol);

    std::array<Entry, std::size_t{1} << firstBits> first{};
    std::vector<Entry> second;
};

} // namespace prc
