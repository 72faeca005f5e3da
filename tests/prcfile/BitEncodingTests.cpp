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
#include <random>
#include <string>
#include <vector>

namespace
{

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

std::string DoubleBits(double value)
{
    return Written([value](BitWriter& writer) { writer.writeDouble(value); });
}

Orvel::Test::PRCBitReader ReaderOf(const BitWriter& writer)
{
    return {"test", {writer.bytes().begin(), writer.bytes().end()}, Orvel::Test::Strictness::OwnWriter};
}

/// Writes all values behind one another and reads them back with code that shares nothing with the writer.
void ExpectDoublesSurvive(const std::vector<double>& values)
{
    BitWriter writer;
    writer.writeDoubles(values);
    Orvel::Test::PRCBitReader reader = ReaderOf(writer);
    for (std::size_t k = 0; k < values.size(); ++k) {
        const double expected = values[k] == 0.0 ? 0.0 : values[k];
        ASSERT_EQ(std::bit_cast<std::uint64_t>(reader.Double()), std::bit_cast<std::uint64_t>(expected))
            << "value " << k << ": " << std::hexfloat << values[k];
    }
    reader.Finish();
}

TEST(UnsignedIntegers, AreMarkedBytesFromTheLowEnd)
{
    const std::vector<std::pair<std::uint32_t, std::string>> cases = {
        {0, "0"},
        {1, "1 00000001 0"},
        {172, "1 10101100 0"},
        {255, "1 11111111 0"},
        {256, "1 00000000 1 00000001 0"},
        {303, "1 00101111 1 00000001 0"},
        {702, "1 10111110 1 00000010 0"},
        {65536, "1 00000000 1 00000000 1 00000001 0"},
        {0x01020304, "1 00000100 1 00000011 1 00000010 1 00000001 0"},
        {4294967295U, "1 11111111 1 11111111 1 11111111 1 11111111 0"}};
    for (const auto& [value, bits] : cases) {
        EXPECT_EQ(Written([v = value](BitWriter& writer) { writer.writeUnsignedInteger(v); }), Bits(bits)) << value;
        EXPECT_EQ(Written([v = value](BitWriter& writer) {
                      writer.writeUnsignedIntegers({&v, 1});
                  }),
                  Bits(bits))
            << value;
    }
}

TEST(Integers, EndWithTheSignOfTheirLastByte)
{
    const std::vector<std::pair<std::int32_t, std::string>> cases = {
        {0, "0"},
        {1, "1 00000001 0"},
        {-1, "1 11111111 0"},
        {127, "1 01111111 0"},
        {128, "1 10000000 1 00000000 0"},
        {-128, "1 10000000 0"},
        {-129, "1 01111111 1 11111111 0"},
        {1000, "1 11101000 1 00000011 0"},
        {2147483647, "1 11111111 1 11111111 1 11111111 1 01111111 0"},
        {-2147483647 - 1, "1 00000000 1 00000000 1 00000000 1 10000000 0"}};
    for (const auto& [value, bits] : cases)
        EXPECT_EQ(Written([v = value](BitWriter& writer) { writer.writeInteger(v); }), Bits(bits)) << value;
}

TEST(Strings, TellNullFromEmpty)
{
    EXPECT_EQ(Written([](BitWriter& writer) { writer.writeString(std::nullopt); }), "0");
    EXPECT_EQ(Written([](BitWriter& writer) { writer.writeString(""); }), "10");
    EXPECT_EQ(Written([](BitWriter& writer) { writer.writeString("A"); }), Bits("1 1 00000001 0 01000001"));
    EXPECT_EQ(Written([](BitWriter& writer) { writer.writeString("\xC3\xA9"); }),
              Bits("1 1 00000010 0 11000011 10101001"));
}

TEST(Doubles, HaveTheWorkedOutBits)
{
    const std::vector<std::pair<double, std::string>> cases = {
        {0.0, "01"},
        {-0.0, "01"},
        {1.0, "0000 0"},
        {-1.0, "0000 1"},
        {0.5, "11101110111 0"},
        {2.0, "11011 0 0"},
        {10.0, "10010 0 1 0100 1 00000000 0 000"},
        {40.0, "11010 0 1 0100 1 00000000 0 000"},
        {2000.0, "00010110 0 1 1111 1 01000000 1 00000000 0 000"},
        {-3.25, "11011 1 1 1010 1 00000000 0 000"},
        {0.1, "000100 0 1 1001 1 10011001 0 110 10011010"},
        {1.0 / 3.0, "00011 0 1 0101 1 01010101 0 000"},
        {static_cast<double>(0.3F), "00011 0 1 0011 1 00110011 1 00110011 1 01000000 1 00000000 0 000"},
        {25.4, "11001 0 1 1001 1 01100110 0 000"},
        {360.0, "111010101 0"}};
    for (const auto& [value, bits] : cases)
        EXPECT_EQ(DoubleBits(value), Bits(bits)) << value;
}

TEST(Doubles, MantissasUseTheShortestFormOfEachPattern)
{
    // Exponent of 2 ("11011"), sign, mark, nibble 1; then six bytes with every kind of repetition.
    const std::string head = "11011 0 1 0001";
    const auto bits = [](std::uint64_t sixBytes) {
        return DoubleBits(std::bit_cast<double>(std::uint64_t{0x4001} << 48 | sixBytes));
    };
    EXPECT_EQ(bits(0x111111111111), Bits(head + "1 00010001 0 000"));
    EXPECT_EQ(bits(0x112222222222), Bits(head + "1 00010001 1 00100010 0 000"));
    EXPECT_EQ(bits(0x112233445555), Bits(head + "1 00010001 1 00100010 1 00110011 1 01000100 1 01010101 0 000"));
    EXPECT_EQ(bits(0x112233444455), Bits(head + "1 00010001 1 00100010 1 00110011 1 01000100 0 110 01010101"));
    EXPECT_EQ(bits(0x111111111122), Bits(head + "1 00010001 0 110 00100010"));
    EXPECT_EQ(bits(0x112233445566), Bits(head + "1 00010001 1 00100010 1 00110011 1 01000100 1 01010101 1 01100110"));
    EXPECT_EQ(bits(0x111133445566), Bits(head + "1 00010001 1 00010001 1 00110011 1 01000100 1 01010101 1 01100110"));
    EXPECT_EQ(bits(0x000000000001), Bits(head + "1 00000000 0 110 00000001"));
}

TEST(Doubles, EveryExponentAndFrequentValueSurvivesInBothSigns)
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
    ExpectDoublesSurvive(values);
}

