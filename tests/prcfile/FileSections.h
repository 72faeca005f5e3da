#pragma once

#include "platform/prcfile/UniqueId.h"

#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace prc::Test
{

using Bytes = std::vector<std::uint8_t>;

/// A PRC file taken apart: its sections as they are before they are compressed. What a test changes in them is put
/// together again with headers and checksums that are right.
struct FileSections
{
    struct Structure
    {
        UniqueId id{};
        std::vector<Bytes> pictures;
        std::array<Bytes, 5> sections; ///< globals, tree, tessellation, geometry, extra geometry.
    };

    std::vector<Structure> structures;
    Bytes model;

    static const Bytes emptyGeometry;
    static const Bytes emptyExtraGeometry;

    /// @param file one that the library reads without errors.
    static FileSections Of(std::span<const std::uint8_t> file);

    [[nodiscard]] Bytes File() const;
};

} // namespace prc::Test
