#include "tool/import/ImportedTrackChecks.h"

#include "tool/import/ImportReport.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <string>

namespace Orvel::Import
{

void CheckTrack(const ImportedTrack& track)
{
    const auto isNotFinite = [](double number) { return !std::isfinite(number); };
    if (const auto wrong = std::find_if(track.times.begin(), track.times.end(), isNotFinite);
        wrong != track.times.end())
        throw ImportError("the time of key " + std::to_string(wrong - track.times.begin()) + " is not finite");
    const auto late = std::is_sorted_until(track.times.begin(), track.times.end());
    if (late != track.times.end())
        throw ImportError("its keys are out of order: key " + std::to_string(late - track.times.begin()) +
                          " comes before the one in front of it");
    if (std::any_of(track.values.begin(), track.values.end(), isNotFinite))
        throw ImportError("a value of its keys is not finite");
}

void MakeRotationsUnit(ImportedTrack& track)
{
    const bool hasTangents = track.interpolation == Interpolation::CubicSpline;
    const std::size_t stride = hasTangents ? 12 : 4;
    for (std::size_t i = hasTangents ? 4 : 0; i + 4 <= track.values.size(); i += stride) {
        const Quaternion unit =
            UnitQuaternion({track.values[i], track.values[i + 1], track.values[i + 2], track.values[i + 3]});
        std::copy(unit.begin(), unit.end(), track.values.begin() + static_cast<std::ptrdiff_t>(i));
    }
}

} // namespace Orvel::Import
