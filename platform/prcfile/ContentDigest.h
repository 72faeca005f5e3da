#pragma once

#include "platform/prcfile/UniqueId.h"

#include <cstdint>
#include <span>

struct XXH3_state_s;

namespace prc
{

/// Derives ids from content: equal content gives equal ids, on every machine, and different content different ones.
class ContentDigest
{
public:
    ContentDigest(); ///< @throws std::bad_alloc
    ~ContentDigest();

    ContentDigest(const ContentDigest&) = delete;
    ContentDigest& operator=(const ContentDigest&) = delete;

    /// Adds the next piece; where pieces begin and end counts as content.
    void add(std::span<const std::uint8_t> bytes);

    void add(std::uint64_t number);

    /// The id of everything added so far for one purpose; never all zero.
    [[nodiscard]] UniqueId id(std::uint32_t purpose) const;

private:
    XXH3_state_s* state;
};

} // namespace prc
