#pragma once

#include "platform/prcfile/Export.h"
#include "platform/prcfile/PRCModel.h"

#include <cstdint>
#include <filesystem>
#include <span>

namespace prc
{

/// What a file may make the reader take up. A section that would exceed a limit is refused with a finding that names
/// the limit.
struct ReadLimits
{
    std::uint64_t unpackedBytes = std::uint64_t{1} << 30; ///< of all compressed sections together.
    std::uint64_t decodedBytes = std::uint64_t{4} << 30;  ///< of what is kept in the model.

    /// Keeps what a small file may take up in proportion: its sections unpack to no more than this many times the size
    /// of the file and 16 MiB, and sixteen times as much is kept in the model. Real models unpack to 2 to 50 times
    /// their size.
    std::uint64_t expansion = 256;

    std::uint32_t fileStructures = 1000;
};

/// Reads a PRC file from memory.
///
/// Nothing that stands in the file is believed without a check. What is wrong or unknown ends the section in which it
/// stands and leaves an error among the findings; all that was read before it, and the other sections, are delivered. A
/// file whose main header cannot be read gives a model without structures. Negative zero is read as zero, all other
/// numbers as they were written.
///
/// @param file needed only during the call.
/// @throws std::bad_alloc
[[nodiscard]] PRCFILE_API Model::PRCModel readPRC(std::span<const std::uint8_t> file, const ReadLimits& limits = {});

/// Reads a PRC file from disk, as above.
///
/// @throws std::system_error when the file cannot be opened or read; std::bad_alloc.
[[nodiscard]] PRCFILE_API Model::PRCModel readPRCFile(const std::filesystem::path& path, const ReadLimits& limits = {});

} // namespace prc
