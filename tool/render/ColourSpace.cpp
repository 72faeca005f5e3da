#include "tool/render/ColourSpace.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace Orvel::Render
{

namespace
{

constexpr std::size_t TableSize = 4096;

/// The byte for the lower end of each of equal steps. The curve is too steep for that near black, where the step of a
/// byte (1 / 3295) comes close to that of the table: the search goes on from here.
std::vector<std::uint8_t> MakeByteTable()
{
    std::vector<std::uint8_t> table(TableSize + 1);
    for (std::size_t i = 0; i <= TableSize; ++i) {
        const double linear = static_cast<double>(i) / TableSize;
        const double encoded = linear <= 0.0031308 ? 12.92 * linear : 1.055 * std::pow(linear, 1.0 / 2.4) - 0.055;
        table[i] = static_cast<std::uint8_t>(std::lround(encoded * 255.0));
    }
    return table;
}

/// The linear values half-way between two bytes.
std::array<float, 256> MakeLimits()
{
    std::array<float, 256> limits{};
    for (std::size_t i = 0; i < limits.size(); ++i)
        limits[i] = LinearFromSrgb((static_cast<float>(i) + 0.5F) / 255.0F);
    return limits;
}

} // namespace

float LinearFromSrgb(float encoded)
{
    const double value = std::clamp(static_cast<double>(encoded), 0.0, 1.0);
    return static_cast<float>(value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4));
}

const std::array<float, 256>& LinearFromSrgbBytes()
{
    static const std::array<float, 256> table = [] {
        std::array<float, 256> values{};
        for (std::size_t i = 0; i < values.size(); ++i)
            values[i] = LinearFromSrgb(static_cast<float>(i) / 255.0F);
        return values;
    }();
    return table;
}

std::uint8_t SrgbByteFromLinear(float linear)
{
    static const std::vector<std::uint8_t> table = MakeByteTable();
    static const std::array<float, 256> limits = MakeLimits();
    if (!(linear > 0.0F))
        return 0;
    if (linear >= 1.0F)
        return 255;
    std::uint8_t byte = table[static_cast<std::size_t>(linear * TableSize)];
    while (byte < 255 && linear >= limits[byte])
        ++byte;
    while (byte > 0 && linear < limits[byte - 1U])
        --byte;
    return byte;
}

} // namespace Orvel::Render
