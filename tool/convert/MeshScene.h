#pragma once

#include "platform/prcfile/Matrix.h"

#include <array>
#include <compare>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

/// A model on its way from PRC to other formats: what all of them are made of.
namespace Orvel::Convert
{

/// The model cannot be converted. `what()` is one line for the user without the file's name.
class ConvertError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// As an index: none.
inline constexpr std::uint32_t None = UINT32_MAX;

using Colour = std::array<double, 3>; ///< sRGB, 0 to 1

struct Picture
{
    std::string name;
    std::vector<std::uint8_t> file; ///< a complete PNG or JPEG file
    bool isJpeg = false;
    bool hasAlpha = false; ///< some pixel is not opaque
};

enum class Wrap
{
    Repeat,
    Clamp,
    Mirror
};

/// A material for classic lighting: the picture is multiplied with the diffuse colour.
struct Material
{
    std::string name;
    Colour ambient{};
    Colour diffuse{1.0, 1.0, 1.0};
    Colour specular{};
    Colour emissive{};
    double shininess = 0.0; ///< 0 to 1
    double opacity = 1.0;
    std::uint32_t picture = None; ///< position in MeshScene::pictures
    std::array<Wrap, 2> wrap{};   ///< along u and v

    auto operator<=>(const Material&) const = default;
};

/// Triangles in one material. The arrays beside `positions` are empty, or hold an entry for each point.
struct Primitive
{
    std::uint32_t material = None;         ///< position in MeshScene::materials
    std::vector<double> positions;         ///< x, y, z; within the range of single precision
    std::vector<float> normals;            ///< x, y, z of length 1
    std::vector<float> textureCoordinates; ///< u, v; v = 0 is the bottom edge of the picture
    std::vector<std::uint8_t> colours;     ///< red, green, blue, opacity; sRGB
    std::vector<std::uint32_t> indices;    ///< three a triangle, counter-clockwise seen from outside
};

struct Mesh
{
    std::string name;
    std::vector<Primitive> primitives;
};

struct Node
{
    std::string name;
    std::uint32_t parent = None;                 ///< position in MeshScene::nodes, smaller than the own one
    prc::Matrix transform = prc::identityMatrix; ///< to the parent
    std::uint32_t mesh = None;                   ///< position in MeshScene::meshes; any number of nodes may show one
};

struct MeshScene
{
    std::vector<Picture> pictures;
    std::vector<Material> materials;
    std::vector<Mesh> meshes;
    std::vector<Node> nodes; ///< in depth-first order
};

} // namespace Orvel::Convert
