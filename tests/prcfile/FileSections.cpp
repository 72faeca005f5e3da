#include "tests/prcfile/FileSections.h"

#include "platform/prcfile/PRCReader.h"

#include <initializer_list>
#include <libdeflate.h>
#include <memory>

namespace prc::Test
{
namespace
{

Bytes Unpacked(std::span<const std::uint8_t> file, const Model::SectionSummary& section)
{
    const std::unique_ptr<libdeflate_decompressor, decltype(&libdeflate_free_decompressor)> decompressor(
        libdeflate_alloc_decompressor(), libdeflate_free_decompressor);
    Bytes bytes(section.unpackedBytes);
    libdeflate_zlib_decompress(decompressor.get(), file.data() + section.offset, section.storedBytes, bytes.data(),
                               bytes.size(), nullptr);
    return bytes;
}

Bytes Packed(const Bytes& bytes)
{
    static const std::unique_ptr<libdeflate_compressor, decltype(&libdeflate_free_compressor)> compressor(
        libdeflate_alloc_compressor(1), libdeflate_free_compressor);
    Bytes stream(libdeflate_zlib_compress_bound(compressor.get(), bytes.size()));
    stream.resize(libdeflate_zlib_compress(compressor.get(), bytes.data(), bytes.size(), stream.data(), stream.size()));
    return stream;
}

void Append(Bytes& bytes, std::span<const std::uint8_t> more)
{
    bytes.insert(bytes.end(), more.begin(), more.end());
}

void AppendNumbers(Bytes& bytes, std::initializer_list<std::size_t> numbers)
{
    for (const std::size_t number : numbers) {
        for (unsigned shift = 0; shift < 32; shift += 8)
            bytes.push_back(static_cast<std::uint8_t>(number >> shift));
    }
}

void AppendHead(Bytes& bytes, const UniqueId& id)
{
    Append(bytes, std::array<std::uint8_t, 3>{'P', 'R', 'C'});
    AppendNumbers(bytes, {8016, 8016, id[0], id[1], id[2], id[3], 5, 6, 7, 8});
}

/// Appends a file structure.
///
/// @param start of `bytes` in the file.
/// @return the offsets of its six sections in the file.
std::array<std::size_t, 6> AppendStructure(Bytes& bytes, const FileSections::Structure& structure, std::size_t start)
{
    std::array<std::size_t, 6> offsets{start + bytes.size()};
    AppendHead(bytes, structure.id);
    AppendNumbers(bytes, {structure.pictures.size()});
    for (const Bytes& picture : structure.pictures) {
        AppendNumbers(bytes, {picture.size()});
        Append(bytes, picture);
    }
    for (std::size_t section = 0; section < structure.sections.size(); ++section) {
        offsets[section + 1] = start + bytes.size();
        Append(bytes, Packed(structure.sections[section]));
    }
    return offsets;
}

} // namespace

const Bytes FileSections::emptyGeometry = {0x99, 0x40, 0x40};
const Bytes FileSections::emptyExtraGeometry = {0x99, 0xC0, 0x40};

FileSections FileSections::Of(std::span<const std::uint8_t> file)
{
    const Model::PRCModel read = readPRC(file);
    FileSections result;
    for (const Model::FileStructure& structure : read.structures) {
        Structure& taken = result.structures.emplace_back();
        taken.id = structure.id;
        taken.pictures = structure.storedFiles;
        for (std::size_t section = 0; section < taken.sections.size(); ++section)
            taken.sections[section] = Unpacked(file, structure.sections[section + 1]);
    }
    result.model = Unpacked(file, read.modelFile);
    return result;
}

Bytes FileSections::File() const
{
    constexpr std::size_t emptyHeader = 59;
    constexpr std::size_t eachStructure = 48;
    const std::size_t headerSize = emptyHeader + eachStructure * structures.size();
    Bytes header;
    Bytes body;
    AppendHead(header, {1, 2, 3, 4});
    AppendNumbers(header, {structures.size()});
    for (const Structure& structure : structures) {
        const UniqueId& id = structure.id;
        AppendNumbers(header, {id[0], id[1], id[2], id[3], 0, 6});
        for (const std::size_t offset : AppendStructure(body, structure, headerSize))
            AppendNumbers(header, {offset});
    }
    const std::size_t modelStart = headerSize + body.size();
    Append(body, Packed(model));
    AppendNumbers(header, {modelStart, headerSize + body.size(), 0});
    Append(header, body);
    return header;
}

} // namespace prc::Test