TEST(Doubles, RandomPatternsDecimalsAndWidenedFloatsSurvive)
{
    std::mt19937_64 random(20071);
    std::vector<double> values;
    for (int k = 0; k < 60000; ++k) {
        const std::uint64_t pattern = random();
        const double any = std::bit_cast<double>(pattern);
        if (std::isfinite(any))
            values.push_back(any);
        const double decimal = static_cast<double>(static_cast<std::int64_t>(pattern >> 40) - 8'000'000) / 1000.0;
        values.push_back(decimal);
        values.push_back(static_cast<double>(static_cast<float>(decimal) / 3.0F));
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

TEST(BitStream, MixedFieldsKeepTheirPlacesWhileTheBufferGrows)
{
    BitWriter writer;
    for (std::uint32_t k = 0; k < 5000; ++k) {
        writer.writeBits(k % 8, 3);
        writer.writeUnsignedInteger(k * 7919);
        writer.writeCharacter(static_cast<std::uint8_t>(k));
    }
    Orvel::Test::PRCBitReader reader = ReaderOf(writer);
    for (std::uint32_t k = 0; k < 5000; ++k) {
        ASSERT_EQ(reader.Bits(3), k % 8);
        ASSERT_EQ(reader.UnsignedInteger(), k * 7919);
        ASSERT_EQ(reader.Character(), static_cast<std::uint8_t>(k));
    }
    reader.Finish();
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
    for (const char* const name : {static_cast<const char*>(nullptr), static_cast<const char*>(nullptr), "A", "A",
                                   static_cast<const char*>(nullptr), static_cast<const char*>(nullptr)})
        section.writeContentBase(name != nullptr ? std::optional<std::string_view>(name) : std::nullopt);
    const std::string named = "0 0 1 1 00000001 0 01000001";
    EXPECT_EQ(BitsOf(section), Bits("0 0 0"
                                    "0 1" +
                                    named + named +
                                    "0 0 0"
                                    "0 1"));
}

} // namespace
