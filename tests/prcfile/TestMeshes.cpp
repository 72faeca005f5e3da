#include "tests/prcfile/TestMeshes.h"

#include <gtest/gtest.h>

#include <array>

namespace prc::Test
{

std::unique_ptr<PRC3DTess> StripMesh(MeshArrays arrays, std::uint32_t style)
{
    constexpr std::array<std::uint32_t, 9> corners = {0, 1, 2, 2, 1, 3, 2, 3, 4};
    auto mesh = std::make_unique<PRC3DTess>();
    mesh->coordinates = {0.5, 7.0, -3.25, 2.0, 7.5, 0.1, 0.25, 9.0, 4.0, 2.5, 9.5, 11.0, 0.75, 12.0, 13.0};
    if (arrays.normals)
        mesh->normalCoordinates = {0.0, 0.6, 0.8, 0.0, -0.6, 0.8, 0.6, 0.0, 0.8, -0.6, 0.0, 0.8, 0.0, 0.0, 1.0};
    else
        mesh->creaseAngle = 0.0;
    if (arrays.texture)
        mesh->textureCoordinates = {0.0, 0.1, 1.0, 0.2, 0.3, 1.5, -2.0, 0.4, 0.6, 0.7};
    for (const std::uint32_t corner : corners) {
        if (arrays.normals)
            mesh->triangulatedIndex.push_back(3 * corner);
        if (arrays.texture)
            mesh->triangulatedIndex.push_back(2 * corner);
        mesh->triangulatedIndex.push_back(3 * corner);
    }
    auto* face = new PRCTessFace;
    face->usedEntitiesFlag = arrays.texture ? UsedEntities::texturedTriangles : UsedEntities::triangles;
    face->numberOfTextureCoordinateIndexes = arrays.texture ? 1 : 0;
    face->sizesTriangulated = {corners.size() / 3};
    if (style != nullIndex)
        face->lineAttributes = {style};
    mesh->addTessFace(face);
    return mesh;
}

std::uint32_t Add(oPRCFile& file, std::unique_ptr<PRC3DTess> mesh)
{
    PRC3DTess* handedOver = mesh.release();
    const std::uint32_t number = file.add3DTess(handedOver, 0);
    EXPECT_EQ(handedOver, nullptr);
    return number;
}

std::vector<double> QuarterTurn()
{
    return {0.0, -1.0, 0.0, 1.0, 2.0, 0.0, 0.0, 2.0, 0.0, 0.0, 1.0, 3.0, 0.0, 0.0, 0.0, 1.0};
}

PRCmaterial NumberedMaterial(unsigned number)
{
    const double shade = number / 100.0;
    PRCmaterial material;
    material.ambient = {0.01 + shade, 0.02, 0.03, 0.99};
    material.diffuse = {0.04, 0.05 + shade, 0.06, 0.98};
    material.emissive = {0.07, 0.08, 0.09 + shade, 0.97};
    material.specular = {0.1, 0.11, 0.12, 0.96 - shade};
    material.shininess = 0.5;
    return material;
}

} // namespace prc::Test
