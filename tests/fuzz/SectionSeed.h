#pragma once

#include "tests/prcfile/FileSections.h"

#include <cstdint>
#include <span>

/// The form in which the fuzzer changes the sections of a PRC file.
///
/// Compressed sections keep a fuzzer from getting anywhere: each change breaks a checksum. It works on the sections as
/// they are before, one behind the other with their sizes, and the file is put together around them.
namespace prc::Test
{

/// A seed: the number of file structures; for each its id and then its globals, tree, tessellation and pictures; the
/// model file. A size in two bytes stands in front of each of these.
[[nodiscard]] Bytes SeedFrom(const FileSections& sections);

/// Understands any bytes as a seed: what is not there is empty.
[[nodiscard]] FileSections SectionsFrom(std::span<const std::uint8_t> seed);

} // namespace prc::Test
