#pragma once

#include "platform/prcfile/PRCTessellation.h"
#include "tool/convert/MeshScene.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace Orvel::Convert
{

/// Gathers the faces of a tessellation that are drawn in one material.
class PrimitiveBuilder
{
public:
    /// @param source not owned; must outlive the builder.
    explicit PrimitiveBuilder(const prc::Model::Tessellation& source)
        : tessellation(source)
    {}

    void Add(const prc::Model::Face& face);

    /// Joins equal corners to points.
    ///
    /// @param leftOut is raised by the number of triangles that have a coordinate beyond the range of single precision,
    ///                which are left out.
    [[nodiscard]] Primitive Build(std::size_t& leftOut);

private:
    void DropUnusableTriangles(std::size_t& leftOut);

    const prc::Model::Tessellation& tessellation;
    prc::Model::TriangleCorners corners;
    std::vector<std::uint8_t> colours; ///< red, green, blue, opacity of all faces so far
};

} // namespace Orvel::Convert
