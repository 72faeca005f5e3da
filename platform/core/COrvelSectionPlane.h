#pragma once

#include "platform/core/COrvelNormal.h"

namespace Orvel
{

/// A plane that cuts a scene open: what lies on the side of its direction is left out.
class COrvelSectionPlane
{
public:
    COrvelSectionPlane() = default;

    /// @param axis a point of the plane and the direction across it; world coordinates.
    explicit COrvelSectionPlane(const COrvelNormal& axis)
        : plane(axis)
    {}

    [[nodiscard]] const COrvelNormal& Plane() const { return plane; }

private:
    COrvelNormal plane;
};

} // namespace Orvel
