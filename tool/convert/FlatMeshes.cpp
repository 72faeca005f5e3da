#include "tool/convert/FlatMeshes.h"

#include "platform/prcfile/PRCScene.h"

#include <array>
#include <cmath>
#include <cstddef>

namespace Orvel::Convert
{

namespace
{

using Vector = std::array<double, 3>;

Vector Column(const prc::Matrix& matrix, std::size_t column)
{
    return {matrix[column], matrix[4 + column], matrix[8 + column]};
}

Vector Cross(const Vector& a, const Vector& b)
{
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

/// The cofactors of the linear part, column by column: normals stay at right angles to their surfaces.
std::array<Vector, 3> NormalMatrix(const prc::Matrix& matrix)
{
    const Vector x = Column(matrix, 0);
    const Vector y = Column(matrix, 1);
    const Vector z = Column(matrix, 2);
    return {Cross(y, z), Cross(z, x), Cross(x, y)};
}

} // namespace

std::vector<PlacedPrimitive> PlacePrimitives(const MeshScene& scene)
{
    std::vector<PlacedPrimitive> placed;
    std::vector<prc::Matrix> worlds(scene.nodes.size());
    for (std::uint32_t number = 0; number < scene.nodes.size(); ++number) {
        const Node& node = scene.nodes[number];
        worlds[number] =
            node.parent == None ? node.transform : prc::Model::multiplied(worlds[node.parent], node.transform);
        if (node.mesh == None)
            continue;
        for (const Primitive& primitive : scene.meshes[node.mesh].primitives)
            placed.push_back({number, &primitive, worlds[number]});
    }
    return placed;
}

std::vector<double> WorldPositions(const PlacedPrimitive& placed)
{
    std::vector<double> positions = placed.source->positions;
    const prc::Matrix& world = placed.world;
    for (std::size_t i = 0; i + 2 < positions.size(); i += 3) {
        const Vector local{positions[i], positions[i + 1], positions[i + 2]};
        for (std::size_t row = 0; row < 3; ++row)
            positions[i + row] = world[4 * row] * local[0] + world[4 * row + 1] * local[1] +
                                 world[4 * row + 2] * local[2] + world[4 * row + 3];
    }
    return positions;
}

std::vector<float> WorldNormals(const PlacedPrimitive& placed)
{
    std::vector<float> normals = placed.source->normals;
    std::array<Vector, 3> matrix = NormalMatrix(placed.world);
    const double sign = Mirrors(placed.world) ? -1.0 : 1.0;
    for (std::size_t i = 0; i + 2 < normals.size(); i += 3) {
        Vector normal{};
        for (std::size_t row = 0; row < 3; ++row) {
            for (std::size_t column = 0; column < 3; ++column)
                normal[row] += sign * matrix[column][row] * double{normals[i + column]};
        }
        const double length = std::hypot(normal[0], normal[1], normal[2]);
        if (!(length > 0.0) || !std::isfinite(length))
            continue;
        for (std::size_t row = 0; row < 3; ++row)
            normals[i + row] = static_cast<float>(normal[row] / length);
    }
    return normals;
}

bool Mirrors(const prc::Matrix& matrix)
{
    const Vector x = Column(matrix, 0);
    const Vector yz = NormalMatrix(matrix)[0];
    return x[0] * yz[0] + x[1] * yz[1] + x[2] * yz[2] < 0.0;
}

} // namespace Orvel::Convert
