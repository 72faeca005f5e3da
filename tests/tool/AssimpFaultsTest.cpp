#include "tests/tool/AssimpTest.h"
#include "tool/import/MeshFileChecks.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <initializer_list>
#include <vector>

namespace Orvel::Import
{
namespace
{

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

using Check = void (*)(std::string_view);

/// The error of a check; empty when the content passes. The content stands alone on the heap, so that reading beyond
/// its end does not go unnoticed by a sanitizer.
std::string ErrorOf(Check check, std::string_view content)
{
    const std::vector<char> bytes(content.begin(), content.end());
    try {
        check({bytes.data(), bytes.size()});
    } catch (const ImportError& error) {
        return error.what();
    }
    return {};
}

std::string Bytes(std::initializer_list<int> values)
{
    std::string text;
    for (const int value : values)
        text += static_cast<char>(value);
    return text;
}

const std::string TextPly = "ply\r\nformat ascii 1.0\r\nelement vertex 2\r\nproperty float x\r\nproperty unknown y\r\n"
                            "element face 2\r\nproperty list uchar int vertex_indices\r\nend_header\r\n"
                            "10 20\r\ncomment none 1 2 3\r\n30 40\r\n3 0 1 0\r\n2 1 7\r\n";

/// Two points of one short each, two faces with lists of shorts, one of them empty, and a byte after each list.
std::string BinaryPly(const std::string& encoding, const std::string& body)
{
    return "ply\nformat " + encoding + " 1.0\nelement vertex 2\nproperty short x\nelement face 2\n" +
           "property list ushort int16 vertex_indices\nproperty uchar flag\nend_header\n" + body;
}

const std::string BigEndianBody = Bytes({0, 7, 0, 9, 0, 2, 0, 0, 0, 1, 5, 0, 0, 6});
const std::string LittleEndianBody = Bytes({7, 0, 9, 0, 2, 0, 0, 0, 1, 0, 5, 0, 0, 6});

} // namespace

TEST(PlyCheck, PassesWholeFiles)
{
    EXPECT_EQ(ErrorOf(CheckPly, TextPly), "");
    EXPECT_EQ(ErrorOf(CheckPly, BinaryPly("binary_big_endian", BigEndianBody)), "");
    EXPECT_EQ(ErrorOf(CheckPly, BinaryPly("binary_little_endian", LittleEndianBody)), "");
    EXPECT_EQ(ErrorOf(CheckPly, "ply\nformat ascii 1.0\nelement vertex 0\nend_header"), "");
}

TEST(PlyCheck, RefusesFilesCutAnywhere)
{
    const std::string lastWord = "7\r\n";
    for (std::size_t length = 3; length <= TextPly.size() - lastWord.size(); ++length)
        EXPECT_THAT(ErrorOf(CheckPly, TextPly.substr(0, length)), StartsWith("the file is ")) << length;
    const std::string binary = BinaryPly("binary_little_endian", LittleEndianBody);
    for (std::size_t length = 3; length < binary.size(); ++length)
        EXPECT_THAT(ErrorOf(CheckPly, binary.substr(0, length)), StartsWith("the file is ")) << length;
    EXPECT_EQ(ErrorOf(CheckPly, binary.substr(0, binary.size() - 1)),
              "the file is cut short: of the element 'face' it holds 1 of 2");
    EXPECT_EQ(ErrorOf(CheckPly, TextPly.substr(0, TextPly.find("30 40"))),
              "the file is cut short: of the element 'vertex' it holds 1 of 2");
    EXPECT_EQ(ErrorOf(CheckPly, TextPly.substr(0, TextPly.find("end_header"))),
              "the file is cut short: its header has no end");
}

TEST(PlyCheck, RefusesCountsThatNoBytesStandBehind)
{
    for (const std::string format : {"ascii", "binary_little_endian"}) {
        const std::string begin = "ply\nformat " + format + " 1.0\nelement vertex 18446744073709551615\n";
        EXPECT_THAT(ErrorOf(CheckPly, begin + "property double x\nend_header\n12345678 "),
                    HasSubstr("it holds 1 of 18446744073709551615"))
            << format;
        EXPECT_THAT(ErrorOf(CheckPly, begin + "end_header\n1"), HasSubstr("'vertex' has no properties")) << format;
    }
    EXPECT_THAT(ErrorOf(CheckPly, "ply\nformat ascii 1.0\nelement vertex -1\nproperty int x\nend_header\n"),
                HasSubstr("no number of the element 'vertex'"));
    EXPECT_THAT(ErrorOf(CheckPly, "ply\nformat ascii 1.0\nelement face 1\nproperty list int int x\nend_header\n-3 1"),
                HasSubstr("a list has the length '-3'"));
}

TEST(StlCheck, ComparesBinaryFilesWithTheirCount)
{
    const std::string file = std::string(80, ' ').replace(0, 5, "solid") + Bytes({2, 0, 0, 0}) + std::string(100, '\1');
    EXPECT_EQ(ErrorOf(CheckStl, file), "");
    EXPECT_EQ(ErrorOf(CheckStl, file.substr(0, 183)), "the file is cut short: it holds 1 of 2 triangles");
    EXPECT_EQ(ErrorOf(CheckStl, file.substr(0, 84)), "the file is cut short: it holds 0 of 2 triangles");
    EXPECT_EQ(ErrorOf(CheckStl, file + "x"), "the file is damaged: it goes on after its 2 triangles");
    for (std::size_t length = 0; length < 84; ++length)
        EXPECT_NE(ErrorOf(CheckStl, file.substr(0, length)), "") << length;
}

TEST(StlCheck, WantsTheEndOfTextFiles)
{
    const std::string facet = "facet normal 0 0 1\nouter loop\nvertex 0 0 0\nvertex 1 0 0\nvertex 0 1 0\nendloop\n";
    EXPECT_EQ(ErrorOf(CheckStl, " SOLID part\r\n" + facet + "endfacet\r\n  ENDSOLID a part\r\n\r\n \x1A"), "");
    EXPECT_EQ(ErrorOf(CheckStl, "solid part\n" + facet + "endfacet\nend solid"), "");
    EXPECT_EQ(ErrorOf(CheckStl, "solid part\n" + facet), "the file is cut short: it does not end with 'endsolid'");
    EXPECT_EQ(ErrorOf(CheckStl, "solid x\n"), "the file is cut short: it does not end with 'endsolid'");
}

TEST(OffCheck, WantsALineForEveryPointAndFace)
{
    const std::string file = "COFF # colours\r\n\n3 1 0\n0 0 0 1\n# none\n1 0 0 1\n0 1 0 1\n3 0 1 2";
    EXPECT_EQ(ErrorOf(CheckOff, file), "");
    EXPECT_EQ(ErrorOf(CheckOff, "OFF 1 0 0\n7 7 7\n"), "");
    EXPECT_EQ(ErrorOf(CheckOff, file.substr(0, file.rfind('3'))),
              "the file is cut short: it holds 3 of 4 points and faces");
    EXPECT_EQ(ErrorOf(CheckOff, "OFF\n4294967295 4294967295 0\n1 2 3"),
              "the file is cut short: it holds 1 of 8589934590 points and faces");
    EXPECT_EQ(ErrorOf(CheckOff, "OFF\n"), "the file is damaged: it does not tell how many points and faces it has");
}

TEST(LengthChecks, CompareFilesWithWhatTheyPromise)
{
    const std::string lwo = "FORM" + Bytes({0, 0, 0, 6}) + "LWO2ab";
    EXPECT_EQ(ErrorOf(CheckLwo, lwo), "");
    EXPECT_EQ(ErrorOf(CheckLwo, lwo + "pad"), "");
    EXPECT_EQ(ErrorOf(CheckLwo, lwo.substr(0, 13)), "the file is cut short: it holds 13 of 14 bytes");
    EXPECT_EQ(ErrorOf(CheckBraces, "Node {Name {string {\"a{\"}}}\n\"{\n"), "");
    EXPECT_EQ(ErrorOf(CheckBraces, "Node {Name {string {\"a}\"}"),
              "the file is cut short: not all of its braces are closed");
    const std::string ifc = "ISO-10303-21;\nHEADER;\nENDSEC;\n";
    EXPECT_EQ(ErrorOf(CheckIfc, ifc + "END-ISO-10303-21;\r\n"), "");
    EXPECT_EQ(ErrorOf(CheckIfc, ifc), "the file is cut short: it does not end with 'END-ISO-10303-21;'");
}

TEST(ObjCheck, PassesEveryWayToWriteAFace)
{
    EXPECT_EQ(ErrorOf(CheckObj, "# f a\nv 1 2 3\r\n f 1 2 3 \r\nf\t1/1 2/2/ 3//3#end\nf -1//-1 -2 -3\nf 1 2 \\\n3\n"
                                "o f x\nusemtl f\nl 1 2\np 1\nf 1 2 3"),
              "");
    EXPECT_EQ(ErrorOf(CheckObj, ""), "");
}

TEST(ObjCheck, RefusesFacesThatAreNoNumbersAndATorso)
{
    EXPECT_EQ(ErrorOf(CheckObj, "v 0 0 0\nf 1 x2 3\n"), "the file is damaged: the face in line 2 has the corner 'x2'");
    EXPECT_EQ(ErrorOf(CheckObj, "v 0 0 0\nf 1 2 /3\n"), "the file is damaged: the face in line 2 has the corner '/3'");
    EXPECT_EQ(ErrorOf(CheckObj, "f # 1 2 3\n"), "the file is damaged: the face in line 1 has no corners");
    for (const char* last : {"v 1 2", "v", "vn 0 0 ", "vt", "f 1/1 2/"})
        EXPECT_EQ(ErrorOf(CheckObj, "v 0 0 0\n" + std::string(last)), "the file is cut short within its last line")
            << last;
}

namespace
{

class AssimpFaults : public AssimpTest
{};

constexpr std::string_view Painted = "mtllib Sub\\Paint.MTL\nv 0 0 0\nv 2 0 0\nv 2 3 5\nusemtl glass\nf 1 2 3\n";

std::string Utf16(std::string_view ascii, bool bigEndian)
{
    std::string text = bigEndian ? "\xFE\xFF" : "\xFF\xFE";
    for (const char c : ascii)
        text += bigEndian ? std::string{'\0', c} : std::string{c, '\0'};
    return text;
}

} // namespace

TEST_F(AssimpFaults, MeshFilesWithoutAnythingAreRefused)
{
    for (const auto& [name, content] : {std::pair{"a.stl", "solid a\nendsolid a\n"}, {"a.obj", "o nothing\n"}})
        EXPECT_THAT(ErrorOf(name, content), testing::AnyOf("the file holds no triangles", StartsWith("the file is ")))
            << name;
    EXPECT_EQ(ErrorOf("x.stl", "solid x\n"), "the file is cut short: it does not end with 'endsolid'");
}

TEST_F(AssimpFaults, CloudsOfPointsAreCounted)
{
    const ImportedScene ply =
        Read("c.ply", "ply\nformat ascii 1.0\nelement vertex 3\nproperty float x\nproperty float y\n"
                      "property float z\nend_header\n0 0 0\n2 0 0\n2 3 5\n");
    EXPECT_THAT(ply.geometries, IsEmpty());
    EXPECT_THAT(report.Warnings(), ElementsAre("left out: 3 points"));
    const ImportedScene obj = Read("c.obj", "v 0 0 0\nv 1 0 0\n");
    EXPECT_THAT(obj.geometries, IsEmpty());
    EXPECT_THAT(report.Warnings(), ElementsAre("left out: 5 points"));
}

TEST_F(AssimpFaults, CompanionsAreFoundWhateverTheirCase)
{
    std::filesystem::create_directory(folder.Path() / "sub");
    folder.Write("sub/paint.mtl", "newmtl glass\nKd 0.25 0.5 0.75\n");
    const ImportedScene scene = Read("case.obj", Painted);
    ASSERT_THAT(scene.materials, SizeIs(1));
    EXPECT_EQ(scene.materials[0].name, "glass");
    EXPECT_NEAR(scene.materials[0].diffuse[2], 0.75, 1e-6);
    EXPECT_THAT(report.Warnings(), IsEmpty());
}

TEST_F(AssimpFaults, CompanionsThatAreNotThereAreNamed)
{
    const ImportedScene scene = Read("lone.obj", Painted);
    EXPECT_THAT(report.Warnings(), ElementsAre("material file 'Paint.MTL' was not found"));
    EXPECT_EQ(scene.nodes.at(0).parts.at(0).material, None) << "a name without a definition is not a material";
}

TEST_F(AssimpFaults, MaterialsThatTheFileDoesNotHaveAreNotMadeUp)
{
    const ImportedScene scene = ReadExample("bare.dae");
    ASSERT_THAT(scene.nodes, SizeIs(1));
    EXPECT_EQ(scene.nodes[0].parts.at(0).material, None);
    EXPECT_THAT(scene.materials, IsEmpty());
}

TEST_F(AssimpFaults, ReadsWavefrontFilesInUtf16)
{
    for (const bool bigEndian : {false, true}) {
        folder.Write("paint.mtl", Utf16("newmtl glass\nKd 0.25 0.5 0.75\n", !bigEndian));
        const ImportedScene scene = Read("wide.obj", Utf16(Painted, bigEndian));
        ASSERT_THAT(scene.geometries, SizeIs(1)) << bigEndian;
        EXPECT_THAT(scene.geometries[0].positions, ElementsAre(0, 0, 0, 2, 0, 0, 2, 3, 5)) << bigEndian;
        ASSERT_THAT(scene.materials, SizeIs(1)) << bigEndian;
        EXPECT_EQ(scene.materials[0].name, "glass") << bigEndian;
    }
}

} // namespace Orvel::Import
