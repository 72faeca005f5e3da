#include "platform/prcfile/TessellationReader.h"

#include "platform/prcfile/FaceRuns.h"

#include <optional>
#include <vector>

namespace prc
{

namespace
{

using Model::Face;
using Model::Tessellation;

/// @return nullopt for kinds of runs that are not known, or sizes that do not fit them.
std::optional<std::uint64_t> cornerCount(const Face& face)
{
    std::uint64_t corners = 0;
    FaceRunWalk walk(face);
    while (const std::optional<FaceRun> run = walk.next())
        corners += run->corners;
    return walk.isConsistent() ? std::optional(corners) : std::nullopt;
}

void readVertexColours(SectionReader& section, Face& face)
{
    const std::uint32_t components = section.readBoolean() ? 4 : 3;
    if (section.readBoolean()) {
        section.fail("vertex colours are optimised, a form that is not known");
        return;
    }
    const std::optional<std::uint64_t> corners = cornerCount(face);
    if (!corners) {
        section.fail("vertex colours belong to faces whose corners cannot be counted");
        return;
    }
    if (*corners > section.bitsLeft()) {
        section.fail("vertex colours of " + std::to_string(*corners) +
                     " corners are announced, more than the rest of the section can hold");
        return;
    }
    if (!section.charge(*corners * components))
        return;
    face.colourComponents = components;
    face.vertexColours.resize(static_cast<std::size_t>(*corners) * components);
    for (std::size_t at = 0; at < face.vertexColours.size(); at += components) {
        const bool sameAsBefore = at > 0 && section.readBoolean();
        for (std::size_t component = at; component < at + components; ++component)
            face.vertexColours[component] =
                sameAsBefore ? face.vertexColours[component - components] : section.readCharacter();
    }
}

void readFace(SectionReader& section, Face& face)
{
    if (!section.expectEntity(EntityType::TessellationFace, "a face"))
        return;
    constexpr std::size_t number = sizeof(std::uint32_t);
    section.readUnsignedIntegers(face.styles, section.readCount(1, number, "styles of a face"));
    for (std::uint32_t& style : face.styles)
        --style; // stored plus one
    face.startWire = section.readUnsignedInteger();
    section.readUnsignedIntegers(face.wireSizes, section.readCount(1, number, "wire sizes"));
    face.usedEntities = section.readUnsignedInteger();
    face.startTriangulated = section.readUnsignedInteger();
    section.readUnsignedIntegers(face.sizesTriangulated, section.readCount(1, number, "sizes of a face"));
    face.textureCoordinateIndices = section.readUnsignedInteger();
    if (section.readBoolean())
        readVertexColours(section, face);
    if (!face.styles.empty())
        face.behaviour = section.readUnsignedInteger();
    section.readAddedFields(EntityType::TessellationFace);
}

void readMesh(SectionReader& section, Tessellation& mesh)
{
    constexpr unsigned doubleBits = 2;
    constexpr unsigned faceBits = 18;
    constexpr std::size_t number = sizeof(std::uint32_t);
    mesh.isCalculated = section.readBoolean();
    section.readDoubles(mesh.coordinates, section.readCount(doubleBits, sizeof(double), "coordinates"));
    mesh.hasFaces = section.readBoolean();
    mesh.hasLoops = section.readBoolean();
    mesh.mustRecalculateNormals = section.readBoolean();
    if (mesh.mustRecalculateNormals) {
        section.readCharacter(); // how to compute them: nothing is defined
        mesh.creaseAngleInDegrees = section.readDouble();
    }
    section.readDoubles(mesh.normalCoordinates, section.readCount(doubleBits, sizeof(double), "normal coordinates"));
    section.readUnsignedIntegers(mesh.wireIndices, section.readCount(1, number, "wire indices"));
    section.readUnsignedIntegers(mesh.triangulatedIndices, section.readCount(1, number, "triangulated indices"));
    const std::uint32_t faces = section.readCount(faceBits, sizeof(Face), "faces");
    mesh.faces.reserve(faces);
    for (std::uint32_t face = 0; face < faces && section.ok(); ++face)
        readFace(section, mesh.faces.emplace_back());
    section.readDoubles(mesh.textureCoordinates, section.readCount(doubleBits, sizeof(double), "texture coordinates"));
    section.readAddedFields(EntityType::Tessellation3D);
}

/// Checks the index array of a mesh, face by face.
class FaceCheck
{
public:
    explicit FaceCheck(const Tessellation& checked)
        : mesh(checked)
        , points(wholeElements(mesh.coordinates.size(), 3))
        , normals(wholeElements(mesh.normalCoordinates.size(), 3))
        , textures(wholeElements(mesh.textureCoordinates.size(), 2))
        , unclaimed(mesh.triangulatedIndices.size())
    {}

