#pragma once

#include "platform/prcfile/PRC3DTess.h"

#include <cstdint>
#include <span>

namespace prc
{

/// Refuses what must not get into a file: a single bad index makes viewers show nothing at all.
///
/// @param styleCount number of styles that a face may name.
/// @throws std::out_of_range for indices and styles outside their arrays; std::invalid_argument for the rest: see
///         oPRCFile::add3DTess.
void checkTessellation(const PRC3DTess& tess, std::uint32_t styleCount);

/// Whether all numbers are neither infinite nor NaN.
[[nodiscard]] bool allFinite(std::span<const double> numbers);

} // namespace prc
