#include "platform/prcfile/FileLayout.h"
#include "platform/prcfile/oPRCFile.h"
#include "tests/prcfile/TestMeshes.h"
#include "tests/support/PRCDecoder.h"
#include "tests/support/PRCPlacement.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <sys/resource.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <limits>
#include <sstream>
#include <stdexcept>
#include <system_error>

namespace
{

using Orvel::Test::DecodePRC;
using Orvel::Test::Material;
using Orvel::Test::Part;
using Orvel::Test::PRCContent;
using Orvel::Test::ProductOccurrence;
using prc::nullIndex;
using prc::Test::Add;
using prc::Test::NumberedMaterial;
using prc::Test::QuarterTurn;
using prc::Test::StripMesh;

constexpr double infinity = std::numeric_limits<double>::infinity();

class PRCFile : public testing::Test
{
protected:
    void Group(const char* name, const double* matrix = nullptr) { file.begingroup(name, nullptr, matrix); }

    PRCContent Finish()
    {
        EXPECT_TRUE(file.finish());
        return DecodePRC(bytes);
    }

    std::vector<std::uint8_t> bytes;
    prc::oPRCFile file{bytes, 25.4, 1};
};

using Groups = PRCFile;
using Materials = PRCFile;
using Placements = PRCFile;
using Outputs = PRCFile;

TEST_F(Groups, CopyTheirNamesAndMatrices)
{
    const std::vector<double> turn = QuarterTurn();
    std::string name = "Gr\xC3\xBC\xC3\x9F \xF0\x9F\x8F\xA0";
    std::vector<double> matrix = turn;
    Group(name.c_str(), matrix.data());
    name.assign(name.size(), 'x');
    std::ranges::fill(matrix, -infinity);
    file.endgroup();

    const PRCContent content = Finish();
    const ProductOccurrence& root = content.occurrences.at(content.root);
    EXPECT_EQ(root.name, "Gr\xC3\xBC\xC3\x9F \xF0\x9F\x8F\xA0");
    EXPECT_EQ(content.modelName, root.name);
    EXPECT_EQ(content.unitInMillimetres, 25.4);
    ASSERT_TRUE(root.location);
    EXPECT_TRUE(std::ranges::equal(*root.location, turn));
    EXPECT_EQ(Orvel::Test::TransformPoint(*root.location, {1, 0, 0}), (Orvel::Test::Vector3{1, 4, 3}));
    EXPECT_TRUE(content.parts.empty()) << "an empty group has no part";
}

TEST_F(Groups, HangUnderASceneWhenThereIsNotExactlyOneAtTheTop)
{
    const std::pair<unsigned, bool> cases[] = {{0, false}, {2, false}, {1, true}}; // groups, a mesh beside them
    for (const auto& [groups, hasMesh] : cases) {
        std::vector<std::uint8_t> target;
        prc::oPRCFile several(target, 1.0, 1);
        for (unsigned group = 0; group < groups; ++group) {
            several.begingroup("group", nullptr, nullptr);
            several.endgroup();
        }
        if (hasMesh)
            several.useMesh(Add(several, StripMesh()), 0, nullptr);
        several.finish();
        const PRCContent content = DecodePRC(target);
        const ProductOccurrence& root = content.occurrences.at(content.root);
        EXPECT_EQ(root.name, "Scene") << groups;
        EXPECT_EQ(content.modelName, "Scene") << groups;
        EXPECT_EQ(root.children.size(), groups);
        EXPECT_EQ(root.part.has_value(), hasMesh);
        EXPECT_EQ(root.location, std::nullopt);
        EXPECT_EQ(content.styles.size(), 1U) << "files without any show nothing";
    }
}

TEST_F(Groups, NestDeeplyWithoutRecursion)
{
    constexpr int depth = 20000;
    for (int level = 0; level < depth; ++level)
        Group("level");
    for (int level = 0; level < depth; ++level)
        file.endgroup();
    ASSERT_TRUE(file.finish());
    EXPECT_FALSE(bytes.empty());
}

TEST_F(Groups, AreBalancedByTheCaller)
{
    EXPECT_THROW(file.endgroup(), std::logic_error);
    Group("open");
    EXPECT_THROW(file.finish(), std::logic_error);
    EXPECT_TRUE(bytes.empty());
    file.endgroup();
    EXPECT_EQ(Finish().occurrences.size(), 1U);

    EXPECT_FALSE(file.finish());
    EXPECT_THROW(Group("late"), std::logic_error);
    EXPECT_THROW(file.addMaterial({}), std::logic_error);
}

TEST_F(Placements, RefuseWhatDoesNotExist)
{
    const std::uint32_t mesh = Add(file, StripMesh());
    std::vector<double> matrix = QuarterTurn();
    matrix[7] = infinity;
    EXPECT_THROW(file.useMesh(1, 0, nullptr), std::out_of_range);
    EXPECT_THROW(file.useMesh(mesh, 1, nullptr), std::out_of_range);
    EXPECT_THROW(file.useMesh(mesh, 0, matrix.data()), std::invalid_argument);
    EXPECT_THROW(Group("bad", matrix.data()), std::invalid_argument);
    EXPECT_NO_THROW(file.useMesh(mesh, 0, nullptr));      // a default style stands in for missing materials
    EXPECT_NO_THROW(file.useMesh(nullIndex, 0, nullptr)); // a mesh that is none is left out
    const PRCContent content = Finish();
    EXPECT_EQ(content.parts.size(), 1U);
    ASSERT_EQ(content.parts[0].items.size(), 1U);
    EXPECT_EQ(content.parts[0].items[0].style, 0U);
    EXPECT_EQ(content.styles.size(), 1U);
}

TEST_F(Placements, BoxesAreThoseOfThePointsAndNeverFlat)
{
    Group("group");
    const std::uint32_t solid = Add(file, StripMesh());
    auto flat = StripMesh();
    for (std::size_t y = 1; y < flat->coordinates.size(); y += 3)
        flat->coordinates[y] = 1000.0;
    auto point = StripMesh();
    std::ranges::fill(point->coordinates, 0.0);
    file.useMesh(solid, 0, nullptr);
    const std::vector<double> turn = QuarterTurn();
    file.useMesh(Add(file, std::move(flat)), 0, turn.data());
    file.useMesh(Add(file, std::move(point)), 0, turn.data());
    file.endgroup();

    const PRCContent content = Finish();
    ASSERT_EQ(content.parts.size(), 3U);
    const Part& flatPart = content.parts[0];
    const Part& pointPart = content.parts[1];
    const Part& solidPart = content.parts[2];
    EXPECT_EQ(solidPart.minimum, (Orvel::Test::Vector3{0.25, 7.0, -3.25}));
    EXPECT_EQ(solidPart.maximum, (Orvel::Test::Vector3{2.5, 12.0, 13.0}));
    EXPECT_EQ(flatPart.minimum[0], 0.25); // not turned with the placement
    EXPECT_LT(flatPart.minimum[1], 1000.0);
    EXPECT_GT(flatPart.maximum[1], 1000.0);
    EXPECT_NEAR(flatPart.maximum[1], 1000.0, 0.01);
    for (std::size_t axis = 0; axis < 3; ++axis)
        EXPECT_GT(pointPart.maximum[axis], pointPart.minimum[axis]) << axis;
}

TEST_F(Materials, HaveStylesOfTheirOwnSharedColoursAndNumbersWithinTheirLimits)
{
    prc::PRCmaterial material = NumberedMaterial(7);
    material.alpha = 0.25;
    EXPECT_EQ(file.addMaterial(material), 0U);
    EXPECT_EQ(file.addMaterial(material), 1U);
    material.ambient.alpha = -0.5;
    material.specular.alpha = 1.5;
    material.diffuse.red = 3.0;
    material.alpha = 2.0;
    EXPECT_EQ(file.addMaterial(material), 2U);

    const PRCContent content = Finish();
    ASSERT_EQ(content.styles.size(), 3U);
    ASSERT_EQ(content.materials.size(), 3U);
    EXPECT_EQ(content.styles[1].material, 1U);
    EXPECT_EQ(content.styles[0].transparency, 64U); // 63.75
    EXPECT_EQ(content.styles[2].transparency, std::nullopt);
    const auto& stored = std::get<Material>(content.materials[0]);
    EXPECT_EQ(stored.emissive, (Orvel::Test::Vector3{0.07, 0.08, 0.09 + 0.07}));
    EXPECT_EQ(stored.emissiveAlpha, 0.97);
    const auto& clamped = std::get<Material>(content.materials[2]);
    EXPECT_EQ(clamped.ambientAlpha, 0.0);
    EXPECT_EQ(clamped.specularAlpha, 1.0);
    EXPECT_EQ(clamped.diffuse[0], 1.0);
    EXPECT_EQ(content.colours.size(), 5U);
}

/// A picture of 2 x 3 pixels in which every byte differs.
class Pixels
{
public:
    explicit Pixels(std::uint8_t first, prc::PRCpictureFormat format = prc::PRCpictureFormat::Rgb)
        : bytes(6U * (format == prc::PRCpictureFormat::Rgba ? 4U : 3U))
    {
        for (std::size_t k = 0; k < bytes.size(); ++k)
            bytes[k] = static_cast<std::uint8_t>(first + 7 * k);
        material = NumberedMaterial(1);
        material.pictureData = bytes.data();
        material.pictureFormat = format;
        material.pictureWidth = 2;
        material.pictureHeight = 3;
        material.pictureSize = static_cast<std::uint32_t>(bytes.size());
        material.pictureRepeat = true;
    }

