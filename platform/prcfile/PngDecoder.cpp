#include "platform/prcfile/PngDecoder.h"

#include <array>
#include <csetjmp>
#include <cstdio>
#include <cstring>
#include <new>
#include <png.h>

namespace prc
{

namespace
{

/// What a decoding run reads from and fills. Everything with a destructor lives here, outside the functions that an
/// error leaves by a jump.
struct Source
{
    std::span<const std::uint8_t> file;
    std::size_t at = 0;
    std::uint64_t limit = 0;
    std::uint64_t size = 0; ///< of the pixels.
    Model::DecodedPicture picture;
    std::vector<png_bytep> rows;
    std::array<char, 128> message{};
};

void take(png_structp png, png_bytep target, png_size_t count)
{
    auto* const source = static_cast<Source*>(png_get_io_ptr(png));
    if (count > source->file.size() - source->at)
        png_error(png, "the picture is cut off");
    std::memcpy(target, source->file.data() + source->at, count);
    source->at += count;
}

[[noreturn]] void fail(png_structp png, png_const_charp message)
{
    auto* const source = static_cast<Source*>(png_get_error_ptr(png));
    std::snprintf(source->message.data(), source->message.size(), "%s", message);
    png_longjmp(png, 1);
}

void ignoreWarning(png_structp /*png*/, png_const_charp /*message*/) {}

/// @return false after an error. Holds nothing but plain values: an error jumps back into the middle of it.
bool readHeader(png_structp png, png_infop info, Source& source)
{
    if (setjmp(png_jmpbuf(png)) != 0)
        return false;
    png_read_info(png, info);
    // Before the memory for its pixels is taken: deflate expands about 1032 times at most.
    constexpr std::uint64_t largestExpansion = 1040;
    if (std::uint64_t{png_get_rowbytes(png, info)} * png_get_image_height(png, info) / largestExpansion >
        source.file.size())
        png_error(png, "the picture is cut off");
    png_set_expand(png);
    png_set_strip_16(png);
    png_set_interlace_handling(png);
    png_read_update_info(png, info);
    source.picture.size = {png_get_image_width(png, info), png_get_image_height(png, info)};
    source.picture.components = png_get_channels(png, info);
    source.size = std::uint64_t{png_get_rowbytes(png, info)} * source.picture.size.height;
    if (source.size > source.limit)
        png_error(png, "the picture exceeds the limit for its size");
    return true;
}

/// As readHeader.
bool readPixels(png_structp png, Source& source)
{
    if (setjmp(png_jmpbuf(png)) != 0)
        return false;
    png_read_image(png, source.rows.data());
    return true;
}

class PngReader
{
public:
    explicit PngReader(Source& readSource)
        : source(readSource)
        , png(png_create_read_struct(PNG_LIBPNG_VER_STRING, &source, fail, ignoreWarning))
        , info(png != nullptr ? png_create_info_struct(png) : nullptr)
    {
        if (info == nullptr) {
            png_destroy_read_struct(&png, nullptr, nullptr);
            throw std::bad_alloc();
        }
        png_set_read_fn(png, &source, take);
    }
    PngReader(const PngReader&) = delete;
    PngReader& operator=(const PngReader&) = delete;
    ~PngReader() { png_destroy_read_struct(&png, &info, nullptr); }

    bool read()
    {
        if (!readHeader(png, info, source))
            return false;
        source.picture.pixels.resize(static_cast<std::size_t>(source.size));
        const std::size_t rowSize = source.picture.pixels.size() / source.picture.size.height;
        for (std::uint32_t row = 0; row < source.picture.size.height; ++row)
            source.rows.push_back(source.picture.pixels.data() + row * rowSize);
        return readPixels(png, source);
    }

private:
    Source& source;
    png_structp png;
    png_infop info;
};

} // namespace

Model::DecodedPicture decodePng(std::span<const std::uint8_t> file, std::uint64_t limitInBytes)
{
    Source source;
    source.file = file;
    source.limit = limitInBytes;
    PngReader reader(source);
    if (!reader.read()) {
        source.picture = {};
        source.picture.error = source.message.data();
    }
    return std::move(source.picture);
}

} // namespace prc
