#include "platform/prcfile/PRCReader.h"
#include "platform/prcfile/PRCScene.h"
#include "tests/prcfile/HandMadeFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

/// Placing what was read: transforms, styles and visibility on their way down the tree.
namespace
{

using namespace prc;
using namespace prc::Test;
using namespace testing;

Fill At(const Matrix& matrix)
{
    return [matrix](SectionWriter& section) { section.writeGeneralTransformation(matrix); };
}

Fill Drawn(std::uint32_t style, std::uint16_t behaviour)
{
    return [=](SectionWriter& section) { WriteExplicitGraphics(section, style, behaviour); };
}

/// Two items: one with the body 3 of the context 2, and what `write` adds.
Fill BodyAnd(std::uint32_t style, std::uint32_t tessellation, const Fill& write)
{
    return [=](SectionWriter& section) {
        section.writeUnsignedInteger(2);
        WriteItemHead(section, EntityType::BrepModel, style, nullIndex, tessellation);
        Put(section, true, 2, 3, true, 0);
        write(section);
    };
}

TEST(PlacedScenes, MultiplyTransformsDownToItemsInTheirFrames)
{
    const Matrix frame = {1, 0, 0, 5, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    const Matrix turn = {0, -1, 0, 7, 1, 0, 0, 11, 0, 0, 1, 13, 0, 0, 0, 1};
    const Matrix scale = {2, 0, 0, 0, 0, 3, 0, 0, 0, 0, 5, 0, 0, 0, 0, 1};
    const std::vector<OccurrenceFields> occurrences = {
        {.name = "inner", .part = 0, .writeLocation = At(scale)},
        {.name = "outer", .children = {0, 0}, .writeLocation = At(turn)}};
    HandMadeFile file = FileOf(occurrences, 5, {frame});
    file.tree = TreeOf(occurrences, [](SectionWriter& section) {
        section.writeUnsignedInteger(1);
        WriteItemHead(section, EntityType::Set, 3, 0, nullIndex);
        BodyAnd(nullIndex, nullIndex, [](SectionWriter& items) {
            WriteItemHead(items, EntityType::PointSet, 1, 0, nullIndex);
            Put(items, 1, 1.0, 2.0, 3.0, 0);
        })(section);
        section.writeNoUserData(); // of the set
    });
    const Model::PRCModel model = readPRC(file.Bytes());
    EXPECT_THAT(model.findings, IsEmpty());
    EXPECT_THAT(model.structures[0].parts[0].items[1].body, ElementsAre(2, 3));
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
    const HandMadeFile file = FileOf(
        {
            {.name = "own", .writeGraphics = Drawn(1, show)},
            {.name = "none", .writeGraphics = Drawn(nullIndex, show)},
            {.name = "asks", .writeGraphics = Drawn(1, show | takesShowOfParent | takesColourOfParent)},
            {.name = "hidden", .children = {0, 1, 2}, .writeGraphics = Drawn(2, 0)},
            {.name = "given", .children = {0}, .writeGraphics = Drawn(3, childrenInheritShow | childrenInheritColour)},
            {.name = "removed", .children = {0}, .writeGraphics = Drawn(nullIndex, show | removed)},
            {.name = "root", .children = {3, 4, 5}, .writeGraphics = Drawn(4, show)},
        },
        5);
    const Model::PRCModel model = readPRC(file.Bytes());
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

TEST(PlacedScenes, TakeTheContentOfPrototypesAlsoFromOtherFileStructures)
{
    const auto prototypeOf = [](std::uint32_t occurrence, const UniqueId& structure) {
        return [=](SectionWriter& section) { Put(section, occurrence + 1, false, structure, 0); };
    };
    const auto externalData = [](std::uint32_t occurrence, const UniqueId& structure) {
        return [=](SectionWriter& section) { Put(section, 0, occurrence + 1, false, structure); };
    };
    const UniqueId library = {21, 22, 23, 24};
    HandMadeFile files[] = {FileOf({{.name = "leaf"}, {.name = "prototype", .children = {0}}}),
                            FileOf({{.name = "copy", .writeReferences = prototypeOf(1, library)},
                                    {.name = "itself", .writeReferences = prototypeOf(1, HandMadeFile::structureId)},
                                    {.name = "data", .writeReferences = externalData(0, library)},
                                    {.name = "nowhere", .writeReferences = prototypeOf(0, {9, 9, 9, 9})},
                                    {.name = "root", .children = {0, 1, 2, 3}}})};
    files[0].id = library;
    files[1].model = SectionWriter();
    Put(files[1].model, 0, EntityType::ModelFile, 0, false, "model", true, 10.0, 1, HandMadeFile::structureId, 5, true,
        0, 0, 0);
    const Model::PRCModel model = readPRC(FileOfStructures(files));
    ASSERT_THAT(model.findings, SizeIs(1));
    EXPECT_EQ(model.findings[0].message(), "file: 1 references to other occurrences lead nowhere and count as none");
    const Model::PlacedScene scene = Model::placeScene(model);
    std::vector<std::string> names;
    for (const Model::PlacedOccurrence& placed : scene.occurrences)
        names.push_back(std::to_string(placed.depth) +
                        model.structures[placed.structure].occurrences[placed.occurrence].name.value());
    EXPECT_THAT(names, ElementsAre("0root", "1copy", "2leaf", "1itself", "1data", "2leaf", "1nowhere"));
    EXPECT_EQ(scene.occurrences[1].content.structure, 0U);
    EXPECT_EQ(scene.occurrences[1].content.occurrence, 1U);
}

TEST(PlacedScenes, LeaveOutWhatHasNoEnd)
{
    const auto placed = [](const std::vector<OccurrenceFields>& occurrences, const Model::SceneLimits& limits = {}) {
        return Model::placeScene(readPRC(FileOf(occurrences).Bytes()), limits);
    };
    const Model::PlacedScene cyclic =
        placed({{.name = "a", .children = {1}}, {.name = "b", .children = {0, 2}}, {.name = "root", .children = {0}}});
    EXPECT_THAT(cyclic.occurrences, SizeIs(3));
    EXPECT_THAT(cyclic.notes, ElementsAre(HasSubstr("2 occurrences inside themselves")));

    // Each of 40 levels holds the next one twice: a million million leaves. And a chain of 3000.
    std::vector<OccurrenceFields> levels(1);
    std::vector<OccurrenceFields> chain(1);
    for (std::uint32_t level = 1; level < 40; ++level)
        levels.push_back({.children = {level - 1, level - 1}});
    for (std::uint32_t level = 1; level < 3000; ++level)
        chain.push_back({.children = {level - 1}});
    const Model::PlacedScene shared = placed(levels, {.occurrences = 1000});
    EXPECT_THAT(shared.occurrences, SizeIs(1000));
    EXPECT_THAT(shared.notes, ElementsAre(HasSubstr("beyond the limit")));
    const Model::PlacedScene deep = placed(chain);
    EXPECT_THAT(deep.occurrences, SizeIs(1000));
    EXPECT_THAT(deep.notes, ElementsAre(HasSubstr("below the deepest level")));
}

/// Gives a style to face 1 of the item with the body 3 of the context 2.
void WriteFaceReference(SectionWriter& section, std::uint32_t style)
{
    WriteReferenceHead(section, style, EntityType::ReferenceOnTopology);
    Put(section, 149, true, true, 2, 3, 1, 1, 0);
}

void WriteEntityReference(SectionWriter& section, std::uint32_t style, std::uint32_t identifier,
                          const UniqueId& structure)
{
    WriteReferenceHead(section, style, EntityType::ReferenceOnBase);
    Put(section, 237, false, structure, identifier, 0);
}

TEST(PlacedScenes, GiveEntitiesAndFacesTheStylesOfTheOutermostReference)
{
    std::uint32_t item = 0;
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
    const std::vector<OccurrenceFields> occurrences = {
        {.name = "leaf", .part = 0, .writeEntityReferences = ofLeaf},
        {.name = "outer", .children = {0}, .writeEntityReferences = ofOuter},
        {.name = "root", .children = {1, 0}}};
    HandMadeFile file = FileOf(occurrences, 5);
    file.tree = TreeOf(occurrences, BodyAnd(0, 0, [&item](SectionWriter& section) {
                           WriteItemHead(section, EntityType::PolyBrepModel, 0, nullIndex, 0);
                           item = LastIdentifier();
                           Put(section, true, 0);
                       }));
    file.tessellation = TessellationsOf(1, {.coordinates = {0, 0, 0, 1, 0, 0, 0, 1, 0},
                                            .indices = {0, 3, 6, 0, 3, 6},
                                            .faces = {{.sizes = {1}}, {.start = 3, .sizes = {1}}},
                                            .recalculateNormals = true});
    const Model::PRCModel model = readPRC(file.Bytes());
    ASSERT_THAT(model.findings, SizeIs(1));
    EXPECT_THAT(model.findings[0].text, HasSubstr("table of 5, the first is 77"));

    const Model::PlacedScene scene = Model::placeScene(model);
    EXPECT_THAT(scene.notes, ElementsAre(HasSubstr("2 entity references are not applied")));
    const std::array<std::uint32_t, 3> expected[] = {{0, 0, 2}, {3, 3, 3}, {0, 0, 1}, {0, 0, 0}};
    ASSERT_THAT(scene.items, SizeIs(std::size(expected))) << "two below the outer occurrence, two directly";
    for (std::size_t i = 0; i < std::size(expected); ++i) {
        EXPECT_EQ(scene.items[i].style.style, expected[i][0]) << i;
        EXPECT_EQ(Model::styleOfFace(model, scene, scene.items[i], 0).style, expected[i][1]) << i;
        EXPECT_EQ(Model::styleOfFace(model, scene, scene.items[i], 1).style, expected[i][2]) << i;
    }
}

} // namespace
