#include "tests/support/PRCBitReader.h"

#include <algorithm>
#include <bit>
#include <fstream>
#include <set>
#include <sstream>
#include <utility>

namespace Orvel::Test
{
namespace
{

constexpr uint64_t mantissaMask = (uint64_t{1} << 52) - 1;
constexpr uint64_t signMask = uint64_t{1} << 63;

/// The prefix code of doubles: a binary trie whose leaves are rows of the table.
struct DoubleCode
{
    struct Node
    {
        std::array<int32_t, 2> next{-1, -1};
        bool isLeaf = false;
        bool isValue = false; ///< the pattern is the whole value; else only its exponent counts
        uint64_t pattern = 0; ///< without sign
    };

    std::vector<Node> nodes{1};
    std::set<uint64_t> values;

    void Add(const std::string& code, bool isValue, uint64_t pattern)
    {
        size_t at = 0;
        for (const char digit : code) {
            int32_t next = nodes[at].next.at(static_cast<size_t>(digit - '0'));
            if (next < 0) {
                next = static_cast<int32_t>(nodes.size());
                nodes[at].next.at(static_cast<size_t>(digit - '0')) = next;
                nodes.emplace_back();
            }
            at = static_cast<size_t>(next);
        }
        nodes[at] = {{-1, -1}, true, isValue, isValue ? pattern : pattern & ~mantissaMask};
        if (isValue)
            values.insert(pattern);
    }
};

DoubleCode LoadDoubleCode()
{
    const std::string path = ORVEL_TEST_DATA "/frequent-doubles.tsv";
    std::ifstream file(path);
    std::string line;
    std::getline(file, line); // headings
    DoubleCode result;
    size_t rows = 0;
    for (; std::getline(file, line); ++rows) {
        std::istringstream fields(line);
        std::string type, code, pattern;
        size_t bitCount = 0;
        fields >> type >> bitCount >> code >> pattern;
        if (!fields || code.size() != bitCount)
            throw std::runtime_error(path + ": malformed row: " + line);
        result.Add(code, type == "value", std::stoull(pattern, nullptr, 16));
    }
    if (rows != 2077)
        throw std::runtime_error(path + ": 2077 rows expected, found " + std::to_string(rows));
    return result;
}

const DoubleCode& TheDoubleCode()
{
    static const DoubleCode code = LoadDoubleCode();
    return code;
}

bool IsUtf8(const std::string& text)
{
    for (size_t i = 0; i < text.size();) {
        const auto lead = static_cast<uint8_t>(text[i]);
        const size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
        if (lead == 0 || (lead >= 0x80 && lead < 0xC2) || lead > 0xF4 || i + length > text.size())
            return false;
        uint32_t codePoint = length == 1 ? lead : lead & (0x7Fu >> length);
        for (size_t k = 1; k < length; ++k) {
            const auto byte = static_cast<uint8_t>(text[i + k]);
            if ((byte & 0xC0) != 0x80)
                return false;
            codePoint = codePoint << 6 | (byte & 0x3Fu);
        }
        const bool isOverlong = (length == 3 && codePoint < 0x800) || (length == 4 && codePoint < 0x10000);
        if (isOverlong || codePoint > 0x10FFFF || (codePoint >= 0xD800 && codePoint < 0xE000))
            return false;
        i += length;
    }
    return true;
}

} // namespace

DecodeError::DecodeError(std::string where, size_t bitPosition, const std::string& finding)
    : std::runtime_error(where + ", bit " + std::to_string(bitPosition) + ": " + finding)
    , section(std::move(where))
    , bit(bitPosition)
{}

PRCBitReader::PRCBitReader(std::string sectionName, std::vector<uint8_t> sectionBytes, Strictness howStrict)
    : section(std::move(sectionName))
    , bytes(std::move(sectionBytes))
    , strictness(howStrict)
{}

void PRCBitReader::Fail(const std::string& finding) const
{
    throw DecodeError(section, position, finding);
}

void PRCBitReader::Require(bool condition, const char* finding) const
{
    if (!condition)
        Fail(finding);
}

bool PRCBitReader::Bit()
{
    Require(BitsLeft() > 0, "the section ends inside a field");
    const bool bit = (bytes[position / 8] >> (7 - position % 8) & 1) != 0;
    ++position;
    return bit;
}

uint32_t PRCBitReader::Bits(unsigned count)
{
    uint32_t result = 0;
    for (unsigned i = 0; i < count; ++i)
        result = result << 1 | static_cast<uint32_t>(Bit());
    return result;
}

uint32_t PRCBitReader::UnsignedInteger()
{
    uint32_t result = 0;
    uint32_t byte = 1;
    for (unsigned shift = 0; Bit(); shift += 8) {
        Require(shift < 32, "unsigned integer of more than four bytes");
        byte = Bits(8);
        result |= byte << shift;
    }
    Require(byte != 0, "unsigned integer with a superfluous byte");
    return result;
}

int32_t PRCBitReader::Integer()
{
    uint32_t bits = 0;
    unsigned shift = 0;
    bool wasNegative = false, isSuperfluous = false;
    for (; Bit(); shift += 8) {
        Require(shift < 32, "integer of more than four bytes");
        const uint32_t byte = Bits(8);
        isSuperfluous = byte == (wasNegative ? 0xFFu : 0u);
        wasNegative = (byte & 0x80) != 0;
        bits |= byte << shift;
    }
    Require(!isSuperfluous, "integer with a superfluous byte");
    if (wasNegative && shift < 32)
        bits |= ~uint32_t{0} << shift;
    return static_cast<int32_t>(bits);
}

Name PRCBitReader::String()
{
    if (!Bit())
        return std::nullopt;
    std::string text(Count(8), '\0');
    std::generate(text.begin(), text.end(), [this] { return static_cast<char>(Character()); });
    Require(IsUtf8(text), "string is not UTF-8 or contains a zero byte");
    return text;
}

double PRCBitReader::Double()
{
    const DoubleCode& code = TheDoubleCode();
    size_t at = 0;
    while (!code.nodes[at].isLeaf)
        at = static_cast<size_t>(code.nodes[at].next[Bit() ? 1 : 0]);

    uint64_t pattern = code.nodes[at].pattern;
    const bool isValue = code.nodes[at].isValue;
    if (isValue && pattern == 0)
        return 0;
    const uint64_t sign = static_cast<uint64_t>(Bit()) << 63;
    if (!isValue) {
        Require(pattern >> 52 != 2047, "double is not finite");
        if (Bit()) {
            pattern = WithMantissa(pattern | sign) & ~signMask;
            Require((pattern & mantissaMask) != 0, "double spells out a mantissa of zero");
        }
        Require(!code.values.contains(pattern), "double spelt out although the table has its value");
    }
    return std::bit_cast<double>(pattern | sign);
}

/// Completes the pattern of a double whose sign and exponent are known.
uint64_t PRCBitReader::WithMantissa(uint64_t pattern)
{
    pattern |= static_cast<uint64_t>(Bits(4)) << 48;
    std::array<uint8_t, 8> b{}; // most significant first: the mantissa's whole bytes are 2 to 7
    b[0] = static_cast<uint8_t>(pattern >> 56);
    b[1] = static_cast<uint8_t>(pattern >> 48);
    for (size_t k = 2; k < 8; ++k) {
        if (Bit()) {
            b[k] = Character();
            continue;
        }
        const uint32_t form = Bits(3);
        if (form == 0 || form == 6) {
            const bool isWritten = k > 2 && (form == 0 || k < 7);
            Require(isWritten || !IsOwnWriter(), "fill form in a place of a double that no writer uses");
            std::fill(b.begin() + static_cast<std::ptrdiff_t>(k), b.end(), b[k - 1]);
            if (form == 6)
                b[7] = Character();
            break;
        }
        Require(!IsOwnWriter(), "distance form in a double");
        Require(form <= k && form < 7, "distance form of a double reaches out of it");
        b[k] = b[k - form];
    }
    uint64_t result = 0;
    for (const uint8_t byte : b)
        result = result << 8 | byte;
    return result;
}

Vector3 PRCBitReader::Vector()
{
    Vector3 result{};
    for (double& component : result)
        component = Double();
    return result;
}

size_t PRCBitReader::Count(size_t minimumBits)
{
    const size_t count = UnsignedInteger();
    Require(count <= BitsLeft() / minimumBits, "count exceeds what is left of the section");
    return count;
}

void PRCBitReader::Finish()
{
    Require(BitsLeft() < 8, "bytes left over after the last field");
    while (BitsLeft() > 0)
        Require(!Bit(), "padding bit is not 0");
}

} // namespace Orvel::Test
