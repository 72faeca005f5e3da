#pragma once

#include <cstdint>
#include <vector>

namespace Orvel::Render
{

/// The pixels of a finished picture.
struct Picture
{
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    /// Red, green, blue (sRGB, not multiplied by alpha) and alpha of each pixel, top row first: 4 x width x height.
    std::vector<std::uint8_t> pixels;
};

} // namespace Orvel::Render
