#pragma once

#include "platform/prcfile/PRCmaterial.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <unordered_map>
#include <vector>

namespace prc
{

/// The pixels of a picture and what they mean; rows from the bottom up, without padding.
struct Picture
{
    PRCpictureFormat format = PRCpictureFormat::Rgb;
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::vector<std::uint8_t> pixels;
};

/// The number of bytes of a pixel.
[[nodiscard]] std::size_t bytesPerPixel(PRCpictureFormat format);

/// The pictures of a file, each once however often it is added.
class PictureStore
{
public:
    /// Copies the pixels unless the store has them already.
    ///
    /// @param pixels width x height x bytes of a pixel.
    /// @return the number of the picture: 0, 1, 2 ...
    std::uint32_t add(PRCpictureFormat format, std::uint32_t width, std::uint32_t height,
                      std::span<const std::uint8_t> pixels);

    [[nodiscard]] const std::vector<Picture>& pictures() const { return stored; }

    /// Encodes every picture as a PNG file and forgets its pixels; sizes and formats stay.
    [[nodiscard]] std::vector<std::vector<std::uint8_t>> encode();

private:
    std::vector<Picture> stored;
    std::unordered_multimap<std::uint64_t, std::uint32_t> numberByHash;
};

} // namespace prc
