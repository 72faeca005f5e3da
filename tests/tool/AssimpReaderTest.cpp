#include "tool/import/AssimpReader.h"
#include "tests/tool/AssimpTest.h"
#include "tool/import/AssimpText.h"
#include "tool/import/MaterialConversion.h"
#include "tool/import/TrackEvaluation.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace Orvel::Import
{
namespace
{

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

class AssimpReading : public AssimpTest
{};

template <class T>
const T& At(const std::vector<T>& table, Index index)
{
    return table.at(static_cast<std::size_t>(index));
}

const ImportedNode& Node(const ImportedScene& scene, const std::string& name)
{
    const auto found = std::ranges::find(scene.nodes, name, &ImportedNode::name);
    if (found == scene.nodes.end())
        throw std::runtime_error("no node " + name);
    return *found;
}

std::vector<std::string> RootNames(const ImportedScene& scene)
{
    std::vector<std::string> names;
    for (const Index root : scene.roots)
        names.push_back(At(scene.nodes, root).name);
    return names;
}

auto IsColour(const Colour& want)
{
    return testing::Pointwise(testing::DoubleNear(1e-6), want);
}

/// Sum of the triangles' areas in the plane z = 0; triangles that face down count negative.
double SignedArea(const ImportedGeometry& geometry)
{
    double sum = 0.0;
    for (std::size_t k = 0; k < geometry.triangles.size(); k += 3) {
        const auto at = [&](std::size_t corner, std::size_t axis) {
            return geometry.positions[3 * geometry.triangles[k + corner] + axis];
        };
        sum += ((at(1, 0) - at(0, 0)) * (at(2, 1) - at(0, 1)) - (at(1, 1) - at(0, 1)) * (at(2, 0) - at(0, 0))) / 2.0;
    }
    return sum;
}

constexpr std::string_view TwoObjects = R"(mtllib paint.mtl
v 0 0 0
v 4 0 0
v 4 3 0
v 2 1 0
v 0 3 0
v 7.5 11.25 -13
vt 0.125 0.25
vt 0.5 0.75
vt 1 0
o Flügel
usemtl glass
f 1/1 2/2 3/3
o arrow
f 1 2 3 4 5
l 1 6
)";

constexpr std::string_view Paint = R"(newmtl glass
Ka 0.1 0.2 0.3
Kd 0.4 0.5 0.6
Ks 0.7 0.8 0.9
Ke 0.05 0.06 0.07
d 0.25
map_Kd C:\pictures\Pane.PNG
)";

} // namespace

TEST_F(AssimpReading, TakesObjectsOfAnObjFileAsRoots)
{
    folder.Write("paint.mtl", Paint);
    const ImportedScene scene = Read("two.obj", TwoObjects);
    EXPECT_EQ(scene.format, "Wavefront OBJ");
    EXPECT_EQ(scene.upAxis, UpAxis::Unknown);
    EXPECT_EQ(scene.unitInMillimetres, 0.0);
    EXPECT_THAT(RootNames(scene), ElementsAre("Flügel", "arrow"));
    EXPECT_THAT(report.Warnings(), Contains("left out: 1 line"));

    const ImportedPart& wing = Node(scene, "Flügel").parts.at(0);
    const ImportedGeometry& shape = At(scene.geometries, wing.geometry);
    EXPECT_THAT(shape.positions, ElementsAre(0, 0, 0, 4, 0, 0, 4, 3, 0));
    EXPECT_THAT(shape.triangles, ElementsAre(0, 1, 2));
    EXPECT_THAT(shape.normals, IsEmpty());
    EXPECT_THAT(At(scene.textureCoordinates, wing.textureCoordinates).values,
                ElementsAre(0.125, 0.25, 0.5, 0.75, 1, 0));
    const ImportedMaterial& glass = At(scene.materials, wing.material);
    EXPECT_EQ(glass.name, "glass");
    EXPECT_THAT(glass.ambient, IsColour({0.1, 0.2, 0.3}));
    EXPECT_THAT(glass.diffuse, IsColour({0.4, 0.5, 0.6}));
    EXPECT_THAT(glass.specular, IsColour({0.7, 0.8, 0.9}));
    EXPECT_THAT(glass.emissive, IsColour({0.05, 0.06, 0.07}));
    EXPECT_EQ(glass.opacity, 0.25);
    EXPECT_FALSE(glass.imageAlphaCounts);
    EXPECT_EQ(At(scene.images, glass.image).path, "C:\\pictures\\Pane.PNG") << "kept as it is";

    const ImportedGeometry& arrow = At(scene.geometries, Node(scene, "arrow").parts.at(0).geometry);
    EXPECT_THAT(arrow.triangles, SizeIs(9));
    EXPECT_DOUBLE_EQ(SignedArea(arrow), 8.0) << "a concave polygon is split without loss";
}

