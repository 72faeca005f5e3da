#include "tool/render/Tile.h"

#include "tool/render/ColourSpace.h"
#include "tool/render/RadicalInverse.h"
#include "tool/render/Renderer.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

namespace Orvel::Render
{

namespace
{

using Eigen::Vector3f;
using Eigen::Vector4f;

/// A ray passes no more transparent surfaces than this.
constexpr int MostLayers = 64;

/// Surfaces that let less light through are opaque.
constexpr float LeastPassed = 1.0F / 512.0F;

/// Differences of the square roots of light, which are about those that are seen.
constexpr float EdgeContrast = 0.035F;

constexpr std::uint32_t BlockSide = 4;

/// The numbers of a block's pixels, in an order in which neighbours look into directions far apart.
constexpr std::array<std::array<std::uint32_t, BlockSide>, BlockSide> BlockOrder{
    {{0, 8, 2, 10}, {12, 4, 14, 6}, {3, 11, 1, 9}, {15, 7, 13, 5}}};

/// Rays to look for light from each pixel.
std::uint32_t LightRays(std::uint32_t samples)
{
    return std::clamp(samples / 4U, 1U, 16U);
}

/// Two points lie on one smooth surface when each lies near the other's tangent plane and their normals agree.
bool IsSmoothAcross(const Surface& a, const Surface& b, float tolerance)
{
    const Vector3f offset = b.position - a.position;
    return a.normal.dot(b.normal) > 0.85F && std::abs(a.normal.dot(offset)) < tolerance &&
           std::abs(b.normal.dot(offset)) < tolerance;
}

/// As bytes are written for a picture with a background, or without.
std::array<std::uint8_t, 4> ToBytes(const Vector4f& colour, const PictureOptions& options)
{
    Vector3f straight = colour.head<3>();
    float alpha = std::clamp(colour[3], 0.0F, 1.0F);
    if (options.background) {
        for (std::size_t channel = 0; channel < 3; ++channel) {
            const float behind = LinearFromSrgbBytes()[(*options.background)[channel]];
            straight[static_cast<Eigen::Index>(channel)] += (1.0F - alpha) * behind;
        }
        alpha = 1.0F;
    } else if (alpha > 0.0F) {
        straight /= alpha;
    }
    return {SrgbByteFromLinear(straight[0]), SrgbByteFromLinear(straight[1]), SrgbByteFromLinear(straight[2]),
            static_cast<std::uint8_t>(std::lround(alpha * 255.0F))};
}

} // namespace

std::uint32_t Tile::DirectionCount(std::uint32_t samples)
{
    return BlockSide * BlockSide * LightRays(samples);
}

void Tile::Render(const TileArea& rectangle, Picture& picture)
{
    area = rectangle;
    stride = static_cast<std::size_t>(area.width + 2 * Border);
    const std::size_t count = stride * static_cast<std::size_t>(area.height + 2 * Border);
    fragments.resize(count);
    smoothed.resize(count);
    colours.resize(count);
    TraceFragments();
    ShadeFragments();
    for (std::int32_t y = area.top; y < area.top + area.height; ++y) {
        std::uint8_t* out = picture.pixels.data() + std::size_t{4} * (static_cast<std::size_t>(y) * picture.width +
                                                                      static_cast<std::size_t>(area.left));
        for (std::int32_t x = area.left; x < area.left + area.width; ++x, out += 4) {
            const bool isEdge = studio.options.samples > 1 && IsEdge(x, y);
            const Vector4f colour = isEdge ? Supersampled(x, y) : colours[At(x, y)];
            std::ranges::copy(ToBytes(colour, studio.options), out);
        }
    }
}

void Tile::TraceFragments()
{
    const std::uint32_t rayCount = LightRays(studio.options.samples);
    for (std::int32_t y = area.top - Border; y < area.top + area.height + Border; ++y) {
        for (std::int32_t x = area.left - Border; x < area.left + area.width + Border; ++x) {
            Fragment& fragment = fragments[At(x, y)];
            Trace(static_cast<float>(x) + 0.5F, static_cast<float>(y) + 0.5F, 1.0F, fragment);
            if (!fragment.ReceivesLight())
                continue;
            const std::uint32_t inBlock =
                BlockOrder[static_cast<std::uint32_t>(y) % BlockSide][static_cast<std::uint32_t>(x) % BlockSide];
            fragment.visibility = LookForLight(fragment, {inBlock, rayCount, BlockSide * BlockSide});
        }
    }
}

void Tile::ShadeFragments()
{
    for (std::int32_t y = area.top - 1; y < area.top + area.height + 1; ++y) {
        for (std::int32_t x = area.left - 1; x < area.left + area.width + 1; ++x) {
            const std::size_t at = At(x, y);
            smoothed[at] = Smoothed(x, y);
            colours[at] = ColourOf(fragments[at], smoothed[at]);
        }
    }
}

void Tile::Trace(float x, float y, float share, Fragment& fragment) const
{
    const PixelRay ray = studio.rays.Through(x, y);
    fragment.frontLight.setZero();
    fragment.passed = 1.0F;
    fragment.frontKey = 0;
    fragment.hasSurface = false;
    fragment.isFloor = false;
    fragment.toViewer = -ray.ray.direction.normalized();
    float from = 0.0F;
    for (int layer = 0; layer < MostLayers; ++layer) {
        const std::optional<RayHit> hit = studio.tracer.FirstHit(ray.ray, from);
        if (!hit)
            break;
        const Surface surface = studio.surfaces.At(*hit, ray, share);
        if (surface.opacity >= 1.0F - LeastPassed) {
            fragment.hasSurface = true;
            fragment.surface = surface;
            fragment.hit = *hit;
            fragment.pixelSize = studio.rays.PixelSize(hit->distance);
            break;
        }
        if (surface.opacity > 0.0F) {
            const Lighting::Shaded shaded = studio.lighting.Shade(surface, fragment.toViewer, {});
            fragment.frontLight += fragment.passed * shaded.light;
            fragment.passed *= 1.0F - shaded.coverage;
            fragment.frontKey = fragment.frontKey * 31 + surface.instance + 1;
            if (fragment.passed < LeastPassed)
                break;
        }
        from = hit->distance * (1.0F + 4e-6F) + 1e-6F;
    }
    if (!fragment.hasSurface && fragment.passed >= LeastPassed)
        MeetFloor(ray.ray, fragment);
}

void Tile::MeetFloor(const Ray& ray, Fragment& fragment) const
{
    const std::optional<float> distance = studio.floor.Meets(ray);
    if (!distance)
        return;
    fragment.isFloor = true;
    fragment.surface.position = ray.origin + *distance * ray.direction;
    fragment.surface.normal = studio.floor.Up();
    fragment.pixelSize = studio.rays.PixelSize(*distance);
}

Visibility Tile::LookForLight(const Fragment& fragment, const DirectionSet& directions) const
{
    const Vector3f from =
        fragment.isFloor ? fragment.surface.position : studio.surfaces.RaisedFrom(fragment.surface, fragment.hit);
    return studio.lighting.Trace(studio.tracer, from, fragment.surface.normal, directions);
}

Vector4f Tile::ColourOf(const Fragment& fragment, const Visibility& visibility) const
{
    Vector3f light = fragment.frontLight;
    float alpha = 1.0F - fragment.passed;
    if (fragment.hasSurface) {
        light += fragment.passed * studio.lighting.Shade(fragment.surface, fragment.toViewer, visibility).light;
        alpha = 1.0F;
    } else if (fragment.isFloor) {
        alpha = 1.0F - fragment.passed * (1.0F - studio.floor.Shadow(fragment.surface.position, visibility));
    }
    const Vector3f mapped = ToneMapped(light);
    return {mapped[0], mapped[1], mapped[2], alpha};
}

Visibility Tile::Smoothed(std::int32_t x, std::int32_t y) const
{
    const Fragment& middle = fragments[At(x, y)];
    if (!middle.ReceivesLight())
        return {};
    Visibility sum{0.0F, 0.0F};
    float count = 0.0F;
    for (std::int32_t row = y - 1; row < y + 3; ++row) {
        for (std::int32_t column = x - 1; column < x + 3; ++column) {
            const Fragment& other = fragments[At(column, row)];
            if (!other.ReceivesLight() || !IsSmoothAcross(middle.surface, other.surface, 2.0F * middle.pixelSize))
                continue;
            sum.sky += other.visibility.sky;
            sum.key += other.visibility.key;
            count += 1.0F;
        }
    }
    return {sum.sky / count, sum.key / count};
}

Visibility Tile::VisibilityNear(float x, float y, const Fragment& fragment) const
{
    const auto column = static_cast<std::int32_t>(std::floor(x));
    const auto row = static_cast<std::int32_t>(std::floor(y));
    const Visibility* nearest = nullptr;
    float least = 3.0F * fragment.pixelSize;
    for (std::int32_t r = row - 1; r <= row + 1; ++r) {
        for (std::int32_t c = column - 1; c <= column + 1; ++c) {
            const Fragment& other = fragments[At(c, r)];
            if (!other.ReceivesLight() || !IsSmoothAcross(fragment.surface, other.surface, fragment.pixelSize))
                continue;
            const float distance = (other.surface.position - fragment.surface.position).norm();
            if (distance < least || nearest == nullptr) {
                least = distance;
                nearest = &smoothed[At(c, r)];
            }
        }
    }
    if (nearest != nullptr)
        return *nearest;
    // Another direction in each quarter of the whole.
    const std::uint32_t total = DirectionCount(studio.options.samples);
    const std::uint32_t first = (static_cast<std::uint32_t>(column) * 7 + static_cast<std::uint32_t>(row) * 3) % 4;
    return LookForLight(fragment, {first * (total / 16), 4, total / 4});
}

bool Tile::IsEdge(std::int32_t x, std::int32_t y) const
{
    const std::size_t at = At(x, y);
    const Fragment& fragment = fragments[at];
    const Eigen::Array4f seen = colours[at].array().sqrt();
    for (const std::size_t neighbour : {at - 1, at + 1, at - stride, at + stride}) {
        if (colours[neighbour] == colours[at])
            continue;
        const Eigen::Array4f difference = (colours[neighbour].array().sqrt() - seen).abs();
        if (!(difference.maxCoeff() > EdgeContrast))
            continue;
        const Fragment& other = fragments[neighbour];
        if (fragment.isFloor && other.isFloor && fragment.frontKey == other.frontKey)
            continue;
        const bool isPictured =
            fragment.hasSurface && other.hasSurface && fragment.frontKey == other.frontKey &&
            fragment.surface.instance == other.surface.instance &&
            IsSmoothAcross(fragment.surface, other.surface, fragment.pixelSize) &&
            (fragment.surface.diffuse != other.surface.diffuse || fragment.surface.emissive != other.surface.emissive);
        if (!isPictured)
            return true;
    }
    return false;
}

Vector4f Tile::Supersampled(std::int32_t x, std::int32_t y) const
{
    const std::uint32_t count = studio.options.samples;
    const float share = 1.0F / std::sqrt(static_cast<float>(count));
    Vector4f sum = Vector4f::Zero();
    for (std::uint32_t sample = 0; sample < count; ++sample) {
        const float sampleX = static_cast<float>(x) + (static_cast<float>(sample) + 0.5F) / static_cast<float>(count);
        const float sampleY = static_cast<float>(y) + RadicalInverse(sample) + 0.5F / static_cast<float>(count);
        Fragment fragment;
        Trace(sampleX, sampleY, share, fragment);
        const Visibility visibility =
            fragment.ReceivesLight() ? VisibilityNear(sampleX, sampleY, fragment) : Visibility{};
        sum += ColourOf(fragment, visibility);
    }
    return sum / static_cast<float>(count);
}

} // namespace Orvel::Render
