#include "tool/import/GltfContainer.h"

#include "tool/import/FileEnding.h"
#include "tool/import/GltfReader.h"
#include "tool/import/JsonDepth.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <bit>
#include <cctype>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <limits>
#include <string>
#include <system_error>

namespace Orvel::Import
{

namespace
{

static_assert(std::endian::native == std::endian::little, "glTF numbers are read as they lie in the file");

constexpr std::size_t HeaderSize = 12;
constexpr std::size_t ChunkHeaderSize = 8;
constexpr std::string_view BinaryMagic = "glTF";
constexpr std::uint32_t JsonChunk = 0x4E4F534A;
constexpr std::uint32_t BinChunk = 0x004E4942;
constexpr std::string_view ByteOrderMark = "\xEF\xBB\xBF";

std::uint32_t Word(std::span<const std::byte> bytes, std::size_t offset)
{
    std::uint32_t word = 0;
    std::memcpy(&word, bytes.data() + offset, sizeof word);
    return word;
}

std::string_view AsText(std::span<const std::byte> bytes)
{
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

/// Finds what tells glTF versions apart, and stops the parser as soon as it is known.
class VersionFinder : public nlohmann::json_sax<nlohmann::json>
{
public:
    bool hasAsset = false;
    bool hasTablesOfVersion1 = false; ///< 1.x keeps its tables as objects, 2.0 as arrays
    std::string version;

    bool null() override { return true; }
    bool boolean(bool) override { return true; }
    bool number_integer(number_integer_t) override { return true; }
    bool number_unsigned(number_unsigned_t) override { return true; }
    bool number_float(number_float_t, const string_t&) override { return true; }
    bool binary(binary_t&) override { return true; }
    bool start_array(std::size_t) override { return Enter(); }
    bool end_array() override { return Leave(); }
    bool end_object() override { return Leave(); }
    bool parse_error(std::size_t, const std::string&, const nlohmann::detail::exception&) override { return false; }

    bool string(string_t& value) override
    {
        if (!inAsset || depth != 2 || currentKey != "version")
            return true;
        version = value;
        return false;
    }

    bool start_object(std::size_t) override
    {
        if (depth == 1) {
            inAsset = currentKey == "asset";
            hasAsset = hasAsset || inAsset;
            hasTablesOfVersion1 =
                hasTablesOfVersion1 || currentKey == "accessors" || currentKey == "meshes" || currentKey == "nodes";
        }
        return Enter();
    }

    bool key(string_t& value) override
    {
        if (depth <= 2)
            currentKey = value;
        return true;
    }

private:
    bool Enter()
    {
        ++depth;
        return true;
    }

    bool Leave()
    {
        --depth;
        inAsset = inAsset && depth >= 2;
        return true;
    }

    std::size_t depth = 0;
    bool inAsset = false;
    std::string currentKey;
};

bool HasGltfExtension(const std::filesystem::path& file)
{
    const std::string ending = EndingOf(file);
    return ending == ".gltf" || ending == ".glb";
}

bool IsGltfText(std::istream& stream, bool hasExtension)
{
    VersionFinder finder;
    nlohmann::json::sax_parse(stream, &finder, nlohmann::json::input_format_t::json, false);
    if (finder.version.empty())
        return !finder.hasTablesOfVersion1 && (hasExtension || finder.hasAsset);
    return !finder.version.starts_with("1.") && finder.version != "1";
}

} // namespace

bool IsGltf(const std::filesystem::path& file)
{
    std::error_code ignored;
    std::ifstream stream;
    if (std::filesystem::is_regular_file(file, ignored))
        stream.open(file, std::ios::binary);
    if (!stream.is_open())
        return false;

    std::array<char, 64> head{};
    stream.read(head.data(), head.size());
    std::string_view start(head.data(), static_cast<std::size_t>(stream.gcount()));
    if (start.starts_with(BinaryMagic))
        return start.size() < 8 || start[4] != 1;

    const bool hasExtension = HasGltfExtension(file);
    if (start.starts_with(ByteOrderMark))
        start.remove_prefix(ByteOrderMark.size());
    const std::size_t first = start.find_first_not_of(" \t\r\n");
    if (first == std::string_view::npos || start[first] != '{')
        return hasExtension;
    stream.clear();
    stream.seekg(0);
    return IsGltfText(stream, hasExtension);
}

std::vector<std::byte> ReadFileBytes(const std::filesystem::path& file, std::string_view what, std::size_t sizeLimit)
{
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(file, error);
    if (!std::filesystem::exists(status))
        throw ImportError(std::string(what) + " was not found");
    // A device or a pipe has no size, and reading it may never end.
    if (!std::filesystem::is_regular_file(status))
        throw ImportError(std::string(what) + " is not a file");

    const std::uintmax_t size = std::filesystem::file_size(file, error);
    std::ifstream stream(file, std::ios::binary);
    if (error || !stream)
        throw ImportError(std::string(what) + " cannot be read");
    std::vector<std::byte> bytes(static_cast<std::size_t>(std::min<std::uintmax_t>(size, sizeLimit)));
    stream.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    if (static_cast<std::size_t>(stream.gcount()) != bytes.size())
        throw ImportError(std::string(what) + " cannot be read to its end");
    return bytes;
}

GltfContainer::GltfContainer(const std::filesystem::path& file)
    : bytes(ReadFileBytes(file, "the file", std::numeric_limits<std::size_t>::max()))
    , text(AsText(bytes))
    , size(bytes.size())
{
    if (bytes.empty())
        throw ImportError("the file is empty");
    isBinary = text.starts_with(BinaryMagic);
    if (isBinary)
        SplitBinary();
    if (text.starts_with(ByteOrderMark))
        text.remove_prefix(ByteOrderMark.size());
    while (!text.empty() && (text.back() == '\0' || text.back() == ' '))
        text.remove_suffix(1);
    CheckJsonDepth(text);
}

void GltfContainer::SplitBinary()
{
    if (bytes.size() < HeaderSize)
        throw ImportError("the file is cut short: it ends within its header");
    if (const std::uint32_t version = Word(bytes, 4); version != 2)
        throw ImportError("binary glTF version " + std::to_string(version) + " is not supported");
    const std::size_t length = Word(bytes, 8);
    if (length > bytes.size())
        throw ImportError("the file is cut short: it has " + std::to_string(bytes.size()) + " of " +
                          std::to_string(length) + " bytes");

    text = {};
    std::span<const std::byte> rest = std::span<const std::byte>(bytes).first(length);
    rest = rest.subspan(std::min(HeaderSize, rest.size()));
    for (std::size_t chunk = 0; rest.size() >= ChunkHeaderSize; ++chunk) {
        const std::size_t chunkSize = Word(rest, 0);
        const std::uint32_t type = Word(rest, 4);
        rest = rest.subspan(ChunkHeaderSize);
        if (chunkSize > rest.size())
            throw ImportError("chunk " + std::to_string(chunk) + " of the file reaches beyond its end");
        if (chunk == 0 && type != JsonChunk)
            throw ImportError("the first chunk of the file is not JSON text");
        if (chunk == 0)
            text = AsText(rest.first(chunkSize));
        else if (type == BinChunk && binaryChunk.empty())
            binaryChunk = rest.first(chunkSize);
        rest = rest.subspan(chunkSize);
    }
    if (text.empty())
        throw ImportError("the file has no JSON text");
}

void GltfContainer::ReleaseText()
{
    text = {};
    if (!isBinary)
        std::vector<std::byte>().swap(bytes);
}

} // namespace Orvel::Import