TEST_F(AssimpReading, CountsAlphaOfAPictureThatIsTheOpacityMapToo)
{
    folder.Write("paint.mtl", "newmtl leaf\nmap_Kd leaf.png\nmap_d leaf.png\nnewmtl net\nmap_Kd a.png\nmap_d b.png\n");
    const ImportedScene scene =
        Read("leaf.obj", "mtllib paint.mtl\nv 0 0 0\nv 1 0 0\nv 0 1 0\nusemtl leaf\nf 1 2 3\nusemtl net\nf 3 2 1\n");
    const auto find = [&](const std::string& name) {
        return *std::ranges::find(scene.materials, name, &ImportedMaterial::name);
    };
    EXPECT_TRUE(find("leaf").imageAlphaCounts);
    EXPECT_FALSE(find("net").imageAlphaCounts);
    EXPECT_THAT(report.Warnings(), Contains("left out: 1 opacity map"));
}

TEST_F(AssimpReading, MeshesWithoutAMaterialHaveNone)
{
    const ImportedScene obj = Read("bare.obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n");
    EXPECT_EQ(obj.nodes.at(0).parts.at(0).material, None);
    const ImportedScene off = Read("bare.off", "OFF\n3 1 0\n0 0 0\n1 0 0\n0 1 0\n3 0 1 2\n");
    EXPECT_EQ(off.nodes.at(0).parts.at(0).material, None);
}

TEST_F(AssimpReading, TellsSharedPointsFromPointsOfTheirOwn)
{
    const ImportedScene ply =
        Read("pair.ply", "ply\nformat ascii 1.0\nelement vertex 4\nproperty float x\nproperty float y\n"
                         "property float z\nelement face 2\nproperty list uchar int vertex_indices\n"
                         "end_header\n0 0 0\n2 0 0\n2 3 0\n0 3 5\n3 0 1 2\n3 0 2 3\n");
    const ImportedGeometry& shared = ply.geometries.at(0);
    EXPECT_TRUE(shared.welded);
    EXPECT_THAT(shared.positions, ElementsAre(0, 0, 0, 2, 0, 0, 2, 3, 0, 0, 3, 5));
    EXPECT_THAT(shared.triangles, ElementsAre(0, 1, 2, 0, 2, 3));

    const ImportedScene quad = Read("quad.obj", "v 0 0 0\nv 2 0 0\nv 2 3 0\nv 0 3 0\nf 1 2 3 4\n");
    EXPECT_FALSE(quad.geometries.at(0).welded) << "four points, six corners only after the quad is split";
}

TEST_F(AssimpReading, FillsNormalsThatHaveNoLength)
{
    const std::string points = "v 0 0 0\nv 2 0 0\nv 0 3 0\nv 0 0 5\nvn 0 0 1\nvn 0 0 0\n";
    const ImportedScene mixed = Read("m.obj", points + "f 1//1 2//1 3//1\nf 1//2 3//2 4//2\n");
    EXPECT_THAT(mixed.geometries.at(0).normals, ElementsAre(0, 0, 1, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0, 0, 1, 0, 0));
    const ImportedScene none = Read("n.obj", points + "f 1//2 2//2 3//2\n");
    EXPECT_THAT(none.geometries.at(0).normals, IsEmpty());
}

