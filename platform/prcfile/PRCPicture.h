#pragma once

#include "platform/prcfile/Export.h"
#include "platform/prcfile/PRCModel.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace prc::Model
{

/// Width and height of a picture in pixels; 0 x 0 when they are not known.
struct PictureSize
{
    std::uint32_t width = 0;
    std::uint32_t height = 0;
};

/// The pixels of a picture, top row first, pixels from left to right, a byte a component.
struct DecodedPicture
{
    PictureSize size;
    std::uint32_t components = 0;     ///< 1 grey, 2 grey and alpha, 3 RGB, 4 RGBA.
    std::vector<std::uint8_t> pixels; ///< width x height x components bytes; empty when `error` is not.
    std::string error;                ///< why there are no pixels.
};

/// The bytes of a picture as they are stored: a PNG or JPEG file, or rows of pixels.
///
/// @param picture position in the globals of `structure`.
/// @return part of `structure`; empty when the picture names no stored file.
[[nodiscard]] PRCFILE_API std::span<const std::uint8_t> storedBytes(const FileStructure& structure,
                                                                    std::uint32_t picture);

/// The size that a PNG or JPEG file states inside, else the one that the picture states.
[[nodiscard]] PRCFILE_API PictureSize sizeOf(const FileStructure& structure, std::uint32_t picture);

/// Decodes a PNG file or rows of pixels. JPEG files are not decoded: storedBytes() hands them out as they are.
///
/// @param limitInBytes of the pixels; a picture that exceeds it is not decoded.
/// @throws std::bad_alloc
[[nodiscard]] PRCFILE_API DecodedPicture decodePicture(const FileStructure& structure, std::uint32_t picture,
                                                       std::uint64_t limitInBytes = std::uint64_t{1} << 30);

} // namespace prc::Model
