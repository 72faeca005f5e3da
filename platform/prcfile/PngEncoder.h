#pragma once

#include "platform/prcfile/Export.h"
#include "platform/prcfile/PictureStore.h"

#include <cstdint>
#include <vector>

namespace prc
{

/// Encodes a picture as a PNG file: 8 bits a component, colour type 2 or 6, top row first, not interlaced.
///
/// @param picture at least one pixel; its rows are turned over.
/// @throws std::runtime_error with the message of the encoder when it refuses the picture; std::bad_alloc.
[[nodiscard]] PRCFILE_API std::vector<std::uint8_t> encodePng(const Picture& picture);

} // namespace prc
