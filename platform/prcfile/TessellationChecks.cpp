#include "platform/prcfile/TessellationChecks.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <limits>
#include <memory>
#include <span>
#include <stdexcept>

namespace prc
{

namespace
{

constexpr std::uint32_t pointStride = 3;
constexpr std::uint32_t textureStride = 2;
constexpr std::size_t cornersOfTriangle = 3;

void checkArrays(const PRC3DTess& tess)
{
    constexpr std::size_t largest = std::numeric_limits<std::uint32_t>::max();
    if (tess.coordinates.size() % pointStride != 0 || tess.normalCoordinates.size() % pointStride != 0 ||
        tess.textureCoordinates.size() % textureStride != 0)
        throw std::invalid_argument("a coordinate array ends inside an element");
    if (tess.coordinates.size() > largest || tess.normalCoordinates.size() > largest ||
        tess.textureCoordinates.size() > largest || tess.triangulatedIndex.size() > largest ||
        tess.faceTessellation.size() > largest)
        throw std::invalid_argument("an array has more elements than the format can count");
    if (!allFinite(tess.coordinates) || !allFinite(tess.normalCoordinates) || !allFinite(tess.textureCoordinates) ||
        !allFinite({&tess.creaseAngle, 1}))
        throw std::invalid_argument("a coordinate is not finite");
}

/// @return whether the triangles of the face are textured.
bool checkKind(const PRCTessFace& face)
{
    const bool textured = face.usedEntitiesFlag == UsedEntities::texturedTriangles;
    if (!textured && face.usedEntitiesFlag != UsedEntities::triangles)
        throw std::invalid_argument("a face holds something else than triangles");
    if (face.numberOfTextureCoordinateIndexes != (textured ? 1U : 0U))
        throw std::invalid_argument("the number of texture coordinates of a face does not fit its kind");
    if (face.sizesTriangulated.size() != 1)
        throw std::invalid_argument("a face of triangles has one size, their number");
    if (!face.sizesWire.empty())
        throw std::invalid_argument("a face has wires");
    if (!face.rgbaVertices.empty() &&
        face.rgbaVertices.size() != face.sizesTriangulated.front() * cornersOfTriangle * (face.isRgba ? 4U : 3U))
        throw std::invalid_argument("the vertex colours of a face are not one for each corner");
    return textured;
}

void checkStyle(const PRCTessFace& face, std::uint32_t styleCount)
{
    if (face.lineAttributes.size() > 1)
        throw std::invalid_argument("a face has more than one style");
    if (!face.lineAttributes.empty() && face.lineAttributes.front() >= styleCount)
        throw std::out_of_range("a face names a style that does not exist");
}

/// Checks corners that have one entry for each of `strides`, the distances of the elements that the entry points to.
///
/// @param arraySizes numbers in the arrays of the entries, in the same order.
template <std::uint32_t... strides>
void checkCorners(std::span<const std::uint32_t> indices, const std::array<std::size_t, sizeof...(strides)>& arraySizes)
{
    constexpr std::size_t entryCount = sizeof...(strides);
    std::array<std::uint32_t, entryCount> largest{};
    std::uint32_t misplaced = 0;
    for (std::size_t corner = 0; corner < indices.size(); corner += entryCount) {
        std::size_t entry = 0;
        // The strides are constants, which spares a division for each index.
        ((largest[entry] = std::max(largest[entry], indices[corner + entry]),
          misplaced |= indices[corner + entry] % strides, ++entry),
         ...);
    }
    for (std::size_t entry = 0; !indices.empty() && entry < entryCount; ++entry) {
        if (largest[entry] >= arraySizes[entry])
            throw std::out_of_range("an index lies outside its coordinate array");
    }
    if (misplaced != 0)
        throw std::invalid_argument("an index points into the middle of an element");
}

void checkIndices(const PRC3DTess& tess, bool textured, std::span<const std::uint32_t> indices)
{
    const std::size_t points = tess.coordinates.size();
    const std::size_t normals = tess.normalCoordinates.size();
    const std::size_t textures = tess.textureCoordinates.size();
    if (normals != 0 && textured)
        checkCorners<pointStride, textureStride, pointStride>(indices, {normals, textures, points});
    else if (normals != 0)
        checkCorners<pointStride, pointStride>(indices, {normals, points});
    else if (textured)
        checkCorners<textureStride, pointStride>(indices, {textures, points});
    else
        checkCorners<pointStride>(indices, {points});
}

} // namespace

bool allFinite(std::span<const double> numbers)
{
    constexpr std::uint64_t exponent = std::uint64_t{0x7FF} << 52;
    bool finite = true;
    for (const double number : numbers)
        finite &= (std::bit_cast<std::uint64_t>(number) & exponent) != exponent;
    return finite;
}

void checkTessellation(const PRC3DTess& tess, std::uint32_t styleCount)
{
    checkArrays(tess);
    if (tess.faceTessellation.empty())
        throw std::invalid_argument("a tessellation has no face");

    const std::span<const std::uint32_t> indices = tess.triangulatedIndex;
    std::size_t checked = 0;
    for (const std::unique_ptr<PRCTessFace>& face : tess.faceTessellation) {
        if (!face)
            throw std::invalid_argument("a tessellation has a null face");
        const bool textured = checkKind(*face);
        checkStyle(*face, styleCount);
        const std::size_t entriesOfCorner = 1U + (tess.normalCoordinates.empty() ? 0U : 1U) + (textured ? 1U : 0U);
        const std::size_t entries = face->sizesTriangulated.front() * cornersOfTriangle * entriesOfCorner;
        if (face->startTriangulated != checked)
            throw std::invalid_argument("a face does not begin where the one before it ends");
        if (entries > indices.size() - checked)
            throw std::out_of_range("a face has more triangles than there are indices");
        checkIndices(tess, textured, indices.subspan(checked, entries));
        checked += entries;
    }
    if (checked != indices.size())
        throw std::invalid_argument("indices are left over behind the last face");
}

} // namespace prc
