#include "tool/pdf/PdfModels.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/tool/pdf/PdfBuilder.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>

namespace Orvel::Pdf
{

namespace
{

using Test::PdfBuilder;
using Test::TemporaryFolder;
using testing::ElementsAre;
using testing::HasSubstr;

constexpr std::uint64_t NoLimit = std::uint64_t{1} << 40;

std::string TextOf(const std::vector<std::uint8_t>& bytes)
{
    return {bytes.begin(), bytes.end()};
}

/// Models in every place where a PDF can have them, one of them in two.
void BuildDocument(PdfBuilder& builder)
{
    QPDFObjectHandle first = builder.AddPage();
    builder.pdf.getRoot().replaceKey("/Spare", builder.Model("PRC nowhere"));
    builder.AddAnnotation(first, "übersicht", builder.Model("U3D one", "/U3D"));
    QPDFObjectHandle second = builder.AddPage();
    QPDFObjectHandle instance = QPDFObjectHandle::parse("<< /Type /3DRef >>");
    instance.replaceKey("/3DD", builder.Model("PRC two\0\xff"));
    builder.AddAnnotation(second, "scene", builder.pdf.makeIndirectObject(instance));
    builder.AddAnnotation(second, "the same", instance.getKey("/3DD"));
    builder.AddAnnotation(second, "nothing", QPDFObjectHandle::newInteger(3));
    QPDFObjectHandle assets = QPDFObjectHandle::newArray();
    const auto addAsset = [&](const char* name, const char* subtype, const char* bytes) {
        QPDFObjectHandle file = QPDFObjectHandle::parse("<< /Type /Filespec /EF << >> >>");
        file.getKey("/EF").replaceKey("/F", builder.Stream(bytes, "<< /Subtype " + std::string(subtype) + " >>"));
        assets.appendItem(QPDFObjectHandle::newUnicodeString(name));
        assets.appendItem(file);
    };
    addAsset("a.PRC", "/application#2Foctet-stream", "PRC three");
    addAsset("b", "/model#2Fu3d", "U3D four");
    addAsset("play.js", "/text#2Fjavascript", "play()");
    builder.AddRichMedia(second, assets);
    QPDFObjectHandle third = builder.AddPage();
    builder.AddAnnotation(third, "", builder.Model("STEP", "/STEP"));
    builder.AddPage().replaceKey("/Annots", QPDFObjectHandle::parse("<< /3DD 5 >>"));
}

TEST(PdfModels, FindsEveryModelOnceInTheOrderOfThePages)
{
    const TemporaryFolder folder;
    PdfBuilder builder;
    BuildDocument(builder);
    builder.Write(folder / "models.pdf");

    PdfModels models(folder / "models.pdf", std::nullopt);
    std::vector<std::string> found;
    for (std::size_t i = 0; i < models.Streams().size(); ++i) {
        const ModelStream& stream = models.Streams()[i];
        constexpr const char* Formats[]{"prc", "u3d", "?"};
        found.push_back(std::string(Formats[static_cast<int>(stream.format)]) + "|" + stream.subtype + "|" +
                        std::to_string(stream.page) + "|" + stream.name + "|" + TextOf(models.Bytes(i, NoLimit)));
        EXPECT_GT(stream.storedBytes, 0U);
    }
    EXPECT_THAT(found,
                ElementsAre("u3d|U3D|1|übersicht|U3D one", "prc|PRC|2|scene|PRC two", "prc|a.PRC|2|a.PRC|PRC three",
                            "u3d|model/u3d|2|b|U3D four", "?|STEP|3||STEP", "prc|PRC|0||PRC nowhere"));
    EXPECT_THAT(models.TakeWarnings(), ElementsAre());
}

std::string ErrorOf(const std::function<void()>& work)
{
    try {
        work();
    } catch (const PdfError& error) {
        return error.what();
    }
    return "no error";
}

TEST(PdfModels, OpensEncryptedFilesWithTheirPasswordOnly)
{
    const TemporaryFolder folder;
    const std::string file = folder / "locked.pdf";
    PdfBuilder builder;
    builder.AddAnnotation(builder.AddPage(), "scene", builder.Model("PRC secret"));
    builder.Write(file, "sésame");
    EXPECT_THAT(ErrorOf([&] { PdfModels(file, std::nullopt); }), HasSubstr("--password"));
    EXPECT_EQ(ErrorOf([&] { PdfModels(file, "Sésame"); }), "the password is wrong");
    EXPECT_EQ(TextOf(PdfModels(file, "sésame").Bytes(0, NoLimit)), "PRC secret");
    EXPECT_EQ(TextOf(PdfModels(file, "owner").Bytes(0, NoLimit)), "PRC secret");
}

TEST(PdfModels, RefusesStreamsThatUnpackBeyondTheLimitOrNotAtAll)
{
    const TemporaryFolder folder;
    PdfBuilder builder;
    const QPDFObjectHandle page = builder.AddPage();
    builder.AddAnnotation(page, "bomb", builder.Model(std::string(5'000'000, 'x')));
    builder.AddAnnotation(page, "picture", builder.Stream("PRC", "<< /Subtype /PRC /Filter /JPXDecode >>"));
    builder.AddAnnotation(page, "garbage", builder.Stream("no zlib", "<< /Subtype /PRC /Filter /FlateDecode >>"));
    builder.Write(folder / "bomb.pdf");
    ASSERT_LT(std::filesystem::file_size(folder / "bomb.pdf"), 20'000U);

    PdfModels models(folder / "bomb.pdf", std::nullopt);
    EXPECT_EQ(models.Bytes(0, 5'000'000).size(), 5'000'000U);
    EXPECT_THAT(ErrorOf([&] { (void)models.Bytes(0, 4'999'999); }), HasSubstr("more than 4999999 bytes"));
    EXPECT_THAT(ErrorOf([&] { (void)models.Bytes(1, NoLimit); }), HasSubstr("not known"));
    EXPECT_THAT(ErrorOf([&] { (void)models.Bytes(2, NoLimit); }), HasSubstr("damaged"));
}

TEST(PdfModels, DamagedFilesGiveWhatCanBeFoundOrAnError)
{
    const TemporaryFolder folder;
    const std::string file = folder / "damaged.pdf";
    PdfBuilder builder;
    BuildDocument(builder);
    builder.Write(file);
    std::ostringstream content;
    content << std::ifstream(file, std::ios::binary).rdbuf();
    const std::string whole = content.str();

    std::size_t opened = 0;
    const auto open = [&](const std::string& bytes) {
        std::ofstream(file, std::ios::binary) << bytes;
        try {
            PdfModels models(file, std::nullopt);
            for (std::size_t i = 0; i < models.Streams().size(); ++i)
                (void)models.Bytes(i, NoLimit);
            ++opened;
        } catch (const PdfError& error) {
            EXPECT_STRNE(error.what(), "");
        }
    };
    for (std::size_t length = 0; length < whole.size(); length += 61)
        open(whole.substr(0, length));
    for (std::size_t place = 0; place < whole.size(); place += 37)
        open(std::string(whole).replace(place, 1, 1, static_cast<char>(whole[place] ^ 0x11)));
    EXPECT_GT(opened, whole.size() / 61);
    EXPECT_NE(ErrorOf([&] { PdfModels(folder / "missing.pdf", std::nullopt); }), "no error");
}

} // namespace

} // namespace Orvel::Pdf
