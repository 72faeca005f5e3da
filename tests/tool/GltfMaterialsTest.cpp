#include "tests/tool/GltfFile.h"
#include "tool/import/MaterialConversion.h"

#include <gmock/gmock.h>

namespace Orvel::Test
{
namespace
{

using Import::Colour;
using Import::None;
using Import::SrgbFromLinear;
using ::testing::DoubleNear;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Pointwise;
using ::testing::UnorderedElementsAre;

class GltfMaterials : public GltfTest
{
protected:
    /// Reads a triangle in one material. `tables` brings materials and whatever they point to.
    ReadResult ReadMaterial(const std::string& tables)
    {
        GltfFile file;
        const int positions = file.Vectors({1, 2, 3, 5, 7, 11, -13, 17, 19});
        const int first = file.Pairs({0, 0, 1, 0, 1, 1});
        const int second = file.Pairs({0.5F, 0.5F, 1, 0.5F, 1, 1});
        file.MeshNode({{"POSITION", positions}, {"TEXCOORD_0", first}, {"TEXCOORD_1", second}})["material"] = 0;
        file.document.update(json::parse(tables));
        ReadResult result = Read(file.Write(folder));
        std::erase(result.warnings, "left out: 1 second texture coordinate set");
        return result;
    }
};

std::string Text(const std::vector<std::byte>& bytes)
{
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

TEST_F(GltfMaterials, ConvertMetallicRoughness)
{
    const auto [scene, warnings] = ReadMaterial(R"({"materials": [{
        "name": "Lack", "alphaMode": "BLEND", "emissiveFactor": [0.5, 0.25, 0],
        "pbrMetallicRoughness": {"baseColorFactor": [0.5, 0.25, 0.1, 0.375], "metallicFactor": 1, "roughnessFactor": 0.5},
        "extensions": {"KHR_materials_emissive_strength": {"emissiveStrength": 4}}}]})");
    ASSERT_EQ(scene.materials.size(), 1U);
    const Import::ImportedMaterial& material = scene.materials[0];
    EXPECT_EQ(material.name, "Lack");
    EXPECT_EQ(material.diffuse, SrgbFromLinear(Colour{0.5, 0.25, 0.1}));
    EXPECT_EQ(material.specular, SrgbFromLinear(Colour{0.125, 0.0625, 0.025}));
    EXPECT_EQ(material.emissive, SrgbFromLinear(Colour{1.0, 0.5, 0.0}));
    EXPECT_EQ(material.opacity, 0.375);
    EXPECT_EQ(material.image, None);
    EXPECT_THAT(warnings, IsEmpty());
}

TEST_F(GltfMaterials, ConvertSpecularGlossinessAheadOfMetallicRoughness)
{
    const auto [scene, warnings] = ReadMaterial(R"({
        "images": [{"uri": "wood.png"}], "textures": [{"source": 0}],
        "materials": [{"pbrMetallicRoughness": {"baseColorFactor": [1, 0, 0, 1]},
            "extensions": {"KHR_materials_pbrSpecularGlossiness": {
                "diffuseFactor": [0.5, 0.25, 0.1, 0.5], "specularFactor": [0.8, 0.4, 0.2], "glossinessFactor": 0.5,
                "diffuseTexture": {"index": 0, "texCoord": 1}}}}]})");
    const Import::ImportedMaterial& material = scene.materials.at(0);
    EXPECT_EQ(material.diffuse, SrgbFromLinear(Colour{0.5, 0.25, 0.1}));
    EXPECT_THAT(material.specular, Pointwise(DoubleNear(1e-12), SrgbFromLinear(Colour{0.2, 0.1, 0.05})));
    EXPECT_EQ(material.opacity, 1.0) << "the alpha mode says opaque";
    ASSERT_EQ(material.image, 0);
    EXPECT_EQ(scene.images.at(0).path, "wood.png");
    EXPECT_THAT(scene.textureCoordinates.at(0).values, ElementsAre(0.5, 0.5, 1, 0.5, 1, 0)) << "the second set";
}

