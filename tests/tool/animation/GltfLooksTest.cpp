#include "animation/COrvelKeyFrameDataMaterial.h"
#include "platform/core/COrvelBasicGeneralMaterial.h"
#include "platform/core/COrvelMaterial.h"
#include "tests/tool/animation/AnimatedSceneTest.h"

#include <cmath>

namespace Orvel::Test
{
namespace
{

using testing::ElementsAre;
using testing::IsEmpty;

class GltfLooks : public AnimatedSceneTest
{};

json MaterialPointer(const char* pointer)
{
    return {{"path", "pointer"}, {"extensions", {{"KHR_animation_pointer", {{"pointer", pointer}}}}}};
}

/// IEC 61966-2-1, above the linear beginning.
double Srgb(double linear)
{
    return 1.055 * std::pow(linear, 1 / 2.4) - 0.055;
}

TEST_F(GltfLooks, ChangeWithTheValuesOfTheMaterial)
{
    AnimatedFile file;
    file.document["materials"] = json::parse(R"([{"name": "unused"}, {"name": "lamp", "alphaMode": "BLEND",
        "pbrMetallicRoughness": {"baseColorFactor": [0.1, 0.2, 0.3, 1], "metallicFactor": 0, "roughnessFactor": 1}}])");
    file.document["meshes"][0]["primitives"][0]["material"] = 1;
    file.Channel(0, MaterialPointer("/materials/1/pbrMetallicRoughness/baseColorFactor"), {0, 2},
                 {0.1F, 0.2F, 0.3F, 1, 0.9F, 0.2F, 0.3F, 0.5F}, 4);
    file.Channel(0, MaterialPointer("/materials/1/emissiveFactor"), {0, 1}, {0, 0, 0, 1, 0.5F, 0.25F}, 3, "STEP");
    file.Channel(0, MaterialPointer("/materials/1/extensions/KHR_materials_emissive_strength/emissiveStrength"), {0},
                 {0.5F}, 1);
    file.Channel(0, MaterialPointer("/materials/0/emissiveFactor"), {0}, {1, 1, 1}, 3);
    file.Channel(0, MaterialPointer("/materials/1/normalTexture/scale"), {0}, {1}, 1);
    Load(file);

    ASSERT_EQ(loaded.materials.size(), 1U);
    ASSERT_EQ(loaded.materials[0].size(), 1U);
    const COrvelID id = loaded.materials[0][0]->ID();
    EXPECT_EQ(animated.manager->LastFrame(), 48);
    for (int frame = 0; frame <= 48; ++frame) {
        const auto data = animated.manager->KeyFrameDataAtFrame(id, frame);
        const auto* const state = dynamic_cast<COrvelKeyFrameDataMaterial*>(data.Get());
        ASSERT_TRUE(state && state->Material()) << "frame " << frame;
        const COrvelBasicGeneralMaterial& looks = *state->Material()->ApproximateToGeneralMaterial();
        const double part = frame / 48.0;
        EXPECT_NEAR(looks.DiffuseColor().R(), Srgb(0.1 + 0.8 * part), 1 / 500.0) << "frame " << frame;
        EXPECT_NEAR(looks.DiffuseColor().G(), Srgb(0.2), 1e-6) << "frame " << frame;
        EXPECT_NEAR(looks.Opacity(), 1 - 0.5 * part, 1 / 500.0) << "frame " << frame;
        EXPECT_NEAR(looks.EmissiveColor().G(), frame < 24 ? 0 : Srgb(0.25), 1 / 500.0) << "frame " << frame;
        EXPECT_EQ(looks.Name(), COrvelString("lamp"));
    }
    KeyFrameDataList keys;
    animated.manager->ListAllKeyFrameData(keys);
    EXPECT_LT(keys.size(), 20U);
    EXPECT_THAT(report.Warnings(), ElementsAre("left out: 1 animated property that cannot be shown",
                                               "left out: 1 animation of what is not shown"));
}

/// What stands for each material in a state: names, in the order of the state's map.
std::vector<std::string> Replacements(const COrvelBasicSceneState& state)
{
    std::vector<std::string> names;
    for (const auto& [material, replacement] : state.materialReplacements)
        names.push_back(material->Name().toStdString() + " -> " + replacement->Name().toStdString());
    return names;
}

TEST_F(GltfLooks, OfVariantsBecomeSceneStates)
{
    AnimatedFile file;
    file.document["extensions"]["KHR_materials_variants"]["variants"] =
        json::parse(R"([{"name": "night"}, {"name": "plain"}, {"name": "night"}])");
    file.document["materials"] = json::parse(R"([{"name": "oak"}, {"name": "ash"}, {"name": "fir"}])");
    const json primitive = file.document["meshes"][0]["primitives"][0];
    const auto add = [&](json material, const char* mappings) {
        json& made = file.MeshNode(primitive["attributes"]);
        if (!material.is_null())
            made["material"] = std::move(material);
        if (mappings)
            made["extensions"]["KHR_materials_variants"]["mappings"] = json::parse(mappings);
    };
    // Of four meshes in oak two change alike; the one without a material changes too.
    const char* const toAsh = R"([{"variants": [0], "material": 1}, {"variants": [1], "material": 0}])";
    add(0, nullptr);
    add(0, toAsh);
    add(0, toAsh);
    add(0, R"([{"variants": [0, 2], "material": 2}])");
    add(nullptr, R"([{"variants": [2], "material": 1}])");
    // Shapes of their own: shared ones would bring a material for each.
    for (std::size_t mesh = 1; mesh <= 5; ++mesh)
        file.document["meshes"][mesh]["primitives"][0]["attributes"]["POSITION"] =
            file.Vectors({0, 0, 0, static_cast<float>(mesh), 0, 0, 0, 3, 0});
    Load(file);

    EXPECT_THAT(animated.sceneStateNames, ElementsAre("night", "plain", "night (2)"));
    ASSERT_EQ(animated.sceneStates.size(), 3U);
    EXPECT_THAT(Replacements(animated.sceneStates[0]), ElementsAre("oak -> ash", "oak -> fir"));
    EXPECT_THAT(Replacements(animated.sceneStates[1]), IsEmpty());
    EXPECT_THAT(Replacements(animated.sceneStates[2]), ElementsAre("oak -> fir", "Default -> ash"));
    EXPECT_EQ(loaded.materials[0].size(), 3U);

    file.document["meshes"][1]["primitives"][0]["extensions"]["KHR_materials_variants"]["mappings"] =
        json::parse(R"([{"variants": [3], "material": 1}])");
    EXPECT_EQ(RefusalOf(file), "mesh 'Wheel': a primitive names a variant of materials that does not exist");
}

} // namespace
} // namespace Orvel::Test
