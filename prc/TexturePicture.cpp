#include "prc/TexturePicture.h"

#include "platform/image/FileStamp.h"
#include "platform/image/ImageFile.h"
#include "prc/COrvelPRCHandler.h"

#include <algorithm>
#include <list>
#include <optional>

namespace Orvel
{

namespace
{

/// The pictures loaded last. A scene asks for one picture as often as materials carry it, an animated one for every
/// frame. Bounded in number and bytes; a file that changed since is loaded again.
class PictureCache
{
public:
    struct Key
    {
        COrvelString fileName;
        FileStamp stamp;
        int limit = 0;

        bool operator==(const Key&) const = default;
    };

    const TexturePicture* Find(const Key& key)
    {
        const auto found =
            std::find_if(entries.begin(), entries.end(), [&](const Entry& entry) { return entry.key == key; });
        if (found == entries.end())
            return nullptr;
        entries.splice(entries.begin(), entries, found);
        return &found->picture;
    }

    void Add(Key key, const TexturePicture& picture)
    {
        entries.push_front({std::move(key), picture});
        std::size_t bytes = 0;
        std::size_t kept = 0;
        for (auto entry = entries.begin(); entry != entries.end(); ++kept) {
            bytes += std::size_t{entry->picture.width} * entry->picture.height * entry->picture.BytesPerPixel();
            entry = kept < MaximumPictures && bytes <= MaximumBytes ? std::next(entry) : entries.erase(entry);
        }
    }

private:
    struct Entry
    {
        Key key;
        TexturePicture picture;
    };

    static constexpr std::size_t MaximumPictures = 16;
    static constexpr std::size_t MaximumBytes = std::size_t{64} << 20;

    std::list<Entry> entries; ///< latest use first
};

PictureCache& Cache()
{
    static PictureCache cache;
    return cache;
}

Bitmap LoadBitmap(const COrvelString& fileName)
{
    FREE_IMAGE_FORMAT format = ImageFile::FormatOfContent(fileName);
    if (format == FIF_UNKNOWN)
        format = ImageFile::FormatOfName(fileName);
    if (format == FIF_UNKNOWN || !FreeImage_FIFSupportsReading(format))
        return nullptr;
    return ImageFile::Load(format, fileName);
}

/// Scales down until no side is larger than `limit`. The comparison is unsigned: a negative limit never scales. The
/// result is null where a side would become 0, which a limit of 0 always brings about.
Bitmap LimitSize(Bitmap bitmap, int limit)
{
    const unsigned width = FreeImage_GetWidth(bitmap.get());
    const unsigned height = FreeImage_GetHeight(bitmap.get());
    const auto unsignedLimit = static_cast<unsigned>(limit);
    if (width <= unsignedLimit && height <= unsignedLimit)
        return bitmap;
    // With a limit of 0 the scale is infinite and both sides become 0.
    const double scale = static_cast<double>(std::max(width, height)) / static_cast<double>(limit);
    const auto newWidth = static_cast<int>(static_cast<double>(width) / scale);
    const auto newHeight = static_cast<int>(static_cast<double>(height) / scale);
    return Bitmap(FreeImage_Rescale(bitmap.get(), newWidth, newHeight, FILTER_BILINEAR));
}

/// Copies the rows in FreeImage's order, bottom row first, from blue-green-red to red-green-blue.
TexturePicture CopyPixels(FIBITMAP* bitmap, uint32 bytesPerPixel)
{
    TexturePicture picture;
    picture.format = bytesPerPixel == 4 ? 3 : 2;
    // FreeImage answers 0 for a null bitmap.
    picture.width = FreeImage_GetWidth(bitmap);
    picture.height = FreeImage_GetHeight(bitmap);
    const auto pixels =
        std::make_shared_for_overwrite<std::uint8_t[]>(std::size_t{picture.width} * picture.height * bytesPerPixel);
    std::uint8_t* to = pixels.get();
    for (uint32 y = 0; y < picture.height; ++y) {
        const BYTE* from = FreeImage_GetScanLine(bitmap, static_cast<int>(y));
        for (uint32 x = 0; x < picture.width; ++x, from += bytesPerPixel, to += bytesPerPixel) {
            to[0] = from[2];
            to[1] = from[1];
            to[2] = from[0];
            if (bytesPerPixel == 4)
                to[3] = from[3];
        }
    }
    picture.pixels = pixels;
    return picture;
}

std::optional<TexturePicture> DecodePicture(const COrvelString& fileName, int limit)
{
    Bitmap loaded = LoadBitmap(fileName);
    if (!loaded)
        return std::nullopt;
    const bool transparent = FreeImage_IsTransparent(loaded.get()) != FALSE;
    Bitmap converted(transparent ? FreeImage_ConvertTo32Bits(loaded.get()) : FreeImage_ConvertTo24Bits(loaded.get()));
    loaded.reset();
    if (!converted)
        return std::nullopt;
    const Bitmap scaled = LimitSize(std::move(converted), limit);
    return CopyPixels(scaled.get(), transparent ? 4 : 3);
}

} // namespace

bool LoadTexturePicture(const COrvelPRCHandler& converter, const COrvelString& fileName, TexturePicture& picture)
{
    const int limit = converter.maximumTextureSize;
    const std::optional<FileStamp> stamp = StampOfFile(fileName);
    if (!stamp)
        return true;
    PictureCache::Key key{fileName, *stamp, limit};
    if (const TexturePicture* cached = Cache().Find(key)) {
        picture = *cached;
        return true;
    }
    if (const std::optional<TexturePicture> decoded = DecodePicture(fileName, limit)) {
        picture = *decoded;
        Cache().Add(std::move(key), picture);
    }
    return true;
}

} // namespace Orvel
