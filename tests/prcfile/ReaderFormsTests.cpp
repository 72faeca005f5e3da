#include "platform/prcfile/BitReader.h"
#include "platform/prcfile/BitWriter.h"
#include "platform/prcfile/PRCReader.h"
#include "platform/prcfile/PRCScene.h"
#include "tests/prcfile/HandMadeFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cmath>
#include <random>
#include <string_view>

/// Forms that other producers write and this library does not.
namespace
{

namespace Model = prc::Model;
using namespace prc::Test;
using prc::EntityType;
using prc::nullIndex;
using prc::SectionWriter;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

using Numbers = std::vector<std::uint32_t>;

/// A bit stream with the zeros that a reader needs behind it.
class Stream
{
public:
    /// @param bits zeros and ones, blanks between them.
    explicit Stream(std::string_view bits)
    {
        for (const char bit : bits)
            if (bit != ' ')
                writer.writeBits(bit == '1' ? 1 : 0, 1);
    }

    prc::BitReader Reader()
    {
        bytes.assign(writer.bytes().begin(), writer.bytes().end());
        const std::size_t size = bytes.size();
        bytes.resize(size + prc::BitReader::paddingBytes);
        return prc::BitReader(std::span(bytes).first(size));
    }

    prc::BitWriter writer;

private:
    std::vector<std::uint8_t> bytes;
};

double DoubleOf(std::string_view bits)
{
    Stream stream(bits);
    prc::BitReader reader = stream.Reader();
    const double value = reader.readDouble();
    EXPECT_TRUE(reader.ok()) << bits;
    EXPECT_LT(reader.bitsLeft(), 8U) << bits;
    return value;
}

double FromPattern(std::uint64_t pattern)
{
    return std::bit_cast<double>(pattern);
}

TEST(ReadDoubles, InTheKnownForms)
{
    EXPECT_EQ(DoubleOf("01"), 0.0);
    EXPECT_EQ(DoubleOf("0000 1"), -1.0);
    EXPECT_EQ(DoubleOf("11011 0 0"), 2.0);
    EXPECT_EQ(DoubleOf("11011 1 1 1010 1 00000000 0 000"), -3.25);
    EXPECT_EQ(DoubleOf("000100 0 1 1001 1 10011001 0 110 10011010"), 0.1);
    EXPECT_EQ(DoubleOf("00011 0 1 0011 1 00110011 1 00110011 1 01000000 1 00000000 0 000"), static_cast<double>(0.3F));
}

TEST(ReadDoubles, WhoseBytesReferToEarlierBytes)
{
    // 00011: biased exponent 0x3FD, so the two high bytes are 3F D? with the nibble behind them.
    EXPECT_EQ(DoubleOf("00011 0 1 0011 0 000"), FromPattern(0x3FD3D3D3D3D3D3D3U)) << "fill with the byte before";
    EXPECT_EQ(DoubleOf("00011 0 1 0011 0 110 00000001"), FromPattern(0x3FD3D3D3D3D3D301U)) << "fill, one byte left";
    EXPECT_EQ(DoubleOf("00011 0 1 0011 0 001 1 00010001 0 010 0 011 0 000"), FromPattern(0x3FD3D311D3D3D3D3U));
    // Back to the very first byte, which holds the sign.
    EXPECT_EQ(DoubleOf("00011 1 1 0011 0 010 1 00010001 0 011 0 101 0 101 1 11111111"),
              FromPattern(0xBFD3BF11D3BFD3FFU));
}

TEST(ReadDoubles, AsTheyWereWrittenWhateverTheyAre)
{
    std::mt19937_64 random(7);
    std::vector<double> values = {0.0, 1e-310, -5e-324, 1.7976931348623157e308, -0.1, 1165.0000000000002, 123456.75};
    for (int number = 0; number < 20000; ++number) {
        std::uint64_t pattern = random();
        if (number % 3 == 1) // bytes that repeat
            pattern = (pattern & 0xFFFF000000000000U) | (pattern & 0xFF) * 0x010101010101U;
        if (number % 3 == 2) // as made from single precision
            pattern = std::bit_cast<std::uint64_t>(static_cast<double>(static_cast<float>(random() % 100000) / 7.0F));
        if (std::isfinite(FromPattern(pattern)))
            values.push_back(FromPattern(pattern));
    }
    Stream stream("1");
    stream.writer.writeDoubles(values);
    prc::BitReader reader = stream.Reader();
    EXPECT_TRUE(reader.readBoolean());
    for (const double value : values)
        ASSERT_EQ(std::bit_cast<std::uint64_t>(reader.readDouble()), std::bit_cast<std::uint64_t>(value)) << value;
    EXPECT_TRUE(reader.ok());
    EXPECT_LT(reader.bitsLeft(), 8U);
}

TEST(ReadDoubles, FailsWhereThereIsNoNumber)
{
    for (const std::string_view bits :
         {"00011 0 1 0011 0 111", "00011 0 1 0011 0 011 0 101 0 111", "00011 0 1 0011 0 011", "00011 0 1 0011 1 0"})
    {
        Stream stream(bits);
        prc::BitReader reader = stream.Reader();
        reader.readDouble();
        EXPECT_FALSE(reader.ok()) << bits;
        EXPECT_EQ(reader.readUnsignedInteger(), 0U) << "errors stick";
    }
}

TEST(ReadIntegers, OfEveryLength)
{
    Stream stream("");
    for (const std::int32_t value : {0, 1, -1, 127, 128, -129, 1000, -2147483647 - 1, 2147483647, 65536})
        stream.writer.writeInteger(value);
    for (const std::uint32_t value : {0U, 255U, 256U, 65536U, 16777216U, 4294967295U})
        stream.writer.writeUnsignedInteger(value);
    prc::BitReader reader = stream.Reader();
    for (const std::int32_t value : {0, 1, -1, 127, 128, -129, 1000, -2147483647 - 1, 2147483647, 65536})
        EXPECT_EQ(reader.readInteger(), value);
    for (const std::uint32_t value : {0U, 255U, 256U, 65536U, 16777216U, 4294967295U})
        EXPECT_EQ(reader.readUnsignedInteger(), value);
    EXPECT_TRUE(reader.ok());
    Stream fiveBytes("1 00000001 1 00000001 1 00000001 1 00000001 1 00000001 0");
    prc::BitReader bad = fiveBytes.Reader();
    EXPECT_EQ(bad.readUnsignedInteger(), 0U);
    EXPECT_FALSE(bad.ok());
    EXPECT_THAT(bad.failureReason(), HasSubstr("four bytes"));
}

Model::PRCModel ReadWithoutFindings(const HandMadeFile& file)
{
    Model::PRCModel model = prc::readPRC(file.Bytes());
    for (const Model::Finding& finding : model.findings)
        ADD_FAILURE() << finding.message();
    return model;
}

/// Six points, three normals, four texture pairs; all distinct.
MeshFields SixPoints()
{
    MeshFields mesh;
    for (unsigned number = 0; number < 18; ++number)
        mesh.coordinates.push_back(number * 1.5 - 4.0);
    mesh.normals = {0.0, 0.0, 1.0, 0.0, 1.0, 0.0, 1.0, 0.0, 0.0};
    mesh.textures = {0.0, 0.1, 0.2, 0.3, 0.4, 0.5, 0.6, 0.7};
    return mesh;
}

Model::TriangleCorners CornersOf(const MeshFields& mesh, std::size_t face = 0)
{
    HandMadeFile file = PlainFile();
    file.tessellation = TessellationsOf(1, [&mesh](SectionWriter& section) { WriteMesh(section, mesh); });
    const Model::PRCModel model = ReadWithoutFindings(file);
    Model::TriangleCorners corners;
    if (model.structures.empty() || model.structures[0].tessellations.size() != 1) {
        ADD_FAILURE() << "the mesh was not read";
        return corners;
    }
    const Model::Tessellation& tessellation = model.structures[0].tessellations[0];
    Model::appendTriangles(tessellation, tessellation.faces[face], corners);
    EXPECT_EQ(corners.points.size(), 3 * tessellation.faces[face].triangleCount);
    return corners;
}

TEST(ReadFaces, WithFansAndStripsOfOneFace)
{
    MeshFields mesh = SixPoints();
    // Fans and strips in one face: a fan of four corners, then strips of five and of three; normal, point each.
    mesh.faces = {{.usedEntities = 4 | 8, .sizes = {1, 4, 2, 5, 3}}};
    for (const std::uint32_t point : {0U, 1U, 2U, 3U, /**/ 1U, 2U, 3U, 4U, 5U, /**/ 5U, 4U, 0U})
        mesh.indices.insert(mesh.indices.end(), {3 * (point % 3), 3 * point});
    const Model::TriangleCorners corners = CornersOf(mesh);
    EXPECT_EQ(corners.points, (Numbers{0, 1, 2, 0, 2, 3, /**/ 1, 2, 3, 3, 2, 4, 3, 4, 5, /**/ 5, 4, 0}));
    EXPECT_EQ(corners.normals, (Numbers{0, 1, 2, 0, 2, 0, /**/ 1, 2, 0, 0, 2, 1, 0, 1, 2, /**/ 2, 1, 0}));
    EXPECT_EQ(corners.textureCoordinates, Numbers(18, nullIndex));
}

TEST(ReadFaces, WithOneNormalForATriangleOrAFan)
{
    MeshFields mesh = SixPoints();
    constexpr std::uint32_t oneNormal = 0x40000000;
    // 8192: textured triangles with one normal; 16384: textured fans, one with and one without the mark.
    mesh.faces = {{.usedEntities = 8192 | 16384, .sizes = {2, 2, 3 | oneNormal, 3}, .textureIndices = 1}};
    mesh.indices = {3, 0, 0, 2, 3,  4, 6,          // normal 1, then pairs of texture and point
                    6, 6, 9, 4, 12, 2, 15,         // normal 2
                    0, 0, 0, 2, 6,  4, 12,         // a fan with one normal
                    3, 6, 3, 6, 4,  9, 0,  2, 15}; // a fan with three
    const Model::TriangleCorners corners = CornersOf(mesh);
    EXPECT_EQ(corners.points, (Numbers{0, 1, 2, 3, 4, 5, 0, 2, 4, 1, 3, 5}));
    EXPECT_EQ(corners.normals, (Numbers{1, 1, 1, 2, 2, 2, 0, 0, 0, 1, 2, 0}));
    EXPECT_EQ(corners.textureCoordinates, (Numbers{0, 1, 2, 3, 2, 1, 0, 1, 2, 3, 2, 1}));
}

TEST(ReadFaces, OneAfterTheOtherWhateverTheirStartsSayWithoutNormals)
{
    MeshFields mesh = SixPoints();
    mesh.normals.clear();
    mesh.recalculateNormals = true;
    mesh.faces = {{.sizes = {1}}, {.usedEntities = 512, .start = 6, .sizes = {1}, .textureIndices = 2}};
    mesh.indices = {0, 3, 6, /**/ 2, 4, 9, 0, 6, 12, 4, 2, 15};
    const Model::TriangleCorners corners = CornersOf(mesh, 1);
    EXPECT_EQ(corners.points, (Numbers{3, 4, 5}));
    EXPECT_EQ(corners.textureCoordinates, (Numbers{1, 0, 2})) << "the first of two for each corner";
    EXPECT_EQ(corners.normals, Numbers(3, nullIndex));
}

TEST(ReadFaces, WithColoursOfTheirCorners)
{
    MeshFields mesh = SixPoints();
    mesh.faces = {{.usedEntities = 8, .sizes = {1, 4}, .writeColours = [](SectionWriter& section) {
                       section.writeBoolean(false); // three bytes
                       section.writeBoolean(false); // not optimised
                       for (const std::uint8_t component : std::array<std::uint8_t, 3>{10, 20, 30})
                           section.writeCharacter(component);
                       section.writeBoolean(true);
                       section.writeBoolean(false);
                       for (const std::uint8_t component : std::array<std::uint8_t, 3>{40, 50, 60})
                           section.writeCharacter(component);
                       section.writeBoolean(true);
                   }}};
    mesh.indices = {0, 0, 0, 3, 0, 6, 0, 9};
    EXPECT_EQ(CornersOf(mesh).colours, (Numbers{0, 1, 2, 2, 1, 3}));
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
        MeshFields mesh = SixPoints();
        mesh.indices = wrong.indices;
        mesh.faces = {{.usedEntities = wrong.usedEntities, .sizes = wrong.sizes},
                      {.sizes = {1}}}; // a second face that is good where the indices are
        HandMadeFile file = PlainFile();
        file.tessellation = TessellationsOf(1, [&mesh](SectionWriter& section) { WriteMesh(section, mesh); });
        const Model::PRCModel model = prc::readPRC(file.Bytes());
        ASSERT_THAT(model.structures[0].tessellations, SizeIs(1)) << wrong.what;
        const Model::Tessellation& tessellation = model.structures[0].tessellations[0];
        EXPECT_FALSE(tessellation.faces[0].isUsable) << wrong.what;
        EXPECT_FALSE(model.hasErrors()) << wrong.what;
        ASSERT_THAT(model.findings, SizeIs(1)) << wrong.what;
        EXPECT_THAT(model.findings[0].text, HasSubstr("tessellation 0 cannot be used")) << wrong.what;
        Model::TriangleCorners corners;
        Model::appendTriangles(tessellation, tessellation.faces[0], corners);
        EXPECT_THAT(corners.points, IsEmpty()) << wrong.what;
    }
}

