#pragma once

#include "tool/render/Floor.h"
#include "tool/render/Lighting.h"
#include "tool/render/Picture.h"
#include "tool/render/PixelRays.h"
#include "tool/render/RayTracer.h"
#include "tool/render/Surface.h"

#include <Eigen/Core>

#include <cstdint>
#include <vector>

namespace Orvel::Render
{

struct PictureOptions;

/// What a picture is made with; nothing owned.
struct Studio
{
    const RayTracer& tracer;
    const SurfaceFinder& surfaces;
    const PixelRays& rays;
    const Lighting& lighting;
    const Floor& floor;
    const PictureOptions& options;
};

/// A rectangle of a picture, in pixels.
struct TileArea
{
    std::int32_t left;
    std::int32_t top;
    std::int32_t width;
    std::int32_t height;
};

/// Makes a picture in rectangles, one after the other; their borders do not show.
///
/// 1. One ray goes through the middle of each pixel to the first opaque surface; transparent ones on its way are
/// shaded.
/// 2. From that surface a few rays look for light, each pixel of a block of 4 x 4 in other directions. The mean over a
///    block's pixels that lie on one smooth surface is as good as all directions.
/// 3. Pixels that differ from their neighbours, for another reason than a picture on the surface, are sampled again by
///    several rays, which take over the light of the pixels around them where they can.
class Tile
{
public:
    explicit Tile(const Studio& usedStudio)
        : studio(usedStudio)
    {}

    /// How many directions there are to look for light, see Lighting.
    [[nodiscard]] static std::uint32_t DirectionCount(std::uint32_t samples);

    void Render(const TileArea& rectangle, Picture& picture);

private:
    /// What one ray has met.
    struct Fragment
    {
        [[nodiscard]] bool ReceivesLight() const { return hasSurface || isFloor; }

        Eigen::Vector3f frontLight; ///< from transparent surfaces, which let `passed` of the rest through
        float passed;
        std::uint32_t frontKey; ///< tells the sequences of transparent surfaces apart; 0: there are none
        bool hasSurface;        ///< an opaque one behind them
        bool isFloor;           ///< the floor behind them; without either of the two, what follows has no meaning
        Surface surface;        ///< of the floor only its place and normals
        RayHit hit;             ///< not of the floor
        Eigen::Vector3f toViewer;
        float pixelSize; ///< at the surface
        Visibility visibility;
    };

    /// @param fragment replaced, all but its visibility.
    void Trace(float x, float y, float share, Fragment& fragment) const;
    void MeetFloor(const Ray& ray, Fragment& fragment) const;
    [[nodiscard]] Visibility LookForLight(const Fragment& fragment, const DirectionSet& directions) const;
    [[nodiscard]] Eigen::Vector4f ColourOf(const Fragment& fragment, const Visibility& visibility) const;
    [[nodiscard]] Visibility Smoothed(std::int32_t x, std::int32_t y) const;
    [[nodiscard]] Visibility VisibilityNear(float x, float y, const Fragment& fragment) const;
    [[nodiscard]] bool IsEdge(std::int32_t x, std::int32_t y) const;
    [[nodiscard]] Eigen::Vector4f Supersampled(std::int32_t x, std::int32_t y) const;

    void TraceFragments();
    void ShadeFragments();

    /// @param x and y of the picture, at most Border pixels outside the tile.
    [[nodiscard]] std::size_t At(std::int32_t x, std::int32_t y) const
    {
        return static_cast<std::size_t>(y - area.top + Border) * stride +
               static_cast<std::size_t>(x - area.left + Border);
    }

    /// Pixels around the tile that are traced for its sake: shaded neighbours of each pixel, and for each of those the
    /// block of 4 x 4 around it.
    static constexpr std::int32_t Border = 3;

    Studio studio;
    TileArea area{};
    std::size_t stride = 0;
    std::vector<Fragment> fragments;
    std::vector<Visibility> smoothed;     ///< of the tile and a border of one pixel; elsewhere undefined
    std::vector<Eigen::Vector4f> colours; ///< linear, multiplied by alpha, and alpha; as `smoothed`
};

} // namespace Orvel::Render
