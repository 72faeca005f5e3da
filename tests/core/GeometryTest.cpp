#include "platform/core/COrvel3DObject.h"
#include "platform/core/COrvelBasicVectorsTable.h"
#include "platform/core/COrvelDocument.h"
#include "platform/core/COrvelGeometry.h"
#include "platform/core/COrvelMorphingTable.h"
#include "platform/core/COrvelPolygonsTable.h"
#include "platform/core/COrvelTextureCoordinatesTable.h"
#include "platform/core/COrvelVerticiesNormalsTable.h"
#include "platform/core/COrvelVerticiesTable.h"

#include <gmock/gmock.h>

namespace Orvel
{
namespace
{

using testing::ElementsAre;
using testing::IsEmpty;

TEST(GeometryTables, TakeArraysWithoutCopyingAndDropIncompleteEntries)
{
    COrvelDocument document;
    std::vector<double> positions = {1, 2, 3, 5, 7, 11, 13};
    const double* const storage = positions.data();
    COrvelVerticiesTable* const table = COrvelVerticiesTable::Create(&document, std::move(positions));
    EXPECT_EQ(table->Values().data(), storage);
    EXPECT_EQ(table->Count(), 2u);
    EXPECT_EQ(table->Item(1), COrvel3DVertex(5, 7, 11));
    EXPECT_FALSE(table->SetValues({5, 6}));
    EXPECT_THAT(table->Values(), ElementsAre(1, 2, 3, 5, 7, 11));

    std::vector<uint32> corners = {0, 1, 2, 2, 1, 3, 4, 5};
    const uint32* const cornerStorage = corners.data();
    COrvelPolygonsTable* const polygons = COrvelPolygonsTable::Create(&document, std::move(corners));
    EXPECT_EQ(polygons->TriangleCorners().data(), cornerStorage);
    EXPECT_EQ(polygons->Count(), 2u);
    EXPECT_FALSE(polygons->SetTriangles({1, 2}));
    EXPECT_THAT(polygons->TriangleCorners(), ElementsAre(0, 1, 2, 2, 1, 3));

    std::vector<double> uvs = {0.25, 0.5, 0.75, 1.0, 2.0};
    const double* const uvStorage = uvs.data();
    COrvelTextureCoordinatesTable* const coordinates = COrvelTextureCoordinatesTable::Create(&document, std::move(uvs));
    EXPECT_EQ(coordinates->Values().data(), uvStorage);
    EXPECT_FALSE(coordinates->SetValues({1}));
    EXPECT_EQ(coordinates->Count(), 2u);
    EXPECT_EQ(coordinates->Item(1), COrvelTextureCoordinate(0.75, 1.0));
}

std::vector<std::vector<uint32>> PolygonsOf(const COrvelPolygonsTable& table)
{
    std::vector<std::vector<uint32>> polygons(table.Count());
    for (std::size_t index = 0; index < polygons.size(); ++index) {
        const COrvel3DPolygon polygon = table.Item(index);
        for (std::size_t corner = 0; corner < polygon.Count(); ++corner)
            polygons[index].push_back(*polygon.At(corner));
    }
    return polygons;
}

TEST(PolygonsTable, HoldsPolygonsOfMixedSizes)
{
    using Corners = std::vector<uint32>;
    COrvelDocument document;
    COrvelPolygonsTable* const table = COrvelPolygonsTable::Create(&document);
    EXPECT_FALSE(table->Add(Corners{0, 1}));
    EXPECT_THAT(PolygonsOf(*table), IsEmpty());

    table->AddTriangle(0, 1, 2);
    EXPECT_TRUE(table->Add(Corners{3, 4, 5}));
    EXPECT_THAT(table->TriangleCorners(), ElementsAre(0, 1, 2, 3, 4, 5));

    EXPECT_TRUE(table->Add(Corners{6, 7, 8, 9, 10}));
    EXPECT_TRUE(table->Add(Corners{11, 12, 13, 14}));
    table->AddTriangle(15, 16, 17);
    EXPECT_THAT(table->TriangleCorners(), IsEmpty()) << "not only triangles any more";
    EXPECT_THAT(PolygonsOf(*table), ElementsAre(ElementsAre(0, 1, 2), ElementsAre(3, 4, 5), ElementsAre(6, 7, 8, 9, 10),
                                                ElementsAre(11, 12, 13, 14), ElementsAre(15, 16, 17)));
    EXPECT_TRUE(table->SetTriangles({2, 1, 0}));
    EXPECT_THAT(PolygonsOf(*table), ElementsAre(ElementsAre(2, 1, 0)));
    EXPECT_THAT(table->TriangleCorners(), ElementsAre(2, 1, 0));

    COrvelPolygonsTable* const largeFirst = COrvelPolygonsTable::Create(&document);
    EXPECT_TRUE(largeFirst->Add(Corners{0, 1, 2, 3}));
    EXPECT_THAT(PolygonsOf(*largeFirst), ElementsAre(ElementsAre(0, 1, 2, 3)));
}

TEST(BasicVectorsTable, LeavesItsCopiesAloneWhenItChanges)
{
    COrvelBasicVectorsTable original({COrvel3DVertex(5, 7, 11)});
    COrvelBasicVectorsTable copy = original;
    EXPECT_EQ(copy, original);
    EXPECT_EQ(copy.Items().data(), original.Items().data()) << "copied without need";
    // The item stands in the array that is let go.
    copy.Add(copy.Item(0));
    EXPECT_THAT(copy.Items(), ElementsAre(COrvel3DVertex(5, 7, 11), COrvel3DVertex(5, 7, 11)));
    EXPECT_THAT(original.Items(), ElementsAre(COrvel3DVertex(5, 7, 11)));
    EXPECT_NE(copy, original);
    original.Assign({});
    EXPECT_EQ(original, COrvelBasicVectorsTable());
    EXPECT_EQ(copy.Count(), 2u);
}

TEST(VectorsTable, ListsTheGeometriesThatUseIt)
{
    COrvelDocument document;
    COrvelGeometry* const first = COrvelGeometry::Create(&document, {0, 0, 0}, {0, 0, 0}, {0, 0, 1});
    COrvelGeometry* const second = COrvelGeometry::Create(&document);
    second->SetVerticiesTable(first->VerticiesTable());
    std::vector<COrvelGeometry*> geometries{nullptr};
    first->VerticiesTable()->ListGeometriesReferencingThisTable(geometries);
    EXPECT_THAT(geometries, ElementsAre(first, second));
    first->VerticiesNormalsTable()->ListGeometriesReferencingThisTable(geometries);
    EXPECT_THAT(geometries, ElementsAre(first));
    first->SetVerticiesTable(nullptr);
    EXPECT_EQ(first->VerticiesTable(), nullptr);
    second->VerticiesTable()->ListGeometriesReferencingThisTable(geometries);
    EXPECT_THAT(geometries, ElementsAre(second));
}

class Instances : public testing::Test
{
protected:
    std::vector<COrvel3DObject*> InstancesOf(COrvel3DObject* object, bool includeThis = true,
                                             bool includeDeleted = false, bool includeHidden = true)
    {
        object->ListInstances(listed, includeThis, includeDeleted, includeHidden);
        return listed;
    }

