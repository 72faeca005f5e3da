#include "platform/prcfile/PictureStore.h"

#include "platform/prcfile/PngEncoder.h"

#include <algorithm>
#include <xxhash.h>

namespace prc
{

std::size_t bytesPerPixel(PRCpictureFormat format)
{
    return format == PRCpictureFormat::Rgba ? 4 : 3;
}

std::uint32_t PictureStore::add(PRCpictureFormat format, std::uint32_t width, std::uint32_t height,
                                std::span<const std::uint8_t> pixels)
{
    const std::uint64_t hash = XXH3_64bits(pixels.data(), pixels.size());
    const auto [first, last] = numberByHash.equal_range(hash);
    for (auto candidate = first; candidate != last; ++candidate) {
        const Picture& picture = stored[candidate->second];
        if (picture.format == format && picture.width == width && picture.height == height &&
            std::equal(pixels.begin(), pixels.end(), picture.pixels.begin()))
            return candidate->second;
    }
    const auto number = static_cast<std::uint32_t>(stored.size());
    stored.push_back({format, width, height, {pixels.begin(), pixels.end()}});
    numberByHash.emplace(hash, number);
    return number;
}

std::vector<std::vector<std::uint8_t>> PictureStore::encode()
{
    numberByHash.clear();
    std::vector<std::vector<std::uint8_t>> files;
    files.reserve(stored.size());
    for (Picture& picture : stored) {
        files.push_back(encodePng(picture));
        std::vector<std::uint8_t>().swap(picture.pixels);
    }
    return files;
}

} // namespace prc
