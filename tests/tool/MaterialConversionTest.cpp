#include "tool/import/MaterialConversion.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

namespace Orvel::Import
{
namespace
{

using ::testing::DoubleNear;
using ::testing::ElementsAre;
using ::testing::Pointwise;

auto IsColour(const Colour& want)
{
    return Pointwise(DoubleNear(1e-6), want);
}

TEST(TransferFunction, FollowsTheStandardOnBothSidesOfItsKnee)
{
    // IEC 61966-2-1, computed with decimal arithmetic.
    EXPECT_NEAR(SrgbFromLinear(0.002), 0.02584, 1e-12);
    EXPECT_NEAR(SrgbFromLinear(0.0031308), 0.040449936, 1e-9);
    EXPECT_NEAR(SrgbFromLinear(0.5), 0.7353569830524495, 1e-12);
    EXPECT_EQ(SrgbFromLinear(0.0), 0.0);
    EXPECT_EQ(SrgbFromLinear(1.0), 1.0);
    for (const double encoded : {0.01, 0.04, 0.05, 0.3, 0.99})
        EXPECT_NEAR(SrgbFromLinear(LinearFromSrgb(encoded)), encoded, 1e-7) << encoded;
    EXPECT_EQ(SrgbFromLinear(7.0), 1.0);
    EXPECT_EQ(SrgbFromLinear(-1.0), 0.0);
    EXPECT_EQ(SrgbFromLinear(std::numeric_limits<double>::quiet_NaN()), 0.0);
    EXPECT_EQ(LinearFromSrgb(std::numeric_limits<double>::infinity()), 1.0);
}

TEST(MetallicRoughnessConversion, KeepsTheBaseColourOfMetals)
{
    ImportedMaterial metal;
    ConvertMetallicRoughness({.baseColour = {0.5, 0.25, 0.1}, .metallic = 1.0, .roughness = 0.5}, metal);
    EXPECT_THAT(metal.diffuse, IsColour({0.735357, 0.537099, 0.349190}));
    EXPECT_EQ(metal.ambient, metal.diffuse);
    // A quarter of the base colour.
    EXPECT_THAT(metal.specular, IsColour({0.388573, 0.277304, 0.171844}));
    EXPECT_EQ(metal.opacity, 1.0);
}

TEST(MetallicRoughnessConversion, ReflectsAsTheIndexOfRefractionSays)
{
    ImportedMaterial glossy;
    ConvertMetallicRoughness({.metallic = 0.0, .roughness = 0.0}, glossy);
    EXPECT_THAT(glossy.specular, IsColour({0.220916, 0.220916, 0.220916})) << "0.04 of the light";
    ConvertMetallicRoughness({.metallic = 0.0,
                              .roughness = 0.0,
                              .indexOfRefraction = 3.0,
                              .specular = 0.5,
                              .specularColour = {1.0, 0.5, 8.0}},
                             glossy);
    EXPECT_THAT(glossy.specular, IsColour({SrgbFromLinear(0.125), SrgbFromLinear(0.0625), SrgbFromLinear(0.5)}));
    ConvertMetallicRoughness({.metallic = 0.0, .roughness = 1.0}, glossy);
    EXPECT_THAT(glossy.specular, ElementsAre(0, 0, 0));
    ConvertMetallicRoughness({.transmission = 1.0, .opacity = 0.5}, glossy);
    EXPECT_EQ(glossy.opacity, 0.125) << "glass stays visible";
}

TEST(SpecularGlossinessConversion, WeakensTheHighlightOfRoughSurfaces)
{
    ImportedMaterial material;
    ConvertSpecularGlossiness(
        {.diffuse = {0.5, 0.0, 1.0}, .specular = {0.5, 1.0, 0.25}, .glossiness = 0.5, .opacity = 0.25}, material);
    EXPECT_THAT(material.diffuse, IsColour({0.735357, 0.0, 1.0}));
    EXPECT_THAT(material.specular, IsColour({SrgbFromLinear(0.125), SrgbFromLinear(0.25), SrgbFromLinear(0.0625)}));
    EXPECT_EQ(material.opacity, 0.25);
}

TEST(EmissiveConversion, KeepsTheHueOfStrongLight)
{
    EXPECT_THAT(EmissiveColour({0.5, 0.25, 0.0}, 1.0), IsColour({0.735357, 0.537099, 0.0}));
    EXPECT_THAT(EmissiveColour({1.0, 0.5, 0.25}, 8.0), IsColour({1.0, 0.735357, 0.537099}));
}

TEST(UnlitConversion, ShinesByItselfUnlessAPictureDecides)
{
    ImportedMaterial plain;
    ConvertMetallicRoughness({.baseColour = {0.5, 0.25, 0.1}, .roughness = 0.0}, plain);
    ImportedMaterial pictured = plain;
    pictured.image = 0;
    const Colour base = plain.diffuse;
    MakeUnlit(plain);
    EXPECT_EQ(plain.emissive, base);
    EXPECT_THAT(plain.diffuse, ElementsAre(0, 0, 0));
    EXPECT_THAT(plain.ambient, ElementsAre(0, 0, 0));
    MakeUnlit(pictured);
    EXPECT_EQ(pictured.diffuse, base);
    EXPECT_THAT(pictured.specular, ElementsAre(0, 0, 0));
}

TEST(ClassicConversion, KeepsColoursAndFillsInWhatIsAbsent)
{
    ImportedMaterial material;
    ConvertClassic({.diffuse = Colour{0.1, 0.2, 0.3},
                    .specular = Colour{0.5, 0.25, 4.0},
                    .specularStrength = 0.5,
                    .opacity = 0.75},
                   material);
    EXPECT_THAT(material.diffuse, ElementsAre(0.1, 0.2, 0.3));
    EXPECT_EQ(material.ambient, material.diffuse);
    EXPECT_THAT(material.specular, ElementsAre(0.25, 0.125, 1.0));
    EXPECT_THAT(material.emissive, ElementsAre(0, 0, 0));
    EXPECT_EQ(material.opacity, 0.75);

    ConvertClassic({.ambient = Colour{0.5, 0.0, 0.0}}, material);
    EXPECT_THAT(material.diffuse, ElementsAre(0.8, 0.8, 0.8));
    EXPECT_THAT(material.ambient, ElementsAre(0.5, 0.0, 0.0));
    material.image = 0;
    ConvertClassic({.diffuse = Colour{0.0, 0.0, 0.0}}, material);
    EXPECT_THAT(material.diffuse, ElementsAre(1, 1, 1)) << "black would hide the picture";
}

} // namespace
} // namespace Orvel::Import
