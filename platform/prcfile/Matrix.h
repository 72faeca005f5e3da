#pragma once

#include <array>

namespace prc
{

/// An affine transform, row by row, translation at positions 3, 7 and 11.
using Matrix = std::array<double, 16>;

inline constexpr Matrix identityMatrix = {1.0, 0.0, 0.0, 0.0, 0.0, 1.0, 0.0, 0.0,
                                          0.0, 0.0, 1.0, 0.0, 0.0, 0.0, 0.0, 1.0};

} // namespace prc
