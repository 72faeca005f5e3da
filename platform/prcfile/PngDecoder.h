#pragma once

#include "platform/prcfile/PRCPicture.h"

#include <cstdint>
#include <span>

namespace prc
{

/// Decodes a PNG file to 8 bits a component, palettes and small depths expanded.
///
/// @return without pixels and with an error when the file is damaged or its pixels exceed the limit.
/// @throws std::bad_alloc
[[nodiscard]] Model::DecodedPicture decodePng(std::span<const std::uint8_t> file, std::uint64_t limitInBytes);

} // namespace prc
