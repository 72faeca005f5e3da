#pragma once

#include <cstdint>

namespace prc
{

/// The index that names nothing: no style, no tessellation.
inline constexpr std::uint32_t nullIndex = 4294967295U;

} // namespace prc
