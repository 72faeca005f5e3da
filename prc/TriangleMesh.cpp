#include "prc/MeshExtraction.h"

#include "platform/prcfile/PRC3DTess.h"
#include "platform/prcfile/PRCTessFace.h"
#include "platform/prcfile/oPRCFile.h"

#include <memory>

namespace Orvel
{

static_assert(PRCNullIndex == prc::nullIndex);

namespace
{

/// Per-corner element indices, each with the factor that makes it an offset into its flat array.
struct CornerIndices
{
    const uint32* normals;            ///< null: not used
    const uint32* textureCoordinates; ///< null: not used
    const uint32* vertices;

    [[nodiscard]] std::size_t EntriesPerCorner() const
    {
        return std::size_t{1} + (normals ? 1 : 0) + (textureCoordinates ? 1 : 0);
    }
};

std::vector<uint32> TriangulatedIndex(const CornerIndices& indices, uint32 triangleCount)
{
    const std::size_t corners = std::size_t{3} * triangleCount;
    std::vector<uint32> result(corners * indices.EntriesPerCorner());
    uint32* to = result.data();
    for (std::size_t corner = 0; corner < corners; ++corner) {
        if (indices.normals)
            *to++ = 3 * indices.normals[corner];
        if (indices.textureCoordinates)
            *to++ = 2 * indices.textureCoordinates[corner];
        *to++ = 3 * indices.vertices[corner];
    }
    return result;
}

std::unique_ptr<prc::PRCTessFace> TriangleFace(uint32 triangleCount, uint32 style, bool textured)
{
    auto face = std::make_unique<prc::PRCTessFace>();
    face->usedEntitiesFlag = textured ? prc::UsedEntities::texturedTriangles : prc::UsedEntities::triangles;
    face->numberOfTextureCoordinateIndexes = textured ? 1 : 0;
    face->sizesTriangulated.push_back(triangleCount);
    if (style != PRCNullIndex)
        face->lineAttributes.push_back(style);
    return face;
}

std::vector<double> Copy(const double* values, std::size_t count)
{
    return {values, values + count};
}

} // namespace

uint32 CreateTriangleMesh(uint32 vertexCount, const double* positions, uint32 triangleCount, const uint32* triangles,
                          uint32 style, uint32 normalCount, const double* normals, const uint32* normalIndices,
                          uint32 textureCoordinateCount, const double* textureCoordinates,
                          const uint32* textureCoordinateIndices, prc::oPRCFile& file)
{
    if (vertexCount == 0 || !positions || triangleCount == 0 || !triangles)
        return PRCNullIndex;
    const bool useNormals = normalCount > 0 && normals && normalIndices;
    const bool textured = textureCoordinateCount > 0 && textureCoordinates && textureCoordinateIndices;

    auto tessellation = std::make_unique<prc::PRC3DTess>();
    tessellation->coordinates = Copy(positions, std::size_t{3} * vertexCount);
    if (useNormals)
        tessellation->normalCoordinates = Copy(normals, std::size_t{3} * normalCount);
    else
        tessellation->creaseAngle = 0.0;
    if (textured)
        tessellation->textureCoordinates = Copy(textureCoordinates, std::size_t{2} * textureCoordinateCount);
    const CornerIndices corners{useNormals ? normalIndices : nullptr, textured ? textureCoordinateIndices : nullptr,
                                triangles};
    tessellation->triangulatedIndex = TriangulatedIndex(corners, triangleCount);

    // Both hand-overs take the object and null the pointer, whether they return or throw.
    prc::PRCTessFace* face = TriangleFace(triangleCount, style, textured).release();
    tessellation->addTessFace(face);
    prc::PRC3DTess* handedOver = tessellation.release();
    return file.add3DTess(handedOver, 0);
}

} // namespace Orvel
