#include "tool/import/TextureFiles.h"
#include "tests/support/TemporaryFolder.h"
#include "tool/import/PictureFile.h"

#include <FreeImage.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <fstream>
#include <memory>

namespace Orvel::Import
{
namespace
{

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

using Rgba = std::array<unsigned, 4>;

std::vector<std::byte> Bytes(const std::vector<Rgba>& pixels)
{
    std::vector<std::byte> bytes;
    for (const Rgba& pixel : pixels)
        for (const unsigned channel : pixel)
            bytes.push_back(static_cast<std::byte>(channel));
    return bytes;
}

std::vector<std::byte> FileBytes(const fs::path& path)
{
    std::vector<std::byte> bytes(fs::file_size(path));
    std::ifstream(path, std::ios::binary)
        .read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    return bytes;
}

constexpr Rgba Red{250, 10, 20, 255};
constexpr Rgba Glass{30, 240, 40, 77};

/// A picture read back: pixels from the top left, and bits per pixel.
struct ReadBack
{
    std::vector<Rgba> pixels;
    unsigned bits = 0;
};

ReadBack Read(const std::string& file)
{
    const std::unique_ptr<FIBITMAP, decltype(&FreeImage_Unload)> bitmap(
        FreeImage_Load(FreeImage_GetFileType(file.c_str(), 0), file.c_str(), 0), &FreeImage_Unload);
    ReadBack result{{}, FreeImage_GetBPP(bitmap.get())};
    const unsigned height = FreeImage_GetHeight(bitmap.get());
    for (unsigned row = 0; row < height; ++row) {
        for (unsigned x = 0; x < FreeImage_GetWidth(bitmap.get()); ++x) {
            RGBQUAD colour{};
            FreeImage_GetPixelColor(bitmap.get(), x, height - 1 - row, &colour);
            const unsigned alpha = result.bits == 32 ? colour.rgbReserved : 255U;
            result.pixels.push_back({colour.rgbRed, colour.rgbGreen, colour.rgbBlue, alpha});
        }
    }
    return result;
}

MATCHER_P(IsNoFile, name, "")
{
    return fs::path(arg).filename() == name && fs::path(arg).is_absolute() && !fs::exists(arg);
}

class TextureLookup : public testing::Test
{
protected:
    /// A 2 x 1 picture in a file below the folder.
    fs::path Paint(const fs::path& name, Rgba left = Red, Rgba right = Red)
    {
        const fs::path path = folder.Path() / name;
        fs::create_directories(path.parent_path());
        PictureFromRgba(Bytes({left, right}), 2, 1).SavePng(path);
        return path;
    }

    TextureFiles Textures(const std::vector<fs::path>& folders = {})
    {
        fs::create_directories(folder.Path() / "scene" / "tmp");
        return {folder.Path() / "scene" / "house.obj", folders, folder.Path() / "scene" / "tmp", report};
    }

    static ImportedImage External(const std::string& path) { return {path, path, {}, {}, 0, 0}; }

    /// The file found for a path, without transparency.
    std::string Find(const std::string& path, const std::vector<fs::path>& folders = {})
    {
        const std::string found = Textures(folders).FileFor(External(path), 0, false);
        return found.empty() ? found : fs::weakly_canonical(found).string();
    }