TEST(ReadTessellations, StopsAtOneThatIsNotKnownAndKeepsThoseBefore)
{
    MeshFields mesh = SixPoints();
    HandMadeFile file = PlainFile();
    file.tessellation = TessellationsOf(3, [&mesh](SectionWriter& section) {
        WriteMesh(section, mesh);
        section.writeEntityType(EntityType::Tessellation3DCompressed);
        section.writeBits(0xABCDEF, 32);
        section.writeBits(0xABCDEF, 32);
    });
    const Model::PRCModel model = prc::readPRC(file.Bytes());
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

/// Reads a file whose only occurrence has this location.
prc::Matrix LocationOf(const std::function<void(SectionWriter&)>& write)
{
    HandMadeFile file = PlainFile();
    file.tree = TreeOf([](SectionWriter& section) { section.writeUnsignedInteger(0); },
                       [&write](SectionWriter& section) {
                           section.writeUnsignedInteger(1);
                           WriteOccurrence(section, {.writeLocation = write});
                       },
                       0);
    const Model::PRCModel model = ReadWithoutFindings(file);
    return model.structures.at(0).occurrences.at(0).location.value();
}

TEST(ReadTransformations, OfTheCartesianKind)
{
    const auto cartesian = [](std::uint8_t behaviour, std::vector<double> numbers) {
        return LocationOf([behaviour, numbers](SectionWriter& section) {
            section.writeEntityType(EntityType::CartesianTransformation);
            section.writeCharacter(behaviour);
            section.writeDoubles(numbers);
        });
    };
    EXPECT_EQ(cartesian(0, {}), prc::identityMatrix);
    EXPECT_EQ(cartesian(0x01, {7, 11, 13}), (prc::Matrix{1, 0, 0, 7, 0, 1, 0, 11, 0, 0, 1, 13, 0, 0, 0, 1}));
    // A quarter turn about z with its x and y axes, then a uniform scale.
    EXPECT_EQ(cartesian(0x0B, {7, 11, 13, 0, 1, 0, -1, 0, 0, 2}),
              (prc::Matrix{0, -2, 0, 7, 2, 0, 0, 11, 0, 0, 2, 13, 0, 0, 0, 1}));
    // The same, mirrored, and scaled differently along each axis.
    EXPECT_EQ(cartesian(0x16, {0, 1, 0, -1, 0, 0, 2, 3, 5}),
              (prc::Matrix{0, -3, 0, 0, 2, 0, 0, 0, 0, 0, -5, 0, 0, 0, 0, 1}));
    // Any three columns; a last row of its own.
    EXPECT_EQ(cartesian(0x61, {7, 11, 13, 1, 2, 3, 4, 5, 6, 8, 9, 10, 0.5, 0.25, 0.125, 4}),
              (prc::Matrix{1, 4, 8, 7, 2, 5, 9, 11, 3, 6, 10, 13, 0.5, 0.25, 0.125, 4}));
}

TEST(ReadNames, AndGraphicsThatAreTheSameAsBefore)
{
    HandMadeFile file = PlainFile();
    file.globals = SectionWriter();
    file.globals.writeEmptySchema();
    WriteGlobals(file.globals, 3);
    const auto repeated = [](SectionWriter& section) { section.writeBoolean(true); };
    file.tree = TreeOf([](SectionWriter& section) { section.writeUnsignedInteger(0); },
                       [&repeated](SectionWriter& section) {
                           section.writeUnsignedInteger(3);
                           WriteOccurrence(section, {.name = "first", .writeGraphics = repeated});
                           WriteOccurrence(section, {.name = "second", .writeGraphics = [](SectionWriter& bits) {
                                                         WriteExplicitGraphics(bits, 2, 0x2010);
                                                     }});
                           WriteOccurrence(section, {.name = "third", .writeGraphics = repeated});
                       },
                       2);
    const Model::PRCModel model = ReadWithoutFindings(file);
    const auto& occurrences = model.structures.at(0).occurrences;
    ASSERT_THAT(occurrences, SizeIs(3));
    EXPECT_FALSE(occurrences[0].graphics.stated);
    EXPECT_TRUE(occurrences[0].graphics.isShown()) << "nothing has been said yet";
    EXPECT_EQ(occurrences[2].graphics.style, 2U);
    EXPECT_EQ(occurrences[2].graphics.behaviour, 0x2010);
    EXPECT_FALSE(occurrences[2].graphics.isShown());
}

TEST(ReadSchemas, AndTheFieldsThatTheyAdd)
{
    HandMadeFile file = PlainFile();
    file.globals = SectionWriter();
    file.globals.writeUnsignedInteger(3);
    // For everything with graphics: since version 15083, if the number read is 1, the fields of type 802 follow.
    const Numbers graphicsSchema = {19, 39, 1, 20, 15083, 17, 37, 26, 1, 4, 6, 802, 21, 21};
    const Numbers typeSchema = {16, 7, 15, 26, 2, 5}; // counted pairs of doubles, then two texts
    const Numbers occurrenceSchema = {20, 9000, 1, 2, 21, 24, 5, 3, 15, 25, 5, 17, 33, 27, 26, 1, 0, 18, 2};
    for (const auto& [type, tokens] : {std::pair{2U, graphicsSchema}, {802U, typeSchema}, {310U, occurrenceSchema}}) {
        file.globals.writeUnsignedInteger(type);
        file.globals.writeUnsignedInteger(static_cast<std::uint32_t>(tokens.size()));
        file.globals.writeUnsignedIntegers(tokens);
    }
    WriteGlobals(file.globals, 0);
    const auto graphics = [](SectionWriter& section) {
        section.writeGraphics(nullIndex);
        section.writeInteger(1);
        section.writeUnsignedInteger(2); // pairs
        for (const double number : {0.5, 1.5, 2.5, -3.5})
            section.writeDouble(number);
        section.writeString("one");
        section.writeString(std::nullopt);
    };
    file.tree = TreeOf([](SectionWriter& section) { section.writeUnsignedInteger(0); },
                       [&graphics](SectionWriter& section) {
                           section.writeUnsignedInteger(1);
                           // The old version block is not there; a count of 3, and by the loop counter a Boolean
                           // in the first round and Characters in the others, all in front of the user data.
                           section.writeEntityType(EntityType::ProductOccurrence);
                           prc::IdentifierCounter identifiers;
                           section.writeReferenceBase("extended", identifiers);
                           graphics(section);
                           section.writeBits(0, 3 + 1); // part, prototype, external data, children
                           section.writeCharacter(0);
                           section.writeBoolean(false);
                           section.writeDouble(1.0);
                           section.writeCharacter(0);
                           section.writeInteger(0);
                           section.writeBits(0, 2 + 4 + 4); // location, entity references, markups, the rest
                           section.writeUnsignedInteger(3);
                           section.writeBoolean(true);
                           section.writeCharacter(200);
                           section.writeCharacter(201);
                           section.writeUnsignedInteger(5); // user data
                           section.writeBits(31, 5);
                       },
                       0);
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
        file.globals.writeUnsignedInteger(1);
        file.globals.writeUnsignedInteger(303);
        file.globals.writeUnsignedInteger(static_cast<std::uint32_t>(tokens.size()));
        file.globals.writeUnsignedIntegers(tokens);
        WriteGlobals(file.globals, 2);
        const Model::PRCModel model = prc::readPRC(file.Bytes());
        ASSERT_THAT(model.findings, SizeIs(1)) << reason;
        EXPECT_THAT(model.findings[0].message(), HasSubstr(reason));
        EXPECT_THAT(model.findings[0].place, HasSubstr("globals of file structure 0, bit ")) << reason;
        EXPECT_THAT(model.structures[0].globals.styles, SizeIs(2)) << "what was read before stays";
        EXPECT_THAT(model.structures[0].occurrences, SizeIs(1));
    }
}

} // namespace
