#include "tool/import/CreaseNormals.h"

#include "tool/import/WeldPoints.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <numeric>
#include <span>
#include <utility>

namespace Orvel::Import
{
namespace
{

using Vector = std::array<double, 3>;

Vector Subtract(const Vector& a, const Vector& b)
{
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}

Vector Cross(const Vector& a, const Vector& b)
{
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

double Dot(const Vector& a, const Vector& b)
{
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

bool IsZero(const Vector& vector)
{
    return vector[0] == 0.0 && vector[1] == 0.0 && vector[2] == 0.0;
}

constexpr std::uint32_t Nothing = ~std::uint32_t{0};

// Triangles as the corners see them -------------------------------------------------------------------------------

/// All that a corner needs of its triangle, close together.
struct Face
{
    Vector normal{};                ///< unit length; zero: the triangle has no area
    std::array<double, 3> angles{}; ///< radians at corners 0, 1 and 2
};

struct Sides
{
    explicit Sides(const std::array<Vector, 3>& corners)
        : from0To1(Subtract(corners[1], corners[0]))
        , from0To2(Subtract(corners[2], corners[0]))
        , from1To2(Subtract(corners[2], corners[1]))
        , cross(Cross(from0To1, from0To2))
        , squaredArea(Dot(cross, cross))
    {}

    /// True where no product has left the range in which doubles keep their precision.
    [[nodiscard]] bool AreOfOrdinarySize() const { return squaredArea > 1e-200 && squaredArea < 1e200; }

    Vector from0To1;
    Vector from0To2;
    Vector from1To2;
    Vector cross;       ///< twice the area long
    double squaredArea; ///< of the parallelogram
};

/// Brings a triangle of any finite size near 1. The factor is a power of two: shapes stay exact.
std::array<Vector, 3> Normalised(std::array<Vector, 3> corners)
{
    // Halved first: the difference of two finite numbers can be infinite.
    for (Vector& corner : corners) {
        for (double& value : corner)
            value *= 0.5;
    }
    const Vector origin = corners[0];
    double largest = 0.0;
    for (Vector& corner : corners) {
        corner = Subtract(corner, origin);
        for (const double value : corner)
            largest = std::max(largest, std::abs(value));
    }
    if (largest == 0.0)
        return corners;
    const int exponent = -std::ilogb(largest);
    for (Vector& corner : corners) {
        for (double& value : corner)
            value = std::scalbn(value, exponent);
    }
    return corners;
}

Face MeasureFace(const std::array<Vector, 3>& corners)
{
    Sides sides(corners);
    if (!sides.AreOfOrdinarySize())
        sides = Sides(Normalised(corners));

    // A triangle a million million times longer than high has no direction that its coordinates would vouch for.
    constexpr double LeastHeightToLength = 1e-12;
    const double longest = std::max({Dot(sides.from0To1, sides.from0To1), Dot(sides.from0To2, sides.from0To2),
                                     Dot(sides.from1To2, sides.from1To2)}) *
                           LeastHeightToLength;
    if (!(sides.squaredArea > longest * longest))
        return {};

    const double area = std::sqrt(sides.squaredArea);
    const double angle0 = std::atan2(area, Dot(sides.from0To1, sides.from0To2));
    const double angle1 = std::atan2(area, -Dot(sides.from0To1, sides.from1To2));
    const double angle2 = std::max(std::numbers::pi - angle0 - angle1, 0.0);
    return {{sides.cross[0] / area, sides.cross[1] / area, sides.cross[2] / area}, {angle0, angle1, angle2}};
}

std::vector<Face> MeasureFaces(const std::vector<double>& positions, const std::vector<std::uint32_t>& triangles)
{
    const auto position = [&positions](std::size_t point) -> Vector {
        return {positions[3 * point], positions[3 * point + 1], positions[3 * point + 2]};
    };
    std::vector<Face> faces;
    faces.reserve(triangles.size() / 3);
    for (std::size_t first = 0; first < triangles.size(); first += 3) {
        faces.push_back(
            MeasureFace({position(triangles[first]), position(triangles[first + 1]), position(triangles[first + 2])}));
    }
    return faces;
}

// Corners by place ------------------------------------------------------------------------------------------------

/// Corner k of triangle t.
using Corner = std::uint32_t;

/// The corners at each place. Places are what is left of the points when those with equal coordinates count as one.
struct Places
{
    std::vector<std::uint32_t> placeOfPoint;
    std::vector<std::uint32_t> begins; ///< corners of place i: from begins[i] to begins[i + 1]
    std::vector<Corner> corners;       ///< 3 t + k; within a place the corners of one point stand together

    [[nodiscard]] std::uint32_t Count() const { return static_cast<std::uint32_t>(begins.size() - 1); }
    [[nodiscard]] std::span<const Corner> CornersAt(std::uint32_t place) const
    {
        return std::span(corners).subspan(begins[place], begins[place + 1] - begins[place]);
    }
};

/// Turns numbers of things per bin into the bins' beginnings: entry i is what stands in the bins before i.
void BeginningsFromCounts(std::vector<std::uint32_t>& counts)
{
    std::exclusive_scan(counts.begin(), counts.end(), counts.begin(), std::uint32_t{0});
}

/// @return for each point its position when points are sorted by place; `begins` receives each place's first.
std::vector<std::uint32_t> RankByPlace(const std::vector<std::uint32_t>& placeOfPoint, std::size_t placeCount,
                                       std::vector<std::uint32_t>& begins)
{
    begins.assign(placeCount + 1, 0);
    for (const std::uint32_t place : placeOfPoint)
        ++begins[place];
    BeginningsFromCounts(begins);
    std::vector<std::uint32_t> next = begins;
    std::vector<std::uint32_t> ranks;
    ranks.reserve(placeOfPoint.size());
    for (const std::uint32_t place : placeOfPoint)
        ranks.push_back(next[place]++);
    return ranks;
}

Places CollectPlaces(const std::vector<double>& positions, const std::vector<std::uint32_t>& triangles)
{
    const PointStream stream{positions, 3};
    PointWeld weld = FindEqualPoints({&stream, 1});
    Places places;
    places.placeOfPoint = std::move(weld.remap);
    const std::vector<std::uint32_t> ranks = RankByPlace(places.placeOfPoint, weld.sources.size(), places.begins);

    std::vector<std::uint32_t> next(ranks.size() + 1, 0);
    for (const std::uint32_t point : triangles)
        ++next[ranks[point]];
    BeginningsFromCounts(next);
    for (std::uint32_t& begin : places.begins)
        begin = next[begin];
    places.corners.resize(triangles.size());
    for (std::size_t corner = 0; corner < triangles.size(); ++corner)
        places.corners[next[ranks[triangles[corner]]]++] = static_cast<Corner>(corner);
    return places;
}

// Fans around a place ---------------------------------------------------------------------------------------------

/// Finds the fans at one place after the other. A slot is the position of a corner among the corners of its place.
class FanFinder
{
public:
    /// @param faces, places not owned; must outlive this object.
    FanFinder(const std::vector<Face>& faces, const Places& places, double creaseAngleInDegrees);

    /// @param triangles the points of all corners; their numbers may have changed, but not their places.
    void Find(std::uint32_t place, const std::vector<std::uint32_t>& triangles);

    /// The fan of a slot, named by the lowest slot in it.
    std::uint32_t FanOf(std::uint32_t slot);

private:
    /// One of the two edges of a corner at the place.
    struct EdgeEntry
    {
        std::uint32_t slot;
        std::uint32_t previous; ///< entry of the same edge, or Nothing
    };
    /// The edge from the place to a neighbour.
    struct Edge
    {
        std::uint32_t place = Nothing; ///< for which `last` was set; any other: the edge has no entries yet
        std::uint32_t last = Nothing;  ///< entry
    };

    void JoinAlongEdge(std::uint32_t place, std::uint32_t neighbour, std::uint32_t slot);
    [[nodiscard]] const Face& FaceOf(std::uint32_t slot) const { return faces[corners[slot] / 3]; }

    const std::vector<Face>& faces;
    const Places& places;
    double smoothCosine; ///< normals whose dot product reaches this are smooth

    std::span<const Corner> corners; ///< of the current place
    std::vector<Edge> edges;         ///< for each place as the neighbour of the current one
    std::vector<EdgeEntry> entries;
    std::vector<std::uint32_t> fans; ///< for each slot itself or a lower slot of its fan
};

double SmoothCosine(double creaseAngleInDegrees)
{
    if (creaseAngleInDegrees >= 180.0)
        return -2.0;
    // An edge of exactly the crease angle is smooth in spite of rounding.
    constexpr double Tolerance = 1e-12;
    return std::cos(std::max(creaseAngleInDegrees, 0.0) * std::numbers::pi / 180.0) - Tolerance;
}

FanFinder::FanFinder(const std::vector<Face>& allFaces, const Places& allPlaces, double creaseAngleInDegrees)
    : faces(allFaces)
    , places(allPlaces)
    , smoothCosine(SmoothCosine(creaseAngleInDegrees))
    , edges(allPlaces.Count())
{}

void FanFinder::Find(std::uint32_t place, const std::vector<std::uint32_t>& triangles)
{
    corners = places.CornersAt(place);
    entries.clear();
    fans.resize(corners.size());
    std::iota(fans.begin(), fans.end(), 0U);
    for (std::uint32_t slot = 0; slot < corners.size(); ++slot) {
        if (IsZero(FaceOf(slot).normal))
            continue;
        const Corner first = corners[slot] - corners[slot] % 3;
        const Corner next = first + (corners[slot] + 1) % 3;
        const Corner previous = first + (corners[slot] + 2) % 3;
        JoinAlongEdge(place, places.placeOfPoint[triangles[next]], slot);
        JoinAlongEdge(place, places.placeOfPoint[triangles[previous]], slot);
    }
}

void FanFinder::JoinAlongEdge(std::uint32_t place, std::uint32_t neighbour, std::uint32_t slot)
{
    // Edges with more triangles have no shape that shading could show; the limit keeps the time linear.
    constexpr int MostComparisons = 16;
    Edge& edge = edges[neighbour];
    if (edge.place != place)
        edge = {place, Nothing};
    std::uint32_t entry = edge.last;
    for (int i = 0; entry != Nothing && i < MostComparisons; ++i) {
        const std::uint32_t other = entries[entry].slot;
        if (Dot(FaceOf(other).normal, FaceOf(slot).normal) >= smoothCosine) {
            const auto [low, high] = std::minmax({FanOf(other), FanOf(slot)});
            fans[high] = low;
        }
        entry = entries[entry].previous;
    }
    entries.push_back({slot, edge.last});
    edge.last = static_cast<std::uint32_t>(entries.size() - 1);
}

std::uint32_t FanFinder::FanOf(std::uint32_t slot)
{
    while (fans[slot] != slot) {
        fans[slot] = fans[fans[slot]];
        slot = fans[slot];
    }
    return slot;
}

// One point and one normal for each fan -----------------------------------------------------------------------------

class PointSplitter
{
public:
    PointSplitter(std::vector<double> positions, std::vector<std::uint32_t> triangles, double creaseAngleInDegrees);

    PointsWithNormals Split();

private:
    /// The point that stands for another one in a fan.
    struct FanPoint
    {
        std::uint32_t source = Nothing;
        std::uint32_t point = Nothing;
    };

    void SumNormals(std::span<const Corner> corners);
    void AssignPoints(std::span<const Corner> corners);
    std::uint32_t PointWithNormal(std::uint32_t source, const Vector& normal);
    void GiveNormalsToTheRest();
    [[nodiscard]] bool HasNormal(std::size_t point) const;

    PointsWithNormals result;
    std::vector<Face> faces;
    Places places;
    FanFinder finder;

    std::vector<Vector> normals;     ///< of the current place's fans, under the fan's slot
    std::vector<FanPoint> fanPoints; ///< the last one made for each fan, under the fan's slot
};

PointSplitter::PointSplitter(std::vector<double> positions, std::vector<std::uint32_t> triangles,
                             double creaseAngleInDegrees)
    : result{std::move(positions), {}, std::move(triangles), {}}
    , faces(MeasureFaces(result.positions, result.triangles))
    , places(CollectPlaces(result.positions, result.triangles))
    , finder(faces, places, creaseAngleInDegrees)
{
    result.normals.resize(result.positions.size());
    result.sources.resize(result.positions.size() / 3);
    std::iota(result.sources.begin(), result.sources.end(), 0U);
}

PointsWithNormals PointSplitter::Split()
{
    for (std::uint32_t place = 0; place < places.Count(); ++place) {
        const std::span<const Corner> corners = places.CornersAt(place);
        finder.Find(place, result.triangles);
        SumNormals(corners);
        AssignPoints(corners);
    }
    GiveNormalsToTheRest();
    return std::move(result);
}

/// Sums up the normals of each fan. Those that cancel each other leave the first triangle's.
void PointSplitter::SumNormals(std::span<const Corner> corners)
{
    normals.assign(corners.size(), Vector{});
    for (std::uint32_t slot = 0; slot < corners.size(); ++slot) {
        const Face& face = faces[corners[slot] / 3];
        Vector& sum = normals[finder.FanOf(slot)];
        const double weight = face.angles[corners[slot] % 3];
        for (std::size_t axis = 0; axis < 3; ++axis)
            sum[axis] += weight * face.normal[axis];
    }
    for (std::uint32_t slot = 0; slot < corners.size(); ++slot) {
        if (finder.FanOf(slot) != slot)
            continue;
        constexpr double ShortestSum = 1e-10; // below it, the direction is rounding
        const double length = std::sqrt(Dot(normals[slot], normals[slot]));
        if (length < ShortestSum) {
            normals[slot] = faces[corners[slot] / 3].normal;
            continue;
        }
        for (double& value : normals[slot])
            value /= length;
    }
}

void PointSplitter::AssignPoints(std::span<const Corner> corners)
{
    fanPoints.assign(corners.size(), FanPoint{});
    for (std::uint32_t slot = 0; slot < corners.size(); ++slot) {
        const std::uint32_t fan = finder.FanOf(slot);
        // A triangle without area takes whatever its point has.
        if (IsZero(normals[fan]))
            continue;
        std::uint32_t& point = result.triangles[corners[slot]];
        // Looking at the last source only is enough: the corners of one point stand together.
        FanPoint& fanPoint = fanPoints[fan];
        if (fanPoint.source != point)
            fanPoint = {point, PointWithNormal(point, normals[fan])};
        point = fanPoint.point;
    }
}

/// The first fan of a point keeps its number, every other one gets a copy of it.
std::uint32_t PointSplitter::PointWithNormal(std::uint32_t source, const Vector& normal)
{
    const std::size_t first = 3 * std::size_t{source};
    if (!HasNormal(source)) {
        std::copy(normal.begin(), normal.end(), result.normals.begin() + static_cast<std::ptrdiff_t>(first));
        return source;
    }
    for (std::size_t axis = 0; axis < 3; ++axis) {
        result.positions.push_back(result.positions[first + axis]);
        result.normals.push_back(normal[axis]);
    }
    places.placeOfPoint.push_back(places.placeOfPoint[source]);
    result.sources.push_back(source);
    return static_cast<std::uint32_t>(result.sources.size() - 1);
}

void PointSplitter::GiveNormalsToTheRest()
{
    for (std::size_t point = 0; point < result.sources.size(); ++point) {
        if (!HasNormal(point))
            result.normals[3 * point + 2] = 1.0;
    }
}

bool PointSplitter::HasNormal(std::size_t point) const
{
    return result.normals[3 * point] != 0.0 || result.normals[3 * point + 1] != 0.0 ||
           result.normals[3 * point + 2] != 0.0;
}

} // namespace

PointsWithNormals MakeCreaseNormals(std::vector<double> positions, std::vector<std::uint32_t> triangles,
                                    double creaseAngleInDegrees)
{
    return PointSplitter(std::move(positions), std::move(triangles), creaseAngleInDegrees).Split();
}

} // namespace Orvel::Import
