#pragma once

#include "tests/support/PRCSectionReader.h"

/// The decoder's parts, one source file for each kind of section. Every function reads its section from the first bit
/// to the last and fills in its share of the content.
namespace Orvel::Test
{

/// Needs content.storedFiles.
void DecodeGlobals(PRCSectionReader& reader, PRCContent& content);
/// Needs content.styles.
void DecodeTessellations(PRCSectionReader& reader, PRCContent& content);
/// Needs styles and tessellations.
/// @param identifiers all that were met in the globals, and then in the tree.
void DecodeTree(PRCSectionReader& reader, PRCContent& content, const std::vector<uint32_t>& identifiers);
/// Needs the tree.
void DecodeModelFile(PRCSectionReader& reader, PRCContent& content);

/// Reads the pixels of a stored picture.
/// @throws std::runtime_error when the file is not what format and size announce.
void DecodePicture(std::span<const uint8_t> file, Strictness strictness, Picture& picture);

/// Inflates the zlib stream at the start of `bytes`.
/// @param consumed out: length of the stream in bytes.
/// @throws std::runtime_error when the stream is damaged or cut.
[[nodiscard]] std::vector<uint8_t> Inflate(std::span<const uint8_t> bytes, size_t& consumed);

} // namespace Orvel::Test
