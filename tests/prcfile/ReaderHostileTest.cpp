#include "platform/prcfile/PRCPicture.h"
#include "platform/prcfile/PRCReader.h"
#include "platform/prcfile/PRCScene.h"
#include "tests/prcfile/ExampleFile.h"
#include "tests/prcfile/FileSections.h"
#include "tests/prcfile/HandMadeFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

/// Files that lie. Whatever stands in them, reading ends soon, takes little, and says what is wrong.
namespace
{

namespace Model = prc::Model;
using namespace prc::Test;
using prc::EntityType;
using prc::nullIndex;
using prc::SectionWriter;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

/// Limits that fit small files: what a lie asks for in vain shows soon.
constexpr prc::ReadLimits smallLimits{.unpackedBytes = 1 << 20, .decodedBytes = 1 << 24, .fileStructures = 100};

/// Reads, and uses everything that was read as a caller would.
Model::PRCModel ReadAndUse(const Bytes& file)
{
    Model::PRCModel model = prc::readPRC(file, smallLimits);
    const Model::PlacedScene scene = Model::placeScene(model, {.occurrences = 2000, .items = 2000});
    for (const Model::PlacedItem& item : scene.items)
        EXPECT_LT(item.item, model.structures[item.structure].parts[item.part].items.size());
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

TEST_P(DamagedFiles, CutAtEveryLengthOrWithEachByteSpoilt)
{
    Bytes file = ExampleFile(GetParam());
    for (std::size_t length = 0; length < file.size(); ++length)
        EXPECT_TRUE(ReadAndUse({file.begin(), file.begin() + static_cast<std::ptrdiff_t>(length)}).hasErrors())
            << length;
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
    FileSections sections = FileSections::Of(ExampleFile(GetParam()));
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
                         testing::Values("a_cube", "c_tex_rgb_png", "e_empty_transparent", "g_ri_set"));

TEST(HostileFiles, ThatAreNoPrcFilesSaySo)
{
    const Model::PRCModel model = prc::readPRC(Bytes{'P', 'D', 'F', '-', '1'});
    ASSERT_THAT(model.findings, SizeIs(1));
    EXPECT_EQ(model.findings[0].message(), "main header, byte 0: expected the signature 'PRC': this is not a PRC file");
    EXPECT_TRUE(prc::readPRC({}).hasErrors());
    EXPECT_THROW(prc::readPRCFile("/nowhere/at/all.prc"), std::system_error);
}

TEST(HostileFiles, WhoseHeadersCannotBeTrue)
{
    constexpr std::size_t tree = 79; // the offset of the section
    struct Case
    {
        std::size_t at;
        Bytes bytes;
        const char* expected;
    };
    const Case cases[] = {
        {45, {1}, "expected at most 100 file structures, found 65537"},
        {67, {5}, "a file structure states 5 sections, expected 6"},
        {tree, {0, 0}, "tree of file structure 0: expected a section: the main header states none"},
        {tree, {3, 0}, "byte 3: expected a section behind the main header and inside the file, which end at 107 and "},
        {tree, {255, 255}, "byte 65535: expected a section behind the main header and inside the file"},
        {tree, {255, 0}, "tree of file structure 0, byte 255: expected a complete zlib stream"},
        {107, {'p'}, "header of file structure 0, byte 107: expected the signature 'PRC' of a file structure"},
        {150, {1}, "the file ends inside the stored pictures of a file structure: 1 are announced"},
    };
    for (const Case& wrong : cases) {
        Bytes file = ExampleFile("a_cube");
        std::ranges::copy(wrong.bytes, file.begin() + static_cast<std::ptrdiff_t>(wrong.at));
        const Model::PRCModel model = ReadAndUse(file);
        ASSERT_FALSE(model.findings.empty()) << wrong.expected;
        EXPECT_THAT(model.findings[0].message(), HasSubstr(wrong.expected));
        if (wrong.at > 67) {
            EXPECT_THAT(model.structures.at(0).tessellations, SizeIs(1)) << "other sections are read";
        }
    }
}

TEST(HostileFiles, ThatUnpackOrDecodeToMoreThanTheLimit)
{
    FileSections sections = FileSections::Of(ExampleFile("a_cube"));
    Bytes& meshes = sections.structures.at(0).sections[2];
    meshes.resize(std::size_t{20} << 20); // zeros: a thousandth of that in the file
    const Bytes bomb = sections.File();
    ASSERT_LT(bomb.size(), 200000U);
    const Model::PRCModel model = prc::readPRC(bomb, smallLimits);
    ASSERT_FALSE(model.findings.empty());
    EXPECT_THAT(model.findings[0].text, HasSubstr("more than the limit of 1048576 bytes"));
    EXPECT_EQ(model.structures[0].sections[3].state, Model::SectionState::Damaged);
    EXPECT_EQ(model.structures[0].sections[2].state, Model::SectionState::Read);
    EXPECT_EQ(prc::readPRC(bomb).structures[0].sections[3].unpackedBytes, meshes.size());
    EXPECT_EQ(prc::readPRC(bomb, {.expansion = 100}).structures[0].sections[3].unpackedBytes, 0U)
        << "out of proportion to the file";

    EXPECT_EQ(prc::readPRC(bomb, {UINT64_MAX, UINT64_MAX, UINT64_MAX}).structures[0].sections[3].unpackedBytes,
              meshes.size());

    // Three million zeros of two bits each.
    HandMadeFile file = PlainFile();
    file.tessellation = SectionWriter();
    Put(file.tessellation, EntityType::FileStructureTessellation, 0, false, false, 1, EntityType::Tessellation3D, false,
        3000000, std::vector<double>(3000000));
    EXPECT_THAT(prc::readPRC(file.Bytes(), smallLimits).findings.at(0).message(),
                HasSubstr("the model takes up more than the limit of 16777216 bytes"));
}

TEST(HostileFiles, WithCountsBeyondTheirSection)
{
    struct Case
    {
        const char* expected;
        SectionWriter HandMadeFile::*section;
        Fill write;
    };
    const Case cases[] = {
        {"globals of file structure 0, bit 37: 4294967295 schemas are announced", &HandMadeFile::globals,
         [](SectionWriter& section) { Put(section, 0xFFFFFFFFU); }},
        {"4294967295 coordinates are announced, more than the rest of the section can hold",
         &HandMadeFile::tessellation,
         [](SectionWriter& section) {
             Put(section, EntityType::FileStructureTessellation, 0, true, 1, EntityType::Tessellation3D, false,
                 0xFFFFFFFFU);
         }},
        {"16777216 bytes of a text are announced", &HandMadeFile::tree,
         [](SectionWriter& section) { Put(section, EntityType::FileStructureTree, 0, false, true, 1U << 24, 0, 0); }},
        {"expected the tree (304) at bit 0, found a style (701)", &HandMadeFile::tree,
         [](SectionWriter& section) { Put(section, EntityType::Style); }},
        {"expected the tree (304) at bit 0, found the unknown type 999", &HandMadeFile::tree,
         [](SectionWriter& section) { Put(section, 999); }},
        {"99999 product occurrences are announced", &HandMadeFile::tree,
         [](SectionWriter& section) { Put(section, EntityType::FileStructureTree, 0, true, 0, 99999); }},
        {"sets are nested deeper than 64 levels", &HandMadeFile::tree,
         [](SectionWriter& section) {
             section = TreeOf({}, [](SectionWriter& items) {
                 items.writeUnsignedInteger(1);
                 for (unsigned depth = 0; depth < 5000; ++depth) {
                     WriteItemHead(items, EntityType::Set, nullIndex, nullIndex, nullIndex);
                     items.writeUnsignedInteger(1);
                 }
             });
         }},
        {"expected no markups, which cannot be passed over; found 3", &HandMadeFile::tree,
         [](SectionWriter& section) { section = TreeOf({}, [](SectionWriter& items) { Put(items, 0, 0, 0, 3); }); }},
    };
    for (const Case& wrong : cases) {
        HandMadeFile file = PlainFile();
        file.*wrong.section = SectionWriter();
        wrong.write(file.*wrong.section);
        const Model::PRCModel model = ReadAndUse(file.Bytes());
        ASSERT_FALSE(model.findings.empty()) << wrong.expected;
        EXPECT_THAT(model.findings[0].message(), HasSubstr(wrong.expected));
        EXPECT_EQ(model.name, "model") << "the sections behind are read: " << wrong.expected;
    }
}

/// Checking and drawing each of these faces would take as long as all of them together have corners.
TEST(HostileFiles, WhoseFacesShareTheirIndices)
{
    MeshFields mesh{.coordinates = {0, 0, 0, 1, 0, 0, 0, 1, 0}, .normals = {0, 0, 1}};
    mesh.indices.resize(6 * 50000);
    mesh.faces.resize(50000, {.sizes = {50000}});
    HandMadeFile file = PlainFile();
    file.tessellation = TessellationsOf(1, mesh);
    const Model::PRCModel model = ReadAndUse(file.Bytes());
    ASSERT_THAT(model.findings, SizeIs(1));
    EXPECT_THAT(model.findings[0].text, HasSubstr("49999 of the 50000 faces of tessellation 0 cannot be used"));
}

/// The same for parts with many items that are placed many times.
TEST(HostileFiles, WhosePartsAreSharedTooOften)
{
    std::vector<OccurrenceFields> occurrences(1, {.part = 0});
    for (std::uint32_t level = 1; level < 18; ++level)
        occurrences.push_back({.children = {level - 1, level - 1}});
    HandMadeFile file = FileOf(occurrences);
    file.tree = TreeOf(occurrences, [](SectionWriter& items) {
        items.writeUnsignedInteger(1500);
        for (unsigned item = 0; item < 1500; ++item) {
            WriteItemHead(items, EntityType::PolyWire, nullIndex, nullIndex, nullIndex);
            items.writeNoUserData();
        }
    });
    const Model::PlacedScene scene = Model::placeScene(prc::readPRC(file.Bytes()), {.items = 4000});
    EXPECT_THAT(scene.items, SizeIs(3000));
    EXPECT_THAT(scene.notes, testing::ElementsAre(HasSubstr("131070 occurrences or parts")));
}

TEST(HostileFiles, ThatAreWrongInCountlessPlaces)
{
    HandMadeFile file = PlainFile();
    file.model = SectionWriter();
    Put(file.model, 0, EntityType::ModelFile, 0, false, "model", true, -2.0, 1000);
    for (std::uint32_t root = 0; root < 1000; ++root)
        Put(file.model, prc::UniqueId{root, 0, 0, 1}, 1, true);
    file.model.writeUnsignedInteger(0); // index of the file structure
    const Model::PRCModel model = ReadAndUse(file.Bytes());
    EXPECT_THAT(model.findings, SizeIs(200));
    EXPECT_EQ(model.findingsLeftOut, 1 + 1000 + 1 - 200U) << "unit, roots, the replaced root";
    EXPECT_THAT(model.findings[0].text, HasSubstr("expected a unit of more than 0 mm, found -2"));
    EXPECT_EQ(model.unitInMillimetres, 1.0);
}

TEST(HostileFiles, WithBytesThatAreNoTextInNames)
{
    const HandMadeFile file = FileOf({{.name = std::string("a\xFF\xC3\xA9\0\xED\xA0\x80\xF0\x9F\x8F", 11)}});
    const std::string replaced = "\xEF\xBF\xBD";
    EXPECT_EQ(prc::readPRC(file.Bytes()).structures[0].occurrences.at(0).name,
              "a" + replaced + "\xC3\xA9" + replaced + replaced + replaced + replaced + replaced + replaced);
}

TEST(HostileFiles, WithoutAUsableRootGetTheLastOccurrenceThatIsNobodysChild)
{
    const std::vector<OccurrenceFields> occurrences = {
        {.name = "lone"}, {.name = "top", .children = {2}}, {.name = "child"}};
    HandMadeFile file = FileOf(occurrences);
    file.tree = SectionWriter();
    // The tree is cut off behind its occurrences, and the model file holds schemas that are not there.
    const SectionWriter whole = TreeOf(occurrences);
    for (std::size_t byte = 0; byte + 5 < whole.bytes().size(); ++byte)
        file.tree.writeCharacter(whole.bytes()[byte]);
    file.model = SectionWriter();
    file.model.writeUnsignedInteger(77);
    const Model::PRCModel model = prc::readPRC(file.Bytes());
    EXPECT_TRUE(model.hasErrors());
    ASSERT_THAT(model.structures[0].occurrences, SizeIs(3));
    ASSERT_THAT(model.roots, SizeIs(1));
    EXPECT_EQ(model.roots[0].occurrence, 1U);
}

} // namespace
