#include "platform/prcfile/PRCReader.h"
#include "platform/prcfile/PRCScene.h"
#include "tests/prcfile/HandMadeFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

/// Placing what was read: transforms, styles and visibility on their way down the tree.
namespace
{

namespace Model = prc::Model;
using namespace prc::Test;
using prc::EntityType;
using prc::Matrix;
using prc::nullIndex;
using prc::SectionWriter;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

std::function<void(SectionWriter&)> At(const Matrix& matrix)
{
    return [matrix](SectionWriter& section) { section.writeGeneralTransformation(matrix); };
}

std::function<void(SectionWriter&)> Drawn(std::uint32_t style, std::uint16_t behaviour)
{
    return [=](SectionWriter& section) { WriteExplicitGraphics(section, style, behaviour); };
}

void WriteNoParts(SectionWriter& section)
{
    section.writeUnsignedInteger(0);
}

/// A file of these occurrences, the last one the root, with five styles.
HandMadeFile FileOf(const std::vector<OccurrenceFields>& occurrences,
                    const std::function<void(SectionWriter&)>& writeParts = WriteNoParts,
                    const std::vector<Matrix>& coordinateSystems = {})
{
    HandMadeFile file = PlainFile();
    file.globals = SectionWriter();
    file.globals.writeEmptySchema();
    WriteGlobals(file.globals, 5, coordinateSystems);
    const auto root = static_cast<std::uint32_t>(occurrences.size() - 1);
    file.tree = TreeOf(
        writeParts,
        [&occurrences](SectionWriter& section) {
            section.writeUnsignedInteger(static_cast<std::uint32_t>(occurrences.size()));
            for (const OccurrenceFields& fields : occurrences)
                WriteOccurrence(section, fields);
        },
        root);
    file.model = SectionWriter();
    file.model.writeEmptySchema();
    file.model.writeEntityType(EntityType::ModelFile);
    file.model.writeContentBase("model");
    file.model.writeBoolean(true);
    file.model.writeDouble(1.0);
    file.model.writeUnsignedInteger(1);
    file.model.writeUniqueId(HandMadeFile::structureId);
    file.model.writeIndexPlusOne(root);
    file.model.writeBoolean(true);
    return file;
}

TEST(PlacedScenes, MultiplyTransformsDownToItemsInTheirFrames)
{
    const Matrix frame = {1, 0, 0, 5, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    const Matrix turn = {0, -1, 0, 7, 1, 0, 0, 11, 0, 0, 1, 13, 0, 0, 0, 1};
    const Matrix scale = {2, 0, 0, 0, 0, 3, 0, 0, 0, 0, 5, 0, 0, 0, 0, 1};
    const auto parts = [](SectionWriter& section) {
        section.writeUnsignedInteger(1);
        WritePart(section, [](SectionWriter& items) {
            items.writeUnsignedInteger(1);
            WriteItemHead(items, EntityType::Set, 3, 0, nullIndex);
            items.writeUnsignedInteger(2);
            WriteItemHead(items, EntityType::BrepModel, nullIndex, nullIndex, nullIndex);
            items.writeBoolean(true); // exact geometry
            items.writeUnsignedInteger(4);
            items.writeUnsignedInteger(9);
            items.writeBoolean(true);
            items.writeNoUserData();
            WriteItemHead(items, EntityType::PointSet, 1, 0, nullIndex);
            items.writeUnsignedInteger(1);
            items.writeVector(1, 2, 3);
            items.writeNoUserData();
            items.writeNoUserData(); // of the set
        });
    };
    const HandMadeFile file = FileOf({{.name = "inner", .part = 0, .writeLocation = At(scale)},
                                      {.name = "outer", .children = {0, 0}, .writeLocation = At(turn)}},
                                     parts, {frame});
    const Model::PRCModel model = prc::readPRC(file.Bytes());
    EXPECT_THAT(model.findings, IsEmpty());
    EXPECT_THAT(model.structures[0].parts[0].items[1].body, ElementsAre(4, 9));
    const Model::PlacedScene scene = Model::placeScene(model);
    EXPECT_THAT(scene.notes, IsEmpty());
    ASSERT_THAT(scene.occurrences, SizeIs(3));
    EXPECT_EQ(scene.occurrences[2].parent, 0U);
    EXPECT_EQ(scene.occurrences[2].depth, 1U);
    EXPECT_EQ(scene.occurrences[1].world, (Matrix{0, -3, 0, 7, 2, 0, 0, 11, 0, 0, 5, 13, 0, 0, 0, 1}));
    ASSERT_THAT(scene.items, SizeIs(4)) << "two in the set, placed twice; not the set itself";
    EXPECT_EQ(scene.items[0].world, (Matrix{0, -3, 0, 7, 2, 0, 0, 21, 0, 0, 5, 13, 0, 0, 0, 1})) << "the set's frame";
    EXPECT_EQ(scene.items[1].world, (Matrix{0, -3, 0, 7, 2, 0, 0, 31, 0, 0, 5, 13, 0, 0, 0, 1})) << "both frames";
    EXPECT_EQ(scene.items[0].style.style, 3U) << "of the set";
    EXPECT_EQ(scene.items[1].style.style, 1U);
    EXPECT_EQ(scene.items[3].occurrence, 2U);
}

TEST(PlacedScenes, HandDownStylesAndVisibilityAsTheBehaviourAsks)
{
    using namespace Model::Behaviour;
    const HandMadeFile file = FileOf({
        {.name = "own", .writeGraphics = Drawn(1, show)},
        {.name = "none", .writeGraphics = Drawn(nullIndex, show)},
        {.name = "asks", .writeGraphics = Drawn(1, show | takesShowOfParent | takesColourOfParent)},
        {.name = "hidden", .children = {0, 1, 2}, .writeGraphics = Drawn(2, 0)},
        {.name = "given", .children = {0}, .writeGraphics = Drawn(3, childrenInheritShow | childrenInheritColour)},
        {.name = "removed", .children = {0}, .writeGraphics = Drawn(nullIndex, show | removed)},
        {.name = "root", .children = {3, 4, 5}, .writeGraphics = Drawn(4, show)},
    });
    const Model::PRCModel model = prc::readPRC(file.Bytes());
    const Model::PlacedScene scene = Model::placeScene(model);
    struct Expected
    {
        const char* name;
        std::uint32_t style;
        bool isShown;
    };
    const Expected expected[] = {{"root", 4, true}, {"hidden", 2, false},  {"own", 1, true},
                                 {"none", 2, true}, {"asks", 2, false},    {"given", 3, false},
                                 {"own", 3, false}, {"removed", 4, false}, {"own", 1, false}};
    ASSERT_THAT(scene.occurrences, SizeIs(std::size(expected)));
    for (std::size_t i = 0; i < std::size(expected); ++i) {
        const Model::PlacedOccurrence& placed = scene.occurrences[i];
        EXPECT_EQ(model.structures[0].occurrences[placed.occurrence].name, expected[i].name) << i;
        EXPECT_EQ(placed.style.style, expected[i].style) << i << " " << expected[i].name;
        EXPECT_EQ(placed.isShown, expected[i].isShown) << i << " " << expected[i].name;
    }
}

TEST(PlacedScenes, TakeTheContentOfPrototypes)
{
    const auto prototypeOf = [](std::uint32_t occurrence) {
        return [occurrence](SectionWriter& section) {
            section.writeIndexPlusOne(occurrence);
            section.writeBoolean(false); // in the structure with this id, which is the same one
            section.writeUniqueId(HandMadeFile::structureId);
            section.writeUnsignedInteger(0);
        };
    };
    const HandMadeFile file = FileOf({{.name = "leaf"},
                                      {.name = "prototype", .children = {0}},
                                      {.name = "copy", .writeReferences = prototypeOf(1)},
                                      {.name = "itself", .writeReferences = prototypeOf(3)},
                                      {.name = "root", .children = {2, 3}}});
    const Model::PRCModel model = prc::readPRC(file.Bytes());
    EXPECT_THAT(model.findings, IsEmpty());
    const Model::PlacedScene scene = Model::placeScene(model);
    ASSERT_THAT(scene.occurrences, SizeIs(4));
    EXPECT_EQ(scene.occurrences[1].occurrence, 2U);
    EXPECT_EQ(scene.occurrences[1].content.occurrence, 1U);
    EXPECT_EQ(scene.occurrences[2].occurrence, 0U) << "the leaf, below the copy";
    EXPECT_EQ(scene.occurrences[2].parent, 1U);
}

TEST(PlacedScenes, LeaveOutWhatHasNoEnd)
{
    const Model::PRCModel cyclic = prc::readPRC(
        FileOf({{.name = "a", .children = {1}}, {.name = "b", .children = {0, 2}}, {.name = "root", .children = {0}}})
            .Bytes());
    const Model::PlacedScene scene = Model::placeScene(cyclic);
    EXPECT_THAT(scene.occurrences, SizeIs(3));
    EXPECT_THAT(scene.notes, ElementsAre(HasSubstr("2 occurrences inside themselves")));

    // Each of 40 levels holds the next one twice: a million million leaves.
    std::vector<OccurrenceFields> levels;
    for (std::uint32_t level = 0; level < 40; ++level)
        levels.push_back(
            {.children = level == 0 ? std::vector<std::uint32_t>{} : std::vector<std::uint32_t>{level - 1, level - 1}});
    const Model::PRCModel shared = prc::readPRC(FileOf(levels).Bytes());
    const Model::PlacedScene part = Model::placeScene(shared, {.occurrences = 1000});
    EXPECT_THAT(part.occurrences, SizeIs(1000));
    EXPECT_THAT(part.notes, ElementsAre(HasSubstr("beyond the limit")));

    std::vector<OccurrenceFields> chain(1, OccurrenceFields{});
    for (std::uint32_t level = 1; level < 3000; ++level)
        chain.push_back({.children = {level - 1}});
    const Model::PlacedScene deep = Model::placeScene(prc::readPRC(FileOf(chain).Bytes()));
    EXPECT_THAT(deep.occurrences, SizeIs(1000));
    EXPECT_THAT(deep.notes, ElementsAre(HasSubstr("below the deepest level")));
}

void WriteReferenceHead(SectionWriter& section, std::uint32_t style, EntityType kind)
{
    prc::IdentifierCounter identifiers;
    section.writeEntityType(EntityType::EntityReference);
    section.writeReferenceBase("reference", identifiers);
    WriteExplicitGraphics(section, style, 1);
    section.writeUnsignedInteger(0); // coordinate system
    section.writeBoolean(true);
    section.writeEntityType(kind);
}

/// Gives a style to face 1 of the item with the body 3 of the context 2.
void WriteFaceReference(SectionWriter& section, std::uint32_t style)
{
    WriteReferenceHead(section, style, EntityType::ReferenceOnTopology);
    section.writeUnsignedInteger(149);
    section.writeBits(0b11, 2); // there are data; same file structure
    for (const std::uint32_t number : {2U, 3U, 1U, 1U})
        section.writeUnsignedInteger(number);
    section.writeNoUserData();
}

void WriteEntityReference(SectionWriter& section, std::uint32_t style, std::uint32_t identifier,
                          const prc::UniqueId& structure)
{
    WriteReferenceHead(section, style, EntityType::ReferenceOnBase);
    section.writeUnsignedInteger(237);
    section.writeBoolean(false);
    section.writeUniqueId(structure);
    section.writeUnsignedInteger(identifier);
    section.writeNoUserData();
}

TEST(PlacedScenes, GiveEntitiesAndFacesTheStylesOfTheOutermostReference)
{
    std::uint32_t item = 0;
    const auto parts = [&item](SectionWriter& section) {
        section.writeUnsignedInteger(1);
        WritePart(section, [&item](SectionWriter& items) {
            items.writeUnsignedInteger(2);
            WriteItemHead(items, EntityType::BrepModel, 0, nullIndex, 0);
            items.writeBoolean(true);
            items.writeUnsignedInteger(2);
            items.writeUnsignedInteger(3);
            items.writeBoolean(true);
            items.writeNoUserData();
            WriteItemHead(items, EntityType::PolyBrepModel, 0, nullIndex, 0);
            item = LastIdentifier();
            items.writeBoolean(true);
            items.writeNoUserData();
        });
    };
    const auto ofLeaf = [](SectionWriter& section) {
        section.writeUnsignedInteger(1);
        WriteFaceReference(section, 1);
    };
    const auto ofOuter = [&item](SectionWriter& section) {
        section.writeUnsignedInteger(4);
        WriteFaceReference(section, 2);
        WriteEntityReference(section, 3, item, HandMadeFile::structureId);
        WriteEntityReference(section, 4, item, {9, 9, 9, 9});               // no such structure
        WriteEntityReference(section, 77, item, HandMadeFile::structureId); // no such style
    };
    HandMadeFile file = FileOf({{.name = "leaf", .part = 0, .writeEntityReferences = ofLeaf},
                                {.name = "outer", .children = {0}, .writeEntityReferences = ofOuter},
                                {.name = "root", .children = {1, 0}}},
                               parts);
    const MeshFields mesh{.coordinates = {0, 0, 0, 1, 0, 0, 0, 1, 0},
                          .indices = {0, 3, 6, 0, 3, 6},
                          .faces = {{.sizes = {1}}, {.start = 3, .sizes = {1}}},
                          .recalculateNormals = true};
    file.tessellation = TessellationsOf(1, [&mesh](SectionWriter& section) { WriteMesh(section, mesh); });
    const Model::PRCModel model = prc::readPRC(file.Bytes());
    ASSERT_THAT(model.findings, SizeIs(1));
    EXPECT_THAT(model.findings[0].text, HasSubstr("table of 5, the first is 77"));

    const Model::PlacedScene scene = Model::placeScene(model);
    EXPECT_THAT(scene.notes, ElementsAre(HasSubstr("2 entity references are not applied")));
    struct Expected
    {
        std::uint32_t item, face0, face1;
    };
    const Expected expected[] = {{0, 0, 2}, {3, 3, 3}, {0, 0, 1}, {0, 0, 0}};
    ASSERT_THAT(scene.items, SizeIs(std::size(expected))) << "two below the outer occurrence, two directly";
    for (std::size_t i = 0; i < std::size(expected); ++i) {
        EXPECT_EQ(scene.items[i].style.style, expected[i].item) << i;
        EXPECT_EQ(Model::styleOfFace(model, scene, scene.items[i], 0).style, expected[i].face0) << i;
        EXPECT_EQ(Model::styleOfFace(model, scene, scene.items[i], 1).style, expected[i].face1) << i;
    }
}

} // namespace
