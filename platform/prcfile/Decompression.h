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
    std::uint64_t room = 0; ///< bytes of the last attempt: unpacking, failed or not, has cost no more than twice this.
    ByteBuffer bytes;       ///< the data, and BitReader::paddingBytes zeros.

    [[nodiscard]] std::span<const std::uint8_t> view() const { return bytes.view().first(unpackedBytes); }
};

/// Unpacks the zlib stream that `input` begins with.
///
/// @param likelySize how much of the input the stream seems to take up; the first attempt is made for that.
/// @param limit      in bytes: more is not unpacked.
/// @throws std::bad_alloc
[[nodiscard]] UnpackedStream unpackStream(std::span<const std::uint8_t> input, std::uint64_t likelySize,
                                          std::uint64_t limit);

} // namespace prc
