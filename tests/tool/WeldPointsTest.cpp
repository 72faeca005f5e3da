#include "tool/import/WeldPoints.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace Orvel::Import
{
namespace
{

using testing::ElementsAre;

TEST(WeldPoints, JoinsPointsThatAgreeInEveryStream)
{
    const std::vector<double> positions{1, 2, 3, 4, 5, 6, 1, 2, 3, 1, 2, 3, 4, 5, 6};
    const std::vector<double> coordinates{0.25, 0.5, 0.75, 1, 0.25, 0.5, 0.25, std::nextafter(0.5, 1.0), 0.75, 1};
    const std::vector<PointStream> streams{{positions, 3}, {coordinates, 2}};

    const PointWeld byPlace = FindEqualPoints({streams.data(), 1});
    EXPECT_THAT(byPlace.remap, ElementsAre(0, 1, 0, 0, 1));
    EXPECT_THAT(byPlace.sources, ElementsAre(0, 1));

    const PointWeld byBoth = FindEqualPoints(streams);
    EXPECT_THAT(byBoth.remap, ElementsAre(0, 1, 0, 2, 1));
    EXPECT_THAT(byBoth.sources, ElementsAre(0, 1, 3));
    EXPECT_THAT(GatherPoints(coordinates, 2, byBoth.sources),
                ElementsAre(0.25, 0.5, 0.75, 1, 0.25, std::nextafter(0.5, 1.0)));
}

TEST(WeldPoints, TakesAnyNumberOfPoints)
{
    std::vector<double> positions;
    for (std::size_t count = 0; count <= 7; ++count) {
        const PointStream stream{positions, 3};
        const PointWeld weld = FindEqualPoints({&stream, 1});
        EXPECT_EQ(weld.remap.size(), count);
        EXPECT_EQ(weld.sources.size(), std::min<std::size_t>(count, 2)) << count << " points at two places in turn";
        positions.insert(positions.end(), {count % 2 ? 1.0 : 0.0, 7, 11});
    }
}

TEST(WeldPoints, JoinsZerosOnceTheyHaveOneSign)
{
    std::vector<double> positions{0.0, -0.0, -5.0, -0.0, 0.0, -5.0};
    const PointStream stream{positions, 3};
    EXPECT_EQ(FindEqualPoints({&stream, 1}).sources.size(), 2U);
    ClearNegativeZeros(positions);
    EXPECT_EQ(FindEqualPoints({&stream, 1}).sources.size(), 1U);
    EXPECT_THAT(positions, ElementsAre(0.0, 0.0, -5.0, 0.0, 0.0, -5.0));
    EXPECT_FALSE(std::signbit(positions[1]));
}

} // namespace
} // namespace Orvel::Import
