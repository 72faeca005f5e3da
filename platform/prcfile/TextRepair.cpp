#include "platform/prcfile/TextRepair.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace prc
{

namespace
{

unsigned byteAt(std::string_view text, std::size_t position)
{
    return position < text.size() ? static_cast<std::uint8_t>(text[position]) : 0U;
}

bool isContinuation(unsigned byte)
{
    return (byte & 0xC0U) == 0x80U;
}

/// @return the length of the well-formed character at `at`: 1 to 4 bytes, 0 when there is none.
std::size_t characterLength(std::string_view text, std::size_t at)
{
    const unsigned lead = byteAt(text, at);
    const unsigned second = byteAt(text, at + 1);
    if (lead < 0x80)
        return 1;
    if (lead < 0xC2 || !isContinuation(second))
        return 0;
    if (lead < 0xE0)
        return 2;
    // Overlong forms, surrogates and what lies beyond U+10FFFF show in the second byte.
    if ((lead == 0xE0 && second < 0xA0) || (lead == 0xED && second > 0x9F) || !isContinuation(byteAt(text, at + 2)))
        return 0;
    if (lead < 0xF0)
        return 3;
    const bool inRange = lead < 0xF5 && !(lead == 0xF0 && second < 0x90) && !(lead == 0xF4 && second > 0x8F);
    return inRange && isContinuation(byteAt(text, at + 3)) ? 4 : 0;
}

} // namespace

std::string validUtf8(std::string bytes)
{
    const auto isPlain = [](char byte) { return byte > 0; };
    if (std::ranges::all_of(bytes, isPlain))
        return bytes;
    std::string text;
    text.reserve(bytes.size());
    for (std::size_t at = 0; at < bytes.size();) {
        const std::size_t length = characterLength(bytes, at);
        if (length == 0)
            text += "\xEF\xBF\xBD";
        else if (bytes[at] != '\0')
            text.append(bytes, at, length);
        at += length == 0 ? 1 : length;
    }
    return text;
}

} // namespace prc