    Orvel::Test::TemporaryFolder folder;
    ImportReport report;
};

} // namespace

TEST_F(TextureLookup, FindsRelativeAbsoluteAndEncodedPlaces)
{
    const fs::path near = Paint("scene/wood.png");
    const fs::path beside = Paint("other/стена.png");
    EXPECT_EQ(Find("wood.png"), near);
    EXPECT_EQ(Find("./wood.png"), near);
    EXPECT_EQ(Find("../other/стена.png"), beside);
    EXPECT_EQ(Find(beside.string()), beside);
    EXPECT_EQ(Find("file://" + beside.string()), beside);
    EXPECT_THAT(report.Warnings(), IsEmpty());
}

TEST_F(TextureLookup, FindsForeignPathsByBaseNameInTheUsualFolders)
{
    const fs::path maps = Paint("scene/Maps/Brick.PNG");
    const fs::path above = Paint("textures/stone.png");
    const fs::path unpacked = Paint("scene/house.fbm/roof.png");
    const fs::path given = Paint("library/deep/tile.png");
    EXPECT_EQ(Find("C:\\work\\job 7\\brick.png"), maps);
    EXPECT_EQ(Find("maps\\BRICK.png"), maps);
    EXPECT_EQ(Find("/home/somebody/stone.png"), above);
    EXPECT_EQ(Find("D:/x/roof.png"), unpacked);
    EXPECT_EQ(Find("tile.png", {folder.Path() / "nowhere", folder.Path() / "library" / "deep"}), given);
    EXPECT_EQ(Find("DEEP/tile.png", {folder.Path() / "library"}), given);
    EXPECT_THAT(report.Warnings(), IsEmpty());
}

TEST_F(TextureLookup, PrefersTheExactNameAndTheNearerFolder)
{
    const fs::path exact = Paint("scene/Sky.png");
    Paint("scene/sky.png");
    Paint("scene/textures/Sky.png");
    EXPECT_EQ(Find("Sky.png"), exact);
    const fs::path named = Paint("scene/night/Sky.png");
    EXPECT_EQ(Find("night\\sky.png"), named);
}

TEST_F(TextureLookup, NamesWhatIsMissingOrNoPictureOnce)
{
    folder.Write("scene/notes.png", "no picture at all");
    fs::create_directories(folder.Path() / "scene" / "folder.png");
    TextureFiles textures = Textures();
    for (const bool alphaCounts : {false, true}) {
        EXPECT_THAT(textures.FileFor(External("none.png"), 0, alphaCounts), IsNoFile("none.png"));
        EXPECT_THAT(textures.FileFor(External("notes.png"), 1, alphaCounts), IsNoFile("notes.png"));
        EXPECT_THAT(textures.FileFor(External("folder.png"), 2, alphaCounts), IsNoFile("folder.png"));
    }
    EXPECT_THAT(report.Warnings(),
                ElementsAre("texture 'none.png' was not found", "texture 'notes.png' cannot be read as a picture",
                            "texture 'folder.png' was not found"));
    EXPECT_THAT(textures.Used(), IsEmpty());
}

TEST_F(TextureLookup, RefusesPicturesWhoseHeaderPromisesTooMuch)
{
    std::string bmp = "BM";
    bmp.resize(70, '\0');
    const auto put = [&](std::size_t at, unsigned value) {
        for (unsigned k = 0; k < 4; ++k)
            bmp[at + k] = static_cast<char>(value >> (8 * k));
    };
    put(10, 54);
    put(14, 40);
    put(18, 20000);
    put(22, 3);
    put(26, 1 | 24U << 16U);
    folder.Write("scene/wide.bmp", bmp);
    folder.Write("scene/big.gif", std::string("GIF89a\xFF\xFF\xFF\xFF\0\0\0;", 14) + std::string(100, '\0'));
    TextureFiles textures = Textures();
    EXPECT_THAT(textures.FileFor(External("wide.bmp"), 0, true), IsNoFile("wide.bmp"));
    EXPECT_THAT(textures.FileFor(External("big.gif"), 1, true), IsNoFile("big.gif"));
    EXPECT_THAT(report.Warnings(), ElementsAre("texture 'wide.bmp' is too large (20000 x 3 pixels)",
                                               "texture 'big.gif' is too large (65535 x 65535 pixels)"));
}

TEST_F(TextureLookup, TakesTransparencyAwayOnlyWhereItDoesNotCount)
{
    const fs::path pane = Paint("scene/pane.png", Red, Glass);
    TextureFiles textures = Textures();
    EXPECT_EQ(textures.FileFor(External("pane.png"), 3, true), pane);
    const std::string opaque = textures.FileFor(External("pane.png"), 3, false);
    EXPECT_EQ(fs::path(opaque).parent_path(), folder.Path() / "scene" / "tmp");
    const ReadBack copy = Read(opaque);
    EXPECT_EQ(copy.bits, 24U);
    EXPECT_THAT(copy.pixels, ElementsAre(Red, Rgba{30, 240, 40, 255}));

    const auto used = textures.Used();
    ASSERT_THAT(used, SizeIs(2));
    EXPECT_EQ(used[0].path, opaque);
    EXPECT_FALSE(used[0].hasAlpha);
    EXPECT_EQ(used[1].path, pane);
    EXPECT_TRUE(used[1].hasAlpha);
    EXPECT_EQ(used[1].name, "pane.png");
    EXPECT_EQ(used[1].width, 2U);
    EXPECT_EQ(used[1].height, 1U);
}

TEST_F(TextureLookup, EqualPicturesAreListedOnceAndOpaqueOnesStayWhereTheyAre)
{
    const fs::path wood = Paint("scene/wood.png");
    ImportedImage label{"label", "", FileBytes(Paint("label.png", Red, Glass)), {}, 0, 0};
    TextureFiles textures = Textures();
    EXPECT_EQ(textures.FileFor(External("wood.png"), 0, false), wood);
    EXPECT_EQ(textures.FileFor(External("wood.png"), 0, true), wood);
    EXPECT_THAT(textures.Used(), SizeIs(1));
    for (const Index index : {1, 2})
        (void)textures.FileFor(label, index, true);
    label.encoded = FileBytes(Paint("other.png", Glass, Red));
    (void)textures.FileFor(label, 3, true);
    EXPECT_THAT(textures.Used(), SizeIs(3));
}

TEST_F(TextureLookup, TellsTheSizeThatTheLimitLeaves)
{
    const auto image = [](std::uint32_t width, std::uint32_t height) {
        return ImportedImage{
            std::to_string(width), "", {}, std::vector(std::size_t{4} * width * height, std::byte{200}), width, height};
    };
    fs::create_directories(folder.Path() / "scene");
    TextureFiles textures(folder.Path() / "scene" / "house.obj", {}, folder.Path(), report, 16);
    (void)textures.FileFor(image(16, 5), 0, false);
    (void)textures.FileFor(image(30, 11), 1, false);
    (void)textures.FileFor(image(7, 48), 2, false);
    EXPECT_THAT(textures.FileFor(image(100, 6), 3, false), IsNoFile("100"));
    using Sizes = std::array<std::uint32_t, 4>;
    std::vector<Sizes> sizes;
    for (const TextureFile& file : textures.Used())
        sizes.push_back({file.width, file.height, file.storedWidth, file.storedHeight});
    EXPECT_THAT(sizes, ElementsAre(Sizes{16, 5, 16, 5}, Sizes{30, 11, 16, 5}, Sizes{7, 48, 2, 16}));
    EXPECT_THAT(report.Warnings(), ElementsAre(HasSubstr("texture '100' (100 x 6 pixels) is left out")));
}

TEST_F(TextureLookup, WritesEmbeddedPicturesToTheTemporaryFolder)
{
    const ImportedImage encoded{"label", "", FileBytes(Paint("elsewhere.png", Red, Glass)), {}, 0, 0};
    const ImportedImage raw{"skin", "", {}, Bytes({Red, Glass}), 1, 2};
    ImportedImage tooFew = raw;
    tooFew.height = 3;

    TextureFiles textures = Textures();
    const std::string first = textures.FileFor(encoded, 0, true);
    EXPECT_EQ(fs::path(first).extension(), ".png");
    EXPECT_EQ(FileBytes(first), encoded.encoded);
    EXPECT_THAT(Read(textures.FileFor(raw, 1, true)).pixels, ElementsAre(Red, Glass)) << "top row first";
    EXPECT_THAT(textures.FileFor(tooFew, 2, true), IsNoFile("skin"));
    EXPECT_THAT(report.Warnings(), ElementsAre("texture 'skin' has no pixels"));
}

TEST_F(TextureLookup, ConvertsPixelsThatTheExporterCannot)
{
    const auto save = [&](FREE_IMAGE_TYPE type, FREE_IMAGE_FORMAT format, const char* name, auto value, auto other) {
        FIBITMAP* bitmap = FreeImage_AllocateT(type, 2, 1, 8 * static_cast<int>(sizeof value));
        auto* row = reinterpret_cast<decltype(value)*>(FreeImage_GetScanLine(bitmap, 0));
        row[0] = value;
        row[1] = other;
        fs::create_directories(folder.Path() / "scene");
        FreeImage_Save(format, bitmap, (folder.Path() / "scene" / name).string().c_str(), 0);
        FreeImage_Unload(bitmap);
    };
    save(FIT_UINT16, FIF_PNG, "grey16.png", WORD{0x40FF}, WORD{0xC000});
    save(FIT_RGBF, FIF_TIFF, "light.tif", FIRGBF{0.1F, 0.1F, 0.1F}, FIRGBF{9.0F, 9.0F, 9.0F});
    TextureFiles textures = Textures();
    const ReadBack grey = Read(textures.FileFor(External("grey16.png"), 0, true));
    EXPECT_EQ(grey.bits, 24U);
    EXPECT_THAT(grey.pixels, ElementsAre(Rgba{0x40, 0x40, 0x40, 255}, Rgba{0xC0, 0xC0, 0xC0, 255}));
    const ReadBack light = Read(textures.FileFor(External("light.tif"), 1, false));
    ASSERT_THAT(light.pixels, SizeIs(2));
    EXPECT_LT(light.pixels[0][0], light.pixels[1][0]) << "the brighter pixel stays the brighter one";
    EXPECT_THAT(report.Warnings(), IsEmpty());
}

TEST_F(TextureLookup, AFolderThatCannotBeWrittenIsAnError)
{
    Paint("scene/pane.png", Red, Glass);
    TextureFiles textures(folder.Path() / "scene" / "house.obj", {}, folder.Path() / "missing", report);
    EXPECT_THROW((void)textures.FileFor(External("pane.png"), 0, false), std::system_error);
}

} // namespace Orvel::Import
