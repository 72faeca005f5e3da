#include "platform/prcfile/PRCPicture.h"
#include "platform/prcfile/PRCReader.h"
#include "platform/prcfile/PRCScene.h"
#include "platform/prcfile/oPRCFile.h"
#include "tests/prcfile/TestMeshes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <map>
#include <optional>
#include <random>
#include <set>

/// What is written comes back: random scenes go through the writer and the reader.
namespace
{

namespace Model = prc::Model;
using prc::nullIndex;
using testing::IsEmpty;
using testing::SizeIs;

using Random = std::mt19937_64;

/// Positive, negative, huge, tiny, subnormal, repeated, round and random numbers.
double AnyNumber(Random& random)
{
    constexpr double special[] = {0.0, 1.0, -1.0, 1e300, -1e-300, 5e-324, -2.2250738585072014e-308, 0.1, 1165.0, 360.0};
    switch (random() % 4) {
    case 0:
        return special[random() % std::size(special)];
    case 1:
        return static_cast<double>(static_cast<float>(random() % 1000000) / 997.0F);
    case 2:
        return static_cast<double>(random() % 2000) - 1000.0;
    default: {
        const double number = std::bit_cast<double>(random());
        return std::isfinite(number) ? number : 7.25;
    }
    }
}

struct MeshRecord
{
    std::vector<double> coordinates, normals, textures;
    std::vector<std::uint32_t> indices;
};

struct Placement
{
    std::uint32_t mesh = 0;
    std::uint32_t style = 0;
    std::optional<prc::Matrix> matrix;
};

struct Group
{
    std::optional<std::string> name;
    std::optional<prc::Matrix> matrix;
    std::vector<Placement> placements;
    std::vector<Group> groups;
};

struct Scene
{
    std::vector<MeshRecord> meshes;
    std::vector<std::vector<std::uint8_t>> pictures;        ///< by material; empty without one.
    std::vector<std::array<std::uint32_t, 3>> pictureForms; ///< width, height, components.
    Group root;
};

class SceneMaker
{
public:
    explicit SceneMaker(std::uint64_t seed)
        : random(seed)
    {}

    Scene Make()
    {
        Scene scene;
        for (std::uint64_t mesh = 0, count = 1 + random() % 6; mesh < count; ++mesh)
            scene.meshes.push_back(MakeMesh());
        for (std::uint64_t material = 0, count = 1 + random() % 5; material < count; ++material)
            AddPicture(scene);
        scene.root = MakeGroup(scene, 0);
        return scene;
    }

private:
    std::uint32_t Below(std::size_t limit) { return static_cast<std::uint32_t>(random() % limit); }

    std::vector<double> Numbers(std::size_t count)
    {
        std::vector<double> numbers(count);
        for (double& number : numbers)
            number = AnyNumber(random);
        return numbers;
    }

    MeshRecord MakeMesh()
    {
        MeshRecord mesh;
        mesh.coordinates = Numbers(3 * (1 + random() % 300));
        if (random() % 2 == 0)
            mesh.normals = Numbers(3 * (1 + random() % 100));
        if (random() % 2 == 0)
            mesh.textures = Numbers(2 * (1 + random() % 100));
        for (std::uint64_t corner = 0, count = 3 * (random() % 200); corner < count; ++corner) {
            if (!mesh.normals.empty())
                mesh.indices.push_back(3 * Below(mesh.normals.size() / 3));
            if (!mesh.textures.empty())
                mesh.indices.push_back(2 * Below(mesh.textures.size() / 2));
            mesh.indices.push_back(3 * Below(mesh.coordinates.size() / 3));
        }
        return mesh;
    }

    void AddPicture(Scene& scene)
    {
        const std::array<std::uint32_t, 3> form = {1 + Below(9), 1 + Below(9), 3 + Below(2)};
        std::vector<std::uint8_t> pixels(random() % 2 == 0 ? 0 : form[0] * form[1] * form[2]);
        for (std::uint8_t& byte : pixels)
            byte = static_cast<std::uint8_t>(random());
        scene.pictures.push_back(std::move(pixels));
        scene.pictureForms.push_back(form);
    }

    std::optional<prc::Matrix> MakeMatrix()
    {
        if (random() % 3 == 0)
            return std::nullopt;
        prc::Matrix matrix = prc::identityMatrix;
        for (std::size_t entry = 0; entry < 12; ++entry)
            matrix[entry] = static_cast<double>(Below(8192)) / 64.0 - 60.0; // products stay exact
        return matrix;
    }

