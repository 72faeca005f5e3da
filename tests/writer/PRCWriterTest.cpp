#include "writer/COrvelPRCWriter.h"

#include "animation/COrvelKeyFrameManager.h"
#include "mapping/COrvelPRCMapper.h"
#include "platform/core/COrvelDocument.h"
#include "platform/core/COrvelSceneNode.h"
#include "platform/core/FileNameEncoding.h"
#include "prc/COrvelPRCHandler.h"
#include "support/PRCDecoder.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <regex>
#include <system_error>

namespace Orvel::Test
{
namespace
{

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::UnorderedElementsAre;

class PRCWriter : public testing::Test
{
protected:
    PRCWriter() { document.AddRootNode(COrvelSceneNode::Create(&document, "root")); }

    bool Export(const std::string& fileName)
    {
        return writer.Export(&document, fileName.c_str(), nullptr, nullptr, nullptr, nullptr, COrvelUnit());
    }

    /// Relative to the folder, in any order.
    std::vector<std::string> Files() const
    {
        std::vector<std::string> files;
        for (const auto& entry : fs::recursive_directory_iterator(folder.Path())) {
            if (entry.is_regular_file())
                files.push_back(entry.path().lexically_relative(folder.Path()).string());
        }
        return files;
    }

    std::string InFolder(const std::string& name) const { return (folder.Path() / name).string(); }

