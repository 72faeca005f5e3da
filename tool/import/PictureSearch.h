#pragma once

#include "tool/import/FileLookUp.h"

#include <filesystem>
#include <string>
#include <vector>

namespace Orvel::Import
{

/// Finds the picture files that a scene names. Scenes travel between machines: their paths may be absolute on another
/// one, have other separators, and names written in upper or lower case at will.
class PictureSearch
{
public:
    /// @param sceneFile      relative paths start from its folder.
    /// @param textureFolders searched last, in order.
    PictureSearch(const std::filesystem::path& sceneFile, const std::vector<std::filesystem::path>& textureFolders);

    /// Looks where the scene says, then for the path below each texture folder, then for the base name alone in the
    /// scene's folder, its usual sub-folders, those of the folder above, and the texture folders. Exact names win over
    /// names that differ in case.
    ///
    /// @param path UTF-8, as the scene gives it.
    /// @return a regular file; empty when there is none.
    [[nodiscard]] std::filesystem::path Find(const std::string& path);

private:
    std::filesystem::path FindByBaseName(const std::string& name);

    std::filesystem::path sceneFolder;
    std::string sceneName; ///< without its ending
    std::vector<std::filesystem::path> textureFolders;
    FileLookUp lookUp;
};

} // namespace Orvel::Import
