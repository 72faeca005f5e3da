#include "tests/support/PRCPlacement.h"
#include "tests/tool/cli/FileContent.h"
#include "tests/tool/cli/ProgramRun.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace Orvel::Test
{

namespace
{

using nlohmann::json;

/// Two groups with triangles at several depths, and one that ends up empty.
constexpr const char* GroupsDae = R"(<?xml version="1.0"?>
<COLLADA xmlns="http://www.collada.org/2005/11/COLLADASchema" version="1.4.1">
 <asset><unit meter="0.001"/><up_axis>Z_UP</up_axis></asset>
 <library_geometries><geometry id="g"><mesh>
  <source id="p"><float_array id="a" count="9">0 0 0 2 0 0 0 3 5</float_array><technique_common>
   <accessor source="#a" count="3" stride="3"><param name="X" type="float"/><param name="Y" type="float"/>
    <param name="Z" type="float"/></accessor></technique_common></source>
  <vertices id="v"><input semantic="POSITION" source="#p"/></vertices>
  <triangles count="1"><input semantic="VERTEX" source="#v" offset="0"/><p>0 1 2</p></triangles>
 </mesh></geometry></library_geometries>
 <library_visual_scenes><visual_scene id="s">
  <node name="first"><node name="deep"><instance_geometry url="#g"/></node><node name="hollow"/></node>
  <node name="second"><instance_geometry url="#g"/></node>
 </visual_scene></library_visual_scenes>
 <scene><instance_visual_scene url="#s"/></scene>
</COLLADA>)";

TEST(Record, NumbersTheNodesAsTheFileHasThem)
{
    const TemporaryFolder folder;
    WriteFile(folder / "groups.dae", GroupsDae);
    const ProgramResult result = RunProgram({"export", "groups.dae", "-o", "a.prc", "--record", "a.json"}, folder);
    ASSERT_EQ(result.exitCode, 0) << result.err;

    const json record = json::parse(ReadFile(folder / "a.json"));
    EXPECT_EQ(record["version"], 1);
    const PRCContent content = DecodePRCFile(folder / "a.prc");
    // Depth first below the file's own root; a group that holds nothing takes no number.
    std::vector<std::string> numbered;
    for (const PlacedOccurrence& place : WalkTree(content))
        if (place.path.size() > 1 && place.path.back() != "hollow")
            numbered.push_back(place.path.back());
    ASSERT_EQ(record["nodes"].size(), numbered.size());
    for (std::size_t i = 0; i < numbered.size(); ++i) {
        const json& node = record["nodes"][i];
        EXPECT_EQ(node["name"], numbered[i]);
        EXPECT_EQ(node["number"], i + 1) << "one root with content";
    }
    EXPECT_EQ(record["nodes"][1],
              json::parse(R"({"number": 2, "name": "deep", "parent": 1, "path": ["first", "deep"]})"));
    EXPECT_EQ(RunProgram({"export", "groups.dae", "-o", "b.prc", "--record", "b.json"}, folder).exitCode, 0);
    EXPECT_EQ(ReadFile(folder / "a.json"), ReadFile(folder / "b.json"));
    EXPECT_EQ(ReadFile(folder / "a.prc"), ReadFile(folder / "b.prc"));
}

TEST(Record, IsRefusedWithTheOutput)
{
    const TemporaryFolder folder;
    WriteFile(folder / "groups.dae", GroupsDae);
    EXPECT_EQ(RunProgram({"export", "groups.dae", "-o", "a.prc", "--record", "a.prc"}, folder).exitCode, 2);
    const ProgramResult lost = RunProgram({"export", "groups.dae", "-o", "a.prc", "--record", "no/a.json"}, folder);
    EXPECT_EQ(lost.exitCode, 1);
    EXPECT_THAT(lost.err, testing::HasSubstr("no/a.json"));
    EXPECT_THAT(folder.Names(), testing::ElementsAre("groups.dae"));
}

} // namespace

} // namespace Orvel::Test
