#pragma once

#include "tool/render/Picture.h"

#include <cstdint>
#include <vector>

namespace Orvel::Cli
{

/// The picture as the bytes of a PNG file: with an alpha channel only when some pixel is not opaque.
///
/// @throws std::runtime_error when the encoder refuses it; std::bad_alloc.
[[nodiscard]] std::vector<std::uint8_t> EncodePng(const Render::Picture& picture);

} // namespace Orvel::Cli
