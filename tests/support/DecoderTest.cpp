#include "platform/prcfile/PRCReader.h"
#include "tests/prcfile/ExampleFile.h"
#include "tests/prcfile/FileSections.h"
#include "tests/support/PRCDecoderSections.h"
#include "tests/support/PRCPlacement.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <optional>

using namespace Orvel::Test;
using prc::Test::Bytes;
using prc::Test::ExampleFile;
using prc::Test::ExamplePath;
using prc::Test::FileSections;
using testing::ElementsAre;
using testing::HasSubstr;

namespace
{

/// Bits as text, blanks ignored, padded to whole bytes with 0.
Bytes BytesOf(const std::string& bits)
{
    Bytes bytes;
    size_t count = 0;
    for (const char digit : bits) {
        if (digit == ' ')
            continue;
        if (count % 8 == 0)
            bytes.push_back(0);
        if (digit == '1')
            bytes.back() = static_cast<uint8_t>(bytes.back() | 0x80u >> count % 8);
        ++count;
    }
    return bytes;
}

PRCBitReader Reader(const std::string& bits, Strictness strictness = Strictness::OwnWriter)
{
    return {"bits", BytesOf(bits), strictness};
}

/// What the decoder finds wrong with a file; "" when nothing.
std::string Finding(const Bytes& file, Strictness strictness = Strictness::OwnWriter)
{
    try {
        static_cast<void>(DecodePRC(file, strictness));
        return "";
    } catch (const DecodeError& error) {
        return error.what();
    }
}

/// Spoils a bit of `bytes`, one after the other, and hands out each result. The decoder must object or see something
/// else than `original`: no field goes unread. @return how often it objected.
size_t ObjectionsToBits(const Bytes& bytes, const PRCContent& original,
                        const std::function<Bytes(const Bytes&)>& fileOf)
{
    size_t objections = 0;
    for (size_t bit = 0; bit < bytes.size() * 8; ++bit) {
        Bytes spoilt = bytes;
        spoilt[bit / 8] ^= static_cast<uint8_t>(0x80u >> bit % 8);
        try {
            EXPECT_NE(DecodePRC(fileOf(spoilt)), original) << "byte " << bit / 8 << " bit " << bit % 8;
        } catch (const DecodeError&) {
            ++objections;
        }
    }
    return objections;
}

} // namespace

TEST(PRCBits, IntegersHaveOneFormOnly)
{
    EXPECT_THROW(Reader("1 00000001 1 00000000 0").UnsignedInteger(), DecodeError) << "superfluous byte";
    EXPECT_THROW(Reader("1 00000000 0").Integer(), DecodeError) << "superfluous byte";
    EXPECT_THROW(Reader("1 11111111 1 11111111 0").Integer(), DecodeError) << "superfluous byte";
    EXPECT_THROW(Reader("100000001100000001100000001100000001100000001").UnsignedInteger(), DecodeError)
        << "five bytes";
    EXPECT_THROW(Reader("1 0000").UnsignedInteger(), DecodeError) << "ends inside";
}

TEST(PRCBits, DistanceFormsOfDoublesAreReadButNotAcceptedFromTheOwnWriter)
{
    // 2000 with its second mantissa byte by reference: three places back stands exponent byte 0x40.
    const std::string byDistance = "00010110 0 1 1111 1 01000000 0 011 1 01000001 1 00000000 0 000";
    EXPECT_EQ(Reader(byDistance, Strictness::Format).Double(), 0x1.f404041p10);
    EXPECT_THROW(Reader(byDistance).Double(), DecodeError);
    EXPECT_THROW(Reader("00010110 0 1 1111 0 011", Strictness::Format).Double(), DecodeError) << "before the pattern";
    EXPECT_THROW(Reader("00010110 0 1 1111 0 111", Strictness::Format).Double(), DecodeError) << "unused form";
    EXPECT_THROW(Reader("00010110 0 1 1111 0 000").Double(), DecodeError) << "fill form in the first byte";
    EXPECT_THROW(Reader("11011 0 1 0000 1 00000000 0 000").Double(), DecodeError) << "mantissa 0 spelt out";
}

TEST(PRCBits, StringsAreUtf8OrNull)
{
    EXPECT_EQ(Reader("0").String(), Name());
    EXPECT_EQ(Reader("1 0").String(), Name(""));
    EXPECT_EQ(Reader("1 1 00000010 0 11000011 10101001").String(), Name("\u00e9"));
    EXPECT_THROW(Reader("1 1 00000010 0 11000011 01000001").String(), DecodeError) << "broken sequence";
    EXPECT_THROW(Reader("1 1 00000001 0 00000000").String(), DecodeError) << "zero byte";
}

