#include "tool/import/AssimpMesh.h"

#include "tool/import/AssimpText.h"
#include "tool/import/UnitNormals.h"

#include <cmath>
#include <utility>

namespace Orvel::Import
{

namespace
{

/// The mesh as messages call it.
std::string Title(const aiMesh& mesh)
{
    const std::string name = Utf8From(mesh.mName);
    return name.empty() ? std::string("a mesh without a name") : "mesh '" + name + "'";
}

void ReleaseFaces(aiMesh& mesh)
{
    delete[] std::exchange(mesh.mFaces, nullptr);
    mesh.mNumFaces = 0;
}

void ReleaseVectors(aiVector3D*& vectors)
{
    delete[] std::exchange(vectors, nullptr);
}

std::vector<std::uint32_t> TakeTriangles(aiMesh& mesh, std::size_t expected, ImportReport& report)
{
    std::vector<std::uint32_t> triangles;
    triangles.reserve(3 * expected);
    std::size_t points = 0;
    std::size_t lines = 0;
    for (unsigned face = 0; face < mesh.mNumFaces; ++face) {
        const aiFace& corners = mesh.mFaces[face];
        if (corners.mNumIndices != 3) {
            points += corners.mNumIndices == 1 ? 1 : 0;
            lines += corners.mNumIndices == 2 ? 1 : 0;
            continue;
        }
        for (unsigned k = 0; k < 3; ++k) {
            if (corners.mIndices[k] >= mesh.mNumVertices)
                throw ImportError(Title(mesh) + " has a triangle with a point that does not exist");
            triangles.push_back(corners.mIndices[k]);
        }
    }
    // A mesh that joins none of its points is a cloud of them.
    points += mesh.mNumFaces == 0 ? mesh.mNumVertices : 0;
    report.CountLeftOut("point", "points", points);
    report.CountLeftOut("line", "lines", lines);
    const std::size_t taken = triangles.size() / 3;
    if (taken < expected)
        report.CountLeftOut("triangle of a polygon that crosses itself", "triangles of polygons that cross themselves",
                            expected - taken);
    ReleaseFaces(mesh);
    return triangles;
}

/// @param what for messages: "coordinates", ...
std::vector<double> TakeVectors(const aiMesh& mesh, aiVector3D*& vectors, const char* what)
{
    std::vector<double> values;
    values.reserve(3 * std::size_t{mesh.mNumVertices});
    for (unsigned k = 0; k < mesh.mNumVertices; ++k) {
        const aiVector3D& v = vectors[k];
        // The sum is finite only if every part is: three of them cannot overflow in double precision.
        if (!std::isfinite(static_cast<double>(v.x) + static_cast<double>(v.y) + static_cast<double>(v.z)))
            throw ImportError(Title(mesh) + " has " + what + " that are infinite or not a number");
        values.push_back(static_cast<double>(v.x));
        values.push_back(static_cast<double>(v.y));
        values.push_back(static_cast<double>(v.z));
    }
    ReleaseVectors(vectors);
    return values;
}

std::vector<double> TakeTextureCoordinates(aiMesh& mesh, unsigned set)
{
    std::vector<double> values;
    values.reserve(2 * std::size_t{mesh.mNumVertices});
    for (unsigned k = 0; k < mesh.mNumVertices; ++k) {
        const double u = static_cast<double>(mesh.mTextureCoords[set][k].x);
        const double v = static_cast<double>(mesh.mTextureCoords[set][k].y);
        if (!std::isfinite(u + v))
            throw ImportError(Title(mesh) + " has texture coordinates that are infinite or not a number");
        values.push_back(u);
        values.push_back(v);
    }
    ReleaseVectors(mesh.mTextureCoords[set]);
    return values;
}

void TakeNormals(aiMesh& mesh, ImportedGeometry& geometry, ImportReport& report)
{
    geometry.normals.reserve(3 * std::size_t{mesh.mNumVertices});
    for (unsigned k = 0; k < mesh.mNumVertices; ++k)
        for (unsigned axis = 0; axis < 3; ++axis)
            geometry.normals.push_back(static_cast<double>(mesh.mNormals[k][axis]));
    ReleaseVectors(mesh.mNormals);
    MakeNormalsUnit(geometry, Title(mesh), report);
}

void CountLeftOutOfMesh(const aiMesh& mesh, TextureCoordinateSet set, ImportReport& report)
{
    report.CountLeftOut("skin", "skins", mesh.HasBones() ? 1 : 0);
    report.CountLeftOut("morph target", "morph targets", mesh.mNumAnimMeshes);
    report.CountLeftOut("vertex colour set", "vertex colour sets", mesh.GetNumColorChannels());
    const int used = set == None ? 0 : set;
    for (int channel = 0; channel < AI_MAX_NUMBER_OF_TEXTURECOORDS; ++channel)
        if (channel != used && mesh.HasTextureCoords(static_cast<unsigned>(channel)))
            report.CountLeftOut("further texture coordinate set", "further texture coordinate sets");
}

} // namespace

MeshSurvey SurveyMesh(const aiMesh& mesh)
{
    MeshSurvey survey;
    std::size_t corners = 0;
    for (unsigned face = 0; face < mesh.mNumFaces; ++face) {
        const std::size_t count = mesh.mFaces[face].mNumIndices;
        corners += count;
        survey.hasPolygons = survey.hasPolygons || count > 3;
        survey.triangleCount += count >= 3 ? count - 2 : 0;
    }
    survey.ownPoints = corners == mesh.mNumVertices;
    return survey;
}

ImportedPart TakeMesh(aiMesh& mesh, const MeshSurvey& survey, TextureCoordinateSet set, const AssimpLoader& loader,
                      ImportedScene& scene, ImportReport& report)
{
    ImportedGeometry geometry;
    geometry.welded = !survey.ownPoints;
    geometry.triangles = TakeTriangles(mesh, survey.triangleCount, report);
    if (geometry.triangles.empty())
        return {};
    if (mesh.mVertices == nullptr)
        throw ImportError(Title(mesh) + " has triangles but no points");
    CountLeftOutOfMesh(mesh, set, report);

    geometry.positions = TakeVectors(mesh, mesh.mVertices, "coordinates");
    if (mesh.HasNormals() && !loader.normalsAreOfFaces)
        TakeNormals(mesh, geometry, report);
    ImportedPart part;
    if (set != None && mesh.HasTextureCoords(static_cast<unsigned>(set))) {
        part.textureCoordinates = static_cast<Index>(scene.textureCoordinates.size());
        scene.textureCoordinates.push_back({TakeTextureCoordinates(mesh, static_cast<unsigned>(set))});
    }
    part.geometry = static_cast<Index>(scene.geometries.size());
    scene.geometries.push_back(std::move(geometry));
    return part;
}

} // namespace Orvel::Import
