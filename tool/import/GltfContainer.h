#pragma once

#include <cstddef>
#include <filesystem>
#include <span>
#include <string_view>
#include <vector>

namespace Orvel::Import
{

/// The bytes of a glTF file, taken apart: JSON text, and the binary chunk of a .glb file.
class GltfContainer
{
public:
    /// @throws ImportError when the file cannot be read, is empty, is cut short, or nests JSON deeper than 256 levels.
    explicit GltfContainer(const std::filesystem::path& file);

    /// Without byte order mark and padding. Valid until the object dies or ReleaseText() is called.
    [[nodiscard]] std::string_view Text() const { return text; }

    /// Empty where there is none. Valid until the object dies.
    [[nodiscard]] std::span<const std::byte> BinaryChunk() const { return binaryChunk; }
    [[nodiscard]] bool IsBinary() const { return isBinary; }

    /// Of the whole file, in bytes.
    [[nodiscard]] std::size_t Size() const { return size; }

    /// Gives the memory of a pure text file back once the text is parsed; does nothing for a binary one.
    void ReleaseText();

private:
    void SplitBinary();

    std::vector<std::byte> bytes;
    std::string_view text;
    std::span<const std::byte> binaryChunk;
    std::size_t size = 0;
    bool isBinary = false;
};

/// Reads the first bytes of a regular file.
///
/// @param what      begins the error message, e.g. "buffer file 'x.bin'".
/// @param sizeLimit bytes to read at most.
/// @throws ImportError when the file does not exist, is no regular file or cannot be read.
[[nodiscard]] std::vector<std::byte> ReadFileBytes(const std::filesystem::path& file, std::string_view what,
                                                   std::size_t sizeLimit);

} // namespace Orvel::Import