    TemporaryFolder folder;
    COrvelDocument document;
    COrvelPRCWriter writer;
};

/// Counts how many of its kind are alive.
class CountedManager : public COrvelKeyFrameManager
{
public:
    explicit CountedManager(int& newCount)
        : count(newCount)
    {
        ++count;
    }
    ~CountedManager() override { --count; }

private:
    int& count;
};

TEST_F(PRCWriter, WritesUnderTheNameThatWasAskedFor)
{
    fs::create_directories(folder.Path() / "größe 中" / "a.b");
    const std::pair<const char*, const char*> names[] = {
        {"out.prc", "out.prc"},
        {"a.b.c.prc", "a.b.c.prc"},
        {"no extension", "no extension."},
        {"größe 中/ü \xF0\x9F\x9A\x82.prc", "größe 中/ü \xF0\x9F\x9A\x82.prc"},
        {"größe 中/a.b/out", "größe 中/a.b/out."},
        {".hidden", ".hidden"}};
    std::vector<std::string> expected;
    for (const auto& [asked, written] : names) {
        EXPECT_TRUE(Export(InFolder(asked))) << asked;
        expected.emplace_back(written);
        EXPECT_THAT(Files(), testing::UnorderedElementsAreArray(expected)) << asked;
        EXPECT_EQ(DecodePRCFile(folder.Path() / written).occurrences.size(), 1U) << asked;
    }
    fs::current_path(folder.Path());
    EXPECT_TRUE(Export("relative.prc"));
    EXPECT_TRUE(fs::exists("relative.prc"));
    EXPECT_TRUE(Export("größe 中/relative.prc"));
    EXPECT_TRUE(fs::exists("größe 中/relative.prc"));
}

TEST_F(PRCWriter, ReplacesAFileOfAnyNameWhereEveryNameCanBeOpened)
{
    for (const char* name : {"u.prc", "ü.prc"}) {
        folder.Write(name, "old");
        EXPECT_TRUE(Export(InFolder(name)));
        EXPECT_EQ(DecodePRCFile(folder.Path() / name).occurrences.size(), 1U);
    }
    EXPECT_THAT(Files(), UnorderedElementsAre("u.prc", "ü.prc"));
}

TEST_F(PRCWriter, MovesTheFileToANameThatCannotBeOpenedDirectly)
{
    SetEightBitFileNameEncoding(FileNameEncoding::Ascii);
    fs::create_directories(folder.Path() / "ä");
    EXPECT_TRUE(Export(InFolder("ä/plain.prc")));
    EXPECT_TRUE(Export(InFolder("ä/ü.prc")));
    EXPECT_TRUE(Export(InFolder("plain.prc")));
    EXPECT_TRUE(Export(InFolder("中.tar.prc")));
    EXPECT_THAT(Files(), UnorderedElementsAre("ä/plain.prc", "ä/ü.prc", "plain.prc", "中.tar.prc"));
    EXPECT_EQ(DecodePRCFile(folder.Path() / "ä" / "ü.prc").occurrences.size(), 1U);
}

TEST_F(PRCWriter, KeepsTheGeneratedNameWhenTheFinalOneIsTaken)
{
    SetEightBitFileNameEncoding(FileNameEncoding::Ascii);
    folder.Write("ü.prc", "old");
    EXPECT_TRUE(Export(InFolder("ü.prc"))) << "the failed move is not reported";
    std::vector<std::string> files = Files();
    ASSERT_EQ(files.size(), 2U);
    std::erase(files, "ü.prc");
    const std::regex uuid("[0-9a-f]{8}-([0-9a-f]{4}-){3}[0-9a-f]{12}\\.prc");
    EXPECT_TRUE(std::regex_match(files.at(0), uuid)) << files.at(0);
    EXPECT_EQ(fs::file_size(folder.Path() / "ü.prc"), 3U);
    EXPECT_EQ(DecodePRCFile(folder.Path() / files.at(0)).occurrences.size(), 1U);
}

TEST_F(PRCWriter, AnswersFalseForANullDocumentAndTouchesNothing)
{
    COrvelPRCMapper mapper;
    mapper.nextNodeIndex = 17;
    writer.SetPRCMapper(&mapper);
    EXPECT_FALSE(writer.Export(nullptr, InFolder("out.prc").c_str(), nullptr, nullptr, nullptr, nullptr, COrvelUnit()));
    EXPECT_FALSE(writer.ExportToMemory(nullptr, InFolder("out.prc").c_str(), nullptr, nullptr, nullptr));
    EXPECT_THAT(Files(), ElementsAre());
    EXPECT_EQ(mapper.nextNodeIndex, 17);
    EXPECT_EQ(COrvelPRCHandler::Instance()->mapper, &mapper);
}

TEST_F(PRCWriter, LetsWriteFailuresPassToTheHost)
{
    EXPECT_THROW(Export(InFolder("no such folder/out.prc")), std::system_error);
    // The plain export would write to "full.": it always inserts the dot.
    EXPECT_THROW(writer.ExportToMemory(&document, "/dev/full", nullptr, nullptr, nullptr), std::system_error);
    EXPECT_TRUE(Export(InFolder("out.prc"))) << "the next export is not disturbed";
}

TEST_F(PRCWriter, SharesItsSettingsWithEveryOtherWriter)
{
    const COrvelPRCHandler& converter = *COrvelPRCHandler::Instance();
    EXPECT_EQ(converter.maximumTextureSize, 1024);
    COrvelPRCMapper mapper;
    {
        COrvelPRCWriter copy(writer);
        COrvelPRCWriter moved(std::move(copy));
        copy = moved;
        copy.SetMaximumTextureSize(-5);
        moved.SetPRCMapper(&mapper);
        moved = std::move(copy);
        copy.SetPRCMapper(nullptr);
    }
    EXPECT_EQ(converter.maximumTextureSize, -5);
    EXPECT_EQ(converter.mapper, &mapper) << "null is ignored";
    writer.SetMaximumTextureSize(0);
    EXPECT_EQ(converter.maximumTextureSize, 0);
}

TEST_F(PRCWriter, HandsTheKeyFrameManagerToTheProcess)
{
    int alive = 0;
    auto* const first = new CountedManager(alive);
    COrvelPRCWriter(writer).SetKeyFrameManager(first);
    EXPECT_EQ(COrvelKeyFrameManager::Instance(), first);
    EXPECT_EQ(alive, 1) << "it outlives the writer";
    writer.SetKeyFrameManager(first);
    EXPECT_EQ(alive, 1) << "the installed manager itself changes nothing";

    auto* const second = new CountedManager(alive);
    COrvelKeyFrameManager::SetInstance(second);
    EXPECT_EQ(alive, 1) << "the first one is destroyed";
    writer.SetKeyFrameManager(nullptr);
    EXPECT_EQ(alive, 0);
    EXPECT_NE(COrvelKeyFrameManager::Instance(), nullptr) << "an empty one is made on demand";
    EXPECT_TRUE(Export(InFolder("out.prc")));
}

TEST_F(PRCWriter, OverridesExportAndLeavesTheNodeExportToItsBase)
{
    COrvelWriter& base = writer;
    EXPECT_TRUE(base.Export(&document, InFolder("base.prc").c_str(), nullptr, nullptr, nullptr, nullptr, COrvelUnit()));
    EXPECT_FALSE(base.ExportSceneNode(nullptr, InFolder("node.prc").c_str(), true));
    EXPECT_THAT(Files(), ElementsAre("base.prc"));
}

} // namespace
} // namespace Orvel::Test
