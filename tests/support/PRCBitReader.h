#pragma once

#include "tests/support/PRCDecoder.h"

namespace Orvel::Test
{

/// Reads the primitive types of one inflated section and refuses every form that is not the shortest one.
class PRCBitReader
{
public:
    PRCBitReader(std::string sectionName, std::vector<uint8_t> sectionBytes, Strictness howStrict);

    bool Bit();
    uint32_t Bits(unsigned count);
    uint8_t Character() { return static_cast<uint8_t>(Bits(8)); }
    uint32_t UnsignedInteger();
    int32_t Integer();
    Name String();
    double Double();
    Vector3 Vector();

    /// A count of elements that take at least `minimumBits` each: what cannot fit into the rest of the section is
    /// refused before anybody allocates for it.
    size_t Count(size_t minimumBits);

    /// Less than a byte may be left, all of it 0.
    void Finish();

    void Require(bool condition, const char* finding) const;
    [[noreturn]] void Fail(const std::string& finding) const;
    bool IsOwnWriter() const { return strictness == Strictness::OwnWriter; }
    size_t BitsLeft() const { return bytes.size() * 8 - position; }

private:
    uint64_t WithMantissa(uint64_t pattern);

    std::string section;
    std::vector<uint8_t> bytes;
    size_t position = 0;
    Strictness strictness;
};

} // namespace Orvel::Test
