#include "platform/prcfile/Decompression.h"

#include "platform/prcfile/BitReader.h"

#include <algorithm>
#include <cstring>
#include <libdeflate.h>
#include <memory>
#include <new>

namespace prc
{

namespace
{

struct FreeDecompressor
{
    void operator()(libdeflate_decompressor* decompressor) const { libdeflate_free_decompressor(decompressor); }
};

/// Sections hold two to four times their stored size as a rule; where they hold more, the next attempt has four times
/// the room. Deflate expands 1032 times at most.
constexpr std::uint64_t firstGuess = 4;
constexpr std::uint64_t growth = 4;
constexpr std::uint64_t smallestRoom = 256;
constexpr std::uint64_t largestExpansion = 1032;

} // namespace

UnpackedStream unpackStream(std::span<const std::uint8_t> input, std::uint64_t likelySize, std::uint64_t limit)
{
    const std::unique_ptr<libdeflate_decompressor, FreeDecompressor> decompressor(libdeflate_alloc_decompressor());
    if (!decompressor)
        throw std::bad_alloc();
    const std::uint64_t most = std::min<std::uint64_t>(limit, input.size() * largestExpansion + smallestRoom);
    std::uint64_t room = std::min(most, std::min<std::uint64_t>(likelySize, input.size()) * firstGuess + smallestRoom);
    UnpackedStream stream;
    while (true) {
        stream.room = room;
        stream.bytes = ByteBuffer();
        stream.bytes.resize(static_cast<std::size_t>(room) + BitReader::paddingBytes);
        const libdeflate_result result =
            libdeflate_zlib_decompress_ex(decompressor.get(), input.data(), input.size(), stream.bytes.data(),
                                          static_cast<std::size_t>(room), &stream.storedBytes, &stream.unpackedBytes);
        if (result == LIBDEFLATE_SUCCESS)
            break;
        if (result != LIBDEFLATE_INSUFFICIENT_SPACE || room == most) {
            stream.result =
                result != LIBDEFLATE_INSUFFICIENT_SPACE ? UnpackingResult::Damaged : UnpackingResult::OverTheLimit;
            stream.bytes = ByteBuffer();
            stream.unpackedBytes = 0;
            stream.storedBytes = 0;
            return stream;
        }
        room = std::min(most, room * growth);
    }
    stream.bytes.resize(stream.unpackedBytes + BitReader::paddingBytes);
    std::memset(stream.bytes.data() + stream.unpackedBytes, 0, BitReader::paddingBytes);
    stream.result = UnpackingResult::Done;
    return stream;
}

} // namespace prc
