#include "platform/prcfile/Compression.h"

#include <cassert>
#include <libdeflate.h>
#include <memory>
#include <new>

namespace prc
{

namespace
{

/// Up to a size that takes half a second, sections are compressed well; beyond, the time counts more than the last
/// fifth of the size.
int levelFor(std::size_t size)
{
    constexpr std::size_t largestCompressedWell = std::size_t{32} << 20;
    constexpr int good = 6;
    constexpr int fastest = 1;
    return size <= largestCompressedWell ? good : fastest;
}

struct FreeCompressor
{
    void operator()(libdeflate_compressor* compressor) const { libdeflate_free_compressor(compressor); }
};

} // namespace

ByteBuffer compressSection(std::span<const std::uint8_t> bytes)
{
    const std::unique_ptr<libdeflate_compressor, FreeCompressor> compressor(
        libdeflate_alloc_compressor(levelFor(bytes.size())));
    if (!compressor)
        throw std::bad_alloc();
    ByteBuffer compressed(libdeflate_zlib_compress_bound(compressor.get(), bytes.size()));
    const std::size_t size =
        libdeflate_zlib_compress(compressor.get(), bytes.data(), bytes.size(), compressed.data(), compressed.size());
    assert(size > 0 && "the bound leaves room for every input");
    compressed.resize(size);
    return compressed;
}

} // namespace prc
