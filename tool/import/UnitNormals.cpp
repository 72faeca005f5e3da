#include "tool/import/UnitNormals.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <vector>

namespace Orvel::Import
{

namespace
{

using Vector = std::array<double, 3>;

Vector At(const std::vector<double>& triples, std::size_t element)
{
    return {triples[3 * element], triples[3 * element + 1], triples[3 * element + 2]};
}

void Put(const Vector& vector, std::vector<double>& triples, std::size_t element)
{
    std::copy(vector.begin(), vector.end(), triples.begin() + static_cast<std::ptrdiff_t>(3 * element));
}

double SquaredLength(const Vector& v)
{
    return v[0] * v[0] + v[1] * v[1] + v[2] * v[2];
}

/// Perpendicular to a triangle, twice as long as its area is large.
Vector AreaNormal(const Vector& a, const Vector& b, const Vector& c)
{
    const Vector u{b[0] - a[0], b[1] - a[1], b[2] - a[2]};
    const Vector v{c[0] - a[0], c[1] - a[1], c[2] - a[2]};
    return {u[1] * v[2] - u[2] * v[1], u[2] * v[0] - u[0] * v[2], u[0] * v[1] - u[1] * v[0]};
}

/// @return false when the vector has no direction; it is then untouched.
bool BringToUnit(Vector& vector)
{
    // Divided by its largest component first, so that no square leaves the range of double.
    const double largest = std::max({std::abs(vector[0]), std::abs(vector[1]), std::abs(vector[2])});
    if (!std::isfinite(vector[0] + vector[1] + vector[2]) || !(largest > 0.0))
        return false;
    Vector scaled{vector[0] / largest, vector[1] / largest, vector[2] / largest};
    const double length = std::sqrt(SquaredLength(scaled));
    for (double& component : scaled)
        component /= length;
    vector = scaled;
    return true;
}

void TakeFromFaces(ImportedGeometry& shape, const std::vector<std::size_t>& points)
{
    std::vector<bool> isWanted(shape.positions.size() / 3, false);
    for (const std::size_t point : points) {
        isWanted[point] = true;
        Put({0.0, 0.0, 0.0}, shape.normals, point);
    }
    for (std::size_t i = 0; i + 2 < shape.triangles.size(); i += 3) {
        const std::array<std::size_t, 3> corner{shape.triangles[i], shape.triangles[i + 1], shape.triangles[i + 2]};
        if (!isWanted[corner[0]] && !isWanted[corner[1]] && !isWanted[corner[2]])
            continue;
        const Vector face =
            AreaNormal(At(shape.positions, corner[0]), At(shape.positions, corner[1]), At(shape.positions, corner[2]));
        for (const std::size_t point : corner)
            for (std::size_t axis = 0; isWanted[point] && axis < 3; ++axis)
                shape.normals[3 * point + axis] += face[axis];
    }
    for (const std::size_t point : points) {
        Vector normal = At(shape.normals, point);
        Put(BringToUnit(normal) ? normal : Vector{0.0, 0.0, 1.0}, shape.normals, point);
    }
}

/// @return the points whose normals have no direction; all others are of unit length afterwards.
std::vector<std::size_t> BringAllToUnit(std::vector<double>& normals)
{
    // Of the squared length: three decimals, or signed bytes, leave as much. Anything exact lies far within.
    constexpr double Tolerance = 1e-3;
    std::vector<std::size_t> withoutDirection;
    for (std::size_t point = 0; 3 * point < normals.size(); ++point) {
        Vector normal = At(normals, point);
        if (std::abs(SquaredLength(normal) - 1.0) <= Tolerance)
            continue;
        if (BringToUnit(normal))
            Put(normal, normals, point);
        else
            withoutDirection.push_back(point);
    }
    return withoutDirection;
}

} // namespace

void MakeNormalsUnit(ImportedGeometry& shape, const std::string& where, ImportReport& report)
{
    const std::vector<std::size_t> withoutDirection = BringAllToUnit(shape.normals);
    if (withoutDirection.empty())
        return;
    if (3 * withoutDirection.size() == shape.normals.size()) {
        shape.normals = {};
        return;
    }
    TakeFromFaces(shape, withoutDirection);
    report.Warn(where + ": " + std::to_string(withoutDirection.size()) +
                " normals have no direction; those of the faces stand in");
}

} // namespace Orvel::Import