TEST(PRCDecoder, ReadsHeadersAndACubeWithoutNormals)
{
    const PRCContent content = DecodePRCFile(ExamplePath("a_cube"));

    EXPECT_EQ(content.minimalVersion, 8016u);
    EXPECT_EQ(content.fileId, (UniqueId{2820232977u, 92112473u, 1153761479u, 627742812u}));
    EXPECT_EQ(content.applicationId, (UniqueId{3704517281u, 1262962606u, 3579075681u, 1255712016u}));
    EXPECT_EQ(content.structureId, (UniqueId{2431696664u, 302062598u, 1657247097u, 2199724890u}));
    EXPECT_EQ(content.modelName, Name("a_cube"));
    EXPECT_EQ(content.unitInMillimetres, 1);
    EXPECT_EQ(content.chordHeightRatio, 2000);

    ASSERT_EQ(content.tessellations.size(), 1u);
    const Tessellation& tess = content.tessellations[0];
    EXPECT_TRUE(tess.mustRecalculateNormals);
    EXPECT_EQ(tess.creaseAngleInDegrees, 25.84);
    EXPECT_EQ(tess.points.size(), 8u);
    const std::vector<Triangle> triangles = LocalTriangles(tess, 0);
    ASSERT_EQ(triangles.size(), 12u);
    const auto point = [](double x, double y, double z) { return Corner{{x, y, z}, {}, {}}; };
    EXPECT_EQ(triangles[0], (Triangle{point(0, 0, 0), point(0, 10, 0), point(10, 10, 0)}));
    EXPECT_EQ(triangles[11], (Triangle{point(10, 0, 0), point(10, 10, 10), point(10, 0, 10)}));

    ASSERT_EQ(content.parts.size(), 1u);
    EXPECT_EQ(content.parts[0].maximum, (Vector3{10, 10, 10}));
    const std::vector<PlacedMesh> meshes = PlacedMeshes(content);
    ASSERT_EQ(meshes.size(), 1u);
    EXPECT_THAT(meshes[0].place.path, ElementsAre("a_cube", "cube"));
    const ResolvedMaterial look = MaterialOf(content, meshes[0]);
    ASSERT_NE(look.material, nullptr);
    EXPECT_EQ(look.material->ambient, (Vector3{0.24, 0.03, 0.06}));
    EXPECT_EQ(look.material->diffuse, (Vector3{0.8, 0.1, 0.2}));
    EXPECT_EQ(look.material->specular, (Vector3{0.25, 0.25, 0.25}));
    EXPECT_EQ(look.material->shininess, 0.2);
    EXPECT_EQ(look.alpha, 1);
    EXPECT_EQ(look.picture, nullptr);
}

TEST(PRCDecoder, PlacesNestedGroupsWithGeneralMatrices)
{
    const PRCContent content = DecodePRCFile(ExamplePath("b_groups"));

    std::vector<std::vector<std::string>> paths;
    for (const PlacedOccurrence& place : WalkTree(content))
        paths.push_back(place.path);
    const std::string house = "\u0434\u043e\u043c \u5bb6 \U0001f3e0", group = "Gruppe \u00e4\u00f6\u00fc \u00df";
    EXPECT_THAT(paths,
                ElementsAre(ElementsAre("b_groups"), ElementsAre("b_groups", group),
                            ElementsAre("b_groups", group, house), ElementsAre("b_groups", group, house, "scaled"),
                            ElementsAre("b_groups", group, "sheared"), ElementsAre("b_groups", group, "sheared", "")));

    const auto scaled = FindByPath(content, {"b_groups", group, house, "scaled"});
    ASSERT_EQ(scaled.size(), 1u);
    const double c = 0.8660254037844387, s = 0.49999999999999994; // 30 degrees
    EXPECT_EQ(scaled[0].world, (Matrix{2 * c, 0.5 * -s, 0, 12.5, 2 * s, 0.5 * c, 0, -3.25, 0, 0, 3, 7, 0, 0, 0, 1}));
    const auto sheared = FindByPath(content, {"b_groups", group, "sheared", ""});
    ASSERT_EQ(sheared.size(), 1u);
    EXPECT_EQ(sheared[0].world, (Matrix{1, 0.25, 0, -20, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}));

    // The cube's side x = 0: sheared along x its normal leaves the axis, its points do not stay at one x.
    const std::vector<PlacedMesh> meshes = PlacedMeshes(content);
    ASSERT_EQ(meshes.size(), 4u);
    size_t sides = 0;
    for (const Triangle& triangle : WorldTriangles(meshes[3])) {
        for (const Corner& corner : triangle) {
            const Vector3 normal = corner.normal.value();
            if (normal[0] > -0.5)
                continue;
            ++sides;
            EXPECT_NEAR(normal[0], -4 / std::sqrt(17.0), 1e-15);
            EXPECT_NEAR(normal[1], 1 / std::sqrt(17.0), 1e-15);
            EXPECT_EQ(corner.point[0], -20 + 0.25 * corner.point[1]);
        }
    }
    EXPECT_EQ(sides, 6u);
}

