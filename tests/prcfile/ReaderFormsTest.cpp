#include "platform/prcfile/PRCPicture.h"
#include "platform/prcfile/PRCReader.h"
#include "tests/prcfile/HandMadeFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

/// Forms that other producers write and this library does not.
namespace
{

using namespace prc;
using namespace prc::Test;
using namespace testing;

using Numbers = std::vector<std::uint32_t>;

Model::PRCModel ReadWithoutFindings(const HandMadeFile& file)
{
    Model::PRCModel model = readPRC(file.Bytes());
    for (const Model::Finding& finding : model.findings)
        ADD_FAILURE() << finding.message();
    return model;
}

/// Six points, three normals, four texture pairs; all distinct.
MeshFields SixPoints(Numbers indices, std::vector<FaceFields> faces)
{
    MeshFields mesh;
    for (unsigned number = 0; number < 18; ++number)
        mesh.coordinates.push_back(number * 1.5 - 4.0);
    mesh.normals = {0.0, 0.0, 1.0, 0.0, 1.0, 0.0, 1.0, 0.0, 0.0};
    mesh.textures = {0.0, 0.1, 0.2, 0.3, 0.4, 0.5, 0.6, 0.7};
    mesh.indices = std::move(indices);
    mesh.faces = std::move(faces);
    return mesh;
}

TEST(ReadFaces, OfAllKinds)
{
    constexpr std::uint32_t one = 0x40000000;
    constexpr std::uint32_t no = nullIndex;
    const auto colours = [](SectionWriter& section) {
        Put(section, false, false, Byte(10), Byte(20), Byte(30), true, false, Byte(40), Byte(50), Byte(60), true);
    };
    struct Case
    {
        const char* what;
        MeshFields mesh; ///< the last face is looked at.
        Numbers points, normals, textures, colours;
    };
    Case cases[] = {
        {"a fan of four corners, then strips of five and of three; normal, point each",
         SixPoints({0, 0, 3, 3, 6, 6, 0, 9, /**/ 3, 3, 6, 6, 0, 9, 3, 12, 6, 15, /**/ 6, 15, 3, 12, 0, 0},
                   {{.usedEntities = 4 | 8, .sizes = {1, 4, 2, 5, 3}}}),
         {0, 1, 2, 0, 2, 3, /**/ 1, 2, 3, 3, 2, 4, 3, 4, 5, /**/ 5, 4, 0},
         {0, 1, 2, 0, 2, 0, /**/ 1, 2, 0, 0, 2, 1, 0, 1, 2, /**/ 2, 1, 0},
         Numbers(18, no),
         Numbers(18, no)},
        {"textured triangles with one normal; textured fans, one with and one without the mark",
         SixPoints({3, 0, 0, 2, 3,  4, 6,          // normal 1, then pairs of texture and point
                    6, 6, 9, 4, 12, 2, 15,         // normal 2
                    0, 0, 0, 2, 6,  4, 12,         // a fan with one normal
                    3, 6, 3, 6, 4,  9, 0,  2, 15}, // a fan with three
                   {{.usedEntities = 8192 | 16384, .sizes = {2, 2, 3 | one, 3}, .textureIndices = 1}}),
         {0, 1, 2, 3, 4, 5, 0, 2, 4, 1, 3, 5},
         {1, 1, 1, 2, 2, 2, 0, 0, 0, 1, 2, 0},
         {0, 1, 2, 3, 2, 1, 0, 1, 2, 3, 2, 1},
         Numbers(12, no)},
        {"without normals: whatever the start says; the first of two texture coordinates for each corner",
         SixPoints({0, 3, 6, /**/ 2, 4, 9, 0, 6, 12, 4, 2, 15},
                   {{.sizes = {1}}, {.usedEntities = 512, .start = 6, .sizes = {1}, .textureIndices = 2}}),
         {3, 4, 5},
         {no, no, no},
         {1, 0, 2},
         {no, no, no}},
        {"colours of corners",
         SixPoints({0, 0, 0, 3, 0, 6, 0, 9}, {{.usedEntities = 8, .sizes = {1, 4}, .writeColours = colours}}),
         {0, 1, 2, 2, 1, 3},
         Numbers(6, 0),
         Numbers(6, no),
         {0, 1, 2, 2, 1, 3}},
    };
    cases[2].mesh.normals.clear();
    cases[2].mesh.recalculateNormals = true;
    for (const Case& known : cases) {
        HandMadeFile file = PlainFile();
        file.tessellation = TessellationsOf(1, known.mesh);
        const Model::PRCModel model = ReadWithoutFindings(file);
        const Model::Tessellation& tessellation = model.structures.at(0).tessellations.at(0);
        Model::TriangleCorners corners;
        Model::appendTriangles(tessellation, tessellation.faces.back(), corners);
        EXPECT_EQ(corners.points, known.points) << known.what;
        EXPECT_EQ(corners.normals, known.normals) << known.what;
        EXPECT_EQ(corners.textureCoordinates, known.textures) << known.what;
        EXPECT_EQ(corners.colours, known.colours) << known.what;
        EXPECT_EQ(tessellation.faces.back().triangleCount * 3, known.points.size()) << known.what;
        EXPECT_THAT(tessellation.faces.back().vertexColours,
                    AnyOf(IsEmpty(), ElementsAre(10, 20, 30, 10, 20, 30, 40, 50, 60, 40, 50, 60)));
    }
}

TEST(ReadFaces, RefusesIndicesOutsideTheirArrays)
{
    struct Case
    {
        const char* what;
        std::uint32_t usedEntities;
        Numbers sizes;
        Numbers indices;
    };
    const Case cases[] = {
        {"a point beyond the last", 2, {1}, {0, 0, 0, 3, 0, 18}},
        {"a normal beyond the last", 2, {1}, {0, 0, 9, 3, 0, 6}},
        {"the middle of a point", 2, {1}, {0, 0, 0, 4, 0, 6}},
        {"more triangles than indices", 2, {2}, {0, 0, 0, 3, 0, 6}},
        {"far more triangles", 2, {0x7FFFFFFF}, {0, 0, 0, 3, 0, 6}},
        {"a fan with too many corners", 4, {1, 0x80000000}, {0, 0, 0, 3, 0, 6}},
        {"more fans than sizes", 4, {3, 3}, {0, 0, 0, 3, 0, 6}},
        {"too many sizes", 2, {1, 1}, {0, 0, 0, 3, 0, 6}},
        {"polygons", 1, {1}, {0, 0, 0, 3, 0, 6}},
        {"an unknown kind", 65536, {1}, {0, 0, 0, 3, 0, 6}},
    };
    for (const Case& wrong : cases) {
        HandMadeFile file = PlainFile();
        file.tessellation =
            TessellationsOf(1, SixPoints(wrong.indices, {{.usedEntities = wrong.usedEntities, .sizes = wrong.sizes}}));
        const Model::PRCModel model = readPRC(file.Bytes());
        ASSERT_THAT(model.structures[0].tessellations, SizeIs(1)) << wrong.what;
        const Model::Tessellation& tessellation = model.structures[0].tessellations[0];
        EXPECT_FALSE(tessellation.faces[0].isUsable) << wrong.what;
        ASSERT_THAT(model.findings, SizeIs(1)) << wrong.what;
        EXPECT_THAT(model.findings[0].text, HasSubstr("tessellation 0 cannot be used")) << wrong.what;
        Model::TriangleCorners corners;
        Model::appendTriangles(tessellation, tessellation.faces[0], corners);
        EXPECT_THAT(corners.points, IsEmpty()) << wrong.what;
    }
}

TEST(ReadTessellations, StopsAtOneThatIsNotKnownAndKeepsThoseBefore)
{
    const MeshFields mesh = SixPoints({}, {});
    HandMadeFile file = PlainFile();
    file.tessellation = TessellationsOf(
        3, mesh, [](SectionWriter& section) { Put(section, EntityType::Tessellation3DCompressed, 0xABCDEFU, 77); });
    const Model::PRCModel model = readPRC(file.Bytes());
    const Model::FileStructure& structure = model.structures[0];
    ASSERT_THAT(structure.tessellations, SizeIs(2));
    EXPECT_EQ(structure.announcedTessellations, 3U);
    EXPECT_EQ(structure.tessellations[0].coordinates, mesh.coordinates);
    EXPECT_EQ(structure.tessellations[1].type, EntityType::Tessellation3DCompressed);
    EXPECT_EQ(structure.sections[3].state, Model::SectionState::Partial);
    ASSERT_THAT(model.findings, SizeIs(1));
    EXPECT_THAT(model.findings[0].message(), HasSubstr("tessellation of file structure 0, bit "));
    EXPECT_THAT(model.findings[0].message(), HasSubstr("tessellation 1 of 3 is a compressed mesh (173)"));
    EXPECT_EQ(model.name, "model") << "sections behind are read";
}

TEST(ReadTransformations, OfTheCartesianKind)
{
    struct Case
    {
        Byte behaviour;
        std::vector<double> numbers;
        Matrix expected;
    };
    const Case cases[] = {
        {0, {}, identityMatrix},
        {0x01, {7, 11, 13}, {1, 0, 0, 7, 0, 1, 0, 11, 0, 0, 1, 13, 0, 0, 0, 1}},
        // A quarter turn about z with its x and y axes, then a uniform scale.
        {0x0B, {7, 11, 13, 0, 1, 0, -1, 0, 0, 2}, {0, -2, 0, 7, 2, 0, 0, 11, 0, 0, 2, 13, 0, 0, 0, 1}},
        // The same, mirrored, and scaled differently along each axis.
        {0x16, {0, 1, 0, -1, 0, 0, 2, 3, 5}, {0, -3, 0, 0, 2, 0, 0, 0, 0, 0, -5, 0, 0, 0, 0, 1}},
        // Any three columns; a last row of its own.
        {0x61,
         {7, 11, 13, 1, 2, 3, 4, 5, 6, 8, 9, 10, 0.5, 0.25, 0.125, 4},
         {1, 4, 8, 7, 2, 5, 9, 11, 3, 6, 10, 13, 0.5, 0.25, 0.125, 4}},
    };
    for (const Case& cartesian : cases) {
        const auto location = [&cartesian](SectionWriter& section) {
            Put(section, EntityType::CartesianTransformation, cartesian.behaviour, cartesian.numbers);
        };
        const Model::PRCModel model = ReadWithoutFindings(FileOf({{.writeLocation = location}}));
        EXPECT_EQ(model.structures.at(0).occurrences.at(0).location, cartesian.expected) << int{cartesian.behaviour};
    }
}

TEST(ReadNames, AndGraphicsThatAreTheSameAsBefore)
{
    const auto repeated = [](SectionWriter& section) { section.writeBoolean(true); };
    const auto stated = [](SectionWriter& section) { WriteExplicitGraphics(section, 2, 0x2010); };
    const Model::PRCModel model = ReadWithoutFindings(FileOf({{.name = "first", .writeGraphics = repeated},
                                                              {.name = "second", .writeGraphics = stated},
                                                              {.name = "third", .writeGraphics = repeated}},
                                                             3));
    const auto& occurrences = model.structures.at(0).occurrences;
    ASSERT_THAT(occurrences, SizeIs(3));
    EXPECT_TRUE(occurrences[0].graphics.isShown()) << "nothing has been said yet";
    EXPECT_EQ(occurrences[2].graphics.style, 2U);
    EXPECT_EQ(occurrences[2].graphics.behaviour, 0x2010);
    EXPECT_FALSE(occurrences[2].graphics.isShown());
}

/// Globals as a busy producer writes them: attributes, fonts, a JPEG picture, texture functions and transformations,
/// patterns of all kinds, a style that names a colour.
TEST(ReadGlobals, WithEverythingThatTheFormatHas)
{
    IdentifierCounter identifiers;
    HandMadeFile file = PlainFile();
    file.globals = SectionWriter();
    SectionWriter& section = file.globals;
    const auto put = [&section](const auto&... fields) { Put(section, fields...); };
    const auto begin = [&](EntityType type, std::string_view name) {
        section.writeEntityType(type);
        section.writeReferenceBase(name, identifiers);
    };
    put(0, EntityType::FileStructureGlobals);
    put(1, EntityType::Attribute, false, "title", 5); // one attribute with entries of all five kinds
    put(true, 7, 1, 3, false, "a", 2, 2.5, false, "b", 3, 99, false, "c", 4, "x", false, "d", 5, 1, 2);
    put(false, "globals", 1, UniqueId{4, 3, 2, 1}, 600.0, 30.0, "Sans");
    put(1, "Sans", 3, 2, 10, Byte(1), 12, Byte(2));             // a font
    put(2, 1.0, 0.5, 0.25, 0.0, 0.125, 0.75);                   // colours
    put(1, EntityType::Picture, 0, false, "photo", 1, 1, 0, 0); // JPEG
    put(1);                                                     // a texture
    begin(EntityType::TextureDefinition, "wood");
    put(1, Byte(3), 3, 2, true, EntityType::GeneralTransformation); // mapped by an operator
    put(std::vector<double>{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 7, 8, 9, 1});
    put(5, 2, 0.5, 0.75, 1, Byte(15), 3, 0.1, 0.2, 0.3, 0.4, 2, 3, 4, 5); // intensities, components, blending
    put(Byte(2), 6, 0.625, 1, 4, 5, true);                                // alpha test, wrapping
    put(EntityType::TextureTransformation, true, false, true, Byte(1 | 8), 0.5, 0.25, 4.0);
    put(1);
    begin(EntityType::Material, "paint");
    put(1, 4, 1, 2, 0.5, 1.0, 0.0, 1.0, 1.0); // the last colour index is no colour's
    put(1);
    begin(EntityType::LinePattern, "dashes");
    put(2, 3.0, 1.5, 0.5, true, 2);
    begin(EntityType::Style, "coloured");
    put(0.25, false, 1, false, 4, true, Byte(51), true, Byte(1), false, false);
    begin(EntityType::Style, "painted");
    put(0.0, true, 1, true, 1, false, false, false, false);
    put(3); // fill patterns
    begin(EntityType::DottingPattern, "dots");
    put(0, 2.0, true, 1);
    begin(EntityType::HatchingPattern, "hatches");
    put(0, 1, 1.0, 2.0, 3.0, 4.0, 5.0, 1);
    begin(EntityType::SolidPattern, "solid");
    put(0, true, 1, 0, 4); // no coordinate systems; user data
    section.writeBits(0xF, 4);
    file.pictures = {{0xFF, 0xD8, 0xFF, 0xE0, 0, 4, 1, 2, 0xFF, 0xC0, 0, 11, 8, 0, 3, 0, 5, 1, 1, 0x11, 0}};

    const Model::PRCModel model = readPRC(file.Bytes());
    ASSERT_THAT(model.findings, SizeIs(1));
    EXPECT_THAT(model.findings[0].text, HasSubstr("1 of the colour indices lie outside their table of 2"));
    const Model::Globals& globals = model.structures.at(0).globals;
    EXPECT_THAT(globals.referencedStructures, ElementsAre(UniqueId{4, 3, 2, 1}));
    EXPECT_EQ(globals.chordHeightRatio, 600.0);
    ASSERT_THAT(globals.textures, SizeIs(1));
    const Model::TextureDefinition& texture = globals.textures[0];
    EXPECT_EQ(texture.mappingTransformation.value()[7], 8.0);
    EXPECT_THAT(texture.intensities, ElementsAre(0.5, 0.75));
    EXPECT_THAT(texture.blendColour, ElementsAre(0.1, 0.2, 0.3, 0.4));
    EXPECT_EQ(texture.alphaTest, 6);
    EXPECT_THAT((std::array{texture.wrapS, texture.wrapT, texture.wrapR}), ElementsAre(1, 4, 5));
    EXPECT_THAT(texture.transformation.value().translation, ElementsAre(0.5, 0.25));
    EXPECT_THAT(texture.transformation->scale, ElementsAre(4.0, 4.0));
    const auto& material = std::get<Model::Material>(globals.materials.at(0));
    EXPECT_EQ(material.diffuse, 1U);
    EXPECT_EQ(material.specular, nullIndex);
    EXPECT_THAT(globals.linePatterns.at(0).lengths, ElementsAre(3.0, 1.5));
    ASSERT_THAT(globals.styles, SizeIs(2));
    EXPECT_EQ(Model::appearanceOf(globals, 0).colour, &globals.colours[1]);
    EXPECT_EQ(Model::appearanceOf(globals, 0).alpha, 0.2);
    EXPECT_EQ(Model::appearanceOf(globals, 1).alpha, 1.0) << "a diffuse alpha of 0 means opaque";
    EXPECT_EQ(globals.fillPatternCount, 3U);
    EXPECT_EQ(Model::sizeOf(model.structures[0], 0).width, 5U);
    EXPECT_THAT(Model::decodePicture(model.structures[0], 0).error, HasSubstr("JPEG"));
}

TEST(ReadSchemas, AndTheFieldsThatTheyAdd)
{
    // For everything with graphics: since version 15083, if the number read is 1, the fields of type 802 follow.
    const Numbers graphicsSchema = {19, 39, 1, 20, 15083, 17, 37, 26, 1, 4, 6, 802, 21, 21};
    const Numbers typeSchema = {16, 7, 15, 26, 2, 5}; // counted pairs of doubles, then two texts
    const Numbers occurrenceSchema = {20, 9000, 1, 2, 21, 24, 5, 3, 15, 25, 5, 17, 33, 27, 26, 1, 0, 18, 2};
    const auto graphics = [](SectionWriter& section) {
        section.writeGraphics(nullIndex);
        Put(section, 1, 2, 0.5, 1.5, 2.5, -3.5, "one", false);
    };
    // The old version block is not there; a count of 3, and by the loop counter a Boolean in the first round and
    // Characters in the others, all in front of the user data.
    const auto added = [](SectionWriter& section) { Put(section, 3, true, Byte(200), Byte(201)); };
    HandMadeFile file = FileOf({{.name = "extended", .writeGraphics = graphics, .writeAdded = added}});
    file.globals = SectionWriter();
    Put(file.globals, 3, 2, graphicsSchema.size(), graphicsSchema, 802, typeSchema.size(), typeSchema, 310,
        occurrenceSchema.size(), occurrenceSchema);
    WriteGlobals(file.globals, 0);
    const Model::PRCModel model = ReadWithoutFindings(file);
    ASSERT_THAT(model.structures.at(0).occurrences, SizeIs(1));
    EXPECT_EQ(model.structures[0].occurrences[0].name, "extended");
    EXPECT_EQ(model.structures[0].root, 0U);
    EXPECT_THAT(model.structures[0].schemas, SizeIs(3));
}

TEST(ReadSchemas, EndsThoseThatNeverEnd)
{
    const std::pair<const char*, Numbers> cases[] = {
        {"too many steps", {15, 26, 4294967295, 15, 26, 4294967295, 26, 1}},
        {"without an end", {6, 303}},
        {"nested too deeply", Numbers(500, 15)},
        {"in the middle of a statement", {24, 7}},
        {"not known", {77}},
        {"entities", {12, 5}},
        {"the section ends", {15, 26, 4294967295, 1}},
    };
    for (const auto& [reason, tokens] : cases) {
        HandMadeFile file = PlainFile();
        file.globals = SectionWriter();
        Put(file.globals, 1, 303, tokens.size(), tokens);
        WriteGlobals(file.globals, 2);
        const Model::PRCModel model = readPRC(file.Bytes());
        ASSERT_THAT(model.findings, SizeIs(1)) << reason;
        EXPECT_THAT(model.findings[0].message(), HasSubstr(reason));
        EXPECT_THAT(model.findings[0].place, HasSubstr("globals of file structure 0, bit ")) << reason;
        EXPECT_THAT(model.structures[0].globals.styles, SizeIs(2)) << "what was read before stays";
        EXPECT_THAT(model.structures[0].occurrences, SizeIs(1));
    }
}

} // namespace
