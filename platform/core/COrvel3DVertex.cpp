#include "platform/core/COrvel3DVertex.h"

#include "platform/core/COrvelArchiveBase.h"
#include "platform/core/COrvelMatrix.h"

#include <algorithm>

namespace Orvel
{

COrvel3DVertex COrvel3DVertex::Normalised() const
{
    // Scaled to its largest coordinate first: neither squares of huge numbers nor those of tiny ones lose the
    // direction.
    const double largest = std::max({std::abs(x), std::abs(y), std::abs(z)});
    if (!(largest > 0.0) || !std::isfinite(x) || !std::isfinite(y) || !std::isfinite(z))
        return *this;
    const COrvel3DVertex scaled(x / largest, y / largest, z / largest);
    const double length = std::sqrt(scaled.Dot(scaled));
    return {scaled.x / length, scaled.y / length, scaled.z / length};
}

COrvel3DVertex COrvel3DVertex::AnyPerpendicular() const
{
    const COrvel3DVertex unit = Normalised();
    if (!(std::abs(unit.Dot(unit) - 1.0) < 0.5)) // zero or not finite
        return {1.0, 0.0, 0.0};
    // Crossed with the axis that it has least in common with, so the product is never short.
    const double smallest = std::min({std::abs(unit.x), std::abs(unit.y), std::abs(unit.z)});
    if (smallest == std::abs(unit.x))
        return unit.Cross({1.0, 0.0, 0.0}).Normalised();
    if (smallest == std::abs(unit.y))
        return unit.Cross({0.0, 1.0, 0.0}).Normalised();
    return unit.Cross({0.0, 0.0, 1.0}).Normalised();
}

void COrvel3DVertex::ModifyByTransform(const COrvelMatrix& matrix)
{
    *this = matrix * *this;
}

bool COrvel3DVertex::ArchiveReadWrite(COrvelArchiveBase& archive)
{
    COrvel3DVertex archived = *this;
    if (!archive.ReadWrite(archived.x, archived.y, archived.z))
        return false;
    *this = archived;
    return true;
}

} // namespace Orvel
