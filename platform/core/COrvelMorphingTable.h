#pragma once

#include "platform/core/COrvelID.h"
#include "platform/core/Export.h"

#include <vector>

namespace Orvel
{

class COrvelGeometry;

/// The target shapes that an object's geometry is blended with, and their weights, in the order in which the targets
/// were added.
class ORVEL_CORE_API COrvelMorphingTable
{
public:
    /// Adds a target with weight 0. Null and a target that is there already are ignored.
    void AddMorphGeometry(const COrvelGeometry* geometry);
    /// Ignored for a geometry that is no target.
    void SetMorphWeight(const COrvelGeometry* geometry, double weight);
    /// 0 for a geometry that is no target.
    double MorphWeight(const COrvelGeometry* geometry);
    /// Ids of the targets, in the order in which they were added; one may outlive its geometry.
    std::vector<COrvelID> ListAllMorphGeometries() const;
    bool IsEmpty() const { return targets.empty(); }

private:
    struct Target
    {
        COrvelID geometry;
        double weight = 0.0;
    };

    Target* Find(const COrvelGeometry* geometry);

    std::vector<Target> targets;
};

} // namespace Orvel
