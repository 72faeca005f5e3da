#include "platform/prcfile/PRCPicture.h"
#include "platform/prcfile/PRCReader.h"
#include "platform/prcfile/PRCScene.h"
#include "platform/prcfile/oPRCFile.h"
#include "tests/prcfile/TestMeshes.h"
#include "tests/support/PRCDecoder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <map>
#include <optional>
#include <random>
#include <set>

/// What is written comes back: random scenes go through the writer, the strict decoder and the reader.
namespace
{

namespace Model = prc::Model;
using prc::nullIndex;
using testing::IsEmpty;
using testing::SizeIs;

struct Picture
{
    std::array<std::uint32_t, 3> form{}; ///< width, height, components.
    std::vector<std::uint8_t> pixels;    ///< bottom row first; empty: a material without a picture.
};

/// Makes the calls for a random scene, and records what has to come back.
class RandomScene
{
public:
    explicit RandomScene(std::uint64_t seed)
        : random(seed)
    {
        for (std::uint64_t material = 0, count = 1 + random() % 5; material < count; ++material)
            AddMaterial();
        for (std::uint64_t mesh = 0, count = 1 + random() % 6; mesh < count; ++mesh)
            AddMesh();
        AddGroup(prc::identityMatrix, 0);
        file.finish();
    }

    /// Which mesh stands in which style at which places.
    using Placements = std::map<std::pair<std::uint32_t, std::uint32_t>, std::multiset<prc::Matrix>>;

    std::vector<std::uint8_t> bytes;
    std::vector<std::unique_ptr<prc::PRC3DTess>> meshes;
    std::vector<Picture> pictures; ///< by material.
    Placements placements;
    std::multiset<std::string> names;

private:
    std::uint32_t Below(std::size_t limit) { return static_cast<std::uint32_t>(random() % limit); }

    /// Positive, negative, huge, tiny, subnormal, repeated, round and random numbers.
    double AnyNumber()
    {
        constexpr double special[] = {0.0, -0.0, 1.0, 1e300, -1e-300, 5e-324, -2.2250738585072014e-308, 0.1, 1165.0};
        switch (random() % 4) {
        case 0:
            return special[random() % std::size(special)];
        case 1:
            return static_cast<double>(static_cast<float>(Below(1000000)) / 997.0F);
        case 2:
            return Below(2000) - 1000.0;
        default:
            const double number = std::bit_cast<double>(random());
            return std::isfinite(number) ? number : 7.25;
        }
    }

    void FillWithNumbers(std::vector<double>& numbers, std::size_t count)
    {
        numbers.resize(count);
        for (double& number : numbers)
            number = AnyNumber();
    }

    void AddMesh()
    {
        const bool normals = random() % 2 == 0;
        const bool texture = random() % 2 == 0;
        auto mesh = prc::Test::StripMesh({normals, texture});
        FillWithNumbers(mesh->coordinates, 3 * (1 + random() % 300));
        FillWithNumbers(mesh->normalCoordinates, normals ? 3 * (1 + random() % 100) : 0);
        FillWithNumbers(mesh->textureCoordinates, texture ? 2 * (1 + random() % 100) : 0);
        mesh->triangulatedIndex.clear();
        mesh->faceTessellation.clear();
        for (std::uint64_t face = 0, count = 1 + random() % 3; face < count; ++face)
            AddFace(*mesh, random() % 8 == 0 ? 0 : Below(100));
        auto& kept = meshes.emplace_back(std::make_unique<prc::PRC3DTess>());
        kept->coordinates = mesh->coordinates;
        kept->normalCoordinates = mesh->normalCoordinates;
        kept->textureCoordinates = mesh->textureCoordinates;
        kept->triangulatedIndex = mesh->triangulatedIndex;
        for (const auto& face : mesh->faceTessellation)
            kept->faceTessellation.push_back(std::make_unique<prc::PRCTessFace>(*face));
        prc::Test::Add(file, std::move(mesh));
    }

