#include "tool/render/Renderer.h"

#include "tool/render/Floor.h"
#include "tool/render/PixelRays.h"
#include "tool/render/Tile.h"

#include <algorithm>
#include <optional>

namespace Orvel::Render
{

namespace
{

/// Large enough that the pixels around a tile, which are traced for it as well, hardly count; small enough for a cache.
constexpr std::uint32_t TileSide = 128;

} // namespace

Renderer::Renderer(const RenderScene& shownScene)
    : scene(shownScene)
    , space(shownScene)
    , tracer(shownScene, space)
    , surfaces(shownScene, space)
{}

Picture Renderer::Render(const Views::View& view, const PictureOptions& options) const
{
    Picture picture{options.width, options.height, {}};
    picture.pixels.resize(std::size_t{4} * options.width * options.height);
    const PixelRays rays(view, space, options.width, options.height);
    const Lighting lighting(Views::FrameOf(view), options.up, Tile::DirectionCount(options.samples));
    const Floor floor(scene, space, options.floor ? std::optional(options.up) : std::nullopt);
    Tile tile({tracer, surfaces, rays, lighting, floor, options});
    for (std::uint32_t top = 0; top < options.height; top += TileSide) {
        for (std::uint32_t left = 0; left < options.width; left += TileSide) {
            tile.Render({static_cast<std::int32_t>(left), static_cast<std::int32_t>(top),
                         static_cast<std::int32_t>(std::min(TileSide, options.width - left)),
                         static_cast<std::int32_t>(std::min(TileSide, options.height - top))},
                        picture);
        }
    }
    return picture;
}

} // namespace Orvel::Render