TEST(PRCDecoder, DecodesTexturesFromPngAndBytes)
{
    for (const char* name : {"c_tex_rgb_png", "c_tex_rgb_raw", "c_tex_rgba_png", "c_tex_rgba_raw"}) {
        SCOPED_TRACE(name);
        const bool isReplacing = std::string(name) == "c_tex_rgba_png";
        const bool isPng = std::string(name).ends_with("png");
        const bool hasAlpha = std::string(name).find("rgba") != std::string::npos;
        const PRCContent content = DecodePRCFile(ExamplePath(name), isPng ? Strictness::OwnWriter : Strictness::Format);
        const std::vector<PlacedMesh> meshes = PlacedMeshes(content);
        ASSERT_EQ(meshes.size(), 1u);
        const ResolvedMaterial look = MaterialOf(content, meshes[0]);
        ASSERT_NE(look.picture, nullptr);
        EXPECT_EQ(look.material->diffuse, (Vector3{1, 1, 1}));
        EXPECT_EQ(look.texture->function, isReplacing ? 2 : 1);
        EXPECT_EQ(look.texture->wrapS, isReplacing ? 2 : 1);
        ASSERT_EQ(look.picture->width, 4u);
        ASSERT_EQ(look.picture->height, 4u);
        for (uint32_t row = 0; row < 4; ++row) {
            for (uint32_t column = 0; column < 4; ++column) {
                Bytes want{static_cast<uint8_t>((row + column) % 2 == 0 ? 20 : 255), static_cast<uint8_t>(60 * row),
                           static_cast<uint8_t>(60 * column)};
                if (hasAlpha)
                    want.push_back(column < 2 ? 255 : 128);
                EXPECT_EQ(look.picture->PixelAt(column, row), want) << "column " << column << " row " << row;
            }
        }
    }
    EXPECT_THAT(Finding(ExampleFile("c_tex_rgb_raw")), HasSubstr("picture is not stored as PNG"));
}

TEST(PRCDecoder, ResolvesTextureCoordinatesWithAndWithoutNormals)
{
    const auto expectFirst = [](const char* name, const std::optional<Vector3>& normal) {
        const std::vector<Triangle> triangles = LocalTriangles(DecodePRCFile(ExamplePath(name)).tessellations.at(0), 0);
        EXPECT_EQ(triangles.size(), 12u);
        EXPECT_EQ(triangles.at(0),
                  (Triangle{Corner{{0, 0, 0}, normal, Vector2{0, 0}}, Corner{{0, 10, 0}, normal, Vector2{1, 0}},
                            Corner{{10, 10, 0}, normal, Vector2{1, 1}}}));
    };
    expectFirst("c_tex_rgb_png", Vector3{0, 0, -1});
    expectFirst("c_tex_no_normals", {});
}

TEST(PRCDecoder, ResolvesInstancesStylesAndSharedParts)
{
    const PRCContent instances = DecodePRCFile(ExamplePath("d_instances"));
    std::vector<std::pair<std::string, Vector3>> colours;
    for (const PlacedMesh& mesh : PlacedMeshes(instances))
        colours.emplace_back(mesh.place.path.back(), MaterialOf(instances, mesh).material->diffuse);
    const Vector3 red{1, 0, 0}, green{0, 1, 0}, blue{0, 0, 1};
    // The second mesh of "middle" has no style of its own: the one of its face wins.
    EXPECT_THAT(colours, ElementsAre(std::pair("left", red), std::pair("middle", green), std::pair("middle", green),
                                     std::pair("right", blue)));

    const PRCContent shared = DecodePRCFile(ExamplePath("d_shared_part"));
    ASSERT_EQ(shared.parts.size(), 1u);
    std::vector<double> positions;
    for (const PlacedMesh& mesh : PlacedMeshes(shared))
        positions.push_back(mesh.place.world[3]);
    EXPECT_THAT(positions, ElementsAre(0, 20, 40));
}

