#pragma once

#include "platform/prcfile/Export.h"
#include "platform/prcfile/Matrix.h"
#include "platform/prcfile/NullIndex.h"
#include "platform/prcfile/PRCGraphics.h"
#include "platform/prcfile/UniqueId.h"

#include <array>
#include <cstdint>
#include <optional>
#include <variant>
#include <vector>

/// What the globals of a file structure hold. All indices count from 0 within the same file structure and name an
/// existing entry; nullIndex is "none", also where the file named an entry that does not exist.
namespace prc::Model
{

using Colour = std::array<double, 3>; ///< red, green, blue, 0 to 1.

/// How the bytes of a stored picture are to be read. The numbers are those of the file format.
enum class PictureFormat : std::uint32_t
{
    Png,
    Jpeg,
    Rgb,
    Rgba,
    Grey,
    GreyAlpha
};

struct Picture
{
    Name name;
    PictureFormat format = PictureFormat::Png; ///< may hold a number that no enumerator has.
    std::uint32_t file = nullIndex;            ///< position in FileStructure::storedFiles.
    std::uint32_t width = 0;                   ///< in pixels as stated; PNG and JPEG may state 0, see PRCPicture.h.
    std::uint32_t height = 0;
};

/// A movement of texture coordinates; only what the file states is set.
struct TextureTransformation
{
    bool flipS = false;
    bool flipT = false;
    std::array<double, 2> translation{0.0, 0.0};
    std::array<double, 2> scale{1.0, 1.0};
    std::optional<std::array<double, 4>> nonOrthogonal; ///< 2 x 2.
    std::optional<std::array<double, 3>> homogeneous;
};

/// How a picture is laid onto surfaces. Enumerations are kept as the numbers of the format.
struct TextureDefinition
{
    Name name;
    std::uint32_t identifier = 0; ///< unique within the file structure.
    std::uint32_t picture = nullIndex;
    std::uint8_t dimension = 2;
    std::int32_t mappingType = 0; ///< 0 unknown, 1 stored coordinates, 2 parametric, 3 operator.
    std::int32_t mappingOperator = 0;
    std::optional<Matrix> mappingTransformation;
    std::uint32_t mappingAttributes = 0; ///< bits: 1 diffuse, 2 bump, 4 opacity, ...
    std::vector<double> intensities;
    std::vector<std::uint8_t> components;
    std::int32_t function = 0; ///< 0 unknown, 1 modulate, 2 replace, 3 blend, 4 decal.
    std::array<double, 4> blendColour{};
    std::uint8_t applicationMode = 0; ///< bits: 1 lighting, 2 alpha test, 4 vertex colours.
    std::int32_t alphaTest = 0;
    double alphaReference = 0.0;
    std::int32_t wrapS = 0; ///< 0 unknown, 1 repeat, 2 clamp to border, 3 clamp, 4 clamp to edge, 5 mirrored repeat.
    std::int32_t wrapT = 0;
    std::int32_t wrapR = 0;
    std::optional<TextureTransformation> transformation;
};

struct Material
{
    Name name;
    std::uint32_t identifier = 0;
    std::uint32_t ambient = nullIndex; ///< positions in Globals::colours.
    std::uint32_t diffuse = nullIndex;
    std::uint32_t emissive = nullIndex;
    std::uint32_t specular = nullIndex;
    double shininess = 0.0; ///< 0 to 1.
    double ambientAlpha = 1.0;
    double diffuseAlpha = 1.0;
    double emissiveAlpha = 1.0;
    double specularAlpha = 1.0;
};

/// A material with a picture: stands in the same table as the plain materials.
struct TextureApplication
{
    Name name;
    std::uint32_t identifier = 0;
    std::uint32_t material = nullIndex; ///< position of a Material in Globals::materials.
    std::uint32_t texture = nullIndex;  ///< position in Globals::textures.
    std::uint32_t next = nullIndex;     ///< position of a further TextureApplication in Globals::materials.
    std::uint32_t coordinateSet = nullIndex;
};

using MaterialEntry = std::variant<Material, TextureApplication>;

struct Style
{
    Name name;
    std::uint32_t identifier = 0;
    double lineWidth = 0.0;
    std::uint32_t linePattern = nullIndex;
    std::uint32_t material = nullIndex;       ///< position in Globals::materials; none when the style names a colour.
    std::uint32_t colour = nullIndex;         ///< position in Globals::colours; none when the style names a material.
    std::optional<std::uint8_t> transparency; ///< 0 invisible to 255 opaque; absent: the material decides.
};

struct LinePattern
{
    Name name;
    std::uint32_t identifier = 0;
    std::vector<double> lengths;
    double phase = 0.0;
    bool realLength = false;
};

/// A frame that representation items can be placed in.
struct CoordinateSystem
{
    Name name;
    std::uint32_t identifier = 0;
    Matrix transformation = identityMatrix;
};

struct Globals
{
    std::vector<UniqueId> referencedStructures;
    double chordHeightRatio = 0.0;
    double tessellationAngleInDegrees = 0.0;
    std::vector<Colour> colours;
    std::vector<Picture> pictures;
    std::vector<TextureDefinition> textures;
    std::vector<MaterialEntry> materials;
    std::vector<LinePattern> linePatterns;
    std::vector<Style> styles;
    std::uint32_t fillPatternCount = 0; ///< read over.
    std::vector<CoordinateSystem> coordinateSystems;
};

/// What a style makes of a surface. Pointers lead into the globals; null where there is nothing.
struct Appearance
{
    const Material* material = nullptr;
    const TextureDefinition* texture = nullptr; ///< of the first texture application.
    const Colour* colour = nullptr;             ///< the diffuse colour, or the colour that the style names itself.
    double alpha = 1.0;                         ///< 0 invisible to 1 opaque.
};

/// @param style position in `globals.styles`; any other number, nullIndex included, gives an empty appearance.
[[nodiscard]] PRCFILE_API Appearance appearanceOf(const Globals& globals, std::uint32_t style);

} // namespace prc::Model
