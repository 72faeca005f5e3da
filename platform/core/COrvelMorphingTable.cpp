#include "platform/core/COrvelMorphingTable.h"

#include "platform/core/COrvelGeometry.h"

#include <algorithm>

namespace Orvel
{

COrvelMorphingTable::Target* COrvelMorphingTable::Find(const COrvelGeometry* geometry)
{
    if (!geometry)
        return nullptr;
    const auto found = std::find_if(targets.begin(), targets.end(),
                                    [geometry](const Target& target) { return target.geometry == geometry->ID(); });
    return found == targets.end() ? nullptr : &*found;
}

void COrvelMorphingTable::AddMorphGeometry(const COrvelGeometry* geometry)
{
    if (geometry && !Find(geometry))
        targets.push_back({geometry->ID(), 0.0});
}

void COrvelMorphingTable::SetMorphWeight(const COrvelGeometry* geometry, double weight)
{
    if (Target* const target = Find(geometry))
        target->weight = weight;
}

double COrvelMorphingTable::MorphWeight(const COrvelGeometry* geometry)
{
    const Target* const target = Find(geometry);
    return target ? target->weight : 0.0;
}

std::vector<COrvelID> COrvelMorphingTable::ListAllMorphGeometries() const
{
    std::vector<COrvelID> ids;
    ids.reserve(targets.size());
    for (const Target& target : targets)
        ids.push_back(target.geometry);
    return ids;
}

} // namespace Orvel
