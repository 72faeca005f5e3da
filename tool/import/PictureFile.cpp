#include "tool/import/PictureFile.h"

#include <FreeImage.h>

#include <algorithm>
#include <array>
#include <fstream>
#include <functional>
#include <limits>
#include <string_view>
#include <system_error>

namespace Orvel::Import
{

namespace
{

/// By content first, then by name, as the exporter does; unknown when nothing can read it.
FREE_IMAGE_FORMAT FormatOf(const std::string& path)
{
    FREE_IMAGE_FORMAT format = FreeImage_GetFileType(path.c_str(), 0);
    if (format == FIF_UNKNOWN)
        format = FreeImage_GetFIFFromFilename(path.c_str());
    return format != FIF_UNKNOWN && FreeImage_FIFSupportsReading(format) != FALSE ? format : FIF_UNKNOWN;
}

enum class ByteOrder
{
    BigEndian,
    LittleEndian
};

/// Where a picture format without a header-only mode keeps its size.
struct SizePlace
{
    FREE_IMAGE_FORMAT format;
    std::string_view mark; ///< the places count from the end of this text
    std::size_t width;
    std::size_t height;
    std::size_t bytes;
    ByteOrder order;
};

using namespace std::string_view_literals;

constexpr auto SizePlaces = std::to_array<SizePlace>({
    {FIF_GIF, "GIF8"sv, 2, 4, 2, ByteOrder::LittleEndian},
    {FIF_DDS, "DDS "sv, 12, 8, 4, ByteOrder::LittleEndian},
    {FIF_SGI, "\x01\xDA"sv, 4, 6, 2, ByteOrder::BigEndian},
    {FIF_JP2, "ihdr"sv, 4, 0, 4, ByteOrder::BigEndian},
    {FIF_J2K, "\xFF\x4F\xFF\x51"sv, 4, 8, 4, ByteOrder::BigEndian},
});

std::uint32_t NumberAt(std::string_view bytes, std::size_t position, const SizePlace& place)
{
    std::uint32_t number = 0;
    for (std::size_t k = 0; k < place.bytes; ++k) {
        const std::size_t from = place.order == ByteOrder::BigEndian ? k : place.bytes - 1 - k;
        number = number << 8U | static_cast<unsigned char>(bytes[position + from]);
    }
    return number;
}

PictureSize MeasureBytes(FREE_IMAGE_FORMAT format, const std::string& path)
{
    const auto place = std::ranges::find(SizePlaces, format, &SizePlace::format);
    if (place == SizePlaces.end())
        return {};
    std::ifstream stream(path, std::ios::binary);
    std::string begin(1024, '\0');
    stream.read(begin.data(), static_cast<std::streamsize>(begin.size()));
    const auto mark = begin.find(place->mark);
    if (mark == std::string::npos || mark + 64 > begin.size())
        return {};
    const std::size_t origin = mark + place->mark.size();
    return {NumberAt(begin, origin + place->width, *place), NumberAt(begin, origin + place->height, *place)};
}

/// 8 bits a channel, from numbers of any other kind.
FIBITMAP* ToneMapped(FIBITMAP* bitmap)
{
    switch (FreeImage_GetImageType(bitmap)) {
    case FIT_FLOAT:
    case FIT_RGBF:
    case FIT_RGBAF:
        return FreeImage_ToneMapping(bitmap, FITMO_REINHARD05);
    case FIT_UINT16:
        return FreeImage_ConvertTo8Bits(bitmap);
    default:
        // Measured values without a fixed range: their own range becomes black to white.
        return FreeImage_ConvertToStandardType(bitmap, TRUE);
    }
}

} // namespace

void Picture::Unload::operator()(FIBITMAP* owned) const
{
    FreeImage_Unload(owned);
}

Picture::Picture(FIBITMAP* owned)
    : bitmap(owned)
{}

std::uint32_t Picture::Width() const
{
    return FreeImage_GetWidth(bitmap.get());
}

std::uint32_t Picture::Height() const
{
    return FreeImage_GetHeight(bitmap.get());
}

bool Picture::IsTransparent() const
{
    return FreeImage_IsTransparent(bitmap.get()) != FALSE;
}

std::size_t Picture::Fingerprint() const
{
    constexpr std::size_t Multiplier = 0x9E3779B97F4A7C15; // spreads each step over all bits
    std::size_t print = (std::size_t{Width()} << 32U) + FreeImage_GetBPP(bitmap.get());
    const auto add = [&print](const void* bytes, std::size_t count) {
        print = print * Multiplier + std::hash<std::string_view>()({static_cast<const char*>(bytes), count});
    };
    if (const RGBQUAD* palette = FreeImage_GetPalette(bitmap.get()))
        add(palette, sizeof *palette * FreeImage_GetColorsUsed(bitmap.get()));
    // Row by row: what stands between the rows means nothing.
    for (std::uint32_t row = 0; row < Height(); ++row)
        add(FreeImage_GetScanLine(bitmap.get(), static_cast<int>(row)), FreeImage_GetLine(bitmap.get()));
    return print;
}

bool Picture::IsPlain() const
{
    const FREE_IMAGE_TYPE type = FreeImage_GetImageType(bitmap.get());
    return type == FIT_BITMAP || type == FIT_RGB16 || type == FIT_RGBA16;
}

bool Picture::MakePlain(bool alphaCounts)
{
    Picture plain(IsPlain() ? nullptr : ToneMapped(bitmap.get()));
    if (!IsPlain() && plain.IsEmpty())
        return false;
    FIBITMAP* source = plain.IsEmpty() ? bitmap.get() : plain.bitmap.get();
    Picture result(alphaCounts && FreeImage_IsTransparent(source) != FALSE ? FreeImage_ConvertTo32Bits(source)
                                                                           : FreeImage_ConvertTo24Bits(source));
    if (result.IsEmpty())
        return false;
    bitmap = std::move(result.bitmap);
    return true;
}

void Picture::SavePng(const std::filesystem::path& path) const
{
    if (IsEmpty() || FreeImage_Save(FIF_PNG, bitmap.get(), path.string().c_str(), PNG_Z_BEST_SPEED) == FALSE)
        throw std::system_error(std::make_error_code(std::errc::io_error), "cannot write " + path.string());
}

std::optional<PictureSize> ReadPictureHeader(const std::filesystem::path& path)
{
    const std::string name = path.string();
    const FREE_IMAGE_FORMAT format = FormatOf(name);
    if (format == FIF_UNKNOWN)
        return std::nullopt;
    if (FreeImage_FIFSupportsNoPixels(format) == FALSE)
        return MeasureBytes(format, name);
    const Picture header(FreeImage_Load(format, name.c_str(), FIF_LOAD_NOPIXELS));
    if (header.IsEmpty())
        return std::nullopt;
    return PictureSize{header.Width(), header.Height()};
}

Picture LoadPicture(const std::filesystem::path& path)
{
    const std::string name = path.string();
    const FREE_IMAGE_FORMAT format = FormatOf(name);
    return Picture(format == FIF_UNKNOWN ? nullptr : FreeImage_Load(format, name.c_str(), 0));
}

Picture PictureFromRgba(const std::vector<std::byte>& rgba, std::uint32_t width, std::uint32_t height)
{
    constexpr std::uint32_t Largest = std::numeric_limits<int>::max();
    if (width == 0 || height == 0 || width > Largest || height > Largest || rgba.size() / 4 / width < height)
        return {};
    FIBITMAP* bitmap = FreeImage_Allocate(static_cast<int>(width), static_cast<int>(height), 32);
    Picture picture(bitmap);
    const std::byte* source = rgba.data();
    for (std::uint32_t row = 0; bitmap != nullptr && row < height; ++row) {
        // The rows of a bitmap go upwards.
        BYTE* target = FreeImage_GetScanLine(bitmap, static_cast<int>(height - 1 - row));
        for (std::uint32_t x = 0; x < width; ++x, source += 4, target += 4) {
            target[FI_RGBA_RED] = std::to_integer<BYTE>(source[0]);
            target[FI_RGBA_GREEN] = std::to_integer<BYTE>(source[1]);
            target[FI_RGBA_BLUE] = std::to_integer<BYTE>(source[2]);
            target[FI_RGBA_ALPHA] = std::to_integer<BYTE>(source[3]);
        }
    }
    return picture;
}

std::string EndingOfPicture(const std::vector<std::byte>& bytes)
{
    // The interface takes bytes that can be changed, for memory that it writes; this one is read only.
    auto* data = const_cast<BYTE*>(reinterpret_cast<const BYTE*>(bytes.data()));
    const auto size = static_cast<DWORD>(std::min<std::size_t>(bytes.size(), std::numeric_limits<DWORD>::max()));
    FIMEMORY* memory = FreeImage_OpenMemory(data, size);
    const FREE_IMAGE_FORMAT format = FreeImage_GetFileTypeFromMemory(memory, 0);
    FreeImage_CloseMemory(memory);
    if (format == FIF_UNKNOWN)
        return {};
    const std::string_view endings = FreeImage_GetFIFExtensionList(format);
    return "." + std::string(endings.substr(0, endings.find(',')));
}

} // namespace Orvel::Import
