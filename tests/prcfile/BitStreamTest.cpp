#include "platform/prcfile/BitReader.h"
#include "platform/prcfile/BitWriter.h"
#include "platform/prcfile/DoubleCodes.h"
#include "platform/prcfile/SectionWriter.h"
#include "tests/support/PRCBitReader.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <functional>
#include <limits>
#include <optional>
#include <random>
#include <string>
#include <utility>
#include <vector>

/// The primitive types, written and read, against bits that were worked out by hand.
namespace
{

using prc::BitReader;
using prc::BitWriter;

std::string BitsOf(const BitWriter& writer)
{
    std::string bits;
    for (const std::uint8_t byte : writer.bytes()) {
        for (unsigned shift = 8; shift-- > 0;)
            bits += (byte >> shift & 1) != 0 ? '1' : '0';
    }
    return bits.substr(0, writer.bitCount());
}

std::string Written(const std::function<void(BitWriter&)>& write)
{
    BitWriter writer;
    write(writer);
    return BitsOf(writer);
}

/// Drops the spaces that make expected bits readable.
std::string Bits(std::string text)
{
    std::erase(text, ' ');
    return text;
}

/// What a reader makes of a bit stream.
///
/// @return nullopt when it fails or leaves a whole byte.
template <typename Value>
std::optional<Value> ReadBack(const std::string& bits, Value (BitReader::*read)())
{
    BitWriter writer;
    for (const char bit : Bits(bits))
        writer.writeBits(bit == '1' ? 1 : 0, 1);
    std::vector<std::uint8_t> bytes(writer.bytes().begin(), writer.bytes().end());
    const std::size_t size = bytes.size();
    bytes.resize(size + BitReader::paddingBytes);
    BitReader reader{std::span(bytes).first(size)};
    const Value value = (reader.*read)();
    if (!reader.ok()) {
        EXPECT_FALSE(reader.failureReason().empty());
        EXPECT_EQ(reader.readUnsignedInteger(), 0U) << "errors stick";
        return std::nullopt;
    }
    return reader.bitsLeft() < 8 ? std::optional(value) : std::nullopt;
}

/// The writer, the reader and the decoder of the tests, which share no code, have to agree with the bits.
template <typename Value>
void ExpectForms(const std::vector<std::pair<Value, std::string>>& cases, void (BitWriter::*write)(Value),
                 Value (BitReader::*read)(), Value (Orvel::Test::PRCBitReader::*readIndependently)())
{
    for (const auto& [value, bits] : cases) {
        BitWriter writer;
        (writer.*write)(value);
        EXPECT_EQ(BitsOf(writer), Bits(bits)) << value;
        EXPECT_EQ(ReadBack(bits, read), value) << bits;
        Orvel::Test::PRCBitReader independent("test", {writer.bytes().begin(), writer.bytes().end()},
                                              Orvel::Test::Strictness::OwnWriter);
        EXPECT_EQ((independent.*readIndependently)(), value) << bits;
    }
}

/// Writes all values behind one another and reads them back, also with code that shares nothing with the writer.
void ExpectDoublesSurvive(const std::vector<double>& values)
{
    BitWriter writer;
    writer.writeDoubles(values);
    std::vector<std::uint8_t> bytes(writer.bytes().begin(), writer.bytes().end());
    Orvel::Test::PRCBitReader independent("test", bytes, Orvel::Test::Strictness::OwnWriter);
    const std::size_t size = bytes.size();
    bytes.resize(size + BitReader::paddingBytes);
    BitReader reader{std::span(bytes).first(size)};
    for (std::size_t k = 0; k < values.size(); ++k) {
        const auto expected = std::bit_cast<std::uint64_t>(values[k] == 0.0 ? 0.0 : values[k]);
        ASSERT_EQ(std::bit_cast<std::uint64_t>(independent.Double()), expected) << k << ": " << values[k];
        ASSERT_EQ(std::bit_cast<std::uint64_t>(reader.readDouble()), expected) << k << ": " << values[k];
    }
    independent.Finish();
    EXPECT_TRUE(reader.ok());
}

TEST(UnsignedIntegers, AreMarkedBytesFromTheLowEnd)
{
    const std::vector<std::pair<std::uint32_t, std::string>> cases = {
        {0, "0"},
        {1, "1 00000001 0"},
        {172, "1 10101100 0"},
        {255, "1 11111111 0"},
        {256, "1 00000000 1 00000001 0"},
        {65536, "1 00000000 1 00000000 1 00000001 0"},
        {0x01020304, "1 00000100 1 00000011 1 00000010 1 00000001 0"},
        {4294967295U, "1 11111111 1 11111111 1 11111111 1 11111111 0"}};
    ExpectForms(cases, &BitWriter::writeUnsignedInteger, &BitReader::readUnsignedInteger,
                &Orvel::Test::PRCBitReader::UnsignedInteger);
    for (const auto& [value, bits] : cases)
        EXPECT_EQ(Written([v = value](BitWriter& writer) { writer.writeUnsignedIntegers({&v, 1}); }), Bits(bits));
    const std::string five = "1 00000001 1 00000001 1 00000001 1 00000001 1 00000001 0";
    EXPECT_EQ(ReadBack(five, &BitReader::readUnsignedInteger), std::nullopt);
    EXPECT_EQ(ReadBack(five, &BitReader::readInteger), std::nullopt);
    EXPECT_EQ(ReadBack("1 0000", &BitReader::readUnsignedInteger), std::nullopt) << "ends inside";
}

TEST(Integers, EndWithTheSignOfTheirLastByte)
{
    ExpectForms<std::int32_t>({{0, "0"},
                               {1, "1 00000001 0"},
                               {-1, "1 11111111 0"},
                               {127, "1 01111111 0"},
                               {128, "1 10000000 1 00000000 0"},
                               {-128, "1 10000000 0"},
                               {-129, "1 01111111 1 11111111 0"},
                               {1000, "1 11101000 1 00000011 0"},
                               {2147483647, "1 11111111 1 11111111 1 11111111 1 01111111 0"},
                               {-2147483647 - 1, "1 00000000 1 00000000 1 00000000 1 10000000 0"}},
                              &BitWriter::writeInteger, &BitReader::readInteger, &Orvel::Test::PRCBitReader::Integer);
}

TEST(Strings, TellNullFromEmpty)
{
    EXPECT_EQ(Written([](BitWriter& writer) { writer.writeString(std::nullopt); }), "0");
    EXPECT_EQ(Written([](BitWriter& writer) { writer.writeString(""); }), "10");
    EXPECT_EQ(Written([](BitWriter& writer) { writer.writeString("\xC3\xA9"); }),
              Bits("1 1 00000010 0 11000011 10101001"));
}

TEST(Doubles, HaveTheWorkedOutBits)
{
    // Exponent of 2 ("11011"), sign, mark, nibble 1; then six bytes with every kind of repetition.
    const std::string head = "11011 0 1 0001";
    const auto two = [](std::uint64_t sixBytes) {
        return std::bit_cast<double>(std::uint64_t{0x4001} << 48 | sixBytes);
    };
    ExpectForms<double>(
        {{0.0, "01"},
         {1.0, "0000 0"},
         {-1.0, "0000 1"},
         {0.5, "11101110111 0"},
         {2.0, "11011 0 0"},
         {10.0, "10010 0 1 0100 1 00000000 0 000"},
         {2000.0, "00010110 0 1 1111 1 01000000 1 00000000 0 000"},
         {-3.25, "11011 1 1 1010 1 00000000 0 000"},
         {0.1, "000100 0 1 1001 1 10011001 0 110 10011010"},
         {1.0 / 3.0, "00011 0 1 0101 1 01010101 0 000"},
         {static_cast<double>(0.3F), "00011 0 1 0011 1 00110011 1 00110011 1 01000000 1 00000000 0 000"},
         {25.4, "11001 0 1 1001 1 01100110 0 000"},
         {360.0, "111010101 0"},
         {two(0x111111111111), head + "1 00010001 0 000"},
         {two(0x112222222222), head + "1 00010001 1 00100010 0 000"},
         {two(0x112233445555), head + "1 00010001 1 00100010 1 00110011 1 01000100 1 01010101 0 000"},
         {two(0x112233444455), head + "1 00010001 1 00100010 1 00110011 1 01000100 0 110 01010101"},
         {two(0x111111111122), head + "1 00010001 0 110 00100010"},
         {two(0x112233445566), head + "1 00010001 1 00100010 1 00110011 1 01000100 1 01010101 1 01100110"},
         {two(0x111133445566), head + "1 00010001 1 00010001 1 00110011 1 01000100 1 01010101 1 01100110"},
         {two(0x000000000001), head + "1 00000000 0 110 00000001"}},
        &BitWriter::writeDouble, &BitReader::readDouble, &Orvel::Test::PRCBitReader::Double);
    EXPECT_EQ(Written([](BitWriter& writer) { writer.writeDouble(-0.0); }), "01");
}

TEST(Doubles, AreReadInFormsThatAreNeverWritten)
{
    // 00011: biased exponent 0x3FD, so the two high bytes are 3F D? with the nibble behind them.
    const std::pair<const char*, std::optional<std::uint64_t>> cases[] = {
        {"00011 0 1 0011 0 000", 0x3FD3D3D3D3D3D3D3U},          // fill with the byte before
        {"00011 0 1 0011 0 110 00000001", 0x3FD3D3D3D3D3D301U}, // fill, one byte left
        {"00011 0 1 0011 0 001 1 00010001 0 010 0 011 0 000", 0x3FD3D311D3D3D3D3U},
        {"00011 1 1 0011 0 010 1 00010001 0 011 0 101 0 101 1 11111111", 0xBFD3BF11D3BFD3FFU}, // the very first byte
        {"00011 0 1 0011 0 111", std::nullopt},                                                // no such form
        {"00011 0 1 0011 0 011 0 101 0 111", std::nullopt},                                    // the same further on
        {"00011 0 1 0011 0 011", std::nullopt},                                                // before the number
        {"00011 0 1 0011 1 0", std::nullopt},                                                  // ends inside
    };
    for (const auto& [bits, pattern] : cases) {
        const std::optional<double> value = ReadBack(bits, &BitReader::readDouble);
        EXPECT_EQ(value ? std::optional(std::bit_cast<std::uint64_t>(*value)) : std::nullopt, pattern) << bits;
    }
    // The code of exponent 0 with a sign and no mantissa: negative zero; and that of exponent 2047: not a number.
    const auto coded = [](std::size_t exponent, const std::string& rest) {
        const prc::PackedCode code = prc::exponentCodes[exponent];
        return Written([code](BitWriter& writer) { writer.writeBits(prc::codeOf(code), prc::codeLengthOf(code)); }) +
               rest;
    };
    const std::optional<double> zero = ReadBack(coded(0, "10"), &BitReader::readDouble);
    EXPECT_EQ(zero, 0.0);
    EXPECT_FALSE(std::signbit(zero.value_or(-1.0)));
    EXPECT_EQ(ReadBack(coded(2047, "00"), &BitReader::readDouble), std::nullopt);
}

TEST(Doubles, EveryExponentFrequentValueAndPatternSurvives)
{
    std::vector<double> values;
    for (std::uint64_t exponent = 0; exponent < 2047; ++exponent) {
        for (const std::uint64_t mantissa : {std::uint64_t{0}, std::uint64_t{0x123456789ABCD}}) {
            const double value = std::bit_cast<double>(exponent << 52 | mantissa);
            values.insert(values.end(), {value, -value});
        }
    }
    for (const prc::FrequentDouble& frequent : prc::frequentDoubles) {
        for (const std::uint64_t neighbour : {frequent.magnitude, frequent.magnitude + 1}) {
            const double value = std::bit_cast<double>(neighbour);
            values.insert(values.end(), {value, -value});
        }
    }
    std::mt19937_64 random(20071);
    for (int k = 0; k < 60000; ++k) {
        const std::uint64_t pattern = random();
        if (std::isfinite(std::bit_cast<double>(pattern)))
            values.push_back(std::bit_cast<double>(pattern));
        const double decimal = static_cast<double>(static_cast<std::int64_t>(pattern >> 40) - 8'000'000) / 1000.0;
        values.insert(values.end(), {decimal, static_cast<double>(static_cast<float>(decimal) / 3.0F)});
        // Mantissas of few different bytes hit the fill forms at every position.
        std::uint64_t bytes = 0;
        for (unsigned byte = 0; byte < 6; ++byte)
            bytes = bytes << 8 | (pattern >> byte & 1) * 0x5A;
        values.push_back(std::bit_cast<double>(std::uint64_t{0x3FE5} << 48 | bytes));
    }
    ExpectDoublesSurvive(values);
}

TEST(Doubles, CodesFormACompletePrefixCode)
{
    // The sum of 2^-length is 1, counted in units of the longest code, and no code begins another: a wrong digit in the
    // table breaks one of them.
    std::vector<std::pair<std::uint32_t, unsigned>> codes;
    for (const prc::PackedCode code : prc::exponentCodes)
        codes.emplace_back(prc::codeOf(code), prc::codeLengthOf(code));
    for (const prc::FrequentDouble& frequent : prc::frequentDoubles)
        codes.emplace_back(frequent.code, frequent.length);
    std::vector<bool> taken(std::size_t{1} << prc::longestDoubleCode);
    std::size_t total = 0;
    for (const auto& [code, length] : codes) {
        const unsigned free = prc::longestDoubleCode - length;
        for (std::size_t word = std::size_t{code} << free; word < (std::size_t{code} + 1) << free; ++word, ++total) {
            ASSERT_FALSE(taken[word]) << "code " << code << " of " << length << " bits";
            taken[word] = true;
        }
    }
    EXPECT_EQ(codes.size(), 2077U);
    EXPECT_EQ(total, taken.size());
}

TEST(BitStream, APrefixOfAnyLengthStandsDirectlyBeforeTheRest)
{
    for (unsigned prefixBits = 1; prefixBits <= 32; ++prefixBits) {
        BitWriter writer(4);
        BitWriter prefix;
        const auto pattern = static_cast<std::uint32_t>(0xB7E15163U >> (32 - prefixBits));
        prefix.writeBits(pattern, prefixBits);
        std::string expected = BitsOf(prefix);
        for (std::uint32_t k = 0; k < 40; ++k)
            writer.writeUnsignedInteger(k * k);
        expected += BitsOf(writer);
        writer.writeBefore(prefix);

        std::string all;
        for (const std::uint8_t byte : writer.bytes())
            all += Written([byte](BitWriter& one) { one.writeCharacter(byte); });
        ASSERT_LT(all.size() - expected.size(), 8U) << prefixBits;
        EXPECT_EQ(all.substr(0, expected.size()), expected) << prefixBits;
        EXPECT_EQ(all.substr(expected.size()).find('1'), std::string::npos) << prefixBits;
    }
}

TEST(Names, AMissingNameIsSaidInFullOnceAfterEachName)
{
    prc::SectionWriter section;
    for (const char* const name : {"", "", "A", "A", "", ""})
        section.writeContentBase(*name != '\0' ? std::optional<std::string_view>(name) : std::nullopt);
    const std::string named = "0 0 1 1 00000001 0 01000001";
    EXPECT_EQ(BitsOf(section), Bits("0 0 0 0 1" + named + named + "0 0 0 0 1"));
}

} // namespace
