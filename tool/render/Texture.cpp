#include "tool/render/Texture.h"

#include "tool/render/ColourSpace.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace Orvel::Render
{

namespace
{

using Eigen::Vector2f;
using Eigen::Vector4f;

/// Samples along the longer axis of a footprint; beyond, it is blurred instead.
constexpr float LargestAnisotropy = 8.0F;

/// A little less blur than the footprint's size asks for: edges are sampled several times.
constexpr float LevelBias = -0.25F;

/// @return linear light multiplied by alpha, and alpha.
Vector4f Premultiplied(const std::uint8_t* pixel)
{
    const std::array<float, 256>& linear = LinearFromSrgbBytes();
    const float alpha = static_cast<float>(pixel[3]) * (1.0F / 255.0F);
    return {linear[pixel[0]] * alpha, linear[pixel[1]] * alpha, linear[pixel[2]] * alpha, alpha};
}

Vector4f Straight(const Vector4f& premultiplied)
{
    const float alpha = premultiplied[3];
    if (!(alpha > 0.0F))
        return Vector4f::Zero();
    const Eigen::Vector3f colour = premultiplied.head<3>() / alpha;
    return {colour[0], colour[1], colour[2], std::min(alpha, 1.0F)};
}

std::int32_t Wrapped(std::int32_t at, std::int32_t size, Wrap wrap)
{
    if (wrap == Wrap::Clamp)
        return std::clamp(at, 0, size - 1);
    const std::int32_t period = wrap == Wrap::Mirror ? 2 * size : size;
    std::int32_t rest = at % period;
    if (rest < 0)
        rest += period;
    return rest < size ? rest : period - 1 - rest;
}

/// Into a range where the steps of a float are finer than a pixel, at the same place of the picture.
float Reduced(float coordinate, Wrap wrap)
{
    if (!std::isfinite(coordinate))
        return 0.0F;
    if (wrap == Wrap::Clamp)
        return std::clamp(coordinate, -1.0F, 2.0F);
    const float period = wrap == Wrap::Mirror ? 2.0F : 1.0F;
    return coordinate - period * std::floor(coordinate / period);
}

} // namespace

Texture::Texture(std::uint32_t width, std::uint32_t height, std::vector<std::uint8_t> rgba)
{
    levels.push_back({static_cast<std::int32_t>(width), static_cast<std::int32_t>(height), std::move(rgba)});
    const std::vector<std::uint8_t>& pixels = levels.front().pixels;
    for (std::size_t alpha = 3; alpha < pixels.size() && isOpaque; alpha += 4)
        isOpaque = pixels[alpha] == 255;
    while (levels.back().width > 1 || levels.back().height > 1)
        levels.push_back(HalfOf(levels.back()));
}

Texture::Level Texture::HalfOf(const Level& level)
{
    Level half{std::max(level.width / 2, 1), std::max(level.height / 2, 1), {}};
    half.pixels.resize(std::size_t{4} * static_cast<std::size_t>(half.width) * static_cast<std::size_t>(half.height));
    std::uint8_t* out = half.pixels.data();
    const auto pixelAt = [&](std::int32_t x, std::int32_t y) {
        return level.pixels.data() + std::size_t{4} * (static_cast<std::size_t>(std::min(y, level.height - 1)) *
                                                           static_cast<std::size_t>(level.width) +
                                                       static_cast<std::size_t>(std::min(x, level.width - 1)));
    };
    for (std::int32_t y = 0; y < half.height; ++y) {
        for (std::int32_t x = 0; x < half.width; ++x, out += 4) {
            Vector4f sum = Premultiplied(pixelAt(2 * x, 2 * y)) + Premultiplied(pixelAt(2 * x + 1, 2 * y));
            sum += Premultiplied(pixelAt(2 * x, 2 * y + 1)) + Premultiplied(pixelAt(2 * x + 1, 2 * y + 1));
            const Vector4f mean = Straight(sum / 4.0F);
            for (int channel = 0; channel < 3; ++channel)
                out[channel] = SrgbByteFromLinear(mean[channel]);
            out[3] = static_cast<std::uint8_t>(std::lround(mean[3] * 255.0F));
        }
    }
    return half;
}

Vector4f Texture::Bilinear(const Level& level, const Vector2f& uv, Wraps wraps)
{
    const float x = uv[0] * static_cast<float>(level.width) - 0.5F;
    const float y = (1.0F - uv[1]) * static_cast<float>(level.height) - 0.5F;
    const float left = std::floor(x);
    const float top = std::floor(y);
    const float rightShare = x - left;
    const float bottomShare = y - top;
    const auto column = static_cast<std::int32_t>(left);
    const auto row = static_cast<std::int32_t>(top);
    const std::array<std::int32_t, 2> columns{Wrapped(column, level.width, wraps.u),
                                              Wrapped(column + 1, level.width, wraps.u)};
    const std::array<std::int32_t, 2> rows{Wrapped(row, level.height, wraps.v),
                                           Wrapped(row + 1, level.height, wraps.v)};
    const auto at = [&](std::size_t right, std::size_t bottom) {
        const auto pixel = static_cast<std::size_t>(rows[bottom]) * static_cast<std::size_t>(level.width) +
                           static_cast<std::size_t>(columns[right]);
        return Premultiplied(level.pixels.data() + 4 * pixel);
    };
    const Vector4f upper = (1.0F - rightShare) * at(0, 0) + rightShare * at(1, 0);
    const Vector4f lower = (1.0F - rightShare) * at(0, 1) + rightShare * at(1, 1);
    return (1.0F - bottomShare) * upper + bottomShare * lower;
}

Vector4f Texture::Trilinear(float level, const Vector2f& uv, Wraps wraps) const
{
    const auto last = static_cast<float>(levels.size() - 1);
    const float clamped = std::clamp(level, 0.0F, last);
    const auto finer = static_cast<std::size_t>(clamped);
    const float share = clamped - static_cast<float>(finer);
    Vector4f fine = Bilinear(levels[finer], uv, wraps);
    if (share <= 0.0F)
        return fine;
    return (1.0F - share) * fine + share * Bilinear(levels[finer + 1], uv, wraps);
}

Vector4f Texture::Sample(const TextureFootprint& footprint, Wrap wrapU, Wrap wrapV) const
{
    const Wraps wraps{wrapU, wrapV};
    const Eigen::Array2f size(static_cast<float>(levels.front().width), static_cast<float>(levels.front().height));
    float longer = (footprint.alongX.array() * size).matrix().norm();
    float shorter = (footprint.alongY.array() * size).matrix().norm();
    Vector2f axis = footprint.alongX;
    if (shorter > longer) {
        std::swap(longer, shorter);
        axis = footprint.alongY;
    }
    const Vector2f uv(Reduced(footprint.uv[0], wrapU), Reduced(footprint.uv[1], wrapV));
    if (!(longer > 1.0F) || !std::isfinite(longer)) {
        const float level = std::isfinite(longer) ? 0.0F : static_cast<float>(levels.size());
        return Straight(Trilinear(level, uv, wraps));
    }
    const float count = std::clamp(std::ceil(longer / std::max(shorter, 1e-6F)), 1.0F, LargestAnisotropy);
    const float level = std::log2(std::max(longer / count, 1.0F)) + LevelBias;
    Vector4f sum = Vector4f::Zero();
    for (int k = 0; k < static_cast<int>(count); ++k) {
        const Vector2f at = uv + ((static_cast<float>(k) + 0.5F) / count - 0.5F) * axis;
        sum += Trilinear(level, {Reduced(at[0], wrapU), Reduced(at[1], wrapV)}, wraps);
    }
    return Straight(sum / count);
}

} // namespace Orvel::Render