TEST_F(AssimpReading, KeepsInstancesNamelessNodesAndCamerasOfCollada)
{
    const ImportedScene scene = ReadExample("site.dae");
    EXPECT_EQ(scene.unitInMillimetres, 25.4);
    EXPECT_EQ(scene.upAxis, UpAxis::Z);
    EXPECT_THAT(RootNames(scene), ElementsAre("house", "eye"));
    const ImportedNode& house = Node(scene, "house");
    EXPECT_EQ(house.matrix, COrvelMatrix({0, -1, 0, 7, 1, 0, 0, 11, 0, 0, 1, 13, 0, 0, 0, 1}));
    ASSERT_THAT(house.children, SizeIs(2));
    const ImportedNode& west = At(scene.nodes, house.children[0]);
    const ImportedNode& other = At(scene.nodes, house.children[1]);
    EXPECT_EQ(west.name, "west");
    EXPECT_EQ(west.matrix, COrvelMatrix::CreateTranslation({0.5, 0, 0}));
    EXPECT_EQ(other.name, "");
    EXPECT_EQ(other.matrix, COrvelMatrix::CreateScalling({2, 3, 4}));
    ASSERT_THAT(west.parts, SizeIs(1));
    ASSERT_THAT(other.parts, SizeIs(1));
    EXPECT_THAT(scene.geometries, SizeIs(1));
    EXPECT_EQ(west.parts[0].geometry, other.parts[0].geometry);
    EXPECT_EQ(west.parts[0].name, "wall");
    const ImportedMaterial& brick = At(scene.materials, west.parts[0].material);
    EXPECT_EQ(brick.name, "brick");
    EXPECT_EQ(brick.opacity, 1.0) << "an invisible material of this format is a confused exporter";

    const ImportedNode& eye = Node(scene, "eye");
    ASSERT_EQ(eye.camera, 0);
    EXPECT_EQ(eye.matrix, COrvelMatrix::CreateTranslation({1, 2, 3}));
    EXPECT_TRUE(scene.cameras.at(0).perspective);
    EXPECT_NEAR(scene.cameras.at(0).verticalFieldOfViewInDegrees, 40.0, 1e-4);
}

TEST_F(AssimpReading, TurnsACameraThatLooksElsewhereByANodeOfItsOwn)
{
    const ImportedScene scene =
        Read("view.nff", "v\nfrom 0 3 4\nat 0 0 0\nup 0 1 0\nangle 60\nhither 1\nresolution 400 300\n"
                         "f 1 0 0 1 0 0 0 0\np 3\n0 0 0\n1 0 0\n0 1 0\n");
    const auto holder = std::ranges::find(scene.nodes, 0, &ImportedNode::camera);
    ASSERT_NE(holder, scene.nodes.end());
    EXPECT_TRUE(holder->matrix.IsNear(COrvelMatrix({1, 0, 0, 0, 0, 0.8, 0.6, 3, 0, -0.6, 0.8, 4, 0, 0, 0, 1}), 1e-6));
    const double vertical = 2.0 * std::atan(std::tan(std::acos(-1.0) / 6.0) * 0.75) * 180.0 / std::acos(-1.0);
    EXPECT_NEAR(scene.cameras.at(0).verticalFieldOfViewInDegrees, vertical, 1e-4);
}

