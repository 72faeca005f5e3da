#include "tool/render/Texture.h"

#include <gtest/gtest.h>

#include <vector>

namespace Orvel::Render
{
namespace
{

/// Red and green above blue and white.
Texture FourColours()
{
    return {2, 2, {255, 0, 0, 255, 0, 255, 0, 255, 0, 0, 255, 255, 255, 255, 255, 255}};
}

Eigen::Vector4f At(const Texture& texture, float u, float v, Wrap wrap)
{
    return texture.Sample({{u, v}, {0.0F, 0.0F}, {0.0F, 0.0F}}, wrap, wrap);
}

TEST(Texture, StandsUprightAndGoesOnBeyondItsEdges)
{
    const Texture texture = FourColours();
    const Eigen::Vector4f red(1, 0, 0, 1);
    const Eigen::Vector4f green(0, 1, 0, 1);
    const Eigen::Vector4f blue(0, 0, 1, 1);
    const Eigen::Vector4f white(1, 1, 1, 1);
    EXPECT_EQ(At(texture, 0.25F, 0.75F, Wrap::Repeat), red);
    EXPECT_EQ(At(texture, 0.75F, 0.75F, Wrap::Repeat), green);
    EXPECT_EQ(At(texture, 0.25F, 0.25F, Wrap::Repeat), blue);
    EXPECT_EQ(At(texture, 0.75F, 0.25F, Wrap::Repeat), white);
    EXPECT_EQ(At(texture, 1.25F, -0.25F, Wrap::Repeat), red);
    EXPECT_EQ(At(texture, 1.25F, -0.25F, Wrap::Mirror), white);
    EXPECT_EQ(At(texture, -3.0F, 4.0F, Wrap::Clamp), red);
    EXPECT_TRUE(At(texture, 0.5F, 0.75F, Wrap::Clamp).isApprox(Eigen::Vector4f(0.5F, 0.5F, 0.0F, 1.0F)));
}

TEST(Texture, AveragesLightAndNotBytesWhenItShrinks)
{
    std::vector<std::uint8_t> checks;
    for (unsigned pixel = 0; pixel < 64 * 64; ++pixel) {
        const auto grey = static_cast<std::uint8_t>((pixel + pixel / 64) % 2 == 0 ? 255 : 0);
        checks.insert(checks.end(), {grey, grey, grey, 255});
    }
    const Texture texture(64, 64, checks);
    const Eigen::Vector4f far =
        texture.Sample({{0.3F, 0.3F}, {0.25F, 0.0F}, {0.0F, 0.25F}}, Wrap::Repeat, Wrap::Repeat);
    EXPECT_NEAR(far[0], 0.5F, 0.01F);
    const float endless = std::numeric_limits<float>::infinity();
    const Eigen::Vector4f anywhere =
        texture.Sample({{endless, 0.0F}, {endless, 0.0F}, {0.0F, endless}}, Wrap::Repeat, Wrap::Repeat);
    EXPECT_NEAR(anywhere[1], 0.5F, 0.01F);
}

TEST(Texture, KeepsTheColourOfInvisiblePixelsOut)
{
    const Texture texture(2, 1, {255, 0, 0, 255, 0, 255, 0, 0});
    EXPECT_FALSE(texture.IsOpaque());
    EXPECT_TRUE(At(texture, 0.5F, 0.5F, Wrap::Clamp).isApprox(Eigen::Vector4f(1.0F, 0.0F, 0.0F, 0.5F)));
}

} // namespace
} // namespace Orvel::Render
