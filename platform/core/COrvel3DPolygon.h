#pragma once

#include "platform/core/Types.h"

#include <array>
#include <cassert>
#include <cstddef>
#include <span>

namespace Orvel
{

/// The corners of one polygon, as indices of vertices. A triangle or quadrangle holds them itself; a larger polygon
/// refers to its table and is valid until that table changes.
class COrvel3DPolygon
{
public:
    COrvel3DPolygon(uint32 first, uint32 second, uint32 third)
        : own{first, second, third}
        , cornerCount(3)
    {}
    /// @param corners at least three.
    explicit COrvel3DPolygon(std::span<const uint32> corners)
        : cornerCount(corners.size())
    {
        assert(corners.size() >= 3);
        if (corners.size() > own.size()) {
            distant = corners.data();
            return;
        }
        for (std::size_t corner = 0; corner < corners.size(); ++corner)
            own[corner] = corners[corner];
    }

    std::size_t Count() const { return cornerCount; }
    /// @param corner below Count(), which is at least 3.
    /// @return where that corner's vertex index stands; never null.
    const uint32* At(std::size_t corner) const { return (distant ? distant : own.data()) + corner; }

private:
    std::array<uint32, 4> own{};
    const uint32* distant = nullptr;
    std::size_t cornerCount;
};

} // namespace Orvel
