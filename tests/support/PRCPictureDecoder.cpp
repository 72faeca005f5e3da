#include "tests/support/PRCDecoderSections.h"

#include <algorithm>
#include <array>
#include <png.h>
#include <string>
#include <zlib.h>

namespace Orvel::Test
{
namespace
{

void Require(bool condition, const char* finding)
{
    if (!condition)
        throw std::runtime_error(finding);
}

/// A PNG as the format wants it: 8 bits, RGB or RGBA, no chunk that could change its colours, nothing behind IEND.
void RequirePlainPng(std::span<const uint8_t> file)
{
    constexpr std::array<uint8_t, 8> signature{0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
    Require(file.size() >= 33 && std::ranges::equal(file.first(8), signature), "stored file is not a PNG");
    const uint8_t bitDepth = file[24], colourType = file[25], interlace = file[28];
    Require(bitDepth == 8 && (colourType == 2 || colourType == 6) && interlace == 0, "PNG is not plain RGB or RGBA");
    std::string chunks;
    size_t at = 8;
    while (at + 12 <= file.size()) {
        const size_t length =
            size_t{file[at]} << 24 | size_t{file[at + 1]} << 16 | size_t{file[at + 2]} << 8 | file[at + 3];
        const std::string type(file.begin() + static_cast<std::ptrdiff_t>(at + 4),
                               file.begin() + static_cast<std::ptrdiff_t>(at + 8));
        if (type != "IDAT" || !chunks.ends_with(type))
            chunks += type;
        at += 12 + length;
    }
    Require(at == file.size(), "PNG is cut or has bytes behind its end");
    Require(chunks == "IHDRIDATIEND", "PNG has other chunks than IHDR, IDAT and IEND");
}

void DecodePng(std::span<const uint8_t> file, Picture& picture)
{
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    Require(png_image_begin_read_from_memory(&image, file.data(), file.size()) != 0, "PNG cannot be read");
    const bool hasAlpha = (image.format & PNG_FORMAT_FLAG_ALPHA) != 0;
    image.format = hasAlpha ? PNG_FORMAT_RGBA : PNG_FORMAT_RGB;
    picture.components = hasAlpha ? 4 : 3;
    picture.pixels.resize(PNG_IMAGE_SIZE(image));
    const bool isSizeTrue = image.width == picture.width && image.height == picture.height;
    const bool isDecoded = png_image_finish_read(&image, nullptr, picture.pixels.data(), 0, nullptr) != 0;
    Require(isDecoded, "PNG cannot be decoded");
    Require(isSizeTrue, "width and height of the picture are not those of its PNG");
}

} // namespace

std::vector<uint8_t> Inflate(std::span<const uint8_t> bytes, size_t& consumed)
{
    z_stream stream{};
    Require(inflateInit(&stream) == Z_OK, "inflate cannot start");
    stream.next_in = const_cast<Bytef*>(bytes.data()); // zlib takes its input without const and leaves it alone
    stream.avail_in = static_cast<uInt>(bytes.size());
    std::vector<uint8_t> result;
    std::array<uint8_t, 65536> chunk;
    int status = Z_OK;
    while (status == Z_OK) {
        stream.next_out = chunk.data();
        stream.avail_out = chunk.size();
        status = inflate(&stream, Z_NO_FLUSH);
        result.insert(result.end(), chunk.begin(), chunk.end() - stream.avail_out);
    }
    consumed = stream.total_in;
    inflateEnd(&stream);
    Require(status == Z_STREAM_END, "zlib stream is damaged or cut");
    return result;
}

void DecodePicture(std::span<const uint8_t> file, Strictness strictness, Picture& picture)
{
    Require(picture.width > 0 && picture.height > 0, "picture without size");
    if (picture.format == 0) {
        if (strictness == Strictness::OwnWriter)
            RequirePlainPng(file);
        DecodePng(file, picture);
        return;
    }
    Require(strictness == Strictness::Format, "picture is not stored as PNG");
    Require(picture.format == 2 || picture.format == 3, "picture format outside the decoded subset");
    picture.components = picture.format == 2 ? 3 : 4;
    const size_t size = size_t{picture.width} * picture.height * picture.components;
    size_t consumed = file.size();
    picture.pixels = file.size() >= size ? std::vector<uint8_t>(file.begin(), file.end()) : Inflate(file, consumed);
    Require(picture.pixels.size() == size && consumed == file.size(),
            "stored bytes do not fit the size of the picture");
}

std::vector<uint8_t> Picture::PixelAt(uint32_t column, uint32_t row) const
{
    const size_t at = (size_t{row} * width + column) * components;
    Require(column < width && row < height, "pixel outside the picture");
    const auto first = pixels.begin() + static_cast<std::ptrdiff_t>(at);
    return {first, first + components};
}

} // namespace Orvel::Test
