#include "platform/prcfile/FileLayout.h"

#include <limits>
#include <system_error>

namespace prc
{

namespace
{

constexpr std::uint64_t numberSize = 4;
constexpr std::uint64_t uniqueIdSize = 16;
/// Signature, two versions, two ids, one count: how both headers begin.
constexpr std::uint64_t headStartSize = 3 + 2 * numberSize + 2 * uniqueIdSize + numberSize;
/// Id, reserved number, count of offsets and the offsets of one file structure.
constexpr std::uint64_t structureInformationSize = uniqueIdSize + 2 * numberSize + sectionCount * numberSize;
constexpr std::uint64_t mainHeaderSize = headStartSize + structureInformationSize + 3 * numberSize;

/// This application. A constant of our own choice.
constexpr UniqueId application = {0x7C1D5A3EU, 0x2F9046B8U, 0xA4E3D071U, 0x5B86C92DU};

class LittleEndianBytes
{
public:
    void append(std::uint32_t number)
    {
        for (unsigned shift = 0; shift < 32; shift += 8)
            bytes.push_back(static_cast<std::uint8_t>(number >> shift & 0xFF));
    }
    void append(const UniqueId& id)
    {
        for (const std::uint32_t number : id)
            append(number);
    }
    void appendHead(const UniqueId& id, std::uint32_t count)
    {
        bytes.insert(bytes.end(), signature.begin(), signature.end());
        append(formatVersion);
        append(formatVersion);
        append(id);
        append(application);
        append(count);
    }

    std::vector<std::uint8_t> bytes;
};

std::uint32_t offset(std::uint64_t position)
{
    if (position > std::numeric_limits<std::uint32_t>::max())
        throw std::system_error(std::make_error_code(std::errc::file_too_large), "a PRC file ends below 4 GiB");
    return static_cast<std::uint32_t>(position);
}

} // namespace

FileLayout layOutFile(const FileParts& parts)
{
    FileLayout layout;
    std::uint64_t position = mainHeaderSize;
    layout.sectionOffsets[0] = offset(position);
    position += headStartSize;
    for (const std::uint64_t picture : parts.pictures)
        position += numberSize + picture;
    for (std::size_t section = 1; section < sectionCount; ++section) {
        layout.sectionOffsets[section] = offset(position);
        position += parts.compressedSections[section - 1];
    }
    layout.modelFileStart = offset(position);
    layout.modelFileEnd = offset(position + parts.modelFile);
    return layout;
}

std::vector<std::uint8_t> mainHeader(const FileLayout& layout, const UniqueId& file, const UniqueId& fileStructure)
{
    constexpr std::uint32_t fileStructureCount = 1;
    LittleEndianBytes header;
    header.appendHead(file, fileStructureCount);
    header.append(fileStructure);
    header.append(0); // reserved
    header.append(static_cast<std::uint32_t>(sectionCount));
    for (const std::uint32_t sectionOffset : layout.sectionOffsets)
        header.append(sectionOffset);
    header.append(layout.modelFileStart);
    header.append(layout.modelFileEnd);
    header.append(0); // uncompressed files of the whole file
    return header.bytes;
}

std::vector<std::uint8_t> fileStructureHeader(const UniqueId& fileStructure, std::uint32_t pictureCount)
{
    LittleEndianBytes header;
    header.appendHead(fileStructure, pictureCount);
    return header.bytes;
}

std::array<std::uint8_t, 4> pictureSizeField(std::uint32_t size)
{
    return {static_cast<std::uint8_t>(size & 0xFF), static_cast<std::uint8_t>(size >> 8 & 0xFF),
            static_cast<std::uint8_t>(size >> 16 & 0xFF), static_cast<std::uint8_t>(size >> 24)};
}

} // namespace prc