    void AddFace(prc::PRC3DTess& mesh, std::uint32_t triangles)
    {
        auto face = std::make_unique<prc::PRCTessFace>();
        const bool isTextured = !mesh.textureCoordinates.empty();
        face->usedEntitiesFlag = isTextured ? prc::UsedEntities::texturedTriangles : prc::UsedEntities::triangles;
        face->numberOfTextureCoordinateIndexes = isTextured ? 1 : 0;
        face->startTriangulated = static_cast<std::uint32_t>(mesh.triangulatedIndex.size());
        face->sizesTriangulated = {triangles};
        if (random() % 3 == 0)
            face->lineAttributes = {Below(pictures.size())};
        face->isRgba = random() % 2 == 0;
        face->rgbaVertices.resize(random() % 3 == 0 ? triangles * 3U * (face->isRgba ? 4U : 3U) : 0U);
        for (std::uint8_t& byte : face->rgbaVertices)
            byte = static_cast<std::uint8_t>(random() % 16 / 15); // neighbours are often equal
        for (std::uint32_t corner = 0; corner < 3 * triangles; ++corner) {
            if (!mesh.normalCoordinates.empty())
                mesh.triangulatedIndex.push_back(3 * Below(mesh.normalCoordinates.size() / 3));
            if (isTextured)
                mesh.triangulatedIndex.push_back(2 * Below(mesh.textureCoordinates.size() / 2));
            mesh.triangulatedIndex.push_back(3 * Below(mesh.coordinates.size() / 3));
        }
        mesh.faceTessellation.push_back(std::move(face));
    }

    void AddMaterial()
    {
        Picture& picture = pictures.emplace_back();
        picture.form = {1 + Below(9), 1 + Below(9), 3 + Below(2)};
        picture.pixels.resize(random() % 2 == 0 ? 0 : picture.form[0] * picture.form[1] * picture.form[2]);
        for (std::uint8_t& byte : picture.pixels)
            byte = static_cast<std::uint8_t>(random());
        prc::PRCmaterial record = prc::Test::NumberedMaterial(static_cast<unsigned>(pictures.size()));
        if (!picture.pixels.empty()) {
            record.pictureData = picture.pixels.data();
            record.pictureSize = static_cast<std::uint32_t>(picture.pixels.size());
            record.pictureWidth = picture.form[0];
            record.pictureHeight = picture.form[1];
            record.pictureFormat = static_cast<prc::PRCpictureFormat>(picture.form[2] - 1);
        }
        file.addMaterial(record);
    }

    static std::uint32_t OwnStyle(const prc::PRC3DTess& mesh)
    {
        for (const auto& face : mesh.faceTessellation) {
            if (face->lineAttributes.empty())
                return nullIndex;
        }
        return mesh.faceTessellation[0]->lineAttributes[0];
    }

    std::optional<prc::Matrix> AnyMatrix()
    {
        if (random() % 3 == 0)
            return std::nullopt;
        prc::Matrix matrix = prc::identityMatrix;
        for (std::size_t entry = 0; entry < 12; ++entry)
            matrix[entry] = Below(8192) / 64.0 - 60.0; // products stay exact
        return matrix;
    }

    void AddGroup(const prc::Matrix& outer, unsigned depth)
    {
        constexpr const char* scripts[] = {"",
                                           "box",
                                           "Gr\xC3\xBC\xC3\x9F",
                                           "\xD0\x9A\xD1\x83\xD0\xB1",
                                           "\xE7\xAB\x8B\xE6\x96\xB9",
                                           "\xF0\x9F\x8F\xA0",
                                           "\xD9\x85\xD9\x83"};
        const std::string name = scripts[random() % std::size(scripts)] + std::to_string(random() % 3);
        const bool isNamed = random() % 4 != 0;
        const std::optional<prc::Matrix> matrix = AnyMatrix();
        const prc::Matrix world = matrix ? Model::multiplied(outer, *matrix) : outer;
        file.begingroup(isNamed ? name.c_str() : nullptr, nullptr, matrix ? matrix->data() : nullptr);
        if (isNamed)
            names.insert(name);
        for (std::uint64_t number = 0, count = depth == 1 ? 300 : random() % 5; number < count; ++number) {
            const std::uint32_t mesh = Below(meshes.size());
            const std::uint32_t style = random() % 8 == 0 ? nullIndex : Below(pictures.size());
            const std::optional<prc::Matrix> place = AnyMatrix();
            file.useMesh(mesh, style, place ? place->data() : nullptr);
            // Where all faces have a style, the item names one as well, for viewers that look no further.
            const std::uint32_t faceStyle = OwnStyle(*meshes[mesh]);
            const bool facesWin = style != nullIndex && faceStyle != nullIndex;
            placements[{mesh, facesWin ? faceStyle : style}].insert(place ? Model::multiplied(world, *place) : world);
        }
        const std::uint64_t groups = depth < 5 ? random() % 4 : depth < 60 ? random() % 2 : 0;
        for (std::uint64_t number = 0; number < groups; ++number)
            AddGroup(world, depth + 1);
        file.endgroup();
    }

