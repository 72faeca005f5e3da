#include "platform/core/COrvelBasicPath.h"

#include "platform/core/OrthonormalFrame.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <utility>

namespace Orvel
{

namespace
{

// Carrying a frame along a smooth curve errs with the fourth power of the step. Even on curves that turn back on
// themselves in every span, 16 steps a span stay within 1e-4 radians of 512.
constexpr int StepsPerSmoothSpan = 16;

// Lengths up to this part of the whole curve's size count as none.
constexpr double NoLength = 1e-9;

double Extent(const std::vector<COrvel3DVertex>& points)
{
    double extent = 0.0;
    for (const COrvel3DVertex& point : points)
        extent = std::max(extent, (point - points.front()).Length());
    return extent;
}

COrvel3DVertex Reflected(const COrvel3DVertex& vector, const COrvel3DVertex& normal)
{
    const double square = normal.Dot(normal);
    return square > 0.0 ? vector - normal * (2.0 * normal.Dot(vector) / square) : vector;
}

// Turns `vector`, which is across the unit `axis`.
COrvel3DVertex TurnedAbout(const COrvel3DVertex& axis, const COrvel3DVertex& vector, double angle)
{
    return vector * std::cos(angle) + axis.Cross(vector) * std::sin(angle);
}

// Carries a second direction to a place whose tangent differs and that lies `chord` away, without turning it about the
// tangent. The double reflection method: Wang, Juettler, Zheng and Liu, "Computation of Rotation Minimizing Frames",
// 2008.
COrvel3DVertex CarriedSecond(const COrvel3DVertex& second, const COrvel3DVertex& tangentFrom,
                             const COrvel3DVertex& tangentTo, const COrvel3DVertex& chord)
{
    // Turning on the spot is the same with the tangent in place of the chord.
    const COrvel3DVertex normal = chord == COrvel3DVertex() ? tangentFrom : chord.Normalised();
    const COrvel3DVertex tangentBetween = Reflected(tangentFrom, normal);
    const COrvel3DVertex carried = Reflected(Reflected(second, normal), tangentTo - tangentBetween);
    return MakeOrthonormalFrame(tangentTo, carried)[1];
}

// The two control polygon points that a span's curve is blended from at the end of the de Boor scheme.
struct LastPair
{
    COrvel3DVertex before;
    COrvel3DVertex after;
    double share; // of `after`
};

LastPair DeBoor(const std::vector<COrvel3DVertex>& points, int degree, bool periodic, int spans, double place)
{
    const int span = std::clamp(static_cast<int>(place), 0, spans - 1);
    const auto knot = [=](int index) {
        return static_cast<double>(periodic ? index - degree : std::clamp(index - degree, 0, spans));
    };
    const auto controlPoint = [&](int index) { return points[static_cast<std::size_t>(index) % points.size()]; };
    const auto share = [&](int j, int round) {
        const double start = knot(span + j);
        return (place - start) / (knot(span + j + degree + 1 - round) - start);
    };

    std::array<COrvel3DVertex, COrvelBasicPath::MaximumDegree + 1> row;
    const auto at = [&row](int j) -> COrvel3DVertex& { return row[static_cast<std::size_t>(j)]; };
    for (int j = 0; j <= degree; ++j)
        at(j) = controlPoint(span + j);
    for (int round = 1; round < degree; ++round)
        for (int j = degree; j >= round; --j) {
            const double part = share(j, round);
            at(j) = at(j - 1) * (1.0 - part) + at(j) * part;
        }
    return {at(degree - 1), at(degree), share(degree, degree)};
}

} // namespace

COrvelBasicPath COrvelBasicPath::Polyline(std::vector<COrvel3DVertex> points, bool closed)
{
    return COrvelBasicPath(std::move(points), 1, closed);
}

COrvelBasicPath COrvelBasicPath::BSpline(std::vector<COrvel3DVertex> controlPoints, int degree, bool closed)
{
    return COrvelBasicPath(std::move(controlPoints), degree, closed);
}

COrvelBasicPath::COrvelBasicPath(std::vector<COrvel3DVertex> points, int wantedDegree, bool wantedClosed)
    : controlPoints(std::move(points))
{
    const int count = static_cast<int>(controlPoints.size());
    periodic = wantedClosed && count > 1;
    const int highest = periodic ? MaximumDegree : std::clamp(count - 1, 1, MaximumDegree);
    degree = std::clamp(wantedDegree, 1, highest);
    spans = periodic ? count : std::max(count - degree, 0);
    if (spans == 0)
        return;
    const double extent = Extent(controlPoints);
    standstill = NoLength * extent;
    const bool endsMeet = (controlPoints.back() - controlPoints.front()).Length() <= standstill;
    closed = periodic || (endsMeet && extent > 0.0);
    BuildSeconds();
}

double COrvelBasicPath::PlaceAt(double u) const
{
    if (!(u > 0.0) || (closed && u >= 1.0))
        return 0.0;
    return std::min(u, 1.0) * spans;
}

COrvel3DVertex COrvelBasicPath::PointAt(double place) const
{
    if (spans == 0)
        return controlPoints.empty() ? COrvel3DVertex() : controlPoints.front();
    const LastPair pair = DeBoor(controlPoints, degree, periodic, spans, place);
    return pair.before * (1.0 - pair.share) + pair.after * pair.share;
}

COrvel3DVertex COrvelBasicPath::DerivativeAt(double place) const
{
    const LastPair pair = DeBoor(controlPoints, degree, periodic, spans, place);
    return (pair.after - pair.before) * degree;
}

COrvel3DVertex COrvelBasicPath::TangentAt(double place) const
{
    const COrvel3DVertex atPlace = DerivativeAt(place);
    if (atPlace.Length() > standstill)
        return atPlace.Normalised();
    // Control points that coincide stop the curve. The nearest movement counts, the one ahead before the one behind.
    constexpr int shortest = -10;
    for (int power = shortest; std::ldexp(1.0, power) <= spans; ++power) {
        const double step = std::ldexp(1.0, power);
        for (const double other : {place + step, place - step}) {
            if (other < 0.0 || other > spans)
                continue;
            const COrvel3DVertex derivative = DerivativeAt(other);
            if (derivative.Length() > standstill)
                return derivative.Normalised();
        }
    }
    return {1.0, 0.0, 0.0};
}

COrvel3DVertex COrvelBasicPath::CarrySecond(const COrvel3DVertex& second, double from, double to) const
{
    return CarriedSecond(second, TangentAt(from), TangentAt(to), PointAt(to) - PointAt(from));
}

void COrvelBasicPath::BuildSeconds()
{
    const int stepsPerSpan = degree == 1 ? 1 : StepsPerSmoothSpan;
    const int steps = spans * stepsPerSpan;
    const auto place = [=](int step) { return static_cast<double>(step) / stepsPerSpan; };

    const COrvel3DVertex start = TangentAt(0.0);
    seconds.reserve(static_cast<std::size_t>(steps));
    seconds.push_back(start.AnyPerpendicular());
    for (int step = 1; step < steps; ++step)
        seconds.push_back(CarrySecond(seconds.back(), place(step - 1), place(step)));
    if (!closed)
        return;
    // Once round, the frame has turned against the one that it began with.
    const COrvel3DVertex& first = seconds.front();
    const double end = spans;
    const COrvel3DVertex last = CarrySecond(seconds.back(), place(steps - 1), end);
    const COrvel3DVertex arrived = CarriedSecond(last, TangentAt(end), start, {});
    closingTurn = std::atan2(start.Dot(arrived.Cross(first)), arrived.Dot(first));
}

COrvel3DVertex COrvelBasicPath::Point(double u, int /*flag*/) const
{
    return PointAt(PlaceAt(u));
}

COrvel3DVertex COrvelBasicPath::FirstDirection(double u, int /*flag*/) const
{
    return spans == 0 ? COrvel3DVertex(1.0, 0.0, 0.0) : TangentAt(PlaceAt(u));
}

COrvel3DVertex COrvelBasicPath::SecondDirection(double u, int /*flag*/) const
{
    if (spans == 0)
        return {0.0, 1.0, 0.0};
    const double place = PlaceAt(u);
    const int steps = static_cast<int>(seconds.size());
    const int stepsPerSpan = steps / spans;
    const int step = std::clamp(static_cast<int>(place * stepsPerSpan), 0, steps - 1);
    const double stepPlace = static_cast<double>(step) / stepsPerSpan;
    const COrvel3DVertex second = CarrySecond(seconds[static_cast<std::size_t>(step)], stepPlace, place);
    return TurnedAbout(TangentAt(place), second, closingTurn * place / spans);
}

} // namespace Orvel
