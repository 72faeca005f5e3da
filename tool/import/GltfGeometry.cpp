#include "tool/import/GltfGeometry.h"

#include "tool/import/ImportReport.h"

#include <tiny_gltf.h>

#include <algorithm>
#include <numeric>
#include <string>

namespace Orvel::Import
{

namespace
{

void AppendStrip(const std::vector<std::uint32_t>& indices, std::vector<std::uint32_t>& triangles)
{
    for (std::size_t i = 0; i + 2 < indices.size(); ++i) {
        const std::size_t odd = i % 2;
        triangles.insert(triangles.end(), {indices[i], indices[i + 1 + odd], indices[i + 2 - odd]});
    }
}

void AppendFan(const std::vector<std::uint32_t>& indices, std::vector<std::uint32_t>& triangles)
{
    for (std::size_t i = 0; i + 2 < indices.size(); ++i)
        triangles.insert(triangles.end(), {indices[i + 1], indices[i + 2], indices[0]});
}

} // namespace

std::vector<std::uint32_t> CountingUp(std::uint32_t count)
{
    std::vector<std::uint32_t> numbers(count);
    std::iota(numbers.begin(), numbers.end(), 0U);
    return numbers;
}

void CheckIndices(const std::vector<std::uint32_t>& indices, std::size_t pointCount)
{
    const auto outside =
        std::find_if(indices.begin(), indices.end(), [&](std::uint32_t index) { return index >= pointCount; });
    if (outside != indices.end())
        throw ImportError("index " + std::to_string(*outside) + " is out of range: it has " +
                          std::to_string(pointCount) + " points");
}

std::size_t TrianglesFrom(int mode, std::vector<std::uint32_t>& indices, std::vector<std::uint32_t>& triangles)
{
    if (mode == TINYGLTF_MODE_TRIANGLES) {
        const std::size_t unused = indices.size() % 3;
        indices.resize(indices.size() - unused);
        triangles.swap(indices);
        indices.clear();
        return unused;
    }
    if (indices.size() < 3)
        return indices.size();
    triangles.reserve(3 * (indices.size() - 2));
    if (mode == TINYGLTF_MODE_TRIANGLE_STRIP)
        AppendStrip(indices, triangles);
    else
        AppendFan(indices, triangles);
    return 0;
}

} // namespace Orvel::Import
