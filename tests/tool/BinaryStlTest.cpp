#include "tool/import/BinaryStl.h"

#include "tool/import/ImportReport.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string>
#include <vector>

namespace Orvel::Import
{
namespace
{

using testing::ElementsAre;

/// @param corners 9 numbers for each facet.
std::string BinaryStl(const std::vector<float>& corners, std::string header = "a part")
{
    header.resize(80, '\0');
    const auto count = static_cast<std::uint32_t>(corners.size() / 9);
    std::string file = header + std::string(reinterpret_cast<const char*>(&count), 4);
    constexpr std::array<float, 3> misleadingNormal{0.0F, -1.0F, 0.0F};
    for (std::size_t at = 0; at < corners.size(); at += 9) {
        file.append(reinterpret_cast<const char*>(misleadingNormal.data()), sizeof misleadingNormal);
        file.append(reinterpret_cast<const char*>(corners.data() + at), 9 * sizeof(float));
        file.append(2, '\0');
    }
    return file;
}

const std::vector<float> TwoFacets{0, 0, 0, 2, 0, 0, 2, 3, 0, /**/ -0.0F, 0, 0, 2, 3, 0, 0, 3, 5};

TEST(BinaryStl, JoinsTheCornersOfItsFacets)
{
    // Binary files may begin like text ones.
    const auto scene = ReadBinaryStl(BinaryStl(TwoFacets, "solid part"));
    ASSERT_TRUE(scene.has_value());
    const ImportedGeometry& shape = scene->geometries.at(0);
    EXPECT_THAT(shape.positions, ElementsAre(0, 0, 0, 2, 0, 0, 2, 3, 0, 0, 3, 5));
    EXPECT_THAT(shape.triangles, ElementsAre(0, 1, 2, 0, 2, 3));
    EXPECT_THAT(shape.normals, testing::IsEmpty()) << "they are made from the shape";
    EXPECT_FALSE(std::signbit(shape.positions.at(0)));
    EXPECT_TRUE(shape.welded);
    EXPECT_THAT(scene->roots, ElementsAre(0));
}

TEST(BinaryStl, LeavesOtherFilesToTheLibrary)
{
    const std::string file = BinaryStl(TwoFacets);
    std::string coloured = file;
    coloured[84 + 49] = '\x80';
    for (const std::string& other :
         {std::string(), file.substr(0, 83), file.substr(0, file.size() - 1), file + "x", BinaryStl({}),
          std::string("solid a\nfacet normal 0 0 1\nendsolid a\n"), BinaryStl(TwoFacets, "x COLOR=abcd"), coloured})
        EXPECT_FALSE(ReadBinaryStl(other).has_value()) << other.size() << " bytes";
    std::vector<float> broken = TwoFacets;
    broken[10] = std::numeric_limits<float>::quiet_NaN();
    EXPECT_THROW(static_cast<void>(ReadBinaryStl(BinaryStl(broken))), ImportError);
}

} // namespace
} // namespace Orvel::Import
