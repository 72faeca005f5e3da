#include "tool/script/SceneScript.h"

#include "animation/COrvelKeyFrameDataMaterial.h"
#include "animation/COrvelKeyFrameDataTransform.h"
#include "animation/COrvelSequence.h"
#include "platform/core/COrvelBasicGeneralMaterial.h"
#include "platform/core/COrvelCamera.h"
#include "platform/core/COrvelDocument.h"
#include "platform/core/COrvelMaterial.h"
#include "platform/core/COrvelSceneNode.h"
#include "platform/core/COrvelTransform.h"
#include "tests/tool/GltfFile.h"
#include "tool/animation/AnimatedScene.h"
#include "tool/import/LoadDocument.h"
#include "tool/script/ApplyScript.h"

#include <gmock/gmock.h>

#include <cmath>

namespace Orvel::Test
{
namespace
{

using testing::HasSubstr;

std::string FaultOf(std::string_view script)
{
    try {
        static_cast<void>(Script::ParseScript(script));
    } catch (const Import::ImportError& error) {
        return error.what();
    }
    return {};
}

TEST(SceneScript, TellsWhereItBreaksTheSchema)
{
    const std::pair<const char*, const char*> cases[]{
        {"{", ": no JSON from byte 2 on"},
        {"[]", ": this must be an object, not []"},
        {R"({"turning": 1e999})", ": a number is too large"},
        {R"({"cameras": {}})", " at /cameras: there is no such member here"},
        {R"({"camera": {}})", R"( at /camera: member "moves" is missing)"},
        {R"({"camera": {"moves": []}})", " at /camera/moves: this must have 1 or more elements, not 0"},
        {R"({"camera": {"moves": [{"type": "orbit", "from": -1}]}})",
         " at /camera/moves/0/from: this must be 0 or more"},
        {R"({"camera": {"moves": [{"type": "orbit", "from": 1e300}]}})",
         " at /camera/moves/0/from: this must be 2000000000 or less"},
        {R"({"camera": {"moves": [{"type": "loop", "from": 0}]}})",
         R"( at /camera/moves/0/type: this must be one of ["orbit","circle","dome","sphere"])"},
        {R"({"camera": {"moves": [{"type": "orbit", "from": 5, "to": 4}]}})",
         R"( at /camera/moves/0/to: this must not lie before "from")"},
        {R"({"materials": [{"material": "m", "keys": [{"frame": 0.5}]}]})",
         " at /materials/0/keys/0/frame: this must be an integer, not 0.5"},
        {R"({"states": [{"name": "", "materials": []}]})",
         " at /states/0/materials: this must have 1 or more elements, not 0"},
        {R"({"states": [{"name": "s", "materials": [{"material": "m", "diffuse": [0, 2, 0]}]}]})",
         " at /states/0/materials/0/diffuse/1: this must be 1 or less"},
        {R"({"states": [{"name": "s", "materials": [{"material": "m", "diffuse": [0, 0]}]}]})",
         " at /states/0/materials/0/diffuse: this must have 3 elements, not 2"},
    };
    for (const auto& [script, fault] : cases)
        EXPECT_EQ(FaultOf(script), std::string("in the scene script") + fault) << script;
    EXPECT_THAT(FaultOf(R"({"turning": )" + std::string(3'000'000, '[')), HasSubstr("256 levels deep"));
}

/// A scene with a triangle in a material "paint" at "arm/hand" and an empty "hand" beside it.
class SceneScriptOnScene : public GltfTest
{
protected:
    SceneScriptOnScene()
    {
        GltfFile file = TriangleFile();
        file.document["nodes"][0]["name"] = "hand";
        file.document["materials"] = {{{"name", "paint"}}};
        file.document["meshes"][0]["primitives"][0]["material"] = 0;
        file.Add("nodes", {{"name", "arm"}, {"translation", {5, 0, 0}}, {"children", {0}}});
        file.Add("nodes", {{"name", "hand"}});
        file.document["scenes"][0]["nodes"] = {1, 2};
        Import::LoadOptions load;
        load.temporaryFolder = folder.Path();
        load.scale = 1.0;
        load.up = Import::Up::Keep;
        Import::ImportReport report;
        built = Import::LoadDocument(file.Write(folder), load, report);
        animated = Animate::MakeAnimatedScene(built, {}, report);
    }

    void Apply(const Script::SceneScript& script) { looks = Script::ApplyScript(script, {}, built, animated); }

    std::string RefusalOf(std::string_view script)
    {
        try {
            Apply(Script::ParseScript(script));
        } catch (const Import::ImportError& error) {
            return error.what();
        }
        return {};
    }

    COrvelMaterial* Paint() { return built.materials.at(0).at(0); }

    double RedAt(COrvelKeyFrameManager& timeline, int frame)
    {
        const auto data = timeline.KeyFrameDataAtFrame(Paint()->ID(), frame);
        const auto& look = dynamic_cast<COrvelKeyFrameDataMaterial&>(*data);
        return dynamic_cast<COrvelBasicGeneralMaterial&>(*look.Material()).DiffuseColor().R();
    }

    /// A point of a node's own coordinates in those of the world.
    COrvel3DVertex PlaceAt(COrvelSceneNode* node, int frame, const COrvel3DVertex& point = {0.0, 0.0, 0.0})
    {
        return animated.manager->WorldMatrixAtFrame(node->NodePathToRoot(true), frame) * point;
    }

