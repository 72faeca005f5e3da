#pragma once

#include "tool/render/SceneSpace.h"
#include "tool/render/Surface.h"
#include "tool/views/View.h"

#include <cstdint>

namespace Orvel::Render
{

/// The rays from a view's camera through the pixels of a picture, in scene space.
class PixelRays
{
public:
    PixelRays(const Views::View& view, const SceneSpace& space, std::uint32_t width, std::uint32_t height);

    /// @param x and y in pixels from the upper left corner: 0.5 is the middle of the first one.
    [[nodiscard]] PixelRay Through(float x, float y) const;

    /// The size of a pixel on a plane across the line of sight.
    ///
    /// @param distance in lengths of the ray's direction.
    [[nodiscard]] float PixelSize(float distance) const;

private:
    Ray corner; ///< through the upper left corner of the picture
    Ray alongX;
    Ray alongY;
};

} // namespace Orvel::Render