TEST_F(GltfMaterials, FollowTheAlphaMode)
{
    struct Case
    {
        const char* members;
        double alpha;
        double opacity;
        bool imageAlphaCounts;
    };
    const Case cases[] = {
        {R"("doubleSided": true)", 0.25, 1.0, false},  {R"("alphaMode": "OPAQUE")", 0.25, 1.0, false},
        {R"("alphaMode": "BLEND")", 0.25, 0.25, true}, {R"("alphaMode": "MASK")", 0.6, 1.0, true},
        {R"("alphaMode": "MASK")", 0.4, 0.0, true},    {R"("alphaMode": "MASK", "alphaCutoff": 0.3)", 0.4, 1.0, true}};
    for (const Case& each : cases) {
        const auto [scene, warnings] = ReadMaterial(R"({"materials": [{)" + std::string(each.members) +
                                                    R"(, "pbrMetallicRoughness": {"baseColorFactor": [1, 1, 1, )" +
                                                    std::to_string(each.alpha) + "]}}]}");
        EXPECT_EQ(scene.materials.at(0).opacity, each.opacity) << each.members;
        EXPECT_EQ(scene.materials[0].imageAlphaCounts, each.imageAlphaCounts) << each.members;
    }
}

TEST_F(GltfMaterials, KeepPicturesEncoded)
{
    GltfFile file = TriangleFile();
    const int view = file.View(std::vector<char>{'P', 'N', 'G', '1', '2'});
    file.document["images"] = json::array({{{"bufferView", view}, {"mimeType", "image/png"}},
                                           {{"uri", "data:image/jpeg;base64,SlBFRw=="}, {"name", "photo"}},
                                           {{"uri", "Bilder/Gr%C3%BCn%20+1.png"}},
                                           {{"uri", "never%20read.png"}}});
    for (const int image : {0, 1, 2, 3})
        file.Add("textures", {{"source", image}});
    const int positions = 0;
    const int coordinates = file.Pairs({0, 0, 1, 0, 1, 1});
    for (const int texture : {0, 1, 2, 2}) {
        const int material =
            file.Add("materials", {{"pbrMetallicRoughness", {{"baseColorTexture", {{"index", texture}}}}}});
        file.MeshNode({{"POSITION", positions}, {"TEXCOORD_0", coordinates}})["material"] = material;
    }
    const auto [scene, warnings] = Read(file.Write(folder));

    ASSERT_EQ(scene.images.size(), 3U);
    EXPECT_EQ(Text(scene.images[0].encoded), "PNG12");
    EXPECT_EQ(scene.images[0].path, "");
    EXPECT_FALSE(scene.images[0].name.empty());
    EXPECT_EQ(Text(scene.images[1].encoded), "JPEG");
    EXPECT_EQ(scene.images[1].name, "photo");
    EXPECT_THAT(scene.images[2].encoded, IsEmpty());
    EXPECT_EQ(scene.images[2].path, "Bilder/Gr\u00fcn +1.png");
    EXPECT_EQ(scene.images[2].name, "Gr\u00fcn +1.png");
    ASSERT_EQ(scene.materials.size(), 4U);
    EXPECT_EQ(scene.materials[2].image, 2);
    EXPECT_EQ(scene.materials[3].image, 2);
    EXPECT_THAT(warnings, IsEmpty()) << "a missing picture is no fault of the scene";
}

TEST_F(GltfMaterials, TellOfATextureWithoutCoordinates)
{
    GltfFile file = TriangleFile();
    file.document.update(json::parse(R"({"images": [{"uri": "a.png"}], "textures": [{"source": 0}],
        "materials": [{"pbrMetallicRoughness": {"baseColorTexture": {"index": 0, "texCoord": 1}}}]})"));
    file.document["meshes"][0]["primitives"][0]["material"] = 0;
    EXPECT_THAT(Read(file.Write(folder)).warnings, ElementsAre(HasSubstr("mesh 'Wheel': its texture is not shown")));
}

