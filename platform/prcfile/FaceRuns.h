#pragma once

#include "platform/prcfile/PRCTessellation.h"

#include <cstddef>
#include <cstdint>
#include <optional>

namespace prc
{

/// A stretch of the index array that a face draws in one of the format's ways.
struct FaceRun
{
    enum class Shape : std::uint8_t
    {
        Triangles,
        Fan,
        Strip
    };

    Shape shape = Shape::Triangles;
    bool isTextured = false;
    bool hasOneNormal = false; ///< for each triangle, or for the whole fan or strip; else one for each corner.
    std::uint32_t corners = 0;
    std::uint32_t triangles = 0;
};

/// Goes through the runs of a face in the order in which their indices are stored.
class FaceRunWalk
{
public:
    /// @param walked not owned.
    explicit FaceRunWalk(const Model::Face& walked)
        : face(walked)
    {}

    /// @return nullopt at the end, and where the sizes of the face do not fit its kinds of runs: see isConsistent().
    std::optional<FaceRun> next();

    /// After next() has returned nullopt: whether the face holds known kinds of runs only, and as many sizes as they
    /// need.
    [[nodiscard]] bool isConsistent() const { return consistent; }

private:
    std::optional<FaceRun> fail();
    std::optional<std::uint32_t> takeSize();
    std::optional<FaceRun> triangleRun(FaceRun run);
    std::optional<FaceRun> connectedRun(FaceRun run);

    const Model::Face& face;
    std::size_t size = 0;            ///< position of the next size.
    unsigned bit = 0;                ///< of the flag to look at next.
    std::uint32_t connectedLeft = 0; ///< fans or strips of the flag `bit` that are still to come.
    bool insideFlag = false;
    bool consistent = true;
};

/// The entries of a run in the index array, in order: [normal] per run or triangle, then per corner [normal], texture
/// coordinates, point.
struct RunLayout
{
    std::uint32_t groups = 0;          ///< triangles, or 1 for a fan or strip.
    std::uint32_t cornersPerGroup = 0; ///< 3, or all corners of the fan or strip.
    bool normalPerGroup = false;
    bool normalPerCorner = false;
    std::uint32_t texturesPerCorner = 0;

    /// @param normalsStored false: the index array has no normals at all.
    RunLayout(const FaceRun& run, const Model::Face& face, bool normalsStored);

    /// Of the whole run.
    [[nodiscard]] std::uint64_t entries() const;
};

} // namespace prc
