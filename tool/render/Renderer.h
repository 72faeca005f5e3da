#pragma once

#include "tool/render/Picture.h"
#include "tool/render/RayTracer.h"
#include "tool/render/RenderScene.h"
#include "tool/render/SceneSpace.h"
#include "tool/render/Surface.h"
#include "tool/views/View.h"

#include <Eigen/Core>

#include <array>
#include <cstdint>
#include <optional>

namespace Orvel::Render
{

/// The longest side of a picture, in pixels.
inline constexpr std::uint32_t LargestSide = 16384;

struct PictureOptions
{
    std::uint32_t width = 1600; ///< pixels, 1 to LargestSide
    std::uint32_t height = 1200;
    std::optional<std::array<std::uint8_t, 3>> background =
        std::array<std::uint8_t, 3>{255, 255, 255}; ///< sRGB;
                                                    ///< nothing: transparent
    Eigen::Vector3d up{0.0, 0.0, 1.0};              ///< unit length: where the sky is
    bool floor = false;                             ///< the scene casts a soft shadow on an invisible floor below it
    std::uint32_t samples = 8; ///< rays through a pixel along edges, 1 to 64; with them the light's rays
};

/// Takes pictures of one scene. Equal scenes, views and options give equal bytes.
class Renderer
{
public:
    /// Prepares the scene, which takes as long as some pictures.
    ///
    /// @param shownScene not owned, must outlive this object and stay as it is.
    /// @throws std::runtime_error when the ray tracing library fails; std::bad_alloc.
    explicit Renderer(const RenderScene& shownScene);

    /// An empty scene gives a picture of the background.
    ///
    /// @throws std::bad_alloc
    [[nodiscard]] Picture Render(const Views::View& view, const PictureOptions& options) const;

private:
    const RenderScene& scene;
    SceneSpace space;
    RayTracer tracer;
    SurfaceFinder surfaces;
};

} // namespace Orvel::Render
