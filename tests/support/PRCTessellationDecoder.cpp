#include "tests/support/PRCDecoderSections.h"

namespace Orvel::Test
{
namespace
{

using Reader = PRCSectionReader;

constexpr uint32_t trianglesFlag = 2;
constexpr uint32_t texturedTrianglesFlag = 512;

template <size_t Size>
std::vector<std::array<double, Size>> DecodeElements(Reader& reader, const char* what)
{
    const size_t count = reader.Count(2);
    if (count % Size != 0)
        reader.Fail(std::string(what) + ": " + std::to_string(count) + " doubles are no whole number of elements");
    std::vector<std::array<double, Size>> elements(count / Size);
    for (std::array<double, Size>& element : elements) {
        for (double& component : element)
            component = reader.Double();
    }
    return elements;
}

/// Each corner repeats the colour before it with one bit, or brings its own.
void DecodeVertexColours(Reader& reader, Face& face)
{
    face.colourComponents = reader.Bit() ? 4 : 3;
    reader.ExpectBit(false, "optimised vertex colours");
    const size_t corners = 3 * face.triangleCount;
    reader.Require(corners > 0 && corners <= reader.BitsLeft(), "vertex colours without end");
    std::array<uint8_t, 4> colour{};
    for (size_t corner = 0; corner < corners; ++corner) {
        if (corner == 0 || !reader.Bit()) {
            for (size_t i = 0; i < face.colourComponents; ++i)
                colour[i] = reader.Character();
        }
        face.vertexColours.insert(face.vertexColours.end(), colour.begin(), colour.begin() + face.colourComponents);
    }
}

Face DecodeFace(Reader& reader, const PRCContent& content)
{
    Face face;
    reader.Expect(EntityType::TessFace);
    const uint32_t attributeCount = reader.UnsignedInteger();
    reader.Require(attributeCount <= 1, "face with several line attributes");
    if (attributeCount == 1)
        face.style = reader.Index(content.styles.size(), "style of a face");
    reader.ExpectUnsigned(0, "start of wire data");
    reader.ExpectUnsigned(0, "wire size count");
    const uint32_t flag = reader.UnsignedInteger();
    reader.Require(flag == trianglesFlag || flag == texturedTrianglesFlag, "face does not consist of single triangles");
    face.textured = flag == texturedTrianglesFlag;
    face.firstIndex = reader.UnsignedInteger();
    reader.ExpectUnsigned(1, "size count of a face");
    face.triangleCount = reader.UnsignedInteger();
    reader.ExpectUnsigned(face.textured ? 1 : 0, "texture coordinate indices per corner");
    if (reader.Bit())
        DecodeVertexColours(reader, face);
    if (attributeCount == 1)
        reader.ExpectUnsigned(1, "behaviour of a face");
    return face;
}

void CheckIndex(const Reader& reader, uint32_t stored, uint32_t size, size_t elements, const char* what)
{
    if (stored % size != 0 || stored / size >= elements)
        reader.Fail(std::string(what) + " index " + std::to_string(stored) + " with " + std::to_string(elements) +
                    " elements of " + std::to_string(size));
}

/// Faces follow each other without gap or overlap and use up the index array; each index hits an element.
void CheckFaces(const Reader& reader, const Tessellation& tess)
{
    size_t at = 0;
    for (const Face& face : tess.faces) {
        reader.Require(face.firstIndex == at, "face does not start where the one before it ends");
        const size_t entries = 1u + (tess.mustRecalculateNormals ? 0u : 1u) + (face.textured ? 1u : 0u);
        const size_t length = 3 * entries * face.triangleCount;
        reader.Require(length <= tess.indices.size() - at, "face reaches past the triangulated indices");
        for (const size_t end = at + length; at < end;) {
            if (!tess.mustRecalculateNormals)
                CheckIndex(reader, tess.indices[at++], 3, tess.normals.size(), "normal");
            if (face.textured)
                CheckIndex(reader, tess.indices[at++], 2, tess.textureCoordinates.size(), "texture coordinate");
            CheckIndex(reader, tess.indices[at++], 3, tess.points.size(), "point");
        }
    }
    reader.Require(at == tess.indices.size(), "triangulated indices that no face uses");
}

Tessellation DecodeTessellation(Reader& reader, const PRCContent& content)
{
    Tessellation tess;
    reader.Expect(EntityType::Tess3D);
    reader.ExpectBit(false, "is calculated");
    tess.points = DecodeElements<3>(reader, "points");
    reader.ExpectBit(true, "has faces");
    reader.ExpectBit(false, "has loops");
    tess.mustRecalculateNormals = reader.Bit();
    if (tess.mustRecalculateNormals) {
        reader.ExpectCharacter(0, "normal recalculation flags");
        tess.creaseAngleInDegrees = reader.Double();
    }
    tess.normals = DecodeElements<3>(reader, "normals");
    reader.Require(!tess.mustRecalculateNormals || tess.normals.empty(), "normals stored and to be recalculated");
    reader.ExpectUnsigned(0, "wire index count");
    tess.indices.resize(reader.Count(1));
    for (uint32_t& index : tess.indices)
        index = reader.UnsignedInteger();
    const size_t faceCount = reader.Count(18);
    reader.Require(faceCount > 0, "tessellation without faces");
    for (size_t i = 0; i < faceCount; ++i)
        tess.faces.push_back(DecodeFace(reader, content));
    tess.textureCoordinates = DecodeElements<2>(reader, "texture coordinates");
    CheckFaces(reader, tess);
    return tess;
}

} // namespace

void DecodeTessellations(PRCSectionReader& reader, PRCContent& content)
{
    reader.Expect(EntityType::TessellationSection);
    reader.ExpectUnnamedBase();
    const size_t count = reader.Count(20);
    for (size_t i = 0; i < count; ++i)
        content.tessellations.push_back(DecodeTessellation(reader, content));
    reader.ExpectNoUserData();
    reader.Finish();
}

} // namespace Orvel::Test
