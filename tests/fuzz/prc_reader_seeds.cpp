#include "platform/prcfile/PRCReader.h"
#include "platform/prcfile/oPRCFile.h"
#include "tests/fuzz/SectionSeed.h"
#include "tests/prcfile/HandMadeFile.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <utility>

/// Writes the seeds of the reader's fuzz target into a folder: small files that our writer makes, and the forms that
/// only others write.
namespace
{

using namespace prc::Test;
using prc::EntityType;
using prc::nullIndex;
using prc::SectionWriter;

constexpr double turned[] = {0, -1, 0, 7, 2, 0, 0, 11, 0, 0, 3, 13, 0, 0, 0, 1};

/// Two triangles.
std::uint32_t AddMesh(prc::oPRCFile& file, bool normals, bool texture, bool twoFaces, bool colours)
{
    auto mesh = std::make_unique<prc::PRC3DTess>();
    mesh->coordinates = {0.0, 0.1, 0.5, 1.0, 0.0, 1.0 / 3.0, 0.0, -1.0, 1e-7, 1.0, 1.0, 12345.0};
    if (normals)
        mesh->normalCoordinates = {0.0, 0.0, 1.0, 0.6, 0.0, 0.8};
    if (texture)
        mesh->textureCoordinates = {0.0, 0.0, 1.0, 0.25};
    for (const std::uint32_t point : {0U, 1U, 2U, 2U, 1U, 3U}) {
        if (normals)
            mesh->triangulatedIndex.push_back(3 * (point % 2));
        if (texture)
            mesh->triangulatedIndex.push_back(2 * (point % 2));
        mesh->triangulatedIndex.push_back(3 * point);
    }
    const std::uint32_t faces = twoFaces ? 2 : 1;
    for (std::uint32_t number = 0; number < faces; ++number) {
        auto* face = new prc::PRCTessFace;
        face->usedEntitiesFlag = texture ? prc::UsedEntities::texturedTriangles : prc::UsedEntities::triangles;
        face->numberOfTextureCoordinateIndexes = texture ? 1 : 0;
        face->sizesTriangulated = {2 / faces};
        face->startTriangulated = number * static_cast<std::uint32_t>(mesh->triangulatedIndex.size()) / faces;
        if (twoFaces)
            face->lineAttributes = {number};
        face->isRgba = twoFaces;
        if (colours)
            face->rgbaVertices.resize(6 / faces * (face->isRgba ? 4U : 3U), 77);
        mesh->addTessFace(face);
    }
    prc::PRC3DTess* handedOver = mesh.release();
    return file.add3DTess(handedOver, 0);
}

void AddMaterials(prc::oPRCFile& file)
{
    const std::uint8_t pixels[] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};
    prc::PRCmaterial material;
    file.addMaterial(material);
    material.alpha = 0.5;
    material.pictureData = pixels;
    material.pictureWidth = material.pictureHeight = 2;
    material.pictureSize = sizeof pixels;
    material.pictureFormat = prc::PRCpictureFormat::Rgba;
    material.pictureRepeat = true;
    file.addMaterial(material);
}

Bytes Written(bool normals, bool texture, bool twoFaces, bool colours)
{
    Bytes bytes;
    prc::oPRCFile file(bytes, 25.4, 1);
    AddMaterials(file);
    const std::uint32_t mesh = AddMesh(file, normals, texture, twoFaces, colours);
    file.begingroup("Gr\xC3\xBC\xC3\x9F", nullptr, nullptr);
    file.useMesh(mesh, 1, nullptr);
    file.begingroup(nullptr, nullptr, turned);
    file.useMesh(mesh, 0, turned);
    file.endgroup();
    file.begingroup("", nullptr, nullptr);
    file.endgroup();
    file.endgroup();
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
        {"points", Written(false, false, false, false)},
        {"normals", Written(true, false, false, false)},
        {"texture", Written(false, true, true, false)},
        {"all", Written(true, true, true, true)},
        {"colours", Written(false, false, false, true)},
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
