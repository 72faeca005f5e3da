#include "tool/pdf/Artwork.h"

#include <cassert>
#include <string_view>

namespace Orvel::Pdf
{

namespace
{

std::uint32_t BigEndian(std::span<const std::uint8_t> bytes)
{
    return std::uint32_t{bytes[0]} << 24U | std::uint32_t{bytes[1]} << 16U | std::uint32_t{bytes[2]} << 8U | bytes[3];
}

} // namespace

Poster PosterFromPng(std::span<const std::uint8_t> png)
{
    constexpr std::size_t SignatureSize = 8;
    constexpr std::size_t HeadSize = 8; // length and type of a chunk
    constexpr std::size_t ChecksumSize = 4;
    Poster poster;
    for (std::span<const std::uint8_t> rest = png.subspan(SignatureSize); rest.size() >= HeadSize + ChecksumSize;) {
        const std::uint32_t length = BigEndian(rest);
        const std::string_view type(reinterpret_cast<const char*>(rest.data()) + 4, 4);
        const auto data = rest.subspan(HeadSize, length);
        if (type == "IHDR") {
            assert(data[8] == 8 && data[9] == 2 && data[12] == 0 && "RGB of 8 bits, not interlaced");
            poster.width = BigEndian(data);
            poster.height = BigEndian(data.subspan(4));
        } else if (type == "IDAT") {
            poster.deflatedRows.insert(poster.deflatedRows.end(), data.begin(), data.end());
        }
        rest = rest.subspan(HeadSize + length + ChecksumSize);
    }
    return poster;
}

} // namespace Orvel::Pdf
