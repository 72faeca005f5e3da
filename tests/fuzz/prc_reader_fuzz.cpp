#include "platform/prcfile/PRCPicture.h"
#include "platform/prcfile/PRCReader.h"
#include "platform/prcfile/PRCScene.h"
#include "platform/prcfile/PRCTessellation.h"
#include "tests/fuzz/SectionSeed.h"

#include <cstdlib>
#include <span>

/// Reads what the fuzzer makes up, and uses all that was read.
///
/// Bytes that begin as a PRC file does are read as they are, others as a seed.
namespace
{

namespace Model = prc::Model;

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
    for (const Model::PlacedItem& item : scene.items) {
        Require(item.item < model.structures[item.structure].parts[item.part].items.size());
        for (const std::uint32_t face : {0U, 1U, 0xFFFFFFFFU}) {
            const Model::StyleReference style = Model::styleOfFace(model, scene, item, face);
            Require(style.style == prc::nullIndex ||
                    style.style < model.structures[style.structure].globals.styles.size());
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::span bytes(data, size);
    if (size >= 3 && data[0] == 'P' && data[1] == 'R' && data[2] == 'C')
        ReadAndUse(bytes);
    else
        ReadAndUse(prc::Test::SectionsFrom(bytes).File());
    return 0;
}
