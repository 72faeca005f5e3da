#pragma once

#include <FreeImage.h>

#include <cstdint>
#include <memory>
#include <span>

namespace Orvel
{

class COrvelString;

/// Owns a FreeImage bitmap.
struct BitmapDeleter
{
    void operator()(FIBITMAP* bitmap) const { FreeImage_Unload(bitmap); }
};
using Bitmap = std::unique_ptr<FIBITMAP, BitmapDeleter>;

/// FreeImage by file name, in any script. Its wide-character functions are stubs outside Windows: there the narrow ones
/// are called with UTF-8.
namespace ImageFile
{

/// The format that the file's content shows, FIF_UNKNOWN when none or when the file cannot be opened.
[[nodiscard]] FREE_IMAGE_FORMAT FormatOfContent(const COrvelString& fileName);
/// The format that the file's name stands for, FIF_UNKNOWN when none.
[[nodiscard]] FREE_IMAGE_FORMAT FormatOfName(const COrvelString& fileName);
/// @return the picture, null when it cannot be loaded.
[[nodiscard]] Bitmap Load(FREE_IMAGE_FORMAT format, const COrvelString& fileName);
/// @param file the bytes of a picture file.
/// @return the picture, null when it cannot be decoded.
[[nodiscard]] Bitmap Decode(FREE_IMAGE_FORMAT format, std::span<const std::uint8_t> file);

} // namespace ImageFile

} // namespace Orvel
