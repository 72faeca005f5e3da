#include "tool/import/UnitGroup.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>

namespace Orvel::Import
{
namespace
{

using Rows = std::array<double, 9>;

Rows RowsOf(const COrvelMatrix& matrix)
{
    Rows rows{};
    for (int i = 0; i < 9; ++i)
        rows[static_cast<std::size_t>(i)] = matrix.M(i / 3, i % 3);
    return rows;
}

TEST(UnitGroup, TurnsUpAxesByExactRightAngles)
{
    using enum UpAxis;
    EXPECT_EQ(RowsOf(UnitMatrix({1000.0, Y, Z})), (Rows{1000, 0, 0, 0, 0, -1000, 0, 1000, 0}));
    EXPECT_EQ(RowsOf(UnitMatrix({25.4, Z, Y})), (Rows{25.4, 0, 0, 0, 0, 25.4, 0, -25.4, 0}));
    EXPECT_EQ(RowsOf(UnitMatrix({1.0, X, Z})), (Rows{0, -1, 0, 0, 0, -1, 1, 0, 0}));
    EXPECT_EQ(RowsOf(UnitMatrix({1.0, X, Y})), (Rows{0, -1, 0, 1, 0, 0, 0, 0, 1}));
    EXPECT_EQ(RowsOf(UnitMatrix({0.1, Unknown, Unknown})), (Rows{0.1, 0, 0, 0, 0.1, 0, 0, 0, 0.1}));
    EXPECT_EQ(RowsOf(UnitMatrix({2.0, Y, Y})), (Rows{2, 0, 0, 0, 2, 0, 0, 0, 2}));

    // The file keeps entries to the bit; a negative zero would come back as another number.
    const COrvelMatrix matrix = UnitMatrix({1000.0, Y, Z});
    for (const double entry : matrix.Values())
        EXPECT_FALSE(entry == 0.0 && std::signbit(entry));
}

TEST(UnitGroup, KnowsWhatChangesNothing)
{
    EXPECT_TRUE((UnitChange{1.0, UpAxis::Z, UpAxis::Z}.IsIdentity()));
    EXPECT_TRUE((UnitChange{1.0, UpAxis::Unknown, UpAxis::Z}.IsIdentity()));
    EXPECT_FALSE((UnitChange{1.0, UpAxis::Y, UpAxis::Z}.IsIdentity()));
    EXPECT_FALSE((UnitChange{10.0, UpAxis::Z, UpAxis::Z}.IsIdentity()));
}

TEST(UnitGroup, IsRecognisedWhereverItWasMade)
{
    using enum UpAxis;
    for (const UnitChange& change : {UnitChange{1000.0, Y, Z}, UnitChange{0.3048, X, Z}, UnitChange{1.0, Z, Y},
                                     UnitChange{25.4, X, Y}, UnitChange{10.0, Unknown, Unknown}})
    {
        const auto found = RecogniseUnitGroup(UnitGroupName, UnitMatrix(change));
        ASSERT_TRUE(found.has_value());
        EXPECT_EQ(found->scale, change.scale);
        EXPECT_EQ(found->from, change.from);
        EXPECT_EQ(found->to, change.to);
    }
}

TEST(UnitGroup, IsNotMistakenForOtherGroups)
{
    const COrvelMatrix made = UnitMatrix({1000.0, UpAxis::Y, UpAxis::Z});
    EXPECT_FALSE(RecogniseUnitGroup("units and axes", made));

    for (int i = 0; i < 16; ++i) {
        COrvelMatrix changed = made;
        changed.M(i / 4, i % 4) += 0.5;
        EXPECT_FALSE(RecogniseUnitGroup(UnitGroupName, changed)) << "entry " << i;
    }
    COrvelMatrix mirrored;
    mirrored.M(0, 0) = -1.0;
    EXPECT_FALSE(RecogniseUnitGroup(UnitGroupName, mirrored));
    COrvelMatrix flat;
    flat.M(0, 0) = flat.M(1, 1) = flat.M(2, 2) = 0.0;
    EXPECT_FALSE(RecogniseUnitGroup(UnitGroupName, flat));
}

} // namespace
} // namespace Orvel::Import
