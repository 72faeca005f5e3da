#include "platform/prcfile/PRCReader.h"
#include "tests/fuzz/SectionSeed.h"
#include "tests/prcfile/ExampleFile.h"
#include "tests/prcfile/HandMadeFile.h"
#include "tests/prcfile/TestMeshes.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <utility>

/// Writes the seeds of the reader's fuzz target into a folder: the sections of small files, and the forms that only
/// other producers write.
namespace
{

using namespace prc::Test;
using prc::EntityType;
using prc::nullIndex;
using prc::SectionWriter;

/// What the example files do not have: two faces with styles and colours of their corners.
Bytes WithColours()
{
    Bytes bytes;
    prc::oPRCFile file(bytes, 25.4, 1);
    file.addMaterial({});
    file.addMaterial(NumberedMaterial(7));
    std::unique_ptr<prc::PRC3DTess> mesh = StripMesh({.normals = true, .texture = true}, 1);
    mesh->faceTessellation[0]->rgbaVertices.resize(27, 77);
    auto second = std::make_unique<prc::PRCTessFace>(*mesh->faceTessellation[0]);
    second->startTriangulated = static_cast<std::uint32_t>(mesh->triangulatedIndex.size());
    second->isRgba = true;
    second->rgbaVertices.assign(36, 78);
    const std::vector<std::uint32_t> indices = mesh->triangulatedIndex;
    mesh->triangulatedIndex.insert(mesh->triangulatedIndex.end(), indices.begin(), indices.end());
    mesh->faceTessellation.push_back(std::move(second));
    file.useMesh(Add(file, std::move(mesh)), 0, QuarterTurn().data());
    file.finish();
    return bytes;
}

/// Fans, strips and single normals, textured and not; behind them what is not decoded.
SectionWriter RunsOfAllKinds()
{
    constexpr std::uint32_t one = 0x40000000;
    MeshFields mesh{.coordinates = {0, 1, 2, 3, 4, 5, 6, 7, 8}, .normals = {0, 0, 1}, .textures = {0.5, 0.25}};
    mesh.indices.resize(200);
    mesh.faces = {{.usedEntities = 2 | 4 | 8, .sizes = {1, 2, 3, 4, 1, 5}},
                  {.usedEntities = 32 | 64 | 128, .start = 60, .sizes = {1, 1, 4 | one, 2, 3, 4 | one}},
                  {.usedEntities = 512 | 8192 | 16384, .start = 100, .sizes = {1, 1, 1, 3 | one}, .textureIndices = 1}};
    return TessellationsOf(
        2, mesh, [](SectionWriter& section) { section.writeEntityType(EntityType::Tessellation3DCompressed); });
}

void WriteForeignItems(SectionWriter& section)
{
    section.writeUnsignedInteger(2);
    WriteItemHead(section, EntityType::Set, 0, nullIndex, nullIndex);
    section.writeUnsignedInteger(3);
    WriteItemHead(section, EntityType::BrepModel, nullIndex, 0, 0);
    Put(section, true, 2, 3, true, 0);
    WriteItemHead(section, EntityType::PointSet, 1, 0, nullIndex);
    Put(section, 1, 1.0, 2.0, 3.0, 0);
    WriteItemHead(section, EntityType::PolyWire, 1, nullIndex, 0);
    Put(section, 0, 0); // and the end of the set
    WriteItemHead(section, EntityType::Plane, 1, nullIndex, 0);
    Put(section, false, 0);
}

/// A reference to a face and one to an entity.
void WriteForeignReferences(SectionWriter& section)
{
    section.writeUnsignedInteger(2);
    WriteReferenceHead(section, 1, EntityType::ReferenceOnTopology);
    Put(section, 149, true, true, 2, 3, 1, 1, 0);
    WriteReferenceHead(section, 1, EntityType::ReferenceOnBase);
    Put(section, 237, true, LastIdentifier() - 2, 0);
}

HandMadeFile Foreign()
{
    const auto cartesian = [](SectionWriter& section) {
        Put(section, EntityType::CartesianTransformation, Byte(0x4F), std::vector<double>(14, 0.5));
    };
    const std::vector<OccurrenceFields> occurrences = {
        {.part = 0, .writeLocation = cartesian}, {.children = {0, 0}, .writeEntityReferences = WriteForeignReferences}};
    HandMadeFile file = FileOf(occurrences, 2, {prc::identityMatrix});
    file.tree = TreeOf(occurrences, WriteForeignItems);
    file.tessellation = RunsOfAllKinds();
    return file;
}

/// Programs of all kinds that read next to nothing, for the globals.
HandMadeFile WithSchemas()
{
    const std::vector<std::uint32_t> tokens = {19, 39, 1, 20, 15083, 17, 37, 26, 1,  0,  0,  18, 16, 1, 24, 5, 31, 26,
                                               1,  26, 2, 15, 25,    5,  0,  17, 36, 27, 26, 1,  21, 0, 21, 6, 302};
    HandMadeFile file = PlainFile();
    file.globals = SectionWriter();
    Put(file.globals, 1, 303, tokens.size(), tokens);
    WriteGlobals(file.globals, 2);
    return file;
}

/// A file whose second structure takes the content of the first.
Bytes TwoStructures()
{
    const prc::UniqueId library = {21, 22, 23, 24};
    const auto references = [library](SectionWriter& section) { Put(section, 1, false, library, 1, false, library); };
    HandMadeFile files[] = {PlainFile(), FileOf({{.writeReferences = references}})};
    files[0].id = library;
    return FileOfStructures(files);
}

} // namespace

int main(int argumentCount, char** arguments)
{
    if (argumentCount != 2) {
        std::fputs("prc_reader_seeds FOLDER\n", stderr);
        return 2;
    }
    const std::pair<const char*, Bytes> files[] = {
        {"normals", ExampleFile("b_groups")},
        {"texture", ExampleFile("c_tex_rgba_png")},
        {"points", ExampleFile("c_tex_no_normals")},
        {"colours", WithColours()},
        {"foreign", Foreign().Bytes()},
        {"schemas", WithSchemas().Bytes()},
        {"two_structures", TwoStructures()},
    };
    for (const auto& [name, file] : files) {
        for (const prc::Model::Finding& finding : prc::readPRC(file).findings)
            std::fprintf(stderr, "%s: %s\n", name, finding.message().c_str());
        const Bytes seed = SeedFrom(FileSections::Of(file));
        std::ofstream stream(std::filesystem::path(arguments[1]) / (std::string(name) + ".sections"), std::ios::binary);
        stream.write(reinterpret_cast<const char*>(seed.data()), static_cast<std::streamsize>(seed.size()));
        if (!stream.flush())
            return 1;
    }
    return 0;
}