    std::mt19937_64 random;
    prc::oPRCFile file{bytes, 10.0, 1};
};

bool SameBits(const std::vector<double>& got, const std::vector<double>& want)
{
    return std::ranges::equal(got, want, [](double a, double b) { // negative zero comes back as zero
        return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b + 0.0);
    });
}

void ExpectSameMeshes(const Model::FileStructure& structure, const RandomScene& scene)
{
    ASSERT_THAT(structure.tessellations, SizeIs(scene.meshes.size()));
    for (std::size_t mesh = 0; mesh < scene.meshes.size(); ++mesh) {
        const Model::Tessellation& got = structure.tessellations[mesh];
        EXPECT_TRUE(SameBits(got.coordinates, scene.meshes[mesh]->coordinates)) << mesh;
        EXPECT_TRUE(SameBits(got.normalCoordinates, scene.meshes[mesh]->normalCoordinates)) << mesh;
        EXPECT_TRUE(SameBits(got.textureCoordinates, scene.meshes[mesh]->textureCoordinates)) << mesh;
        EXPECT_EQ(got.triangulatedIndices, scene.meshes[mesh]->triangulatedIndex) << mesh;
        ASSERT_THAT(got.faces, SizeIs(scene.meshes[mesh]->faceTessellation.size()));
        for (std::size_t number = 0; number < got.faces.size(); ++number) {
            const Model::Face& face = got.faces[number];
            const prc::PRCTessFace& want = *scene.meshes[mesh]->faceTessellation[number];
            EXPECT_TRUE(face.isUsable) << mesh;
            EXPECT_EQ(face.styles, want.lineAttributes) << mesh << " face " << number;
            EXPECT_EQ(face.startTriangulated, want.startTriangulated) << mesh << " face " << number;
            EXPECT_EQ(face.triangleCount, want.sizesTriangulated[0]) << mesh << " face " << number;
            EXPECT_EQ(face.vertexColours, want.rgbaVertices) << mesh << " face " << number;
        }
    }
}

void ExpectSamePictures(const Model::FileStructure& structure, const RandomScene& scene)
{
    for (std::uint32_t material = 0; material < scene.pictures.size(); ++material) {
        const Model::Appearance appearance = Model::appearanceOf(structure.globals, material);
        const auto& [form, pixels] = scene.pictures[material];
        ASSERT_NE(appearance.material, nullptr);
        ASSERT_EQ(appearance.texture != nullptr, !pixels.empty());
        if (appearance.texture == nullptr)
            continue;
        const Model::DecodedPicture picture = Model::decodePicture(structure, appearance.texture->picture);
        EXPECT_EQ((std::array{picture.size.width, picture.size.height, picture.components}), form);
        std::vector<std::uint8_t> bottomUp;
        const std::size_t row = std::size_t{form[0]} * form[2];
        for (std::size_t number = form[1]; number-- > 0;)
            bottomUp.insert(bottomUp.end(), picture.pixels.data() + number * row,
                            picture.pixels.data() + (number + 1) * row);
        EXPECT_EQ(bottomUp, pixels) << "material " << material;
    }
}

TEST(RoundTrips, GiveRandomScenesBack)
{
    for (std::uint64_t seed = 1; seed <= 50; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        const RandomScene scene(seed);
        EXPECT_NO_THROW(static_cast<void>(Orvel::Test::DecodePRC(scene.bytes)));
        const Model::PRCModel model = prc::readPRC(scene.bytes);
        EXPECT_THAT(model.findings, IsEmpty());
        EXPECT_EQ(model.unitInMillimetres, 10.0);
        ASSERT_THAT(model.structures, SizeIs(1));
        ExpectSameMeshes(model.structures[0], scene);
        ExpectSamePictures(model.structures[0], scene);

        const Model::PlacedScene placed = Model::placeScene(model);
        EXPECT_THAT(placed.notes, IsEmpty());
        RandomScene::Placements placements;
        for (const Model::PlacedItem& item : placed.items) {
            EXPECT_TRUE(item.isShown);
            const std::uint32_t mesh = model.structures[0].parts[item.part].items[item.item].tessellation;
            placements[{mesh, item.style.style}].insert(item.world);
        }
        EXPECT_EQ(placements, scene.placements);
        std::multiset<std::string> names;
        for (const Model::PlacedOccurrence& occurrence : placed.occurrences)
            if (const Model::Name& name = model.structures[0].occurrences[occurrence.occurrence].name)
                names.insert(*name);
        EXPECT_EQ(names, scene.names);
        if (HasFailure())
            return;
    }
}

} // namespace
