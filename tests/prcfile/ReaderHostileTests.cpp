#include "platform/prcfile/PRCPicture.h"
#include "platform/prcfile/PRCReader.h"
#include "platform/prcfile/PRCScene.h"
#include "tests/prcfile/FileSections.h"
#include "tests/prcfile/HandMadeFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>

/// Files that lie. Whatever stands in them, reading ends soon, takes little, and says what is wrong.
namespace
{

namespace Model = prc::Model;
using namespace prc::Test;
using prc::EntityType;
using prc::nullIndex;
using prc::Section;
using prc::SectionWriter;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

Bytes Example(const char* name)
{
    std::ifstream stream(std::filesystem::path(ORVEL_TEST_DATA) / "prc" / name, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

/// Limits that fit small files: what a lie asks for in vain shows soon.
constexpr prc::ReadLimits smallLimits{.unpackedBytes = 1 << 20, .decodedBytes = 1 << 24, .fileStructures = 100};

/// Reads, and uses everything that was read as a caller would.
Model::PRCModel ReadAndUse(const Bytes& file)
{
    Model::PRCModel model = prc::readPRC(file, smallLimits);
    const Model::PlacedScene scene = Model::placeScene(model, {.occurrences = 2000, .items = 2000});
    for (const Model::PlacedItem& item : scene.items) {
        const Model::RepresentationItem& stored = model.structures[item.structure].parts[item.part].items[item.item];
        if (stored.tessellation != nullIndex) {
            EXPECT_LT(stored.tessellation, model.structures[item.structure].tessellations.size());
        }
    }
    for (const Model::FileStructure& structure : model.structures) {
        for (const Model::Tessellation& tessellation : structure.tessellations) {
            Model::TriangleCorners corners;
            for (const Model::Face& face : tessellation.faces)
                Model::appendTriangles(tessellation, face, corners);
            for (const std::uint32_t point : corners.points)
                EXPECT_LT(point, tessellation.pointCount());
        }
        for (std::uint32_t style = 0; style < structure.globals.styles.size(); ++style)
            EXPECT_LE(Model::appearanceOf(structure.globals, style).alpha, std::numeric_limits<double>::max());
        for (std::uint32_t picture = 0; picture < structure.globals.pictures.size(); ++picture)
            EXPECT_LE(Model::decodePicture(structure, picture, 1 << 20).pixels.size(), 1U << 20);
    }
    return model;
}

class DamagedFiles : public testing::TestWithParam<const char*>
{};

TEST_P(DamagedFiles, CutAtEveryLength)
{
    const Bytes file = Example(GetParam());
    for (std::size_t length = 0; length < file.size(); ++length) {
        const Model::PRCModel model =
            ReadAndUse(Bytes(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(length)));
        EXPECT_TRUE(model.hasErrors()) << length;
    }
}

TEST_P(DamagedFiles, WithEachByteSpoilt)
{
    Bytes file = Example(GetParam());
    for (std::uint8_t& byte : file) {
        const std::uint8_t kept = byte;
        for (const unsigned change : {0x01U, 0x80U, 0xFFU}) {
            byte = static_cast<std::uint8_t>(kept ^ change);
            ReadAndUse(file);
        }
        byte = kept;
    }
    EXPECT_FALSE(ReadAndUse(file).hasErrors());
}

TEST_P(DamagedFiles, WithEachBitOfTheSectionsTurned)
{
    FileSections sections = FileSections::Of(Example(GetParam()));
    std::array<Bytes, 5>& ofStructure = sections.structures.at(0).sections;
    std::size_t withFindings = 0;
    for (Bytes* const section : {&ofStructure[0], &ofStructure[1], &ofStructure[2], &sections.model}) {
        for (std::size_t bit = 0; bit < 8 * section->size(); ++bit) {
            const auto mask = static_cast<std::uint8_t>(0x80U >> bit % 8);
            (*section)[bit / 8] ^= mask;
            withFindings += ReadAndUse(sections.File()).findings.empty() ? 0U : 1U;
            (*section)[bit / 8] ^= mask;
        }
        const Bytes whole = *section;
        for (section->clear(); section->size() < whole.size(); section->push_back(whole[section->size()]))
            ReadAndUse(sections.File());
    }
    EXPECT_GT(withFindings, 100U);
    EXPECT_THAT(ReadAndUse(sections.File()).findings, IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Small, DamagedFiles,
                         testing::Values("a_cube.prc", "c_tex_rgb_png.prc", "e_empty_transparent.prc", "g_ri_set.prc"),
                         [](const auto& example) {
                             const std::string file = example.param;
                             return file.substr(0, file.find('.'));
                         });

TEST(HostileFiles, ThatAreNoPrcFilesSaySo)
{
    const Model::PRCModel model = prc::readPRC(Bytes{'P', 'D', 'F', '-', '1'});
    EXPECT_THAT(model.structures, IsEmpty());
    ASSERT_THAT(model.findings, SizeIs(1));
    EXPECT_EQ(model.findings[0].message(), "main header, byte 0: expected the signature 'PRC': this is not a PRC file");
    EXPECT_TRUE(prc::readPRC({}).hasErrors());
    EXPECT_THROW(prc::readPRCFile("/nowhere/at/all.prc"), std::system_error);
}

TEST(HostileFiles, WithMoreStructuresThanAnybodyHas)
{
    Bytes file = Example("a_cube.prc");
    file[45] = 1; // 65537 file structures
    const Model::PRCModel model = prc::readPRC(file);
    EXPECT_THAT(model.structures, IsEmpty());
    EXPECT_THAT(model.findings.at(0).message(), HasSubstr("at most 1000 file structures, found 65537"));
}

TEST(HostileFiles, ThatUnpackToMoreThanTheLimit)
{
    FileSections sections = FileSections::Of(Example("a_cube.prc"));
    sections.structures.at(0).sections[2].resize(std::size_t{8} << 20); // zeros: a thousandth of that in the file
    const Bytes file = sections.File();
    ASSERT_LT(file.size(), 50000U);
    const Model::PRCModel model = prc::readPRC(file, smallLimits);
    ASSERT_THAT(model.findings, testing::Contains(testing::Field(&Model::Finding::text,
                                                                 HasSubstr("more than the limit of 1048576 bytes"))));
    EXPECT_EQ(model.structures[0].sections[3].state, Model::SectionState::Damaged);
    EXPECT_EQ(model.structures[0].sections[2].state, Model::SectionState::Read);
    EXPECT_THAT(model.structures[0].tessellations, IsEmpty());
    EXPECT_EQ(prc::readPRC(file).structures[0].sections[3].unpackedBytes, std::size_t{8} << 20);
}

/// A section in which each announced thing takes a bit or two, and as many are announced as it has bits.
TEST(HostileFiles, ThatDecodeToMoreThanTheLimit)
{
    HandMadeFile file = PlainFile();
    file.tessellation = TessellationsOf(1, [](SectionWriter& section) {
        section.writeEntityType(EntityType::Tessellation3D);
        section.writeBoolean(false);
        section.writeUnsignedInteger(3000000);
        for (unsigned number = 0; number < 250000; ++number)
            section.writeBits(0x555555, 24); // a dozen zeros
    });
    const Model::PRCModel model = prc::readPRC(file.Bytes(), smallLimits);
    ASSERT_THAT(model.findings, SizeIs(1));
    EXPECT_THAT(model.findings[0].message(), HasSubstr("more than the limit of 16777216 bytes"));
}

TEST(HostileFiles, WithCountsBeyondTheirSection)
{
    struct Case
    {
        const char* expected;
        SectionWriter HandMadeFile::*section;
        std::function<void(SectionWriter&)> write;
    };
    const Case cases[] = {
        {"globals of file structure 0, bit 37: 4294967295 schemas are announced", &HandMadeFile::globals,
         [](SectionWriter& section) { section.writeUnsignedInteger(0xFFFFFFFF); }},
        {"4294967295 coordinates are announced, more than the rest of the section can hold",
         &HandMadeFile::tessellation,
         [](SectionWriter& section) {
             section.writeEntityType(EntityType::FileStructureTessellation);
             section.writeContentBase(std::nullopt);
             section.writeUnsignedInteger(1);
             section.writeEntityType(EntityType::Tessellation3D);
             section.writeBoolean(false);
             section.writeUnsignedInteger(0xFFFFFFFF);
         }},
        {"16777216 bytes of a text are announced", &HandMadeFile::tree,
         [](SectionWriter& section) {
             section.writeEntityType(EntityType::FileStructureTree);
             section.writeUnsignedInteger(0);
             section.writeBoolean(false);
             section.writeBoolean(true);
             section.writeUnsignedInteger(1U << 24);
             section.writeBits(0, 32);
         }},
        {"expected the tree (304) at bit 0, found a style (701)", &HandMadeFile::tree,
         [](SectionWriter& section) { section.writeEntityType(EntityType::Style); }},
        {"99999 product occurrences are announced", &HandMadeFile::tree,
         [](SectionWriter& section) {
             section.writeEntityType(EntityType::FileStructureTree);
             section.writeContentBase(std::nullopt);
             section.writeUnsignedInteger(0);
             section.writeUnsignedInteger(99999);
         }},
    };
    for (const Case& wrong : cases) {
        HandMadeFile file = PlainFile();
        file.*wrong.section = SectionWriter();
        wrong.write(file.*wrong.section);
        const Model::PRCModel model = prc::readPRC(file.Bytes(), smallLimits);
        ASSERT_FALSE(model.findings.empty()) << wrong.expected;
        EXPECT_THAT(model.findings[0].message(), HasSubstr(wrong.expected));
        EXPECT_EQ(model.name, "model") << "the sections behind are read: " << wrong.expected;
    }
}

TEST(HostileFiles, WhoseSectionsBeginWhereTheyCannot)
{
    constexpr std::size_t treeOffset = 79;
    const std::pair<std::uint8_t, const char*> cases[] = {
        {0, "tree of file structure 0: expected a section: the main header states none"},
        {3, "byte 3: expected a section behind the main header and inside the file, which end at 107 and "},
        {255, "byte 255: expected a complete zlib stream"},
    };
    for (const auto& [offset, expected] : cases) {
        Bytes file = Example("a_cube.prc");
        file[treeOffset] = offset;
        file[treeOffset + 1] = 0;
        const Model::PRCModel model = ReadAndUse(file);
        ASSERT_FALSE(model.findings.empty()) << expected;
        EXPECT_THAT(model.findings[0].message(), HasSubstr(expected));
        EXPECT_THAT(model.structures[0].tessellations, SizeIs(1)) << expected;
    }
}

/// Checking and drawing each of these faces would take as long as all of them together have corners.
TEST(HostileFiles, WhoseFacesShareTheirIndices)
{
    MeshFields mesh{.coordinates = {0, 0, 0, 1, 0, 0, 0, 1, 0}, .normals = {0, 0, 1}};
    mesh.indices.resize(6 * 50000);
    mesh.faces.resize(50000, {.sizes = {50000}});
    HandMadeFile file = PlainFile();
    file.tessellation = TessellationsOf(1, [&mesh](SectionWriter& section) { WriteMesh(section, mesh); });
    const Model::PRCModel model = ReadAndUse(file.Bytes());
    ASSERT_THAT(model.findings, SizeIs(1));
    EXPECT_THAT(model.findings[0].text, HasSubstr("49999 of the 50000 faces of tessellation 0 cannot be used"));
}

TEST(HostileFiles, ThatAreWrongInCountlessPlaces)
{
    HandMadeFile file = PlainFile();
    file.model = SectionWriter();
    file.model.writeEmptySchema();
    file.model.writeEntityType(EntityType::ModelFile);
    file.model.writeContentBase("model");
    file.model.writeBoolean(true);
    file.model.writeDouble(-2.0);
    file.model.writeUnsignedInteger(1000);
    for (std::uint32_t root = 0; root < 1000; ++root) {
        file.model.writeUniqueId({root, 0, 0, 1});
        file.model.writeUnsignedInteger(1);
        file.model.writeBoolean(true);
    }
    file.model.writeUnsignedInteger(0); // index of the file structure
    const Model::PRCModel model = ReadAndUse(file.Bytes());
    EXPECT_THAT(model.findings, SizeIs(200));
    EXPECT_EQ(model.findingsLeftOut, 1 + 1000 + 1 - 200U) << "unit, roots, the replaced root";
    EXPECT_THAT(model.findings[0].text, HasSubstr("expected a unit of more than 0 mm, found -2"));
    EXPECT_EQ(model.unitInMillimetres, 1.0);
}

TEST(HostileFiles, WithSetsInSetsInSets)
{
    HandMadeFile file = PlainFile();
    file.tree = TreeOf(
        [](SectionWriter& section) {
            section.writeUnsignedInteger(1);
            WritePart(section, [](SectionWriter& items) {
                items.writeUnsignedInteger(1);
                for (unsigned depth = 0; depth < 5000; ++depth) {
                    WriteItemHead(items, EntityType::Set, nullIndex, nullIndex, nullIndex);
                    items.writeUnsignedInteger(1);
                }
            });
        },
        [](SectionWriter& section) { section.writeUnsignedInteger(0); }, nullIndex);
    const Model::PRCModel model = ReadAndUse(file.Bytes());
    ASSERT_FALSE(model.findings.empty());
    EXPECT_THAT(model.findings[0].message(), HasSubstr("sets are nested deeper than 64 levels"));
}

TEST(HostileFiles, WithBytesThatAreNoTextInNames)
{
    HandMadeFile file = PlainFile();
    file.tree =
        TreeOf([](SectionWriter& section) { section.writeUnsignedInteger(0); },
               [](SectionWriter& section) {
                   section.writeUnsignedInteger(1);
                   WriteOccurrence(section, {.name = std::string("a\xFF\xC3\xA9\0\xED\xA0\x80\xF0\x9F\x8F", 11)});
               },
               0);
    const Model::PRCModel model = prc::readPRC(file.Bytes());
    const std::string replaced = "\xEF\xBF\xBD";
    EXPECT_EQ(model.structures[0].occurrences.at(0).name,
              "a" + replaced + "\xC3\xA9" + replaced + replaced + replaced + replaced + replaced + replaced);
}

TEST(MissingRoots, AreReplacedByTheLastOccurrenceThatIsNobodysChild)
{
    HandMadeFile file = PlainFile();
    file.tree = TreeOf([](SectionWriter& section) { section.writeUnsignedInteger(0); },
                       [](SectionWriter& section) {
                           section.writeUnsignedInteger(3);
                           WriteOccurrence(section, {.name = "lone"});
                           WriteOccurrence(section, {.name = "top", .children = {2}});
                           WriteOccurrence(section, {.name = "child"});
                       },
                       nullIndex);
    file.model = SectionWriter();
    file.model.writeUnsignedInteger(77); // schemas that are not there
    const Model::PRCModel model = prc::readPRC(file.Bytes());
    ASSERT_THAT(model.roots, SizeIs(1));
    EXPECT_EQ(model.roots[0].occurrence, 1U);
    EXPECT_TRUE(model.hasErrors());
}

} // namespace
