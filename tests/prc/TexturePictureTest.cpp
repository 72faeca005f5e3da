#include "prc/TexturePicture.h"

#include "platform/image/ImageFile.h"
#include "prc/COrvelPRCHandler.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

namespace Orvel::Test
{
namespace
{

using testing::ElementsAre;

class TexturePictures : public testing::Test
{
protected:
    /// A picture with different bytes everywhere.
    static Bitmap MakeBitmap(int width, int height, int bitsPerPixel)
    {
        Bitmap bitmap(FreeImage_Allocate(width, height, bitsPerPixel));
        const int bytes = width * bitsPerPixel / 8;
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < bytes; ++x)
                FreeImage_GetScanLine(bitmap.get(), y)[x] = static_cast<BYTE>(10 + 10 * x + 100 * y);
        }
        if (bitsPerPixel == 32)
            FreeImage_SetTransparent(bitmap.get(), TRUE);
        return bitmap;
    }

    COrvelString Save(const Bitmap& bitmap, const std::string& name, FREE_IMAGE_FORMAT format = FIF_PNG) const
    {
        const std::string path = (folder.Path() / name).string();
        EXPECT_TRUE(FreeImage_Save(format, bitmap.get(), path.c_str(), 0));
        return COrvelString(path.c_str());
    }

    TexturePicture Load(const COrvelString& name, int limit = 1024) const
    {
        COrvelPRCHandler& converter = *COrvelPRCHandler::Instance();
        converter.maximumTextureSize = limit;
        TexturePicture picture;
        picture.width = 4711;
        EXPECT_TRUE(LoadTexturePicture(converter, name, picture));
        return picture;
    }

    static std::vector<int> Bytes(const TexturePicture& picture)
    {
        return {picture.pixels.get(), picture.pixels.get() + picture.width * picture.height * picture.BytesPerPixel()};
    }

    static void ExpectUntouched(const TexturePicture& picture)
    {
        EXPECT_EQ(picture.width, 4711U);
        EXPECT_EQ(picture.pixels, nullptr);
    }

    TemporaryFolder folder;
};

TEST_F(TexturePictures, TurnColoursRoundAndBeginWithTheBottomRow)
{
    const TexturePicture row = Load(Save(MakeBitmap(3, 1, 24), "row.png"));
    EXPECT_EQ(row.format, 2U);
    EXPECT_THAT(Bytes(row), ElementsAre(30, 20, 10, 60, 50, 40, 90, 80, 70));

    const TexturePicture column = Load(Save(MakeBitmap(1, 2, 24), "column.bmp", FIF_BMP));
    EXPECT_THAT(Bytes(column), ElementsAre(30, 20, 10, 130, 120, 110));

    const TexturePicture transparent = Load(Save(MakeBitmap(2, 1, 32), "alpha.png"));
    EXPECT_EQ(transparent.format, 3U);
    EXPECT_THAT(Bytes(transparent), ElementsAre(30, 20, 10, 40, 70, 60, 50, 80));
}

TEST_F(TexturePictures, ShrinkToTheLimitKeepingTheirShape)
{
    struct Case
    {
        int width, height, bits, limit;
        uint32 wantWidth, wantHeight;
    };
    // Negative limits count as huge. A side that would become 0 leaves nothing.
    const Case cases[] = {{2048, 1000, 24, 1024, 1024, 500},
                          {400, 300, 32, 128, 128, 96},
                          {64, 64, 24, 64, 64, 64},
                          {30, 70, 24, 10, 4, 10},
                          {5000, 1, 24, 1024, 0, 0},
                          {9, 7, 24, 0, 0, 0},
                          {9, 7, 24, -1, 9, 7}};
    for (const Case& test : cases) {
        const std::string name = std::to_string(test.width) + "x" + std::to_string(test.limit) + ".png";
        const TexturePicture picture = Load(Save(MakeBitmap(test.width, test.height, test.bits), name), test.limit);
        EXPECT_EQ(picture.width, test.wantWidth) << name;
        EXPECT_EQ(picture.height, test.wantHeight) << name;
        EXPECT_EQ(picture.format, test.bits == 32 ? 3U : 2U) << name;
    }
}

TEST_F(TexturePictures, AreRecognisedByContentWhateverTheirName)
{
    const Bitmap bitmap = MakeBitmap(2, 2, 24);
    EXPECT_EQ(Load(Save(bitmap, "picture.unknown")).width, 2U);
    EXPECT_EQ(Load(Save(bitmap, "größe 中 \xF0\x9F\x9A\x82.png")).width, 2U);
    EXPECT_EQ(Load(Save(bitmap, "really png.jpg")).width, 2U);
}

TEST_F(TexturePictures, ThatCannotBeReadLeaveTheOutputAlone)
{
    ExpectUntouched(Load("no such file.png"));
    ExpectUntouched(Load(COrvelString(folder.Path().c_str())));
    folder.Write("text.png", "this is no picture");
    folder.Write("empty", "");
    ExpectUntouched(Load(COrvelString((folder.Path() / "text.png").c_str())));
    ExpectUntouched(Load(COrvelString((folder.Path() / "empty").c_str())));
}

TEST_F(TexturePictures, AreLoadedAgainWhenTheFileOrTheLimitChanges)
{
    const COrvelString name = Save(MakeBitmap(3, 1, 24), "changing.png");
    EXPECT_EQ(Load(name).width, 3U);
    EXPECT_EQ(Load(name, 2).width, 0U) << "3 x 1 cannot be brought down to 2";
    EXPECT_EQ(Load(name).width, 3U);
    Save(MakeBitmap(5, 1, 24), "changing.png");
    EXPECT_EQ(Load(name).width, 5U);
    std::filesystem::remove(name.toStdString());
    ExpectUntouched(Load(name));
}

} // namespace
} // namespace Orvel::Test