TEST(PRCDecoder, ReadsVertexColoursOfAFace)
{
    const std::string head = "1 00110001 1 00000001 0 0 0 0 1 00000001 0"     // section 305, unnamed, one tessellation
                             "1 10101100 0 0 1 00000011 0 01 01 01"           // 172, one point, all coordinates 0
                             "1 0 1 00000000 01 0 0"                          // faces; normals to be computed
                             "1 00000110 0 0 0 0 0 0 0";                      // six indices, all 0
    const std::string face = "1 00000001 0 1 10101110 0 0 0 0 1 00000010 0 0" // one face, 174, triangles from index 0
                             "1 00000001 0 1 00000010 0 0";                   // two of them, without texture
    const std::string colours = "1 1 0 00000001 00000010 00000011 00000100"   // RGBA, the first corner
                                "1 0 00000101 00000110 00000111 00001000 1 1 1";
    std::vector<uint32_t> identifiers;
    PRCContent content;
    PRCSectionReader reader("tessellation", BytesOf(head + face + colours + "0 0"), Strictness::OwnWriter, identifiers);
    DecodeTessellations(reader, content);
    ASSERT_EQ(content.tessellations.size(), 1u);
    EXPECT_EQ(content.tessellations[0].faces[0].colourComponents, 4u);
    EXPECT_THAT(content.tessellations[0].faces[0].vertexColours,
                ElementsAre(1, 2, 3, 4, 1, 2, 3, 4, 5, 6, 7, 8, 5, 6, 7, 8, 5, 6, 7, 8, 5, 6, 7, 8));
}

TEST(PRCDecoder, ReadsEmptyGroupsTransparencyUnitAndSets)
{
    const PRCContent content = DecodePRCFile(ExamplePath("e_empty_transparent"));
    EXPECT_EQ(content.unitInMillimetres, 25.4);
    EXPECT_EQ(WalkTree(content).size(), 5u);
    EXPECT_EQ(FindByPath(content, {"e_empty_transparent", "empty with child", "also empty"}).size(), 1u);
    const std::vector<PlacedMesh> meshes = PlacedMeshes(content);
    ASSERT_EQ(meshes.size(), 1u);
    EXPECT_EQ(MaterialOf(content, meshes[0]).alpha, 128 / 255.0);
    EXPECT_EQ(MaterialOf(content, meshes[0]).material->diffuseAlpha, 0.5);

    const PRCContent set = DecodePRCFile(ExamplePath("g_ri_set"), Strictness::Format);
    ASSERT_EQ(PlacedMeshes(set).size(), 2u);
    EXPECT_EQ(PlacedMeshes(set)[1].item->name, Name("mesh 1"));
    EXPECT_THAT(Finding(ExampleFile("g_ri_set")), HasSubstr("representation item of an unexpected type"));
}

TEST(PRCDecoder, NoBitIsIgnored)
{
    for (const char* name : {"b_groups", "c_tex_rgba_png", "d_instances"}) {
        const FileSections parts = FileSections::Of(ExampleFile(name));
        const PRCContent original = DecodePRC(parts.File());
        size_t objections = 0;
        for (size_t section = 0; section < 6; ++section) {
            SCOPED_TRACE(testing::Message() << name << " section " << section);
            FileSections changed = parts;
            Bytes& place = section < 5 ? changed.structures[0].sections[section] : changed.model;
            objections += ObjectionsToBits(Bytes(place), original, [&](const Bytes& spoilt) {
                place = spoilt;
                return changed.File();
            });
        }
        EXPECT_GT(objections, 1000u) << name;
    }
    const Bytes file = ExampleFile("c_tex_rgb_png");
    const auto headers = static_cast<std::ptrdiff_t>(prc::readPRC(file).structures.at(0).sections[1].offset);
    ObjectionsToBits({file.begin(), file.begin() + headers}, DecodePRC(file), [&](const Bytes& spoilt) {
        Bytes whole = spoilt;
        whole.insert(whole.end(), file.begin() + headers, file.end());
        return whole;
    });
}

TEST(PRCDecoder, RefusesAFileCutAnywhereOrContinued)
{
    Bytes file = ExampleFile("c_tex_rgb_png");
    for (std::ptrdiff_t length = 0; length < std::ssize(file); ++length)
        EXPECT_NE(Finding({file.begin(), file.begin() + length}), "") << length;
    file.push_back(0);
    EXPECT_THAT(Finding(file), HasSubstr("does not end with the file"));
    EXPECT_THROW(static_cast<void>(DecodePRCFile(ExamplePath("no such file"))), std::runtime_error);
}
