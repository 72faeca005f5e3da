#pragma once

#include "platform/core/COrvel3DVertex.h"
#include "platform/core/Export.h"

namespace Orvel
{

class COrvelArchiveBase;

/// An axis: a base point and a direction of any length, zero included.
class ORVEL_CORE_API COrvelNormal
{
public:
    COrvelNormal() = default;
    COrvelNormal(const COrvel3DVertex& basePoint, const COrvel3DVertex& axis)
        : point(basePoint)
        , direction(axis)
    {}

    [[nodiscard]] const COrvel3DVertex& Point() const { return point; }
    [[nodiscard]] const COrvel3DVertex& Direction() const { return direction; }
    void SetPoint(const COrvel3DVertex& value) { point = value; }
    void SetDirection(const COrvel3DVertex& value) { direction = value; }

    [[nodiscard]] bool operator==(const COrvelNormal&) const = default;

    /// Point, then direction.
    bool ArchiveReadWrite(COrvelArchiveBase& archive);

private:
    COrvel3DVertex point;
    COrvel3DVertex direction;
};

} // namespace Orvel
