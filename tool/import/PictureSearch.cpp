#include "tool/import/PictureSearch.h"

#include <algorithm>
#include <array>
#include <system_error>

namespace Orvel::Import
{

namespace
{

namespace fs = std::filesystem;

/// Folders in which programs put the pictures of a scene; case does not matter.
constexpr std::array<const char*, 9> UsualFolders{"textures", "texture", "tex",   "maps",     "map",
                                                  "images",   "image",   "media", "materials"};

bool IsFile(const fs::path& path)
{
    std::error_code ignored;
    return fs::is_regular_file(path, ignored);
}

bool IsAbsolute(std::string_view slashed)
{
    return slashed.starts_with('/') || (slashed.size() > 1 && slashed[1] == ':');
}

} // namespace

PictureSearch::PictureSearch(const fs::path& sceneFile, const std::vector<fs::path>& folders)
    : sceneFolder(sceneFile.parent_path().empty() ? fs::path(".") : sceneFile.parent_path())
    , sceneName(sceneFile.stem().string())
    , textureFolders(folders)
{}

fs::path PictureSearch::Find(const std::string& path)
{
    if (path.empty() || path.find('\0') != std::string::npos)
        return {};
    if (fs::path exact = sceneFolder / path; IsFile(exact))
        return exact;
    const std::string slashed = WithSlashes(path);
    if (!IsAbsolute(slashed)) {
        if (fs::path found = lookUp.Find(sceneFolder, slashed); !found.empty())
            return found;
        for (const fs::path& folder : textureFolders)
            if (fs::path found = lookUp.Find(folder, slashed); !found.empty())
                return found;
    } else if (IsFile(slashed)) {
        return slashed;
    }
    return FindByBaseName(BaseName(slashed));
}

fs::path PictureSearch::FindByBaseName(const std::string& name)
{
    if (name.empty())
        return {};
    if (fs::path found = lookUp.Find(sceneFolder, name); !found.empty())
        return found;
    // Where converters unpack the pictures of an FBX file.
    if (fs::path found = lookUp.Find(sceneFolder, sceneName + ".fbm/" + name); !found.empty())
        return found;
    for (const fs::path& base : {sceneFolder, sceneFolder / ".."})
        for (const char* folder : UsualFolders)
            if (fs::path found = lookUp.Find(base, std::string(folder) + "/" + name); !found.empty())
                return found;
    for (const fs::path& folder : textureFolders)
        if (fs::path found = lookUp.Find(folder, name); !found.empty())
            return found;
    return {};
}

} // namespace Orvel::Import
