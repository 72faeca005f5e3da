#include "tool/import/LoadDocument.h"

#include "tests/tool/GltfFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Orvel::Import
{
namespace
{

class LoadDocuments : public testing::Test
{
protected:
    BuildSummary Load(const std::filesystem::path& file)
    {
        LoadOptions options;
        options.temporaryFolder = folder.Path();
        return LoadDocument(file, options, report).summary;
    }

    std::string FaultOf(const std::filesystem::path& file)
    {
        try {
            Load(file);
        } catch (const ImportError& error) {
            return error.what();
        }
        return "loaded";
    }

    Orvel::Test::TemporaryFolder folder;
    ImportReport report;
};

constexpr const char* triangleObj = "o plate\nv 0 0 0\nv 2 0 0\nv 0 3 0\nf 1 2 3\n";

TEST_F(LoadDocuments, SaysWhyAPathIsNoScene)
{
    EXPECT_EQ(FaultOf(folder.Path() / "nowhere.glb"), "no such file");
    EXPECT_EQ(FaultOf(folder.Path()), "is a folder, not a scene file");
    EXPECT_EQ(FaultOf(folder.Write("empty.obj", "")), "is empty");
    EXPECT_EQ(FaultOf("/dev/null"), "is not a regular file");
    const std::filesystem::path inFile = folder.Write("plain.obj", triangleObj) / "scene.obj";
    EXPECT_THAT(FaultOf(inFile), testing::HasSubstr("no such file"));
}

TEST_F(LoadDocuments, ReadEachFormatWithItsReader)
{
    const BuildSummary obj = Load(folder.Write("plate.obj", triangleObj));
    EXPECT_EQ(obj.trianglesPlaced, 1U);
    EXPECT_FALSE(obj.unitChange.has_value()) << "the format has neither units nor axes";

    const BuildSummary gltf = Load(Orvel::Test::TriangleFile().Write(folder));
    EXPECT_EQ(gltf.objects, 1U);
    EXPECT_EQ(gltf.trianglesPlaced, 1U);
    ASSERT_TRUE(gltf.unitChange.has_value());
    EXPECT_EQ(gltf.unitChange->scale, 1000.0);
}

TEST_F(LoadDocuments, WarnWhenThereIsNothingToSee)
{
    EXPECT_EQ(Load(folder.Write("cloud.obj", "v 0 0 0\nv 2 0 0\nv 0 3 0\n")).objects, 0U);
    EXPECT_THAT(report.Warnings(),
                testing::UnorderedElementsAre("left out: 3 points",
                                              "nothing in the scene can be shown: there are no triangles"));
}

} // namespace
} // namespace Orvel::Import
