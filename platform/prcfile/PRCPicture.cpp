#include "platform/prcfile/PRCPicture.h"

#include "platform/prcfile/Decompression.h"
#include "platform/prcfile/PngDecoder.h"

#include <algorithm>
#include <array>
#include <optional>

namespace prc::Model
{

namespace
{

using Bytes = std::span<const std::uint8_t>;

std::uint32_t bigEndian(Bytes bytes, std::size_t at, std::size_t count)
{
    std::uint32_t number = 0;
    for (std::size_t byte = 0; byte < count; ++byte)
        number = number << 8 | bytes[at + byte];
    return number;
}

std::optional<PictureSize> pngSize(Bytes file)
{
    constexpr std::array<std::uint8_t, 8> pngSignature = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
    constexpr std::size_t widthAt = 16;
    if (file.size() < widthAt + 8 || !std::ranges::equal(file.first(pngSignature.size()), pngSignature))
        return std::nullopt;
    return PictureSize{bigEndian(file, widthAt, 4), bigEndian(file, widthAt + 4, 4)};
}

/// Walks the segments of a JPEG file to the one that begins a frame.
std::optional<PictureSize> jpegSize(Bytes file)
{
    std::size_t at = 2; // behind the mark of the file
    while (at + 9 <= file.size() && file[0] == 0xFF && file[at] == 0xFF) {
        const unsigned mark = file[at + 1];
        const bool beginsFrame = mark >= 0xC0 && mark <= 0xCF && mark != 0xC4 && mark != 0xC8 && mark != 0xCC;
        if (beginsFrame)
            return PictureSize{bigEndian(file, at + 7, 2), bigEndian(file, at + 5, 2)};
        at += mark == 0xFF ? 1 : 2 + bigEndian(file, at + 2, 2);
    }
    return std::nullopt;
}

std::uint32_t componentsOf(PictureFormat format)
{
    switch (format) {
    case PictureFormat::Rgb:
        return 3;
    case PictureFormat::Rgba:
        return 4;
    case PictureFormat::Grey:
        return 1;
    case PictureFormat::GreyAlpha:
        return 2;
    default:
        return 0;
    }
}

DecodedPicture failure(const char* error)
{
    DecodedPicture picture;
    picture.error = error;
    return picture;
}

/// Rows of pixels, which some producers compress and others do not.
DecodedPicture decodeRows(const Picture& picture, Bytes bytes, std::uint64_t limit)
{
    DecodedPicture decoded;
    decoded.components = componentsOf(picture.format);
    if (decoded.components == 0)
        return failure("pictures of this format are not decoded");
    decoded.size = {picture.width, picture.height};
    const std::uint64_t area = std::uint64_t{picture.width} * picture.height;
    if (area == 0)
        return failure("the picture states no size");
    if (area > limit / decoded.components)
        return failure("the picture exceeds the limit for its size");
    const std::uint64_t size = area * decoded.components;
    if (bytes.size() >= size) {
        decoded.pixels.assign(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(size));
        return decoded;
    }
    const UnpackedStream stream = unpackStream(bytes, bytes.size(), size);
    if (stream.result != UnpackingResult::Done || stream.unpackedBytes < size)
        return failure("the rows of the picture are damaged or too short");
    decoded.pixels.assign(stream.view().begin(), stream.view().begin() + static_cast<std::ptrdiff_t>(size));
    return decoded;
}

} // namespace

std::span<const std::uint8_t> storedBytes(const FileStructure& structure, std::uint32_t picture)
{
    if (picture >= structure.globals.pictures.size())
        return {};
    const std::uint32_t file = structure.globals.pictures[picture].file;
    if (file >= structure.storedFiles.size())
        return {};
    return structure.storedFiles[file];
}

PictureSize sizeOf(const FileStructure& structure, std::uint32_t picture)
{
    if (picture >= structure.globals.pictures.size())
        return {};
    const Picture& stored = structure.globals.pictures[picture];
    const Bytes bytes = storedBytes(structure, picture);
    std::optional<PictureSize> inside;
    if (stored.format == PictureFormat::Png)
        inside = pngSize(bytes);
    else if (stored.format == PictureFormat::Jpeg && !bytes.empty())
        inside = jpegSize(bytes);
    return inside.value_or(PictureSize{stored.width, stored.height});
}

DecodedPicture decodePicture(const FileStructure& structure, std::uint32_t picture, std::uint64_t limitInBytes)
{
    const Bytes bytes = storedBytes(structure, picture);
    if (bytes.empty())
        return failure("the picture names no stored file");
    const Picture& stored = structure.globals.pictures[picture];
    if (stored.format == PictureFormat::Jpeg)
        return failure("JPEG pictures are handed out as they are stored");
    if (stored.format == PictureFormat::Png)
        return decodePng(bytes, limitInBytes);
    return decodeRows(stored, bytes, limitInBytes);
}

} // namespace prc::Model
