#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <variant>
#include <vector>

/// A strict decoder of PRC files for tests. It shares nothing with the library that writes them: not a line of code,
/// not even the table of frequent doubles, which it loads from tests/data. What it hands out is what stands in the
/// file, every index resolved to base 0 and proved to lie inside its table.
namespace Orvel::Test
{

/// What a file may contain beyond being decodable.
enum class Strictness
{
    Format,    ///< everything that the decoded subset of the format allows
    OwnWriter, ///< in addition what this project's writer promises: shared colours, pictures as PNG stored once, no
               ///< distance forms in doubles, explicit names, running identifiers, tight bounding boxes, children
               ///< before parents
};

/// A deviation from the format: what() names section, bit position (from the start of the inflated section; from the
/// start of the file in headers) and finding.
struct DecodeError : std::runtime_error
{
    DecodeError(std::string section, size_t bit, const std::string& finding);

    std::string section;
    size_t bit;
};

using UniqueId = std::array<uint32_t, 4>;
using Vector3 = std::array<double, 3>;
using Vector2 = std::array<double, 2>;
using Matrix = std::array<double, 16>;   ///< row by row: the translation stands at 3, 7, 11
using Name = std::optional<std::string>; ///< nullopt: unnamed, which is not the same as ""

struct Picture
{
    Name name;
    uint32_t format = 0; ///< 0 PNG, 2 RGB bytes, 3 RGBA bytes
    uint32_t file = 0;   ///< index of the stored file; pictures may share one
    uint32_t width = 0;  ///< in pixels
    uint32_t height = 0;
    uint32_t components = 0;     ///< 3 RGB, 4 RGBA
    std::vector<uint8_t> pixels; ///< width * height * components, top row first

    /// The bytes of one pixel; row 0 is the top one.
    std::vector<uint8_t> PixelAt(uint32_t column, uint32_t row) const;

    bool operator==(const Picture&) const = default;
};

struct TextureDefinition
{
    Name name;
    size_t picture = 0;
    int32_t function = 0;        ///< 1 modulate, 2 replace
    uint8_t applicationMode = 0; ///< bit field: 1 lighting, 2 alpha test, 4 vertex colour
    int32_t wrapS = 0;           ///< 1 repeat, 2 clamp to border
    int32_t wrapT = 0;

    bool operator==(const TextureDefinition&) const = default;
};

struct Material
{
    Name name;
    Vector3 ambient{}, diffuse{}, emissive{}, specular{}; ///< red, green, blue, 0 to 1
    double shininess = 0;                                 ///< 0 to 1
    double ambientAlpha = 0, diffuseAlpha = 0, emissiveAlpha = 0, specularAlpha = 0;

    bool operator==(const Material&) const = default;
};

struct TextureApplication
{
    Name name;
    size_t material = 0; ///< entry of the same table, a Material
    size_t textureDefinition = 0;

    bool operator==(const TextureApplication&) const = default;
};

struct Style
{
    Name name;
    size_t material = 0;                 ///< entry of the material table, of either kind
    std::optional<uint8_t> transparency; ///< 0 invisible to 255 opaque; absent: opaque

    bool operator==(const Style&) const = default;
};

/// One face of a tessellation: a run of its triangulated indices.
struct Face
{
    std::optional<size_t> style;
    bool textured = false;
    size_t firstIndex = 0; ///< position in Tessellation::indices
    size_t triangleCount = 0;
    uint32_t colourComponents = 0;      ///< of vertexColours: 3 or 4; 0 without
    std::vector<uint8_t> vertexColours; ///< one colour for each corner of each triangle; empty: none

    bool operator==(const Face&) const = default;
};

struct Tessellation
{
    std::vector<Vector3> points;
    std::vector<Vector3> normals; ///< empty when the viewer has to compute them
    std::vector<Vector2> textureCoordinates;
    std::vector<uint32_t> indices; ///< as stored (3 or 2 times the element); LocalTriangles resolves them
    std::vector<Face> faces;
    bool mustRecalculateNormals = false;
    double creaseAngleInDegrees = 0; ///< only with mustRecalculateNormals

    bool operator==(const Tessellation&) const = default;
};

struct RepresentationItem
{
    Name name;
    std::optional<size_t> style;
    std::optional<size_t> tessellation; ///< absent in a set
    bool isSet = false;
    bool isClosed = false;
    std::vector<RepresentationItem> items; ///< only in a set

    bool operator==(const RepresentationItem&) const = default;
};

struct Part
{
    Name name;
    std::optional<size_t> style;
    Vector3 minimum{}, maximum{};
    std::vector<RepresentationItem> items;

    bool operator==(const Part&) const = default;
};

struct ProductOccurrence
{
    Name name;
    std::optional<size_t> style;
    std::optional<size_t> part;
    std::vector<size_t> children;
    std::optional<Matrix> location; ///< absent: identity

    bool operator==(const ProductOccurrence&) const = default;
};

struct PRCContent
{
    uint32_t minimalVersion = 0;
    uint32_t authoringVersion = 0;
    UniqueId fileId{}, applicationId{}, structureId{};
    std::vector<std::vector<uint8_t>> storedFiles;

    Name modelName;
    double chordHeightRatio = 0;
    double tessellationAngleInDegrees = 0;
    double unitInMillimetres = 0;

    std::vector<Vector3> colours;
    std::vector<Picture> pictures;
    std::vector<TextureDefinition> textureDefinitions;
    std::vector<std::variant<Material, TextureApplication>> materials;
    std::vector<Style> styles;

    std::vector<Tessellation> tessellations;
    std::vector<Part> parts;
    std::vector<ProductOccurrence> occurrences;
    size_t root = 0; ///< in occurrences

    bool operator==(const PRCContent&) const = default;
};

/// Decodes a whole file with one file structure.
/// @throws DecodeError on any deviation.
[[nodiscard]] PRCContent DecodePRC(std::span<const uint8_t> bytes, Strictness strictness = Strictness::OwnWriter);

/// @throws std::runtime_error when the file cannot be read, else as DecodePRC.
[[nodiscard]] PRCContent DecodePRCFile(const std::filesystem::path& path,
                                       Strictness strictness = Strictness::OwnWriter);

} // namespace Orvel::Test