    COrvelDocument document;
    COrvelGeometry* const geometry = COrvelGeometry::Create(&document);
    COrvel3DObject* const first = COrvel3DObject::Create(&document, "first", geometry);
    COrvel3DObject* const twin = COrvel3DObject::Create(&document, "twin", geometry);
    std::vector<COrvel3DObject*> listed{nullptr};
};

TEST_F(Instances, AreListedByTheirFlags)
{
    EXPECT_THAT(InstancesOf(first), ElementsAre(first, twin));
    EXPECT_THAT(InstancesOf(twin), ElementsAre(first, twin));
    EXPECT_THAT(InstancesOf(first, false), ElementsAre(twin));

    twin->Hide();
    EXPECT_THAT(InstancesOf(first), ElementsAre(first, twin)) << "hidden twins are exported";
    EXPECT_THAT(InstancesOf(first, true, true, false), ElementsAre(first));

    twin->SetDeleted(true);
    EXPECT_THAT(InstancesOf(first), ElementsAre(first)) << "deleted twins are not";
    EXPECT_THAT(InstancesOf(first, true, true), ElementsAre(first, twin));
    geometry->ObjectsReferencingThisGeometry(listed);
    EXPECT_THAT(listed, ElementsAre(first, twin));
}

TEST_F(Instances, ShareOneDefinitionIdAndWithoutGeometryHaveNone)
{
    COrvel3DObject* const other = COrvel3DObject::Create(&document, "other", COrvelGeometry::Create(&document));
    EXPECT_FALSE(first->GeometyDefinitionID().IsEmpty());
    EXPECT_EQ(first->GeometyDefinitionID(), twin->GeometyDefinitionID());
    EXPECT_NE(first->GeometyDefinitionID(), other->GeometyDefinitionID());
    geometry->SetGuid(COrvelUUID());
    other->Geometry()->SetGuid(COrvelUUID());
    EXPECT_NE(first->GeometyDefinitionID(), other->GeometyDefinitionID());
    other->SetGeometry(geometry);
    EXPECT_THAT(InstancesOf(first), ElementsAre(first, twin, other));

    other->SetGeometry(nullptr);
    twin->SetGeometry(nullptr);
    EXPECT_TRUE(other->GeometyDefinitionID().IsEmpty());
    EXPECT_THAT(InstancesOf(first), ElementsAre(first));
    EXPECT_THAT(InstancesOf(other), ElementsAre(other));
    EXPECT_THAT(InstancesOf(other, false), IsEmpty()) << "not even of another object without geometry";
}

TEST_F(Instances, KeepTheirOwnTextureCoordinates)
{
    COrvelTextureCoordinatesTable* const shared = COrvelTextureCoordinatesTable::Create(&document, {0, 1});
    first->SetTextureCoordinatesTable(shared);
    EXPECT_EQ(twin->TextureCoordinatesTable(), nullptr);
    twin->SetTextureCoordinatesTable(shared);
    first->SetTextureCoordinatesTable(nullptr);
    EXPECT_EQ(first->TextureCoordinatesTable(), nullptr);
    EXPECT_EQ(twin->TextureCoordinatesTable(), shared);
}

TEST_F(Instances, MorphTowardsTargetsInTheOrderOfAddition)
{
    EXPECT_EQ(first->MorphingTable(), nullptr);
    COrvelMorphingTable* const table = first->CreateMorphingTable();
    EXPECT_EQ(first->CreateMorphingTable(), table);
    EXPECT_FALSE(first->HasMorphingGeometry()) << "a table without targets morphs nothing";

    COrvelGeometry* const smile = COrvelGeometry::Create(&document);
    COrvelGeometry* const frown = COrvelGeometry::Create(&document);
    table->AddMorphGeometry(frown);
    table->AddMorphGeometry(smile);
    table->AddMorphGeometry(frown);
    table->AddMorphGeometry(nullptr);
    EXPECT_TRUE(first->HasMorphingGeometry());
    EXPECT_THAT(table->ListAllMorphGeometries(), ElementsAre(frown->ID(), smile->ID()));

    table->SetMorphWeight(smile, 0.75);
    table->SetMorphWeight(geometry, 0.5);
    table->SetMorphWeight(nullptr, 0.5);
    EXPECT_EQ(table->MorphWeight(smile), 0.75);
    EXPECT_EQ(table->MorphWeight(frown), 0.0);
    EXPECT_EQ(table->MorphWeight(geometry), 0.0) << "no target";
}

} // namespace
} // namespace Orvel
