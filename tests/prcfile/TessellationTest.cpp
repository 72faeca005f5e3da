#include "platform/prcfile/oPRCFile.h"
#include "tests/prcfile/TestMeshes.h"
#include "tests/support/PRCDecoder.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <stdexcept>

namespace
{

using Orvel::Test::DecodePRC;
using Orvel::Test::PRCContent;
using prc::Test::Add;
using prc::Test::StripMesh;

class Tessellations : public testing::Test
{
protected:
    PRCContent Finish()
    {
        EXPECT_TRUE(file.finish());
        return DecodePRC(bytes);
    }

    std::vector<std::uint8_t> bytes;
    prc::oPRCFile file{bytes, 1.0, 1};
};

TEST_F(Tessellations, TheirNumberStandsInFrontHoweverManyBytesItTakes)
{
    for (const std::uint32_t count : {0U, 255U, 256U, 65536U}) {
        std::vector<std::uint8_t> target;
        prc::oPRCFile many(target, 1.0, 1);
        for (std::uint32_t k = 0; k < count; ++k)
            ASSERT_EQ(Add(many, StripMesh()), k);
        many.finish();
        const PRCContent content = DecodePRC(target);
        ASSERT_EQ(content.tessellations.size(), count);
        EXPECT_TRUE(count == 0 || content.tessellations.front() == content.tessellations.back()) << count;
    }
}

/// A mesh that add3DTess has to refuse.
struct Damage
{
    const char* name;
    bool outOfRange; ///< the exception: std::out_of_range, else std::invalid_argument
    std::function<void(prc::PRC3DTess&)> apply;
};

const std::vector<Damage> damages = {
    {"PointIndexBehindTheEnd", true, [](auto& mesh) { mesh.triangulatedIndex[8] = 15; }},
    {"NormalIndexBehindTheEnd", true, [](auto& mesh) { mesh.normalCoordinates.resize(12); }},
    {"TextureIndexBehindTheEnd", true, [](auto& mesh) { mesh.textureCoordinates.clear(); }},
    {"HugeIndex", true, [](auto& mesh) { mesh.triangulatedIndex[0] = 4294967295U; }},
    {"IndexInsideAPoint", false, [](auto& mesh) { mesh.triangulatedIndex[2] = 4; }},
    {"IndexInsideATextureEntry", false, [](auto& mesh) { mesh.triangulatedIndex[1] = 3; }},
    {"MoreTrianglesThanIndices", true, [](auto& mesh) { mesh.faceTessellation[0]->sizesTriangulated = {4}; }},
    {"TriangleCountNearOverflow", true,
     [](auto& mesh) { mesh.faceTessellation[0]->sizesTriangulated = {4294967295U}; }},
    {"IndicesLeftOver", false, [](auto& mesh) { mesh.faceTessellation[0]->sizesTriangulated = {2}; }},
    {"GapBeforeFace", false, [](auto& mesh) { mesh.faceTessellation[0]->startTriangulated = 9; }},
    {"NaN", false, [](auto& mesh) { mesh.coordinates[7] = std::numeric_limits<double>::quiet_NaN(); }},
    {"Infinity", false, [](auto& mesh) { mesh.textureCoordinates[9] = -std::numeric_limits<double>::infinity(); }},
    {"NotFiniteNormal", false,
     [](auto& mesh) { mesh.normalCoordinates[0] = -std::numeric_limits<double>::infinity(); }},
    {"HalfAPoint", false, [](auto& mesh) { mesh.coordinates.push_back(1.0); }},
    {"HalfATextureEntry", false, [](auto& mesh) { mesh.textureCoordinates.push_back(1.0); }},
    {"NoFace", false, [](auto& mesh) { mesh.faceTessellation.clear(); }},
    {"NullFace", false, [](auto& mesh) { mesh.faceTessellation[0].reset(); }},
    {"Fans", false, [](auto& mesh) { mesh.faceTessellation[0]->usedEntitiesFlag = 4; }},
    {"TextureCountOfPlainTriangles", false,
     [](auto& mesh) { mesh.faceTessellation[0]->numberOfTextureCoordinateIndexes = 0; }},
    {"NoSize", false, [](auto& mesh) { mesh.faceTessellation[0]->sizesTriangulated.clear(); }},
    {"Wires", false, [](auto& mesh) { mesh.faceTessellation[0]->sizesWire = {2}; }},
    {"VertexColoursTooShort", false, [](auto& mesh) { mesh.faceTessellation[0]->rgbaVertices.resize(26); }},
    {"StyleThatDoesNotExist", true, [](auto& mesh) { mesh.faceTessellation[0]->lineAttributes = {1}; }},
    {"TwoStyles", false,
     [](auto& mesh) {
         mesh.faceTessellation[0]->lineAttributes = {0, 0};
     }},
};

TEST_F(Tessellations, DamagedOnesAreRefusedAndFreedAndLeaveTheFileAsItWas)
{
    file.addMaterial({});
    for (const Damage& damage : damages) {
        SCOPED_TRACE(damage.name);
        auto mesh = StripMesh({true, true});
        damage.apply(*mesh);
        prc::PRC3DTess* handedOver = mesh.release();
        if (damage.outOfRange)
            EXPECT_THROW(file.add3DTess(handedOver, 0), std::out_of_range);
        else
            EXPECT_THROW(file.add3DTess(handedOver, 0), std::invalid_argument);
        EXPECT_EQ(handedOver, nullptr); // the sanitizer build finds what is not freed, or freed twice
    }
    prc::PRC3DTess* none = nullptr;
    EXPECT_THROW(file.add3DTess(none, 0), std::invalid_argument);
    prc::PRC3DTess* misplaced = StripMesh().release();
    EXPECT_THROW(file.add3DTess(misplaced, 1), std::out_of_range);

    EXPECT_EQ(Add(file, StripMesh()), 0U);
    EXPECT_EQ(Finish().tessellations.size(), 1U);
}

} // namespace
