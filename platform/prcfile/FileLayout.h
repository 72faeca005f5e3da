#pragma once

#include "platform/prcfile/UniqueId.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

/// What stands where in a file with one file structure:
///
///     main header                            not compressed
///     file structure header and pictures     not compressed
///     globals, tree, tessellation,
///     geometry, extra geometry               one zlib stream each
///     model file                             one zlib stream
///
/// Everything follows without a gap. Numbers outside the compressed sections are 32-bit, low byte first.
namespace prc
{

inline constexpr std::array<std::uint8_t, 3> signature = {'P', 'R', 'C'};

/// The versions written, of the format (for reading) and of the writer. Viewers refuse higher numbers for reading.
inline constexpr std::uint32_t formatVersion = 8016;

/// Sections of a file structure, in the order of the file and of the offsets in the main header.
enum class Section : std::size_t
{
    Header,
    Globals,
    Tree,
    Tessellation,
    Geometry,
    ExtraGeometry
};
inline constexpr std::size_t sectionCount = 6;

/// Sizes of what follows the main header, in bytes.
struct FileParts
{
    std::vector<std::uint64_t> pictures;                              ///< PNG files, in the order of the globals.
    std::array<std::uint64_t, sectionCount - 1> compressedSections{}; ///< globals to extra geometry.
    std::uint64_t modelFile = 0;                                      ///< compressed.
};

/// Where the parts of a file begin, in bytes from its start.
struct FileLayout
{
    std::array<std::uint32_t, sectionCount> sectionOffsets{};
    std::uint32_t modelFileStart = 0;
    std::uint32_t modelFileEnd = 0; ///< the size of the file.
};

/// @throws std::system_error (std::errc::file_too_large) when an offset does not fit into 32 bits.
[[nodiscard]] FileLayout layOutFile(const FileParts& parts);

/// The main header of a file with one file structure.
[[nodiscard]] std::vector<std::uint8_t> mainHeader(const FileLayout& layout, const UniqueId& file,
                                                   const UniqueId& fileStructure);

/// The header of the file structure up to the number of pictures; each picture follows as its size and its bytes.
[[nodiscard]] std::vector<std::uint8_t> fileStructureHeader(const UniqueId& fileStructure, std::uint32_t pictureCount);

/// The size of a picture as it stands in front of its bytes.
[[nodiscard]] std::array<std::uint8_t, 4> pictureSizeField(std::uint32_t size);

} // namespace prc
