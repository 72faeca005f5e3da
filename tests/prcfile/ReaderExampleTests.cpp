#include "platform/prcfile/PRCReader.h"
#include "tests/support/PRCDecoder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

/// Known files are read by the library and by the tests' own decoder, which share no code: both have to see the same.
namespace
{

namespace Model = prc::Model;
using Orvel::Test::DecodePRC;
using Orvel::Test::PRCContent;
using Orvel::Test::Strictness;
using prc::nullIndex;

using Bytes = std::vector<std::uint8_t>;

std::filesystem::path ExamplePath(const std::string& name)
{
    return std::filesystem::path(ORVEL_TEST_DATA) / "prc" / name;
}

Bytes ReadBytes(const std::filesystem::path& path)
{
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

std::uint32_t IndexOf(const std::optional<std::size_t>& index)
{
    return index ? static_cast<std::uint32_t>(*index) : nullIndex;
}

template <std::size_t Size>
std::vector<double> Flat(const std::vector<std::array<double, Size>>& elements)
{
    std::vector<double> flat;
    for (const auto& element : elements)
        flat.insert(flat.end(), element.begin(), element.end());
    return flat;
}

void ExpectSameStyles(const Model::Globals& got, const PRCContent& want)
{
    EXPECT_EQ(got.chordHeightRatio, want.chordHeightRatio);
    EXPECT_EQ(got.tessellationAngleInDegrees, want.tessellationAngleInDegrees);
    EXPECT_EQ(got.colours, want.colours);
    ASSERT_EQ(got.styles.size(), want.styles.size());
    ASSERT_EQ(got.materials.size(), want.materials.size());
    for (std::size_t i = 0; i < want.styles.size(); ++i) {
        EXPECT_EQ(got.styles[i].material, want.styles[i].material) << "style " << i;
        EXPECT_EQ(got.styles[i].transparency, want.styles[i].transparency) << "style " << i;
    }
    for (std::size_t i = 0; i < want.materials.size(); ++i) {
        if (const auto* const application = std::get_if<Orvel::Test::TextureApplication>(&want.materials[i])) {
            const auto& read = std::get<Model::TextureApplication>(got.materials[i]);
            EXPECT_EQ(read.material, application->material) << "entry " << i;
            EXPECT_EQ(read.texture, application->textureDefinition) << "entry " << i;
            continue;
        }
        const auto& material = std::get<Orvel::Test::Material>(want.materials[i]);
        const auto& read = std::get<Model::Material>(got.materials[i]);
        EXPECT_EQ(got.colours[read.ambient], material.ambient) << "entry " << i;
        EXPECT_EQ(got.colours[read.diffuse], material.diffuse) << "entry " << i;
        EXPECT_EQ(got.colours[read.emissive], material.emissive) << "entry " << i;
        EXPECT_EQ(got.colours[read.specular], material.specular) << "entry " << i;
        EXPECT_EQ(read.shininess, material.shininess) << "entry " << i;
        EXPECT_EQ(read.diffuseAlpha, material.diffuseAlpha) << "entry " << i;
        EXPECT_EQ(read.specularAlpha, material.specularAlpha) << "entry " << i;
    }
}

void ExpectSameTextures(const Model::FileStructure& got, const PRCContent& want)
{
    EXPECT_EQ(got.storedFiles, want.storedFiles);
    ASSERT_EQ(got.globals.pictures.size(), want.pictures.size());
    for (std::size_t i = 0; i < want.pictures.size(); ++i) {
        EXPECT_EQ(static_cast<std::uint32_t>(got.globals.pictures[i].format), want.pictures[i].format);
        EXPECT_EQ(got.globals.pictures[i].file, want.pictures[i].file);
        EXPECT_EQ(got.globals.pictures[i].width, want.pictures[i].width);
        EXPECT_EQ(got.globals.pictures[i].height, want.pictures[i].height);
    }
    ASSERT_EQ(got.globals.textures.size(), want.textureDefinitions.size());
    for (std::size_t i = 0; i < want.textureDefinitions.size(); ++i) {
        EXPECT_EQ(got.globals.textures[i].picture, want.textureDefinitions[i].picture);
        EXPECT_EQ(got.globals.textures[i].function, want.textureDefinitions[i].function);
        EXPECT_EQ(got.globals.textures[i].wrapS, want.textureDefinitions[i].wrapS);
        EXPECT_EQ(got.globals.textures[i].wrapT, want.textureDefinitions[i].wrapT);
    }
}

/// @return the position behind the last item that was compared.
std::size_t ExpectSameItems(const Model::Part& got, std::size_t at,
                            const std::vector<Orvel::Test::RepresentationItem>& want, std::uint32_t set)
{
    for (const Orvel::Test::RepresentationItem& item : want) {
        if (at >= got.items.size()) {
            ADD_FAILURE() << "item " << at << " is missing";
            return at;
        }
        const Model::RepresentationItem& read = got.items[at];
        EXPECT_EQ(read.name, item.name) << "item " << at;
        EXPECT_EQ(read.graphics.style, IndexOf(item.style)) << "item " << at;
        EXPECT_EQ(read.tessellation, IndexOf(item.tessellation)) << "item " << at;
        EXPECT_EQ(read.set, set) << "item " << at;
        EXPECT_EQ(read.type == prc::EntityType::Set, item.isSet) << "item " << at;
        const auto own = static_cast<std::uint32_t>(at++);
        at = ExpectSameItems(got, at, item.items, own);
    }
    return at;
}

void ExpectSameTree(const Model::PRCModel& model, const PRCContent& want)
{
    const Model::FileStructure& got = model.structures[0];
    ASSERT_EQ(got.parts.size(), want.parts.size());
    for (std::size_t i = 0; i < want.parts.size(); ++i) {
        EXPECT_EQ(got.parts[i].name, want.parts[i].name) << "part " << i;
        EXPECT_EQ(got.parts[i].minimum, want.parts[i].minimum) << "part " << i;
        EXPECT_EQ(got.parts[i].maximum, want.parts[i].maximum) << "part " << i;
        EXPECT_EQ(ExpectSameItems(got.parts[i], 0, want.parts[i].items, nullIndex), got.parts[i].items.size());
    }
    ASSERT_EQ(got.occurrences.size(), want.occurrences.size());
    for (std::size_t i = 0; i < want.occurrences.size(); ++i) {
        const Model::ProductOccurrence& read = got.occurrences[i];
        EXPECT_EQ(read.name, want.occurrences[i].name) << "occurrence " << i;
        EXPECT_EQ(read.part, IndexOf(want.occurrences[i].part)) << "occurrence " << i;
        EXPECT_EQ(read.location, want.occurrences[i].location) << "occurrence " << i;
        EXPECT_EQ(std::vector<std::size_t>(read.children.begin(), read.children.end()), want.occurrences[i].children);
        EXPECT_TRUE(read.graphics.isShown()) << "occurrence " << i;
    }
    ASSERT_EQ(model.roots.size(), 1U);
    EXPECT_EQ(model.roots[0].structure, 0U);
    EXPECT_EQ(model.roots[0].occurrence, want.root);
    EXPECT_EQ(got.root, want.root);
}

void ExpectSameMeshes(const Model::FileStructure& got, const PRCContent& want)
{
    ASSERT_EQ(got.tessellations.size(), want.tessellations.size());
    EXPECT_EQ(got.announcedTessellations, want.tessellations.size());
    for (std::size_t i = 0; i < want.tessellations.size(); ++i) {
        const Model::Tessellation& read = got.tessellations[i];
        const Orvel::Test::Tessellation& mesh = want.tessellations[i];
        EXPECT_EQ(read.coordinates, Flat(mesh.points)) << "mesh " << i;
        EXPECT_EQ(read.normalCoordinates, Flat(mesh.normals)) << "mesh " << i;
        EXPECT_EQ(read.textureCoordinates, Flat(mesh.textureCoordinates)) << "mesh " << i;
        EXPECT_EQ(read.triangulatedIndices, mesh.indices) << "mesh " << i;
        EXPECT_EQ(read.mustRecalculateNormals, mesh.mustRecalculateNormals) << "mesh " << i;
        EXPECT_EQ(read.creaseAngleInDegrees, mesh.creaseAngleInDegrees) << "mesh " << i;
        ASSERT_EQ(read.faces.size(), mesh.faces.size()) << "mesh " << i;
        for (std::size_t f = 0; f < mesh.faces.size(); ++f) {
            const Model::Face& face = read.faces[f];
            EXPECT_EQ(face.styles.empty() ? nullIndex : face.styles[0], IndexOf(mesh.faces[f].style));
            EXPECT_EQ(face.startTriangulated, mesh.faces[f].firstIndex);
            EXPECT_EQ(face.triangleCount, mesh.faces[f].triangleCount);
            EXPECT_TRUE(face.isUsable);
        }
    }
}

class ReadExamples : public testing::TestWithParam<const char*>
{};

TEST_P(ReadExamples, AsTheIndependentDecoderDoes)
{
    const Bytes bytes = ReadBytes(ExamplePath(GetParam()));
    const PRCContent want = DecodePRC(bytes, Strictness::Format);
    const Model::PRCModel model = prc::readPRC(bytes);
    for (const Model::Finding& finding : model.findings)
        ADD_FAILURE() << finding.message();

    EXPECT_EQ(model.fileSize, bytes.size());
    EXPECT_EQ(model.minimalVersionForRead, want.minimalVersion);
    EXPECT_EQ(model.authoringVersion, want.authoringVersion);
    EXPECT_EQ(model.id, want.fileId);
    EXPECT_EQ(model.name, want.modelName);
    EXPECT_EQ(model.unitInMillimetres, want.unitInMillimetres);
    ASSERT_EQ(model.structures.size(), 1U);
    EXPECT_EQ(model.structures[0].id, want.structureId);
    ExpectSameStyles(model.structures[0].globals, want);
    ExpectSameTextures(model.structures[0], want);
    ExpectSameTree(model, want);
    ExpectSameMeshes(model.structures[0], want);
}

TEST_P(ReadExamples, AndMeasuresEveryByteOfThem)
{
    const Bytes bytes = ReadBytes(ExamplePath(GetParam()));
    const Model::PRCModel model = prc::readPRCFile(ExamplePath(GetParam()));
    ASSERT_EQ(model.structures.size(), 1U);
    std::uint64_t stored = model.headerBytes + model.modelFile.storedBytes;
    for (const Model::SectionSummary& section : model.structures[0].sections) {
        EXPECT_EQ(section.offset, stored - model.modelFile.storedBytes);
        EXPECT_GT(section.unpackedBytes, 0U);
        stored += section.storedBytes;
    }
    EXPECT_EQ(stored, bytes.size());
}

INSTANTIATE_TEST_SUITE_P(Known, ReadExamples,
                         testing::Values("a_cube.prc", "b_groups.prc", "c_tex_rgb_png.prc", "c_tex_rgba_png.prc",
                                         "c_tex_rgb_raw.prc", "c_tex_rgba_raw.prc", "c_tex_no_normals.prc",
                                         "d_instances.prc", "d_shared_part.prc", "e_empty_transparent.prc",
                                         "g_ri_set.prc"),
                         [](const auto& example) {
                             const std::string file = example.param;
                             return file.substr(0, file.find('.'));
                         });

} // namespace
