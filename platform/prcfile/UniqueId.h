#pragma once

#include <array>
#include <cstdint>

namespace prc
{

/// Names a file, a file structure or an application: four numbers, not all zero in a valid file.
using UniqueId = std::array<std::uint32_t, 4>;

} // namespace prc
