#include "platform/prcfile/ContentDigest.h"

#include <algorithm>
#include <array>
#include <new>
#include <xxhash.h>

namespace prc
{

namespace
{

/// Highest byte first, so that the bytes hashed do not depend on the machine.
std::array<std::uint8_t, 8> bytesOf(std::uint64_t number)
{
    std::array<std::uint8_t, 8> bytes{};
    for (std::size_t k = 0; k < bytes.size(); ++k)
        bytes[k] = static_cast<std::uint8_t>(number >> (56 - 8 * k) & 0xFF);
    return bytes;
}

} // namespace

ContentDigest::ContentDigest()
    : state(XXH3_createState())
{
    if (state == nullptr)
        throw std::bad_alloc();
    XXH3_128bits_reset(state);
}

ContentDigest::~ContentDigest()
{
    XXH3_freeState(state);
}

void ContentDigest::add(std::span<const std::uint8_t> bytes)
{
    add(std::uint64_t{bytes.size()});
    XXH3_128bits_update(state, bytes.data(), bytes.size());
}

void ContentDigest::add(std::uint64_t number)
{
    const std::array<std::uint8_t, 8> bytes = bytesOf(number);
    XXH3_128bits_update(state, bytes.data(), bytes.size());
}

UniqueId ContentDigest::id(std::uint32_t purpose) const
{
    XXH128_canonical_t content;
    XXH128_canonicalFromHash(&content, XXH3_128bits_digest(state));
    const XXH128_hash_t hash = XXH3_128bits_withSeed(&content, sizeof content, purpose);

    UniqueId id = {static_cast<std::uint32_t>(hash.high64 >> 32), static_cast<std::uint32_t>(hash.high64),
                   static_cast<std::uint32_t>(hash.low64 >> 32), static_cast<std::uint32_t>(hash.low64)};
    // Readers take an id of zeros for "none".
    std::ranges::replace(id, 0U, 1U);
    return id;
}

} // namespace prc
