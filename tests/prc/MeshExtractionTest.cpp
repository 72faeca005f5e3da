#include "prc/MeshExtraction.h"

#include "platform/core/COrvel3DObject.h"
#include "platform/core/COrvel3DPolygon.h"
#include "platform/core/COrvelBasicGeneralMaterial.h"
#include "platform/core/COrvelColor.h"
#include "platform/core/COrvelDocument.h"
#include "platform/core/COrvelGeometry.h"
#include "platform/core/COrvelMaterial.h"
#include "platform/core/COrvelPolygonsTable.h"
#include "platform/core/COrvelTextureCoordinatesTable.h"
#include "platform/core/COrvelVerticiesTable.h"
#include "prc/ExportCaches.h"
#include "support/PRCPlacement.h"
#include "tests/prc/PRCRun.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cmath>

namespace Orvel::Test
{
namespace
{

using testing::Each;
using testing::ElementsAre;

/// A cuboid of 2 x 3 x 5 with its corners shifted, so that no two axes can be mixed up.
struct Cuboid
{
    std::vector<double> positions;
    std::vector<double> normals;
    std::vector<double> textureCoordinates;
    std::vector<uint32> triangles{0, 2, 1, 1, 2, 3, 4, 5, 6, 5, 7, 6, 0, 1, 4, 1, 5, 4,
                                  2, 6, 3, 3, 6, 7, 0, 4, 2, 2, 4, 6, 1, 3, 5, 3, 7, 5};

