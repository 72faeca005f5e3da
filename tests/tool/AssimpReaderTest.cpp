#include "tool/import/AssimpReader.h"
#include "tests/support/TemporaryFolder.h"
#include "tool/import/AssimpText.h"
#include "tool/import/TrackEvaluation.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <zlib.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <functional>

namespace Orvel::Import
{

namespace
{

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

class AssimpReading : public testing::Test
{
protected:
    ImportedScene Read(const std::string& name, std::string_view content)
    {
        return ReadWithAssimp(folder.Write(name, content), report);
    }

    std::string ErrorOf(const std::filesystem::path& file)
    {
        try {
            (void)ReadWithAssimp(file, report);
        } catch (const ImportError& error) {
            return error.what();
        }
        return "no error";
    }

    Orvel::Test::TemporaryFolder folder;
    ImportReport report;
};

const ImportedNode& Node(const ImportedScene& scene, const std::string& name)
{
    const auto found = std::ranges::find(scene.nodes, name, &ImportedNode::name);
    if (found == scene.nodes.end())
        throw std::runtime_error("no node " + name);
    return *found;
}

const ImportedGeometry& Geometry(const ImportedScene& scene, const ImportedPart& part)
{
    return scene.geometries.at(static_cast<std::size_t>(part.geometry));
}

std::vector<std::string> RootNames(const ImportedScene& scene)
{
    std::vector<std::string> names;
    for (const Index root : scene.roots)
        names.push_back(scene.nodes.at(static_cast<std::size_t>(root)).name);
    return names;
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

    const ImportedNode& wing = Node(scene, "Flügel");
    ASSERT_THAT(wing.parts, SizeIs(1));
    const ImportedGeometry& shape = Geometry(scene, wing.parts[0]);
    EXPECT_THAT(shape.positions, ElementsAre(0, 0, 0, 4, 0, 0, 4, 3, 0));
    EXPECT_THAT(shape.triangles, ElementsAre(0, 1, 2));
    EXPECT_THAT(shape.normals, IsEmpty());
    ASSERT_NE(wing.parts[0].textureCoordinates, None);
    EXPECT_THAT(scene.textureCoordinates[static_cast<std::size_t>(wing.parts[0].textureCoordinates)].values,
                ElementsAre(0.125, 0.25, 0.5, 0.75, 1, 0));
}

TEST_F(AssimpReading, ConvertsMaterialsAndKeepsForeignPicturePaths)
{
    folder.Write("paint.mtl", Paint);
    const ImportedScene scene = Read("two.obj", TwoObjects);
    const Index index = Node(scene, "Flügel").parts.at(0).material;
    ASSERT_NE(index, None);
    const ImportedMaterial& glass = scene.materials[static_cast<std::size_t>(index)];
    EXPECT_EQ(glass.name, "glass");
    for (std::size_t k = 0; k < 3; ++k) {
        const double step = 0.1 * static_cast<double>(k);
        EXPECT_NEAR(glass.ambient[k], 0.1 + step, 1e-6) << k;
        EXPECT_NEAR(glass.diffuse[k], 0.4 + step, 1e-6) << k;
        EXPECT_NEAR(glass.specular[k], 0.7 + step, 1e-6) << k;
        EXPECT_NEAR(glass.emissive[k], 0.05 + step / 10, 1e-6) << k;
    }
    EXPECT_EQ(glass.opacity, 0.25);
    EXPECT_FALSE(glass.imageAlphaCounts);
    ASSERT_NE(glass.image, None);
    EXPECT_EQ(scene.images[static_cast<std::size_t>(glass.image)].path, "C:\\pictures\\Pane.PNG");
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

TEST_F(AssimpReading, SplitsConcavePolygonsWithoutLossAndCountsLines)
{
    const ImportedScene scene = Read("two.obj", TwoObjects);
    const ImportedGeometry& arrow = Geometry(scene, Node(scene, "arrow").parts.at(0));
    EXPECT_THAT(arrow.triangles, SizeIs(9));
    EXPECT_DOUBLE_EQ(SignedArea(arrow), 8.0);
    EXPECT_THAT(report.Warnings(), Contains("left out: 1 line"));
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

namespace
{

constexpr std::string_view Building = R"(<?xml version="1.0" encoding="utf-8"?>
<COLLADA xmlns="http://www.collada.org/2005/11/COLLADASchema" version="1.4.1">
<asset><unit name="inch" meter="0.0254"/><up_axis>Z_UP</up_axis></asset>
<library_cameras><camera id="c" name="c"><optics><technique_common><perspective><yfov>40</yfov>
<aspect_ratio>1.6</aspect_ratio><znear>1</znear><zfar>9</zfar></perspective></technique_common></optics></camera></library_cameras>
<library_effects><effect id="e"><profile_COMMON><technique sid="t"><phong>
<diffuse><color>0.25 0.5 0.75 1</color></diffuse><transparent opaque="A_ONE"><color>1 1 1 1</color></transparent>
<transparency><float>0</float></transparency></phong></technique></profile_COMMON></effect></library_effects>
<library_materials><material id="m" name="brick"><instance_effect url="#e"/></material></library_materials>
<library_geometries><geometry id="g" name="wall"><mesh>
<source id="p"><float_array id="pa" count="9">0 0 0 2 0 0 2 3 5</float_array><technique_common>
<accessor source="#pa" count="3" stride="3"><param name="X" type="float"/><param name="Y" type="float"/><param name="Z" type="float"/></accessor></technique_common></source>
<vertices id="v"><input semantic="POSITION" source="#p"/></vertices>
<triangles count="1" material="s"><input semantic="VERTEX" source="#v" offset="0"/><p>0 1 2</p></triangles></mesh></geometry></library_geometries>
<library_visual_scenes><visual_scene id="vs" name="Site">
<node id="n1" name="house"><matrix>0 -1 0 7 1 0 0 11 0 0 1 13 0 0 0 1</matrix>
 <node id="n2" name="west"><translate>0.5 0 0</translate><instance_geometry url="#g"><bind_material><technique_common>
 <instance_material symbol="s" target="#m"/></technique_common></bind_material></instance_geometry></node>
 <node><scale>2 3 4</scale><instance_geometry url="#g"><bind_material><technique_common>
 <instance_material symbol="s" target="#m"/></technique_common></bind_material></instance_geometry></node>
</node>
<node id="n4" name="eye"><translate>1 2 3</translate><instance_camera url="#c"/></node>
</visual_scene></library_visual_scenes>
<scene><instance_visual_scene url="#vs"/></scene></COLLADA>
)";

} // namespace

TEST_F(AssimpReading, TakesUnitAndAxisOfColladaOutOfTheTree)
{
    const ImportedScene scene = Read("site.dae", Building);
    EXPECT_EQ(scene.unitInMillimetres, 25.4);
    EXPECT_EQ(scene.upAxis, UpAxis::Z);
    EXPECT_THAT(RootNames(scene), ElementsAre("house", "eye"));
    EXPECT_EQ(Node(scene, "house").matrix, COrvelMatrix({0, -1, 0, 7, 1, 0, 0, 11, 0, 0, 1, 13, 0, 0, 0, 1}));
    EXPECT_EQ(Node(scene, "west").matrix, COrvelMatrix::CreateTranslation({0.5, 0, 0}));
}

TEST_F(AssimpReading, KeepsInstancesAndNamelessNodes)
{
    const ImportedScene scene = Read("site.dae", Building);
    const ImportedNode& house = Node(scene, "house");
    ASSERT_THAT(house.children, SizeIs(2));
    const ImportedNode& west = scene.nodes[static_cast<std::size_t>(house.children[0])];
    const ImportedNode& other = scene.nodes[static_cast<std::size_t>(house.children[1])];
    EXPECT_EQ(west.name, "west");
    EXPECT_EQ(other.name, "");
    EXPECT_EQ(other.matrix, COrvelMatrix::CreateScalling({2, 3, 4}));
    ASSERT_THAT(west.parts, SizeIs(1));
    ASSERT_THAT(other.parts, SizeIs(1));
    EXPECT_THAT(scene.geometries, SizeIs(1));
    EXPECT_EQ(west.parts[0].geometry, other.parts[0].geometry);
    EXPECT_EQ(west.parts[0].name, "wall");
    const ImportedMaterial& brick = scene.materials.at(static_cast<std::size_t>(west.parts[0].material));
    EXPECT_EQ(brick.name, "brick");
    EXPECT_EQ(brick.opacity, 1.0) << "an invisible material of this format is a confused exporter";
}

TEST_F(AssimpReading, GivesTheFullVerticalAngleOfACamera)
{
    const ImportedScene scene = Read("site.dae", Building);
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
    const double expected[] = {1, 0, 0, 0, 0, 0.8, 0.6, 3, 0, -0.6, 0.8, 4, 0, 0, 0, 1};
    EXPECT_TRUE(holder->matrix.IsNear(COrvelMatrix(std::to_array(expected)), 1e-6));
    const double vertical = 2.0 * std::atan(std::tan(std::acos(-1.0) / 6.0) * 0.75) * 180.0 / std::acos(-1.0);
    EXPECT_NEAR(scene.cameras.at(0).verticalFieldOfViewInDegrees, vertical, 1e-4);
}

namespace
{

constexpr std::string_view Pivots = R"(; FBX 7.4.0 project file
FBXHeaderExtension:  {
	FBXHeaderVersion: 1003
	FBXVersion: 7400
}
GlobalSettings:  {
	Version: 1000
	Properties70:  {
		P: "UpAxis", "int", "Integer", "",2
		P: "UpAxisSign", "int", "Integer", "",1
		P: "UnitScaleFactor", "double", "Number", "",2.54
	}
}
Objects:  {
	Geometry: 100, "Geometry::", "Mesh" {
		Vertices: *9 {
			a: 0,0,0,2,0,0,2,3,5
		}
		PolygonVertexIndex: *3 {
			a: 0,1,-3
		}
		GeometryVersion: 124
	}
	Model: 200, "Model::hinge", "Mesh" {
		Version: 232
		Properties70:  {
			P: "RotationPivot", "Vector3D", "Vector", "",10,0,0
			P: "Lcl Translation", "Lcl Translation", "", "A",7,11,13
			P: "Lcl Rotation", "Lcl Rotation", "", "A",0,0,90
			P: "GeometricTranslation", "Vector3D", "Vector", "",0,0,5
		}
	}
	Model: 201, "Model::leaf", "Null" {
		Version: 232
		Properties70:  {
			P: "Lcl Translation", "Lcl Translation", "", "A",1,2,3
		}
	}
	AnimationStack: 300, "AnimStack::swing", "" {
	}
	AnimationLayer: 301, "AnimLayer::base", "" {
	}
	AnimationCurveNode: 302, "AnimCurveNode::R", "" {
		Properties70:  {
			P: "d|X", "Number", "", "A",0
			P: "d|Y", "Number", "", "A",0
			P: "d|Z", "Number", "", "A",30
		}
	}
	AnimationCurve: 303, "AnimCurve::", "" {
		KeyVer: 4008
		KeyTime: *2 {
			a: 0,92372316000
		}
		KeyValueFloat: *2 {
			a: 30,150
		}
	}
}
Connections:  {
	C: "OO",200,0
	C: "OO",201,200
	C: "OO",100,200
	C: "OO",301,300
	C: "OO",302,301
	C: "OP",302,200, "Lcl Rotation"
	C: "OP",303,302, "d|Z"
}
)";

} // namespace

TEST_F(AssimpReading, MakesOneNodeOfAnFbxPivotChain)
{
    const ImportedScene scene = Read("hinge.fbx", Pivots);
    EXPECT_EQ(scene.unitInMillimetres, 25.4);
    EXPECT_EQ(scene.upAxis, UpAxis::Z);
    ASSERT_THAT(RootNames(scene), ElementsAre("hinge"));

    // A quarter turn about the point (10, 0, 0): translation + pivot - turned pivot.
    const ImportedNode& hinge = scene.nodes[static_cast<std::size_t>(scene.roots[0])];
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
    const ImportedNode& shape = scene.nodes[static_cast<std::size_t>(hinge.children[0])];
    EXPECT_EQ(shape.matrix, COrvelMatrix::CreateTranslation({0, 0, 5}));
    ASSERT_THAT(shape.parts, SizeIs(1));
    EXPECT_THAT(Geometry(scene, shape.parts[0]).positions, ElementsAre(0, 0, 0, 2, 0, 0, 2, 3, 5));
    EXPECT_EQ(scene.nodes[static_cast<std::size_t>(hinge.children[1])].name, "leaf");
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

namespace
{

/// Writes a zip archive, its files deflated.
class ZipBuilder
{
public:
    void Add(const std::string& name, std::string_view content)
    {
        const std::string packed = Deflated(content);
        const std::string common =
            Number(20, 2) + Number(0, 2) + Number(8, 2) + Number(0, 4) +
            Number(crc32(0, reinterpret_cast<const Bytef*>(content.data()), static_cast<uInt>(content.size())), 4) +
            Number(packed.size(), 4) + Number(content.size(), 4) + Number(name.size(), 2) + Number(0, 2);
        directory += "PK\x01\x02" + Number(20, 2) + common + Number(0, 2) + Number(0, 2) + Number(0, 2) + Number(0, 4) +
                     Number(files.size(), 4) + name;
        files += "PK\x03\x04" + common + name + packed;
        ++count;
    }

    [[nodiscard]] std::string Archive() const
    {
        return files + directory + "PK\x05\x06" + Number(0, 4) + Number(count, 2) + Number(count, 2) +
               Number(directory.size(), 4) + Number(files.size(), 4) + Number(0, 2);
    }

private:
    static std::string Number(std::size_t value, std::size_t bytes)
    {
        std::string text;
        for (std::size_t k = 0; k < bytes; ++k)
            text += static_cast<char>(value >> (8 * k));
        return text;
    }

    static std::string Deflated(std::string_view content)
    {
        z_stream stream{};
        deflateInit2(&stream, 9, Z_DEFLATED, -MAX_WBITS, 8, Z_DEFAULT_STRATEGY);
        std::string source(content);
        std::string packed(deflateBound(&stream, static_cast<uLong>(source.size())), '\0');
        stream.next_in = reinterpret_cast<Bytef*>(source.data());
        stream.avail_in = static_cast<uInt>(source.size());
        stream.next_out = reinterpret_cast<Bytef*>(packed.data());
        stream.avail_out = static_cast<uInt>(packed.size());
        deflate(&stream, Z_FINISH);
        packed.resize(stream.total_out);
        deflateEnd(&stream);
        return packed;
    }

    std::string files;
    std::string directory;
    std::size_t count = 0;
};

/// A package with one triangle.
std::string Package(const std::string& unit)
{
    ZipBuilder zip;
    zip.Add("[Content_Types].xml", "<?xml version=\"1.0\"?><Types/>");
    zip.Add("_rels/.rels",
            R"(<?xml version="1.0"?><Relationships xmlns="http://schemas.openxmlformats.org/package/2006/relationships">
<Relationship Target="/3D/3dmodel.model" Id="rel0" Type="http://schemas.microsoft.com/3dmanufacturing/2013/01/3dmodel"/></Relationships>)");
    zip.Add("3D/3dmodel.model",
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<model" + unit +
                R"( xml:lang="en-US" xmlns="http://schemas.microsoft.com/3dmanufacturing/core/2015/02">
<resources><object id="1" type="model"><mesh><vertices><vertex x="0" y="0" z="0"/><vertex x="2" y="0" z="0"/><vertex x="2" y="3" z="5"/></vertices>
<triangles><triangle v1="0" v2="1" v3="2"/></triangles></mesh></object></resources><build><item objectid="1"/></build></model>)");
    return zip.Archive();
}

} // namespace

TEST_F(AssimpReading, ReadsTheUnitInsideA3mfPackage)
{
    const ImportedScene inches = Read("a.3mf", Package(" unit=\"inch\""));
    EXPECT_EQ(inches.unitInMillimetres, 25.4);
    EXPECT_EQ(inches.upAxis, UpAxis::Z);
    EXPECT_THAT(inches.geometries.at(0).positions, ElementsAre(0, 0, 0, 2, 0, 0, 2, 3, 5));
    EXPECT_EQ(Read("b.3mf", Package(" unit='micron'")).unitInMillimetres, 0.001);
    EXPECT_EQ(Read("c.3mf", Package("")).unitInMillimetres, 1.0);
}

TEST_F(AssimpReading, RefusesWhatIsNoSceneInOneLine)
{
    EXPECT_EQ(ErrorOf(folder.Write("text.txt", "nothing of the kind")), "the format of the file is not known");
    EXPECT_EQ(ErrorOf(folder.Write("shape.raw", "0 0 0 1 0 0 0 1 0\n")), "the format of the file is not known");
    const std::string damaged = ErrorOf(folder.Write("bad.obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 9\n"));
    EXPECT_THAT(damaged, HasSubstr("damaged"));
    EXPECT_THAT(damaged, Not(HasSubstr("\n")));
    EXPECT_THAT(damaged, Not(HasSubstr(folder.Path().string())));
}

TEST_F(AssimpReading, RefusesNumbersThatAreNotFinite)
{
    const std::string error = ErrorOf(folder.Write("nan.obj", "o tip\nv 0 0 0\nv 1 nan 0\nv 0 1 0\nf 1 2 3\n"));
    EXPECT_EQ(error, "mesh 'tip' has coordinates that are infinite or not a number");
    EXPECT_THAT(ErrorOf(folder.Write("inf.obj", "o tip\nv 0 0 0\nv 1 inf 0\nv 0 1 0\nf 1 2 3\n")),
                HasSubstr("infinite"));
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
