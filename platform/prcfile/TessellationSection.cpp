#include "platform/prcfile/TessellationSection.h"

#include "platform/prcfile/BitEncoding.h"

#include <algorithm>
#include <memory>

namespace prc
{

namespace
{

/// Room in front of the tessellations for what the section begins with; their number is not known before the end.
constexpr std::size_t sectionHeadBytes = 8;

constexpr std::size_t longestFixedFields = 512; ///< bits of a tessellation or a face without its arrays, amply.
constexpr std::size_t longestVertexColour = 33;

std::size_t longestEncoding(const PRC3DTess& tess)
{
    const std::size_t doubles =
        tess.coordinates.size() + tess.normalCoordinates.size() + tess.textureCoordinates.size();
    std::size_t bits =
        longestFixedFields + doubles * longestDouble + tess.triangulatedIndex.size() * longestUnsignedInteger;
    for (const std::unique_ptr<PRCTessFace>& face : tess.faceTessellation)
        bits += longestFixedFields + face->rgbaVertices.size() / 3 * longestVertexColour;
    return bits;
}

void writeVertexColours(SectionWriter& bits, const PRCTessFace& face)
{
    const std::size_t components = face.isRgba ? 4 : 3;
    const std::span<const std::uint8_t> colours = face.rgbaVertices;
    bits.writeBoolean(face.isRgba);
    bits.writeBoolean(false); // not optimised
    for (std::size_t at = 0; at < colours.size(); at += components) {
        const std::span<const std::uint8_t> colour = colours.subspan(at, components);
        if (at > 0) {
            const bool sameAsBefore = std::ranges::equal(colour, colours.subspan(at - components, components));
            bits.writeBoolean(sameAsBefore);
            if (sameAsBefore)
                continue;
        }
        for (const std::uint8_t component : colour)
            bits.writeCharacter(component);
    }
}

void writeFace(SectionWriter& bits, const PRCTessFace& face)
{
    bits.writeEntityType(EntityType::TessellationFace);
    bits.writeUnsignedInteger(static_cast<std::uint32_t>(face.lineAttributes.size()));
    for (const std::uint32_t style : face.lineAttributes)
        bits.writeIndexPlusOne(style);
    bits.writeUnsignedInteger(face.startWire);
    bits.writeUnsignedInteger(0); // wire sizes
    bits.writeUnsignedInteger(face.usedEntitiesFlag);
    bits.writeUnsignedInteger(face.startTriangulated);
    bits.writeUnsignedInteger(static_cast<std::uint32_t>(face.sizesTriangulated.size()));
    bits.writeUnsignedIntegers(face.sizesTriangulated);
    bits.writeUnsignedInteger(face.numberOfTextureCoordinateIndexes);
    bits.writeBoolean(!face.rgbaVertices.empty());
    if (!face.rgbaVertices.empty())
        writeVertexColours(bits, face);
    if (!face.lineAttributes.empty())
        bits.writeUnsignedInteger(face.behaviour);
}

void writeTessellation(SectionWriter& bits, const PRC3DTess& tess)
{
    const bool recalculateNormals = tess.normalCoordinates.empty();

    bits.writeEntityType(EntityType::Tessellation3D);
    bits.writeBoolean(false); // not calculated from exact surfaces
    bits.writeUnsignedInteger(static_cast<std::uint32_t>(tess.coordinates.size()));
    bits.writeDoubles(tess.coordinates);
    bits.writeBoolean(true);  // has faces
    bits.writeBoolean(false); // has no loops
    bits.writeBoolean(recalculateNormals);
    if (recalculateNormals) {
        bits.writeCharacter(0); // recalculation flags
        bits.writeDouble(tess.creaseAngle);
    }
    bits.writeUnsignedInteger(static_cast<std::uint32_t>(tess.normalCoordinates.size()));
    bits.writeDoubles(tess.normalCoordinates);
    bits.writeUnsignedInteger(0); // wire indices
    bits.writeUnsignedInteger(static_cast<std::uint32_t>(tess.triangulatedIndex.size()));
    bits.writeUnsignedIntegers(tess.triangulatedIndex);
    bits.writeUnsignedInteger(static_cast<std::uint32_t>(tess.faceTessellation.size()));
    for (const std::unique_ptr<PRCTessFace>& face : tess.faceTessellation)
        writeFace(bits, *face);
    bits.writeUnsignedInteger(static_cast<std::uint32_t>(tess.textureCoordinates.size()));
    bits.writeDoubles(tess.textureCoordinates);
}

TessellationSummary summarise(const PRC3DTess& tess)
{
    TessellationSummary summary;
    summary.box.include(tess.coordinates);
    const bool everyFaceHasAStyle =
        std::ranges::all_of(tess.faceTessellation, [](const auto& face) { return !face->lineAttributes.empty(); });
    if (everyFaceHasAStyle)
        summary.ownStyle = tess.faceTessellation.front()->lineAttributes.front();
    return summary;
}

} // namespace

TessellationSection::TessellationSection()
    : bits(sectionHeadBytes)
{}

std::uint32_t TessellationSection::add(const PRC3DTess& tess)
{
    // Both may throw; nothing after them does.
    bits.reserve(longestEncoding(tess));
    tessellations.push_back(summarise(tess));
    writeTessellation(bits, tess);
    return static_cast<std::uint32_t>(tessellations.size() - 1);
}

std::span<const std::uint8_t> TessellationSection::close()
{
    SectionWriter head;
    head.writeEntityType(EntityType::FileStructureTessellation);
    head.writeContentBase(std::nullopt);
    head.writeUnsignedInteger(static_cast<std::uint32_t>(tessellations.size()));
    bits.writeNoUserData();
    bits.writeBefore(head);
    return bits.bytes();
}

} // namespace prc