    std::optional<std::string> MakeName()
    {
        constexpr const char* names[] = {"",
                                         "box",
                                         "Gr\xC3\xBC\xC3\x9F",
                                         "\xD0\x9A\xD1\x83\xD0\xB1",
                                         "\xE7\xAB\x8B\xE6\x96\xB9",
                                         "\xF0\x9F\x8F\xA0",
                                         "\xD9\x85\xD9\x83"};
        if (random() % 4 == 0)
            return std::nullopt;
        return std::string(names[random() % std::size(names)]) + std::to_string(random() % 3);
    }

    Group MakeGroup(const Scene& scene, unsigned depth)
    {
        Group group;
        group.name = MakeName();
        group.matrix = MakeMatrix();
        for (std::uint64_t number = 0, count = random() % 5; number < count; ++number)
            group.placements.push_back({Below(scene.meshes.size()), Below(scene.pictures.size()), MakeMatrix()});
        const std::uint64_t groups = depth < 5 ? random() % 4 : depth < 60 ? random() % 2 : 0;
        for (std::uint64_t number = 0; number < groups; ++number)
            group.groups.push_back(MakeGroup(scene, depth + 1));
        return group;
    }

    Random random;
};

void WriteGroup(prc::oPRCFile& file, const Group& group)
{
    file.begingroup(group.name ? group.name->c_str() : nullptr, nullptr, group.matrix ? group.matrix->data() : nullptr);
    for (const Placement& placement : group.placements)
        file.useMesh(placement.mesh, placement.style, placement.matrix ? placement.matrix->data() : nullptr);
    for (const Group& inner : group.groups)
        WriteGroup(file, inner);
    file.endgroup();
}

std::vector<std::uint8_t> Write(const Scene& scene)
{
    std::vector<std::uint8_t> bytes;
    prc::oPRCFile file(bytes, 10.0, 1);
    for (unsigned material = 0; material < scene.pictures.size(); ++material) {
        prc::PRCmaterial record = prc::Test::NumberedMaterial(material);
        if (!scene.pictures[material].empty()) {
            record.pictureData = scene.pictures[material].data();
            record.pictureSize = static_cast<std::uint32_t>(scene.pictures[material].size());
            record.pictureWidth = scene.pictureForms[material][0];
            record.pictureHeight = scene.pictureForms[material][1];
            record.pictureFormat = static_cast<prc::PRCpictureFormat>(scene.pictureForms[material][2] - 1);
        }
        file.addMaterial(record);
    }
    for (const MeshRecord& mesh : scene.meshes) {
        auto tess = std::make_unique<prc::PRC3DTess>();
        tess->coordinates = mesh.coordinates;
        tess->normalCoordinates = mesh.normals;
        tess->textureCoordinates = mesh.textures;
        tess->triangulatedIndex = mesh.indices;
        auto* face = new prc::PRCTessFace;
        const bool textured = !mesh.textures.empty();
        face->usedEntitiesFlag = textured ? prc::UsedEntities::texturedTriangles : prc::UsedEntities::triangles;
        face->numberOfTextureCoordinateIndexes = textured ? 1 : 0;
        const std::size_t each = 3 * (1U + (mesh.normals.empty() ? 0U : 1U) + (textured ? 1U : 0U));
        face->sizesTriangulated = {static_cast<std::uint32_t>(mesh.indices.size() / each)};
        tess->addTessFace(face);
        prc::Test::Add(file, std::move(tess));
    }
    WriteGroup(file, scene.root);
    file.finish();
    return bytes;
}

/// What a scene looks like in the end: each placed mesh with its style and world transform, in any order.
using Placed = std::multimap<std::pair<std::uint32_t, std::uint32_t>, prc::Matrix>;

void Collect(const Group& group, const prc::Matrix& parent, Placed& placed)
{
    const prc::Matrix world = group.matrix ? Model::multiplied(parent, *group.matrix) : parent;
    for (const Placement& placement : group.placements)
        placed.emplace(std::pair(placement.mesh, placement.style),
                       placement.matrix ? Model::multiplied(world, *placement.matrix) : world);
    for (const Group& inner : group.groups)
        Collect(inner, world, placed);
}

void CollectNames(const Group& group, std::multiset<std::string>& names)
{
    if (group.name)
        names.insert(*group.name);
    for (const Group& inner : group.groups)
        CollectNames(inner, names);
}

/// Makes two lists of placements comparable: those of the same mesh and style in the order of their matrices.
std::map<std::pair<std::uint32_t, std::uint32_t>, std::vector<prc::Matrix>> Sorted(const Placed& placed)
{
    std::map<std::pair<std::uint32_t, std::uint32_t>, std::vector<prc::Matrix>> sorted;
    for (const auto& [key, matrix] : placed)
        sorted[key].push_back(matrix);
    for (auto& [key, matrices] : sorted)
        std::ranges::sort(matrices);
    return sorted;
}

void ExpectSamePlacements(const Model::PRCModel& model, const Scene& scene)
{
    Placed want;
    Collect(scene.root, prc::identityMatrix, want);
    const Model::PlacedScene placedScene = Model::placeScene(model);
    EXPECT_THAT(placedScene.notes, IsEmpty());
    Placed got;
    for (const Model::PlacedItem& item : placedScene.items) {
        const Model::RepresentationItem& stored = model.structures[0].parts[item.part].items[item.item];
        got.emplace(std::pair(stored.tessellation, item.style.style), item.world);
        EXPECT_TRUE(item.isShown);
    }
    EXPECT_EQ(Sorted(got), Sorted(want));
    std::multiset<std::string> wantNames, gotNames;
    CollectNames(scene.root, wantNames);
    for (const Model::PlacedOccurrence& placed : placedScene.occurrences)
        if (const Model::Name& name = model.structures[0].occurrences[placed.occurrence].name)
            gotNames.insert(*name);
    EXPECT_EQ(gotNames, wantNames);
}

void ExpectSameMeshes(const Model::FileStructure& structure, const Scene& scene)
{
    const auto sameBits = [](const std::vector<double>& got, const std::vector<double>& want) {
        return got.size() == want.size() && std::ranges::equal(got, want, [](double a, double b) {
                   return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b + 0.0);
               });
    };
    ASSERT_THAT(structure.tessellations, SizeIs(scene.meshes.size()));
    for (std::size_t mesh = 0; mesh < scene.meshes.size(); ++mesh) {
        const Model::Tessellation& got = structure.tessellations[mesh];
        EXPECT_TRUE(sameBits(got.coordinates, scene.meshes[mesh].coordinates)) << mesh;
        EXPECT_TRUE(sameBits(got.normalCoordinates, scene.meshes[mesh].normals)) << mesh;
        EXPECT_TRUE(sameBits(got.textureCoordinates, scene.meshes[mesh].textures)) << mesh;
        EXPECT_EQ(got.triangulatedIndices, scene.meshes[mesh].indices) << mesh;
        EXPECT_TRUE(got.faces.at(0).isUsable) << mesh;
    }
}

