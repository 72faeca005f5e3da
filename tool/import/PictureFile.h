#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

struct FIBITMAP;

namespace Orvel::Import
{

/// Size of a picture as its file's header says.
struct PictureSize
{
    std::uint32_t width = 0;
    std::uint32_t height = 0;
};

/// A decoded picture, or none.
class Picture
{
public:
    Picture() = default;
    /// @param owned null: no picture. Owned from now on.
    explicit Picture(FIBITMAP* owned);

    [[nodiscard]] bool IsEmpty() const { return bitmap == nullptr; }
    [[nodiscard]] std::uint32_t Width() const;
    [[nodiscard]] std::uint32_t Height() const;

    /// Some pixel is not opaque.
    [[nodiscard]] bool IsTransparent() const;

    /// A number that pictures of equal size, kind and pixels share, and practically no others.
    [[nodiscard]] std::size_t Fingerprint() const;

    /// The exporter can convert it: whole numbers of 8 bits a channel or less, or 16 bits in colour.
    [[nodiscard]] bool IsPlain() const;

    /// Brings the picture to 24 bits a pixel, or to 32 when it is transparent and `alphaCounts`. Light that is measured
    /// beyond the range of a screen (HDR) is compressed into it.
    /// @return false when there is no conversion; the picture stays as it was.
    [[nodiscard]] bool MakePlain(bool alphaCounts);

    /// @throws std::system_error when the file cannot be written.
    void SavePng(const std::filesystem::path& path) const;

private:
    struct Unload
    {
        void operator()(FIBITMAP* bitmap) const;
    };

    std::unique_ptr<FIBITMAP, Unload> bitmap;
};

/// @return nothing when no known format can be made of the file. Formats that show their size only when decoded are
///         measured in their bytes; those without a check count as 0 x 0.
[[nodiscard]] std::optional<PictureSize> ReadPictureHeader(const std::filesystem::path& path);

/// @return an empty picture when it cannot be decoded.
[[nodiscard]] Picture LoadPicture(const std::filesystem::path& path);

/// @param rgba 4 bytes per pixel, top row first, 4 * width * height of them; fewer give an empty picture.
[[nodiscard]] Picture PictureFromRgba(const std::vector<std::byte>& rgba, std::uint32_t width, std::uint32_t height);

/// ".png", ...: what a file with these bytes is to be called; empty when the bytes do not tell.
[[nodiscard]] std::string EndingOfPicture(const std::vector<std::byte>& bytes);

} // namespace Orvel::Import
