#include "platform/prcfile/PRCPicture.h"
#include "platform/prcfile/PRCReader.h"
#include "platform/prcfile/PRCScene.h"
#include "platform/prcfile/PRCTessellation.h"

#include <libdeflate.h>

#include <algorithm>
#include <cstdlib>
#include <initializer_list>
#include <memory>
#include <span>
#include <vector>

/// Reads what the fuzzer makes up, and uses all that was read.
///
/// Compressed sections keep a fuzzer from getting anywhere: each change breaks a checksum. Its bytes are therefore read
/// in two ways. As they are; and as sections that are not compressed yet, put into a file around the bytes.
namespace
{

namespace Model = prc::Model;
using Bytes = std::vector<std::uint8_t>;

constexpr prc::ReadLimits limits{.unpackedBytes = 1 << 22, .decodedBytes = 1 << 25, .fileStructures = 50};

void Require(bool condition)
{
    if (!condition)
        std::abort();
}

void UseMeshes(const Model::FileStructure& structure)
{
    for (const Model::Tessellation& mesh : structure.tessellations) {
        for (const Model::Face& face : mesh.faces) {
            Model::TriangleCorners corners;
            Model::appendTriangles(mesh, face, corners);
            Require(corners.points.size() == 3 * std::size_t{face.triangleCount});
            for (const std::uint32_t point : corners.points)
                Require(point < mesh.pointCount());
            for (const std::uint32_t normal : corners.normals)
                Require(normal == prc::nullIndex || normal < mesh.normalCount());
        }
    }
}

void UseGlobals(const Model::FileStructure& structure)
{
    for (std::uint32_t style = 0; style < structure.globals.styles.size(); ++style)
        Require(Model::appearanceOf(structure.globals, style).texture == nullptr ||
                !structure.globals.textures.empty());
    for (std::uint32_t picture = 0; picture < structure.globals.pictures.size() && picture < 4; ++picture) {
        const Model::DecodedPicture decoded = Model::decodePicture(structure, picture, 1 << 20);
        Require(decoded.pixels.size() <= 1 << 20);
    }
}

void ReadAndUse(std::span<const std::uint8_t> file)
{
    const Model::PRCModel model = prc::readPRC(file, limits);
    for (const Model::FileStructure& structure : model.structures) {
        UseMeshes(structure);
        UseGlobals(structure);
    }
    const Model::PlacedScene scene = Model::placeScene(model, {.occurrences = 5000, .items = 5000});
    for (const Model::PlacedItem& item : scene.items)
        Require(item.item < model.structures[item.structure].parts[item.part].items.size());
}

void PutNumber(Bytes& file, std::size_t number)
{
    for (unsigned byte = 0; byte < 4; ++byte)
        file.push_back(static_cast<std::uint8_t>(number >> (8 * byte)));
}

Bytes Stored(std::span<const std::uint8_t> bytes)
{
    const std::unique_ptr<libdeflate_compressor, decltype(&libdeflate_free_compressor)> compressor(
        libdeflate_alloc_compressor(0), libdeflate_free_compressor);
    Bytes stream(libdeflate_zlib_compress_bound(compressor.get(), bytes.size()));
    stream.resize(libdeflate_zlib_compress(compressor.get(), bytes.data(), bytes.size(), stream.data(), stream.size()));
    return stream;
}

/// Cuts the bytes into the sections of a file: two bytes of length before each, the last takes the rest.
Bytes FileAround(std::span<const std::uint8_t> bytes)
{
    constexpr std::size_t sections = 6;
    std::vector<Bytes> streams;
    for (std::size_t section = 0; section < sections; ++section) {
        std::size_t length = 0;
        if (bytes.size() >= 2) {
            length = std::min<std::size_t>(bytes[0] | bytes[1] << 8, bytes.size() - 2);
            bytes = bytes.subspan(2);
        }
        streams.push_back(Stored(bytes.first(length)));
        bytes = bytes.subspan(length);
    }
    constexpr std::size_t headerSize = 107;
    constexpr std::size_t structureHeaderSize = 47;
    Bytes head = {'P', 'R', 'C'};
    const auto putNumbers = [&head](std::initializer_list<std::size_t> numbers) {
        for (const std::size_t number : numbers)
            PutNumber(head, number);
    };
    putNumbers({8016, 8016, 1, 2, 3, 4, 5, 6, 7, 8, 1, 9, 9, 9, 9, 0, 6, headerSize});
    std::size_t offset = headerSize + structureHeaderSize;
    for (const Bytes& stream : streams) {
        PutNumber(head, offset);
        offset += stream.size();
    }
    putNumbers({offset, 0});
    head.insert(head.end(), {'P', 'R', 'C'});
    putNumbers({8016, 8016, 9, 9, 9, 9, 5, 6, 7, 8, 0});
    for (const Bytes& stream : streams)
        head.insert(head.end(), stream.begin(), stream.end());
    return head;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::span bytes(data, size);
    if (size >= 3 && data[0] == 'P' && data[1] == 'R' && data[2] == 'C')
        ReadAndUse(bytes);
    else
        ReadAndUse(FileAround(bytes));
    return 0;
}
