#pragma once

#include "platform/prcfile/ByteBuffer.h"

#include <cstdint>
#include <span>

namespace prc
{

/// Compresses a section into one zlib stream.
///
/// @throws std::bad_alloc
[[nodiscard]] ByteBuffer compressSection(std::span<const std::uint8_t> bytes);

} // namespace prc
