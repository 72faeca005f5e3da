#pragma once

#include <cstdint>

namespace Orvel::Render
{

/// The binary digits of a number mirrored at the point: 0 to below 1, evenly spread at any count (van der Corput).
[[nodiscard]] inline float RadicalInverse(std::uint32_t number)
{
    number = (number << 16U) | (number >> 16U);
    number = ((number & 0x00FF00FFU) << 8U) | ((number & 0xFF00FF00U) >> 8U);
    number = ((number & 0x0F0F0F0FU) << 4U) | ((number & 0xF0F0F0F0U) >> 4U);
    number = ((number & 0x33333333U) << 2U) | ((number & 0xCCCCCCCCU) >> 2U);
    number = ((number & 0x55555555U) << 1U) | ((number & 0xAAAAAAAAU) >> 1U);
    return static_cast<float>(number >> 8U) * 0x1p-24F;
}

} // namespace Orvel::Render
