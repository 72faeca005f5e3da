#pragma once

#include <Eigen/Core>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace Orvel::Render
{

/// What lies beyond the edges of a picture.
enum class Wrap
{
    Repeat,
    Mirror,
    Clamp
};

/// A place in a texture and how much of the texture a pixel of the result covers there. u runs from the left edge of
/// the picture (0) to the right (1), v from the bottom to the top.
struct TextureFootprint
{
    Eigen::Vector2f uv{0.0F, 0.0F};
    Eigen::Vector2f alongX{0.0F, 0.0F}; ///< how uv changes to the next pixel of the result
    Eigen::Vector2f alongY{0.0F, 0.0F}; ///< how uv changes to the next row
};

/// A picture on surfaces, filtered in linear light. Colours count by their opacity, so that what invisible pixels hold
/// never shows.
class Texture
{
public:
    /// @param rgba sRGB and alpha, top row first, 4 x width x height bytes; neither side is 0.
    Texture(std::uint32_t width, std::uint32_t height, std::vector<std::uint8_t> rgba);

    /// @return linear red, green and blue, not multiplied by alpha, and alpha. Any footprint gives some colour.
    [[nodiscard]] Eigen::Vector4f Sample(const TextureFootprint& footprint, Wrap wrapU, Wrap wrapV) const;

    [[nodiscard]] bool IsOpaque() const { return isOpaque; }

private:
    struct Level
    {
        std::int32_t width;
        std::int32_t height;
        std::vector<std::uint8_t> pixels;
    };

    struct Wraps
    {
        Wrap u;
        Wrap v;
    };

    [[nodiscard]] static Level HalfOf(const Level& level);
    [[nodiscard]] static Eigen::Vector4f Bilinear(const Level& level, const Eigen::Vector2f& uv, Wraps wraps);
    [[nodiscard]] Eigen::Vector4f Trilinear(float level, const Eigen::Vector2f& uv, Wraps wraps) const;

    std::vector<Level> levels; ///< each half as large as the one before, down to one pixel
    bool isOpaque = true;
};

} // namespace Orvel::Render
