#include "tool/convert/MeshPrimitives.h"

#include <meshoptimizer.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace Orvel::Convert
{

namespace
{

using Indices = std::vector<std::uint32_t>;

bool HasAny(const Indices& indices)
{
    return std::ranges::any_of(indices, [](std::uint32_t index) { return index != prc::nullIndex; });
}

bool HasAll(const Indices& indices)
{
    return !indices.empty() &&
           std::ranges::all_of(indices, [](std::uint32_t index) { return index != prc::nullIndex; });
}

/// False for what is no number, too.
bool FitsSinglePrecision(double value)
{
    return std::abs(value) <= double{std::numeric_limits<float>::max()};
}

std::array<float, 3> UnitNormal(const double* normal)
{
    const double length = std::hypot(normal[0], normal[1], normal[2]);
    // No format takes a normal of another length; readers of such files pass over what has no direction.
    if (!(length > 0.0) || !std::isfinite(length))
        return {0.0F, 0.0F, 1.0F};
    return {static_cast<float>(normal[0] / length), static_cast<float>(normal[1] / length),
            static_cast<float>(normal[2] / length)};
}

float Clamped(double value)
{
    return FitsSinglePrecision(value) ? static_cast<float>(value) : 0.0F;
}

/// The corner that stands for each point of the joined mesh.
Indices JoinCorners(const prc::Model::TriangleCorners& corners, Indices& indices)
{
    const std::size_t count = corners.points.size();
    std::array<meshopt_Stream, 4> streams{};
    const std::array sources{&corners.points, &corners.normals, &corners.textureCoordinates, &corners.colours};
    for (std::size_t i = 0; i < streams.size(); ++i)
        streams[i] = {sources[i]->data(), sizeof(std::uint32_t), sizeof(std::uint32_t)};
    indices.resize(count);
    const std::size_t points =
        meshopt_generateVertexRemapMulti(indices.data(), nullptr, count, count, streams.data(), streams.size());
    Indices cornerOfPoint(points);
    for (std::size_t corner = 0; corner < count; ++corner)
        cornerOfPoint[indices[corner]] = static_cast<std::uint32_t>(corner);
    return cornerOfPoint;
}

} // namespace

void PrimitiveBuilder::Add(const prc::Model::Face& face)
{
    const std::size_t first = corners.points.size();
    prc::Model::appendTriangles(tessellation, face, corners);
    if (face.colourComponents == 0)
        return;
    // Colours are numbered within their face.
    const auto base = static_cast<std::uint32_t>(colours.size() / 4);
    for (std::size_t i = 0; i + face.colourComponents <= face.vertexColours.size(); i += face.colourComponents) {
        const std::uint8_t* const colour = face.vertexColours.data() + i;
        const std::uint8_t opacity = face.colourComponents == 4 ? colour[3] : std::uint8_t{255};
        colours.insert(colours.end(), {colour[0], colour[1], colour[2], opacity});
    }
    for (std::size_t corner = first; corner < corners.colours.size(); ++corner) {
        if (corners.colours[corner] != prc::nullIndex)
            corners.colours[corner] += base;
    }
}

void PrimitiveBuilder::DropUnusableTriangles(std::size_t& leftOut)
{
    if (std::ranges::all_of(tessellation.coordinates, FitsSinglePrecision))
        return;
    const auto isUsable = [this](std::uint32_t point) {
        const double* const position = tessellation.coordinates.data() + std::size_t{3} * point;
        return std::all_of(position, position + 3, FitsSinglePrecision);
    };
    std::size_t kept = 0;
    for (std::size_t corner = 0; corner + 2 < corners.points.size(); corner += 3) {
        if (!std::all_of(&corners.points[corner], &corners.points[corner] + 3, isUsable)) {
            ++leftOut;
            continue;
        }
        for (Indices* const list : {&corners.points, &corners.normals, &corners.textureCoordinates, &corners.colours})
            std::copy_n(list->begin() + static_cast<std::ptrdiff_t>(corner), 3,
                        list->begin() + static_cast<std::ptrdiff_t>(kept));
        kept += 3;
    }
    for (Indices* const list : {&corners.points, &corners.normals, &corners.textureCoordinates, &corners.colours})
        list->resize(kept);
}

Primitive PrimitiveBuilder::Build(std::size_t& leftOut)
{
    DropUnusableTriangles(leftOut);
    Primitive primitive;
    const bool hasNormals = HasAll(corners.normals);
    const bool hasTextureCoordinates = HasAny(corners.textureCoordinates);
    const bool hasColours = HasAny(corners.colours);
    const Indices cornerOfPoint = JoinCorners(corners, primitive.indices);
    primitive.positions.reserve(3 * cornerOfPoint.size());
    primitive.normals.reserve(hasNormals ? 3 * cornerOfPoint.size() : 0);
    primitive.textureCoordinates.reserve(hasTextureCoordinates ? 2 * cornerOfPoint.size() : 0);
    primitive.colours.reserve(hasColours ? 4 * cornerOfPoint.size() : 0);
    for (const std::uint32_t corner : cornerOfPoint) {
        const double* const position = tessellation.coordinates.data() + std::size_t{3} * corners.points[corner];
        primitive.positions.insert(primitive.positions.end(), position, position + 3);
        if (hasNormals) {
            const auto normal =
                UnitNormal(tessellation.normalCoordinates.data() + std::size_t{3} * corners.normals[corner]);
            primitive.normals.insert(primitive.normals.end(), normal.begin(), normal.end());
        }
        if (hasTextureCoordinates) {
            const std::uint32_t pair = corners.textureCoordinates[corner];
            for (const std::size_t i : {0U, 1U})
                primitive.textureCoordinates.push_back(
                    pair == prc::nullIndex ? 0.0F
                                           : Clamped(tessellation.textureCoordinates[std::size_t{2} * pair + i]));
        }
        if (hasColours) {
            const std::uint32_t colour = corners.colours[corner];
            for (const std::size_t i : {0U, 1U, 2U, 3U})
                primitive.colours.push_back(colour == prc::nullIndex ? 255 : colours[std::size_t{4} * colour + i]);
        }
    }
    return primitive;
}

} // namespace Orvel::Convert