    Cuboid()
    {
        for (unsigned corner = 0; corner < 8; ++corner) {
            const double x = corner & 1U ? 1.0 : -1.0;
            const double y = corner & 2U ? 1.0 : -1.0;
            const double z = corner & 4U ? 1.0 : -1.0;
            positions.insert(positions.end(), {7.0 + x, 11.0 + 1.5 * y, 13.0 + 2.5 * z});
            const double length = std::sqrt(3.0);
            normals.insert(normals.end(), {x / length, y / length, z / length});
            textureCoordinates.insert(textureCoordinates.end(), {0.125 * corner, 1.0 - 0.0625 * corner});
        }
    }
};

enum class Normals
{
    None,
    Stored
};
enum class Texturing
{
    None,
    Stored
};

/// The one tessellation of a file with nothing but a cuboid in it.
Tessellation WriteCuboid(Normals normals, Texturing texturing, uint32 style = PRCNullIndex)
{
    const Cuboid cuboid;
    PRCRun run;
    run.file.addMaterial({});
    const bool stored = normals == Normals::Stored;
    const bool textured = texturing == Texturing::Stored;
    const uint32 index = CreateTriangleMesh(
        8, cuboid.positions.data(), 12, cuboid.triangles.data(), style, stored ? 8 : 0,
        stored ? cuboid.normals.data() : nullptr, cuboid.triangles.data(), textured ? 8 : 0,
        textured ? cuboid.textureCoordinates.data() : nullptr, textured ? cuboid.triangles.data() : nullptr, run.file);
    EXPECT_EQ(index, 0U);
    run.file.useMesh(index, 0, nullptr);
    const PRCContent content = run.Finish();
    EXPECT_EQ(content.tessellations.size(), 1U);
    return content.tessellations.at(0);
}

TEST(TriangleMesh, WritesNormalThenTextureThenPointOffsets)
{
    const Cuboid cuboid;
    const Tessellation plain = WriteCuboid(Normals::None, Texturing::None);
    EXPECT_EQ(plain.points.size(), 8U);
    EXPECT_TRUE(plain.mustRecalculateNormals);
    EXPECT_EQ(plain.creaseAngleInDegrees, 0.0);
    EXPECT_EQ(plain.indices.size(), 36U);
    ASSERT_EQ(plain.faces.size(), 1U);
    EXPECT_EQ(plain.faces[0].triangleCount, 12U);
    EXPECT_FALSE(plain.faces[0].style.has_value()) << "the null style leaves the face without a line attribute";
    const std::vector<uint32_t> second(plain.indices.begin() + 6, plain.indices.begin() + 9);
    EXPECT_THAT(second, ElementsAre(12, 15, 18));

    const Tessellation smooth = WriteCuboid(Normals::Stored, Texturing::None, 0);
    EXPECT_EQ(smooth.normals.size(), 8U);
    EXPECT_EQ(smooth.indices.size(), 72U);
    EXPECT_FALSE(smooth.faces[0].textured);
    EXPECT_EQ(smooth.faces[0].style, std::optional<size_t>(0));
    EXPECT_THAT(std::vector<uint32_t>(smooth.indices.begin() + 12, smooth.indices.begin() + 18),
                ElementsAre(12, 12, 15, 15, 18, 18));

    const Tessellation textured = WriteCuboid(Normals::Stored, Texturing::Stored, 0);
    EXPECT_EQ(textured.textureCoordinates.size(), 8U);
    EXPECT_EQ(textured.indices.size(), 108U);
    EXPECT_TRUE(textured.faces[0].textured);
    EXPECT_THAT(std::vector<uint32_t>(textured.indices.begin() + 18, textured.indices.begin() + 27),
                ElementsAre(12, 8, 12, 15, 10, 15, 18, 12, 18));
    for (std::size_t k = 0; k < 8; ++k) {
        EXPECT_EQ(textured.points[k],
                  (Vector3{cuboid.positions[3 * k], cuboid.positions[3 * k + 1], cuboid.positions[3 * k + 2]}));
        EXPECT_EQ(textured.normals[k],
                  (Vector3{cuboid.normals[3 * k], cuboid.normals[3 * k + 1], cuboid.normals[3 * k + 2]}));
        EXPECT_EQ(textured.textureCoordinates[k],
                  (Vector2{cuboid.textureCoordinates[2 * k], cuboid.textureCoordinates[2 * k + 1]}));
    }
}

TEST(TriangleMesh, AddsNothingForMissingVerticesOrTriangles)
{
    const Cuboid cuboid;
    const double* const positions = cuboid.positions.data();
    const uint32* const triangles = cuboid.triangles.data();
    PRCRun run;
    const auto create = [&](uint32 vertices, const double* points, uint32 count, const uint32* corners) {
        return CreateTriangleMesh(vertices, points, count, corners, PRCNullIndex, 0, nullptr, nullptr, 0, nullptr,
                                  nullptr, run.file);
    };
    EXPECT_THAT((std::array{create(0, positions, 12, triangles), create(8, nullptr, 12, triangles),
                            create(8, positions, 0, triangles), create(8, positions, 12, nullptr)}),
                Each(PRCNullIndex));
    EXPECT_EQ(create(8, positions, 12, triangles), 0U) << "nothing was added before";
    EXPECT_EQ(run.Finish().tessellations.size(), 1U);
}

class MeshExtraction : public testing::Test
{
protected:
    COrvel3DObject* CuboidObject(COrvelMaterial* material)
    {
        Cuboid cuboid;
        COrvelGeometry* const geometry =
            COrvelGeometry::Create(&document, cuboid.positions, cuboid.triangles, cuboid.normals);
        COrvel3DObject* const object = COrvel3DObject::Create(&document, "cuboid", geometry, material);
        object->SetTextureCoordinatesTable(COrvelTextureCoordinatesTable::Create(&document, cuboid.textureCoordinates));
        return object;
    }

    COrvelMaterial* Material(bool textured)
    {
        COrvelBasicGeneralMaterial looks;
        if (textured)
            looks.SetTexture(static_cast<enumTextureType>(1), COrvelTexture("no such picture.png"));
        return COrvelMaterial::Create(&document, looks);
    }

    uint32 Extract(COrvel3DObject* object)
    {
        uint32 tessellation = 4711;
        run.converter.ExtractMesh(run.file, object, tessellation);
        return tessellation;
    }

    uint32 NumberOf(COrvelMaterial* material) const { return run.converter.materialNumbers->at(material); }

