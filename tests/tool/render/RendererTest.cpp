#include "tool/render/Renderer.h"

#include "tool/render/ColourSpace.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <numbers>
#include <vector>

namespace Orvel::Render
{
namespace
{

using Eigen::Vector3d;
using Eigen::Vector3f;

/// Gives its colour and nothing else.
Material Glowing(const Vector3f& colour, float opacity = 1.0F)
{
    Material material;
    material.diffuse.setZero();
    material.emissive = colour;
    material.opacity = opacity;
    return material;
}

/// A rectangle from (-1, -1) to (1, 1) with z = 0, the whole picture on it.
Mesh Square()
{
    Mesh mesh;
    mesh.points = {-1, -1, 0, 1, -1, 0, 1, 1, 0, -1, 1, 0};
    mesh.corners = {0, 1, 2, 0, 2, 3};
    mesh.textureCoordinates = {0, 0, 1, 0, 1, 1, 0, 1};
    mesh.cornerTextureCoordinates = mesh.corners;
    return mesh;
}

class RendererTest : public testing::Test
{
protected:
    void Place(std::uint32_t mesh, const Material& material, const Eigen::Affine3d& place)
    {
        scene.materials.push_back(material);
        scene.instances.push_back({mesh, static_cast<std::uint32_t>(scene.materials.size() - 1), place});
    }

    void PlaceSquare(const Material& material, double height, double size = 1.0)
    {
        Place(0, material, Eigen::Translation3d(0, 0, height) * Eigen::Scaling(size));
    }

    /// From above: 100 x 100 pixels see -2 to 2.
    void TakeFromAbove()
    {
        Views::View view;
        view.eye = {0, 0, 10};
        view.target = {0, 0, 0};
        view.up = {0, 1, 0};
        view.projection = Views::Projection::Parallel;
        view.size = 4.0;
        options.width = 100;
        options.height = 100;
        Take(view);
    }

    void Take(const Views::View& view) { picture = Renderer(scene).Render(view, options); }

    [[nodiscard]] std::array<int, 4> Pixel(std::size_t x, std::size_t y) const
    {
        const std::uint8_t* pixel = picture.pixels.data() + 4 * (y * picture.width + x);
        return {pixel[0], pixel[1], pixel[2], pixel[3]};
    }