    /// @param at    position in the index array.
    /// @param count entries that the face takes up there: what the checks that fit were made for.
    /// @return false when an index or size is wrong.
    bool accepts(const Face& face, std::uint64_t at, std::uint64_t& count, std::uint32_t& triangles)
    {
        FaceRunWalk walk(face);
        count = 0;
        triangles = 0;
        while (const std::optional<FaceRun> run = walk.next()) {
            const RunLayout layout(*run, face, !mesh.mustRecalculateNormals);
            const std::uint64_t entries = layout.entries();
            if (at + count > mesh.triangulatedIndices.size() ||
                entries > mesh.triangulatedIndices.size() - (at + count) || !unclaimed.take(entries))
                return false;
            if (!acceptsRun(layout, static_cast<std::size_t>(at + count)))
                return false;
            count += entries;
            triangles += run->triangles;
        }
        return walk.isConsistent();
    }

private:
    static std::size_t wholeElements(std::size_t numbers, std::size_t each) { return numbers / each * each; }

    bool isPoint(std::uint32_t index) const { return index < points && index % 3 == 0; }
    bool isNormal(std::uint32_t index) const { return index < normals && index % 3 == 0; }
    bool isTexture(std::uint32_t index) const { return index < textures && index % 2 == 0; }

    bool acceptsRun(const RunLayout& layout, std::size_t at) const
    {
        const std::uint32_t* entry = mesh.triangulatedIndices.data() + at;
        bool good = true;
        for (std::uint32_t group = 0; group < layout.groups && good; ++group) {
            if (layout.normalPerGroup)
                good = isNormal(*entry++);
            for (std::uint32_t corner = 0; corner < layout.cornersPerGroup; ++corner) {
                if (layout.normalPerCorner)
                    good = isNormal(*entry++) && good;
                for (std::uint32_t texture = 0; texture < layout.texturesPerCorner; ++texture)
                    good = isTexture(*entry++) && good;
                good = isPoint(*entry++) && good;
            }
        }
        return good;
    }

    const Tessellation& mesh;
    std::size_t points; ///< numbers of whole elements.
    std::size_t normals;
    std::size_t textures;
    ReadBudget unclaimed; ///< faces share no entries: a small file could claim the same ones many times over.
};

void checkFaces(Tessellation& mesh, std::size_t number, Findings& findings)
{
    FaceCheck check(mesh);
    // Without normals, producers disagree on whether the starts of faces count the missing entries.
    const bool ignoreStarts = mesh.mustRecalculateNormals && mesh.faces.size() > 1;
    std::uint64_t start = 0;
    std::size_t unusable = 0;
    for (Face& face : mesh.faces) {
        if (!ignoreStarts)
            start = face.startTriangulated;
        std::uint64_t entries = 0;
        face.isUsable = check.accepts(face, start, entries, face.triangleCount);
        if (face.isUsable) {
            face.startTriangulated = static_cast<std::uint32_t>(start);
        } else {
            face.triangleCount = 0;
            ++unusable;
        }
        start += entries;
    }
    if (unusable > 0)
        findings.note(std::to_string(unusable) + " of the " + std::to_string(mesh.faces.size()) +
                      " faces of tessellation " + std::to_string(number) +
                      " cannot be used: wrong indices or sizes, or polygons");
}

/// Kinds of tessellations that are named in the model, though nothing of them is read.
bool isOnlyNamed(EntityType type)
{
    return type == EntityType::Tessellation3DCompressed || type == EntityType::Tessellation3DWire ||
           type == EntityType::TessellationMarkup;
}

void readTessellation(SectionReader& section, Tessellation& mesh, std::uint32_t number, std::uint32_t count)
{
    const std::uint32_t type = section.readEntityType();
    mesh.type = static_cast<EntityType>(type);
    if (mesh.type == EntityType::Tessellation3D)
        readMesh(section, mesh);
    else
        section.fail("tessellation " + std::to_string(number) + " of " + std::to_string(count) + " is " +
                     entityTypeName(type) + ", which is not decoded; neither is what follows it");
}

} // namespace

void readTessellations(SectionReader& section, Model::FileStructure& structure, Findings& findings)
{
    constexpr unsigned tessellationBits = 20;
    if (!section.expectEntity(EntityType::FileStructureTessellation, "the tessellations"))
        return;
    section.readContentBase();
    std::vector<Tessellation>& meshes = structure.tessellations;
    const std::uint32_t count = section.readCount(tessellationBits, sizeof(Tessellation), "tessellations");
    structure.announcedTessellations = count;
    meshes.reserve(count); // no more than has been charged
    for (std::uint32_t number = 0; number < count; ++number) {
        readTessellation(section, meshes.emplace_back(), number, count);
        if (!section.ok()) {
            if (!isOnlyNamed(meshes.back().type))
                meshes.pop_back();
            return;
        }
        checkFaces(meshes.back(), number, findings);
    }
    section.readAddedFields(EntityType::FileStructureTessellation);
    // Some writers leave out the user data here; the padding of the last byte then reads as "none".
    if (section.bitsLeft() > 0)
        section.skipUserData();
}

} // namespace prc
