#include "tool/cli/PicturePng.h"

#include "platform/prcfile/PngEncoder.h"

namespace Orvel::Cli
{

namespace
{

bool IsOpaque(const std::vector<std::uint8_t>& rgba)
{
    for (std::size_t alpha = 3; alpha < rgba.size(); alpha += 4) {
        if (rgba[alpha] != 255)
            return false;
    }
    return true;
}

} // namespace

std::vector<std::uint8_t> EncodePng(const Render::Picture& picture)
{
    const bool isOpaque = IsOpaque(picture.pixels);
    prc::Picture upsideDown;
    upsideDown.format = isOpaque ? prc::PRCpictureFormat::Rgb : prc::PRCpictureFormat::Rgba;
    upsideDown.width = picture.width;
    upsideDown.height = picture.height;
    const std::size_t channels = isOpaque ? 3 : 4;
    upsideDown.pixels.resize(channels * picture.width * picture.height);
    std::uint8_t* out = upsideDown.pixels.data();
    for (std::size_t row = picture.height; row-- > 0;) {
        const std::uint8_t* pixel = picture.pixels.data() + 4 * row * picture.width;
        for (std::uint32_t column = 0; column < picture.width; ++column, pixel += 4) {
            for (std::size_t channel = 0; channel < channels; ++channel)
                *out++ = pixel[channel];
        }
    }
    return prc::encodePng(upsideDown);
}

} // namespace Orvel::Cli
