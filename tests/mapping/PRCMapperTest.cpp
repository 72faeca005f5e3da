#include "mapping/COrvelPRCMapper.h"

#include <gtest/gtest.h>

namespace Orvel
{
namespace
{

using Frames = std::map<int, std::vector<int>>;

// The mapper never looks into a node: addresses of anything serve as keys.
COrvelSceneNode* NodeKey(int number)
{
    static char places[8];
    return reinterpret_cast<COrvelSceneNode*>(&places[number]);
}

COrvelPRCMapper FilledMapper()
{
    COrvelPRCMapper mapper;
    mapper.hiddenNodeIndices = {3, 5};
    mapper.nextNodeIndex = 7;
    mapper.AddMapping(NodeKey(0), 1);
    mapper.AddMapping(NodeKey(1), 2);
    std::map<int, int> replacements{{4, 9}};
    mapper.AddMapping(2, replacements);
    std::vector<int> numbers{11, 12, 13};
    mapper.AddMapping(6, numbers);
    mapper.AddMaterialSequenceAnimationMapping("walk", {{6, {20, 21}}});
    std::vector<std::pair<COrvelBasicCamera, COrvelString>> cameras(2);
    cameras[1].second = "417";
    mapper.SetCameraAnimationData(cameras);
    return mapper;
}

void ExpectFilled(const COrvelPRCMapper& mapper)
{
    EXPECT_EQ(mapper.hiddenNodeIndices, (std::vector<int>{3, 5}));
    EXPECT_EQ(mapper.MapIntoIndex(NodeKey(1)), 2);
    EXPECT_EQ(mapper.sceneStateMaterials.at(2), (std::map<int, int>{{4, 9}}));
    EXPECT_EQ(mapper.materialAnimation.at(6), (std::vector<int>{11, 12, 13}));
    EXPECT_EQ(mapper.materialSequenceAnimation.at("walk"), (Frames{{6, {20, 21}}}));
    ASSERT_EQ(mapper.cameraAnimation.size(), 2U);
    EXPECT_EQ(mapper.cameraAnimation[1].second, COrvelString("417"));
}

TEST(PRCMapper, KeepsTheLastIndexOfANodeAndForgetsARemovedOne)
{
    COrvelPRCMapper mapper;
    EXPECT_EQ(mapper.MapIntoIndex(nullptr), -1);
    mapper.AddMapping(NodeKey(0), 4);
    mapper.AddMapping(NodeKey(1), 5);
    mapper.AddMapping(NodeKey(0), 6);
    EXPECT_EQ(mapper.MapIntoIndex(NodeKey(0)), 6);
    mapper.nextNodeIndex = 7;
    mapper.RemoveMemberFromMap(NodeKey(0));
    mapper.RemoveMemberFromMap(NodeKey(3));
    EXPECT_EQ(mapper.MapIntoIndex(NodeKey(0)), -1);
    EXPECT_EQ(mapper.MapIntoIndex(NodeKey(1)), 5);
    EXPECT_EQ(mapper.nextNodeIndex, 7);
}

TEST(PRCMapper, TellsKnownSceneStatesFromEmptyOnes)
{
    COrvelPRCMapper mapper;
    std::map<int, int> replacements{{3, 8}};
    mapper.AddMapping(0, replacements);
    std::map<int, int> none;
    mapper.AddMapping(1, none);
    EXPECT_EQ(replacements.size(), 1U) << "the argument is not modified";

    std::map<int, int> output{{99, 99}};
    EXPECT_FALSE(mapper.MapIntoMaterials(2, output));
    EXPECT_EQ(output, (std::map<int, int>{{99, 99}})) << "an unknown state leaves the output alone";
    EXPECT_FALSE(mapper.MapIntoMaterials(1, output));
    EXPECT_TRUE(output.empty()) << "an empty state empties the output";
    EXPECT_TRUE(mapper.MapIntoMaterials(0, output));
    EXPECT_EQ(output, replacements);
    EXPECT_TRUE(mapper.MapIntoMaterials(0, mapper.sceneStateMaterials[0]));
    EXPECT_EQ(mapper.sceneStateMaterials[0], replacements) << "the member itself as output stays as it is";
}

TEST(PRCMapper, ReplacesAnimationsWholeAndMissesQuietly)
{
    COrvelPRCMapper mapper = FilledMapper();
    mapper.AddMaterialSequenceAnimationMapping("walk", {{7, {30}}});
    Frames output{{1, {1}}};
    mapper.ListMaterialSequenceAnimation("run", output);
    EXPECT_EQ(output, (Frames{{1, {1}}}));
    mapper.ListMaterialSequenceAnimation("walk", output);
    EXPECT_EQ(output, (Frames{{7, {30}}}));

    mapper.ListMaterialAnimation(output);
    EXPECT_EQ(output, (Frames{{6, {11, 12, 13}}}));
    mapper.ListMaterialAnimation(mapper.materialAnimation);
    EXPECT_EQ(mapper.materialAnimation.size(), 1U);
    mapper.SetCameraAnimationData(mapper.cameraAnimation);
    EXPECT_EQ(mapper.cameraAnimation.size(), 2U);
}

TEST(PRCMapper, ResetKeepsTheAnimations)
{
    COrvelPRCMapper mapper = FilledMapper();
    mapper.Reset();
    EXPECT_TRUE(mapper.hiddenNodeIndices.empty());
    EXPECT_EQ(mapper.nextNodeIndex, 0);
    EXPECT_TRUE(mapper.nodeIndices.empty());
    EXPECT_TRUE(mapper.sceneStateMaterials.empty());
    EXPECT_EQ(mapper.materialAnimation.size(), 1U);
    EXPECT_EQ(mapper.materialSequenceAnimation.size(), 1U);
    EXPECT_EQ(mapper.cameraAnimation.size(), 2U);
}

TEST(PRCMapper, CopiesDeeplyAndMovesLeaveAnEmptySource)
{
    COrvelPRCMapper source = FilledMapper();
    COrvelPRCMapper copy(source);
    copy.materialAnimation[6].push_back(14);
    copy.cameraAnimation[1].second = "9";
    ExpectFilled(source);

    COrvelPRCMapper& itself = source;
    source = itself;
    source = std::move(itself);
    ExpectFilled(source);

    COrvelPRCMapper moved(std::move(source));
    ExpectFilled(moved);
    copy = std::move(moved);
    ExpectFilled(copy);
    for (const COrvelPRCMapper* left : {&source, &moved}) {
        EXPECT_TRUE(left->hiddenNodeIndices.empty() && left->nodeIndices.empty() && left->sceneStateMaterials.empty());
        EXPECT_TRUE(left->materialAnimation.empty() && left->materialSequenceAnimation.empty());
        EXPECT_TRUE(left->cameraAnimation.empty());
        EXPECT_EQ(left->nextNodeIndex, 7);
    }
}

// Hosts are compiled against the order of the members.
TEST(PRCMapper, KeepsItsMembersInOrder)
{
    const COrvelPRCMapper mapper;
    const void* const members[] = {&mapper.hiddenNodeIndices, &mapper.nextNodeIndex,
                                   &mapper.nodeIndices,       &mapper.sceneStateMaterials,
                                   &mapper.materialAnimation, &mapper.materialSequenceAnimation,
                                   &mapper.cameraAnimation};
    EXPECT_EQ(members[0], &mapper) << "no base class and no virtual functions stand before the first member";
    for (std::size_t i = 1; i < std::size(members); ++i)
        EXPECT_LT(members[i - 1], members[i]) << "member " << i;
}

} // namespace
} // namespace Orvel