    RenderScene scene;
    PictureOptions options{.background = std::nullopt};
    Picture picture;
};

TEST_F(RendererTest, DrawsATriangleWhereItProjectsTo)
{
    // Far from the origin, stretched, turned and mirrored.
    Mesh mesh;
    mesh.points = {-1, -1, 0, 1, -0.5F, 0.5F, 0, 1, 0.25F};
    mesh.corners = {0, 1, 2};
    scene.meshes.push_back(mesh);
    const Eigen::Affine3d place = Eigen::Translation3d(4e6, -3e6, 2e6) * Eigen::AngleAxisd(0.5, Vector3d::UnitX()) *
                                  Eigen::Scaling(300.0, -200.0, 100.0);
    Place(0, Glowing({0.5F, 0.0F, 0.0F}), place);
    Views::View view;
    view.target = place.translation();
    view.eye = view.target + Vector3d(200, -1500, 400);
    view.fieldOfViewInDegrees = 40.0;
    view.span = Views::Span::Width;
    options.width = 320;
    options.height = 200;
    Take(view);

    const double perTangent = 160.0 / std::tan(20.0 * std::numbers::pi / 180.0);
    const Vector3d forward = (view.target - view.eye).normalized();
    const Vector3d right = forward.cross(Vector3d::UnitZ()).normalized();
    std::array<Eigen::Vector2d, 3> corners;
    for (std::size_t k = 0; k < 3; ++k) {
        const Vector3d toCorner =
            place * Eigen::Map<const Vector3f>(mesh.points.data() + 3 * k).cast<double>() - view.eye;
        corners[k] = Eigen::Vector2d(160 + perTangent * toCorner.dot(right) / toCorner.dot(forward),
                                     100 - perTangent * toCorner.dot(right.cross(forward)) / toCorner.dot(forward));
    }
    int inside = 0;
    for (std::size_t y = 0; y < 200; ++y) {
        for (std::size_t x = 0; x < 320; ++x) {
            const Eigen::Vector2d middle(static_cast<double>(x) + 0.5, static_cast<double>(y) + 0.5);
            // Distance to each edge, above 0 inside or outside.
            std::array<double, 3> distance{};
            for (std::size_t k = 0; k < 3; ++k) {
                const Eigen::Vector2d edge = corners[(k + 1) % 3] - corners[k];
                const Eigen::Vector2d to = middle - corners[k];
                distance[k] = (edge[0] * to[1] - edge[1] * to[0]) / edge.norm();
            }
            const double turn = distance[0] + distance[1] + distance[2] > 0 ? 1.0 : -1.0;
            const double nearest = std::min({turn * distance[0], turn * distance[1], turn * distance[2]});
            if (nearest > 1.0) {
                ++inside;
                ASSERT_EQ(Pixel(x, y), (std::array<int, 4>{188, 0, 0, 255})) << x << " " << y;
            } else if (nearest < -1.0) {
                ASSERT_EQ(Pixel(x, y)[3], 0) << x << " " << y;
            }
        }
    }
    EXPECT_GT(inside, 2000);
}

TEST_F(RendererTest, SmoothsEdgesByTheirCoverage)
{
    scene.meshes.push_back(Square());
    Place(0, Glowing({0.5F, 0.5F, 0.5F}), Eigen::Affine3d(Eigen::AngleAxisd(std::numbers::pi / 4, Vector3d::UnitZ())));
    options.samples = 16;
    TakeFromAbove();
    // The edges run through the corners of pixels.
    const double corner = 50 - std::sqrt(2.0) * 25;
    for (std::size_t x = 20; x < 45; ++x) {
        double sum = 0.0;
        for (std::size_t y = 0; y < 50; ++y)
            sum += Pixel(x, y)[3] / 255.0;
        EXPECT_NEAR(sum, static_cast<double>(x) + 0.5 - corner, 0.13) << x;
    }
}

TEST_F(RendererTest, MixesTransparentSurfacesInLinearLight)
{
    scene.meshes.push_back(Square());
    PlaceSquare(Glowing({0.5F, 0.0F, 0.0F}), 0.0, 0.5);
    PlaceSquare(Glowing({0.0F, 0.5F, 0.0F}, 0.5F), 1.0);
    PlaceSquare(Glowing({0.0F, 0.0F, 0.5F}, 0.25F), 2.0, 0.5);
    TakeFromAbove();
    const auto byte = [](float light) { return static_cast<int>(SrgbByteFromLinear(light)); };
    EXPECT_EQ(Pixel(50, 50), (std::array<int, 4>{byte(0.1875F), byte(0.1875F), byte(0.125F), 255}));
    EXPECT_EQ(Pixel(30, 30), (std::array<int, 4>{0, 188, 0, 128})) << "colour not multiplied by alpha";
    EXPECT_EQ(Pixel(2, 2), (std::array<int, 4>{0, 0, 0, 0}));
    options.background = {{0, 0, 255}};
    TakeFromAbove();
    EXPECT_EQ(Pixel(30, 30), (std::array<int, 4>{0, byte(0.25F), 188, 255}));
    EXPECT_EQ(Pixel(2, 2), (std::array<int, 4>{0, 0, 255, 255}));
}

TEST_F(RendererTest, LaysTexturesUprightAndCutsOutWhatIsInvisible)
{
    scene.meshes.push_back(Square());
    scene.textures.emplace_back(2, 2,
                                std::vector<std::uint8_t>{255, 0, 0, 255, 0, 255, 0, 255, 0, 0, 255, 255, 9, 9, 9, 0});
    Material material = Glowing({0.5F, 0.5F, 0.5F});
    material.texture = 0;
    material.wrapU = material.wrapV = Wrap::Clamp;
    PlaceSquare(material, 1.0);
    PlaceSquare(Glowing({0.25F, 0.25F, 0.25F}), 0.0, 1.5);
    TakeFromAbove();
    EXPECT_EQ(Pixel(30, 30), (std::array<int, 4>{188, 0, 0, 255}));
    EXPECT_EQ(Pixel(69, 30), (std::array<int, 4>{0, 188, 0, 255}));
    EXPECT_EQ(Pixel(30, 69), (std::array<int, 4>{0, 0, 188, 255}));
    EXPECT_EQ(Pixel(69, 69), (std::array<int, 4>{137, 137, 137, 255})) << "what lies below";
}

TEST_F(RendererTest, ShadesBothSidesAlikeAndDarkensWhatIsCovered)
{
    // Stored normals and windings that contradict each other, a mirrored place: seen from above all look alike.
    scene.meshes.push_back(Square());
    for (const float normal : {1.0F, -1.0F}) {
        Mesh mesh = Square();
        mesh.normals = {0, 0, normal};
        mesh.cornerNormals.assign(6, 0);
        scene.meshes.push_back(mesh);
    }
    const Material grey;
    const auto at = [](double x, double y, double turn) {
        return Eigen::Affine3d(Eigen::Translation3d(x, y, 0) * Eigen::Scaling(0.4, turn * 0.4, 0.4));
    };
    Place(0, grey, at(-1, 1, 1));
    Place(1, grey, at(1, 1, -1));
    Place(2, grey, at(-1, -1, 1));
    Place(0, grey, at(1, -1, 1) * Eigen::AngleAxisd(std::numbers::pi, Vector3d::UnitX()));
    TakeFromAbove();
    const std::array<int, 4> bright = Pixel(25, 25);
    EXPECT_GT(bright[0], 150);
    for (const auto& [x, y] : {std::pair{75, 25}, {25, 75}, {75, 75}})
        EXPECT_EQ(Pixel(static_cast<std::size_t>(x), static_cast<std::size_t>(y)), bright) << x << " " << y;

    PlaceSquare(grey, -0.1, 1.8);
    TakeFromAbove();
    EXPECT_LT(Pixel(36, 22)[0] + 20, Pixel(8, 92)[0]) << "beside a plate that floats above it, and in the open";
}

TEST_F(RendererTest, GivesEqualBytesAndHarmlessPixelsForDamagedScenes)
{
    TakeFromAbove();
    EXPECT_EQ(picture.pixels, std::vector<std::uint8_t>(4 * 100 * 100, 0)) << "an empty scene";

    const float none = std::numeric_limits<float>::quiet_NaN();
    Mesh mesh = Square();
    mesh.normals = {none, 0, 0, 0, 0, 0, std::numeric_limits<float>::infinity(), 0, 0};
    mesh.cornerNormals = {0, 1, 2, None, 1, 0, 0, 0, 0};
    mesh.textureCoordinates[0] = none;
    mesh.corners.insert(mesh.corners.end(), {0, 0, 1});
    mesh.cornerTextureCoordinates.insert(mesh.cornerTextureCoordinates.end(), {0, 0, None});
    scene.meshes.push_back(mesh);
    scene.textures.emplace_back(1, 1, std::vector<std::uint8_t>{255, 255, 255, 255});
    Material material;
    material.texture = 0;
    material.specular.setConstant(0.5F);
    PlaceSquare(material, 0.0);
    Place(0, material, Eigen::Translation3d(0.0, 0.0, -0.5) * Eigen::Scaling(1.7, 1.7, 1e-8));
    TakeFromAbove();
    EXPECT_EQ(Pixel(50, 60)[3], 255);
    EXPECT_GT(Pixel(50, 60)[0], 60);
    const std::vector<std::uint8_t> first = picture.pixels;
    TakeFromAbove();
    EXPECT_EQ(picture.pixels, first);
    // Eye, target and up in one place; a picture of one pixel.
    Views::View view;
    view.eye = view.target = view.up = Vector3d::Zero();
    options.width = 1;
    options.height = 1;
    Take(view);
    EXPECT_EQ(picture.pixels.size(), 4U);
}

} // namespace
} // namespace Orvel::Render