TEST_F(AssimpReading, MakesOneNodeOfAnFbxPivotChain)
{
    const ImportedScene scene = ReadExample("hinge.fbx");
    EXPECT_EQ(scene.unitInMillimetres, 25.4);
    EXPECT_EQ(scene.upAxis, UpAxis::Z);
    ASSERT_THAT(RootNames(scene), ElementsAre("hinge"));

    // A quarter turn about the point (10, 0, 0): translation + pivot - turned pivot.
    const ImportedNode& hinge = At(scene.nodes, scene.roots[0]);
    EXPECT_TRUE(hinge.matrix.IsNear(COrvelMatrix({0, -1, 0, 17, 1, 0, 0, 1, 0, 0, 1, 13, 0, 0, 0, 1}), 1e-5));
    EXPECT_EQ(Node(scene, "leaf").matrix, COrvelMatrix::CreateTranslation({1, 2, 3}));

    // From 30 to 150 degrees about that point in two seconds.
    ASSERT_THAT(scene.clips, SizeIs(1));
    EXPECT_EQ(scene.clips[0].name, "swing");
    EXPECT_NEAR(scene.clips[0].seconds, 2.0, 1e-6);
    ASSERT_THAT(scene.clips[0].nodes, SizeIs(1));
    EXPECT_EQ(scene.clips[0].nodes[0].node, scene.roots[0]);
    for (const double seconds : {0.0, 0.4, 1.0, 1.7, 2.0, 3.0}) {
        const double angle = (30.0 + 60.0 * std::min(seconds, 2.0)) * std::acos(-1.0) / 180.0;
        const COrvelMatrix turn = COrvelMatrix().DefineByRotation(angle, 0, 0, 1);
        const COrvelMatrix expected =
            COrvelMatrix::CreateTranslation({17, 11, 13}) * turn * COrvelMatrix::CreateTranslation({-10, 0, 0});
        EXPECT_TRUE(MatrixAt(scene.clips[0].nodes[0], seconds).IsNear(expected, 1e-5)) << seconds;
    }

    // The geometric offset moves the shape and not the child.
    ASSERT_THAT(hinge.children, SizeIs(2));
    const ImportedNode& shape = At(scene.nodes, hinge.children[0]);
    EXPECT_EQ(shape.matrix, COrvelMatrix::CreateTranslation({0, 0, 5}));
    ASSERT_THAT(shape.parts, SizeIs(1));
    EXPECT_THAT(At(scene.geometries, shape.parts[0].geometry).positions, ElementsAre(0, 0, 0, 2, 0, 0, 2, 3, 5));
    EXPECT_EQ(At(scene.nodes, hinge.children[1]).name, "leaf");
}

TEST_F(AssimpReading, ReadsTheUnitOfAnAmfFile)
{
    const auto file = [](const std::string& attribute) {
        return "<?xml version=\"1.0\"?>\n<amf" + attribute +
               "><object id=\"1\"><mesh><vertices><vertex><coordinates><x>0</x><y>0</y><z>0</z></coordinates></vertex>"
               "<vertex><coordinates><x>1</x><y>0</y><z>0</z></coordinates></vertex><vertex><coordinates><x>0</x><y>1</"
               "y>"
               "<z>0</z></coordinates></vertex></vertices><volume><triangle><v1>0</v1><v2>1</v2><v3>2</v3></triangle>"
               "</volume></mesh></object></amf>\n";
    };
    EXPECT_EQ(Read("a.amf", file(" unit=\"inch\"")).unitInMillimetres, 25.4);
    EXPECT_EQ(Read("b.amf", file(" version='1.1' unit='meter'")).unitInMillimetres, 1000.0);
    EXPECT_EQ(Read("c.amf", file("")).unitInMillimetres, 1.0);
    EXPECT_EQ(Read("d.amf", file(" subunit=\"inch\" note=\"' unit=\" unit = 'feet'")).unitInMillimetres, 304.8);
}

TEST_F(AssimpReading, ReadsTheUnitInsideA3mfPackage)
{
    const ImportedScene inches = ReadExample("inch.3mf");
    EXPECT_EQ(inches.unitInMillimetres, 25.4);
    EXPECT_EQ(inches.upAxis, UpAxis::Z);
    EXPECT_THAT(inches.geometries.at(0).positions, ElementsAre(0, 0, 0, 2, 0, 0, 2, 3, 5));
    EXPECT_EQ(ReadExample("micron.3mf").unitInMillimetres, 0.001);
    EXPECT_EQ(ReadExample("unitless.3mf").unitInMillimetres, 1.0);
}

