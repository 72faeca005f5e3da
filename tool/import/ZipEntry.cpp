#include "tool/import/ZipEntry.h"

#include <zlib.h>

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <optional>

namespace Orvel::Import
{

namespace
{

using namespace std::string_view_literals;

// Records of the archive and their sizes without names and comments (APPNOTE.TXT, 4.3).
constexpr std::string_view EndMark = "PK\x05\x06"sv;
constexpr std::string_view DirectoryMark = "PK\x01\x02"sv;
constexpr std::string_view FileMark = "PK\x03\x04"sv;
constexpr std::size_t EndSize = 22;
constexpr std::size_t DirectorySize = 46;
constexpr std::size_t FileSize = 30;
constexpr std::size_t LongestComment = 65535;
constexpr std::size_t LongestDirectory = std::size_t{1} << 24; ///< some hundred thousand files

constexpr std::uint32_t Stored = 0;
constexpr std::uint32_t Deflated = 8;

/// Little-endian number; 0 beyond the end.
std::uint32_t NumberAt(std::string_view bytes, std::size_t position, std::size_t count)
{
    std::uint32_t number = 0;
    for (std::size_t k = count; k-- > 0;)
        number = number << 8U | (position + k < bytes.size() ? static_cast<unsigned char>(bytes[position + k]) : 0U);
    return number;
}

/// What can be read of `count` bytes from `position` on.
std::string BytesAt(std::ifstream& stream, std::uint64_t position, std::size_t count)
{
    std::string bytes(count, '\0');
    stream.clear();
    stream.seekg(static_cast<std::streamoff>(position));
    stream.read(bytes.data(), static_cast<std::streamsize>(count));
    bytes.resize(static_cast<std::size_t>(std::max<std::streamsize>(stream.gcount(), 0)));
    return bytes;
}

std::string Directory(std::ifstream& stream, std::uint64_t archiveSize)
{
    const auto tailSize = static_cast<std::size_t>(std::min<std::uint64_t>(archiveSize, EndSize + LongestComment));
    const std::string tail = BytesAt(stream, archiveSize - tailSize, tailSize);
    const auto end = tail.rfind(EndMark);
    if (end == std::string::npos)
        return {};
    const std::uint32_t size = NumberAt(tail, end + 12, 4);
    return BytesAt(stream, NumberAt(tail, end + 16, 4), std::min<std::size_t>(size, LongestDirectory));
}

struct Entry
{
    std::uint32_t method = 0;
    std::uint32_t position = 0; ///< of its own record in the archive
};

std::optional<Entry> FindEntry(std::string_view directory, std::string_view ending)
{
    while (directory.starts_with(DirectoryMark) && directory.size() >= DirectorySize) {
        const std::size_t nameSize = NumberAt(directory, 28, 2);
        const std::size_t whole = DirectorySize + nameSize + NumberAt(directory, 30, 2) + NumberAt(directory, 32, 2);
        if (directory.substr(DirectorySize, nameSize).ends_with(ending))
            return Entry{NumberAt(directory, 10, 2), NumberAt(directory, 42, 4)};
        directory.remove_prefix(std::min(whole, directory.size()));
    }
    return std::nullopt;
}

std::string BeginInflated(std::string packed, std::size_t maximum)
{
    z_stream inflater{};
    if (inflateInit2(&inflater, -MAX_WBITS) != Z_OK)
        return {};
    std::string text(maximum, '\0');
    inflater.next_in = reinterpret_cast<Bytef*>(packed.data());
    inflater.avail_in = static_cast<uInt>(packed.size());
    inflater.next_out = reinterpret_cast<Bytef*>(text.data());
    inflater.avail_out = static_cast<uInt>(text.size());
    // Input or output ends before the file does: what was unpacked until then is what is wanted.
    inflate(&inflater, Z_SYNC_FLUSH);
    text.resize(text.size() - inflater.avail_out);
    inflateEnd(&inflater);
    return text;
}

} // namespace

std::string BeginOfZipEntry(const std::filesystem::path& archive, std::string_view ending, std::size_t maximum)
{
    std::ifstream stream(archive, std::ios::binary | std::ios::ate);
    const std::streamoff size = stream.tellg();
    const auto entry =
        size <= 0 ? std::nullopt : FindEntry(Directory(stream, static_cast<std::uint64_t>(size)), ending);
    if (!entry)
        return {};
    const std::string record = BytesAt(stream, entry->position, FileSize);
    if (!record.starts_with(FileMark))
        return {};
    const std::uint64_t data = entry->position + FileSize + NumberAt(record, 26, 2) + NumberAt(record, 28, 2);
    // Packed data is hardly ever longer than what it unpacks to.
    std::string bytes = BytesAt(stream, data, maximum);
    if (entry->method == Stored)
        return bytes;
    return entry->method == Deflated ? BeginInflated(std::move(bytes), maximum) : std::string();
}

} // namespace Orvel::Import
