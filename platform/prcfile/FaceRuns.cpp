#include "platform/prcfile/FaceRuns.h"

namespace prc
{

namespace
{

/// Bits of Face::usedEntities repeat in fours: polygons, triangles, fans, strips; first plain, then with one normal,
/// then both textured.
constexpr unsigned kindsInGroup = 4;
constexpr unsigned kindCount = 16;
constexpr unsigned polygons = 0;
constexpr unsigned triangles = 1;
constexpr unsigned fans = 2;
constexpr unsigned oneNormalGroup = 1;
constexpr unsigned texturedGroup = 2;

/// On the corner count of a fan or strip of the "one normal" kinds: there really is only one.
constexpr std::uint32_t oneNormalMark = 0x40000000;

} // namespace

std::optional<FaceRun> FaceRunWalk::fail()
{
    consistent = false;
    bit = kindCount;
    connectedLeft = 0;
    return std::nullopt;
}

std::optional<std::uint32_t> FaceRunWalk::takeSize()
{
    if (size == face.sizesTriangulated.size())
        return std::nullopt;
    return face.sizesTriangulated[size++];
}

std::optional<FaceRun> FaceRunWalk::triangleRun(FaceRun run)
{
    constexpr std::uint32_t mostTriangles = UINT32_MAX / 3;
    const std::optional<std::uint32_t> count = takeSize();
    if (!count || *count > mostTriangles)
        return fail();
    run.corners = *count * 3;
    run.triangles = *count;
    return run;
}

std::optional<FaceRun> FaceRunWalk::connectedRun(FaceRun run)
{
    const std::optional<std::uint32_t> count = takeSize();
    if (!count)
        return fail();
    --connectedLeft;
    run.corners = *count;
    if (run.hasOneNormal) {
        run.hasOneNormal = (*count & oneNormalMark) != 0;
        run.corners = *count & ~oneNormalMark;
    }
    run.triangles = run.corners < 3 ? 0 : run.corners - 2;
    return run;
}

std::optional<FaceRun> FaceRunWalk::next()
{
    if (face.usedEntities >> kindCount != 0 && consistent)
        return fail();
    for (; bit < kindCount; ++bit) {
        if ((face.usedEntities >> bit & 1) == 0)
            continue;
        const unsigned kind = bit % kindsInGroup;
        const unsigned group = bit / kindsInGroup;
        FaceRun run;
        run.hasOneNormal = (group & oneNormalGroup) != 0;
        run.isTextured = (group & texturedGroup) != 0;
        if (kind == polygons)
            return fail();
        if (kind == triangles) {
            ++bit;
            return triangleRun(run);
        }
        run.shape = kind == fans ? FaceRun::Shape::Fan : FaceRun::Shape::Strip;
        if (!insideFlag) {
            const std::optional<std::uint32_t> count = takeSize();
            if (!count)
                return fail();
            connectedLeft = *count;
            insideFlag = true;
        }
        if (connectedLeft > 0)
            return connectedRun(run);
        insideFlag = false;
    }
    if (size != face.sizesTriangulated.size())
        consistent = false;
    return std::nullopt;
}

RunLayout::RunLayout(const FaceRun& run, const Model::Face& face, bool normalsStored)
    : normalPerGroup(normalsStored && run.hasOneNormal)
    , normalPerCorner(normalsStored && !run.hasOneNormal)
    , texturesPerCorner(run.isTextured ? face.textureCoordinateIndices : 0)
{
    const bool areTriangles = run.shape == FaceRun::Shape::Triangles;
    groups = areTriangles ? run.triangles : 1;
    cornersPerGroup = areTriangles ? 3 : run.corners;
}

std::uint64_t RunLayout::entries() const
{
    // A file may announce anything: what does not fit is more than any index array holds.
    const std::uint64_t perCorner = std::uint64_t{texturesPerCorner} + 1 + (normalPerCorner ? 1 : 0);
    const std::uint64_t corners = std::uint64_t{groups} * cornersPerGroup;
    constexpr std::uint64_t mostEntries = UINT64_MAX / 4;
    if (corners != 0 && perCorner > mostEntries / corners)
        return mostEntries;
    return corners * perCorner + (normalPerGroup ? groups : 0);
}

} // namespace prc