TEST_F(AssimpReading, RefusesInOneLine)
{
    EXPECT_EQ(ErrorOf("text.txt", "nothing of the kind"), "the format of the file is not known");
    EXPECT_EQ(ErrorOf("shape.raw", "0 0 0 1 0 0 0 1 0\n"), "the format of the file is not known");
    for (const char* number : {"nan", "inf"})
        EXPECT_EQ(ErrorOf("far.obj", "o tip\nv 0 0 0\nv 1 " + std::string(number) + " 0\nv 0 1 0\nf 1 2 3\n"),
                  "mesh 'tip' has coordinates that are infinite or not a number");
    EXPECT_THAT(ErrorOf("bad.obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 9\n"),
                AllOf(HasSubstr("damaged"), Not(HasSubstr("\n")), Not(HasSubstr(folder.Path().string()))));
}

TEST_F(AssimpReading, FilesWithoutMeshesKeepTheirGroups)
{
    const ImportedScene scene = Read(
        "walk.bvh",
        "HIERARCHY\nROOT hip\n{\nOFFSET 1 2 3\nCHANNELS 3 Xposition Yposition Zposition\n"
        "JOINT knee\n{\nOFFSET 0 -5 0\nCHANNELS 3 Zrotation Xrotation Yrotation\nEnd Site\n{\nOFFSET 0 -7 0\n}\n}\n}\n"
        "MOTION\nFrames: 1\nFrame Time: 0.1\n0 0 0 0 0 0\n");
    EXPECT_THAT(scene.geometries, IsEmpty());
    EXPECT_EQ(Node(scene, "knee").matrix, COrvelMatrix::CreateTranslation({0, -5, 0}));
    ASSERT_EQ(scene.clips.size(), 1U);
    EXPECT_EQ(scene.clips[0].nodes.size(), 2U);
}

TEST(AssimpFormats, ListsWhatCanBeRead)
{
    const auto formats = ListAssimpFormats();
    EXPECT_TRUE(std::ranges::is_sorted(formats, {}, &SceneFormat::description));
    std::vector<std::string> endings;
    for (const SceneFormat& format : formats)
        endings.insert(endings.end(), format.extensions.begin(), format.extensions.end());
    for (const char* known : {"obj", "stl", "ply", "off", "fbx", "dae", "3ds", "3mf", "x3d", "blend"})
        EXPECT_THAT(endings, Contains(known));
    EXPECT_THAT(endings, Not(Contains("raw")));
    EXPECT_THAT(endings, Not(Contains("assbin")));
    EXPECT_EQ(std::ranges::count(endings, "gltf"), 1) << "the older format only";
}

TEST(AssimpTexts, BecomeUtf8InOneLine)
{
    EXPECT_EQ(Utf8From("Gr\xFC\xDF"
                       "e \x80"),
              "Grüße €");
    EXPECT_EQ(Utf8From("Ящик 箱 \xF0\x9F\xA7\x8A"), "Ящик 箱 \xF0\x9F\xA7\x8A");
    EXPECT_EQ(Utf8From("\xE2\x82"), "â‚") << "cut short, so not UTF-8";
    EXPECT_EQ(Utf8From("a\r\nb\tc"), "a  b c");
}

TEST(AssimpTexts, ErrorsLoseWhatOnlyProgrammersRead)
{
    EXPECT_EQ(ErrorTextFrom("OBJ: Invalid face index.", "x.obj"), "the file is damaged: invalid face index");
    EXPECT_EQ(ErrorTextFrom("XML parse error while loading IRR file /tmp/a b.irr\n", "/tmp/a b.irr"),
              "the file is damaged: XML parse error while loading IRR file");
    EXPECT_EQ(ErrorTextFrom("", ""), "the file is damaged");
    EXPECT_EQ(ErrorTextFrom("Failed to determine STL storage representation for /tmp/a.stl.", "/tmp/a.stl"),
              "the file is damaged: failed to determine STL storage representation");
    EXPECT_EQ(ErrorTextFrom("FBX-Parser (TOK_KEY, offset 0x1f):  Collada: (line 7) Bad  \nnumber in the", "x"),
              "the file is damaged: bad number in the");
    EXPECT_EQ(ErrorTextFrom("/tmp/a.dae:12 - Unclosed element: ", "/tmp/a.dae"),
              "the file is damaged: unclosed element");
    EXPECT_EQ(ErrorTextFrom("OBJ: for", "x"), "the file is damaged");
}

} // namespace Orvel::Import
