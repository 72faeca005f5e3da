#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>

namespace Orvel::Import
{

/// The first bytes of a file inside a zip archive.
///
/// @param ending  of the wanted file's name, e.g. ".model"; the first one in the archive's directory counts.
/// @param maximum bytes to unpack.
/// @return empty when there is no such archive or file, or when it is packed in an uncommon way.
[[nodiscard]] std::string BeginOfZipEntry(const std::filesystem::path& archive, std::string_view ending,
                                          std::size_t maximum);

} // namespace Orvel::Import