    Import::BuiltDocument built;
    Animate::AnimatedScene animated;
    Script::ScriptLooks looks;
};

void ExpectNear(const COrvel3DVertex& point, const COrvel3DVertex& expected)
{
    EXPECT_LT((point - expected).Length(), 1e-9) << point.X() << ' ' << point.Y() << ' ' << point.Z();
}

TEST_F(SceneScriptOnScene, AddsStatesMaterialKeysAndSequences)
{
    Apply(Script::ParseScript(
        R"({"states": [{"name": "red", "materials": [{"material": "paint", "diffuse": [1, 0, 0], "opacity": 0.5}]}],
            "materials": [{"material": "paint", "keys": [{"frame": 10, "diffuse": [0, 0, 0]},
                                                         {"frame": 20, "diffuse": [1, 0, 0]}]}],
            "sequences": [{"name": "rise", "from": 12, "to": 18}]})"));
    ASSERT_EQ(animated.sceneStates.size(), 1U);
    EXPECT_EQ(animated.sceneStateNames.at(0), "red");
    const auto& red =
        dynamic_cast<COrvelBasicGeneralMaterial&>(*animated.sceneStates[0].materialReplacements.at(Paint()));
    EXPECT_EQ(red.DiffuseColor(), COrvelColor(1.0, 0.0, 0.0));
    EXPECT_EQ(red.Opacity(), 0.5);

    EXPECT_EQ(animated.manager->LastFrame(), 20);
    COrvelSequence& rise = *animated.sequences.back();
    EXPECT_EQ(rise.Name(), COrvelString("rise"));
    EXPECT_EQ(rise.LastFrame(), 6);
    for (const int frame : {0, 3, 6}) {
        EXPECT_NEAR(RedAt(*animated.manager, frame + 12), (frame + 2) / 10.0, 1e-12);
        EXPECT_NEAR(RedAt(rise, frame), (frame + 2) / 10.0, 1e-12);
    }
}

TEST_F(SceneScriptOnScene, TurnsNodesAndHidesThem)
{
    Apply(Script::ParseScript(R"({"turning": [{"node": "arm", "from": 0, "to": 4, "angle": 360}],
                                  "visibility": [{"node": "arm/hand", "visible": false}]})"));
    // About its own origin, which stays, and as far at the end as at the start.
    COrvelSceneNode* const arm = built.nodes.at(0); // depth first
    for (const int frame : {0, 1, 2, 3, 4})
        ExpectNear(PlaceAt(arm, frame), {5.0, 0.0, 0.0});
    ExpectNear(PlaceAt(arm, 2, {1.0, 0.0, 0.0}), {4.0, 0.0, 0.0});
    EXPECT_TRUE(built.nodes.at(1)->IsHidden());
    EXPECT_FALSE(built.nodes.at(2)->IsHidden());
}

TEST_F(SceneScriptOnScene, LeadsACameraRoundTheScene)
{
    Script::SceneScript script;
    script.camera = Script::Turntable(8);
    Apply(script);
    EXPECT_EQ(built.document->ActiveCamera(), animated.camera);
    EXPECT_EQ(animated.manager->LastFrame(), 7);
    const COrvel3DVertex target = animated.camera->LookAt();
    const COrvel3DVertex start = animated.camera->Position();
    const double radius = std::hypot(start.X() - target.X(), start.Y() - target.Y());
    for (int frame = 0; frame < 8; ++frame) {
        const double angle = frame * std::acos(-1.0) / 4.0; // from the front, clockwise seen from above
        ExpectNear(PlaceAt(animated.camera, frame),
                   {target.X() - radius * std::sin(angle), target.Y() - radius * std::cos(angle), start.Z()});
    }

    Apply(Script::ParseScript(R"({"camera": {"target": [0, 0, 0], "position": [0, -10, 0],
                                             "moves": [{"type": "dome", "from": 0, "rows": 2, "columns": 4}]}})"));
    ExpectNear(PlaceAt(animated.camera, 0), {0.0, -10.0, 0.0});
    ExpectNear(PlaceAt(animated.camera, 1), {10.0, 0.0, 0.0});
    ExpectNear(PlaceAt(animated.camera, 7), {0.0, 0.0, 10.0});
}

TEST_F(SceneScriptOnScene, RefusesNamesOfNothingAndFramesWithoutEnd)
{
    EXPECT_THAT(RefusalOf(R"({"visibility": [{"node": "leg", "visible": true}]})"), HasSubstr("'leg', which does not"));
    EXPECT_THAT(RefusalOf(R"({"visibility": [{"node": "hand", "visible": true}]})"), HasSubstr("there are several"));
    EXPECT_THAT(RefusalOf(R"({"visibility": [{"node": "leg/hand", "visible": true}]})"), HasSubstr("does not exist"));
    EXPECT_THAT(RefusalOf(R"({"states": [{"name": "s", "materials": [{"material": "glass"}]}]})"),
                HasSubstr("the material 'glass'"));
    EXPECT_THAT(RefusalOf(R"({"sequences": [{"name": "s", "from": 0, "to": 10000000}]})"), HasSubstr("the limit is"));
    EXPECT_THAT(RefusalOf(R"({"camera": {"moves": [{"type": "sphere", "from": 0, "rows": 10000, "columns": 10000}]}})"),
                HasSubstr("goes to frame 99999999"));
}

} // namespace
} // namespace Orvel::Test
