#include "platform/prcfile/FileLayout.h"
#include "platform/prcfile/oPRCFile.h"
#include "tests/prcfile/TestMeshes.h"
#include "tests/support/PRCDecoder.h"
#include "tests/support/PRCPlacement.h"

#include <gtest/gtest.h>

#include <sys/resource.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <sstream>
#include <stdexcept>
#include <streambuf>
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

TEST_F(Groups, AreOccurrencesWithNamesAndLocationsChildrenFirst)
{
    const std::vector<double> turn = QuarterTurn();
    std::string name = "Gr\xC3\xBC\xC3\x9F \xF0\x9F\x8F\xA0";
    std::vector<double> matrix = turn;
    Group(name.c_str(), matrix.data());
    name.assign(name.size(), 'x');        // names and
    std::ranges::fill(matrix, -infinity); // matrices are copied during the call
    Group("");
    file.endgroup();
    Group(nullptr);
    Group("deep");
    file.endgroup();
    file.endgroup();
    file.endgroup();

    const PRCContent content = Finish();
    ASSERT_EQ(content.occurrences.size(), 4U);
    const ProductOccurrence& root = content.occurrences[content.root];
    EXPECT_EQ(root.name, "Gr\xC3\xBC\xC3\x9F \xF0\x9F\x8F\xA0");
    ASSERT_TRUE(root.location);
    EXPECT_TRUE(std::ranges::equal(*root.location, turn));
    EXPECT_EQ(Orvel::Test::TransformPoint(*root.location, {1, 0, 0}), (Orvel::Test::Vector3{1, 4, 3}));
    EXPECT_EQ(content.modelName, root.name);
    EXPECT_EQ(content.unitInMillimetres, 25.4);
    ASSERT_EQ(root.children, (std::vector<std::size_t>{0, 2}));
    EXPECT_EQ(content.occurrences[0].name, "");
    EXPECT_EQ(content.occurrences[2].name, std::nullopt);
    EXPECT_EQ(content.occurrences[2].children, (std::vector<std::size_t>{1}));
    EXPECT_EQ(content.occurrences[1].name, "deep");
    for (const std::size_t plain : {0U, 1U, 2U}) {
        EXPECT_EQ(content.occurrences[plain].location, std::nullopt) << plain;
        EXPECT_EQ(content.occurrences[plain].part, std::nullopt) << plain;
    }
    EXPECT_TRUE(content.parts.empty());
}

TEST_F(Groups, SeveralAtTheTopHangUnderAScene)
{
    Group("first");
    file.endgroup();
    Group("second");
    file.endgroup();
    const PRCContent content = Finish();
    const ProductOccurrence& root = content.occurrences.at(content.root);
    EXPECT_EQ(root.name, "Scene");
    EXPECT_EQ(content.modelName, "Scene");
    EXPECT_EQ(root.children, (std::vector<std::size_t>{0, 1}));
    EXPECT_EQ(root.location, std::nullopt);
}