TEST_F(GltfMaterials, FallBackToPicturesThatCanBeShown)
{
    const auto sourceOf = [&](const char* texture) {
        return ReadMaterial(std::string(R"({"images": [{"uri": "a.png"}, {"uri": "b.webp"}, {"uri": "c.ktx2"}],
            "materials": [{"pbrMetallicRoughness": {"baseColorTexture": {"index": 0}}}], "textures": [)") +
                            texture + "]}");
    };
    const auto plain = sourceOf(R"({"source": 0, "extensions": {"KHR_texture_basisu": {"source": 2}}})");
    EXPECT_EQ(plain.scene.images.at(0).path, "a.png");
    EXPECT_THAT(plain.warnings, IsEmpty());
    const auto webp =
        sourceOf(R"({"extensions": {"KHR_texture_basisu": {"source": 2}, "EXT_texture_webp": {"source": 1}}})");
    EXPECT_EQ(webp.scene.images.at(0).path, "b.webp");
    const auto none = sourceOf(R"({"extensions": {"KHR_texture_basisu": {"source": 2}}})");
    EXPECT_THAT(none.scene.images, IsEmpty());
    EXPECT_EQ(none.scene.materials.at(0).image, None);
    EXPECT_THAT(none.warnings, ElementsAre("left out: 1 texture in an image format that cannot be shown"));
}

TEST_F(GltfMaterials, CountTextureTransformsThatChangeSomething)
{
    const auto with = [&](const char* transform) {
        return ReadMaterial(std::string(R"({"images": [{"uri": "a.png"}], "textures": [{"source": 0}],
            "materials": [{"pbrMetallicRoughness": {"baseColorTexture": {"index": 0,
                "extensions": {"KHR_texture_transform": )") +
                            transform + "}}}}]}");
    };
    EXPECT_THAT(with(R"({"offset": [0, 0], "scale": [1, 1], "rotation": 0})").warnings, IsEmpty());
    for (const char* transform : {R"({"offset": [0, 0.5]})", R"({"scale": [2, 1]})", R"({"rotation": 1})"})
        EXPECT_THAT(with(transform).warnings, ElementsAre("left out: 1 texture transform")) << transform;
    EXPECT_THAT(with(R"({"texCoord": 1})").scene.textureCoordinates.at(0).values, ElementsAre(0.5, 0.5, 1, 0.5, 1, 0));
}

TEST_F(GltfMaterials, CountTexturesOfThePhysicalModel)
{
    const auto [scene, warnings] = ReadMaterial(R"({"images": [{"uri": "a.png"}], "textures": [{"source": 0}],
        "materials": [{"normalTexture": {"index": 0}, "occlusionTexture": {"index": 0},
            "emissiveTexture": {"index": 0}, "emissiveFactor": [1, 1, 1],
            "pbrMetallicRoughness": {"metallicRoughnessTexture": {"index": 0}}}]})");
    EXPECT_THAT(warnings,
                UnorderedElementsAre("left out: 1 normal texture", "left out: 1 occlusion texture",
                                     "left out: 1 emissive texture", "left out: 1 metallic-roughness texture"));
    EXPECT_THAT(scene.materials.at(0).emissive, ElementsAre(0, 0, 0)) << "the texture would have said where";
}

TEST_F(GltfMaterials, ReadUnlitGlassAndRefractiveMaterials)
{
    const auto [unlit, none] = ReadMaterial(R"({"materials": [{"extensions": {"KHR_materials_unlit": {}},
        "pbrMetallicRoughness": {"baseColorFactor": [0.5, 0.25, 0.1, 1]}}]})");
    EXPECT_EQ(unlit.materials.at(0).emissive, SrgbFromLinear(Colour{0.5, 0.25, 0.1}));
    const auto [glass, nothing] = ReadMaterial(R"({"materials": [{
        "pbrMetallicRoughness": {"metallicFactor": 0, "roughnessFactor": 0},
        "extensions": {"KHR_materials_transmission": {"transmissionFactor": 0.5}, "KHR_materials_ior": {"ior": 3},
                       "KHR_materials_specular": {"specularFactor": 0.5, "specularColorFactor": [1, 0.5, 0]}}}]})");
    EXPECT_EQ(glass.materials.at(0).opacity, 0.625);
    EXPECT_THAT(glass.materials[0].specular, Pointwise(DoubleNear(1e-12), SrgbFromLinear(Colour{0.125, 0.0625, 0.0})));
}

} // namespace
} // namespace Orvel::Test
