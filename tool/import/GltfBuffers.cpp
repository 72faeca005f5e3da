#include "tool/import/GltfBuffers.h"

#include "tool/import/ImportReport.h"

#include <QByteArray>

#include <algorithm>
#include <cstring>
#include <limits>
#include <system_error>
#include <utility>

namespace Orvel::Import
{

namespace
{

constexpr std::string_view DataScheme = "data:";

std::filesystem::path PathFromUtf8(std::string_view name)
{
    return {std::u8string(name.begin(), name.end())};
}

std::string PercentDecoded(std::string_view text)
{
    const QByteArray encoded(text.data(), static_cast<int>(text.size()));
    return QByteArray::fromPercentEncoding(encoded).toStdString();
}

/// QByteArray counts in int.
void CheckLength(std::string_view text)
{
    if (text.size() > static_cast<std::size_t>(std::numeric_limits<int>::max()) - 1024)
        throw ImportError("embedded data is larger than 2 GiB");
}

std::vector<std::byte> AsBytes(const QByteArray& array)
{
    std::vector<std::byte> bytes(static_cast<std::size_t>(array.size()));
    if (!bytes.empty())
        std::memcpy(bytes.data(), array.constData(), bytes.size());
    return bytes;
}

bool Exists(const std::filesystem::path& file)
{
    std::error_code ignored;
    return std::filesystem::exists(file, ignored);
}

} // namespace

bool IsDataUri(std::string_view uri)
{
    return uri.starts_with(DataScheme);
}

std::vector<std::byte> DecodeDataUri(std::string_view uri)
{
    const std::size_t comma = uri.find(',');
    if (comma == std::string_view::npos)
        throw ImportError("a data URI has no comma before its data");
    const std::string_view mediaType = uri.substr(0, comma);
    const std::string_view data = uri.substr(comma + 1);
    CheckLength(data);
    if (!mediaType.ends_with(";base64")) {
        const std::string decoded = PercentDecoded(data);
        return AsBytes(QByteArray::fromStdString(decoded));
    }
    const QByteArray encoded = QByteArray::fromRawData(data.data(), static_cast<int>(data.size()));
    const auto result = QByteArray::fromBase64Encoding(encoded, QByteArray::AbortOnBase64DecodingErrors);
    if (result)
        return AsBytes(*result);
    // Rarer forms: the alphabet for URLs, percent-encoded padding.
    const QByteArray plain = QByteArray::fromPercentEncoding(encoded).replace('-', '+').replace('_', '/');
    const auto second = QByteArray::fromBase64Encoding(plain, QByteArray::AbortOnBase64DecodingErrors);
    if (!second)
        throw ImportError("a data URI is not valid base64");
    return AsBytes(*second);
}

std::string FileNameOfUri(const std::string& uri, const std::filesystem::path& folder)
{
    std::string_view name = uri;
    if (name.starts_with("file://"))
        name = name.substr(std::string_view("file://").size());
    CheckLength(name);
    const std::string decoded = PercentDecoded(name);
    const bool onlyUndecoded = !Exists(folder / PathFromUtf8(decoded)) && Exists(folder / PathFromUtf8(name));
    return onlyUndecoded ? std::string(name) : decoded;
}

GltfBuffers::GltfBuffers(const GltfDocument& gltfDocument, const GltfContainer& gltfContainer,
                         std::filesystem::path baseFolder)
    : document(gltfDocument)
    , container(gltfContainer)
    , folder(std::move(baseFolder))
    , buffers(document.buffers.size())
    , owned(document.buffers.size())
{}

std::span<const std::byte> GltfBuffers::View(int view)
{
    const tinygltf::BufferView& range = document.model.bufferViews.at(static_cast<std::size_t>(view));
    const std::span<const std::byte> bytes = Bytes(static_cast<std::size_t>(range.buffer));
    if (range.byteOffset > bytes.size() || range.byteLength > bytes.size() - range.byteOffset)
        throw ImportError("bufferViews[" + std::to_string(view) + "] reaches beyond its buffer");
    return bytes.subspan(range.byteOffset, range.byteLength);
}

bool GltfBuffers::IsCompressed(int view) const
{
    const tinygltf::BufferView& range = document.model.bufferViews.at(static_cast<std::size_t>(view));
    if (!range.extensions.contains("EXT_meshopt_compression"))
        return false;
    const GltfDocument::Buffer& buffer = document.buffers.at(static_cast<std::size_t>(range.buffer));
    const bool isBinaryChunk = range.buffer == 0 && !container.BinaryChunk().empty();
    return buffer.isFallback || (buffer.uri.empty() && !isBinaryChunk);
}

std::span<const std::byte> GltfBuffers::Bytes(std::size_t buffer)
{
    std::optional<std::span<const std::byte>>& bytes = buffers.at(buffer);
    if (!bytes)
        bytes = Load(buffer);
    return *bytes;
}

std::span<const std::byte> GltfBuffers::Load(std::size_t buffer)
{
    const GltfDocument::Buffer& source = document.buffers[buffer];
    const std::string place = "buffers[" + std::to_string(buffer) + "]";
    std::span<const std::byte> bytes;
    if (IsDataUri(source.uri))
        bytes = owned[buffer] = DecodeDataUri(source.uri);
    else if (!source.uri.empty()) {
        const std::string name = FileNameOfUri(source.uri, folder);
        bytes = owned[buffer] =
            ReadFileBytes(folder / PathFromUtf8(name), "buffer file " + Quoted(name), source.byteLength);
    } else if (buffer == 0 && container.IsBinary())
        bytes = container.BinaryChunk();
    else
        throw ImportError(place + " has neither a uri nor a binary chunk");

    if (bytes.size() < source.byteLength)
        throw ImportError(place + " has " + std::to_string(bytes.size()) + " of " + std::to_string(source.byteLength) +
                          " bytes");
    return bytes.first(static_cast<std::size_t>(source.byteLength));
}

} // namespace Orvel::Import
