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

TEST_F(Tessellations, SeveralFacesFollowEachOtherWithTheirOwnStyles)
{
    for (unsigned number = 0; number < 3; ++number)
        file.addMaterial(prc::Test::NumberedMaterial(number));
    auto mesh = StripMesh({true, false}, 2);
    mesh->faceTessellation[0]->sizesTriangulated = {1};
    auto* second = new prc::PRCTessFace;
    second->usedEntitiesFlag = prc::UsedEntities::triangles;
    second->sizesTriangulated = {2};
    second->startTriangulated = 6;
    second->lineAttributes = {1};
    mesh->addTessFace(second);
    EXPECT_EQ(second, nullptr);
    mesh->addTessFace(second); // null is ignored
    Add(file, std::move(mesh));

    const PRCContent content = Finish();
    const std::vector<Orvel::Test::Face>& faces = content.tessellations.at(0).faces;
    ASSERT_EQ(faces.size(), 2U);
    EXPECT_EQ(faces[0].style, 2U);
    EXPECT_EQ(faces[0].firstIndex, 0U);
    EXPECT_EQ(faces[0].triangleCount, 1U);
    EXPECT_EQ(faces[1].style, 1U);
    EXPECT_EQ(faces[1].firstIndex, 6U);
    EXPECT_EQ(faces[1].triangleCount, 2U);
}

TEST_F(Tessellations, TheirNumberMayTakeOneTwoOrThreeBytes)
{
    // The section begins with the number, which is known only when the rest is written.
    for (const std::uint32_t count : {0U, 1U, 255U, 256U, 65535U, 65536U}) {
        SCOPED_TRACE(count);
        std::vector<std::uint8_t> target;
        prc::oPRCFile many(target, 1.0, 1);
        for (std::uint32_t k = 0; k < count; ++k) {
            auto mesh = StripMesh();
            mesh->coordinates[4] = k;
            ASSERT_EQ(Add(many, std::move(mesh)), k);
        }
        many.finish();
        const PRCContent content = DecodePRC(target);
        ASSERT_EQ(content.tessellations.size(), count);
        for (std::uint32_t k = 0; k < count; ++k)
            ASSERT_EQ(content.tessellations[k].points[1][1], k);
    }
}

TEST_F(Tessellations, CornersMayHaveColoursWithOrWithoutAlpha)
{
    std::vector<std::uint8_t> rgb;
    std::vector<std::uint8_t> rgba;
    for (unsigned corner = 0; corner < 9; ++corner) {
        const auto shade = static_cast<std::uint8_t>(corner / 2); // equal neighbours are stored as such
        rgb.insert(rgb.end(), {shade, 100, 200});
        rgba.insert(rgba.end(), {7, 8, 9, shade});
    }
    for (const std::vector<std::uint8_t>& colours : {rgb, rgba}) {
        auto mesh = StripMesh();
        mesh->faceTessellation[0]->isRgba = colours.size() == rgba.size();
        mesh->faceTessellation[0]->rgbaVertices = colours;
        Add(file, std::move(mesh));
    }
    const PRCContent content = Finish();
    EXPECT_EQ(content.tessellations.at(0).faces.at(0).colourComponents, 3U);
    EXPECT_EQ(content.tessellations.at(0).faces.at(0).vertexColours, rgb);
    EXPECT_EQ(content.tessellations.at(1).faces.at(0).colourComponents, 4U);
    EXPECT_EQ(content.tessellations.at(1).faces.at(0).vertexColours, rgba);
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
