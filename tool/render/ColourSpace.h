#pragma once

#include <array>
#include <cstdint>

namespace Orvel::Render
{

/// Transfer functions of IEC 61966-2-1 (sRGB).
[[nodiscard]] float LinearFromSrgb(float encoded);
[[nodiscard]] const std::array<float, 256>& LinearFromSrgbBytes();
/// @param linear clamped to 0 to 1; what is no number counts as 0.
[[nodiscard]] std::uint8_t SrgbByteFromLinear(float linear);

} // namespace Orvel::Render