    COrvelDocument document;
    PRCRun run;
};

TEST_F(MeshExtraction, TakesTextureCoordinatesOnlyForTexturedMaterials)
{
    EXPECT_EQ(Extract(CuboidObject(Material(true))), 0U);
    EXPECT_EQ(Extract(CuboidObject(Material(false))), 1U);
    COrvel3DObject* const without = CuboidObject(Material(true));
    without->SetTextureCoordinatesTable(nullptr);
    EXPECT_EQ(Extract(without), 2U);

    const PRCContent content = run.Finish();
    ASSERT_EQ(content.tessellations.size(), 3U);
    EXPECT_EQ(content.tessellations[0].textureCoordinates.size(), 8U) << "a missing picture does not matter";
    EXPECT_EQ(content.tessellations[0].indices.size(), 108U);
    for (const std::size_t untextured : {1U, 2U}) {
        EXPECT_TRUE(content.tessellations[untextured].textureCoordinates.empty()) << untextured;
        EXPECT_EQ(content.tessellations[untextured].indices.size(), 72U) << untextured;
    }
}

TEST_F(MeshExtraction, NumbersAMaterialByItsFirstMeshAndAddsItForEach)
{
    COrvelMaterial* const red = Material(false);
    COrvelMaterial* const blue = Material(false);
    Extract(CuboidObject(red));
    Extract(CuboidObject(blue));
    Extract(CuboidObject(red));
    EXPECT_EQ(NumberOf(red), 1U);
    EXPECT_EQ(NumberOf(blue), 2U);

    const PRCContent content = run.Finish();
    EXPECT_EQ(content.styles.size(), 3U) << "one for every mesh";
    EXPECT_EQ(content.tessellations[0].faces[0].style, std::optional<size_t>(0));
    EXPECT_EQ(content.tessellations[1].faces[0].style, std::optional<size_t>(1));
    EXPECT_EQ(content.tessellations[2].faces[0].style, std::optional<size_t>(0));
}

TEST_F(MeshExtraction, KeepsANumberThatAMaterialAlreadyHas)
{
    COrvelMaterial* const red = Material(false);
    run.converter.materialNumbers->emplace(red, 42);
    Extract(CuboidObject(red));
    EXPECT_EQ(NumberOf(red), 42U);
    EXPECT_EQ(ExportCaches::Instance().materialNumberCache.at(red), 1U);
    EXPECT_EQ(run.Finish().tessellations[0].faces[0].style, std::optional<size_t>(0));
}

TEST_F(MeshExtraction, AddsAMaterialButNoMeshForAGeometryWithoutPolygons)
{
    COrvelMaterial* const red = Material(false);
    COrvelGeometry* const points = COrvelGeometry::Create(&document);
    points->SetVerticiesTable(COrvelVerticiesTable::Create(&document, {1.0, 2.0, 3.0}));
    EXPECT_EQ(Extract(COrvel3DObject::Create(&document, "points", points, red)), PRCNullIndex);
    EXPECT_EQ(NumberOf(red), 1U);

    COrvelGeometry* const empty = COrvelGeometry::Create(&document, {}, {});
    EXPECT_EQ(Extract(COrvel3DObject::Create(&document, "empty", empty, Material(false))), 4711U);
    EXPECT_EQ(Extract(COrvel3DObject::Create(&document, "nothing", nullptr, Material(false))), 4711U);
    const PRCContent content = run.Finish();
    EXPECT_EQ(content.styles.size(), 1U);
    EXPECT_TRUE(PlacedMeshes(content).empty());
}

/// Holds its entries in no array: the exporter has to ask for each.
class ComputedVertices final : public COrvelVerticiesTable
{
public:
    explicit ComputedVertices(COrvelDocument* document)
        : COrvelVerticiesTable(document)
    {}

    std::uint64_t Count() const override { return 4; }
    COrvel3DVertex Item(std::uint64_t k) const override
    {
        const double value = static_cast<double>(k);
        return {value, value * value, 2.0 - value};
    }
    std::span<const double> Values() const override { return {}; }
};

TEST_F(MeshExtraction, ReadsTablesWithoutArraysAndCutsPolygonsToTheirFirstTriangle)
{
    COrvelGeometry* const geometry = COrvelGeometry::Create(&document);
    geometry->SetVerticiesTable(new ComputedVertices(&document));
    COrvelPolygonsTable* const polygons = COrvelPolygonsTable::Create(&document);
    ASSERT_TRUE(polygons->Add(std::array<uint32, 4>{0, 1, 2, 3}));
    ASSERT_TRUE(polygons->Add(std::array<uint32, 3>{3, 2, 0}));
    geometry->SetPolygonsTable(polygons);
    Extract(COrvel3DObject::Create(&document, "computed", geometry));

    const PRCContent content = run.Finish();
    ASSERT_EQ(content.tessellations.size(), 1U);
    EXPECT_EQ(content.tessellations[0].points[3], (Vector3{3.0, 9.0, -1.0}));
    EXPECT_THAT(content.tessellations[0].indices, ElementsAre(0, 3, 6, 9, 6, 0));
}

} // namespace
} // namespace Orvel::Test
