#include "platform/prcfile/PRCTessellation.h"

#include "platform/prcfile/FaceRuns.h"

#include <array>

namespace prc::Model
{

namespace
{

struct Corner
{
    std::uint32_t point = nullIndex;
    std::uint32_t normal = nullIndex;
    std::uint32_t textureCoordinates = nullIndex;
    std::uint32_t colour = nullIndex;
};

void append(TriangleCorners& corners, const Corner& corner)
{
    corners.points.push_back(corner.point);
    corners.normals.push_back(corner.normal);
    corners.textureCoordinates.push_back(corner.textureCoordinates);
    corners.colours.push_back(corner.colour);
}

/// Reads the corners of one face one after the other.
class CornerReader
{
public:
    CornerReader(const Tessellation& read, const Face& ofFace)
        : at(read.triangulatedIndices.data() + ofFace.startTriangulated)
        , hasColours(!ofFace.vertexColours.empty())
    {}

    void beginGroup(const RunLayout& runLayout)
    {
        layout = &runLayout;
        if (layout->normalPerGroup)
            normal = *at++ / 3;
        else
            normal = nullIndex;
    }

    Corner next()
    {
        Corner corner;
        corner.normal = layout->normalPerCorner ? *at++ / 3 : normal;
        if (layout->texturesPerCorner > 0)
            corner.textureCoordinates = *at / 2;
        at += layout->texturesPerCorner;
        corner.point = *at++ / 3;
        corner.colour = hasColours ? colour++ : nullIndex;
        return corner;
    }

private:
    const std::uint32_t* at;
    const RunLayout* layout = nullptr;
    std::uint32_t normal = nullIndex;
    std::uint32_t colour = 0;
    bool hasColours;
};

/// Takes a fan or a strip apart. Every second triangle of a strip is turned round, so that all have the same side.
void appendConnected(CornerReader& reader, const FaceRun& run, TriangleCorners& corners)
{
    std::array<Corner, 2> before;
    bool isTurned = false;
    for (std::uint32_t number = 0; number < run.corners; ++number) {
        const Corner corner = reader.next();
        if (number < 2) {
            before[number] = corner;
            continue;
        }
        append(corners, before[isTurned ? 1 : 0]);
        append(corners, before[isTurned ? 0 : 1]);
        append(corners, corner);
        if (run.shape == FaceRun::Shape::Strip) {
            before[0] = before[1];
            isTurned = !isTurned;
        }
        before[1] = corner;
    }
}

} // namespace

void appendTriangles(const Tessellation& tessellation, const Face& face, TriangleCorners& corners)
{
    if (!face.isUsable || face.triangleCount == 0)
        return;
    CornerReader reader(tessellation, face);
    FaceRunWalk walk(face);
    while (const std::optional<FaceRun> run = walk.next()) {
        const RunLayout layout(*run, face, !tessellation.mustRecalculateNormals);
        for (std::uint32_t group = 0; group < layout.groups; ++group) {
            reader.beginGroup(layout);
            if (run->shape != FaceRun::Shape::Triangles) {
                appendConnected(reader, *run, corners);
                continue;
            }
            for (unsigned corner = 0; corner < 3; ++corner)
                append(corners, reader.next());
        }
    }
}

} // namespace prc::Model
