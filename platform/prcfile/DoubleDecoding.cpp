#include "platform/prcfile/DoubleDecoding.h"

namespace prc
{

DoubleDecodingTable::DoubleDecodingTable()
{
    constexpr std::uint16_t unused = 0xFFFF;
    first.fill({unused, 0});
    for (std::size_t exponent = 0; exponent < exponentCount; ++exponent) {
        const PackedCode packed = exponentCodes[exponent];
        add(codeOf(packed), codeLengthOf(packed), static_cast<std::uint16_t>(exponent));
    }
    for (std::size_t number = 0; number < frequentDoubleCount; ++number) {
        const FrequentDouble& value = frequentDoubles[number];
        add(value.code, value.length, static_cast<std::uint16_t>(firstFrequent + number));
    }
}

void DoubleDecodingTable::add(std::uint32_t code, unsigned length, std::uint16_t symbol)
{
    const Entry entry{symbol, static_cast<std::uint16_t>(length)};
    if (length <= firstBits) {
        const std::size_t start = std::size_t{code} << (firstBits - length);
        for (std::size_t offset = 0; offset < std::size_t{1} << (firstBits - length); ++offset)
            first[start + offset] = entry;
        return;
    }
    // Codes that share their first bits share a second table.
    Entry& link = first[code >> (length - firstBits)];
    if (link.symbol == 0xFFFF) {
        link.symbol = static_cast<std::uint16_t>(second.size() >> secondBits);
        second.resize(second.size() + (std::size_t{1} << secondBits));
    }
    const unsigned restLength = length - firstBits;
    const std::size_t rest = code & ((std::uint32_t{1} << restLength) - 1);
    const std::size_t start = (std::size_t{link.symbol} << secondBits) + (rest << (secondBits - restLength));
    for (std::size_t offset = 0; offset < std::size_t{1} << (secondBits - restLength); ++offset)
        second[start + offset] = entry;
}

const DoubleDecodingTable& DoubleDecodingTable::instance()
{
    static const DoubleDecodingTable table;
    return table;
}

} // namespace prc
