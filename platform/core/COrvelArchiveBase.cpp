#include "platform/core/COrvelArchiveBase.h"

#include <array>
#include <bit>
#include <cassert>
#include <string>

namespace Orvel
{

namespace
{

template <class Bits>
std::array<std::uint8_t, sizeof(Bits)> LittleEndianBytes(Bits bits)
{
    std::array<std::uint8_t, sizeof(Bits)> bytes;
    for (std::uint8_t& byte : bytes) {
        byte = static_cast<std::uint8_t>(bits);
        bits >>= 8;
    }
    return bytes;
}

template <class Bits>
Bits FromLittleEndianBytes(const std::array<std::uint8_t, sizeof(Bits)>& bytes)
{
    Bits bits = 0;
    for (auto byte = bytes.rbegin(); byte != bytes.rend(); ++byte)
        bits = bits << 8 | *byte;
    return bits;
}

} // namespace

COrvelArchiveBase::~COrvelArchiveBase() = default;

bool COrvelArchiveBase::HasExtendedRecords() const
{
    return extendedRecords;
}

template <class Bits>
bool COrvelArchiveBase::ReadWriteBits(Bits& bits)
{
    auto bytes = LittleEndianBytes(bits);
    if (!ReadWriteBytes(bytes))
        return false;
    bits = FromLittleEndianBytes<Bits>(bytes);
    return true;
}

bool COrvelArchiveBase::ReadWrite(uint32& value)
{
    return ReadWriteBits(value);
}

bool COrvelArchiveBase::ReadWrite(std::uint64_t& value)
{
    return ReadWriteBits(value);
}

bool COrvelArchiveBase::ReadWrite(int& value)
{
    auto bits = std::bit_cast<uint32>(value);
    if (!ReadWriteBits(bits))
        return false;
    value = std::bit_cast<int>(bits);
    return true;
}

bool COrvelArchiveBase::ReadWrite(double& value)
{
    auto bits = std::bit_cast<std::uint64_t>(value);
    if (!ReadWriteBits(bits))
        return false;
    value = std::bit_cast<double>(bits);
    return true;
}

bool COrvelArchiveBase::ReadWrite(bool& value)
{
    std::uint8_t bit = value ? 1 : 0;
    if (!ReadWriteBytes({&bit, 1}) || bit > 1)
        return false;
    value = bit == 1;
    return true;
}

bool COrvelArchiveBase::ReadWrite(COrvelString& value)
{
    std::string text = value.toStdString();
    auto length = static_cast<uint32>(text.size());
    if (length != text.size() || !ReadWriteCount(length, 1))
        return false;
    text.resize(length);
    if (!ReadWriteBytes({reinterpret_cast<std::uint8_t*>(text.data()), text.size()}))
        return false;
    if (IsReaderArchive())
        value = COrvelString(text);
    return true;
}

bool COrvelArchiveBase::ReadWrite(std::span<double> values)
{
    if constexpr (std::endian::native == std::endian::little)
        return ReadWriteBytes({reinterpret_cast<std::uint8_t*>(values.data()), values.size_bytes()});
    for (double& value : values)
        if (!ReadWrite(value))
            return false;
    return true;
}

bool COrvelArchiveBase::ReadWriteCount(uint32& count, uint32 bytesPerElement)
{
    assert(bytesPerElement > 0 && "an element that takes no bytes says nothing about how many can follow");
    uint32 stored = count;
    if (!ReadWrite(stored))
        return false;
    if (IsReaderArchive() && std::uint64_t{stored} * bytesPerElement > BytesLeft())
        return false;
    count = stored;
    return true;
}

} // namespace Orvel
