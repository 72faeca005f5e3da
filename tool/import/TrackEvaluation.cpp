#include "tool/import/TrackEvaluation.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <cstddef>

namespace Orvel::Import
{

namespace
{

/// Two keys and the way between them.
struct Between
{
    std::size_t first = 0;
    std::size_t second = 0; ///< the same as `first` before the first key, behind the last one and on a key
    double fraction = 0.0;  ///< of the way, from 0 to below 1
    double duration = 0.0;  ///< seconds between the keys
};

Between FindKeys(const ImportedTrack& track, double seconds)
{
    const auto next = std::upper_bound(track.times.begin(), track.times.end(), seconds);
    const auto position = static_cast<std::size_t>(next - track.times.begin());
    if (position == 0)
        return {0, 0, 0.0, 0.0};
    const std::size_t previous = position - 1;
    if (next == track.times.end() || seconds == track.times[previous])
        return {previous, previous, 0.0, 0.0};
    const double duration = *next - track.times[previous];
    return {previous, position, (seconds - track.times[previous]) / duration, duration};
}

/// The numbers of a key, or of one of its tangents.
class KeyValues
{
public:
    KeyValues(const ImportedTrack& track, std::size_t width)
        : values(track.values.data())
        , stride(track.interpolation == Interpolation::CubicSpline ? 3 * width : width)
        , offset(track.interpolation == Interpolation::CubicSpline ? width : 0)
    {
        assert(track.values.size() == track.times.size() * stride && "a value, and perhaps tangents, for each key");
    }

    [[nodiscard]] const double* Value(std::size_t key) const { return values + key * stride + offset; }
    [[nodiscard]] const double* TangentBefore(std::size_t key) const { return values + key * stride; }
    [[nodiscard]] const double* TangentBehind(std::size_t key) const { return values + key * stride + 2 * offset; }

private:
    const double* values;
    std::size_t stride;
    std::size_t offset;
};

void EvaluateSpline(const KeyValues& keys, const Between& place, std::span<double> value)
{
    const double t = place.fraction;
    const double t2 = t * t;
    const double t3 = t2 * t;
    for (std::size_t i = 0; i < value.size(); ++i)
        value[i] = (2.0 * t3 - 3.0 * t2 + 1.0) * keys.Value(place.first)[i] +
                   place.duration * (t3 - 2.0 * t2 + t) * keys.TangentBehind(place.first)[i] +
                   (-2.0 * t3 + 3.0 * t2) * keys.Value(place.second)[i] +
                   place.duration * (t3 - t2) * keys.TangentBefore(place.second)[i];
}

/// Shoemake, "Animating rotation with quaternion curves", 1985.
Quaternion Slerp(const double* from, const double* to, double t)
{
    double cosine = from[0] * to[0] + from[1] * to[1] + from[2] * to[2] + from[3] * to[3];
    const double sign = cosine < 0.0 ? -1.0 : 1.0;
    cosine = std::min(std::abs(cosine), 1.0);
    double a = 1.0 - t;
    double b = t;
    // Nearly equal rotations: the division would lose all digits, and the straight line is as good.
    if (cosine < 1.0 - 1e-9) {
        const double angle = std::acos(cosine);
        a = std::sin(a * angle) / std::sin(angle);
        b = std::sin(b * angle) / std::sin(angle);
    }
    Quaternion q{};
    for (std::size_t i = 0; i < q.size(); ++i)
        q[i] = a * from[i] + sign * b * to[i];
    return UnitQuaternion(q);
}

std::array<double, 3> TripleAt(const ImportedTrack& track, const std::array<double, 3>& rest, double seconds)
{
    std::array<double, 3> value = rest;
    if (track.Moves())
        EvaluateTrack(track, seconds, value);
    return value;
}

} // namespace

void EvaluateTrack(const ImportedTrack& track, double seconds, std::span<double> value)
{
    const Between place = FindKeys(track, seconds);
    const KeyValues keys(track, value.size());
    if (place.first == place.second || track.interpolation == Interpolation::Step)
        std::copy_n(keys.Value(place.first), value.size(), value.begin());
    else if (track.interpolation == Interpolation::CubicSpline)
        EvaluateSpline(keys, place, value);
    else
        for (std::size_t i = 0; i < value.size(); ++i)
            value[i] = std::lerp(keys.Value(place.first)[i], keys.Value(place.second)[i], place.fraction);
}

Quaternion EvaluateRotation(const ImportedTrack& track, double seconds)
{
    if (track.interpolation == Interpolation::Linear) {
        const Between place = FindKeys(track, seconds);
        const KeyValues keys(track, 4);
        if (place.first != place.second)
            return Slerp(keys.Value(place.first), keys.Value(place.second), place.fraction);
    }
    Quaternion q{};
    EvaluateTrack(track, seconds, q);
    return UnitQuaternion(q);
}

COrvelMatrix MatrixAt(const ImportedNodeChannel& channel, double seconds)
{
    COrvelMatrix matrix;
    for (const ImportedFactor& factor : channel.factors)
        matrix *= factor.Moves() ? ComposeTransform(TripleAt(factor.translation, factor.rest.translation, seconds),
                                                    factor.rotation.Moves() ? EvaluateRotation(factor.rotation, seconds)
                                                                            : factor.rest.rotation,
                                                    TripleAt(factor.scale, factor.rest.scale, seconds))
                                 : factor.fixed;
    return matrix;
}

} // namespace Orvel::Import
