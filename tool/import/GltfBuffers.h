#pragma once

#include "tool/import/GltfContainer.h"
#include "tool/import/GltfDocument.h"

#include <cstddef>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace Orvel::Import
{

/// Whether a URI holds its data itself.
[[nodiscard]] bool IsDataUri(std::string_view uri);

/// The data of a data: URI, base64 or percent-encoded.
/// @throws ImportError when it is neither.
[[nodiscard]] std::vector<std::byte> DecodeDataUri(std::string_view uri);

/// The file name that a URI reference means, UTF-8: percent signs decoded, "file://" taken away. Where no such file
/// stands at `folder` but one under the undecoded name does, that one: not every program encodes.
[[nodiscard]] std::string FileNameOfUri(const std::string& uri, const std::filesystem::path& folder);

/// The bytes behind a document's buffers, each brought in on first use.
class GltfBuffers
{
public:
    /// The arguments are not owned and must outlive the object.
    /// @param folder where relative names of buffer files begin.
    GltfBuffers(const GltfDocument& document, const GltfContainer& container, std::filesystem::path folder);

    /// The bytes of a buffer view, checked against its buffer. Valid until the object dies.
    /// @throws ImportError when the view reaches beyond its buffer, or the buffer is missing, too short or unreadable.
    [[nodiscard]] std::span<const std::byte> View(int view);

    /// Whether the bytes of a view exist only in a compressed form, which View() does not read.
    [[nodiscard]] bool IsCompressed(int view) const;

private:
    std::span<const std::byte> Bytes(std::size_t buffer);
    std::span<const std::byte> Load(std::size_t buffer);

    const GltfDocument& document;
    const GltfContainer& container;
    std::filesystem::path folder;
    std::vector<std::optional<std::span<const std::byte>>> buffers;
    std::vector<std::vector<std::byte>> owned;
};

} // namespace Orvel::Import
