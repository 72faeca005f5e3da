#pragma once

#include "platform/core/COrvelArchiveBase.h"

#include <algorithm>
#include <cstring>
#include <string>

namespace Orvel
{

/// An archive in memory: made for writing, then turned into a reader of the bytes, whole or cut short.
class ByteArchive : public COrvelArchiveBase
{
public:
    void StartReading(std::size_t length = std::string::npos)
    {
        reading = true;
        position = 0;
        bytes.resize(std::min(length, bytes.size()));
    }
    std::size_t Length() const { return bytes.size(); }
    bool IsAtEnd() const { return position == bytes.size(); }

    bool IsReaderArchive() const override { return reading; }
    int Version() const override { return newestVersion; }
    using COrvelArchiveBase::ReadWrite;
    bool ReadWrite(int& value) override { return Plain(value); }
    bool ReadWrite(uint32& value) override { return Plain(value); }
    bool ReadWrite(double& value) override { return Plain(value); }
    bool ReadWrite(bool& value) override { return Plain(value); }
    bool ReadWrite(COrvelString& value) override
    {
        std::string text = value.toStdString();
        uint32 length = static_cast<uint32>(text.size());
        if (!ReadWriteCount(length, 1))
            return false;
        text.resize(length);
        for (char& character : text)
            if (!Plain(character))
                return false;
        value = COrvelString(text);
        return true;
    }

protected:
    std::uint64_t BytesLeft() const override { return bytes.size() - position; }

private:
    template <class Value>
    bool Plain(Value& value)
    {
        if (!reading) {
            bytes.append(reinterpret_cast<const char*>(&value), sizeof value);
            return true;
        }
        if (BytesLeft() < sizeof value)
            return false;
        std::memcpy(&value, bytes.data() + position, sizeof value);
        position += sizeof value;
        return true;
    }

    std::string bytes;
    std::size_t position = 0;
    bool reading = false;
};

} // namespace Orvel
