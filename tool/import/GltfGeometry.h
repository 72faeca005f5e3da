#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace Orvel::Import
{

/// 0, 1, 2, ... count - 1.
[[nodiscard]] std::vector<std::uint32_t> CountingUp(std::uint32_t count);

/// @throws ImportError naming the first index of `pointCount` or more.
void CheckIndices(const std::vector<std::uint32_t>& indices, std::size_t pointCount);

/// Triangles of a list, strip or fan, in the order and with the winding that glTF 2.0 (3.7.2.1) gives them.
///
/// @param mode    TINYGLTF_MODE_TRIANGLES, _TRIANGLE_STRIP or _TRIANGLE_FAN.
/// @param indices emptied for lists, which need no copy.
/// @return number of indices at the end that make no triangle.
[[nodiscard]] std::size_t TrianglesFrom(int mode, std::vector<std::uint32_t>& indices,
                                        std::vector<std::uint32_t>& triangles);

} // namespace Orvel::Import
