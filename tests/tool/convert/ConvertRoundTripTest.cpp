#include "platform/prcfile/PRCReader.h"
#include "platform/prcfile/oPRCFile.h"
#include "tests/support/TemporaryFolder.h"
#include "tool/convert/AssimpFile.h"
#include "tool/convert/GltfFile.h"
#include "tool/convert/MeshSceneBuilder.h"
#include "tool/convert/SceneUnits.h"

#include <gmock/gmock.h>

#include <FreeImage.h>
#include <tiny_gltf.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <limits>
#include <random>

/// Random scenes go through the PRC writer, the reader, and the conversion; another library reads what came out.
namespace Orvel::Convert
{
namespace
{

using Random = std::mt19937_64;
using Test::TemporaryFolder;

constexpr const char* Names[] = {"wheel", "wheel", "", "Türgriff", "車輪", "колесо", "عجلة", "🚲", "a\"b\\c\n", "x/y"};

/// Positive, negative, huge, tiny, subnormal, repeated, round and random numbers within single precision.
double AnyNumber(Random& random)
{
    constexpr double Special[] = {0.0, 1.0, -1.0, 3.4e38, -1e-38, 5e-324, 1e-42, 0.1, 1165.0, -16777217.0};
    switch (random() % 3) {
    case 0:
        return Special[random() % std::size(Special)];
    case 1:
        return static_cast<double>(random() % 2000) / 7.0 - 100.0;
    default: {
        const float number = std::bit_cast<float>(static_cast<std::uint32_t>(random()));
        return std::isfinite(number) ? double{number} * 0.9999999999 : 7.25;
    }
    }
}

struct PictureRecord
{
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::uint32_t components = 3;
    std::vector<std::uint8_t> pixels; ///< bottom row first
};

struct NodeRecord
{
    std::string name;
    std::size_t parent = 0; ///< the root is its own
    prc::Matrix matrix = prc::identityMatrix;
    std::size_t mesh = SIZE_MAX;
    std::uint32_t material = 0;
};

/// A scene, and the PRC file of it.
struct RandomScene
{
    std::vector<std::vector<double>> meshes; ///< nine numbers a triangle
    std::vector<PictureRecord> pictures;     ///< by material
    std::vector<double> opacities;           ///< by material
    std::vector<NodeRecord> nodes;           ///< in depth-first order
};

RandomScene MakeScene(Random& random)
{
    RandomScene scene;
    for (std::size_t mesh = 0; mesh < 5; ++mesh) {
        scene.meshes.emplace_back(9 * (1 + random() % 20));
        std::ranges::generate(scene.meshes.back(), [&] { return AnyNumber(random); });
    }
    for (std::size_t material = 0; material < 4; ++material) {
        PictureRecord picture;
        picture.width = 1 + static_cast<std::uint32_t>(random() % 9);
        picture.height = 1 + static_cast<std::uint32_t>(random() % 9);
        picture.components = 3 + static_cast<std::uint32_t>(material % 2);
        picture.pixels.resize(std::size_t{picture.width} * picture.height * picture.components);
        std::ranges::generate(picture.pixels, [&] { return static_cast<std::uint8_t>(random()); });
        scene.pictures.push_back(std::move(picture));
        scene.opacities.push_back(material < 2 ? 1.0 : 0.25);
    }
    const std::size_t count = 40 + random() % 400;
    std::vector<std::size_t> path; // chains, some of them deep, with twigs
    for (std::size_t number = 0; number < count; ++number) {
        NodeRecord node;
        node.name = Names[random() % std::size(Names)];
        for (std::size_t up = random() % 8 == 0 ? random() % path.size() : 0; up > 0; --up)
            path.pop_back();
        node.parent = path.empty() ? 0 : path.back();
        path.push_back(number);
        if (random() % 3 != 0) {
            for (std::size_t i = 0; i < 12; ++i)
                node.matrix[i] = AnyNumber(random);
        }
        if (number > 0 && random() % 2 == 0)
            node.mesh = random() % scene.meshes.size();
        node.material = static_cast<std::uint32_t>(node.mesh % scene.pictures.size());
        scene.nodes.push_back(std::move(node));
    }
    return scene;
}

void AddMeshes(prc::oPRCFile& file, const RandomScene& scene)
{
    for (const std::vector<double>& coordinates : scene.meshes) {
        auto* tess = new prc::PRC3DTess;
        tess->coordinates = coordinates;
        tess->textureCoordinates = {0.0, 0.0, 1.0, 0.25};
        auto* face = new prc::PRCTessFace;
        face->usedEntitiesFlag = prc::UsedEntities::texturedTriangles;
        face->numberOfTextureCoordinateIndexes = 1;
        face->sizesTriangulated = {static_cast<std::uint32_t>(coordinates.size() / 9)};
        for (std::uint32_t point = 0; point < coordinates.size(); point += 3)
            tess->triangulatedIndex.insert(tess->triangulatedIndex.end(), {point % 2 * 2, point});
        tess->addTessFace(face);
        file.add3DTess(tess, 0);
    }
}

std::vector<std::uint8_t> WritePrc(const RandomScene& scene)
{
    std::vector<std::uint8_t> bytes;
    prc::oPRCFile file(bytes, 1.0, 1);
    for (std::size_t i = 0; i < scene.pictures.size(); ++i) {
        const PictureRecord& picture = scene.pictures[i];
        prc::PRCmaterial material;
        material.diffuse = {0.25 * static_cast<double>(i), 1.0, 0.5, scene.opacities[i]};
        material.alpha = scene.opacities[i];
        material.pictureData = picture.pixels.data();
        material.pictureFormat = picture.components == 4 ? prc::PRCpictureFormat::Rgba : prc::PRCpictureFormat::Rgb;
        material.pictureWidth = picture.width;
        material.pictureHeight = picture.height;
        material.pictureSize = static_cast<std::uint32_t>(picture.pixels.size());
        file.addMaterial(material);
    }
    AddMeshes(file, scene);
    std::vector<std::size_t> open;
    for (std::size_t number = 0; number < scene.nodes.size(); ++number) {
        const NodeRecord& node = scene.nodes[number];
        while (!open.empty() && open.back() != node.parent) {
            file.endgroup();
            open.pop_back();
        }
        const bool isPlain = node.matrix == prc::identityMatrix;
        file.begingroup(node.name.c_str(), nullptr, isPlain ? nullptr : node.matrix.data());
        open.push_back(number);
        if (node.mesh != SIZE_MAX)
            file.useMesh(static_cast<std::uint32_t>(node.mesh), node.material, nullptr);
    }
    for (; !open.empty(); open.pop_back())
        file.endgroup();
    EXPECT_TRUE(file.finish());
    return bytes;
}

MeshScene Convert(const std::vector<std::uint8_t>& file)
{
    const prc::Model::PRCModel model = prc::readPRC(file);
    EXPECT_FALSE(model.hasErrors());
    Import::ImportReport report;
    MeshScene scene = BuildMeshScene(model, prc::Model::placeScene(model), report);
    EXPECT_THAT(report.Warnings(), testing::IsEmpty());
    ApplyUnits(scene, {.scale = 1.0});
    return scene;
}

tinygltf::Model ReadGlb(const std::string& file)
{
    tinygltf::TinyGLTF reader;
    reader.SetImageLoader([](auto*, auto...) { return true; }, nullptr);
    tinygltf::Model model;
    std::string error;
    std::string warning;
    EXPECT_TRUE(reader.LoadBinaryFromFile(&model, &error, &warning, file)) << error;
    EXPECT_EQ(error + warning, "");
    return model;
}

const unsigned char* BytesOf(const tinygltf::Model& model, int view)
{
    const tinygltf::BufferView& found = model.bufferViews.at(static_cast<std::size_t>(view));
    return model.buffers.at(0).data.data() + found.byteOffset;
}

/// The corners of a mesh's triangles, three numbers each.
std::vector<float> CornersOf(const tinygltf::Model& model, const tinygltf::Primitive& primitive)
{
    const tinygltf::Accessor& indices = model.accessors.at(static_cast<std::size_t>(primitive.indices));
    const tinygltf::Accessor& points =
        model.accessors.at(static_cast<std::size_t>(primitive.attributes.at("POSITION")));
    EXPECT_EQ(indices.componentType, TINYGLTF_COMPONENT_TYPE_UNSIGNED_SHORT);
    std::vector<float> corners(3 * indices.count);
    for (std::size_t i = 0; i < indices.count; ++i) {
        std::uint16_t point = 0;
        std::memcpy(&point, BytesOf(model, indices.bufferView) + 2 * i, 2);
        std::memcpy(&corners[3 * i], BytesOf(model, points.bufferView) + std::size_t{12} * point, 12);
    }
    return corners;
}

/// Compares the picture of a material, pixel by pixel.
void ExpectPicture(const tinygltf::Model& model, const tinygltf::Material& material, const PictureRecord& expected)
{
    const int texture = material.pbrMetallicRoughness.baseColorTexture.index;
    const int image = model.textures.at(static_cast<std::size_t>(texture)).source;
    const int view = model.images.at(static_cast<std::size_t>(image)).bufferView;
    std::vector<BYTE> png(model.bufferViews.at(static_cast<std::size_t>(view)).byteLength);
    std::memcpy(png.data(), BytesOf(model, view), png.size());
    FIMEMORY* const memory = FreeImage_OpenMemory(png.data(), static_cast<DWORD>(png.size()));
    FIBITMAP* const bitmap = FreeImage_LoadFromMemory(FIF_PNG, memory);
    ASSERT_NE(bitmap, nullptr);
    ASSERT_EQ(FreeImage_GetWidth(bitmap), expected.width);
    ASSERT_EQ(FreeImage_GetHeight(bitmap), expected.height);
    ASSERT_EQ(FreeImage_GetBPP(bitmap), 8 * expected.components);
    const std::uint8_t* pixel = expected.pixels.data();
    for (unsigned row = 0; row < expected.height; ++row) {
        const BYTE* line = FreeImage_GetScanLine(bitmap, static_cast<int>(row));
        for (unsigned column = 0; column < expected.width; ++column) {
            EXPECT_EQ(line[FI_RGBA_RED], pixel[0]);
            EXPECT_EQ(line[FI_RGBA_BLUE], pixel[2]);
            EXPECT_EQ(line[expected.components - 1], expected.components == 4 ? pixel[3] : line[FI_RGBA_RED]);
            line += expected.components;
            pixel += expected.components;
        }
    }
    FreeImage_Unload(bitmap);
    FreeImage_CloseMemory(memory);
}

void ExpectNode(const tinygltf::Model& model, std::size_t number, const RandomScene& scene)
{
    const NodeRecord& expected = scene.nodes[number];
    const tinygltf::Node& node = model.nodes[number];
    EXPECT_EQ(node.name, expected.name);
    prc::Matrix matrix = prc::identityMatrix;
    for (std::size_t i = 0; i < node.matrix.size(); ++i)
        matrix[4 * (i % 4) + i / 4] = node.matrix[i];
    EXPECT_EQ(matrix, expected.matrix);
    if (number > 0) {
        EXPECT_THAT(model.nodes[expected.parent].children, testing::Contains(static_cast<int>(number)));
    }
    ASSERT_EQ(node.mesh >= 0, expected.mesh != SIZE_MAX);
    if (node.mesh < 0)
        return;
    const tinygltf::Mesh& mesh = model.meshes.at(static_cast<std::size_t>(node.mesh));
    ASSERT_EQ(mesh.primitives.size(), 1U);
    const std::vector<double>& coordinates = scene.meshes[expected.mesh];
    EXPECT_EQ(CornersOf(model, mesh.primitives[0]), std::vector<float>(coordinates.begin(), coordinates.end()));

    const tinygltf::Material& material = model.materials.at(static_cast<std::size_t>(mesh.primitives[0].material));
    const bool isTransparent = scene.opacities[expected.material] < 1.0 || expected.material % 2 == 1;
    EXPECT_EQ(material.pbrMetallicRoughness.baseColorFactor[3], scene.opacities[expected.material]);
    EXPECT_EQ(material.alphaMode, isTransparent ? "BLEND" : "OPAQUE");
    ExpectPicture(model, material, scene.pictures[expected.material]);
}

TEST(ConvertRoundTrip, GlbHoldsTheSceneToTheLastBitOfSinglePrecision)
{
    const TemporaryFolder folder;
    for (std::uint64_t seed = 1; seed <= 12; ++seed) {
        SCOPED_TRACE(seed);
        Random random(seed);
        const RandomScene scene = MakeScene(random);
        const MeshScene converted = Convert(WritePrc(scene));
        WriteGltf(converted, GltfForm::Binary, folder / "out.glb");
        const tinygltf::Model model = ReadGlb(folder / "out.glb");
        ASSERT_EQ(model.nodes.size(), scene.nodes.size());
        EXPECT_EQ(model.scenes.at(0).nodes, std::vector<int>{0});
        EXPECT_LE(model.meshes.size(), scene.meshes.size());
        for (std::size_t number = 0; number < scene.nodes.size() && !testing::Test::HasFailure(); ++number)
            ExpectNode(model, number, scene);
    }
}

TEST(ConvertRoundTrip, TrianglesBeyondSinglePrecisionAreLeftOutAndTold)
{
    RandomScene scene;
    scene.meshes = {{0, 0, 0, 1, 0, 0, 0, 2, 0, 0, 0, 0, 1e39, 0, 0, 0, 3, 0}};
    scene.pictures = {{1, 1, 3, {1, 2, 3}}};
    scene.opacities = {1.0};
    scene.nodes = {{.name = "top"}, {.name = "mirrored", .matrix = {-2, 0, 0, 7, 0, 3, 0, 0, 0, 0, 5, 0, 0, 0, 0, 1}}};
    scene.nodes[1].mesh = 0;
    const prc::Model::PRCModel model = prc::readPRC(WritePrc(scene));
    Import::ImportReport report;
    const MeshScene converted = BuildMeshScene(model, prc::Model::placeScene(model), report);
    EXPECT_THAT(report.Warnings(), testing::ElementsAre("left out: 1 triangle beyond the range of single precision"));

    // What stands in a mirrored place is turned round, so that it is seen from the same side.
    const TemporaryFolder folder;
    EXPECT_THAT(WriteFlat(converted, FlatFormat::Stl, folder / "out.stl", report), testing::IsEmpty());
    std::ifstream stream(folder / "out.stl", std::ios::binary);
    std::vector<char> stl((std::istreambuf_iterator<char>(stream)), {});
    ASSERT_EQ(stl.size(), 84U + 50U);
    std::array<float, 9> corners{};
    std::memcpy(corners.data(), stl.data() + 96, sizeof corners);
    EXPECT_THAT(corners, testing::ElementsAre(7, 0, 0, 7, 6, 0, 5, 0, 0));
}

} // namespace
} // namespace Orvel::Convert
