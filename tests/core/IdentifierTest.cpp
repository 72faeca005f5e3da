#include "platform/core/COrvelID.h"
#include "platform/core/COrvelUUID.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <set>
#include <vector>

namespace Orvel
{
namespace
{

constexpr COrvelUUID::Bytes Counting = {0x00, 0x11, 0x22, 0x33, 0x44, 0x55, 0x66, 0x77,
                                        0x88, 0x99, 0xAA, 0xBB, 0xCC, 0xDD, 0xEE, 0xFF};

class UniqueIdentifiers : public testing::Test
{
protected:
    void TearDown() override { COrvelUUID::SetGenerator({}); }

    static COrvelUUID Fresh()
    {
        COrvelUUID id;
        id.Generate();
        return id;
    }
};

TEST_F(UniqueIdentifiers, AreInvalidUntilGenerated)
{
    COrvelUUID id;
    EXPECT_FALSE(id.IsValid());
    EXPECT_EQ(id.ToString(), "00000000-0000-0000-0000-000000000000");
    id.Generate();
    EXPECT_TRUE(id.IsValid());
    id.Reset();
    EXPECT_EQ(id, COrvelUUID());
}

TEST_F(UniqueIdentifiers, AreRandomAndNeverTheSame)
{
    std::set<COrvelUUID> ids;
    for (int i = 0; i < 1000; ++i) {
        const COrvelUUID id = Fresh();
        EXPECT_THAT(id.ToString().toStdString(),
                    testing::MatchesRegex("[0-9a-f]{8}-[0-9a-f]{4}-4[0-9a-f]{3}-[89ab][0-9a-f]{3}-[0-9a-f]{12}"));
        ids.insert(id);
    }
    EXPECT_EQ(ids.size(), 1000U);
}

TEST_F(UniqueIdentifiers, RepeatFromOneSeedOnly)
{
    // The first two numbers of the 64-bit Mersenne twister from its default seed, 5489, are
    // c96d191cf6f6aea6 and 401f7ac78bc80f1c.
    COrvelUUID::SeedGenerator(5489);
    EXPECT_EQ(Fresh().ToString(), "c96d191c-f6f6-4ea6-801f-7ac78bc80f1c");
    const COrvelUUID second = Fresh();

    COrvelUUID::SeedGenerator(5489);
    EXPECT_NE(Fresh(), second);
    EXPECT_EQ(Fresh(), second);
    COrvelUUID::SetGenerator({});
    EXPECT_NE(Fresh(), Fresh());
}

TEST_F(UniqueIdentifiers, LeaveTheNumbersOfRandAlone)
{
    std::srand(7);
    const int first = std::rand();
    for (const bool seeded : {false, true}) {
        if (seeded)
            COrvelUUID::SeedGenerator(1);
        std::srand(7);
        Fresh();
        EXPECT_EQ(std::rand(), first) << "seeded: " << seeded;
    }
}

TEST_F(UniqueIdentifiers, ReadTheirTextBack)
{
    const COrvelUUID id(Counting);
    EXPECT_EQ(id.ToString(), "00112233-4455-6677-8899-aabbccddeeff");
    EXPECT_EQ(COrvelUUID::FromString("00112233-4455-6677-8899-aabbccddeeff"), id);
    EXPECT_EQ(COrvelUUID::FromString("{00112233-4455-6677-8899-AABBCCDDEEFF}"), id);
    for (const char* wrong : {"", "00112233-4455-6677-8899-aabbccddeef", "00112233-4455-6677-8899-aabbccddeeff0",
                              "{00112233-4455-6677-8899-aabbccddeeff", "00112233-4455-6677-8899-aabbccddeefg",
                              "00112233+4455-6677-8899-aabbccddeeff"})
        EXPECT_FALSE(COrvelUUID::FromString(wrong).IsValid()) << wrong;
}

TEST_F(UniqueIdentifiers, AreOrderedByTheirBytes)
{
    COrvelUUID::Bytes larger = Counting;
    larger[1] = 0x12;
    larger[15] = 0x00;
    EXPECT_LT(COrvelUUID(), COrvelUUID(Counting));
    EXPECT_LT(COrvelUUID(Counting), COrvelUUID(larger));
}

TEST(EntityIds, ComeByTypeThenByCreation)
{
    const std::set<COrvelID> ids = {COrvelID(64, 3), COrvelID(4, 10), COrvelID(64, 2), COrvelID(), COrvelID(4, 9)};
    const std::vector<COrvelID> wanted = {COrvelID(), COrvelID(4, 9), COrvelID(4, 10), COrvelID(64, 2),
                                          COrvelID(64, 3)};
    EXPECT_EQ(std::vector<COrvelID>(ids.begin(), ids.end()), wanted);
    EXPECT_TRUE(COrvelID().IsDefault());
    EXPECT_EQ(COrvelID().EntityType(), 0);
    EXPECT_FALSE(COrvelID(4, 9).IsDefault());
    EXPECT_EQ(COrvelID(4, 9).EntityType(), 4);
}

TEST(EntityIds, ReadingModeEndsWithTheOutermostScope)
{
    COrvelID::SetReadingMode(false);
    EXPECT_FALSE(COrvelID::IsReadingMode());
    {
        const COrvelIDReadingScope container;
        {
            const COrvelIDReadingScope sequence;
            EXPECT_TRUE(COrvelID::IsReadingMode());
        }
        EXPECT_TRUE(COrvelID::IsReadingMode());
    }
    EXPECT_FALSE(COrvelID::IsReadingMode());
}

} // namespace
} // namespace Orvel
