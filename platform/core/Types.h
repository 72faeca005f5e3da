#pragma once

#include <cstdint>

namespace Orvel
{

/// The unsigned 32-bit number of indices and counts in tables and files.
using uint32 = std::uint32_t;

} // namespace Orvel