TEST_F(Groups, AnEmptyFileAndAMeshWithoutGroupHaveASceneToo)
{
    const PRCContent empty = Finish();
    ASSERT_EQ(empty.occurrences.size(), 1U);
    EXPECT_EQ(empty.occurrences[0].name, "Scene");
    EXPECT_EQ(empty.styles.size(), 1U);

    std::vector<std::uint8_t> target;
    prc::oPRCFile bare(target, 1.0, 1);
    bare.begingroup("group", nullptr, nullptr);
    bare.endgroup();
    bare.useMesh(Add(bare, StripMesh()), 0, nullptr);
    bare.finish();
    const PRCContent content = DecodePRC(target);
    EXPECT_EQ(content.occurrences.at(content.root).name, "Scene");
    EXPECT_EQ(content.occurrences[content.root].part, 0U);
    EXPECT_EQ(content.occurrences[content.root].children.size(), 1U);
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

TEST_F(Placements, AreItemsOfTheGroupsPartOrNamelessChildren)
{
    for (unsigned number = 0; number < 3; ++number)
        file.addMaterial(NumberedMaterial(number));
    const std::uint32_t plain = Add(file, StripMesh());
    const std::uint32_t other = Add(file, StripMesh({true, false}));
    const std::vector<double> turn = QuarterTurn();
    Group("group");
    file.useMesh(plain, 2, nullptr);
    file.useMesh(nullIndex, 1, nullptr);
    file.useMesh(plain, 1, turn.data());
    file.useMesh(other, nullIndex, nullptr);
    file.useMesh(nullIndex, 1, turn.data());
    file.endgroup();

    const PRCContent content = Finish();
    const ProductOccurrence& group = content.occurrences.at(content.root);
    ASSERT_TRUE(group.part);
    const Part& part = content.parts[*group.part];
    ASSERT_EQ(part.items.size(), 2U);
    EXPECT_EQ(part.items[0].tessellation, 0U);
    EXPECT_EQ(part.items[0].style, 2U);
    EXPECT_EQ(part.items[1].tessellation, 1U);
    EXPECT_EQ(part.items[1].style, std::nullopt);
    ASSERT_EQ(group.children.size(), 1U);
    const ProductOccurrence& placed = content.occurrences[group.children[0]];
    EXPECT_EQ(placed.name, std::nullopt);
    ASSERT_TRUE(placed.location);
    EXPECT_TRUE(std::ranges::equal(*placed.location, turn));
    const Part& placedPart = content.parts.at(placed.part.value());
    ASSERT_EQ(placedPart.items.size(), 1U);
    EXPECT_EQ(placedPart.items[0].tessellation, 0U);
    EXPECT_EQ(placedPart.items[0].style, 1U);
}

TEST_F(Placements, TheStyleOfAFaceWinsOverTheStyleOfThePlacement)
{
    for (unsigned number = 0; number < 3; ++number)
        file.addMaterial(NumberedMaterial(number));
    Group("group");
    file.useMesh(Add(file, StripMesh({}, 2)), 0, nullptr);
    file.useMesh(Add(file, StripMesh()), 1, nullptr);
    file.endgroup();

    const PRCContent content = Finish();
    const auto meshes = Orvel::Test::PlacedMeshes(content);
    ASSERT_EQ(meshes.size(), 2U);
    EXPECT_EQ(Orvel::Test::MaterialOf(content, meshes[0]).style, &content.styles[2]);
    EXPECT_EQ(Orvel::Test::MaterialOf(content, meshes[1]).style, &content.styles[1]);
    EXPECT_EQ(meshes[0].tessellation->faces[0].style, 2U);
    EXPECT_EQ(meshes[0].item->style, 2U);
    EXPECT_EQ(meshes[1].tessellation->faces[0].style, std::nullopt);
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
    EXPECT_NO_THROW(file.useMesh(mesh, 0, nullptr)); // a default style stands in for missing materials
    const PRCContent content = Finish();
    EXPECT_EQ(content.parts.size(), 1U);
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

TEST_F(Materials, EachCallGivesAMaterialAndAStyleOfItsOwn)
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
    EXPECT_EQ(content.styles[0].material, 0U);
    EXPECT_EQ(content.styles[1].material, 1U);
    EXPECT_EQ(content.styles[0].transparency, 64U); // 63.75
    EXPECT_EQ(content.styles[2].transparency, std::nullopt);
    const auto& stored = std::get<Material>(content.materials[0]);
    EXPECT_EQ(stored.ambient, (Orvel::Test::Vector3{0.01 + 0.07, 0.02, 0.03}));
    EXPECT_EQ(stored.diffuse, (Orvel::Test::Vector3{0.04, 0.05 + 0.07, 0.06}));
    EXPECT_EQ(stored.emissive, (Orvel::Test::Vector3{0.07, 0.08, 0.09 + 0.07}));
    EXPECT_EQ(stored.specular, (Orvel::Test::Vector3{0.1, 0.11, 0.12}));
    EXPECT_EQ(stored.ambientAlpha, 0.99);
    EXPECT_EQ(stored.diffuseAlpha, 0.98);
    EXPECT_EQ(stored.emissiveAlpha, 0.97);
    EXPECT_EQ(stored.specularAlpha, 0.96 - 0.07);
    EXPECT_EQ(stored.shininess, 0.5);
    const auto& clamped = std::get<Material>(content.materials[2]);
    EXPECT_EQ(clamped.ambientAlpha, 0.0);
    EXPECT_EQ(clamped.specularAlpha, 1.0);
    EXPECT_EQ(clamped.diffuse[0], 1.0);
    EXPECT_EQ(content.colours.size(), 5U); // equal colours are shared
}

/// A picture in which every byte differs.
class Pixels
{
public:
    explicit Pixels(std::uint8_t firstByte)
        : first(firstByte)
    {}

    prc::PRCmaterial Material(prc::PRCpictureFormat format)
    {
        const std::size_t components = format == prc::PRCpictureFormat::Rgba ? 4 : 3;
        bytes.resize(2 * 3 * components);
        for (std::size_t k = 0; k < bytes.size(); ++k)
            bytes[k] = static_cast<std::uint8_t>(first + 7 * k);
        prc::PRCmaterial material = NumberedMaterial(1);
        material.pictureData = bytes.data();
        material.pictureFormat = format;
        material.pictureWidth = 2;
        material.pictureHeight = 3;
        material.pictureSize = static_cast<std::uint32_t>(bytes.size());
        material.pictureRepeat = true;
        return material;
    }

    std::vector<std::uint8_t> bytes;

private:
    std::uint8_t first;
};

TEST_F(Materials, PicturesAreStoredOnceWithTheirRowsTurnedOver)
{
    Pixels rgb(1);
    Pixels rgba(100);
    file.addMaterial(rgb.Material(prc::PRCpictureFormat::Rgb));
    const std::vector<std::uint8_t> rgbBytes = rgb.bytes;
    std::ranges::fill(rgb.bytes, std::uint8_t{0xEE}); // copied before addMaterial returned
    file.addMaterial(rgba.Material(prc::PRCpictureFormat::Rgba));
    Pixels again(1);
    file.addMaterial(again.Material(prc::PRCpictureFormat::Rgb));
    prc::PRCmaterial turned = again.Material(prc::PRCpictureFormat::Rgb);
    std::swap(turned.pictureWidth, turned.pictureHeight); // the same bytes, another picture
    turned.pictureRepeat = false;
    turned.pictureReplace = true;
    file.addMaterial(turned);

    const PRCContent content = Finish();
    ASSERT_EQ(content.pictures.size(), 3U);
    ASSERT_EQ(content.storedFiles.size(), 3U);
    const Orvel::Test::Picture& first = content.pictures[0];
    EXPECT_EQ(first.components, 3U);
    for (std::uint32_t row = 0; row < 3; ++row) {
        for (std::uint32_t column = 0; column < 2; ++column) {
            const auto from = rgbBytes.begin() + ((2 - row) * 2 + column) * 3;
            EXPECT_EQ(first.PixelAt(column, row), std::vector<std::uint8_t>(from, from + 3)) << column << ' ' << row;
        }
    }
    EXPECT_EQ(content.pictures[1].components, 4U);
    EXPECT_EQ(content.pictures[1].PixelAt(0, 2), std::vector<std::uint8_t>(rgba.bytes.begin(), rgba.bytes.begin() + 4));
    EXPECT_EQ(content.pictures[2].width, 3U);

    ASSERT_EQ(content.textureDefinitions.size(), 4U);
    EXPECT_EQ(content.textureDefinitions[0].picture, 0U);
    EXPECT_EQ(content.textureDefinitions[2].picture, 0U);
    EXPECT_EQ(content.textureDefinitions[0].wrapS, 1);
    EXPECT_EQ(content.textureDefinitions[0].function, 1);
    EXPECT_EQ(content.textureDefinitions[3].wrapT, 2);
    EXPECT_EQ(content.textureDefinitions[3].function, 2);
    ASSERT_EQ(content.materials.size(), 8U);
    for (std::size_t k = 0; k < 4; ++k) {
        EXPECT_EQ(content.styles[k].material, 2 * k + 1) << k;
        const auto& texture = std::get<Orvel::Test::TextureApplication>(content.materials[2 * k + 1]);
        EXPECT_EQ(texture.material, 2 * k) << k;
        EXPECT_EQ(texture.textureDefinition, k) << k;
    }
}

TEST_F(Materials, WithoutPixelsTheyAreUntexturedAndWithWrongOnesRefused)
{
    Pixels pixels(1);
    prc::PRCmaterial failed = NumberedMaterial(1);
    failed.pictureRepeat = true; // the texture's picture could not be loaded
    file.addMaterial(failed);
    prc::PRCmaterial empty = pixels.Material(prc::PRCpictureFormat::Rgb);
    empty.pictureWidth = empty.pictureHeight = empty.pictureSize = 0;
    file.addMaterial(empty);

    prc::PRCmaterial tooShort = pixels.Material(prc::PRCpictureFormat::Rgb);
    tooShort.pictureSize -= 1;
    EXPECT_THROW(file.addMaterial(tooShort), std::invalid_argument);
    prc::PRCmaterial unknown = pixels.Material(prc::PRCpictureFormat::Rgb);
    unknown.pictureFormat = static_cast<prc::PRCpictureFormat>(4);
    EXPECT_THROW(file.addMaterial(unknown), std::invalid_argument);
    prc::PRCmaterial wrapped = pixels.Material(prc::PRCpictureFormat::Rgba);
    wrapped.pictureWidth = wrapped.pictureHeight = 65536; // x 4 is 0 in 32 bits
    wrapped.pictureSize = 0;
    EXPECT_THROW(file.addMaterial(wrapped), std::invalid_argument);
    prc::PRCmaterial notFinite = NumberedMaterial(1);
    notFinite.specular.alpha = std::numeric_limits<double>::quiet_NaN();
    EXPECT_THROW(file.addMaterial(notFinite), std::invalid_argument);

    const PRCContent content = Finish();
    EXPECT_EQ(content.materials.size(), 2U);
    EXPECT_TRUE(content.pictures.empty());
}

/// Builds one scene into any file.
void WriteScene(prc::oPRCFile& file, double firstCoordinate = 0.5, std::uint8_t firstPixel = 1)
{
    file.begingroup("scene", nullptr, nullptr);
    Pixels pixels(firstPixel);
    file.addMaterial(pixels.Material(prc::PRCpictureFormat::Rgb));
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
    void SetUp() override
    {
        std::string pattern = (std::filesystem::temp_directory_path() / "prcfile-XXXXXX").string();
        ASSERT_NE(mkdtemp(pattern.data()), nullptr);
        folder = pattern;
    }
    void TearDown() override { std::filesystem::remove_all(folder); }

    std::filesystem::path folder;
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
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
    const auto handlerBefore = std::signal(SIGXFSZ, SIG_IGN);
    const rlimit few{200, before.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &few), 0);
    prc::oPRCFile file(path.string(), 1.0, 1);
    WriteScene(file);
    EXPECT_THROW(file.finish(), std::system_error);
    setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, handlerBefore);
    EXPECT_FALSE(std::filesystem::exists(path));
    EXPECT_FALSE(file.finish());
}

/// Takes a few bytes and refuses the rest.
class ShortBuffer : public std::streambuf
{
    std::streamsize xsputn(const char* /*text*/, std::streamsize count) override
    {
        const std::streamsize taken = std::min(count, room);
        room -= taken;
        return taken;
    }
    int_type overflow(int_type /*character*/) override { return traits_type::eof(); }

    std::streamsize room = 120;
};

TEST_F(Outputs, AFailingStreamIsASystemErrorAndMemoryStaysUntouched)
{
    ShortBuffer buffer;
    std::ostream stream(&buffer);
    prc::oPRCFile streamed(stream, 1.0, 1);
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
