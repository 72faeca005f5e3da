#include "platform/core/COrvelUUID.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <set>

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

TEST_F(UniqueIdentifiers, AreRandomAndNeverTheSame)
{
    COrvelUUID unset = Fresh();
    unset.Reset();
    EXPECT_FALSE(unset.IsValid());
    std::set<COrvelUUID> ids{unset};
    for (int i = 0; i < 1000; ++i) {
        const COrvelUUID id = Fresh();
        EXPECT_THAT(id.ToString().toStdString(),
                    testing::MatchesRegex("[0-9a-f]{8}-[0-9a-f]{4}-4[0-9a-f]{3}-[89ab][0-9a-f]{3}-[0-9a-f]{12}"));
        ids.insert(id);
    }
    EXPECT_EQ(ids.size(), 1001U);
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
    EXPECT_LT(COrvelUUID(), COrvelUUID(Counting));
    EXPECT_LT(COrvelUUID(Counting), COrvelUUID::FromString("00120000-0000-0000-0000-000000000000"));
}

} // namespace
} // namespace Orvel