void ExpectSamePictures(const Model::FileStructure& structure, const Scene& scene)
{
    for (std::uint32_t material = 0; material < scene.pictures.size(); ++material) {
        const Model::Appearance appearance = Model::appearanceOf(structure.globals, material);
        ASSERT_NE(appearance.material, nullptr);
        ASSERT_EQ(appearance.texture != nullptr, !scene.pictures[material].empty());
        if (appearance.texture == nullptr)
            continue;
        const auto [width, height, components] = scene.pictureForms[material];
        const Model::DecodedPicture picture = Model::decodePicture(structure, appearance.texture->picture);
        EXPECT_EQ(picture.error, "");
        EXPECT_EQ(picture.size.width, width);
        EXPECT_EQ(Model::sizeOf(structure, appearance.texture->picture).height, height);
        std::vector<std::uint8_t> bottomUp;
        const std::size_t row = std::size_t{width} * components;
        for (std::size_t number = height; number-- > 0;)
            bottomUp.insert(bottomUp.end(), picture.pixels.data() + number * row,
                            picture.pixels.data() + (number + 1) * row);
        EXPECT_EQ(bottomUp, scene.pictures[material]) << "material " << material;
    }
}

TEST(RoundTrips, GiveRandomScenesBack)
{
    for (std::uint64_t seed = 1; seed <= 60; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        const Scene scene = SceneMaker(seed).Make();
        const Model::PRCModel model = prc::readPRC(Write(scene));
        for (const Model::Finding& finding : model.findings)
            ADD_FAILURE() << finding.message();
        ASSERT_THAT(model.structures, SizeIs(1));
        EXPECT_EQ(model.unitInMillimetres, 10.0);
        ExpectSameMeshes(model.structures[0], scene);
        ExpectSamePlacements(model, scene);
        ExpectSamePictures(model.structures[0], scene);
        if (HasFailure())
            return;
    }
}

TEST(RoundTrips, GiveThousandsOfInstancesBack)
{
    Scene scene = SceneMaker(3).Make();
    scene.root.placements.clear();
    for (unsigned number = 0; number < 5000; ++number) {
        prc::Matrix matrix = prc::identityMatrix;
        matrix[3] = number * 0.25;
        scene.root.placements.push_back({number % static_cast<std::uint32_t>(scene.meshes.size()), 0, matrix});
    }
    const Model::PRCModel model = prc::readPRC(Write(scene));
    EXPECT_THAT(model.findings, IsEmpty());
    EXPECT_THAT(model.structures[0].tessellations, SizeIs(scene.meshes.size()));
    ExpectSamePlacements(model, scene);
}

} // namespace
