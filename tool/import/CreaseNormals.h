#pragma once

#include <cstdint>
#include <vector>

namespace Orvel::Import
{

/// Points with normals that replace the points of a shape without.
struct PointsWithNormals
{
    std::vector<double> positions;        ///< 3 per new point
    std::vector<double> normals;          ///< 3 per new point, unit length
    std::vector<std::uint32_t> triangles; ///< 3 per triangle, indices of new points; order and winding as before
    /// For each new point the point that it comes from, so that other data per point can follow. New point i comes from
    /// point i for every i below the old number of points; what had to be split off follows behind.
    std::vector<std::uint32_t> sources;
};

/// Makes normals for a shape that has none.
///
/// Two triangles that share an edge are smooth across it when their normals differ by at most the crease angle. The
/// triangles around a point fall into fans connected by smooth edges; each fan gets one normal, the sum of its
/// triangles' normals weighted by their angles at the point (Thürmer and Wüthrich: Computing Vertex Normals from
/// Polygonal Facets, Journal of Graphics Tools 3(1), 1998), and each point is split into one point for each fan. Points
/// at equal places count as one for this, so that a seam in the texture coordinates does not show in the shading.
///
/// Triangles without area smooth nothing and give no direction; a point that only such triangles use, or none, gets the
/// normal (0, 0, 1). Of an edge that many triangles share each one is compared with the sixteen before it, so
/// that time and memory grow in proportion to the input.
///
/// @param positions 3 per point, finite; -0 counts as another place than 0, so callers clear it first. Consumed.
/// @param triangles 3 indices per triangle, each below the number of points. Consumed.
/// @param creaseAngleInDegrees 0: flat save where triangles lie in one plane; 180 and more: smooth everywhere.
[[nodiscard]] PointsWithNormals MakeCreaseNormals(std::vector<double> positions, std::vector<std::uint32_t> triangles,
                                                  double creaseAngleInDegrees);

} // namespace Orvel::Import
