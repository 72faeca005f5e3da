#pragma once

#include "platform/prcfile/ByteBuffer.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace prc
{

enum class UnpackingResult
{
    Done,
    Damaged, ///< not a zlib stream, one that ends early, or one with a wrong checksum.
    OverTheLimit
};

/// A zlib stream unpacked.
struct UnpackedStream
{
    UnpackingResult result = UnpackingResult::Damaged;
    std::size_t storedBytes = 0;   ///< taken from the input; what follows is not looked at.
    std::size_t unpackedBytes = 0; ///< in front of the zeros.
    ByteBuffer bytes;              ///< the data, and BitReader::paddingBytes zeros.

    [[nodiscard]] std::span<const std::uint8_t> view() const { return bytes.view().first(unpackedBytes); }
};

/// Unpacks the zlib stream that `input` begins with.
///
/// @param limit in bytes: more is not unpacked, and no more memory than about twice what the stream holds is taken.
/// @throws std::bad_alloc
[[nodiscard]] UnpackedStream unpackStream(std::span<const std::uint8_t> input, std::uint64_t limit);

} // namespace prc