    std::vector<std::uint8_t> bytes;
    prc::PRCmaterial material;
};

TEST_F(Materials, PicturesAreCopiedAndStoredOnceWithTheirRowsTurnedOver)
{
    Pixels rgb(1);
    file.addMaterial(rgb.material);
    const std::vector<std::uint8_t> rgbBytes = rgb.bytes;
    std::ranges::fill(rgb.bytes, std::uint8_t{0xEE});
    file.addMaterial(Pixels(100, prc::PRCpictureFormat::Rgba).material);
    Pixels again(1);
    file.addMaterial(again.material);
    std::swap(again.material.pictureWidth, again.material.pictureHeight); // the same bytes, another picture
    again.material.pictureRepeat = false;
    again.material.pictureReplace = true;
    file.addMaterial(again.material);

    const PRCContent content = Finish();
    ASSERT_EQ(content.storedFiles.size(), 3U);
    for (std::uint32_t row = 0; row < 3; ++row) {
        for (std::uint32_t column = 0; column < 2; ++column) {
            const auto from = rgbBytes.begin() + ((2 - row) * 2 + column) * 3;
            EXPECT_EQ(content.pictures.at(0).PixelAt(column, row), std::vector<std::uint8_t>(from, from + 3));
        }
    }
    EXPECT_EQ(content.pictures[1].components, 4U);
    EXPECT_EQ(content.pictures[2].width, 3U);
    const std::array<std::size_t, 4> pictures = {0, 1, 0, 2};
    for (std::size_t k = 0; k < 4; ++k) {
        const Orvel::Test::TextureDefinition& definition = content.textureDefinitions.at(k);
        EXPECT_EQ(definition.picture, pictures[k]) << k;
        EXPECT_EQ(definition.wrapT, k == 3 ? 2 : 1) << k;
        EXPECT_EQ(definition.function, k == 3 ? 2 : 1) << k;
        const auto& texture = std::get<Orvel::Test::TextureApplication>(content.materials.at(2 * k + 1));
        EXPECT_EQ(content.styles.at(k).material, 2 * k + 1) << k;
        EXPECT_EQ(texture.material, 2 * k) << k;
        EXPECT_EQ(texture.textureDefinition, k) << k;
    }
}

TEST_F(Materials, WithoutPixelsTheyAreUntexturedAndWithWrongOnesRefused)
{
    prc::PRCmaterial failed = NumberedMaterial(1);
    failed.pictureRepeat = true; // the texture's picture could not be loaded
    file.addMaterial(failed);
    Pixels empty(1);
    empty.material.pictureWidth = empty.material.pictureHeight = empty.material.pictureSize = 0;
    file.addMaterial(empty.material);

    const std::function<void(prc::PRCmaterial&)> damages[] = {
        [](prc::PRCmaterial& material) { material.pictureSize -= 1; },
        [](prc::PRCmaterial& material) { material.pictureFormat = static_cast<prc::PRCpictureFormat>(4); },
        [](prc::PRCmaterial& material) { // x 4 is 0 in 32 bits
            material.pictureWidth = material.pictureHeight = 65536;
            material.pictureSize = 0;
        },
        [](prc::PRCmaterial& material) { material.specular.alpha = std::numeric_limits<double>::quiet_NaN(); },
    };
    for (const auto& damage : damages) {
        Pixels wrong(1, prc::PRCpictureFormat::Rgba);
        damage(wrong.material);
        EXPECT_THROW(file.addMaterial(wrong.material), std::invalid_argument) << &damage - damages;
    }
    const PRCContent content = Finish();
    EXPECT_EQ(content.materials.size(), 2U);
    EXPECT_TRUE(content.pictures.empty());
}

/// Builds one scene into any file.
void WriteScene(prc::oPRCFile& file, double firstCoordinate = 0.5, std::uint8_t firstPixel = 1)
{
    file.begingroup("scene", nullptr, nullptr);
    file.addMaterial(Pixels(firstPixel).material);
    auto mesh = StripMesh({true, true}, 0);
    mesh->coordinates[0] = firstCoordinate;
    file.useMesh(Add(file, std::move(mesh)), 0, nullptr);
    file.endgroup();
}

std::vector<std::uint8_t> Scene(double firstCoordinate = 0.5, std::uint8_t firstPixel = 1, double unit = 1.0)
{
    std::vector<std::uint8_t> bytes;
    prc::oPRCFile file(bytes, unit, 1);
    WriteScene(file, firstCoordinate, firstPixel);
    file.finish();
    return bytes;
}

std::vector<std::uint8_t> Content(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

TEST_F(Outputs, EqualContentGivesEqualBytesAndOtherContentOtherIds)
{
    const std::vector<std::uint8_t> scene = Scene();
    EXPECT_EQ(Scene(), scene);
    const PRCContent content = DecodePRC(scene);
    EXPECT_NE(content.fileId, content.structureId);
    EXPECT_EQ(content.minimalVersion, 8016U);
    EXPECT_EQ(content.authoringVersion, 8016U);
    for (const std::vector<std::uint8_t>& other : {Scene(0.625), Scene(0.5, 2), Scene(0.5, 1, 10.0)}) {
        const PRCContent changed = DecodePRC(other);
        EXPECT_NE(changed.fileId, content.fileId);
        EXPECT_NE(changed.structureId, content.structureId);
        EXPECT_EQ(changed.applicationId, content.applicationId);
    }
}

class FilesOnDisk : public testing::Test
{
protected:
    Orvel::Test::TemporaryFolder temporary;
    std::filesystem::path folder = temporary.Path();
};

TEST_F(FilesOnDisk, AppearOnlyAtTheEndAndHoldWhatMemoryAndStreamsHold)
{
    const std::filesystem::path path = folder / "sch\xC3\xB6n.prc";
    {
        prc::oPRCFile abandoned(path.string(), 1.0, 1);
        WriteScene(abandoned);
        abandoned.begingroup("left open", nullptr, nullptr);
    }
    EXPECT_FALSE(std::filesystem::exists(path));

    std::ofstream(path) << std::string(100'000, 'x');
    prc::oPRCFile file(path.string(), 1.0, 1);
    WriteScene(file);
    EXPECT_TRUE(file.finish());
    EXPECT_EQ(Content(path), Scene());

    std::ostringstream stream;
    stream << "before";
    prc::oPRCFile streamed(stream, 1.0, 1);
    WriteScene(streamed);
    EXPECT_TRUE(streamed.finish());
    const std::string text = stream.str();
    EXPECT_EQ(std::vector<std::uint8_t>(text.begin() + 6, text.end()), Scene());
}

TEST_F(FilesOnDisk, FailuresToWriteAreSystemErrors)
{
    const auto errorOf = [](const std::string& name) {
        prc::oPRCFile file(name, 1.0, 1);
        WriteScene(file);
        try {
            file.finish();
        } catch (const std::system_error& error) {
            return error.code();
        }
        return std::error_code();
    };
    EXPECT_EQ(errorOf("/dev/full"), std::errc::no_space_on_device);
    EXPECT_TRUE(std::filesystem::exists("/dev/full"));
    EXPECT_EQ(errorOf((folder / "missing" / "out.prc").string()), std::errc::no_such_file_or_directory);
    EXPECT_EQ(errorOf(folder.string()), std::errc::is_a_directory);
    EXPECT_TRUE(std::filesystem::is_empty(folder));
}

TEST_F(FilesOnDisk, HalfWrittenOnesAreRemoved)
{
    const std::filesystem::path path = folder / "out.prc";
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
    const rlimit few{200, before.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &few), 0);
    prc::oPRCFile file(path.string(), 1.0, 1);
    WriteScene(file);
    EXPECT_THROW(file.finish(), std::system_error);
    setrlimit(RLIMIT_FSIZE, &before);
    EXPECT_FALSE(std::filesystem::exists(path));
    EXPECT_FALSE(file.finish());
}

TEST_F(Outputs, AFailingStreamIsASystemErrorAndMemoryStaysUntouched)
{
    std::ofstream full("/dev/full");
    prc::oPRCFile streamed(full, 1.0, 1);
    WriteScene(streamed);
    EXPECT_THROW(streamed.finish(), std::system_error);

    std::vector<std::uint8_t> target = {1, 2, 3};
    {
        prc::oPRCFile abandoned(target, 1.0, 1);
        WriteScene(abandoned);
    }
    EXPECT_EQ(target, (std::vector<std::uint8_t>{1, 2, 3}));
}

TEST_F(Outputs, UnitAndNumberOfStructuresAreChecked)
{
    for (const double unit : {0.0, -1.0, infinity, std::numeric_limits<double>::quiet_NaN()})
        EXPECT_THROW(prc::oPRCFile(bytes, unit, 1), std::invalid_argument) << unit;
    EXPECT_THROW(prc::oPRCFile(bytes, 1.0, 0), std::invalid_argument);
    EXPECT_THROW(prc::oPRCFile(bytes, 1.0, 2), std::invalid_argument);
}

TEST_F(Outputs, OffsetsBeyond32BitsAreRefused)
{
    prc::FileParts parts;
    parts.pictures = {5, 7};
    parts.compressedSections = {10, 20, 30, 40, 50};
    parts.modelFile = 60;
    const prc::FileLayout small = prc::layOutFile(parts);
    EXPECT_EQ(small.sectionOffsets, (std::array<std::uint32_t, 6>{107, 174, 184, 204, 234, 274}));
    EXPECT_EQ(small.modelFileStart, 324U);
    EXPECT_EQ(small.modelFileEnd, 384U);

    parts.modelFile = 4294967295U - 324U;
    EXPECT_EQ(prc::layOutFile(parts).modelFileEnd, 4294967295U);
    parts.modelFile += 1;
    EXPECT_THROW(static_cast<void>(prc::layOutFile(parts)), std::system_error);
    parts.compressedSections[2] = std::uint64_t{1} << 40;
    EXPECT_THROW(static_cast<void>(prc::layOutFile(parts)), std::system_error);
}

} // namespace
