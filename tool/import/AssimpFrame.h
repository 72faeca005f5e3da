#pragma once

#include "platform/core/COrvelMatrix.h"
#include "tool/import/AssimpLoaders.h"
#include "tool/import/ImportReport.h"
#include "tool/import/ImportedScene.h"

#include <assimp/scene.h>

#include <filesystem>

namespace Orvel::Import
{

/// Unit and axes of a scene file, and its root node without what the loader baked in for their sake.
struct SceneFrame
{
    double unitInMillimetres = 0.0;
    UpAxis upAxis = UpAxis::Unknown;
    COrvelMatrix root; ///< local transform of the root node as the file has it
};

/// Matrix of Assimp, composed of single precision numbers, in double precision.
[[nodiscard]] COrvelMatrix MatrixFrom(const aiMatrix4x4& matrix);

/// @param scene  with a root node.
/// @param file   3MF and AMF files are opened again for their unit, which Assimp does not pass on.
[[nodiscard]] SceneFrame ReadSceneFrame(const aiScene& scene, const AssimpLoader& loader,
                                        const std::filesystem::path& file, ImportReport& report);

} // namespace Orvel::Import
