#pragma once

#include "tool/import/ImportedScene.h"

#include <span>
#include <string_view>

namespace Orvel::Import
{

/// What a loader of Assimp puts into the root node besides the file's own content.
enum class RootContent
{
    FileContent,     ///< nothing
    Turned,          ///< the turn of a z-up file that makes it y-up
    UnitAndAxis,     ///< the unit in metres as a scale, times the turn from the file's up axis
    MetresAndTurned, ///< the unit as a scale and the turn from z-up, before the file's own placement of this node
};

/// Which part of a camera's frame a loader hands over besides its node.
enum class CameraFrames
{
    Own,       ///< position, direction of look and up, relative to the node
    Direction, ///< the same, but the position stands in the node already
    Standard   ///< none of them: the camera looks along -z of its node, y up
};

/// A loader of Assimp and what is known for sure of the files it reads.
struct AssimpLoader
{
    std::string_view name;   ///< as Assimp calls it
    std::string_view format; ///< for people
    bool enabled = true;
    double unitInMillimetres = 0.0;
    UpAxis upAxis = UpAxis::Unknown;
    RootContent root = RootContent::FileContent;
    CameraFrames cameras = CameraFrames::Own;
    bool rootIsInvented = false;      ///< the root node stands for the file or its scene, not for a node of the file
    bool meshNamesAreNumbers = false; ///< mesh names are running numbers made up by the loader
    bool inventsMaterials = false;    ///< the format knows none, the loader makes up one without a name
    bool namesItsMaterials = false;   ///< a material that is called as Assimp calls its default one is the file's own
    bool greysUndefinedMaterials = false; ///< names that no material library defines become grey materials
    bool hasOnlyMeshes = false;           ///< without triangles, lines and points there is nothing in a file
    bool normalsAreOfFaces = false;       ///< they say no more than the points do, and nothing of how to shade
    bool zeroOpacityIsOpaque = false;     ///< many writers of the format confuse opacity with transparency
};

/// Every loader that is known, in no particular order.
[[nodiscard]] std::span<const AssimpLoader> KnownAssimpLoaders();

/// The loader of that name; one with the name as its format and nothing else known when the name is new.
[[nodiscard]] AssimpLoader FindAssimpLoader(std::string_view name);

} // namespace Orvel::Import
